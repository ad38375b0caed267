#include "helmkit/classes.h"

#include <iterator>

#include "helmkit/file_services.h"
#include "helmkit/keyed_list.h"
#include "helmkit/log_writer.h"
#include "helmkit/record_list.h"
#include "helmkit/registry_access.h"
#include "helmkit/system_services.h"

namespace helmkit {

namespace {

const win32::ComClass classes[] = {
    {&CLSID_LogWriter, L"Helmkit.LogWriter", win32::createObject<server::LogWriter>},
    {&CLSID_RegistryAccess, L"Helmkit.RegistryAccess", win32::createObject<server::RegistryAccess>},
    {&CLSID_FileServices, L"Helmkit.FileServices", win32::createObject<server::FileServices>},
    {&CLSID_SystemServices, L"Helmkit.SystemServices", win32::createObject<server::SystemServices>},
    {&CLSID_KeyedList, L"Helmkit.KeyedList", win32::createObject<server::KeyedList>},
    {&CLSID_RecordList, L"Helmkit.RecordList", win32::createObject<server::RecordList>},
    {&CLSID_Record, L"Helmkit.Record", win32::createObject<server::Record>},
};

const win32::ComModule module = {classes, std::size(classes), &LIBID_Helmkit, 2, 1};

}  // namespace

const win32::ComModule& comModule() {
    return module;
}

}  // namespace helmkit
