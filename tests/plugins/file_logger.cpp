#include "tests/plugins/file_logger.h"

#include "win32/base/text.h"
#include "win32/com/com_server.h"
#include "win32/files/files.h"
#include "win32/system/system.h"

namespace {

const DISPID writeLogId = 1;
const UINT argumentCount = 4;

class FileLogger : public win32::SingleInterfaceObject<IDispatch, &IID_IDispatch> {
  public:
    FileLogger() : file_(win32::moduleFolder(win32::thisModule()) + L"\\replaced.log") {}

    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        bool isKnown = count == 1 && win32::sameIgnoringCase(names[0], L"WriteLog");
        *ids = isKnown ? writeLogId : DISPID_UNKNOWN;
        return isKnown ? S_OK : DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                        UINT*) override {
        if (id != writeLogId) return DISP_E_MEMBERNOTFOUND;
        if (parameters->cArgs != argumentCount) return DISP_E_BADPARAMCOUNT;
        return win32::guarded(IID_IDispatch, [&] { write(parameters->rgvarg); });
    }

  private:
    static std::wstring textOf(VARIANT& argument) {
        win32::Variant text;
        win32::check(::VariantChangeType(&text, &argument, 0, VT_BSTR));
        return std::wstring(win32::BString::view(text.bstrVal));
    }

    // The arguments stand last first: source, level, text, code.
    void write(VARIANT* last) {
        std::wstring line =
            textOf(last[1]) + L'|' + textOf(last[0]) + L'|' + textOf(last[3]) + L'|' + textOf(last[2]);
        file_.write(win32::toUtf8(line + L"\r\n"));
    }

    win32::AppendFile file_;
};

}  // namespace

win32::ComPtr<IDispatch> newFileLogger() {
    return win32::ComPtr<IDispatch>::adopt(new FileLogger());
}
