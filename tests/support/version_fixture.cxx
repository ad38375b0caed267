// A program that does nothing: the tests give it version resources.
int main() { return 0; }
