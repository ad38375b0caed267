#include "bench/page.h"
#include "bench/processes.h"

namespace bench {

namespace {

bool isShown(DWORD process, const wchar_t* windowClass, HWND& window) {
    DWORD owner = 0;
    for (window = nullptr; (window = ::FindWindowExW(nullptr, window, windowClass, nullptr));) {
        ::GetWindowThreadProcessId(window, &owner);
        if (owner == process) return ::IsWindowVisible(window);
    }
    return false;
}

// From the start of the program to its window on the screen, in microseconds.
double startOf(const wchar_t* program, const wchar_t* windowClass) {
    HWND window = nullptr;
    std::unique_ptr<Process> process;
    const double time = timed([&] {
        process = std::make_unique<Process>(L'"' + beside(program) + L'"');
        while (!isShown(process->id, windowClass, window)) {
            REQUIRE(::WaitForSingleObject(process->handle.get(), 1) == WAIT_TIMEOUT);
        }
    });
    ::PostMessageW(window, WM_CLOSE, 0, 0);
    process->exitCode();
    return time;
}

}  // namespace

void start(const Options& options, Report& report) {
    // Another process has the registry that is there; scripts/bench.sh puts entries into it.
    const HiddenWindow keepsTheDesktopAlive;
    const Medians medians =
        alternate([] { return startOf(L"Quillon.exe", L"QuillonMain"); },
                  [] { return startOf(L"floor.exe", L"QuillonFloor"); }, roundsFor(options, 30));
    report.add({.name = "start", .ours = medians.ours, .floor = medians.floor, .target = 0.8});
}

}  // namespace bench
