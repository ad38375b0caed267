#include "files/registry_file.h"

#include "helmkit/client/shared_services.h"
#include "win32/base/text.h"
#include "win32/base/utf16_bytes.h"
#include "win32/system/desktop.h"

namespace files {

namespace {

// Texts are handed on as one character per byte, which is how they are written.
std::wstring contents(const std::wstring& body) {
    if (!win32::isNtFamily()) return win32::bytesAsText(win32::toAnsi(L"REGEDIT4\r\n" + body));
    const std::wstring byteOrderMark = L"\xFEFF";
    return win32::bytesAsText(
        win32::bytesOf(byteOrderMark + L"Windows Registry Editor Version 5.00\r\n" + body));
}

}  // namespace

void writeRegistryFile(const std::wstring& path, const std::wstring& body) {
    helmkit::fileServices().WriteTextFile(path, contents(body));
}

}  // namespace files
