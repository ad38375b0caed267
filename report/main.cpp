#include <algorithm>

#include "build_settings.h"
#include "helmkit/client/shared_services.h"
#include "report/arguments.h"
#include "report/collect.h"
#include "report/exact_text.h"
#include "report/format.h"
#include "report/json_report.h"
#include "report/report_files.h"
#include "win32/com/com.h"
#include "win32/registry/trusted_environment.h"
#include "win32/system/console.h"
#include "win32/system/identity.h"
#include "win32/system/process.h"

namespace {

using report::Options;
using report::Report;
using win32::Stream;

enum ExitStatus { nothingChanged = 0, somethingChanged = 1, failed = 2 };

void complain(const std::wstring& text) {
    try {
        win32::writeText(Stream::error, L"QuillonReport: " + report::writable(text) + L"\r\n");
    } catch (const win32::Error&) {
        // Nobody listens; the exit status still tells it.
    }
}

// Tells each place that could not be read; true when there is one.
bool complainOfUnreadable(const Report& found) {
    bool isAny = false;
    for (const report::Entry& entry : found.entries) {
        if (entry.text(report::Field::kind) != report::kind::unreadable) continue;
        isAny = true;
        complain(entry.text(report::Field::hive) + (entry[report::Field::hive] ? L": " : L"") +
                 entry.text(report::Field::error));
    }
    return isAny;
}

template <class Written>
void putOut(const Options& options, const report::Format& format, const Written& written) {
    if (options.output.empty() && options.quiet) return;
    const std::wstring text = format.written(written);
    if (!options.output.empty()) {
        report::writeReportFile(options.output, format, text);
    } else if (win32::isConsole(Stream::output)) {
        win32::writeText(Stream::output, text);
    } else {
        win32::writeBytes(Stream::output, report::encoded(format, text));
    }
}

// The old state is read before the new one is gathered, and replaced last: they may be one file.
int makeReport(const Options& options) {
    const report::Format& format = *report::formatNamed(options.format);
    Report before;
    if (!options.compare.empty()) before = report::readReportFile(options.compare);
    const Report now = report::collect(options);
    bool isChanged = false;
    if (options.compare.empty()) {
        putOut(options, format, now);
    } else {
        const report::Difference difference = report::compareReports(before, now);
        isChanged = !difference.changes.empty();
        putOut(options, format, difference);
    }
    if (!options.save.empty()) {
        const report::Format& json = report::jsonFormat();
        report::writeReportFile(options.save, json, json.written(now));
    }
    if (complainOfUnreadable(now)) return failed;
    return isChanged ? somethingChanged : nothingChanged;
}

int run(const Options& options) {
    if (options.help || options.version) {
        const std::wstring version = L"QuillonReport " + settings::versionMajor + L'.' +
                                     settings::versionMinor + L'.' + settings::versionRevision + L"\n";
        win32::writeText(Stream::output, options.help ? report::helpText() : version);
        return nothingChanged;
    }
    win32::ComApartment com;
    struct ServicesOfTheRun {
        ~ServicesOfTheRun() { helmkit::releaseSharedServices(); }
    } services;
    return makeReport(options);
}

}  // namespace

int main() {
    win32::failWithoutBoxes();
    win32::useSystemLibrariesOnly();
    win32::setTrustedEnvironment();
    try {
        return run(report::parseOptions(report::argumentsOf(win32::commandLine())));
    } catch (const report::UsageError& error) {
        complain(error.text + L"; --help tells what there is");
    } catch (const report::MalformedReport& error) {
        complain(L"no report to compare with: " + error.text);
    } catch (const report::IncomparableReports& error) {
        complain(error.text);
    } catch (...) {
        complain(win32::currentError().description);
    }
    return failed;
}
