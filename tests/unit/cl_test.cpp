// The support request with a scripted XMLHTTP object: every state that the real one can be found in. The real
// one meets a real server in tests/support_request.
#include <doctest/doctest.h>

#include <set>

#include "tests/support/page_fixture.h"
#include "tests/support/scripted_parameters.h"
#include "tests/support/scripted_request.h"

namespace {

class CountingWindow : public HiddenWindow {
  public:
    int messages = 0;

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_APP) ++messages;
        return HiddenWindow::onMessage(message, wParam, lParam);
    }
};

// The tests' own, without line breaks.
std::wstring base64(const std::string& bytes) {
    const std::wstring digits = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::wstring text;
    for (size_t at = 0; at < bytes.size(); at += 3) {
        unsigned group = 0;
        for (size_t i = 0; i < 3; ++i)
            group = group << 8 | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0);
        for (size_t i = 0; i < 4; ++i)
            text += at + i <= bytes.size() ? digits[group >> (18 - 6 * i) & 63] : L'=';
    }
    return text;
}

struct Sender {
    TempFolder temporary;
    Variable tmp{L"TMP", temporary.path()};
    HelmkitClasses classes;
    ScriptedDesktop desktop;
    ScriptedRequest request;
    ScriptedSurroundings surroundings{request, desktop};
    support::cl sender{L"http://endpoint.example/php/ic.php", surroundings};
    RecordingLogger log;
    win32::ComPtr<IRecord> parameters = win32::create<IRecord>(CLSID_Record, IID_IRecord);
    std::wstring reason = L"untouched";

    bool send(const std::wstring& category = L"a/b") {
        const bool result = sender.Do1(log.logger(), category, parameters.get(), reason);
        CHECK(log.lines.empty());
        return result;
    }
    void set(const std::wstring& name, const std::vector<std::wstring>& values) {
        const win32::BString spelled(name);
        win32::check(parameters->SetField(spelled.get(), win32::Variant(values[0])));
        win32::ComPtr<IField> field;
        win32::check(parameters->Field(spelled.get(), field.out()));
        for (size_t i = 1; i < values.size(); ++i) win32::check(field->Add(win32::Variant(values[i])));
    }
    // The name of the one file in the temporary folder that ends so.
    std::wstring keptFile(const std::wstring& ending) const {
        WIN32_FIND_DATAW found;
        const win32::OwnedFind search(::FindFirstFileW(temporary.file(L"*" + ending).c_str(), &found));
        REQUIRE(search);
        return found.cFileName;
    }
    std::string document() const { return TempFolder::read(temporary.file(keptFile(L".xml"))); }
    bool called(const std::wstring& name) const {
        for (const std::wstring& call : request.calls) {
            if (call.compare(0, name.size(), name) == 0) return true;
        }
        return false;
    }
};

}  // namespace

TEST_CASE("the endpoint is php/ic.php on the host that the build names") {
    CHECK(support::cl::defaultEndpoint() == L"http://mardelix.example/php/ic.php");
}

TEST_CASE_FIXTURE(Sender, "a request is opened, given its content type and sent, once each") {
    CHECK(send());
    CHECK(reason == L"untouched");
    REQUIRE(request.calls.size() == 4);
    CHECK(request.calls[0] == L"open POST http://endpoint.example/php/ic.php true");
    CHECK(request.calls[1] == L"setRequestHeader Content-Type application/x-www-form-urlencoded");
    CHECK(request.calls[3] == L"status");
    const std::wstring id = keptFile(L".xml").substr(0, 36);
    const std::wstring begin = L"send subject=a%5Cb%5C" + id + L"&value=UEsDB";
    CHECK(request.calls[2].substr(0, begin.size()) == begin);
    const std::wstring value = request.calls[2].substr(begin.size());
    CHECK(value.find_first_of(L"+\\\r\n& ") == std::wstring::npos);
}

