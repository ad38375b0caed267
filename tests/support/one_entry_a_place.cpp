#include "tests/support/one_entry_a_place.h"

#include "tests/support/versioned_file.h"

namespace {

std::wstring program(const TempFolder& folder) {
    static int count = 0;
    const std::wstring number = std::to_wstring(++count), path = folder.file(L"program" + number + L".exe");
    makeProgramFile(path, {{L"FileDescription", L"Program " + number}});
    return path;
}

}  // namespace

void seedOneEntryAPlace(const TempFolder& folder, const std::wstring& windows) {
    const std::wstring package = startup::notifyKeyPath + std::wstring(L"\\package");
    const std::wstring service = startup::servicesKeyPath + std::wstring(L"\\service");
    for (const startup::RunKey& place : startup::runKeys)
        RegistryFixture::setString(hiveOf(place.hive), place.keyPath, L"entry", program(folder));
    for (LONG number : startup::policyHives)
        RegistryFixture::setString(hiveOf(number), startup::policyKeyPath, L"entry", program(folder));
    RegistryFixture::setString(HKEY_LOCAL_MACHINE, package, L"DLLName", program(folder));
    RegistryFixture::setString(HKEY_LOCAL_MACHINE, service, L"ImagePath", program(folder));
    for (const startup::SpecialPlace& place : startup::specialPlaces()) seedPlace(place, folder, windows);
}

void seedPlace(const startup::SpecialPlace& place, const TempFolder& folder, const std::wstring& windows) {
    const std::wstring location = place.location;
    const bool isMultiString = place.name == std::wstring(L"BootExecute");
    switch (place.kind) {
        case startup::PlaceKind::registryValue:
            return RegistryFixture::setString(hiveOf(place.hive), location, place.name, L"evil.exe",
                                              isMultiString ? REG_MULTI_SZ : REG_SZ);
        case startup::PlaceKind::iniLine:
            return TempFolder::write(windows + L'\\' + location,
                                     location == L"win.ini" ? "[windows]\r\nload=a.exe\r\nrun=b.exe\r\n"
                                                            : "[boot]\r\nshell=evil.exe\r\n");
        case startup::PlaceKind::runOnceEx:
            return RegistryFixture::setString(hiveOf(place.hive), location + L"\\0001", L"1", L"c.exe");
        case startup::PlaceKind::startupFolder:
            TempFolder::write(folder.file(L"d.exe"), "d");
            return RegistryFixture::setString(hiveOf(place.hive), location, place.name, folder.path());
    }
}
