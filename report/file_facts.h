// What the report tells of the files that entries start.
#pragma once

#include <string>
#include <unordered_map>

#include "report/entry.h"

namespace report {

class FileFacts {
  public:
    // With `hash` also the SHA-256 of each file of this machine.
    explicit FileFacts(bool hash) : hash_(hash) {}

    // Sets the file fields of an entry, but for its maker; none for an empty name. Each file is looked at
    // once.
    void describe(Entry& entry, const std::wstring& file);

  private:
    // The same fields, kept for the next entry.
    const Entry& of(const std::wstring& file);

    std::unordered_map<std::wstring, Entry> known_;
    bool hash_;
};

}  // namespace report
