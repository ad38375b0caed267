#include "helmkit/export_text.h"

#include <algorithm>

#include "helmkit/registry_text.h"
#include "win32/base/hex.h"
#include "win32/base/utf16_bytes.h"

namespace helmkit {

namespace {

const size_t foldedAt = 77, bytesInLine = 25, lengthOfEnd = 2;

// `unitAt(i)` is the text's unit at a position.
template <class UnitAt>
void appendQuoted(std::wstring& text, size_t length, UnitAt unitAt) {
    auto isEscaped = [](wchar_t c) { return c == L'"' || c == L'\\'; };
    size_t room = length + 2 + lengthOfEnd;
    for (size_t i = 0; i < length; ++i) room += isEscaped(unitAt(i));
    text.reserve(text.size() + room);
    text += L'"';
    for (size_t i = 0; i < length; ++i) {
        if (isEscaped(unitAt(i))) text += L'\\';
        text += unitAt(i);
    }
    text += L'"';
}

bool isNulOrLineEnd(wchar_t c) {
    return c == L'\0' || c == L'\r' || c == L'\n';
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

wchar_t storedUnit(std::string_view data, size_t position) {
    return static_cast<wchar_t>(win32::unitAt(data, 2 * position));
}

// Whether quotes give back exactly the stored bytes: a text without line ends, its one NUL at its end.
bool isQuotable(std::string_view data) {
    if (data.size() < 2 || data.size() % 2) return false;
    const size_t last = data.size() / 2 - 1;
    for (size_t i = 0; i < last; ++i) {
        if (isNulOrLineEnd(storedUnit(data, i))) return false;
    }
    return storedUnit(data, last) == L'\0';
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
    const size_t lengthOfFold = 5;
    text.reserve(text.size() + 3 * data.size() + lengthOfFold * (data.size() / bytesInLine + 1) +
                 lengthOfEnd);
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
    return std::none_of(name.begin(), name.end(), isNulOrLineEnd);
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
        appendQuoted(text, value.name.size(), [&](size_t i) { return value.name[i]; });
    }
    text += L'=';
    if (value.type == typeString && isQuotable(value.data)) {
        appendQuoted(text, value.data.size() / 2 - 1, [&](size_t i) { return storedUnit(value.data, i); });
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
