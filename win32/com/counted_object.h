// The reference counting that every COM object of these modules shares.
#pragma once

#include "win32/base/platform.h"

namespace win32 {

// Objects and locks that keep the module loaded.
LONG moduleUses();
void addModuleUse();
void removeModuleUse();

// Starts with one reference, which belongs to whoever made the object; ends with the last.
template <class... Interfaces>
class CountedObject : public Interfaces... {
  public:
    CountedObject() { addModuleUse(); }
    CountedObject(const CountedObject&) = delete;
    CountedObject& operator=(const CountedObject&) = delete;

    STDMETHODIMP_(ULONG) AddRef() override { return ::InterlockedIncrement(&references_); }
    STDMETHODIMP_(ULONG) Release() override {
        LONG left = ::InterlockedDecrement(&references_);
        if (left == 0) delete this;
        return left;
    }

  protected:
    virtual ~CountedObject() { removeModuleUse(); }

  private:
    LONG references_ = 1;
};

// An object with one interface beside IUnknown.
template <class Interface, const IID* iid>
class SingleInterfaceObject : public CountedObject<Interface> {
  public:
    STDMETHODIMP QueryInterface(REFIID wanted, void** object) override {
        if (!object) return E_POINTER;
        const bool isOurs = wanted == IID_IUnknown || wanted == *iid;
        *object = isOurs ? static_cast<Interface*>(this) : nullptr;
        if (!isOurs) return E_NOINTERFACE;
        this->AddRef();
        return S_OK;
    }
};

}  // namespace win32
