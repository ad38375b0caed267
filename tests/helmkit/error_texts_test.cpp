// What a caller is told about a call that was wrong in itself: its number and its description.
#include <doctest/doctest.h>

#include <functional>

#include "helmkit/client/logger.h"
#include "helmkit/file_services.h"
#include "helmkit/keyed_list.h"
#include "helmkit/record_list.h"
#include "helmkit/registry_access.h"
#include "helmkit/system_services.h"
#include "support/cZip.h"
#include "tests/support/helmkit_classes.h"
#include "tests/support/objects.h"
#include "tests/support/recording_logger.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/replaced_import.h"
#include "tests/support/temp_folder.h"

namespace {

struct Objects : RegistryFixture {
    win32::ComPtr<helmkit::server::RegistryAccess> registry = make<helmkit::server::RegistryAccess>();
    win32::ComPtr<helmkit::server::FileServices> files = make<helmkit::server::FileServices>();
    win32::ComPtr<helmkit::server::SystemServices> system = make<helmkit::server::SystemServices>();
    win32::ComPtr<helmkit::server::KeyedList> list = make<helmkit::server::KeyedList>();
    win32::ComPtr<helmkit::server::RecordList> records = make<helmkit::server::RecordList>();
    win32::ComPtr<IRecord> record;  // with one field
    win32::ComPtr<IField> field;
    win32::ComPtr<IVersionInfo> version;

    Objects() {
        REQUIRE(records->AddRecord(record.out()) == S_OK);
        REQUIRE(record->SetField(bs(L"f").get(), win32::Variant(LONG{1})) == S_OK);
        REQUIRE(record->Field(bs(L"f").get(), field.out()) == S_OK);
        REQUIRE(system->GetFileVersionInfo(bs(L"none").get(), version.out()) == S_OK);
    }
};

struct Row {
    std::function<HRESULT()> call;
    HRESULT number;
    const wchar_t* description;
};

SAFEARRAY* WINAPI noArray(VARTYPE, LONG, ULONG) {
    return nullptr;
}

std::wstring lastDescription() {
    win32::ComPtr<IErrorInfo> info;
    win32::BString text;
    REQUIRE(::GetErrorInfo(0, info.out()) == S_OK);
    REQUIRE(info->GetDescription(text.out()) == S_OK);
    return text.text();
}

}  // namespace

