#include "files/command_line.h"

#include <string_view>

#include "win32/base/ascii.h"
#include "win32/base/blanks.h"

namespace files {

namespace {

using win32::beginsWithLowered;
using win32::withoutBlanks;

const size_t npos = std::wstring_view::npos;

// A full path to rundll32.exe is not recognised, on purpose: its file is rundll32.exe itself.
bool isRundllCommand(std::wstring_view cl) {
    return beginsWithLowered(cl, L"rundll32") || beginsWithLowered(cl, L"\"rundll32.exe\"") ||
           beginsWithLowered(cl, L"%systemroot%\\system32\\rundll32");
}

// Quotes around the library stay, and so does whatever follows it when there is no comma.
std::wstring rundllLibrary(std::wstring_view cl) {
    size_t blank = cl.find(L' ');
    if (blank == npos) return L"rundll32.exe";
    size_t comma = cl.find(L',');
    bool commaAfterBlank = comma != npos && comma > blank;
    std::wstring result =
        win32::trimmed(commaAfterBlank ? cl.substr(blank + 1, comma - blank - 1) : cl.substr(blank));
    if (result.find(L'.') == npos) result += L".dll";
    return result;
}

std::wstring_view quotedProgram(std::wstring_view cl) {
    size_t closing = cl.find(L'"', 1);
    return cl.substr(1, (closing == npos ? cl.find(L' ') : closing) - 1);
}

// The first two characters are never searched.
std::wstring removedFromThirdCharacterOn(std::wstring_view text, std::wstring_view placeholder) {
    std::wstring result(text.substr(0, 2));
    for (size_t at = 2; at < text.size();) {
        size_t found = text.find(placeholder, at);
        result.append(text, at, found == npos ? npos : found - at);
        at = found == npos ? npos : found + placeholder.size();
    }
    return result;
}

// Blanks in folder names survive, because the end is looked for from the last backslash on; without a
// backslash the last blank decides.
std::wstring_view unquotedProgram(std::wstring_view cl) {
    size_t backslash = cl.rfind(L'\\');
    size_t end = backslash == npos ? cl.rfind(L' ') : cl.find(L' ', backslash);
    return cl.substr(0, end);
}

std::wstring finished(std::wstring_view program) {
    program = withoutBlanks(program);
    if (!program.empty() && program.front() == L'"' && program.back() == L'"') {
        // A lone quote is both ends at once and leaves nothing.
        program = program.size() < 2 ? std::wstring_view() : program.substr(1, program.size() - 2);
    }
    std::wstring_view lastFour = program.substr(program.size() < 4 ? 0 : program.size() - 4);
    bool hasExtension = lastFour.find(L'.') != npos;
    std::wstring result(program);
    if (!hasExtension && program.find(L'\\') != npos) result += L".exe";
    return result;
}

std::wstring finishedProgram(std::wstring_view cl) {
    if (size_t slash = cl.find(L'/'); slash != npos) cl = withoutBlanks(cl.substr(0, slash));
    if (cl.find(L' ') == npos) return finished(cl);
    if (cl.front() == L'"') return finished(quotedProgram(cl));
    if (cl.find(L"%1", 2) == npos) return finished(unquotedProgram(cl));
    return finished(
        unquotedProgram(removedFromThirdCharacterOn(removedFromThirdCharacterOn(cl, L"\"%1\""), L"%1")));
}

}  // namespace

std::wstring GetFileNameFromCommandLine(std::wstring_view cl) {
    return isRundllCommand(cl) ? rundllLibrary(cl) : finishedProgram(cl);
}

}  // namespace files
