// A form's value comes back by the decoding of its four characters, and holds none of them.
#include "support/form_encoding.h"
#include "tests/native/fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::wstring text = Input(data, size).text();
    const std::wstring encoded = support::encodeFormValue(text);
    require(encoded.find_first_of(L"+\r\n\\") == std::wstring::npos, "a character that had to be encoded");
    size_t at = 0;
    for (wchar_t c : text) {
        const std::wstring code = c == L'+'    ? L"%2B"
                                  : c == L'\r' ? L"%0D"
                                  : c == L'\n' ? L"%0A"
                                  : c == L'\\' ? L"%5C"
                                               : std::wstring(1, c);
        require(encoded.compare(at, code.size(), code) == 0, "another text came out");
        at += code.size();
    }
    require(at == encoded.size(), "something was added");
    return 0;
}
