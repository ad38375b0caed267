// The system service as its callers see it. Every operation throws a win32::Error when the library raises
// one.
#pragma once

#include <string>
#include <vector>

#include "helmkit/client/file_services.h"

namespace helmkit {

// The strings of one file's version resource.
class VersionInfo {
  public:
    VersionInfo() = default;
    explicit VersionInfo(win32::ComPtr<IVersionInfo> object) : object_(std::move(object)) {}
    bool Exists(const std::wstring& name) const;
    std::wstring Item(const std::wstring& name) const;

  private:
    win32::ComPtr<IVersionInfo> object_;
};

class SystemServices {
  public:
    SystemServices();

    // Fills %1 to %9.
    std::wstring FormatMessage(const std::wstring& text, const std::vector<std::wstring>& arguments);
    std::wstring ExpandEnvironment(const std::wstring& text);
    VersionInfo GetFileVersionInfo(const std::wstring& path);
    std::wstring GetWindowsFolder();
    bool IsEmptyBytes(FileServices::Bytes& bytes);
    std::wstring NewUniqueId();
    std::wstring GetTempFolder();
    std::wstring GetTempFileName(const std::wstring& prefix);
    std::wstring XmlEscape(const std::wstring& text);
    std::wstring EncodeBinaryText(const std::wstring& bytes);
    void PumpEvents();

  private:
    win32::ComPtr<ISystemServices> object_;
};

}  // namespace helmkit
