#include "bench/refresh_figure.h"
#include "startup/ucRun.h"

namespace bench {

void generalRefresh(const Options& options, Report& report) {
    refreshFigure<startup::ucRun>("general-refresh", runValues, floor::readGeneral, options, report);
}

}  // namespace bench
