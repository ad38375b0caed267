#include "win32/base/text.h"

#include <algorithm>

#include "win32/base/ascii.h"
#include "win32/base/flavour.h"
#include "win32/base/utf8.h"

namespace win32 {

namespace {

const LCID englishUnitedStates = 0x0409;

int length(size_t size) {
    return static_cast<int>(size);
}

bool isAscii(std::wstring_view text) {
    return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c < 0x80; });
}

std::wstring loweredByWindows(const std::wstring& text) {
    return withFlavour([&]<class F>(F f) {
        // Without LCMAP's LOCALE_USE_CP_ACP the ANSI form would read the text in the language's own code
        // page.
        DWORD how = LCMAP_LOWERCASE | (f.isWide ? 0 : LOCALE_USE_CP_ACP);
        auto source = spelled<F>(text);
        TextBuffer<F> result(source.size());
        int written = f.lcMapString(englishUnitedStates, how, source.data(), length(source.size()),
                                    result.data(), length(source.size()));
        return written ? result.text(written) : text;
    });
}

}  // namespace

std::string toAnsi(std::wstring_view text) {
    // Every ANSI code page has ASCII where ASCII is.
    if (isAscii(text)) return textAsBytes(text);
    int size =
        ::WideCharToMultiByte(CP_ACP, 0, text.data(), length(text.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(size, '\0');
    ::WideCharToMultiByte(CP_ACP, 0, text.data(), length(text.size()), bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::string toUtf8(std::wstring_view text) {
    std::string bytes;
    appendUtf8(bytes, text, [](wchar_t unit) { return unit; });
    return bytes;
}

std::wstring fromAnsi(std::string_view bytes) {
    if (bytes.empty()) return {};
    int size = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), length(bytes.size()), nullptr, 0);
    std::wstring text(size, L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), length(bytes.size()), text.data(), size);
    return text;
}

std::wstring bytesAsText(std::string_view bytes) {
    std::wstring text(bytes.size(), L'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [](char byte) { return static_cast<unsigned char>(byte); });
    return text;
}

std::string textAsBytes(std::wstring_view text) {
    std::string bytes(text.size(), '\0');
    std::transform(text.begin(), text.end(), bytes.begin(), [](wchar_t c) { return static_cast<char>(c); });
    return bytes;
}

bool survivesAnsi(std::wstring_view text) {
    return isAscii(text) || fromAnsi(toAnsi(text)) == text;
}

bool isExactName(std::wstring_view name) {
    return name.find(L'\0') == std::wstring_view::npos && (flavour() == Flavour::wide || survivesAnsi(name));
}

std::wstring lowered(std::wstring_view text) {
    std::wstring result(text);
    std::transform(result.begin(), result.end(), result.begin(), loweredAscii);
    if (isAscii(text)) return result;
    // A character that the code page lacks would be lost on the way: then only A to Z change.
    if (flavour() == Flavour::ansi && !survivesAnsi(text)) return result;
    return loweredByWindows(result);
}

bool sameIgnoringCase(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && lowered(a) == lowered(b);
}

}  // namespace win32
