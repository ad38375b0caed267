#include "win32/com/com_dispatch.h"

#include <cstring>
#include <map>

#include "win32/com/com_arguments.h"
#include "win32/com/com_server.h"

namespace win32 {

namespace {

struct GuidOrder {
    bool operator()(const GUID& a, const GUID& b) const { return std::memcmp(&a, &b, sizeof a) < 0; }
};

// Kept until the module goes and never given back: the Automation library may have gone before.
ComPtr<ITypeInfo> interfaceInfo(REFIID iid) {
    static auto* known = new std::map<GUID, ITypeInfo*, GuidOrder>();
    ITypeInfo*& info = (*known)[iid];
    if (!info) check(moduleTypeLibrary()->GetTypeInfoOfGuid(iid, &info));
    return info;
}

// The description of an operation, owned.
class Operation {
  public:
    Operation(ComPtr<ITypeInfo> info, DISPID id) : info_(std::move(info)) {
        TYPEATTR* attributes = nullptr;
        check(info_->GetTypeAttr(&attributes));
        UINT count = attributes->cFuncs;
        info_->ReleaseTypeAttr(attributes);
        for (UINT i = 0; i < count && !description_; ++i) {
            check(info_->GetFuncDesc(i, &description_));
            if (description_->memid == id) return;
            info_->ReleaseFuncDesc(std::exchange(description_, nullptr));
        }
    }
    ~Operation() {
        if (description_) info_->ReleaseFuncDesc(description_);
    }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    const FUNCDESC* get() const { return description_; }

  private:
    ComPtr<ITypeInfo> info_;
    FUNCDESC* description_ = nullptr;
};

}  // namespace

HRESULT dispatchTypeInfo(REFIID iid, UINT index, ITypeInfo** info) noexcept {
    if (!info) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return guarded(iid, [&] { *info = interfaceInfo(iid).release(); });
}

HRESULT dispatchIds(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids) noexcept {
    HRESULT answer = E_UNEXPECTED;
    HRESULT outcome = guarded(iid, [&] { answer = interfaceInfo(iid)->GetIDsOfNames(names, count, ids); });
    return FAILED(outcome) ? outcome : answer;
}

HRESULT dispatchInvoke(REFIID iid, IDispatch* object, DISPID id, WORD flags, DISPPARAMS* parameters,
                       VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) noexcept {
    HRESULT answer = E_UNEXPECTED;
    HRESULT outcome = guarded(iid, [&] {
        ComPtr<ITypeInfo> info = interfaceInfo(iid);
        Operation operation(info, id);
        AdaptedArguments adapted(operation.get(), *parameters);
        answer = info->Invoke(object, id, flags, adapted.parameters(), result, exception, wrongArgument);
        if (SUCCEEDED(answer)) adapted.giveBack();
    });
    return FAILED(outcome) ? outcome : answer;
}

}  // namespace win32
