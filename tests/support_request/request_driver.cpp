// One support request as a command, with the real companion library and the real XMLHTTP object:
//
//     request_driver ENDPOINT CATEGORY [flavour=F] [temp=FOLDER] [NAME=VALUE]...
//
// Values of one name that stand together become one parameter with several values.
#include "helmkit/client/logger.h"
#include "helmkit/client/records.h"
#include "helmkit/client/shared_services.h"
#include "support/cl.h"
#include "tests/support_request/driver.h"
#include "win32/system/environment.h"

namespace {

struct Parameters {
    helmkit::RecordList list;
    win32::ComPtr<IRecord> record;
    std::wstring last;

    Parameters() : record(win32::create<IRecord>(CLSID_Record, IID_IRecord)) {}

    void add(const std::wstring& name, const std::wstring& value) {
        const win32::BString spelled(name);
        const win32::Variant text(value);
        if (name != last) {
            win32::check(record->SetField(spelled.get(), text));
            last = name;
            return;
        }
        win32::ComPtr<IField> field;
        win32::check(record->Field(spelled.get(), field.out()));
        win32::check(field->Add(text));
    }
};

void run(const std::vector<std::wstring>& arguments) {
    Parameters parameters;
    for (size_t i = 2; i < arguments.size(); ++i) {
        std::wstring value;
        if (isOption(arguments[i], L"flavour", value)) {
            win32::forceFlavour(value == L"ansi" ? win32::Flavour::ansi : win32::Flavour::wide);
        } else if (isOption(arguments[i], L"temp", value)) {
            win32::setEnvironmentVariable(L"TMP", value);
        } else {
            const size_t equals = arguments[i].find(L'=');
            parameters.add(arguments[i].substr(0, equals), arguments[i].substr(equals + 1));
        }
    }
    std::wstring reason = L"(not set)";
    const DWORD began = ::GetTickCount();
    const bool sent =
        support::cl(arguments.at(0)).Do1(helmkit::Logger(), arguments.at(1), parameters.record.get(), reason);
    tell("result", sent ? L"true" : L"false");
    tell("reason", reason);
    tell("milliseconds", std::to_wstring(::GetTickCount() - began));
}

}  // namespace

int main() {
    win32::ComApartment apartment;
    const int result = tellingFailure([] { run(argumentList()); });
    helmkit::releaseSharedServices();
    return result;
}
