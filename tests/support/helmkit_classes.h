// Helmkit's classes, offered to this process from the library's inside, so that callers make them by class as
// the program does, without the DLL.
#pragma once

#include <vector>

#include <doctest/doctest.h>

#include "helmkit/classes.h"
#include "helmkit/client/shared_services.h"
#include "win32/com/com.h"

class HelmkitClasses {
  public:
    HelmkitClasses() {
        for (size_t i = 0; i < helmkit::comModule().count; ++i) offer(*helmkit::comModule().classes[i].clsid);
    }
    ~HelmkitClasses() { revoke(); }
    HelmkitClasses(const HelmkitClasses&) = delete;
    HelmkitClasses& operator=(const HelmkitClasses&) = delete;

    void offer(REFCLSID clsid, const win32::ComModule& module = helmkit::comModule()) {
        win32::ComPtr<IUnknown> factory;
        REQUIRE(win32::getClassObject(module, clsid, IID_IUnknown, reinterpret_cast<void**>(factory.out())) ==
                S_OK);
        DWORD cookie = 0;
        REQUIRE(::CoRegisterClassObject(clsid, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                        &cookie) == S_OK);
        cookies_.push_back(cookie);
    }
    // As if the library were missing.
    void revoke() {
        helmkit::releaseSharedServices();
        for (DWORD cookie : cookies_) ::CoRevokeClassObject(cookie);
        cookies_.clear();
    }

  private:
    std::vector<DWORD> cookies_;
};
