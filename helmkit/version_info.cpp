#include "helmkit/version_info.h"

namespace helmkit::server {

STDMETHODIMP VersionInfo::Exists(BSTR name, VARIANT_BOOL* present) {
    return method([&] {
        bool isThere = resource_.string(std::wstring(win32::BString::view(name))).has_value();
        win32::result(present) = isThere ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

STDMETHODIMP VersionInfo::get_Item(BSTR name, BSTR* text) {
    return method([&] {
        auto string = resource_.string(std::wstring(win32::BString::view(name)));
        win32::result(text) = win32::BString(string.value_or(std::wstring())).release();
    });
}

STDMETHODIMP VersionInfo::QueryValue(BSTR name, BSTR* text) {
    return get_Item(name, text);
}

}  // namespace helmkit::server
