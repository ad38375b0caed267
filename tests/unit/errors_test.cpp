// Describing an error must not become the end of the process.
#include <doctest/doctest.h>

#include "helmkit/client/trap.h"
#include "tests/support/memory_shortage.h"
#include "tests/support/recording_logger.h"
#include "tests/support/text.h"
#include "win32/base/error.h"
#include "win32/com/com_server.h"
#include "win32/windows/window.h"

namespace {

const std::wstring longText = L"a description that is too long to stand in the string itself";

// What `describe` makes of an error while no allocation succeeds.
template <class Raise, class Describe>
auto withoutMemory(Raise raise, Describe describe) {
    try {
        raise();
    } catch (...) {
        MemoryShortage nothingLeft(0);
        return describe();
    }
    FAIL("nothing was raised");
    return decltype(describe())();
}

long numberWithoutMemory(void (*raise)()) {
    return withoutMemory(raise, [] { return win32::currentError().number; });
}

// Refuses every line.
class RefusingLogger : public RecordingLogger {
  public:
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        ++refused;
        return E_ACCESSDENIED;
    }
    int refused = 0;
};

}  // namespace

TEST_CASE("errors are described without memory, with their numbers") {
    CHECK(numberWithoutMemory([] { win32::raise(E_ABORT, longText); }) == E_ABORT);
    CHECK(numberWithoutMemory([] { throw std::bad_alloc(); }) == E_OUTOFMEMORY);
    CHECK(numberWithoutMemory([] { throw std::runtime_error("a text that is too long for itself"); }) ==
          E_UNEXPECTED);
    CHECK(numberWithoutMemory([] { throw 7; }) == E_UNEXPECTED);
    try {
        win32::raise(E_ABORT, longText);
    } catch (...) {
        CHECK(win32::currentError().description == longText);
    }
    try {
        throw std::bad_alloc();
    } catch (...) {
        CHECK(win32::currentError().description == L"Out of memory");
    }
}

TEST_CASE("the borders of the program survive an error without memory") {
    const auto failing = [] { win32::raise(E_ABORT, longText); };
    CHECK(withoutMemory(failing, [] { return win32::reportCurrentError(IID_NULL); }) == E_ABORT);
    RecordingLogger log;
    const helmkit::Logger logger = log.logger();
    const std::wstring source = L"ucRun.RefreshList";
    withoutMemory(failing, [&] {
        helmkit::logCaught(logger, source);
        return 0;
    });
    win32::setWindowErrorSink([](const win32::Error& error) { throw win32::Error(error); });
    withoutMemory(failing, [] {
        win32::reportCurrentError();
        return 0;
    });
    win32::setWindowErrorSink(nullptr);
}

TEST_CASE("a logger that refuses a line, and none at all, raise nothing") {
    RefusingLogger refusing;
    CHECK_NOTHROW(refusing.logger().WriteLog(0, L"text", helmkit::information, L"source"));
    CHECK(refusing.refused == 1);
    CHECK_NOTHROW(helmkit::Logger().WriteLog(0, L"text", helmkit::information, L"source"));
    RecordingLogger log;
    const helmkit::Logger logger = log.logger();
    {
        MemoryShortage nothingLeft(0);
        logger.WriteLog(0, longText, helmkit::information, longText);
    }
    logger.WriteLog(7, longText, helmkit::information, L"source");
    REQUIRE(!log.lines.empty());
    CHECK(log.lines.back().text == longText);
}
