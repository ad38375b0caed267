// One detected startup entry, kept as the data of its list row.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "helmkit/client/records.h"

namespace startup {

// The icon of a row, in the order of the picture strip.
enum class Icon {
    exclamation,     // "i": ordinary Winlogon package, changed special place
    protectedEntry,  // "OK": Windows needs it, or the place is at its default
    ordinary,        // "IE"
};

// The names of the record's field that holds the icon's key.
enum class IconField {
    icon,      // "Icon": the general list
    gridIcon,  // "GridIcon": all others
};

struct RegistryValueName {
    LONG hive;
    std::wstring keyPath;
    std::wstring valueName;
};

// What a new record is filled with.
struct EntryFields {
    std::wstring entryName;  // the record's name: that of the value, subkey or place
    std::wstring name = {};  // first column
    std::wstring file = {};  // full path of the related file, may be empty
    std::wstring manufacturer = {};
    Icon icon = Icon::ordinary;
    std::optional<RegistryValueName> value = {};  // general list only
    std::optional<LONG> place = {};               // custom list only: the number of the special place
};

// The typed face of a record. Reading a field that the category does not set throws.
class StartupItem {
  public:
    StartupItem(helmkit::Record record, IconField iconField)
        : record_(std::move(record)), iconField_(iconField) {}

    std::wstring entryName() const { return record_.Name(); }
    std::wstring name() const;
    std::wstring file() const;
    std::wstring manufacturer() const;
    Icon icon() const;
    LONG hive() const;
    std::wstring keyPath() const;
    std::wstring valueName() const;
    LONG place() const;

    const helmkit::Record& record() const { return record_; }

  private:
    helmkit::Record record_;
    IconField iconField_;
};

// The entries of a category in their order.
class StartupItemList {
  public:
    explicit StartupItemList(IconField iconField) : iconField_(iconField) {}

    void add(const EntryFields& fields);
    std::vector<StartupItem> items() const;

  private:
    helmkit::RecordList records_;
    IconField iconField_;
};

}  // namespace startup