TEST_CASE_FIXTURE(Objects, "each object of the library says what was wrong with a call") {
    win32::BString text;
    win32::Variant value;
    win32::ComPtr<IRecord> noRecord;
    win32::ComPtr<IField> noField;
    win32::Variant numbers, table;
    SAFEARRAYBOUND bounds[2] = {{1, 0}, {1, 0}};
    numbers.parray = ::SafeArrayCreate(VT_I4, 1, bounds);
    table.parray = ::SafeArrayCreate(VT_I4, 2, bounds);
    numbers.vt = table.vt = VT_ARRAY | VT_I4;
    VARIANT lying = numbers;
    lying.vt = VT_ARRAY | VT_R8;
    VARIANT nothing;
    nothing.vt = VT_NULL;
    BSTR path = nullptr;
    LONG hive = 0, status = 0;
    const wchar_t* const noPlace = L"No place for the result was given";
    const Row rows[] = {
        {[&] { return registry->ReadValue(-1, nullptr, nullptr, text.out(), &status); }, E_INVALIDARG,
         L"Not a registry hive: 4294967295"},
        {[&] { return registry->ExportKey(nullptr, &path, text.out()); }, E_POINTER,
         L"No hive or key was given"},
        {[&] { return registry->ExportKey(&hive, nullptr, text.out()); }, E_POINTER,
         L"No hive or key was given"},
        {[&] { return registry->ReadValue(0, nullptr, nullptr, nullptr, &status); }, E_POINTER, noPlace},
        {[&] { return files->ReadTextFile(nullptr, nullptr); }, E_POINTER, noPlace},
        {[&] { return system->FormatMessage(nullptr, lying, text.out()); }, DISP_E_TYPEMISMATCH,
         L"The arguments are of a type that has no text"},
        {[&] { return system->FormatMessage(nullptr, table, text.out()); }, E_INVALIDARG,
         L"The arguments must be a list"},
        {[&] { return system->EncodeBinaryText(bs(L"\x100").get(), text.out()); }, E_INVALIDARG,
         L"The text holds a character that is no byte"},
        {[&] { return system->GetTempFileName(bs(L"a*").get(), text.out()); }, E_INVALIDARG,
         L"The prefix holds a character that no file name has"},
        {[&] { return list->get_Item(win32::Variant(std::wstring(L"k")), value.out()); }, E_INVALIDARG,
         L"The list has no item of that key"},
        {[&] { return list->get_Item(win32::Variant(LONG{1}), value.out()); }, DISP_E_BADINDEX,
         L"The list has no item there"},
        {[&] { return list->get_Item(win32::Variant(LONG{1}), nullptr); }, E_POINTER, noPlace},
        {[&] { return records->get_Item(0, noRecord.out()); }, DISP_E_BADINDEX,
         L"The list has no record there"},
        {[&] { return records->get_Item(2, noRecord.out()); }, DISP_E_BADINDEX,
         L"The list has no record there"},
        {[&] { return record->SetField(bs(L"g").get(), win32::Variant()); }, DISP_E_TYPEMISMATCH,
         L"A field needs a value"},
        {[&] { return record->SetField(bs(L"g").get(), nothing); }, DISP_E_TYPEMISMATCH,
         L"A field needs a value"},
        {[&] { return record->Field(bs(L"none").get(), noField.out()); }, E_INVALIDARG,
         L"The record has no such field"},
        {[&] { return field->get_Item(0, value.out()); }, DISP_E_BADINDEX, L"The field has no value there"},
        {[&] { return field->get_Item(2, value.out()); }, DISP_E_BADINDEX, L"The field has no value there"},
        {[&] { return field->get_Value(nullptr); }, E_POINTER, noPlace},
    };
    for (const Row& row : rows) {
        CAPTURE(&row - rows);
        CHECK(row.call() == row.number);
        CHECK(lastDescription() == row.description);
    }
}

TEST_CASE_FIXTURE(Objects, "every operation that gives something back asks for a place for it") {
    setString(HKEY_LOCAL_MACHINE, L"k", L"v", L"1");
    TempFolder folder;
    TempFolder::write(folder.file(L"a"), "text");
    const win32::BString key(L"k"), name(L"v"), path(folder.file(L"a"));
    BSTR keyPath = key.get();
    win32::BString text, other;
    LONG hive = static_cast<LONG>(0x80000002), number = 0, numbers[4];
    BSTR given = path.get();
    const std::function<HRESULT()> calls[] = {
        [&] { return registry->ReadValue(hive, keyPath, name.get(), nullptr, &number); },
        [&] { return registry->ReadValue(hive, keyPath, name.get(), text.out(), nullptr); },
        [&] { return registry->WriteValue(hive, keyPath, name.get(), name.get(), nullptr); },
        [&] { return registry->EnumSubkeys(hive, keyPath, nullptr); },
        [&] { return registry->EnumValues(hive, keyPath, nullptr); },
        [&] { return registry->ExportKey(&hive, &keyPath, nullptr); },
        [&] { return registry->ExportValue(hive, keyPath, name.get(), nullptr); },
        [&] { return registry->ValueType(hive, keyPath, name.get(), nullptr); },
        [&] { return registry->DeleteValue(hive, keyPath, name.get(), nullptr); },
        [&] { return registry->DeleteKey(hive, keyPath, nullptr); },
        [&] { return files->FileExists(given, nullptr); },
        [&] { return files->ReadTextFile(given, nullptr); },
        [&] { return files->ReadFileBytes(given, nullptr); },
        [&] { return system->FormatMessage(given, win32::Variant(), nullptr); },
        [&] { return system->ExpandEnvironment(given, nullptr); },
        [&] { return system->GetFileVersionInfo(given, nullptr); },
        [&] { return system->GetWindowsFolder(nullptr); },
        [&] { return system->GetOSVersion(nullptr, text.out(), numbers, numbers, numbers, numbers); },
        [&] { return system->GetOSVersion(text.out(), nullptr, numbers, numbers, numbers, numbers); },
        [&] { return system->GetOSVersion(text.out(), other.out(), nullptr, numbers, numbers, numbers); },
        [&] { return system->GetOSVersion(text.out(), other.out(), numbers, nullptr, numbers, numbers); },
        [&] { return system->GetOSVersion(text.out(), other.out(), numbers, numbers, nullptr, numbers); },
        [&] { return system->GetOSVersion(text.out(), other.out(), numbers, numbers, numbers, nullptr); },
        [&] { return system->IsEmptyBytes(nullptr, nullptr); },
        [&] { return system->NewUniqueId(nullptr); },
        [&] { return system->GetTempFolder(nullptr); },
        [&] { return system->GetTempFileName(name.get(), nullptr); },
        [&] { return system->XmlEscape(given, nullptr); },
        [&] { return system->EncodeBinaryText(name.get(), nullptr); },
        [&] { return list->Exists(given, nullptr); },
        [&] { return list->get_Count(nullptr); },
        [&] { return list->get__NewEnum(nullptr); },
        [&] { return records->AddRecord(nullptr); },
        [&] { return records->get_Count(nullptr); },
        [&] { return records->get_Item(1, nullptr); },
        [&] { return records->get__NewEnum(nullptr); },
        [&] { return record->get_Name(nullptr); },
        [&] { return record->Field(bs(L"f").get(), nullptr); },
        [&] { return record->get_Count(nullptr); },
        [&] { return record->get__NewEnum(nullptr); },
        [&] { return field->get_Name(nullptr); },
        [&] { return field->get_Count(nullptr); },
        [&] { return field->get_Item(1, nullptr); },
        [&] { return version->Exists(given, nullptr); },
        [&] { return version->get_Item(given, nullptr); },
        [&] { return version->QueryValue(given, nullptr); },
    };
    for (const auto& call : calls) {
        CAPTURE(&call - calls);
        CHECK(call() == E_POINTER);
        CHECK(lastDescription() == L"No place for the result was given");
    }
    LONG count = 0;
    REQUIRE(records->get_Count(&count) == S_OK);
    CHECK(count == 1);
}

