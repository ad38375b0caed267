// One function per figure. Each builds what it works on, measures and adds its lines to the report.
#pragma once

#include "bench/report.h"
#include "bench/rounds.h"

namespace bench {

struct Options {
    bool quick = false;  // small sizes and few rounds: shows that everything runs, measures nothing
    bool large = false;  // 10,000 and 40,000 entries: shows that time grows with them and no faster
    Side side = Side::both;
    int rounds = 0;  // of each; 0 for as many as the figure takes its time for
};

using Figure = void (*)(const Options&, Report&);

void generalRefresh(const Options& options, Report& report);
void servicesRefresh(const Options& options, Report& report);
void otherRefresh(const Options& options, Report& report);
void backup(const Options& options, Report& report);
void start(const Options& options, Report& report);
void commandLine(const Options& options, Report& report);
void checksum(const Options& options, Report& report);
void deletion(const Options& options, Report& report);
void log(const Options& options, Report& report);
void memory(const Options& options, Report& report);
void size(const Options& options, Report& report);

// The sizes of the figures that grow.
std::vector<int> entryCounts(const Options& options);
Rounds roundsFor(const Options& options, double seconds = 10);

}  // namespace bench
