// Helmkit as its callers see it: four services and three kinds of records, made by class through COM. Nothing
// of the library is linked. Every operation throws a win32::Error when the library raises one.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "helmkit.h"
#include "win32/com/com.h"

namespace helmkit {

// Hives cross as 32-bit numbers and are sign-extended to HKEY in a 64-bit process.
constexpr LONG HKCR = static_cast<LONG>(0x80000000);
constexpr LONG HKCU = static_cast<LONG>(0x80000001);
constexpr LONG HKLM = static_cast<LONG>(0x80000002);

// Log levels.
constexpr LONG startUpError = 0;
constexpr LONG caughtError = 4;
constexpr LONG information = 5;

// A reference to a logger: the library's own, or any object with a WriteLog that a plug-in put in its place.
class Logger {
  public:
    Logger() = default;
    explicit Logger(win32::ComPtr<IDispatch> object) : object_(std::move(object)) {}

    // The library's own, with no logs open yet.
    static Logger create();
    // Only for the library's own logger. When it throws, every later line is dropped.
    void OpenLogs(const std::wstring& fullLog, const std::wstring& shortLog) const;

    // Throws when there is no logger or it refuses.
    void WriteLog(LONG code, const std::wstring& text, LONG level, const std::wstring& source) const;

    IDispatch* object() const { return object_.get(); }

  private:
    win32::ComPtr<IDispatch> object_;
};

class RegistryAccess {
  public:
    // What ReadValue tells; `status` is a Win32 error code: 0, 2 for absent, 1630 for neither string nor
    // list.
    struct Value {
        std::wstring data;
        LONG status = 0;
    };

    RegistryAccess();

    Value ReadValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName);
    // The registry's type number, -1 when the value is missing.
    LONG ValueType(LONG hive, const std::wstring& keyPath, const std::wstring& valueName);
    // These three give a Win32 error code, 0 on success.
    LONG WriteValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName,
                    const std::wstring& data);
    LONG DeleteValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName);
    LONG DeleteKey(LONG hive, const std::wstring& keyPath);
    // Names in the registry's order; none when the key is missing.
    std::vector<std::wstring> EnumSubkeys(LONG hive, const std::wstring& keyPath);
    std::vector<std::wstring> EnumValues(LONG hive, const std::wstring& keyPath);
    // Registry-export text; empty when key or value is missing.
    std::wstring ExportKey(LONG hive, const std::wstring& keyPath);
    std::wstring ExportValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName);

  private:
    win32::ComPtr<IRegistryAccess> object_;
};

class FileServices {
  public:
    FileServices();

    void CreateFolder(const std::wstring& path);
    bool FileExists(const std::wstring& path);
    // One character for each byte.
    win32::BString ReadTextFile(const std::wstring& path);
    void WriteTextFile(const std::wstring& path, const std::wstring& text);
    // The file's bytes in a safe array that the caller owns; empty when the file cannot be read.
    struct Bytes {
        SAFEARRAY* array = nullptr;
        Bytes() = default;
        Bytes(Bytes&& other) noexcept : array(std::exchange(other.array, nullptr)) {}
        Bytes& operator=(Bytes&&) = delete;
        ~Bytes() {
            if (array) ::SafeArrayDestroy(array);
        }
    };
    Bytes ReadFileBytes(const std::wstring& path);

  private:
    win32::ComPtr<IFileServices> object_;
};

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
    struct Version {
        std::wstring version, servicePack;
        LONG platform = 0, major = 0, minor = 0, build = 0;
    };

    SystemServices();

    // Fills %1 to %9.
    std::wstring FormatMessage(const std::wstring& text, const std::vector<std::wstring>& arguments);
    std::wstring ExpandEnvironment(const std::wstring& text);
    VersionInfo GetFileVersionInfo(const std::wstring& path);
    std::wstring GetWindowsFolder();
    Version GetOSVersion();
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

// The one shared instance of each, made on first use and kept for the run.
FileServices& fileServices();
SystemServices& systemServices();
// Gives the shared instances back; called before COM ends.
void releaseSharedServices();

class KeyedList {
  public:
    KeyedList();
    // Under a key that is present the first item stays.
    void Add(const std::wstring& item, const std::wstring& key);
    // The text under the key, none when there is none. Keys are case-sensitive.
    std::optional<std::wstring> find(const std::wstring& key) const;

  private:
    win32::ComPtr<IKeyedList> object_;
};

class Record {
  public:
    explicit Record(win32::ComPtr<IRecord> object) : object_(std::move(object)) {}
    std::wstring Name() const;
    void SetName(const std::wstring& name);
    void SetField(const std::wstring& name, const std::wstring& value);
    void SetField(const std::wstring& name, LONG value);
    // The first value of a field; a field that the record lacks is an error.
    std::wstring text(const std::wstring& name) const;
    LONG number(const std::wstring& name) const;

  private:
    win32::Variant value(const std::wstring& name) const;
    win32::ComPtr<IRecord> object_;
};

class RecordList {
  public:
    RecordList();
    // A new, empty record at the end.
    Record AddRecord();
    // All records, first to last.
    std::vector<Record> records() const;

  private:
    win32::ComPtr<IRecordList> object_;
};

}  // namespace helmkit
