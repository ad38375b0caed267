#include "bench/memory.h"

#include <algorithm>

#include <psapi.h>

#include "bench/entries.h"
#include "bench/floor/floors.h"
#include "bench/page.h"
#include "bench/processes.h"
#include "helmkit/client/logger.h"
#include "startup/ucRun.h"

namespace bench {

namespace {

SIZE_T privateBytes() {
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

// Looks from another thread, again and again: where Windows is imitated, its own record of the greatest usage
// tells only the present one.
class Peak {
  public:
    Peak() : before_(privateBytes()), thread_(::CreateThread(nullptr, 0, watch, this, 0, nullptr)) {}
    DWORD bytes() {
        ended_ = true;
        ::WaitForSingleObject(thread_.get(), INFINITE);
        return static_cast<DWORD>(std::max(greatest_, privateBytes()) - before_);
    }

  private:
    static DWORD WINAPI watch(void* self) {
        auto& peak = *static_cast<Peak*>(self);
        for (; !peak.ended_; ::Sleep(1)) peak.greatest_ = std::max(peak.greatest_, privateBytes());
        return 0;
    }

    SIZE_T before_, greatest_ = 0;
    volatile bool ended_ = false;
    win32::OwnedObject thread_;
};

template <class Fill>
DWORD memoryOf(int count, Fill fill) {
    World world;
    store(runValues(count, makePrograms(world.folder.path())));
    return fill();
}

// Rows cost what they cost in a process that has nothing behind it.
double perThousandRows(const wchar_t* whose, int count) {
    const Process process(L'"' + beside(L"bench.exe") + L"\" --memory-of-" + whose + L' ' +
                          std::to_wstring(count));
    return process.exitCode() / (count / 1000.0);
}

}  // namespace

DWORD memoryOfOurRows(int count) {
    return memoryOf(count, [] {
        HiddenWindow parent;
        startup::StartupListControl page(parent.handle(), std::make_unique<startup::ucRun>());
        helmkit::Logger log = helmkit::Logger::create();
        Peak peak;
        page.Init(log);
        return peak.bytes();
    });
}

DWORD memoryOfFloorRows(int count) {
    return memoryOf(count, [] {
        HiddenWindow parent;
        floor::List list;
        list.create(parent.handle());
        Peak peak;
        list.fill(floor::readGeneral());
        return peak.bytes();
    });
}

void memory(const Options& options, Report& report) {
    const int count = options.quick ? 1000 : 10000;
    report.add({.name = "memory",
                .ours = perThousandRows(L"ours", count),
                .floor = perThousandRows(L"floor", count),
                .target = 2,
                .unit = Unit::bytes});
}

}  // namespace bench
