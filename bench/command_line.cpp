#include "bench/page.h"
#include "files/CFileChecker.h"

namespace bench {

namespace {

// Commands as real machines have them, made many by numbers that differ.
const wchar_t* const templates[] = {
    L"\"C:\\Program Files\\Common Files\\Java\\Java Update\\jusched#.exe\"",
    L"\"C:\\Program Files (x86)\\Steam\\steam#.exe\" -silent",
    L"C:\\PROGRA~1\\MICROS~2\\Office10\\OSA#.EXE -b -l",
    L"C:\\Program Files\\Windows Defender\\MSASCui#.exe -hide",
    L"C:\\WINDOWS\\system32\\ctfmon#.exe",
    L"%SystemRoot%\\system32\\svchost.exe -k group#",
    L"%ProgramFiles%\\Example Company\\Example Program\\updater#.exe /background",
    L"RUNDLL32.EXE C:\\WINDOWS\\system32\\NvCpl#.dll,NvStartup",
    L"rundll32.exe bthprops#.cpl,,BluetoothAuthenticationAgent",
    L"\"C:\\Users\\Somebody\\AppData\\Local\\Discord\\Update.exe\" --processStart Discord#.exe",
    L"SynTPEnh#.exe",
    L"soundman#",
    L"hkcmd#.exe /startup",
    L"\\SystemRoot\\System32\\drivers\\filter#.sys",
    L"system32\\DRIVERS\\usb#.sys",
    L"C:\\Program Files\\Example\\viewer#.exe \"%1\" -open",
};

std::vector<std::wstring> commands(int count) {
    std::vector<std::wstring> texts;
    for (int i = 0; i < count; ++i) {
        std::wstring text = templates[i % std::size(templates)];
        text.replace(text.find(L'#'), 1, std::to_wstring(i / std::size(templates)));
        texts.push_back(text);
    }
    return texts;
}

std::wstring loweredCopy(const std::wstring& text) {
    std::wstring copy = text;
    for (wchar_t& c : copy) {
        if (c >= L'A' && c <= L'Z') c += L'a' - L'A';
    }
    return copy;
}

// The length of every answer is used, so that none can be left out.
template <class Work>
void onAll(const std::vector<std::wstring>& texts, Work work) {
    static volatile size_t lengths;
    for (const std::wstring& text : texts) lengths = lengths + work(text).size();
}

}  // namespace

void commandLine(const Options& options, Report& report) {
    const std::vector<std::wstring> texts = commands(10000);
    const files::CFileChecker checker;
    const Medians medians = compare(
        [&] { onAll(texts, [&](const auto& text) { return checker.GetFileNameFromCommandLine(text); }); },
        [&] { onAll(texts, loweredCopy); }, roundsFor(options, 5));
    report.add({.name = "command-line", .ours = medians.ours, .floor = medians.floor, .target = 4});
}

}  // namespace bench
