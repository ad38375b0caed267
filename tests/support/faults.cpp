#include "tests/support/faults.h"

#include <cstring>
#include <vector>

#include <winver.h>

// Looked up at run time; the headers for programs do not tell it.
extern "C" LONG WINAPI NtDeleteKey(HANDLE key);

namespace {

struct {
    bool isArmed;
    size_t number, calls;
    DWORD error;
    const char* failed;
} fault;

// 0 for a call that goes through.
DWORD errorOfCall(const char* function) {
    if (!fault.isArmed || ++fault.calls != fault.number) return ERROR_SUCCESS;
    fault.failed = function;
    ::SetLastError(fault.error);
    return fault.error;
}

// What a function gives when it fails.
struct Status {
    template <class Result>
    static Result of(DWORD error) {
        return static_cast<Result>(error);
    }
};
struct Number {
    template <class Result>
    static Result of(DWORD error) {
        return static_cast<Result>(HRESULT_FROM_WIN32(error));
    }
};
struct NtStatus {
    template <class Result>
    static Result of(DWORD) {
        return static_cast<Result>(0xC0000022);  // STATUS_ACCESS_DENIED
    }
};
struct Null {
    template <class Result>
    static Result of(DWORD) {
        return Result{};
    }
};
struct None {
    template <class Result>
    static Result of(DWORD) {
        return (Result)-1;
    }
};

// X(function, what it gives when it fails)
#define FAILING_FUNCTIONS(X)         \
    X(RegOpenKeyExA, Status)         \
    X(RegOpenKeyExW, Status)         \
    X(RegCreateKeyExA, Status)       \
    X(RegCreateKeyExW, Status)       \
    X(RegQueryValueExA, Status)      \
    X(RegQueryValueExW, Status)      \
    X(RegEnumKeyExA, Status)         \
    X(RegEnumKeyExW, Status)         \
    X(RegEnumValueA, Status)         \
    X(RegEnumValueW, Status)         \
    X(RegSetValueExA, Status)        \
    X(RegSetValueExW, Status)        \
    X(RegDeleteValueA, Status)       \
    X(RegDeleteValueW, Status)       \
    X(RegDeleteKeyA, Status)         \
    X(RegDeleteKeyW, Status)         \
    X(CreateFileA, None)             \
    X(CreateFileW, None)             \
    X(ReadFile, Null)                \
    X(WriteFile, Null)               \
    X(FlushFileBuffers, Null)        \
    X(GetFileSize, None)             \
    X(SetFilePointer, None)          \
    X(GetFileAttributesA, None)      \
    X(GetFileAttributesW, None)      \
    X(SetFileAttributesA, Null)      \
    X(SetFileAttributesW, Null)      \
    X(FindFirstFileA, None)          \
    X(FindFirstFileW, None)          \
    X(FindNextFileA, Null)           \
    X(FindNextFileW, Null)           \
    X(SearchPathA, Null)             \
    X(SearchPathW, Null)             \
    X(CreateDirectoryA, Null)        \
    X(CreateDirectoryW, Null)        \
    X(DeleteFileA, Null)             \
    X(DeleteFileW, Null)             \
    X(MoveFileA, Null)               \
    X(MoveFileW, Null)               \
    X(VirtualAlloc, Null)            \
    X(SysAllocStringLen, Null)       \
    X(SafeArrayCreateVector, Null)   \
    X(CoCreateInstance, Number)      \
    X(MoveFileExW, Null)             \
    X(ReplaceFileW, Null)            \
    X(NtDeleteKey, NtStatus)         \
    X(GetFileVersionInfoSizeA, Null) \
    X(GetFileVersionInfoSizeW, Null) \
    X(GetFileVersionInfoA, Null)     \
    X(GetFileVersionInfoW, Null)

template <class Name, class Signature>
struct Failing;

template <class Function, class Result, class... Arguments>
struct Failing<Function, Result(WINAPI*)(Arguments...)> {
    static inline Result(WINAPI* real)(Arguments...) = nullptr;
    static Result WINAPI instead(Arguments... arguments) {
        if (const DWORD error = errorOfCall(Function::name))
            return Function::Failure::template of<Result>(error);
        return real(arguments...);
    }
};

#define DESCRIBE(function, failure)                                     \
    struct function##Failing {                                          \
        static constexpr const char* name = #function;                  \
        using Failure = failure;                                        \
        using Hook = Failing<function##Failing, decltype(&::function)>; \
    };
FAILING_FUNCTIONS(DESCRIBE)

struct StandIn {
    const char* name;
    void* instead;
    void** real;
};

std::vector<StandIn>& standIns() {
    static std::vector<StandIn> all = {
#define ROW(function, failure)                                              \
    {#function, reinterpret_cast<void*>(&function##Failing::Hook::instead), \
     reinterpret_cast<void**>(&function##Failing::Hook::real)},
        FAILING_FUNCTIONS(ROW)};
    return all;
}

decltype(&::GetProcAddress) realGetProcAddress = nullptr;

// What stands in for a function; the function itself where nothing does.
void* inPlaceOf(const char* name, void* function) {
    for (const StandIn& other : standIns()) {
        if (!function || std::strcmp(name, other.name) != 0) continue;
        *other.real = function;
        return other.instead;
    }
    return function;
}

FARPROC WINAPI getProcAddress(HMODULE module, const char* name) {
    const FARPROC found = realGetProcAddress(module, name);
    if (IS_INTRESOURCE(name)) return found;
    return reinterpret_cast<FARPROC>(inPlaceOf(name, reinterpret_cast<void*>(found)));
}

// The types of the 64-bit headers and the 32-bit ones differ.
template <class Address>
void replace(Address& import, const char* name) {
    void* const function = reinterpret_cast<void*>(import);
    void* instead = inPlaceOf(name, function);
    if (!std::strcmp(name, "GetProcAddress")) {
        realGetProcAddress = reinterpret_cast<decltype(realGetProcAddress)>(function);
        instead = reinterpret_cast<void*>(&getProcAddress);
    }
    if (instead == function) return;
    DWORD before = 0;
    ::VirtualProtect(&import, sizeof import, PAGE_READWRITE, &before);
    import = reinterpret_cast<Address>(instead);
    ::VirtualProtect(&import, sizeof import, before, &before);
}

}  // namespace

void makeFailing(HMODULE module) {
    auto* base = reinterpret_cast<BYTE*>(module);
    const auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
    for (; library->FirstThunk; ++library) {
        const auto* names = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* functions = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++functions) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* named = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            replace(functions->u1.Function, reinterpret_cast<const char*>(named->Name));
        }
    }
}

void standIn(const char* name, void* instead, void** real) {
    standIns().push_back({name, instead, real});
}

Fault::Fault(size_t number, DWORD error) {
    fault = {true, number, 0, error, nullptr};
}

Fault::~Fault() {
    fault.isArmed = false;
}

size_t Fault::calls() {
    return fault.calls;
}

const char* Fault::failed() {
    return fault.failed;
}