TEST_CASE_FIXTURE(
    Sender, "the form holds the archive in base64, byte by byte: plus is encoded, slash and equals are not") {
    std::set<wchar_t> signs;
    for (int tries = 0; tries < 200 && signs.size() < 3; ++tries) {
        for (const wchar_t* ending : {L".xml", L".zip"}) {
            if (temporary.count()) ::DeleteFileW(temporary.file(keptFile(ending)).c_str());
        }
        request.calls.clear();
        const std::wstring category(1 + tries % 3, L'c');
        CHECK(send(category));
        const std::wstring id = keptFile(L".xml").substr(0, 36);
        const std::wstring text = base64(TempFolder::read(temporary.file(keptFile(L".zip"))));
        for (wchar_t sign : text) {
            if (sign == L'+' || sign == L'/' || sign == L'=') signs.insert(sign);
        }
        std::wstring expected = L"send subject=" + category + L"%5C" + id + L"&value=";
        for (wchar_t sign : text) expected += sign == L'+' ? std::wstring(L"%2B") : std::wstring(1, sign);
        REQUIRE(request.calls.at(2) == expected);
    }
    CHECK(signs.size() == 3);
}

TEST_CASE_FIXTURE(Sender, "the document holds category, identifier and every value in its order") {
    set(L"one", {L"1 < 2 & 3"});
    set(L"three", {L"c", L"a", L"b"});
    set(L"empty", {L""});
    CHECK(send(L"mal/ware/x"));
    const std::wstring id = keptFile(L".xml").substr(0, 36);
    CHECK(win32::fromAnsi(document()) ==
          L"<xml><cat>mal\\ware\\x</cat><id>" + id +
              L"</id><one>1 &lt; 2 &amp; 3</one><three>c</three><three>a</three><three>b</three>"
              L"<empty></empty></xml>");
}

TEST_CASE_FIXTURE(Sender, "a request without parameters has no more than category and identifier") {
    parameters = {};
    CHECK(send(L""));
    const std::wstring id = keptFile(L".xml").substr(0, 36);
    CHECK(win32::fromAnsi(document()) == L"<xml><cat></cat><id>" + id + L"</id></xml>");
}

TEST_CASE_FIXTURE(Sender, "a parameter without values yields nothing, nor does a value that cannot be read") {
    ScriptedRecord record;
    record.fields.emplace_back(L"none", std::vector<std::wstring>{});
    record.fields.emplace_back(L"two", std::vector<std::wstring>{L"a", L"b"});
    parameters = win32::ComPtr<IRecord>(&record);
    CHECK(send(L"c"));
    const std::wstring id = keptFile(L".xml").substr(0, 36);
    CHECK(win32::fromAnsi(document()) ==
          L"<xml><cat>c</cat><id>" + id + L"</id><two>a</two><two>b</two></xml>");
    ::DeleteFileW(temporary.file(keptFile(L".xml")).c_str());
    record.fields[1].unreadable = 1;
    CHECK_FALSE(send(L"c"));
    CHECK(reason == L"untouched");
    CHECK(document().find("</id><two>b</two></xml>") != std::string::npos);
    parameters = {};
}

TEST_CASE_FIXTURE(Sender, "both files stay, named as told, whatever comes of the request") {
    request.failing = {L"send"};
    CHECK_FALSE(send());
    CHECK(temporary.count() == 2);
    CHECK(keptFile(L".xml").size() == 40);
    CHECK(keptFile(L".zip").substr(0, 2) == L"sc");
}

TEST_CASE_FIXTURE(Sender, "four statuses are accepted, of all others the server's text is the reason") {
    for (LONG accepted : {200, 206, 302, 304}) {
        request.status = accepted;
        CHECK(send());
        CHECK(reason == L"untouched");
    }
    for (LONG other : {0, 100, 201, 204, 301, 303, 307, 400, 404, 500, 12029}) {
        request.status = other;
        request.statusText = L"text " + std::to_wstring(other);
        CHECK_FALSE(send());
        CHECK(reason == request.statusText);
    }
}

TEST_CASE_FIXTURE(Sender, "an accepted status is a failure when a step before it failed") {
    for (const wchar_t* step : {L"open", L"setRequestHeader"}) {
        request.failing = {step};
        CHECK_FALSE(send());
        CHECK(reason == L"untouched");
        CHECK(called(L"status"));
    }
    // The failure is not carried into the next request.
    request.failing.clear();
    CHECK(send());
}

TEST_CASE_FIXTURE(Sender, "an error in send, or no object to send with, leaves the reason alone") {
    request.failing = {L"send"};
    CHECK_FALSE(send());
    CHECK(reason == L"untouched");
    CHECK(surroundings.sleeps == 0);
    CHECK_FALSE(called(L"status"));
    surroundings.hasNone = true;
    CHECK_FALSE(send());
    CHECK(reason == L"untouched");
}

