// bench.exe [--quick | --large] [--rounds N] [--only-ours | --only-floor] [--json FILE] [FIGURE ...]:
// measures the program against floors. docs/performance.md explains the figures. The folder of this file is
// to hold the whole program, and floor.exe.
#define DOCTEST_CONFIG_IMPLEMENT
#include <doctest/doctest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/figures.h"
#include "bench/memory.h"
#include "bench/start_entries.h"
#include "helmkit/client/shared_services.h"
#include "tests/support/temp_folder.h"
#include "win32/base/text.h"
#include "win32/com/com.h"

namespace {

const struct {
    const char* name;
    bench::Figure measure;
} figures[] = {
    {"general-refresh", bench::generalRefresh},
    {"services-refresh", bench::servicesRefresh},
    {"other-refresh", bench::otherRefresh},
    {"backup", bench::backup},
    {"start", bench::start},
    {"command-line", bench::commandLine},
    {"checksum", bench::checksum},
    {"delete", bench::deletion},
    {"log", bench::log},
    {"memory", bench::memory},
    {"size", bench::size},
};

// What the benchmark shares with the tests ends the run when it fails.
void endOnFailure(const doctest::AssertData& data) {
    if (!data.m_failed) return;
    std::fprintf(stderr, "bench: %s:%d: %s\n%s\n", data.m_file, data.m_line, data.m_expr,
                 data.m_decomp.c_str());
    std::exit(1);
}

struct Arguments {
    bench::Options options;
    std::wstring json;
    std::vector<std::string> figures;  // all when none is named

    bool wants(const char* figure) const {
        return figures.empty() || std::find(figures.begin(), figures.end(), figure) != figures.end();
    }
};

Arguments parsed(int count, char** texts) {
    Arguments arguments;
    for (int i = 1; i < count; ++i) {
        const std::string text = texts[i];
        if (text == "--quick") {
            arguments.options.quick = true;
        } else if (text == "--large") {
            arguments.options.large = true;
        } else if (text == "--rounds" && i + 1 < count) {
            arguments.options.rounds = std::atoi(texts[++i]);
        } else if (text == "--only-ours" || text == "--only-floor") {
            arguments.options.side = text == "--only-ours" ? bench::Side::ours : bench::Side::floor;
        } else if (text == "--json" && i + 1 < count) {
            arguments.json = win32::fromAnsi(texts[++i]);
        } else {
            arguments.figures.push_back(text);
        }
    }
    return arguments;
}

int measure(const Arguments& arguments) {
    bench::Report report;
    for (const auto& figure : figures) {
        if (arguments.wants(figure.name)) figure.measure(arguments.options, report);
    }
    if (!arguments.json.empty()) TempFolder::write(arguments.json, report.json());
    return report.lines().empty();
}

// The jobs of the processes that the benchmark starts, and of scripts/bench.sh.
int runJob(const std::string& job, const char* argument) {
    if (job == "--memory-of-ours") return static_cast<int>(bench::memoryOfOurRows(std::atoi(argument)));
    if (job == "--memory-of-floor") return static_cast<int>(bench::memoryOfFloorRows(std::atoi(argument)));
    bench::writeStartEntries(win32::fromAnsi(argument));
    return 0;
}

bool isJob(const std::string& text) {
    return text == "--memory-of-ours" || text == "--memory-of-floor" || text == "--start-entries";
}

}  // namespace

namespace bench {

std::vector<int> entryCounts(const Options& options) {
    if (options.large) return {10000, 40000};
    return options.quick ? std::vector<int>{100} : std::vector<int>{100, 1000, 10000};
}

Rounds roundsFor(const Options& options, double seconds) {
    if (options.quick) return {1, 0, options.side};
    if (options.rounds) return {options.rounds, 0, options.side};
    return {9, seconds, options.side};
}

}  // namespace bench

int main(int count, char** texts) {
    doctest::Context context;
    context.setAsDefaultForAssertsOutOfTestCases();
    context.setAssertHandler(endOnFailure);
    ::InitCommonControls();
    win32::ComApartment apartment;
    const int status =
        count == 3 && isJob(texts[1]) ? runJob(texts[1], texts[2]) : measure(parsed(count, texts));
    helmkit::releaseSharedServices();
    return status;
}
