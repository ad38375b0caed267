#include "tests/support/reg_reader.h"

#include <stdexcept>

#include "win32/base/utf16_bytes.h"

namespace reg {

namespace {

[[noreturn]] void fail(const char* what, const std::wstring& line) {
    throw std::runtime_error(std::string(what) + ": " + std::string(line.begin(), line.end()));
}

std::vector<std::wstring> logicalLines(const std::wstring& text) {
    std::vector<std::wstring> lines;
    bool continues = false;
    for (size_t at = 0; at < text.size();) {
        size_t end = text.find(L"\r\n", at);
        if (end == std::wstring::npos) fail("no line end", text.substr(at));
        std::wstring line = text.substr(at, end - at);
        if (line.find_first_of(L"\r\n") != std::wstring::npos) fail("a bare line break", line);
        at = end + 2;
        bool wasContinued = continues;
        if (wasContinued) {
            if (line.compare(0, 2, L"  ") != 0) fail("no indentation", line);
            line.erase(0, 2);
        }
        bool isValue = wasContinued || (!line.empty() && (line[0] == L'"' || line[0] == L'@'));
        // Only byte lists are folded, after a comma.
        continues = isValue && line.size() > 1 && line.compare(line.size() - 2, 2, L",\\") == 0;
        if (continues) line.pop_back();
        if (wasContinued) {
            lines.back() += line;
        } else {
            lines.push_back(line);
        }
    }
    if (continues) fail("an unfinished line", lines.back());
    return lines;
}

// The text between quotes from `at` on, which is left behind the closing one.
std::wstring quoted(const std::wstring& line, size_t& at) {
    std::wstring text;
    if (at >= line.size() || line[at] != L'"') fail("no quote", line);
    for (++at; at < line.size() && line[at] != L'"'; ++at) {
        if (line[at] == L'\\') {
            ++at;
            if (at >= line.size() || (line[at] != L'"' && line[at] != L'\\')) fail("an unknown escape", line);
        }
        text += line[at];
    }
    if (at >= line.size()) fail("no closing quote", line);
    ++at;
    return text;
}

uint32_t hexNumber(const std::wstring& line, size_t& at, size_t most) {
    uint32_t number = 0;
    size_t digits = 0;
    for (; at < line.size() && digits < most; ++at, ++digits) {
        wchar_t c = line[at];
        if (c >= L'0' && c <= L'9') {
            number = number * 16 + (c - L'0');
        } else if (c >= L'a' && c <= L'f') {
            number = number * 16 + (c - L'a' + 10);
        } else {
            break;
        }
    }
    if (!digits) fail("no number", line);
    return number;
}

bool skip(const std::wstring& line, size_t& at, const std::wstring& text) {
    if (line.compare(at, text.size(), text) != 0) return false;
    at += text.size();
    return true;
}

void readData(const std::wstring& line, size_t at, Value& value) {
    if (at < line.size() && line[at] == L'"') {
        value.type = 1;
        value.data = win32::bytesOf(quoted(line, at) + L'\0');
    } else if (skip(line, at, L"dword:")) {
        value.type = 4;
        if (line.size() - at != 8) fail("not eight digits", line);
        uint32_t number = hexNumber(line, at, 8);
        for (int shift = 0; shift < 32; shift += 8) value.data += static_cast<char>(number >> shift & 0xFF);
    } else if (skip(line, at, L"hex")) {
        value.type = 3;
        if (skip(line, at, L"(")) {
            value.type = hexNumber(line, at, 8);
            if (!skip(line, at, L")")) fail("no parenthesis", line);
        }
        if (!skip(line, at, L":")) fail("no colon", line);
        while (at < line.size()) {
            value.data += static_cast<char>(hexNumber(line, at, 2));
            if (at < line.size() && !skip(line, at, L",")) fail("no comma", line);
        }
    }
    if (at != line.size()) fail("more than a value", line);
}

Value readValue(const std::wstring& line) {
    Value value;
    size_t at = 0;
    if (!skip(line, at, L"@")) {
        value.name = quoted(line, at);
        if (value.name.empty()) fail("an empty name", line);
    }
    if (!skip(line, at, L"=")) fail("no equals sign", line);
    readData(line, at, value);
    return value;
}

}  // namespace

File read(const std::wstring& text) {
    File file;
    const std::wstring omission = L"; not exported: ";
    for (const std::wstring& line : logicalLines(text)) {
        if (line.empty()) continue;
        if (line.front() == L'[') {
            if (line.back() != L']') fail("no bracket", line);
            file.keys.push_back({line.substr(1, line.size() - 2), {}});
        } else if (line.compare(0, omission.size(), omission) == 0) {
            file.omissions.push_back(line.substr(omission.size()));
        } else {
            if (file.keys.empty()) fail("a value without a key", line);
            file.keys.back().values.push_back(readValue(line));
        }
    }
    return file;
}

}  // namespace reg
