#include "win32/system/desktop.h"

#include <utility>

#include "win32/base/flavour.h"
#include "win32/base/handle.h"
#include "win32/base/structure_size.h"

namespace win32 {

namespace {

class RealDesktop : public Desktop {
  public:
    int messageBox(HWND owner, const std::wstring& text, const std::wstring& title, UINT style) override {
        return withFlavour([&](auto f) { return f.messageBox(owner, f.in(text), f.in(title), style); });
    }

    UINT popUpMenu(HMENU menu, POINT position, HWND owner) override {
        return ::TrackPopupMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, position.x, position.y, 0, owner,
                                nullptr);
    }

    bool startProgram(const std::wstring& application, const std::wstring& commandLine) override {
        if (!isExactName(application) || !isExactName(commandLine)) {
            ::SetLastError(ERROR_INVALID_NAME);
            return false;
        }
        return withFlavour([&]<class F>(F f) {
            typename F::StartupInfo startup = {};
            startup.cb = structureSize<typename F::StartupInfo>();
            startup.dwFlags = STARTF_USESHOWWINDOW;
            startup.wShowWindow = SW_SHOWNORMAL;
            // CreateProcess writes into the command line, so it gets one of its own.
            typename F::String line = spelled<F>(commandLine);
            PROCESS_INFORMATION process = {};
            // What this program does without a question about empty drives, another may want to ask.
            const DWORD flags = CREATE_DEFAULT_ERROR_MODE;
            bool started = application.empty()
                               ? f.createProcess(nullptr, line.data(), nullptr, nullptr, FALSE, flags,
                                                 nullptr, nullptr, &startup, &process)
                               : f.createProcess(f.in(application), line.data(), nullptr, nullptr, FALSE,
                                                 flags, nullptr, nullptr, &startup, &process);
            OwnedObject processHandle(process.hProcess), threadHandle(process.hThread);
            return started;
        });
    }

    void openFolder(HWND owner, const std::wstring& path) override {
        if (!isExactName(path)) return;
        withFlavour([&](auto f) {
            f.shellExecute(owner, f.in(L"open"), f.in(path), nullptr, nullptr, SW_SHOWNORMAL);
        });
    }

    bool shellExecute(const ShellRequest& request) override {
        if (!isExactName(request.file)) return false;
        return withFlavour([&]<class F>(F f) {
            auto verb = f.in(request.verb);
            auto file = f.in(request.file);
            typename F::ShellExecuteInfo record = {};
            record.cbSize = structureSize<typename F::ShellExecuteInfo>();
            record.fMask = request.mask;
            record.hwnd = request.owner;
            record.lpVerb = verb;
            record.lpFile = file;
            record.nShow = request.show;
            bool accepted = f.shellExecuteEx(&record);
            OwnedObject process(record.hProcess);
            return accepted;
        });
    }

    SYSTEMTIME localTime() override {
        SYSTEMTIME now;
        ::GetLocalTime(&now);
        return now;
    }

    DWORD tickCount() override { return ::GetTickCount(); }

    DWORD version() override { return ::GetVersion(); }

    POINT cursorPosition() override {
        POINT position = {};
        ::GetCursorPos(&position);
        return position;
    }
};

RealDesktop real;
Desktop* current = &real;

}  // namespace

Desktop& desktop() {
    return *current;
}

Desktop* setDesktop(Desktop* desktop) {
    return std::exchange(current, desktop ? desktop : &real);
}

}  // namespace win32
