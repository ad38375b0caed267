// The smallest program: a file for tests to copy and to give a version resource.
extern "C" int start() {
    return 0;
}
