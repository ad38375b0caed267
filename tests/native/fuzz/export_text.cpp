// What is exported is read back as the same names, types and bytes, or named as left out.
#include "helmkit/export_text.h"
#include "tests/native/fuzz/input.h"
#include "tests/support/reg_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const std::wstring key = L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Run";
    std::wstring text;
    reg::Key expected = {key, {}};
    size_t omitted = 0;
    helmkit::appendKeyHeader(text, key);
    while (!input.isEmpty()) {
        // Small types mostly, and what else 32 bits hold.
        const unsigned kind = input.byte();
        const uint32_t type = kind < 0xF0 ? kind % 12 : kind << 24 | input.byte();
        const std::wstring name = input.text(input.byte() % 40);
        const std::string bytes = input.bytes(input.byte());
        helmkit::appendValue(text, key, {name, type, bytes, bytes});
        if (helmkit::canBeWritten(name)) {
            expected.values.push_back({name, type, bytes});
        } else {
            ++omitted;
        }
    }
    const reg::File file = reg::read(text);
    require(file.keys.size() == 1 && file.keys[0] == expected, "something else came back");
    require(file.omissions.size() == omitted, "something was left out without a word");
    return 0;
}
