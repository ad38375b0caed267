// The lists and records of the library as their callers see them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "helmkit.h"
#include "win32/com/com.h"

namespace helmkit {

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
