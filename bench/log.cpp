#include "bench/page.h"
#include "helmkit/client/logger.h"

namespace bench {

namespace {

const std::wstring source = L"ucRun.RefreshList";

std::vector<std::wstring> texts(int count) {
    std::vector<std::wstring> result;
    for (int i = 0; i < count; ++i) {
        result.push_back(L"Run: 'The program number " + std::to_wstring(i) +
                         L"', 'Company', 'C:\\Program Files\\Example\\program.exe'");
    }
    return result;
}

// The lines of a log file, each with its line end.
std::vector<std::string> linesOf(const std::wstring& path) {
    const std::string bytes = TempFolder::read(path);
    std::vector<std::string> lines;
    for (size_t at = 0; at < bytes.size();) {
        const size_t end = bytes.find('\n', at) + 1;
        lines.push_back(bytes.substr(at, end - at));
        at = end;
    }
    return lines;
}

// Each line is one write to the end of a file that others may append to as well: that is what a log is.
void writePlainly(const std::wstring& path, const std::vector<std::string>& lines) {
    const win32::OwnedFile file(::CreateFileW(path.c_str(), FILE_APPEND_DATA | SYNCHRONIZE,
                                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                              FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    for (const std::string& line : lines) {
        ::WriteFile(file.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    }
}

void writeOurs(const TempFolder& folder, const std::vector<std::wstring>& lines) {
    const helmkit::Logger log = helmkit::Logger::create();
    log.OpenLogs(folder.file(L"full.log"), folder.file(L"short.log"));
    for (const std::wstring& line : lines) log.WriteLog(0, line, helmkit::information, source);
}

}  // namespace

void log(const Options& options, Report& report) {
    const TempFolder folder;
    const std::vector<std::wstring> lines = texts(options.quick ? 1000 : 100000);
    writeOurs(folder, lines);
    const std::vector<std::string> bytes = linesOf(folder.file(L"full.log"));
    REQUIRE(bytes.size() == lines.size());
    auto onNewFile = [&](const std::wstring& name, const std::function<void()>& work) {
        ::DeleteFileW(folder.file(name).c_str());
        return timed(work);
    };
    const Medians medians =
        alternate([&] { return onNewFile(L"full.log", [&] { writeOurs(folder, lines); }); },
                  [&] {
                      const std::wstring name = L"plain.log";
                      return onNewFile(name, [&] { writePlainly(folder.file(name), bytes); });
                  },
                  roundsFor(options));
    report.add({.name = "log", .ours = medians.ours, .floor = medians.floor, .target = 1.5});
}

}  // namespace bench
