#include "bench/refresh_figure.h"
#include "startup/ucServices.h"

namespace bench {

void servicesRefresh(const Options& options, Report& report) {
    refreshFigure<startup::ucServices>("services-refresh", serviceValues, floor::readServices, {0.7, 1},
                                       options, report);
}

}  // namespace bench
