#include "win32/files/sha256.h"

#include <vector>

#include "win32/base/ascii.h"
#include "win32/base/flavour.h"
#include "win32/base/hex.h"
#include "win32/files/files.h"
#include "win32/files/local_files.h"
#include "win32/system/system.h"

#include <wincrypt.h>

namespace win32 {

namespace {

const DWORD rsaAndAes = 24, sha256 = 0x800C;
const DWORD verifyContext = 0xF0000000;
const DWORD digestSize = 32, chunk = 1 << 16;

class Hash {
  public:
    Hash() {
        // No text is passed: the ANSI form serves every Windows.
        if (!::CryptAcquireContextA(&provider_, nullptr, nullptr, rsaAndAes, verifyContext)) provider_ = 0;
        if (provider_ && !::CryptCreateHash(provider_, sha256, 0, 0, &hash_)) hash_ = 0;
    }
    ~Hash() {
        if (hash_) ::CryptDestroyHash(hash_);
        if (provider_) ::CryptReleaseContext(provider_, 0);
    }
    Hash(const Hash&) = delete;
    Hash& operator=(const Hash&) = delete;

    explicit operator bool() const { return hash_ != 0; }
    bool add(const BYTE* bytes, DWORD count) { return ::CryptHashData(hash_, bytes, count, 0); }
    std::wstring digits() const {
        BYTE digest[digestSize] = {};
        DWORD size = sizeof digest;
        if (!::CryptGetHashParam(hash_, HP_HASHVAL, digest, &size, 0) || size != sizeof digest) return {};
        std::wstring text;
        for (BYTE byte : digest) appendHex(text, byte, 2);
        return text;
    }

  private:
    HCRYPTPROV provider_ = 0;
    HCRYPTHASH hash_ = 0;
};

OwnedFile opened(const std::wstring& path) {
    if (!isExactName(path)) return OwnedFile();
    NoFileRedirection off;
    return OwnedFile(withFlavour([&](auto f) {
        return noneIfNull(f.createFile(f.in(path), DWORD{GENERIC_READ},
                                       DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE}, nullptr,
                                       DWORD{OPEN_EXISTING}, DWORD{FILE_FLAG_SEQUENTIAL_SCAN}, nullptr));
    }));
}

// A symbolic link (Windows Vista and later) on a local drive may lead to another machine.
bool isElsewhere(HANDLE file) {
    using GetFinalPathName = DWORD(WINAPI*)(HANDLE, wchar_t*, DWORD, DWORD);
    static const auto getFinalPathName =
        systemProcedure<GetFinalPathName>(L"kernel32.dll", "GetFinalPathNameByHandleW");
    if (!getFinalPathName) return false;
    const DWORD longestPath = 33000;
    std::wstring path(longestPath, L'\0');
    const DWORD length = getFinalPathName(file, path.data(), longestPath, 0);
    path.resize(length < longestPath ? length : 0);
    return beginsWith(path, L"\\\\?\\UNC\\");
}

bool addWhole(Hash& hash, HANDLE file) {
    std::vector<BYTE> bytes(chunk);
    DWORD count = 0;
    while (::ReadFile(file, bytes.data(), chunk, &count, nullptr)) {
        if (count == 0) return true;
        if (!hash.add(bytes.data(), count)) return false;
    }
    return false;
}

}  // namespace

std::wstring sha256OfFile(const std::wstring& path) {
    if (!isLocal(path)) return {};
    Hash hash;
    if (!hash) return {};
    const OwnedFile file = opened(path);
    if (!file || isElsewhere(file.get())) return {};
    return addWhole(hash, file.get()) ? hash.digits() : std::wstring();
}

}  // namespace win32
