#include "report/options.h"

#include <algorithm>
#include <iterator>

#include "report/categories.h"
#include "report/format.h"

namespace report {

namespace {

struct FlagRow {
    const wchar_t* name;
    decltype(&Options::all) flag;
};
const FlagRow flags[] = {
    {L"--all", &Options::all},   {L"--hash", &Options::hash},       {L"--quiet", &Options::quiet},
    {L"--help", &Options::help}, {L"--version", &Options::version},
};

struct TextRow {
    const wchar_t* name;
    decltype(&Options::format) text;
};
const TextRow texts[] = {
    {L"--format", &Options::format},
    {L"--output", &Options::output},
    {L"--compare", &Options::compare},
    {L"--save", &Options::save},
};

bool setFlag(Options& options, const std::wstring& argument) {
    const auto* row = std::find_if(std::begin(flags), std::end(flags),
                                   [&](const FlagRow& flag) { return argument == flag.name; });
    if (row != std::end(flags)) options.*row->flag = true;
    return row != std::end(flags);
}

// "--name TEXT" and "--name=TEXT".
bool setText(Options& options, const std::vector<std::wstring>& arguments, size_t& at) {
    const std::wstring& argument = arguments[at];
    const size_t equals = argument.find(L'=');
    const std::wstring name = argument.substr(0, equals);
    const auto* row = std::find_if(std::begin(texts), std::end(texts),
                                   [&](const TextRow& text) { return name == text.name; });
    if (row == std::end(texts)) return false;
    if (equals == std::wstring::npos && ++at == arguments.size()) throw UsageError(name + L" needs a value");
    std::wstring text = equals == std::wstring::npos ? arguments[at] : argument.substr(equals + 1);
    if (text.empty()) throw UsageError(name + L" needs a value");
    options.*row->text = std::move(text);
    return true;
}

std::vector<std::wstring> inWindowOrder(const std::vector<std::wstring>& chosen) {
    std::vector<std::wstring> ordered;
    for (const CategoryName& category : categoryNames()) {
        const bool isChosen =
            chosen.empty() || std::find(chosen.begin(), chosen.end(), category.name) != chosen.end();
        if (isChosen) ordered.emplace_back(category.name);
    }
    return ordered;
}

void check(const Options& options) {
    const Format* format = formatNamed(options.format);
    if (!format) throw UsageError(L"unknown format " + options.format);
    if (!options.compare.empty() && !format->canCompare()) {
        throw UsageError(L"--compare puts out " + formatNames(&Format::canCompare) + L", not " +
                         options.format);
    }
    if (!options.output.empty() && options.output == options.save) {
        throw UsageError(L"--output and --save name the same file");
    }
}

}  // namespace

Options parseOptions(const std::vector<std::wstring>& arguments) {
    Options options;
    std::vector<std::wstring> chosen;
    for (size_t at = 0; at < arguments.size(); ++at) {
        const std::wstring& argument = arguments[at];
        if (setFlag(options, argument) || setText(options, arguments, at)) continue;
        if (argument.substr(0, 1) == L"-") throw UsageError(L"unknown option " + argument);
        if (!isCategory(argument)) throw UsageError(L"unknown category " + argument);
        chosen.push_back(argument);
    }
    options.categories = inWindowOrder(chosen);
    check(options);
    return options;
}

std::wstring helpText() {
    return L"QuillonReport [run|winlogon|custom|services ...] [OPTION ...]\n"
           L"Lists what Windows starts by itself, as the tabs of Quillon do, and changes nothing.\n"
           L"Without a category all four are listed.\n\n"
           L"  --format FORMAT  " +
           formatNames() +
           L"; text when it is not given\n"
           L"  --output FILE    writes there in place of standard output, the whole file or nothing\n"
           L"  --all            also the standard services, which the window skips\n"
           L"  --hash           with the SHA-256 of each file of this machine\n"
           L"  --compare FILE   puts out the difference to a report that --save or --format json has "
           L"written\n"
           L"  --save FILE      writes this report there as JSON\n"
           L"  --quiet          nothing on standard output\n"
           L"  --help           this text\n"
           L"  --version        the program's version\n\n"
           L"Exit status: 0 nothing changed (or nothing compared), 1 something changed, 2 an error or a "
           L"place\n"
           L"that could not be read.\n";
}

}  // namespace report
