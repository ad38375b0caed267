#include "win32/files/indirect_string.h"

#include <optional>
#include <vector>

#include "win32/base/error.h"
#include "win32/base/flavour.h"
#include "win32/files/files.h"
#include "win32/files/local_files.h"
#include "win32/files/string_table.h"
#include "win32/system/desktop.h"
#include "win32/system/system.h"

namespace win32 {

namespace {

struct Reference {
    std::wstring file;
    unsigned number = 0;
};

bool parse(const std::wstring& text, Reference& reference) {
    if (text.empty() || text.front() != L'@') return false;
    size_t comma = text.rfind(L",-");
    if (comma == std::wstring::npos || comma + 2 >= text.size()) return false;
    for (size_t at = comma + 2; at < text.size(); ++at) {
        if (text[at] < L'0' || text[at] > L'9') return false;
        reference.number = reference.number * 10 + (text[at] - L'0');
        if (reference.number > 0xFFFF) return false;
    }
    reference.file = text.substr(1, comma - 1);
    return true;
}

std::vector<uint16_t> userLanguages() {
    const LANGID user = ::GetUserDefaultLangID();
    const uint16_t neutral = 0, english = 0x0409;
    return {user, static_cast<uint16_t>(PRIMARYLANGID(user)), english, neutral};
}

// Where Windows keeps the strings of its own files from Vista on: `en-US\\name.mui` beside the file. The
// languages of the user and of the system, and English, in which every Windows can fall back.
std::vector<std::wstring> filesOfStrings(const std::wstring& path) {
    using GetLanguage = LANGID(WINAPI*)();
    using NameOf = int(WINAPI*)(LCID, wchar_t*, int, DWORD);
    static const auto userLanguage =
        systemProcedure<GetLanguage>(L"kernel32.dll", "GetUserDefaultUILanguage");
    static const auto systemLanguage =
        systemProcedure<GetLanguage>(L"kernel32.dll", "GetSystemDefaultUILanguage");
    static const auto nameOf = systemProcedure<NameOf>(L"kernel32.dll", "LCIDToLocaleName");
    std::vector<std::wstring> files = {path};
    const size_t name = path.rfind(L'\\') + 1;
    auto add = [&](const std::wstring& language) {
        files.push_back(path.substr(0, name) + language + L'\\' + path.substr(name) + L".mui");
    };
    for (GetLanguage language : {userLanguage, systemLanguage}) {
        wchar_t text[100] = L"";
        if (language && nameOf && nameOf(language(), text, 100, 0) > 1) add(text);
    }
    add(L"en-US");
    return files;
}

std::optional<std::wstring> stringIn(const std::wstring& path, unsigned number) {
    if (!fileExists(path)) return {};
    try {
        FileReader file(path);
        return stringOfFile(
            [&](uint64_t offset, size_t count) {
                std::string bytes(count, '\0');
                file.skipTo(offset);
                bytes.resize(file.read(bytes.data(), count));
                return bytes;
            },
            number, userLanguages());
    } catch (const Error&) {
        return {};
    }
}

}  // namespace

std::wstring displayedText(const std::wstring& text) {
    Reference reference;
    if (!isNtFamily() || majorVersion() < 6 || !parse(text, reference)) return text;
    std::wstring path = expandEnvironment(reference.file);
    if (path.find(L'\\') == std::wstring::npos) path = systemFolder() + L"\\" + path;
    // A file on another machine is never opened just to show a name.
    if (!isLocal(path)) return text;
    for (const std::wstring& file : filesOfStrings(path)) {
        if (auto string = stringIn(file, reference.number)) return *string;
    }
    return text;
}

}  // namespace win32
