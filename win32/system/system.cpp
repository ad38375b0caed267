#include "win32/system/system.h"

#include "win32/base/flavour.h"
#include "win32/base/structure_size.h"
#include "win32/system/desktop.h"
#include "win32/system/environment.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace win32 {

namespace {

// Calls `fill(buffer, capacity)` with more and more room. It gives the length written, or, when the room was
// too little, either the length needed (most functions) or the capacity (GetModuleFileName).
template <class F, class Fill>
std::wstring filled(size_t capacity, Fill fill) {
    const size_t longest = 1 << 24;
    while (capacity <= longest) {
        TextBuffer<F> buffer(capacity);
        DWORD length = fill(buffer.data(), buffer.capacity());
        if (length < buffer.capacity()) return buffer.text(length);
        // The ANSI functions have been seen to ask for less than they then need.
        capacity = 2 * (length > capacity ? length : capacity);
    }
    return {};
}

bool askIsRedirected() {
    using IsWow64Process = BOOL(WINAPI*)(HANDLE, BOOL*);
    auto isWow64Process = systemProcedure<IsWow64Process>(L"kernel32.dll", "IsWow64Process");
    BOOL answer = FALSE;
    return isWow64Process && isWow64Process(::GetCurrentProcess(), &answer) && answer;
}

}  // namespace

void* systemAddress(const wchar_t* library, const char* name) {
    return withFlavour([&](auto f) -> void* {
        // One that is loaded is taken as it is: with the file redirection off, its path would name another
        // file.
        HMODULE module = f.getModuleHandle(f.in(library));
        if (!module) module = f.loadLibrary(f.in(systemFolder() + L'\\' + library));
        return module ? reinterpret_cast<void*>(::GetProcAddress(module, name)) : nullptr;
    });
}

bool isRedirected() {
    static const bool answer = sizeof(void*) == 4 && askIsRedirected();
    return answer;
}

std::wstring expandEnvironment(const std::wstring& text) {
    std::wstring result;
    size_t at = 0;
    for (;;) {
        size_t begin = text.find(L'%', at);
        size_t end = begin == std::wstring::npos ? begin : text.find(L'%', begin + 1);
        if (end == std::wstring::npos) return result.append(text, at);
        const auto value = findEnvironmentVariable(text.substr(begin + 1, end - begin - 1));
        // The mark after an unknown name may begin another reference.
        result.append(text, at, (value ? begin : end) - at);
        if (value) result += *value;
        at = value ? end + 1 : end;
    }
}

std::wstring windowsFolder() {
    return withFlavour([]<class F>(F f) {
        using GetFolder = UINT(WINAPI*)(typename F::Char*, UINT);
        static const auto getSystemFolder = systemProcedure<GetFolder>(
            L"kernel32.dll", f.isWide ? "GetSystemWindowsDirectoryW" : "GetSystemWindowsDirectoryA");
        return filled<F>(MAX_PATH, [&](auto* buffer, DWORD room) {
            return getSystemFolder ? getSystemFolder(buffer, room) : f.getWindowsDirectory(buffer, room);
        });
    });
}

std::wstring systemFolder() {
    return withFlavour([]<class F>(F f) {
        return filled<F>(MAX_PATH,
                         [&](auto* buffer, DWORD room) { return f.getSystemDirectory(buffer, room); });
    });
}

std::wstring tempFolder() {
    return withFlavour([]<class F>(F f) {
        return filled<F>(MAX_PATH, [&](auto* buffer, DWORD room) { return f.getTempPath(room, buffer); });
    });
}

HMODULE thisModule() {
    return reinterpret_cast<HMODULE>(&__ImageBase);
}

std::wstring modulePath(HMODULE module) {
    return withFlavour([&]<class F>(F f) {
        return filled<F>(MAX_PATH,
                         [&](auto* buffer, DWORD room) { return f.getModuleFileName(module, buffer, room); });
    });
}

std::wstring moduleFolder(HMODULE module) {
    std::wstring path = modulePath(module);
    size_t end = path.rfind(L'\\');
    return end == std::wstring::npos ? std::wstring() : path.substr(0, end);
}

OsVersion osVersion() {
    OsVersion version = {majorVersion(), minorVersion(), 0, isNtFamily() ? 2ul : 1ul, {}, {}};
    withFlavour([&]<class F>(F f) {
        typename F::OsVersionInfo info = {};
        info.dwOSVersionInfoSize = structureSize<typename F::OsVersionInfo>();
        if (!f.getVersionEx(&info)) return;
        // On Windows 95, 98 and Me the high word repeats the version number.
        version.build = info.dwBuildNumber & 0xFFFF;
        version.servicePack =
            f.out(info.szCSDVersion, std::char_traits<typename F::Char>::length(info.szCSDVersion));
    });
    version.version = std::to_wstring(version.major) + L'.' + std::to_wstring(version.minor) + L'.' +
                      std::to_wstring(version.build);
    return version;
}

}  // namespace win32
