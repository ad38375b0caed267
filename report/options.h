// What the command line asks for. Calls nothing of Windows.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace report {

struct Options {
    std::vector<std::wstring> categories;  // in the window's order, none twice; never empty
    std::wstring format = L"text";
    std::wstring output, compare, save;  // file names, empty for none
    bool all = false;
    bool hash = false;
    bool quiet = false;
    bool help = false;
    bool version = false;
};

// The command line is wrong; `text` says how.
struct UsageError : std::runtime_error {
    explicit UsageError(std::wstring text) : std::runtime_error("usage"), text(std::move(text)) {}
    std::wstring text;
};

// Throws a UsageError.
Options parseOptions(const std::vector<std::wstring>& arguments);

// What --help prints.
std::wstring helpText();

}  // namespace report
