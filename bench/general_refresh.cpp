#include "bench/refresh_figure.h"
#include "startup/ucRun.h"

namespace bench {

void generalRefresh(const Options& options, Report& report) {
    refreshFigure<startup::ucRun>("general-refresh", runValues, floor::readGeneral, {0.6, 0.97}, options,
                                  report);
}

}  // namespace bench
