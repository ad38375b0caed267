#include "app/pages.h"

#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "support/ucHelp.h"

namespace app {

namespace {

class HelpPage : public Page {
  public:
    explicit HelpPage(HWND parent) : control_(parent) {}
    win32::Window& window() override { return control_; }
    void Init(helmkit::Logger& logger) override { control_.Init(logger); }

  private:
    support::ucHelp control_;
};

class StartupPage : public Page {
  public:
    StartupPage(HWND parent, std::unique_ptr<startup::Category> category)
        : control_(parent, std::move(category)) {}
    win32::Window& window() override { return control_; }
    void Init(helmkit::Logger& logger) override { control_.Init(logger); }
    void RefreshList() override { control_.RefreshList(); }
    std::vector<startup::ListedRow> rows() const override { return control_.rows(); }

  private:
    startup::StartupListControl control_;
};

std::unique_ptr<Page> makeHelpPage(HWND parent) {
    return std::make_unique<HelpPage>(parent);
}

const PageRow table[] = {
    {L"help", L"Help", nullptr, makeHelpPage},
    {L"Run", L"General Startup Programs", L"Run: '%1', '%2', '%3'", makePage<startup::ucRun>},
    {L"Winlogon", L"Winlogon Startup Programs", L"Winlogon: '%1', '%2', '%3'", makePage<startup::ucWinlogon>},
    {L"Other", L"Custom Startup Programs", L"Other: '%1', '%2'", makePage<startup::ucOther>},
    {L"Services", L"Services", L"Services: '%1', '%2', '%3'", makePage<startup::ucServices>},
};

}  // namespace

std::unique_ptr<Page> makeStartupPage(HWND parent, std::unique_ptr<startup::Category> category) {
    return std::make_unique<StartupPage>(parent, std::move(category));
}

std::span<const PageRow> pageTable() {
    return table;
}

}  // namespace app
