#include "win32/system/console.h"

#include <algorithm>

#include "win32/base/error.h"
#include "win32/base/text.h"

namespace win32 {

namespace {

HANDLE handleOf(Stream stream) {
    return ::GetStdHandle(stream == Stream::output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

std::string inCodePage(const std::wstring& text, UINT codePage) {
    const int length = static_cast<int>(text.size());
    const int size = ::WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(size, '\0');
    ::WideCharToMultiByte(codePage, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

LONG writersAtWork = 0;

// Called by Windows in a thread of its own. The default handler, which ends the program, comes next.
BOOL WINAPI waitForWriters(DWORD) {
    while (::InterlockedExchangeAdd(&writersAtWork, 0) > 0) ::Sleep(10);
    return FALSE;
}

}  // namespace

bool isConsole(Stream stream) {
    DWORD mode = 0;
    return ::GetFileType(handleOf(stream)) == FILE_TYPE_CHAR && ::GetConsoleMode(handleOf(stream), &mode);
}

void writeText(Stream stream, const std::wstring& text) {
    writeBytes(stream,
               isConsole(stream) && !text.empty() ? inCodePage(text, ::GetConsoleOutputCP()) : toUtf8(text));
}

void writeBytes(Stream stream, const std::string& bytes) {
    // A console of Windows 9x and NT takes no more than about 30 KB at once.
    const size_t most = 8192;
    for (size_t done = 0; done < bytes.size();) {
        const DWORD count = static_cast<DWORD>(std::min(bytes.size() - done, most));
        DWORD written = 0;
        if (!::WriteFile(handleOf(stream), bytes.data() + done, count, &written, nullptr)) raiseLastError();
        if (written == 0) raiseWin32(ERROR_WRITE_FAULT);
        done += written;
    }
}

NoInterruption::NoInterruption() {
    ::InterlockedIncrement(&writersAtWork);
    ::SetConsoleCtrlHandler(waitForWriters, TRUE);
}

NoInterruption::~NoInterruption() {
    ::InterlockedDecrement(&writersAtWork);
    ::SetConsoleCtrlHandler(waitForWriters, FALSE);
}

}  // namespace win32
