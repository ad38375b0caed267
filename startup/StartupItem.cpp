#include "startup/StartupItem.h"

#include <algorithm>
#include <iterator>

namespace startup {

namespace {

// The fields of the record. "Key" and "Hive" are crossed on purpose: "Key" holds the hive's number and "Hive"
// the path of the registry key. Whoever reads the records by these names expects them so.
namespace field {
const std::wstring name = L"Name";
const std::wstring manufacturer = L"Manufacturer";
const std::wstring file = L"DLL";
const std::wstring icon = L"Icon";
const std::wstring gridIcon = L"GridIcon";
const std::wstring hive = L"Key";
const std::wstring keyPath = L"Hive";
const std::wstring valueName = L"ValueName";
const std::wstring place = L"Place";
}  // namespace field

// In the order of Icon.
const std::wstring iconKeys[] = {L"i", L"OK", L"IE"};

const std::wstring& nameOf(IconField iconField) {
    return iconField == IconField::icon ? field::icon : field::gridIcon;
}

}  // namespace

std::wstring StartupItem::name() const {
    return record_.text(field::name);
}
std::wstring StartupItem::file() const {
    return record_.text(field::file);
}
std::wstring StartupItem::manufacturer() const {
    return record_.text(field::manufacturer);
}
Icon StartupItem::icon() const {
    const auto* key = std::find(std::begin(iconKeys), std::end(iconKeys), record_.text(nameOf(iconField_)));
    return static_cast<Icon>(key - std::begin(iconKeys));
}
LONG StartupItem::hive() const {
    return record_.number(field::hive);
}
std::wstring StartupItem::keyPath() const {
    return record_.text(field::keyPath);
}
std::wstring StartupItem::valueName() const {
    return record_.text(field::valueName);
}
LONG StartupItem::place() const {
    return record_.number(field::place);
}

void StartupItemList::add(const EntryFields& fields) {
    helmkit::Record record = records_.AddRecord();
    record.SetName(fields.entryName);
    record.SetField(field::name, fields.name);
    record.SetField(field::file, fields.file);
    record.SetField(field::manufacturer, fields.manufacturer);
    record.SetField(nameOf(iconField_), iconKeys[static_cast<int>(fields.icon)]);
    if (fields.value) {
        record.SetField(field::hive, fields.value->hive);
        record.SetField(field::keyPath, fields.value->keyPath);
        record.SetField(field::valueName, fields.value->valueName);
    }
    if (fields.place) record.SetField(field::place, *fields.place);
}

std::vector<StartupItem> StartupItemList::items() const {
    std::vector<StartupItem> items;
    for (helmkit::Record& record : records_.records()) items.emplace_back(std::move(record), iconField_);
    return items;
}

}  // namespace startup
