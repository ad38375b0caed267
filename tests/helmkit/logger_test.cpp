// The logger as the program calls it: the library's own, one that is called by name, one that fails, and
// none.
#include "helmkit/client/logger.h"

#include <doctest/doctest.h>

#include "helmkit/client/trap.h"
#include "tests/support/helmkit_classes.h"
#include "tests/support/recording_logger.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"

namespace {

struct FailingLogger : RecordingLogger {
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_FAIL;
    }
};

}  // namespace

TEST_CASE("the library's logger writes each line to the logs it was given") {
    const HelmkitClasses classes;
    const ScriptedDesktop desktop;
    TempFolder folder;
    const std::wstring full = folder.file(L"full"), brief = folder.file(L"brief");
    const helmkit::Logger logger = helmkit::Logger::create();
    REQUIRE(logger.object());
    logger.OpenLogs(full, brief);
    logger.WriteLog(7, L"text", 4, L"source");
    logger.WriteLog(-8, L"more", 5, L"other");
    const std::string time = "2026-11-20T23:35:47.123\t", first = time + "4\tsource\t7\ttext\r\n";
    CHECK(TempFolder::read(full) == first + time + "5\tother\t-8\tmore\r\n");
    CHECK(TempFolder::read(brief) == first);
    CHECK_THROWS_AS(logger.OpenLogs(folder.path(), brief), win32::Error);
}

TEST_CASE("any object with a WriteLog is a logger, one that fails and none lose the line") {
    RecordingLogger recording;
    FailingLogger failing;
    recording.logger().WriteLog(7, L"text", 5, L"source");
    REQUIRE(recording.lines.size() == 1);
    CHECK(recording.lines[0].code == 7);
    CHECK(recording.lines[0].text == L"text");
    CHECK(recording.lines[0].level == 5);
    CHECK(recording.lines[0].source == L"source");
    failing.logger().WriteLog(7, L"text", 5, L"source");
    helmkit::Logger().WriteLog(7, L"text", 5, L"source");
    CHECK(helmkit::Logger().object() == nullptr);
}

TEST_CASE("what leaves a procedure is logged with its number, its description and the procedure's name") {
    RecordingLogger log;
    bool ran = false;
    helmkit::trapped(log.logger(), L"Type.Procedure", [&] { ran = true; });
    CHECK(ran);
    CHECK(log.lines.empty());
    helmkit::trapped(log.logger(), L"Type.Procedure", [] { win32::raise(E_ABORT, L"was wrong"); });
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].code == E_ABORT);
    CHECK(log.lines[0].text == L"was wrong");
    CHECK(log.lines[0].level == 4);
    CHECK(log.lines[0].source == L"Type.Procedure");
}
