// The start as it is where nothing is missing: the plug-in is there, asked for by its name.
#include <doctest/doctest.h>

#include <functional>
#include <string>
#include <utility>

#include "app/start_up.h"
#include "qlncustom.h"
#include "tests/support/page_fixture.h"
#include "tests/support/replaced_import.h"
#include "win32/com/com_server.h"
#include "win32/com/counted_object.h"

namespace {

// What Init does with the argument; which names were asked of the class table.
std::function<HRESULT(IDispatch** logger)>& whenCalled() {
    static std::function<HRESULT(IDispatch**)> action;
    return action;
}
std::wstring& namesAsked() {
    static std::wstring names;
    return names;
}

class PlugIn : public win32::SingleInterfaceObject<IDispatch, &IID_IDispatch> {
  public:
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        *ids = 3;
        return std::wstring(names[0]) == L"Init" ? S_OK : DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*, EXCEPINFO*,
                        UINT*) override {
        const bool isInit = id == 3 && given->cArgs == 1 && given->rgvarg[0].vt == (VT_BYREF | VT_DISPATCH);
        return isInit ? whenCalled()(given->rgvarg[0].ppdispVal) : DISP_E_BADPARAMCOUNT;
    }
};

HRESULT WINAPI classOfName(const wchar_t* name, CLSID* clsid) {
    namesAsked() += name;
    *clsid = CLSID_CCustom2;
    return S_OK;
}

const win32::ComClass plugInTable[] = {{&CLSID_CCustom2, L"", win32::createObject<PlugIn>}};
const win32::ComModule plugInModule = {plugInTable, 1, &LIBID_QLNCustom, 2, 1};

// A logger whose references are counted.
struct CountedLogger : RecordingLogger {
    int references = 0;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
};

struct Starting : PageFixture {
    const ReplacedImport names{"CLSIDFromProgID", &classOfName};
    helmkit::Logger logger;
    std::vector<std::wstring> titles;

    Starting() {
        classes.offer(CLSID_CCustom2, plugInModule);
        whenCalled() = [](IDispatch**) { return S_OK; };
        namesAsked().clear();
    }
    ~Starting() { whenCalled() = nullptr; }
    bool start() {
        return app::initialize(logger, folder.path(),
                               [&](const std::wstring& title) { titles.push_back(title); });
    }
    // The lines of the full log, without their time.
    std::wstring logged() {
        std::wstring lines, all = win32::fromAnsi(TempFolder::read(folder.file(L"QLN.log")));
        for (size_t at = 0, end; (end = all.find(L"\r\n", at)) != std::wstring::npos; at = end + 2) {
            lines += all.substr(all.find(L'\t', at) + 1, end - all.find(L'\t', at) - 1) + L'\n';
        }
        return lines;
    }
};

// What a plug-in does that takes over: its own logger in the place of the one that it was given.
HRESULT replaceBy(IDispatch* replacement, IDispatch** logger) {
    replacement->AddRef();
    std::exchange(*logger, replacement)->Release();
    return S_OK;
}

}  // namespace

TEST_CASE_FIXTURE(Starting, "with everything there three lines are logged and the window has its title") {
    IDispatch* given = nullptr;
    whenCalled() = [&](IDispatch** argument) {
        given = *argument;
        return S_OK;
    };
    CHECK(start());
    CHECK(namesAsked() == L"QLNCustom.CCustom2");
    CHECK(given == logger.object());
    CHECK(titles == std::vector<std::wstring>{L"Quillon"});
    const std::wstring here = L"5\tFMain.Form_Initialize\t0\t", lines = logged();
    const std::wstring begin =
        here + L"********** start app\n" + here + L"Quillon ver.2.1.0\n" + here + L"Startup: ";
    CHECK(lines.substr(0, begin.size()) == begin);
    CHECK(lines.find(L'\n', begin.size()) == lines.size() - 1);
    CHECK(desktop.messageBoxes.empty());
}

TEST_CASE_FIXTURE(Starting, "a plug-in's logger has every later line, and is held once") {
    CountedLogger replacement;
    whenCalled() = [&](IDispatch** argument) { return replaceBy(&replacement, argument); };
    CHECK(start());
    CHECK(logger.object() == &replacement);
    CHECK(replacement.references == 1);
    CHECK(replacement.lines.empty());
    CHECK(titles.size() == 1);
    logger = helmkit::Logger();
    CHECK(replacement.references == 0);
}

TEST_CASE_FIXTURE(Starting,
                  "a plug-in that fails after it took over: its logger has the error, the start goes on") {
    CountedLogger replacement;
    whenCalled() = [&](IDispatch** argument) {
        replaceBy(&replacement, argument);
        return E_ACCESSDENIED;
    };
    CHECK(start());
    CHECK(titles.size() == 1);
    CHECK(replacement.references == 1);
    REQUIRE(replacement.lines.size() == 1);
    CHECK(replacement.lines[0].level == 0);
    CHECK(replacement.lines[0].source == L"FMain.Form_Initialize");
    CHECK(replacement.lines[0].code == E_ACCESSDENIED);
    CHECK_FALSE(replacement.lines[0].text.empty());
    logger = helmkit::Logger();
    CHECK(replacement.references == 0);
}

TEST_CASE_FIXTURE(Starting, "a plug-in that takes the logger away leaves the start without one") {
    whenCalled() = [](IDispatch** argument) {
        std::exchange(*argument, nullptr)->Release();
        return S_OK;
    };
    CHECK(start());
    CHECK_FALSE(logger.object());
    CHECK(titles.size() == 1);
}

TEST_CASE_FIXTURE(Starting, "of several errors the last one is told, and each step is tried") {
    CountedLogger replacement;
    whenCalled() = [&](IDispatch** argument) { return replaceBy(&replacement, argument); };
    // The folder of the logs is not there.
    CHECK(app::initialize(logger, folder.file(L"none"),
                          [](const std::wstring&) { win32::raise(E_FAIL, L"no title"); }));
    REQUIRE(replacement.lines.size() == 1);
    CHECK(replacement.lines[0].text == L"no title");
    CHECK(replacement.lines[0].code == E_FAIL);
    logger = helmkit::Logger();
}
