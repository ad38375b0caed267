#include "bench/figures.h"
#include "bench/processes.h"
#include "win32/files/files.h"

namespace bench {

void size(const Options&, Report& report) {
    double bytes = 0;
    for (const wchar_t* name : {L"Quillon.exe", L"Helmkit.dll", L"QLNCustom.dll"}) {
        bytes += static_cast<double>(win32::FileReader(beside(name)).size());
    }
    report.add({.name = "size", .ours = bytes, .target = 2 << 20, .unit = Unit::bytes});
}

}  // namespace bench
