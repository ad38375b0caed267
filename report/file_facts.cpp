#include "report/file_facts.h"

#include "report/iso_time.h"
#include "win32/files/file_search.h"
#include "win32/files/file_version.h"
#include "win32/files/sha256.h"

namespace report {

namespace {

Entry lookedAt(const std::wstring& file, bool hash) {
    Entry facts;
    facts.set(Field::file, file);
    const std::optional<win32::FoundFile> found = win32::findFile(file);
    const bool exists = found && !found->isFolder();
    facts.set(Field::exists, exists ? L"true" : L"false");
    if (!exists) return facts;
    facts.setIfAny(Field::fileVersion, win32::fileVersion(file));
    facts.set(Field::size, std::to_wstring(found->size));
    facts.set(Field::lastWrite, isoTime(win32::unixTime(found->lastWrite)));
    if (hash) facts.setIfAny(Field::sha256, win32::sha256OfFile(file));
    return facts;
}

}  // namespace

const Entry& FileFacts::of(const std::wstring& file) {
    auto known = known_.find(file);
    if (known == known_.end()) known = known_.emplace(file, lookedAt(file, hash_)).first;
    return known->second;
}

void FileFacts::describe(Entry& entry, const std::wstring& file) {
    if (file.empty()) return;
    const Entry& facts = of(file);
    for (const FieldRow& row : fieldTable()) {
        if (facts[row.field]) entry.set(row.field, facts.text(row.field));
    }
}

}  // namespace report
