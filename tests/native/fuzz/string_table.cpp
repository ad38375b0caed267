// No file leads the reader of its strings outside itself.
#include "win32/files/string_table.h"
#include "tests/native/fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const unsigned number = input.byte();
    const std::string file = input.bytes();
    auto read = [&](uint64_t offset, size_t count) {
        return offset > file.size() ? std::string() : file.substr(static_cast<size_t>(offset), count);
    };
    const auto text = win32::stringOfFile(read, number, {0x0409, 0});
    require(!text || (!text->empty() && text->size() <= 4095), "a string of an impossible length");
    return 0;
}
