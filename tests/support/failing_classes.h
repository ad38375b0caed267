// Helmkit's classes with services that refuse what a test names, as Windows refuses a key without rights.
#pragma once

#include <functional>
#include <set>
#include <string>

#include "helmkit/file_services.h"
#include "helmkit/keyed_list.h"
#include "helmkit/record_list.h"
#include "helmkit/registry_access.h"
#include "helmkit/system_services.h"
#include "tests/support/helmkit_classes.h"
#include "win32/com/com_module.h"

// What is refused now: `ReadValue key\name`, `EnumValues key`, `EnumSubkeys key`, `ReadTextFile path`,
// `Field name`, `Field name of record`, ...
inline std::set<std::wstring>& refused() {
    static std::set<std::wstring> what;
    return what;
}

// What somebody else does at the moment of a question, before it is answered.
inline std::function<void(const std::wstring& what)>& whenAsked() {
    static std::function<void(const std::wstring&)> event;
    return event;
}

// S_FALSE for what is not refused.
inline HRESULT refusal(REFIID iid, const std::wstring& what) {
    if (whenAsked()) whenAsked()(what);
    if (!refused().count(what)) return S_FALSE;
    return win32::guarded(iid, [&] { win32::raiseWin32(ERROR_ACCESS_DENIED, what); });
}

class FailingRegistryAccess : public helmkit::server::RegistryAccess {
    using Base = helmkit::server::RegistryAccess;
    static HRESULT refuse(const wchar_t* operation, BSTR key, BSTR name = nullptr) {
        std::wstring what = operation + (L' ' + win32::BString::copy(key));
        if (name) what += L'\\' + win32::BString::copy(name);
        return refusal(IID_IRegistryAccess, what);
    }

  public:
    STDMETHODIMP ReadValue(LONG hive, BSTR key, BSTR name, BSTR* data, LONG* status) override {
        const HRESULT refusal = refuse(L"ReadValue", key, name);
        return FAILED(refusal) ? refusal : Base::ReadValue(hive, key, name, data, status);
    }
    STDMETHODIMP ValueType(LONG hive, BSTR key, BSTR name, LONG* type) override {
        const HRESULT refusal = refuse(L"ValueType", key, name);
        return FAILED(refusal) ? refusal : Base::ValueType(hive, key, name, type);
    }
    STDMETHODIMP EnumSubkeys(LONG hive, BSTR key, IKeyedList** names) override {
        const HRESULT refusal = refuse(L"EnumSubkeys", key);
        return FAILED(refusal) ? refusal : Base::EnumSubkeys(hive, key, names);
    }
    STDMETHODIMP EnumValues(LONG hive, BSTR key, IKeyedList** names) override {
        const HRESULT refusal = refuse(L"EnumValues", key);
        return FAILED(refusal) ? refusal : Base::EnumValues(hive, key, names);
    }
    STDMETHODIMP DeleteKey(LONG hive, BSTR key, LONG* status) override {
        const HRESULT refusal = refuse(L"DeleteKey", key);
        if (SUCCEEDED(refusal)) return Base::DeleteKey(hive, key, status);
        *status = ERROR_ACCESS_DENIED;
        return S_OK;
    }
};

class FailingFileServices : public helmkit::server::FileServices {
  public:
    STDMETHODIMP ReadTextFile(BSTR path, BSTR* text) override {
        const HRESULT refused = refusal(IID_IFileServices, L"ReadTextFile " + win32::BString::copy(path));
        return FAILED(refused) ? refused : helmkit::server::FileServices::ReadTextFile(path, text);
    }
    STDMETHODIMP WriteTextFile(BSTR path, BSTR text) override {
        const HRESULT refused = refusal(IID_IFileServices, L"WriteTextFile " + win32::BString::copy(path));
        return FAILED(refused) ? refused : helmkit::server::FileServices::WriteTextFile(path, text);
    }
    STDMETHODIMP FileExists(BSTR path, VARIANT_BOOL* exists) override {
        const HRESULT refused = refusal(IID_IFileServices, L"FileExists");
        return FAILED(refused) ? refused : helmkit::server::FileServices::FileExists(path, exists);
    }
};

