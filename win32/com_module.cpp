#include "win32/com_module.h"

#include "win32/com_server.h"

namespace win32 {

namespace {

class ClassFactory : public IClassFactory {
  public:
    explicit ClassFactory(const ComClass& served) : class_(served) { addModuleUse(); }
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    STDMETHODIMP QueryInterface(REFIID wanted, void** object) override {
        if (!object) return E_POINTER;
        bool isOurs = wanted == IID_IUnknown || wanted == IID_IClassFactory;
        *object = isOurs ? this : nullptr;
        if (!isOurs) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ::InterlockedIncrement(&references_); }
    STDMETHODIMP_(ULONG) Release() override {
        LONG left = ::InterlockedDecrement(&references_);
        if (left == 0) delete this;
        return left;
    }

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
    virtual ~ClassFactory() { removeModuleUse(); }

    const ComClass& class_;
    LONG references_ = 1;
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
