#include "app/tab_state.h"

#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"

namespace app {

void logRows(const helmkit::Logger& logger, const wchar_t* logTemplate,
             const std::vector<startup::ListedRow>& rows) {
    for (const startup::ListedRow& row : rows) {
        const std::wstring line =
            helmkit::systemServices().FormatMessage(logTemplate, {row.text, row.second, row.file});
        logger.WriteLog(0, line, helmkit::information, {});
    }
}

}  // namespace app
