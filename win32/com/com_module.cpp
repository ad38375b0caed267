#include "win32/com/com_module.h"

#include "win32/com/com_server.h"

namespace win32 {

namespace {

class ClassFactory : public SingleInterfaceObject<IClassFactory, &IID_IClassFactory> {
  public:
    explicit ClassFactory(const ComClass& served) : class_(served) {}

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID wanted, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        return outer ? CLASS_E_NOAGGREGATION : class_.create(wanted, object);
    }
    STDMETHODIMP LockServer(BOOL lock) override {
        lock ? addModuleUse() : removeModuleUse();
        return S_OK;
    }

  private:
    const ComClass& class_;
};

}  // namespace

HRESULT getClassObject(const ComModule& module, REFCLSID clsid, REFIID iid, void** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    for (size_t i = 0; i < module.count; ++i) {
        if (*module.classes[i].clsid != clsid) continue;
        HRESULT answer = E_UNEXPECTED;
        HRESULT outcome = guarded(iid, [&] {
            auto factory = ComPtr<ClassFactory>::adopt(new ClassFactory(module.classes[i]));
            answer = factory->QueryInterface(iid, object);
        });
        return FAILED(outcome) ? outcome : answer;
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT canUnloadNow() noexcept {
    return moduleUses() == 0 ? S_OK : S_FALSE;
}

}  // namespace win32
