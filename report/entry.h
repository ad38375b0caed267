// What the report tells of one startup entry: named fields, in the order in which every form writes them.
// Calls nothing of Windows.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace report {

enum class Field {
    category,
    kind,
    hive,
    key,
    value,
    placeFile,
    line,
    name,
    state,
    command,
    commandType,
    file,
    exists,
    maker,
    fileVersion,
    size,
    lastWrite,
    sha256,
    error,
    count
};
constexpr size_t fieldCount = static_cast<size_t>(Field::count);

// How a field is written where a form tells kinds of values apart. Its text is "true" or "false" for a truth,
// decimal digits for a number.
enum class FieldKind { text, truth, number };

struct FieldRow {
    Field field;
    const wchar_t* name;   // in JSON and as the heading of a CSV column
    const wchar_t* label;  // for people
    FieldKind kind = FieldKind::text;
    bool isOfPlace = false;  // where the entry stands: entries that agree in all of these are the same entry
};

// One row for each field, in their order.
std::span<const FieldRow> fieldTable();

// A field that is absent is told from an empty one: the name of a key's default value is empty, a key has
// none.
class Entry {
  public:
    Entry& set(Field field, std::wstring text) {
        texts_[static_cast<size_t>(field)] = std::move(text);
        return *this;
    }
    // Leaves the field out for an empty text.
    Entry& setIfAny(Field field, std::wstring text) {
        if (!text.empty()) set(field, std::move(text));
        return *this;
    }
    const std::optional<std::wstring>& operator[](Field field) const {
        return texts_[static_cast<size_t>(field)];
    }
    // Empty when it is absent.
    const std::wstring& text(Field field) const;

    bool operator==(const Entry&) const = default;

  private:
    std::array<std::optional<std::wstring>, fieldCount> texts_;
};

// What holds for a whole report.
struct Header {
    std::wstring version;  // of the program
    std::wstring computer, user;
    std::wstring time;  // as isoTime gives it
    std::wstring windows;
    std::vector<std::wstring> categories;  // those that were read, in their order
    bool all = false;                      // with the standard services
    bool hash = false;
};

struct Report {
    Header header;
    std::vector<Entry> entries;
};

// The texts of Field::kind and Field::state.
namespace kind {
inline const std::wstring entry = L"entry";            // a row of the window
inline const std::wstring content = L"content";        // what one of places 15 to 18 holds
inline const std::wstring unreadable = L"unreadable";  // a place that could not be read
}  // namespace kind
namespace state {
inline const std::wstring protectedEntry = L"protected";
inline const std::wstring atDefault = L"default";
inline const std::wstring changed = L"changed";
inline const std::wstring ordinary = L"ordinary";
inline const std::wstring standard = L"standard";  // a service that the window skips
}  // namespace state

}  // namespace report
