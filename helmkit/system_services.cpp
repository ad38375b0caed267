#include "helmkit/system_services.h"

#include <algorithm>
#include <iterator>

#include "helmkit/base64.h"
#include "helmkit/format_message.h"
#include "helmkit/message_arguments.h"
#include "helmkit/version_info.h"
#include "helmkit/xml_escape.h"
#include "win32/files/files.h"
#include "win32/system/system.h"
#include "win32/windows/message_loop.h"

namespace helmkit::server {

namespace {

BSTR newString(std::wstring_view text) {
    return win32::BString(text).release();
}

std::wstring uniqueId() {
    GUID id;
    win32::check(::CoCreateGuid(&id));
    wchar_t text[39];
    ::StringFromGUID2(id, text, std::size(text));
    return std::wstring(text + 1, 36);
}

std::string bytesHeldIn(std::wstring_view text) {
    std::string bytes;
    for (wchar_t c : text) {
        if (c > 0xFF) win32::raise(E_INVALIDARG, L"The text holds a character that is no byte");
        bytes += static_cast<char>(c);
    }
    return bytes;
}

}  // namespace

STDMETHODIMP SystemServices::FormatMessage(BSTR text, VARIANT arguments, BSTR* result) {
    return method([&] {
        win32::result(result) =
            newString(formatMessage(win32::BString::view(text), messageArguments(arguments)));
    });
}

STDMETHODIMP SystemServices::ExpandEnvironment(BSTR text, BSTR* result) {
    return method(
        [&] { win32::result(result) = newString(win32::expandEnvironment(win32::BString::copy(text))); });
}

STDMETHODIMP SystemServices::GetFileVersionInfo(BSTR path, IVersionInfo** info) {
    return method([&] { win32::result(info) = new VersionInfo(win32::BString::copy(path)); });
}

STDMETHODIMP SystemServices::GetWindowsFolder(BSTR* path) {
    return method([&] { win32::result(path) = newString(win32::windowsFolder()); });
}

STDMETHODIMP SystemServices::GetOSVersion(BSTR* version, BSTR* servicePack, LONG* platform, LONG* major,
                                          LONG* minor, LONG* build) {
    return method([&] {
        win32::OsVersion running = win32::osVersion();
        win32::BString versionText(running.version), servicePackText(running.servicePack);
        win32::result(platform) = static_cast<LONG>(running.platform);
        win32::result(major) = static_cast<LONG>(running.major);
        win32::result(minor) = static_cast<LONG>(running.minor);
        win32::result(build) = static_cast<LONG>(running.build);
        win32::result(version);
        win32::result(servicePack) = servicePackText.release();
        *version = versionText.release();
    });
}

STDMETHODIMP SystemServices::IsEmptyBytes(SAFEARRAY** bytes, VARIANT_BOOL* empty) {
    return method([&] {
        bool isEmpty = !bytes || !*bytes || (*bytes)->cDims == 0;
        for (USHORT i = 0; !isEmpty && i < (*bytes)->cDims; ++i)
            isEmpty = (*bytes)->rgsabound[i].cElements == 0;
        win32::result(empty) = isEmpty ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

STDMETHODIMP SystemServices::NewUniqueId(BSTR* id) {
    return method([&] { win32::result(id) = newString(uniqueId()); });
}

STDMETHODIMP SystemServices::GetTempFolder(BSTR* path) {
    return method([&] { win32::result(path) = newString(win32::tempFolder()); });
}

STDMETHODIMP SystemServices::GetTempFileName(BSTR prefix, BSTR* path) {
    return method([&] {
        win32::result(path);
        std::wstring begin = win32::BString::copy(prefix);
        // The NUL that ends the list is one of them.
        const wchar_t inNoName[] = L"\\/:*?\"<>|";
        if (begin.find_first_of(inNoName, 0, std::size(inNoName)) != std::wstring::npos) {
            win32::raise(E_INVALIDARG, L"The prefix holds a character that no file name has");
        }
        std::wstring id = uniqueId();
        id.erase(std::remove(id.begin(), id.end(), L'-'), id.end());
        *path = newString(win32::tempFolder() + begin + id);
    });
}

STDMETHODIMP SystemServices::XmlEscape(BSTR text, BSTR* escaped) {
    return method([&] { win32::result(escaped) = newString(xmlEscape(win32::BString::view(text))); });
}

STDMETHODIMP SystemServices::EncodeBinaryText(BSTR bytes, BSTR* text) {
    return method([&] { win32::result(text) = newString(base64(bytesHeldIn(win32::BString::view(bytes)))); });
}

STDMETHODIMP SystemServices::PumpEvents() {
    return method([] { win32::runPendingMessages(); });
}

}  // namespace helmkit::server
