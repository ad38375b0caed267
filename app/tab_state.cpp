#include "app/FMain.h"
#include "helmkit/client/logger.h"
#include "helmkit/client/system_services.h"

namespace app {

namespace {

// One line for each listed entry; %3 is the related file.
const wchar_t* const templates[] = {L"Run: '%1', '%2', '%3'", L"Winlogon: '%1', '%2', '%3'",
                                    L"Other: '%1', '%2'", L"Services: '%1', '%2', '%3'"};

}  // namespace

void FMain::LogTabState() {
    trapped(L".LogTabState", [&] {
        for (size_t i = 0; i < startupPages_.size(); ++i) {
            auto& page = *startupPages_[i];
            const win32::ListView& list = page.ListViewObject();
            const bool namesFile = std::wstring(templates[i]).find(L"%3") != std::wstring::npos;
            for (int row = 0; row < list.count(); ++row) {
                std::vector<std::wstring> arguments = {list.text(row, 0), list.text(row, 1)};
                if (namesFile) arguments.push_back(page.itemOf(row).text(startup::field::Dll));
                logger_.WriteLog(0, helmkit::systemServices().FormatMessage(templates[i], arguments),
                                 helmkit::information, {});
            }
        }
    });
}

}  // namespace app
