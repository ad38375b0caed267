#include "files/registry_file.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "helmkit/client/shared_services.h"
#include "win32/base/text.h"
#include "win32/system/desktop.h"

namespace files {

namespace {

// Texts are handed on as one character per byte, which is how they are written.
win32::BString unicodeContents(ExportTexts texts) {
    const std::wstring_view header = L"\xFEFFWindows Registry Editor Version 5.00\r\n";
    size_t units = header.size();
    for (const win32::BString& text : texts) units += win32::BString::view(text.get()).size();
    win32::BString contents = win32::BString::ofLength(2 * units);
    wchar_t* at = contents.get();
    auto append = [&](std::wstring_view text) {
        for (wchar_t unit : text) {
            *at++ = unit & 0xFF;
            *at++ = unit >> 8;
        }
    };
    append(header);
    for (win32::BString& text : texts) {
        const win32::BString released = std::move(text);
        append(win32::BString::view(released.get()));
    }
    return contents;
}

win32::BString ansiContents(ExportTexts texts) {
    std::string bytes = "REGEDIT4\r\n";
    for (win32::BString& text : texts) {
        const win32::BString released = std::move(text);
        bytes += win32::toAnsi(win32::BString::view(released.get()));
    }
    win32::BString contents = win32::BString::ofLength(bytes.size());
    std::transform(bytes.begin(), bytes.end(), contents.get(),
                   [](char byte) { return static_cast<unsigned char>(byte); });
    return contents;
}

// The comment lines of an export text that name what could not be written.
void addOmissions(std::wstring_view text, std::vector<std::wstring>& omissions) {
    const std::wstring_view mark = L"; not exported: ";
    for (size_t at = text.find(mark); at != std::wstring_view::npos; at = text.find(mark, at + 1)) {
        const bool startsLine = at == 0 || text[at - 1] == L'\n';
        if (startsLine) omissions.emplace_back(text.substr(at + 2, text.find(L"\r\n", at) - at - 2));
    }
}

}  // namespace

std::vector<std::wstring> writeRegistryFile(const std::wstring& path, ExportTexts texts) {
    std::vector<std::wstring> omissions;
    for (const win32::BString& text : texts) addOmissions(win32::BString::view(text.get()), omissions);
    const auto contents = win32::isNtFamily() ? unicodeContents : ansiContents;
    helmkit::fileServices().WriteTextFile(path, contents(std::move(texts)));
    return omissions;
}

}  // namespace files