TEST_CASE_FIXTURE(RegistryFixture, "arrays that memory is short for are told as such") {
    const HelmkitClasses classes;
    auto files = make<helmkit::server::FileServices>();
    const ReplacedImport none("SafeArrayCreateVector", &noArray);
    SAFEARRAY* bytes = nullptr;
    CHECK(files->ReadFileBytes(bs(L"none").get(), &bytes) == E_OUTOFMEMORY);
    CHECK(lastDescription() == L"Out of memory");
    try {
        helmkit::systemServices().FormatMessage(L"%1", {L"a"});
        FAIL_CHECK("nothing was thrown");
    } catch (const win32::Error& error) {
        CHECK(error.number == E_OUTOFMEMORY);
        CHECK(error.description == L"Out of memory");
    }
}

TEST_CASE("callers are told in the same way") {
    const HelmkitClasses classes;
    RecordingLogger log;
    support::cZip nothing, noFiles, bothWays;
    noFiles.ZipFile = bothWays.ZipFile = L"x.zip";
    bothWays.AddFileSpec(L"a");
    bothWays.ConvertCRLFToLF = bothWays.ConvertLFToCRLF = true;
    const struct {
        std::function<void()> call;
        HRESULT number;
        const wchar_t* description;
    } rows[] = {
        {[&] { log.logger().OpenLogs(L"a", L"b"); }, E_NOINTERFACE, L"The logger opens no logs"},
        {[&] { nothing.FileSpec(3); }, DISP_E_BADINDEX, L"There is no file specification 3"},
        {[&] { nothing.Zip(); }, E_INVALIDARG, L"No archive is named"},
        {[&] { noFiles.Zip(); }, E_INVALIDARG, L"No file is named"},
        {[&] { bothWays.Zip(); }, E_INVALIDARG, L"Line ends cannot go both ways"},
    };
    for (const auto& row : rows) {
        CAPTURE(&row - rows);
        try {
            row.call();
            FAIL_CHECK("nothing was thrown");
        } catch (const win32::Error& error) {
            CHECK(error.number == row.number);
            CHECK(error.description == row.description);
        }
    }
}
