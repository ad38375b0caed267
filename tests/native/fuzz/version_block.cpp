// Whatever a version block says, it is read to its end, and few tables are asked.
#include "win32/files/version_block.h"
#include "tests/native/fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const uint16_t language = static_cast<uint16_t>(input.byte() | input.byte() << 8);
    const std::string block = input.bytes();
    const std::vector<std::wstring> walked = win32::stringTableKeys(block);
    for (const std::wstring& key : walked) require(key.size() <= 65, "a key is longer than it may be");
    const auto order = win32::tableOrder(win32::translationsOf(block), language, walked);
    require(order.size() <= 100 + 300 + 6 + 100, "too many tables are asked");
    return 0;
}
