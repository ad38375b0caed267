// A logger that keeps its lines. Like a plug-in's replacement it offers IDispatch and nothing else.
#pragma once

#include <string>
#include <vector>

#include "helmkit/client/logger.h"

struct LogLine {
    LONG level;
    std::wstring source;
    LONG code;
    std::wstring text;
};

class RecordingLogger : public IDispatch {
  public:
    std::vector<LogLine> lines;

    helmkit::Logger logger() { return helmkit::Logger(win32::ComPtr<IDispatch>(this)); }

    // It is a member of a fixture, which outlives its users: counting is for show.
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        if (count != 1 || std::wstring(names[0]) != L"WriteLog") return DISP_E_UNKNOWNNAME;
        ids[0] = 7;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                     EXCEPINFO*, UINT*) override {
        if (id != 7 || parameters->cArgs != 4) return DISP_E_BADPARAMCOUNT;
        const VARIANT* last = parameters->rgvarg;
        lines.push_back({last[1].lVal, std::wstring(win32::BString::view(last[0].bstrVal)), last[3].lVal,
                         std::wstring(win32::BString::view(last[2].bstrVal))});
        return S_OK;
    }
};
