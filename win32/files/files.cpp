#include "win32/files/files.h"

#include <algorithm>

#include "win32/base/error.h"
#include "win32/base/flavour.h"
#include "win32/system/system.h"

namespace win32 {

namespace {

const DWORD notThere = INVALID_FILE_ATTRIBUTES;
const DWORD pathRoom = 2000;
const DWORD patience = 1000;  // milliseconds

OwnedFile opened(const std::wstring& path, DWORD access, DWORD disposition,
                 DWORD flags = FILE_ATTRIBUTE_NORMAL) {
    NoFileRedirection off;
    HANDLE file = INVALID_HANDLE_VALUE;
    DWORD error = ERROR_INVALID_NAME;
    if (isExactName(path)) {
        file = withFlavour([&](auto f) {
            return noneIfNull(f.createFile(f.in(path), access, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE},
                                           nullptr, disposition, flags, nullptr));
        });
        error = ::GetLastError();
    }
    if (file == INVALID_HANDLE_VALUE) raiseWin32(error, path);
    return OwnedFile(file);
}

uint64_t sizeOf(HANDLE file, const std::wstring& path) {
    DWORD high = 0;
    ::SetLastError(ERROR_SUCCESS);
    DWORD low = ::GetFileSize(file, &high);
    if (low == INVALID_FILE_SIZE && ::GetLastError() != ERROR_SUCCESS) raiseLastError(path);
    return static_cast<uint64_t>(high) << 32 | low;
}

// What one has to itself while it lives. Where another keeps it longer than any write takes, or it is none,
// it is done without.
class Turn {
  public:
    explicit Turn(OwnedObject& turns) : turns_(turns) {
        const DWORD answer = turns_ ? ::WaitForSingleObject(turns_.get(), patience) : WAIT_FAILED;
        if (answer != WAIT_OBJECT_0 && answer != WAIT_ABANDONED) turns_.reset();
    }
    Turn(const Turn&) = delete;
    ~Turn() {
        if (turns_) ::ReleaseMutex(turns_.get());
    }

  private:
    OwnedObject& turns_;
};

}  // namespace

NoFileRedirection::NoFileRedirection() {
    using Disable = BOOL(WINAPI*)(void**);
    static const auto disable =
        isRedirected() ? systemProcedure<Disable>(L"kernel32.dll", "Wow64DisableWow64FsRedirection")
                       : nullptr;
    isOff_ = disable && disable(&before_);
}

NoFileRedirection::~NoFileRedirection() {
    if (!isOff_) return;
    using Revert = BOOL(WINAPI*)(void*);
    // Looked up in a loaded library: nothing may be loaded while the redirection is off.
    static const auto revert = reinterpret_cast<Revert>(reinterpret_cast<void*>(
        ::GetProcAddress(::GetModuleHandleA("kernel32.dll"), "Wow64RevertWow64FsRedirection")));
    DWORD error = ::GetLastError();
    if (revert) revert(before_);
    ::SetLastError(error);
}

DWORD attributesOf(const std::wstring& path) {
    if (!isExactName(path)) return notThere;
    NoFileRedirection off;
    return withFlavour([&](auto f) { return f.getFileAttributes(f.in(path)); });
}

bool fileExists(const std::wstring& path) {
    DWORD attributes = attributesOf(path);
    return attributes != notThere && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

void createFolder(const std::wstring& path, Links links) {
    if (!isExactName(path)) raiseWin32(ERROR_INVALID_NAME, path);
    NoFileRedirection off;
    if (withFlavour([&](auto f) { return f.createDirectory(f.in(path), nullptr); })) return;
    DWORD error = ::GetLastError();
    DWORD attributes = attributesOf(path);
    if (attributes == notThere || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) raiseWin32(error, path);
    if (links == Links::refused && (attributes & FILE_ATTRIBUTE_REPARSE_POINT))
        raiseWin32(ERROR_ACCESS_DENIED, path);
}

bool createNewFile(const std::wstring& path) {
    try {
        opened(path, GENERIC_WRITE, CREATE_NEW);
        return true;
    } catch (const Error&) {
        // Windows versions differ in how they tell that the name is taken.
        if (attributesOf(path) == notThere) throw;
        return false;
    }
}

FileReader::FileReader(const std::wstring& path)
    : path_(path), file_(opened(path, GENERIC_READ, OPEN_EXISTING)), size_(sizeOf(file_.get(), path)) {}

void FileReader::skipTo(uint64_t offset) {
    LONG high = static_cast<LONG>(offset >> 32);
    ::SetLastError(ERROR_SUCCESS);
    DWORD low = ::SetFilePointer(file_.get(), static_cast<LONG>(offset), &high, FILE_BEGIN);
    if (low == INVALID_SET_FILE_POINTER && ::GetLastError() != ERROR_SUCCESS) raiseLastError(path_);
}

size_t FileReader::read(void* bytes, size_t count) {
    const size_t most = 1 << 20;
    size_t done = 0;
    while (done < count) {
        DWORD got = 0;
        DWORD wanted = static_cast<DWORD>(std::min(count - done, most));
        if (!::ReadFile(file_.get(), static_cast<char*>(bytes) + done, wanted, &got, nullptr))
            raiseLastError(path_);
        if (got == 0) break;
        done += got;
    }
    return done;
}

// The right to append alone makes every write go to the end; Windows 9x knows no such right.
AppendFile::AppendFile(const std::wstring& path, Links links) : path_(path) {
    const bool isNt = flavour() == Flavour::wide, refusesLinks = isNt && links == Links::refused;
    // Opened as itself, a link cannot be exchanged between the look at it and the first line.
    file_ = opened(path, isNt ? FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE : GENERIC_WRITE,
                   OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | (refusesLinks ? FILE_FLAG_OPEN_REPARSE_POINT : 0));
    BY_HANDLE_FILE_INFORMATION found;
    if (refusesLinks && (!::GetFileInformationByHandle(file_.get(), &found) ||
                         (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))) {
        raiseWin32(ERROR_ACCESS_DENIED, path);
    }
    // Windows 95, 98 and Me go to the end and write in two steps: between them another run's line would be
    // written over.
    if (!isNt) turns_.reset(::CreateMutexA(nullptr, FALSE, "Quillon appends"));
}

void AppendFile::write(const std::string& bytes) {
    const Turn turn(turns_);
    if (flavour() == Flavour::ansi) ::SetFilePointer(file_.get(), 0, nullptr, FILE_END);
    DWORD size = static_cast<DWORD>(bytes.size());
    DWORD written = 0;
    if (!::WriteFile(file_.get(), bytes.data(), size, &written, nullptr)) raiseLastError(path_);
    if (written != size) raiseWin32(ERROR_DISK_FULL, path_);
}

std::wstring searchPath(const std::wstring& name) {
    if (!isExactName(name)) return {};
    NoFileRedirection off;
    return withFlavour([&]<class F>(F f) {
        TextBuffer<F> buffer(pathRoom);
        typename F::Char* file = nullptr;
        DWORD length = f.searchPath(nullptr, f.in(name), nullptr, pathRoom, buffer.data(), &file);
        return length < pathRoom ? buffer.text(length) : std::wstring();
    });
}

std::wstring longPath(const std::wstring& path) {
    if (!isExactName(path)) return {};
    return withFlavour([&]<class F>(F f) {
        NoFileRedirection off;
        TextBuffer<F> buffer(pathRoom);
        DWORD length = f.getLongPathName(f.in(path), buffer.data(), pathRoom);
        return length < pathRoom ? buffer.text(length) : std::wstring();
    });
}

}  // namespace win32
