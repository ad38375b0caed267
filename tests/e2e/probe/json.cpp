#include "tests/e2e/probe/json.h"

#include <windows.h>

#include <cstdio>

namespace probe {
namespace {

std::string joined(const std::vector<std::string>& pieces, char open, char close) {
    std::string result(1, open);
    for (size_t i = 0; i < pieces.size(); ++i) result += (i ? "," : "") + pieces[i];
    return result + close;
}

std::string escaped(wchar_t character) {
    if (character == L'"' || character == L'\\') return {'\\', static_cast<char>(character)};
    char text[8];
    std::snprintf(text, sizeof text, "\\u%04x", static_cast<unsigned>(character));
    return text;
}

}  // namespace

std::string toUtf8(std::wstring_view text) {
    int length = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0,
                                       nullptr, nullptr);
    std::string bytes(length, '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(), length,
                          nullptr, nullptr);
    return bytes;
}

std::wstring fromUtf8(std::string_view bytes) {
    int length = ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
    std::wstring text(length, L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(), length);
    return text;
}

// Every character outside plain ASCII is written as its UTF-16 units, so lone surrogates survive too.
std::string quoted(std::wstring_view text) {
    std::string result = "\"";
    for (wchar_t character : text) {
        bool plain = character >= L' ' && character < 0x7F && character != L'"' && character != L'\\';
        result += plain ? std::string(1, static_cast<char>(character)) : escaped(character);
    }
    return result + "\"";
}

std::string quoted(std::string_view ascii) {
    return quoted(std::wstring(ascii.begin(), ascii.end()));
}

std::string object(const std::vector<std::string>& members) {
    return joined(members, '{', '}');
}
std::string array(const std::vector<std::string>& items) {
    return joined(items, '[', ']');
}

std::string member(std::string_view name, std::string_view json) {
    return quoted(name) + ":" + std::string(json);
}
std::string member(std::string_view name, long long number) {
    return member(name, std::to_string(number));
}
std::string flag(std::string_view name, bool value) {
    return member(name, value ? "true" : "false");
}

std::vector<std::wstring> fields(std::string_view line) {
    std::vector<std::string> raw(1);
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\t') {
            raw.emplace_back();
        } else if (line[i] == '\\' && i + 1 < line.size()) {
            char code = line[++i];
            raw.back() += code == 't' ? '\t' : code == 'n' ? '\n' : code == 'r' ? '\r' : code;
        } else {
            raw.back() += line[i];
        }
    }
    std::vector<std::wstring> result;
    for (const std::string& field : raw) result.push_back(fromUtf8(field));
    return result;
}

}  // namespace probe
