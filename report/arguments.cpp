#include "report/arguments.h"

namespace report {

namespace {

bool isGap(wchar_t c) {
    return c == L' ' || c == L'\t';
}

size_t afterGaps(std::wstring_view line, size_t at) {
    while (at < line.size() && isGap(line[at])) ++at;
    return at;
}

// The program's name knows no backslash rule: it ends at its closing quote, or at the first gap.
size_t afterProgram(std::wstring_view line) {
    bool isQuoted = false;
    size_t at = 0;
    for (; at < line.size() && (isQuoted || !isGap(line[at])); ++at) isQuoted ^= line[at] == L'"';
    return at;
}

// Appends what a run of backslashes and the quote that may follow stand for; `at` is behind them then.
void takeBackslashes(std::wstring_view line, size_t& at, std::wstring& argument) {
    size_t count = 0;
    while (at < line.size() && line[at] == L'\\') ++at, ++count;
    const bool isBeforeQuote = at < line.size() && line[at] == L'"';
    argument.append(isBeforeQuote ? count / 2 : count, L'\\');
    if (isBeforeQuote && count % 2) {
        argument += L'"';
        ++at;
    }
}

std::wstring takeArgument(std::wstring_view line, size_t& at) {
    std::wstring argument;
    bool isQuoted = false;
    while (at < line.size() && (isQuoted || !isGap(line[at]))) {
        if (line[at] == L'\\') {
            takeBackslashes(line, at, argument);
        } else if (line[at] != L'"') {
            argument += line[at++];
        } else if (isQuoted && at + 1 < line.size() && line[at + 1] == L'"') {
            argument += L'"';
            at += 2;
        } else {
            isQuoted = !isQuoted;
            ++at;
        }
    }
    return argument;
}

}  // namespace

std::vector<std::wstring> argumentsOf(std::wstring_view commandLine) {
    std::vector<std::wstring> arguments;
    size_t at = afterGaps(commandLine, afterProgram(commandLine));
    while (at < commandLine.size()) {
        arguments.push_back(takeArgument(commandLine, at));
        at = afterGaps(commandLine, at);
    }
    return arguments;
}

}  // namespace report
