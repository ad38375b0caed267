#include "bench/rounds.h"

#include <algorithm>

#include "win32/base/handle.h"
#include "win32/base/platform.h"

namespace bench {

namespace {

LONGLONG now() {
    LARGE_INTEGER counter;
    ::QueryPerformanceCounter(&counter);
    return counter.QuadPart;
}

double microsecondsSince(LONGLONG begin) {
    LARGE_INTEGER frequency;
    ::QueryPerformanceFrequency(&frequency);
    return 1e6 * static_cast<double>(now() - begin) / static_cast<double>(frequency.QuadPart);
}

double median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// Names an event, which stands in a trace of server calls and tells whose calls follow.
void mark(const wchar_t* text) {
    const win32::OwnedObject event(::CreateEventW(nullptr, FALSE, FALSE, text));
}

}  // namespace

double timed(const std::function<void()>& work) {
    mark(L"QuillonBench begin");
    const LONGLONG begin = now();
    work();
    const double time = microsecondsSince(begin);
    mark(L"QuillonBench end");
    return time;
}

Medians alternate(const std::function<double()>& ours, const std::function<double()>& floor,
                  const Rounds& rounds) {
    ours();
    floor();
    std::vector<double> ourTimes, floorTimes;
    auto ourRound = [&] {
        if (rounds.side == Side::floor) return;
        mark(L"QuillonBench ours");
        ourTimes.push_back(ours());
    };
    auto floorRound = [&] {
        if (rounds.side == Side::ours) return;
        mark(L"QuillonBench floor");
        floorTimes.push_back(floor());
    };
    const LONGLONG begin = now();
    for (int i = 0; i < rounds.least || microsecondsSince(begin) < 1e6 * rounds.seconds; ++i) {
        if (i % 2) ourRound();
        floorRound();
        if (i % 2 == 0) ourRound();
    }
    return {median(ourTimes), median(floorTimes)};
}

Medians compare(const std::function<void()>& ours, const std::function<void()>& floor, const Rounds& rounds) {
    return alternate([&] { return timed(ours); }, [&] { return timed(floor); }, rounds);
}

}  // namespace bench
