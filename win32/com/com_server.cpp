#include "win32/com/com_server.h"

#include "win32/system/system.h"

namespace win32 {

namespace {

LONG uses = 0;

}  // namespace

LONG moduleUses() {
    return uses;
}
void addModuleUse() {
    ::InterlockedIncrement(&uses);
}
void removeModuleUse() {
    ::InterlockedDecrement(&uses);
}

ComPtr<ITypeLib> moduleTypeLibrary() {
    // With a full path LoadTypeLib does not register what it loads.
    BString path(modulePath(thisModule()));
    ComPtr<ITypeLib> library;
    check(::LoadTypeLib(path.get(), library.out()));
    return library;
}

HRESULT reportCurrentError(REFIID iid) noexcept {
    const Error error = currentError();
    try {
        ComPtr<ICreateErrorInfo> creator;
        if (SUCCEEDED(::CreateErrorInfo(creator.out()))) {
            BString description(error.description);
            creator->SetGUID(iid);
            creator->SetDescription(description.get());
            if (auto info = creator.as<IErrorInfo>(IID_IErrorInfo)) ::SetErrorInfo(0, info.get());
        }
    } catch (...) {
        // No room to describe it.
    }
    return error.number;
}

}  // namespace win32