TEST_CASE_FIXTURE(Sender, "after the time is over the state that was reached decides") {
    struct Row {
        LONG state;
        bool aborts, result;
        const wchar_t* reason;
    };
    const Row rows[] = {
        {0, false, true, L"untouched"},
        {1, true, false, L"Cannot send. "},
        {2, false, true, L"untouched"},
        {3, true, false, L"Cannot send. "},
    };
    for (const Row& row : rows) {
        CAPTURE(row.state);
        request.readyStates = {row.state};
        request.calls.clear();
        reason = L"untouched";
        CHECK(send() == row.result);
        CHECK(reason == row.reason);
        CHECK(called(L"abort") == row.aborts);
        CHECK(called(L"status") == !row.aborts);
    }
}

TEST_CASE_FIXTURE(Sender,
                  "a sent request without headers has the status text as its reason, where there is one") {
    request.readyStates = {2};
    request.status = 404;
    request.statusText = L"Not Found";
    CHECK_FALSE(send());
    CHECK(reason == L"Not Found");
    request.failing = {L"status", L"statusText"};
    CHECK_FALSE(send());
    CHECK(reason.empty());
    CHECK_FALSE(called(L"abort"));
}

TEST_CASE_FIXTURE(Sender, "a failing abort gives the same reason") {
    request.readyStates = {1};
    request.failing = {L"abort"};
    CHECK_FALSE(send());
    CHECK(reason == L"Cannot send. ");
}

TEST_CASE_FIXTURE(Sender, "an unreadable state is waited out, and no success") {
    request.failing = {L"readyState"};
    CHECK_FALSE(send());
    CHECK(surroundings.sleeps == 4000);
    CHECK(reason == L"untouched");
}

TEST_CASE_FIXTURE(Sender, "a state that can be read no longer counts as none") {
    struct : ScriptedSurroundings {
        using ScriptedSurroundings::ScriptedSurroundings;
        std::set<std::wstring>* failing = nullptr;
        void sleep(DWORD milliseconds) override {
            *failing = {L"readyState"};
            ScriptedSurroundings::sleep(milliseconds);
        }
    } later{request, desktop};
    later.failing = &request.failing;
    request.readyStates = {1};
    support::cl other(L"http://endpoint.example/", later);
    CHECK_FALSE(other.Do1(log.logger(), L"c", nullptr, reason));
    CHECK(reason == L"untouched");
    CHECK_FALSE(called(L"abort"));
}

TEST_CASE_FIXTURE(Sender,
                  "the wait ends with the twentieth second of the clock, in steps of 5 milliseconds") {
    struct Row {
        DWORD start;
        int sleeps;
    };
    // The last one passes the counter's new start after 49.7 days.
    for (const Row& row : {Row{60000, 4000}, Row{60995, 3801}, Row{60500, 3900}, Row{0xFFFFFE38, 3832}}) {
        CAPTURE(row.start);
        request.readyStates = {1};
        surroundings.sleeps = 0;
        desktop.ticks = row.start;
        CHECK_FALSE(send());
        CHECK(surroundings.sleeps == row.sleeps);
    }
    CHECK(surroundings.shortest == 5);
    CHECK(surroundings.longest == 5);
}

TEST_CASE_FIXTURE(Sender, "the wait ends as soon as the answer is complete, and lets messages run before") {
    CountingWindow window;
    ::PostMessageW(window.handle(), WM_APP, 0, 0);
    request.readyStates = {1, 1, 2, 3, 3, 4};
    CHECK(send());
    CHECK(surroundings.sleeps == 5);
    CHECK(window.messages == 1);
}

TEST_CASE_FIXTURE(Sender, "the logger is kept until the sender goes") {
    const auto writer = win32::create<ILogWriter>(CLSID_LogWriter, IID_ILogWriter);
    const auto references = [&] {
        writer->AddRef();
        return writer->Release();
    };
    const ULONG before = references();
    {
        support::cl other(L"http://endpoint.example/", surroundings);
        CHECK(other.Do1(helmkit::Logger(writer.get()), L"c", nullptr, reason));
        CHECK(references() == before + 1);
    }
    CHECK(references() == before);
}

TEST_CASE_FIXTURE(Sender, "without the companion library nothing is thrown, and an empty request is sent") {
    parameters = {};
    classes.revoke();
    CHECK_FALSE(send());
    CHECK(reason == L"untouched");
    REQUIRE(request.calls.size() == 4);
    CHECK(request.calls[2] == L"send subject=a%5Cb%5C&value=");
    CHECK(temporary.count() == 0);
}
