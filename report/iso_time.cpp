#include "report/iso_time.h"

#include <chrono>

namespace report {

namespace {

std::wstring digits(int number, size_t count) {
    std::wstring text = std::to_wstring(number);
    return text.size() < count ? std::wstring(count - text.size(), L'0') + text : text;
}

}  // namespace

std::wstring isoTime(int64_t unixTime) {
    const std::chrono::sys_seconds moment{std::chrono::seconds(unixTime)};
    const auto midnight = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day day{midnight};
    const std::chrono::hh_mm_ss time{moment - midnight};
    return digits(static_cast<int>(day.year()), 4) + L'-' +
           digits(static_cast<int>(static_cast<unsigned>(day.month())), 2) + L'-' +
           digits(static_cast<int>(static_cast<unsigned>(day.day())), 2) + L'T' +
           digits(static_cast<int>(time.hours().count()), 2) + L':' +
           digits(static_cast<int>(time.minutes().count()), 2) + L':' +
           digits(static_cast<int>(time.seconds().count()), 2) + L'Z';
}

}  // namespace report
