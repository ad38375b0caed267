// Registry keys and values as they are stored.
//
// Results are Win32 error codes, 0 on success; what is absent is ERROR_FILE_NOT_FOUND. Text data (REG_SZ,
// REG_EXPAND_SZ, REG_MULTI_SZ) crosses as UTF-16 little-endian bytes in both flavours, whatever stands in it:
// a terminator may be missing, the byte count odd, NULs anywhere.
//
// A name that does not stand for exactly one value or key on its way to the registry is refused with
// ERROR_INVALID_NAME before anything is read or changed: one with an inner NUL (the native calls can make
// them, the others would end it there and meet another value) and, in the ANSI flavour, one that the code
// page cannot carry or whose "?" stands for several values or keys. Deleting refuses every name that several
// have there, since the code page may also put a letter in the place of another.
#pragma once

#include <string>
#include <vector>

#include "win32/base/handle.h"

namespace win32 {

// On 64-bit Windows a 32-bit program is shown another branch of some keys. `whole` is what the system and
// 64-bit programs see, `own` what this program is shown. Elsewhere the two are the same.
enum class RegistryView { whole, own };

struct RegistryValue {
    DWORD type = REG_NONE;
    std::string data;
};

class RegistryKey {
  public:
    // Backslashes at the end of the path are left out. What was open before is closed.
    LONG open(HKEY root, const std::wstring& path, REGSAM access, RegistryView view = RegistryView::whole);
    // Opens the key itself where it is a link to another (isLink).
    LONG openLink(HKEY root, const std::wstring& path, REGSAM access,
                  RegistryView view = RegistryView::whole);
    // Opens, and makes the key and those above it where they are missing.
    LONG create(HKEY root, const std::wstring& path, REGSAM access, RegistryView view = RegistryView::whole);
    // Opens to write or delete below it: a key that is a link to another is refused with linkRefused, links
    // further up are followed. A missing key is made by the second.
    LONG openPlace(HKEY root, const std::wstring& path, REGSAM access,
                   RegistryView view = RegistryView::whole);
    LONG createPlace(HKEY root, const std::wstring& path, REGSAM access,
                     RegistryView view = RegistryView::whole);
    void close() { key_.reset(); }

    // The name at a position, in the registry's own order; ERROR_NO_MORE_ITEMS after the last. Names are
    // given as they are, also those that the operations below refuse. On failure a value's data is anything.
    LONG subkeyAt(DWORD position, std::wstring& name) const;
    LONG valueNameAt(DWORD position, std::wstring& name) const;
    LONG valueAt(DWORD position, std::wstring& name, RegistryValue& value) const;

    LONG query(const std::wstring& name, RegistryValue& value) const;
    LONG set(const std::wstring& name, DWORD type, const std::string& data) const;
    LONG deleteValue(const std::wstring& name) const;

    // True for a key opened by openLink that leads to another one, or nowhere.
    bool isLink() const { return isLink_; }

    HKEY get() const { return key_.get(); }
    explicit operator bool() const { return static_cast<bool>(key_); }

  private:
    enum class AmbiguousNames { questionMarkOnly, all };
    LONG checkName(const std::wstring& name, AmbiguousNames refused = AmbiguousNames::questionMarkOnly) const;

    bool leadsElsewhere(HKEY root, const std::wstring& path, RegistryView view) const;

    OwnedKey key_;
    bool isLink_ = false;
};

// ERROR_STOPPED_ON_SYMLINK, newer than the headers asked for.
constexpr LONG linkRefused = 681;

// ERROR_INVALID_NAME when, in the ANSI flavour, several keys are listed under the name of this one.
LONG checkSubkey(HKEY root, const std::wstring& path, RegistryView view = RegistryView::whole);

// The whole list; an error other than the end of the list is given back with what was found before it.
LONG subkeyNames(const RegistryKey& key, std::vector<std::wstring>& names);
LONG valueNames(const RegistryKey& key, std::vector<std::wstring>& names);

// Text data in the code page, an odd last byte as it is; data of other types unchanged.
std::string ansiData(DWORD type, const std::string& data);

// True for the errors that say that a key or value is not there.
bool isAbsent(LONG error);

}  // namespace win32
