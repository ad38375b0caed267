// An XMLHTTP object that answers from a script, and its surroundings.
#pragma once

#include <deque>
#include <set>
#include <string>
#include <vector>

#include "support/cl.h"
#include "tests/support/scripted_desktop.h"

// Like the real one it is called late, through IDispatch alone.
class ScriptedRequest : public IDispatch {
  public:
    // The script: readyState gives these in turn, the last one for ever.
    std::deque<LONG> readyStates = {4};
    LONG status = 200;
    std::wstring statusText = L"OK";
    std::set<std::wstring> failing;  // names that raise

    // What was asked, arguments in order, readyState left out.
    std::vector<std::wstring> calls;

    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override {
        CHECK(iid == IID_NULL);
        CHECK(count == 1);
        CHECK(locale == LOCALE_USER_DEFAULT);
        for (size_t i = 0; i < std::size(known); ++i) {
            if (std::wstring(names[0]) == known[i]) return ids[0] = static_cast<DISPID>(i), S_OK;
        }
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO*, UINT*) override {
        const std::wstring name = known[id];
        CHECK(iid == IID_NULL);
        CHECK(locale == LOCALE_USER_DEFAULT);
        CHECK(flags == (result ? DISPATCH_PROPERTYGET : DISPATCH_METHOD));
        if (name != L"readyState") calls.push_back(name + argumentsOf(*parameters));
        if (failing.count(name)) return E_FAIL;
        win32::Variant answer;
        if (name == L"readyState") answer = win32::Variant(nextState());
        if (name == L"status") answer = win32::Variant(status);
        if (name == L"statusText") answer = win32::Variant(statusText);
        // The caller owns what it gets.
        if (result) std::swap(*result, static_cast<VARIANT&>(answer));
        // As the real object's send: a success that is not S_OK.
        return name == L"send" ? 0x000401E8 : S_OK;
    }

  private:
    static constexpr const wchar_t* known[] = {L"open",       L"setRequestHeader", L"send",      L"abort",
                                               L"readyState", L"status",           L"statusText"};

    LONG nextState() {
        const LONG state = readyStates.front();
        if (readyStates.size() > 1) readyStates.pop_front();
        return state;
    }
    static std::wstring argumentsOf(const DISPPARAMS& parameters) {
        std::wstring text;
        for (UINT i = parameters.cArgs; i-- > 0;) {
            const VARIANT& argument = parameters.rgvarg[i];
            text += argument.vt == VT_BOOL ? (argument.boolVal ? L" true" : L" false")
                                           : L' ' + std::wstring(win32::BString::view(argument.bstrVal));
        }
        return text;
    }
};

// Time passes only while the request sleeps.
class ScriptedSurroundings : public support::RequestSurroundings {
  public:
    ScriptedSurroundings(ScriptedRequest& request, ScriptedDesktop& desktop)
        : request_(request), desktop_(desktop) {}
    win32::ComPtr<IDispatch> newRequest() override {
        return hasNone ? win32::ComPtr<IDispatch>() : win32::ComPtr<IDispatch>(&request_);
    }
    void sleep(DWORD milliseconds) override {
        ++sleeps;
        shortest = milliseconds < shortest ? milliseconds : shortest;
        longest = milliseconds > longest ? milliseconds : longest;
        desktop_.ticks += milliseconds;
    }

    bool hasNone = false;
    int sleeps = 0;
    DWORD shortest = 1000, longest = 0;

  private:
    ScriptedRequest& request_;
    ScriptedDesktop& desktop_;
};
