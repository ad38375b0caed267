// The registry as 64-bit Windows has it, whatever the probe itself is built for.
//
// Windows 98 has one view alone. Wine, playing it, forgets the wish for the other view when a key is opened,
// so the probe keeps to the view that its program sees.
#include "tests/e2e/probe/commands.h"
#include "tests/e2e/probe/json.h"

#include <aclapi.h>

#include <cstdio>

namespace probe {
namespace {

void check(LONG status, const char* what) {
    if (status != ERROR_SUCCESS) throw Failure{what, static_cast<DWORD>(status)};
}

HKEY hiveNamed(const std::wstring& name) {
    if (name == L"HKLM") return HKEY_LOCAL_MACHINE;
    if (name == L"HKCU") return HKEY_CURRENT_USER;
    if (name == L"HKCR") return HKEY_CLASSES_ROOT;
    throw Failure{"no such hive"};
}

class Key {
  public:
    Key(const Fields& fields, REGSAM access, bool create = false) {
        HKEY hive = hiveNamed(field(fields, 0));
        const wchar_t* path = field(fields, 1).c_str();
        if (!(::GetVersion() & 0x80000000)) access |= KEY_WOW64_64KEY;
        if (create) {
            check(::RegCreateKeyExW(hive, path, 0, nullptr, 0, access, nullptr, &key_, nullptr),
                  "RegCreateKeyEx");
        } else {
            check(::RegOpenKeyExW(hive, path, 0, access, &key_), "RegOpenKeyEx");
        }
    }
    ~Key() { ::RegCloseKey(key_); }
    Key(const Key&) = delete;
    HKEY get() const { return key_; }

  private:
    HKEY key_ = nullptr;
};

std::string bytesFromHex(const std::wstring& hex) {
    std::string bytes;
    for (size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::wcstoul(hex.substr(i, 2).c_str(), nullptr, 16));
    return bytes;
}

std::string hexFromBytes(const std::string& bytes) {
    std::string hex;
    char pair[3];
    for (unsigned char byte : bytes) {
        std::snprintf(pair, sizeof pair, "%02x", byte);
        hex += pair;
    }
    return hex;
}

// Beyond what a signed number holds.
DWORD typeField(const Fields& fields, size_t index) {
    return std::wcstoul(field(fields, index).c_str(), nullptr, 10);
}

// regcreate <hive> <key>
std::string create(const Fields& fields) {
    Key key(fields, KEY_READ, true);
    return done();
}

// regset <hive> <key> <name> <type number> <data in hexadecimal>
std::string set(const Fields& fields) {
    Key key(fields, KEY_SET_VALUE, true);
    std::string data = bytesFromHex(field(fields, 4));
    // Wine lengthens a string without a NUL at its end when it finds one behind it; here it finds none.
    const auto size = static_cast<DWORD>(data.size());
    data += "\xFF\xFF";
    check(::RegSetValueExW(key.get(), field(fields, 2).c_str(), 0, typeField(fields, 3),
                           reinterpret_cast<const BYTE*>(data.data()), size),
          "RegSetValueEx");
    return done();
}

// regvalues <hive> <key>: name, type and data (hexadecimal) of every value, in the registry's order
std::string values(const Fields& fields) {
    Key key(fields, KEY_QUERY_VALUE);
    std::vector<std::string> list;
    for (DWORD index = 0;; ++index) {
        wchar_t name[16384];
        DWORD nameLength = ARRAYSIZE(name), type = 0, size = 0;
        LONG status = ::RegEnumValueW(key.get(), index, name, &nameLength, nullptr, &type, nullptr, &size);
        if (status == ERROR_NO_MORE_ITEMS) break;
        check(status, "RegEnumValue");
        std::string data(size, '\0');
        check(
            ::RegQueryValueExW(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size),
            "RegQueryValueEx");
        list.push_back(
            object({member("name", quoted(std::wstring_view(name, nameLength))), member("type", type),
                    member("data", quoted(hexFromBytes(data.substr(0, size))))}));
    }
    return object({member("values", array(list))});
}

// regkeys <hive> <key>
std::string keys(const Fields& fields) {
    Key key(fields, KEY_ENUMERATE_SUB_KEYS);
    std::vector<std::string> list;
    wchar_t name[256];
    for (DWORD index = 0, length = 256; ::RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr,
                                                        nullptr, nullptr) == ERROR_SUCCESS;
         ++index, length = 256)
        list.push_back(quoted(std::wstring_view(name, length)));
    return object({member("keys", array(list))});
}

// regdelete <hive> <key> <name>
std::string deleteValue(const Fields& fields) {
    Key key(fields, KEY_SET_VALUE);
    check(::RegDeleteValueW(key.get(), field(fields, 2).c_str()), "RegDeleteValue");
    return done();
}

// regdeletetree <hive> <key> [<subkey>]: everything below the key, which itself stays; or the subkey whole
std::string deleteTree(const Fields& fields) {
    Key key(fields, KEY_ALL_ACCESS);
    check(::RegDeleteTreeW(key.get(), fields.size() > 3 ? fields[3].c_str() : nullptr), "RegDeleteTree");
    return done();
}

// From now on everyone may do the one thing with the key and nobody the other.
std::string restrict(const Fields& fields, DWORD allowed, DWORD denied) {
    Key key(fields, KEY_ALL_ACCESS);
    SID_IDENTIFIER_AUTHORITY world = SECURITY_WORLD_SID_AUTHORITY;
    PSID everyone = nullptr;
    ::AllocateAndInitializeSid(&world, 1, SECURITY_WORLD_RID, 0, 0, 0, 0, 0, 0, 0, &everyone);
    alignas(ACL) BYTE room[256];
    auto* acl = reinterpret_cast<ACL*>(room);
    ::InitializeAcl(acl, sizeof room, ACL_REVISION);
    ::AddAccessDeniedAce(acl, ACL_REVISION, denied, everyone);
    ::AddAccessAllowedAce(acl, ACL_REVISION, allowed | READ_CONTROL | WRITE_DAC, everyone);
    SECURITY_DESCRIPTOR descriptor;
    ::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
    ::SetSecurityDescriptorDacl(&descriptor, TRUE, acl, FALSE);
    LONG status = ::RegSetKeySecurity(key.get(), DACL_SECURITY_INFORMATION, &descriptor);
    ::FreeSid(everyone);
    check(status, "RegSetKeySecurity");
    return done();
}

// regprotect <hive> <key>: everyone may read the key and nobody may write it
std::string protect(const Fields& fields) {
    return restrict(fields, KEY_READ, KEY_SET_VALUE | KEY_CREATE_SUB_KEY | DELETE);
}

// regconceal <hive> <key>: nobody may read the key
std::string conceal(const Fields& fields) {
    return restrict(fields, KEY_WRITE, KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS | KEY_NOTIFY);
}

}  // namespace

void addRegistryCommands(Commands& commands) {
    commands.insert({{L"regcreate", create},
                     {L"regset", set},
                     {L"regvalues", values},
                     {L"regkeys", keys},
                     {L"regdelete", deleteValue},
                     {L"regdeletetree", deleteTree},
                     {L"regprotect", protect},
                     {L"regconceal", conceal}});
}

}  // namespace probe
