#include "bench/refresh_figure.h"
#include "startup/ucServices.h"

namespace bench {

void servicesRefresh(const Options& options, Report& report) {
    refreshFigure<startup::ucServices>("services-refresh", serviceValues, floor::readServices, options,
                                       report);
}

}  // namespace bench
