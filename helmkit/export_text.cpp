#include "helmkit/export_text.h"

#include "helmkit/registry_text.h"
#include "win32/base/hex.h"
#include "win32/base/utf16_bytes.h"

namespace helmkit {

namespace {

const size_t foldedAt = 77;

void appendQuoted(std::wstring& text, std::wstring_view raw) {
    text += L'"';
    for (wchar_t c : raw) {
        if (c == L'"' || c == L'\\') text += L'\\';
        text += c;
    }
    text += L'"';
}

bool endsLine(wchar_t c) {
    return c < 0x20 || c == 0x7F || c == 0x85 || c == 0x2028 || c == 0x2029;
}

void appendEscaped(std::wstring& text, std::wstring_view raw) {
    for (wchar_t c : raw) {
        if (!endsLine(c)) {
            text += c;
            continue;
        }
        text += L"\\u";
        win32::appendHex(text, c, 4);
    }
}

// The text between quotes, when they give back exactly the stored bytes.
bool quotable(std::string_view data, std::wstring& characters) {
    if (data.size() < 2 || data.size() % 2) return false;
    characters = win32::unitsOf(data);
    if (characters.back() != L'\0') return false;
    characters.pop_back();
    return canBeWritten(characters);
}

void appendNumber(std::wstring& text, std::string_view data) {
    text += L"dword:";
    for (int i = 3; i >= 0; --i) win32::appendHex(text, win32::byteAt(data, i), 2);
}

void appendType(std::wstring& text, uint32_t type) {
    text += L"hex";
    if (type != typeBinary) {
        int digits = 1;
        while (digits < 8 && type >> 4 * digits) ++digits;
        text += L'(';
        win32::appendHex(text, type, digits);
        text += L')';
    }
    text += L':';
}

// Folded as the registry editor does it: after a comma, once the line has 77 characters.
void appendBytes(std::wstring& text, size_t lineStart, std::string_view data) {
    text.reserve(text.size() + 4 * data.size());
    for (size_t i = 0; i < data.size(); ++i) {
        win32::appendHex(text, win32::byteAt(data, i), 2);
        if (i + 1 == data.size()) break;
        text += L',';
        if (text.size() - lineStart < foldedAt) continue;
        text += L"\\\r\n";
        lineStart = text.size();
        text += L"  ";
    }
}

}  // namespace

bool canBeWritten(std::wstring_view name) {
    return name.find_first_of(std::wstring_view(L"\0\r\n", 3)) == std::wstring_view::npos;
}

void appendKeyHeader(std::wstring& text, std::wstring_view key) {
    text += L"\r\n[";
    text += key;
    text += L"]\r\n";
}

void appendValue(std::wstring& text, std::wstring_view key, const ExportedValue& value) {
    if (!canBeWritten(value.name)) return appendOmittedValue(text, key, value.name);
    size_t lineStart = text.size();
    if (value.name.empty()) {
        text += L'@';
    } else {
        appendQuoted(text, value.name);
    }
    text += L'=';
    std::wstring characters;
    if (value.type == typeString && quotable(value.data, characters)) {
        appendQuoted(text, characters);
    } else if (value.type == typeNumber && value.data.size() == 4) {
        appendNumber(text, value.data);
    } else {
        appendType(text, value.type);
        appendBytes(text, lineStart, value.hexData);
    }
    text += L"\r\n";
}

void appendOmittedKey(std::wstring& text, std::wstring_view key, std::wstring_view reason) {
    text += L"; not exported: [";
    appendEscaped(text, key);
    text += L']';
    if (!reason.empty()) text += L' ';
    appendEscaped(text, reason);
    text += L"\r\n";
}

void appendOmittedValue(std::wstring& text, std::wstring_view key, std::wstring_view name) {
    text += L"; not exported: [";
    appendEscaped(text, key);
    text += L"] \"";
    appendEscaped(text, name);
    text += L"\"\r\n";
}

}  // namespace helmkit
