#include "support/cl.h"

#include <algorithm>

#include "build_settings.h"
#include "helmkit/client/file_services.h"
#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "support/cZip.h"
#include "support/form_encoding.h"
#include "support/request_parameters.h"
#include "win32/base/path.h"
#include "win32/base/text.h"
#include "win32/com/automation.h"
#include "win32/system/desktop.h"

namespace support {

namespace {

const DWORD pause = 5, timeOut = 20000, second = 1000;  // milliseconds
enum ReadyState : LONG { opened = 1, receiving = 3, completed = 4 };

class RealSurroundings : public RequestSurroundings {
  public:
    // The second name is the one that the older MSXML knows.
    win32::ComPtr<IDispatch> newRequest() override {
        auto request = win32::createByName(L"Msxml2.XMLHTTP");
        return request ? request : win32::createByName(L"Microsoft.XMLHTTP");
    }
    void sleep(DWORD milliseconds) override { ::Sleep(milliseconds); }
};

std::wstring element(const std::wstring& name, const std::wstring& text) {
    return L'<' + name + L'>' + helmkit::systemServices().XmlEscape(text) + L"</" + name + L'>';
}

std::wstring encodedFile(const std::wstring& path) {
    return helmkit::systemServices().EncodeBinaryText(helmkit::fileServices().ReadTextFile(path).text());
}

bool isAccepted(LONG status) {
    return status == 200 || status == 206 || status == 302 || status == 304;
}

// A clock of whole seconds that begins at the second it was started in; it survives the counter's new start
// after 49.7 days.
class SecondsClock {
  public:
    bool isBelow(DWORD milliseconds) const { return win32::desktop().tickCount() - start_ < milliseconds; }

  private:
    static DWORD wholeSecond(DWORD ticks) { return ticks - ticks % second; }
    DWORD start_ = wholeSecond(win32::desktop().tickCount());
};

}  // namespace

RequestSurroundings& realSurroundings() {
    static RealSurroundings surroundings;
    return surroundings;
}

std::wstring cl::defaultEndpoint() {
    return L"http://" + settings::supportHost + L"/php/ic.php";
}

cl::cl(std::wstring endpoint, RequestSurroundings& surroundings)
    : endpoint_(std::move(endpoint)), surroundings_(surroundings) {}

std::wstring cl::EncodeFormValue(const std::wstring& text) {
    return encodeFormValue(text);
}

// Every error is trapped here, on purpose: what the server then gets, or the result, tells of it.
template <class Step>
bool cl::attempt(Step step) {
    try {
        step();
        return true;
    } catch (...) {
        hasFailed_ = true;
        return false;
    }
}

bool cl::Do1(const helmkit::Logger& Log, const std::wstring& Category, IRecord* o, std::wstring& FalseCouse) {
    log_ = Log;
    hasFailed_ = false;
    std::wstring category = Category, id, xmlFile, zipFile, encodedZip;
    std::replace(category.begin(), category.end(), L'/', L'\\');
    attempt([&] { id = helmkit::systemServices().NewUniqueId(); });
    const std::wstring text = document(category, id, o);
    attempt(
        [&] { xmlFile = win32::withBackslash(helmkit::systemServices().GetTempFolder()) + id + L".xml"; });
    attempt([&] { helmkit::fileServices().WriteTextFile(xmlFile, text); });
    attempt([&] { zipFile = helmkit::systemServices().GetTempFileName(L"sc") + L".zip"; });
    attempt([&] { zip(xmlFile, zipFile); });
    attempt([&] { encodedZip = encodedFile(zipFile); });
    const std::wstring subject = category + L'\\' + id;
    const std::wstring form =
        L"subject=" + EncodeFormValue(subject) + L"&value=" + EncodeFormValue(encodedZip);
    win32::ComPtr<IDispatch> request;
    attempt([&] { request = surroundings_.newRequest(); });
    if (!send(request.get(), form)) return false;
    return judge(request.get(), waitForAnswer(request.get()), FalseCouse);
}

std::wstring cl::document(const std::wstring& category, const std::wstring& id, IRecord* parameters) {
    const std::wstring body = parameterElements(parameters);
    std::wstring text;
    attempt([&] { text = L"<xml>" + element(L"cat", category) + element(L"id", id) + body + L"</xml>"; });
    return text;
}

std::wstring cl::parameterElements(IRecord* parameters) {
    std::wstring body;
    if (!parameters) return body;
    std::vector<win32::ComPtr<IField>> list;
    attempt([&] { list = parametersOf(parameters); });
    for (const auto& parameter : list) {
        LONG count{};
        attempt([&] { count = valueCount(parameter); });
        for (LONG i = 1; i <= count; ++i) {
            attempt([&] { body += element(nameOf(parameter), valueAt(parameter, i)); });
        }
    }
    return body;
}

void cl::zip(const std::wstring& file, const std::wstring& archive) {
    cZip zip;
    zip.ZipFile = archive;
    zip.AddFileSpec(file);
    zip.Zip();
}

// True when `send` itself raised nothing. What failed before it is only remembered.
bool cl::send(IDispatch* request, const std::wstring& form) {
    if (!request) return false;
    attempt([&] {
        win32::Variant asynchronous;
        asynchronous.vt = VT_BOOL;
        asynchronous.boolVal = VARIANT_TRUE;
        win32::Variant arguments[] = {win32::Variant(L"POST"), win32::Variant(endpoint_),
                                      std::move(asynchronous)};
        win32::invoke(request, L"open", arguments, 3);
    });
    attempt([&] {
        win32::Variant arguments[] = {win32::Variant(L"Content-Type"),
                                      win32::Variant(L"application/x-www-form-urlencoded")};
        win32::invoke(request, L"setRequestHeader", arguments, 2);
    });
    return attempt([&] {
        win32::Variant body(form);
        win32::invoke(request, L"send", &body, 1);
    });
}

// Gives the readyState that the request has reached.
LONG cl::waitForAnswer(IDispatch* request) {
    const SecondsClock clock;
    LONG state{};
    const auto look = [&] {
        state = 0;
        attempt([&] { state = win32::numberProperty(request, L"readyState"); });
        return state;
    };
    while (look() != completed && clock.isBelow(timeOut)) {
        attempt([] { helmkit::systemServices().PumpEvents(); });
        surroundings_.sleep(pause);
    }
    return state;
}

bool cl::judge(IDispatch* request, LONG readyState, std::wstring& reason) {
    if (readyState == opened || readyState == receiving) {
        attempt([&] { win32::invoke(request, L"abort", nullptr, 0); });
        reason = L"Cannot send. ";
        return false;
    }
    LONG status{};
    attempt([&] { status = win32::numberProperty(request, L"status"); });
    if (isAccepted(status)) return !hasFailed_;
    reason.clear();
    attempt([&] { reason = win32::textProperty(request, L"statusText"); });
    return false;
}

}  // namespace support
