// A record whose parameters may have no values at all, or values that cannot be read: the companion library's
// own never do.
#pragma once

#include <deque>
#include <string>
#include <vector>

// The part of COM that a fixture's own objects do not need: they outlive their users and are called early.
template <class Interface>
class FixtureObject : public Interface {
  public:
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    // Every interface that is asked for is taken to be the one there is.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = static_cast<Interface*>(this);
        return S_OK;
    }
};

template <class Interface>
class FixtureDispatch : public FixtureObject<Interface> {
  public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }
};

class ScriptedField : public FixtureDispatch<IField> {
  public:
    std::wstring name;
    std::vector<std::wstring> values;
    LONG unreadable = 0;  // the position that raises

    ScriptedField(std::wstring name, std::vector<std::wstring> values, LONG unreadable = 0)
        : name(std::move(name)), values(std::move(values)), unreadable(unreadable) {}
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* text) override {
        return *text = win32::BString(name).release(), S_OK;
    }
    HRESULT STDMETHODCALLTYPE Add(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* count) override {
        return *count = static_cast<LONG>(values.size()), S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Item(LONG position, VARIANT* value) override {
        if (position == unreadable) return E_FAIL;
        value->vt = VT_BSTR;
        value->bstrVal = win32::BString(values.at(position - 1)).release();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Value(VARIANT*) override { return E_NOTIMPL; }
};

class ScriptedRecord : public FixtureDispatch<IRecord> {
  public:
    std::deque<ScriptedField> fields;

    HRESULT STDMETHODCALLTYPE SetName(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetField(BSTR, VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Field(BSTR, IField**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Count(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** walker) override {
        walk_.fields = &fields;
        walk_.next = 0;
        return *walker = &walk_, S_OK;
    }

  private:
    struct Walk : FixtureObject<IEnumVARIANT> {
        std::deque<ScriptedField>* fields = nullptr;
        size_t next = 0;
        HRESULT STDMETHODCALLTYPE Next(ULONG, VARIANT* item, ULONG*) override {
            if (next == fields->size()) return S_FALSE;
            item->vt = VT_DISPATCH;
            item->pdispVal = &(*fields)[next++];
            return S_OK;
        }
        HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }
    };
    Walk walk_;
};
