#include "report/compare.h"

#include <algorithm>
#include <deque>
#include <unordered_map>

namespace report {

namespace {

// No part of a place runs into the next: each begins with its length.
std::wstring placeOf(const Entry& entry) {
    std::wstring place;
    for (const FieldRow& row : fieldTable()) {
        if (!row.isOfPlace) continue;
        const std::optional<std::wstring>& text = entry[row.field];
        place += text ? std::to_wstring(text->size()) + L':' + *text : std::wstring(L"-");
    }
    return place;
}

bool isStandard(const Entry& entry) {
    return entry.text(Field::state) == state::standard;
}

bool isIn(const Header& header, const std::wstring& category) {
    return std::find(header.categories.begin(), header.categories.end(), category) != header.categories.end();
}

std::vector<Field> differingFields(const Entry& before, const Entry& after) {
    std::vector<Field> fields;
    for (const FieldRow& row : fieldTable()) {
        const auto &old = before[row.field], &now = after[row.field];
        const bool isLeftOut = row.field == Field::sha256 && (!old || !now);
        if (old != now && !isLeftOut) fields.push_back(row.field);
    }
    return fields;
}

// The old entries that are still waiting for the new ones of their place.
class Unmatched {
  public:
    explicit Unmatched(const Report& before, const Header& after) : entries_(before.entries) {
        for (size_t i = 0; i < entries_.size(); ++i) {
            const bool isCompared = isIn(after, entries_[i].text(Field::category));
            isLeft_.push_back(isCompared);
            if (isCompared) places_[placeOf(entries_[i])].push_back(i);
        }
    }
    // Null when there is none.
    const Entry* take(const Entry& after) {
        auto found = places_.find(placeOf(after));
        if (found == places_.end() || found->second.empty()) return nullptr;
        const size_t i = found->second.front();
        found->second.pop_front();
        isLeft_[i] = false;
        return &entries_[i];
    }
    std::vector<Entry> left() const {
        std::vector<Entry> left;
        for (size_t i = 0; i < entries_.size(); ++i) {
            if (isLeft_[i]) left.push_back(entries_[i]);
        }
        return left;
    }

  private:
    const std::vector<Entry>& entries_;
    std::vector<bool> isLeft_;
    std::unordered_map<std::wstring, std::deque<size_t>> places_;
};

void checkCategories(const Header& before, const Header& after) {
    for (const std::wstring& category : after.categories) {
        if (!isIn(before, category))
            throw IncomparableReports(L"the old report lacks the category " + category);
    }
}

}  // namespace

Difference compareReports(const Report& before, const Report& after) {
    checkCategories(before.header, after.header);
    Difference difference = {before.header, after.header, {}};
    Unmatched unmatched(before, after.header);
    for (const Entry& entry : after.entries) {
        const Entry* old = unmatched.take(entry);
        if (!old) {
            if (before.header.all || !isStandard(entry))
                difference.changes.push_back({Change::Kind::added, {}, entry, {}});
            continue;
        }
        std::vector<Field> fields = differingFields(*old, entry);
        if (!fields.empty())
            difference.changes.push_back({Change::Kind::changed, *old, entry, std::move(fields)});
    }
    for (const Entry& entry : unmatched.left()) {
        if (after.header.all || !isStandard(entry))
            difference.changes.push_back({Change::Kind::removed, entry, {}, {}});
    }
    return difference;
}

}  // namespace report
