// cZip as a command, for tests that read its archives with other people's tools:
//
//     zip_driver zip|delete ARCHIVE [Property | Property=value]... [spec=SPECIFICATION]...
//
// password=TEXT answers PasswordRequest, refuse refuses it; cancel=N answers the Nth Cancel by stopping;
// kill=N ends the process at the Nth. Events are told as they come; afterwards, the current folder.
#include <cstdlib>
#include <map>

#include "support/cZip.h"
#include "tests/support_request/driver.h"

namespace {

struct Run {
    support::cZip zip;
    std::wstring password;
    bool refuses = false, isQuiet = false;
    long cancelAt = 0, killAt = 0, cancels = 0;

    void listen() {
        zip.PasswordRequest = [this](bool& refuse, std::wstring& text) {
            tell("PasswordRequest", L"");
            refuse = refuses;
            text = password;
        };
        zip.Progress = [this](const std::wstring& name, LONG percent) {
            if (!isQuiet) tell("Progress", name + L'\t' + std::to_wstring(percent));
        };
        zip.Cancel = [this](bool& cancel, const std::wstring& name) {
            ++cancels;
            if (!isQuiet) tell("Cancel", name);
            if (cancels == killAt) ::TerminateProcess(::GetCurrentProcess(), 9);
            cancel = cancels == cancelAt;
        };
    }

    void set(const std::wstring& argument) {
        const std::map<std::wstring, bool*> switches = {
            {L"Encrypt", &zip.Encrypt},
            {L"IncludeSystemAndHiddenFiles", &zip.IncludeSystemAndHiddenFiles},
            {L"StoreVolumeLabel", &zip.StoreVolumeLabel},
            {L"StoreDirectories", &zip.StoreDirectories},
            {L"StoreFolderNames", &zip.StoreFolderNames},
            {L"RecurseSubDirs", &zip.RecurseSubDirs},
            {L"UpdateOnlyIfNewer", &zip.UpdateOnlyIfNewer},
            {L"FreshenFiles", &zip.FreshenFiles},
            {L"ConvertCRLFToLF", &zip.ConvertCRLFToLF},
            {L"ConvertLFToCRLF", &zip.ConvertLFToCRLF},
            {L"AllowAppend", &zip.AllowAppend},
            {L"refuse", &refuses},
            {L"quiet", &isQuiet}};
        const std::map<std::wstring, std::wstring*> texts = {{L"BasePath", &zip.BasePath},
                                                             {L"password", &password}};
        const std::map<std::wstring, long*> numbers = {{L"cancel", &cancelAt}, {L"kill", &killAt}};
        std::wstring value;
        const auto known = switches.find(argument);
        if (known != switches.end()) {
            *known->second = true;
            return;
        }
        if (isOption(argument, L"spec", value)) return static_cast<void>(zip.AddFileSpec(value));
        for (const auto& [name, text] : texts) {
            if (isOption(argument, name, value)) return static_cast<void>(*text = value);
        }
        for (const auto& [name, number] : numbers) {
            if (isOption(argument, name, value))
                return static_cast<void>(*number = std::wcstol(value.c_str(), nullptr, 10));
        }
        if (isOption(argument, L"flavour", value)) {
            return win32::forceFlavour(value == L"ansi" ? win32::Flavour::ansi : win32::Flavour::wide);
        }
        win32::raise(E_INVALIDARG, L"unknown argument " + argument);
    }
};

void run(const std::vector<std::wstring>& arguments) {
    Run run;
    run.zip.ZipFile = arguments.at(1);
    for (size_t i = 2; i < arguments.size(); ++i) run.set(arguments[i]);
    run.listen();
    arguments[0] == L"delete" ? run.zip.Delete() : run.zip.Zip();
}

}  // namespace

int main() {
    const int result = tellingFailure([] { run(argumentList()); });
    wchar_t folder[MAX_PATH];
    ::GetCurrentDirectoryW(MAX_PATH, folder);
    tell("folder", folder);
    return result;
}
