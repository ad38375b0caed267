#include "report/failure_log.h"

#include "win32/com/counted_object.h"

namespace report {

namespace {

const DISPID writeLog = 1;

}  // namespace

// A logger as a plug-in may offer one: IDispatch with WriteLog(code, text, level, source).
class FailureLog::Recorder : public win32::CountedObject<IDispatch> {
  public:
    std::vector<Failure> failures;

    STDMETHODIMP QueryInterface(REFIID wanted, void** object) override {
        if (!object) return E_POINTER;
        const bool isOurs = wanted == IID_IUnknown || wanted == IID_IDispatch;
        *object = isOurs ? static_cast<IDispatch*>(this) : nullptr;
        if (!isOurs) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        if (count != 1 || std::wstring_view(names[0]) != L"WriteLog") return DISP_E_UNKNOWNNAME;
        ids[0] = writeLog;
        return S_OK;
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* call, VARIANT*, EXCEPINFO*,
                        UINT*) override {
        if (id != writeLog) return DISP_E_MEMBERNOTFOUND;
        // The last argument comes first.
        const VARIANT* arguments = call->rgvarg;
        if (call->cArgs != 4 || arguments[0].vt != VT_BSTR || arguments[2].vt != VT_BSTR)
            return DISP_E_TYPEMISMATCH;
        try {
            failures.push_back(
                {win32::BString::copy(arguments[0].bstrVal), win32::BString::copy(arguments[2].bstrVal)});
            return S_OK;
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }
};

FailureLog::FailureLog()
    : recorder_(win32::ComPtr<Recorder>::adopt(new Recorder())),
      logger_(win32::ComPtr<IDispatch>(recorder_.get())) {}

FailureLog::~FailureLog() = default;

std::vector<Failure> FailureLog::taken() {
    return std::exchange(recorder_->failures, {});
}

}  // namespace report
