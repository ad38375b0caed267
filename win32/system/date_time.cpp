#include "win32/system/date_time.h"

#include "win32/base/flavour.h"

namespace win32 {

namespace {

// `pattern` may be empty: then the flags choose one of the locale's own forms.
std::wstring dateText(const SYSTEMTIME& moment, DWORD flags, const std::wstring& pattern) {
    return withFlavour([&]<class F>(F f) {
        TextBuffer<F> buffer(128);
        auto format = f.in(pattern);
        int written = pattern.empty()
                          ? f.getDateFormat(LOCALE_USER_DEFAULT, flags, &moment, nullptr, buffer.data(), 128)
                          : f.getDateFormat(LOCALE_USER_DEFAULT, flags, &moment,
                                            static_cast<const typename F::Char*>(format), buffer.data(), 128);
        return buffer.text(written > 0 ? written - 1 : 0);
    });
}

std::wstring timeText(const SYSTEMTIME& moment) {
    return withFlavour([&]<class F>(F f) {
        TextBuffer<F> buffer(128);
        int written = f.getTimeFormat(LOCALE_USER_DEFAULT, DWORD{0}, &moment, nullptr, buffer.data(), 128);
        return buffer.text(written > 0 ? written - 1 : 0);
    });
}

std::wstring twoDigits(WORD number) {
    return {static_cast<wchar_t>(L'0' + number / 10 % 10), static_cast<wchar_t>(L'0' + number % 10)};
}

}  // namespace

std::wstring shortDateLongTime(const SYSTEMTIME& moment) {
    return dateText(moment, DATE_SHORTDATE, {}) + L" " + timeText(moment);
}

std::wstring fileNameDateTime(const SYSTEMTIME& moment) {
    return dateText(moment, 0, L"MMM dd, yyyy") + L" " + twoDigits(moment.wHour) + L"-" +
           twoDigits(moment.wMinute) + L"-" + twoDigits(moment.wSecond);
}

SYSTEMTIME secondsBefore(const SYSTEMTIME& moment, DWORD seconds) {
    FILETIME fileTime;
    ::SystemTimeToFileTime(&moment, &fileTime);
    ULARGE_INTEGER ticks;
    ticks.LowPart = fileTime.dwLowDateTime;
    ticks.HighPart = fileTime.dwHighDateTime;
    ticks.QuadPart -= ULONGLONG{seconds} * 10000000;  // in steps of 100 nanoseconds
    fileTime.dwLowDateTime = ticks.LowPart;
    fileTime.dwHighDateTime = ticks.HighPart;
    SYSTEMTIME result;
    ::FileTimeToSystemTime(&fileTime, &result);
    return result;
}

}  // namespace win32
