// A message is its template with the arguments in it, each once for each placeholder, searched once.
#include "helmkit/format_message.h"
#include "tests/native/fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    std::vector<std::wstring> arguments(input.byte() % 11);
    for (std::wstring& argument : arguments) argument = input.text(input.byte() % 16);
    const std::wstring text = input.letters();
    const std::wstring message = helmkit::formatMessage(text, arguments);
    // The same by another way: from behind, so that what was inserted lies behind the search.
    std::wstring expected = text;
    for (size_t at = text.size(); at-- > 0;) {
        if (at + 1 >= text.size() || text[at] != L'%' || text[at + 1] < L'1' || text[at + 1] > L'9') continue;
        const size_t position = text[at + 1] - L'1';
        if (position < arguments.size()) expected.replace(at, 2, arguments[position]);
    }
    require(message == expected, "the message is another one");
    return 0;
}
