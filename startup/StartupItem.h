// One detected startup entry, kept as the data of its list row.
#pragma once

#include <string>

#include "helmkit/client/records.h"

namespace startup {

// The fields of a StartupItem record. "Key" and "Hive" are crossed on purpose: "Key" holds the hive's number
// and "Hive" the path of the registry key, and the log lines rely on it.
namespace field {
inline const std::wstring Name = L"Name";
inline const std::wstring Manufacturer = L"Manufacturer";
inline const std::wstring Dll = L"DLL";
inline const std::wstring Icon = L"Icon";          // the general list
inline const std::wstring GridIcon = L"GridIcon";  // Winlogon packages and services
inline const std::wstring Key = L"Key";
inline const std::wstring Hive = L"Hive";
inline const std::wstring ValueName = L"ValueName";
inline const std::wstring Place = L"Place";  // the number of a special place
}  // namespace field

// Keys of a row's icon.
namespace icon {
inline const std::wstring exclamation = L"i";  // ordinary Winlogon package, changed special place
inline const std::wstring protectedEntry = L"OK";
inline const std::wstring ordinary = L"IE";
}  // namespace icon

using StartupItem = helmkit::Record;
using StartupItemList = helmkit::RecordList;

}  // namespace startup
