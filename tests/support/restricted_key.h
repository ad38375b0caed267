// A key of the fixture's that grants nobody more than some rights, for as long as the object lives.
#pragma once

#include <string>

#include <doctest/doctest.h>

#include "win32/base/handle.h"

class RestrictedKey {
  public:
    RestrictedKey(HKEY hive, const std::wstring& path, ACCESS_MASK granted) {
        HKEY key = nullptr;
        REQUIRE(::RegOpenKeyExW(hive, path.c_str(), 0, WRITE_DAC, &key) == ERROR_SUCCESS);
        key_.reset(key);
        alignas(ACL) BYTE room[64];
        ACL* list = reinterpret_cast<ACL*>(room);
        SID everyone = {SID_REVISION, 1, SECURITY_WORLD_SID_AUTHORITY, {SECURITY_WORLD_RID}};
        REQUIRE(::InitializeAcl(list, sizeof room, ACL_REVISION));
        REQUIRE(::AddAccessAllowedAce(list, ACL_REVISION, granted, &everyone));
        setList(list);
    }
    ~RestrictedKey() { setList(nullptr); }
    RestrictedKey(const RestrictedKey&) = delete;
    RestrictedKey& operator=(const RestrictedKey&) = delete;

  private:
    void setList(ACL* list) {
        SECURITY_DESCRIPTOR descriptor;
        ::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
        ::SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE);
        CHECK(::RegSetKeySecurity(key_.get(), DACL_SECURITY_INFORMATION, &descriptor) == ERROR_SUCCESS);
    }

    win32::OwnedKey key_;
};