class FailingSystemServices : public helmkit::server::SystemServices {
  public:
    STDMETHODIMP ExpandEnvironment(BSTR text, BSTR* result) override {
        const HRESULT refused = refusal(IID_ISystemServices, L"ExpandEnvironment");
        return FAILED(refused) ? refused : helmkit::server::SystemServices::ExpandEnvironment(text, result);
    }
    STDMETHODIMP FormatMessage(BSTR text, VARIANT arguments, BSTR* result) override {
        const HRESULT refused = refusal(IID_ISystemServices, L"FormatMessage");
        return FAILED(refused) ? refused
                               : helmkit::server::SystemServices::FormatMessage(text, arguments, result);
    }
};

class FailingRecord : public helmkit::server::Record {
  public:
    STDMETHODIMP Field(BSTR name, IField** field) override {
        win32::BString own;
        win32::check(get_Name(own.out()));
        const std::wstring what = L"Field " + win32::BString::copy(name);
        for (const std::wstring& spelled : {what, what + L" of " + own.text()}) {
            if (const HRESULT refused = refusal(IID_IRecord, spelled); FAILED(refused)) return refused;
        }
        return helmkit::server::Record::Field(name, field);
    }
};

class FailingRecordList : public win32::AutomationObject<IRecordList, &IID_IRecordList>,
                          private helmkit::server::Sequence {
  public:
    STDMETHODIMP AddRecord(IRecord** record) override {
        return method([&] {
            records_.push_back(win32::ComPtr<IRecord>::adopt(new FailingRecord()));
            win32::result(record) = win32::ComPtr<IRecord>(records_.back()).release();
        });
    }
    STDMETHODIMP get_Count(LONG* count) override {
        return method([&] { win32::result(count) = length(); });
    }
    STDMETHODIMP get_Item(LONG, IRecord**) override { return E_NOTIMPL; }
    STDMETHODIMP get__NewEnum(IUnknown** enumerator) override {
        return method([&] { win32::result(enumerator) = helmkit::server::newEnumerator(*this).release(); });
    }

  private:
    LONG length() override { return static_cast<LONG>(records_.size()); }
    win32::Variant itemAt(LONG position) override {
        win32::Variant item;
        item.pdispVal = win32::ComPtr<IRecord>(records_[position]).release();
        item.vt = VT_DISPATCH;
        return item;
    }
    IUnknown* owner() override { return static_cast<IRecordList*>(this); }

    std::vector<win32::ComPtr<IRecord>> records_;
};

// In the place of the library's own, until it goes.
class FailingClasses {
  public:
    explicit FailingClasses(HelmkitClasses& classes) : classes_(classes) {
        classes_.revoke();
        for (const win32::ComClass& replaced : table) classes_.offer(*replaced.clsid, module);
        for (const CLSID* own : {&CLSID_LogWriter, &CLSID_KeyedList, &CLSID_Record}) classes_.offer(*own);
    }
    ~FailingClasses() {
        refused().clear();
        whenAsked() = nullptr;
    }
    FailingClasses(const FailingClasses&) = delete;
    FailingClasses& operator=(const FailingClasses&) = delete;

  private:
    static inline const win32::ComClass table[] = {
        {&CLSID_RegistryAccess, L"", win32::createObject<FailingRegistryAccess>},
        {&CLSID_FileServices, L"", win32::createObject<FailingFileServices>},
        {&CLSID_SystemServices, L"", win32::createObject<FailingSystemServices>},
        {&CLSID_RecordList, L"", win32::createObject<FailingRecordList>},
    };
    static inline const win32::ComModule module = {table, std::size(table), &LIBID_Helmkit, 2, 1};

    HelmkitClasses& classes_;
};
