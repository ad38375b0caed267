#include "helmkit/registry_export.h"

#include <new>

#include "helmkit/export_text.h"
#include "win32/base/error.h"
#include "win32/registry/registry.h"
#include "win32/system/desktop.h"

namespace helmkit {

namespace {

std::wstring fullName(HKEY hive, const std::wstring& path) {
    std::wstring name = hive == HKEY_LOCAL_MACHINE  ? L"HKEY_LOCAL_MACHINE"
                        : hive == HKEY_CURRENT_USER ? L"HKEY_CURRENT_USER"
                                                    : L"HKEY_CLASSES_ROOT";
    size_t end = path.find_last_not_of(L'\\') + 1;
    return end == 0 ? name : name + L'\\' + path.substr(0, end);
}

class Exporter {
  public:
    explicit Exporter(size_t largest) : largest_(largest) {}

    void appendKey(const std::wstring& key, const win32::RegistryKey& opened);
    void appendValue(const std::wstring& key, const std::wstring& name, const win32::RegistryKey& opened);
    void appendError(const std::wstring& key, LONG error) {
        appendOmittedKey(text_.end(), key, win32::systemDescription(error));
    }
    TextPieces text() { return std::move(text_); }

  private:
    template <class Ask>
    LONG read(Ask ask);
    void appendValues(const std::wstring& key, const win32::RegistryKey& opened);
    void appendSubkey(const std::wstring& key, const win32::RegistryKey& parent, const std::wstring& name);
    void appendRead(const std::wstring& key, const std::wstring& name);
    void appendLine(const std::wstring& key, const std::wstring& name);

    size_t largest_;
    TextPieces text_;
    win32::RegistryValue value_;  // the one being written
};

// Windows 9x gets a file of the ANSI header, the NT family one of the Unicode header.
void Exporter::appendLine(const std::wstring& key, const std::wstring& name) {
    const bool isUnicode = win32::isNtFamily();
    const std::string ansi = isUnicode ? std::string() : win32::ansiData(value_.type, value_.data);
    const size_t large = 1 << 16;
    std::wstring& piece = value_.data.size() > large ? text_.startPiece() : text_.end();
    const size_t before = piece.size();
    try {
        helmkit::appendValue(piece, key, {name, value_.type, value_.data, isUnicode ? value_.data : ansi});
    } catch (...) {
        piece.resize(before);
        throw;
    }
}

// Memory shortage is an error like others here.
template <class Ask>
LONG Exporter::read(Ask ask) {
    try {
        return ask();
    } catch (const std::bad_alloc&) {
        return ERROR_OUTOFMEMORY;
    }
}

void Exporter::appendRead(const std::wstring& key, const std::wstring& name) {
    try {
        if (value_.data.size() <= largest_) return appendLine(key, name);
    } catch (const std::bad_alloc&) {
    }
    // Assigning an empty one would keep its room.
    std::string().swap(value_.data);
    appendOmittedValue(text_.end(), key, name);
}

void Exporter::appendValues(const std::wstring& key, const win32::RegistryKey& opened) {
    std::wstring name;
    for (DWORD i = 0;; ++i) {
        const LONG error = read([&] { return opened.valueAt(i, name, value_); });
        if (error == ERROR_NO_MORE_ITEMS) return;
        if (!error) {
            appendRead(key, name);
        } else if (!opened.valueNameAt(i, name)) {
            appendOmittedValue(text_.end(), key, name);
        } else {
            return appendError(key, error);
        }
    }
}

void Exporter::appendValue(const std::wstring& key, const std::wstring& name,
                           const win32::RegistryKey& opened) {
    const LONG error = read([&] { return opened.query(name, value_); });
    if (error == ERROR_INVALID_NAME || win32::isAbsent(error)) return;
    if (error && error != ERROR_OUTOFMEMORY) return appendError(key, error);
    if (!canBeWritten(key)) return appendOmittedKey(text_.end(), key, {});
    appendKeyHeader(text_.end(), key);
    error ? appendOmittedValue(text_.end(), key, name) : appendRead(key, name);
}

void Exporter::appendSubkey(const std::wstring& key, const win32::RegistryKey& parent,
                            const std::wstring& name) {
    if (!canBeWritten(name)) return appendOmittedKey(text_.end(), key, {});
    win32::RegistryKey child;
    LONG error = child.openLink(parent.get(), name, KEY_READ);
    // Deleted since it was listed.
    if (win32::isAbsent(error)) return;
    if (error) return appendError(key, error);
    // Following links could go round for ever.
    if (child.isLink()) return appendOmittedKey(text_.end(), key, L"link");
    appendKey(key, child);
}

void Exporter::appendKey(const std::wstring& key, const win32::RegistryKey& opened) {
    if (!canBeWritten(key)) return appendOmittedKey(text_.end(), key, {});
    appendKeyHeader(text_.end(), key);
    appendValues(key, opened);
    std::vector<std::wstring> names;
    LONG error = win32::subkeyNames(opened, names);
    for (const std::wstring& name : names) appendSubkey(key + L'\\' + name, opened, name);
    if (error) appendError(key, error);
}

}  // namespace

TextPieces exportKey(HKEY hive, const std::wstring& path, size_t largest) {
    Exporter exporter(largest);
    win32::RegistryKey key;
    LONG error = key.open(hive, path, KEY_READ);
    if (!error) {
        exporter.appendKey(fullName(hive, path), key);
    } else if (!win32::isAbsent(error)) {
        exporter.appendError(fullName(hive, path), error);
    }
    return exporter.text();
}

TextPieces exportValue(HKEY hive, const std::wstring& path, const std::wstring& name, size_t largest) {
    Exporter exporter(largest);
    win32::RegistryKey opened;
    LONG error = opened.open(hive, path, KEY_READ);
    if (!error) {
        exporter.appendValue(fullName(hive, path), name, opened);
    } else if (error != ERROR_INVALID_NAME && !win32::isAbsent(error)) {
        exporter.appendError(fullName(hive, path), error);
    }
    return exporter.text();
}

}  // namespace helmkit
