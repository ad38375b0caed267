#include "files/command_line.h"

#include <string_view>

#include "win32/blanks.h"

namespace files {

namespace {

using win32::trimmed;

const size_t npos = std::wstring::npos;

bool beginsWith(const std::wstring& text, std::wstring_view lowerCasePrefix) {
    if (text.size() < lowerCasePrefix.size()) return false;
    for (size_t i = 0; i < lowerCasePrefix.size(); ++i) {
        wchar_t c = text[i] >= L'A' && text[i] <= L'Z' ? text[i] + (L'a' - L'A') : text[i];
        if (c != lowerCasePrefix[i]) return false;
    }
    return true;
}

// A full path to rundll32.exe is not recognised, on purpose: its file is rundll32.exe itself.
bool isRundllCommand(const std::wstring& cl) {
    return beginsWith(cl, L"rundll32") || beginsWith(cl, L"\"rundll32.exe\"") ||
           beginsWith(cl, L"%systemroot%\\system32\\rundll32");
}

// Quotes around the library stay, and so does whatever follows it when there is no comma.
std::wstring rundllLibrary(const std::wstring& cl) {
    size_t blank = cl.find(L' ');
    if (blank == npos) return L"rundll32.exe";
    size_t comma = cl.find(L',');
    bool commaAfterBlank = comma != npos && comma > blank;
    std::wstring result =
        trimmed(commaAfterBlank ? cl.substr(blank + 1, comma - blank - 1) : cl.substr(blank));
    if (result.find(L'.') == npos) result += L".dll";
    return result;
}

std::wstring quotedProgram(const std::wstring& cl) {
    size_t closing = cl.find(L'"', 1);
    return cl.substr(1, (closing == npos ? cl.find(L' ') : closing) - 1);
}

// The first two characters are never searched.
void removeFromThirdCharacterOn(std::wstring& text, std::wstring_view placeholder) {
    std::wstring result = text.substr(0, 2);
    for (size_t at = 2; at < text.size();) {
        size_t found = text.find(placeholder, at);
        result.append(text, at, found == npos ? npos : found - at);
        at = found == npos ? npos : found + placeholder.size();
    }
    text = std::move(result);
}

// Blanks in folder names survive, because the end is looked for from the last backslash on; without a
// backslash the last blank decides.
std::wstring unquotedProgram(std::wstring cl) {
    removeFromThirdCharacterOn(cl, L"\"%1\"");
    removeFromThirdCharacterOn(cl, L"%1");
    size_t backslash = cl.rfind(L'\\');
    size_t end = backslash == npos ? cl.rfind(L' ') : cl.find(L' ', backslash);
    return cl.substr(0, end);
}

std::wstring program(std::wstring cl) {
    if (size_t slash = cl.find(L'/'); slash != npos) cl = trimmed(cl.substr(0, slash));
    if (cl.find(L' ') == npos) return cl;
    return cl.front() == L'"' ? quotedProgram(cl) : unquotedProgram(std::move(cl));
}

std::wstring finished(std::wstring result) {
    result = trimmed(result);
    if (!result.empty() && result.front() == L'"' && result.back() == L'"') {
        // A lone quote is both ends at once and leaves nothing.
        result = result.size() < 2 ? std::wstring() : result.substr(1, result.size() - 2);
    }
    std::wstring_view lastFour(result);
    lastFour.remove_prefix(result.size() < 4 ? 0 : result.size() - 4);
    if (lastFour.find(L'.') == npos && result.find(L'\\') != npos) result += L".exe";
    return result;
}

}  // namespace

std::wstring GetFileNameFromCommandLine(std::wstring cl) {
    return isRundllCommand(cl) ? rundllLibrary(cl) : finished(program(std::move(cl)));
}

}  // namespace files
