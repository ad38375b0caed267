#include "report/entry.h"

namespace report {

namespace {

const FieldRow table[] = {
    {.field = Field::category, .name = L"category", .label = L"Category", .isOfPlace = true},
    {.field = Field::kind, .name = L"kind", .label = L"Kind"},
    {.field = Field::hive, .name = L"hive", .label = L"Hive", .isOfPlace = true},
    {.field = Field::key, .name = L"key", .label = L"Key", .isOfPlace = true},
    {.field = Field::value, .name = L"value", .label = L"Value", .isOfPlace = true},
    {.field = Field::placeFile, .name = L"placeFile", .label = L"In file", .isOfPlace = true},
    {.field = Field::line, .name = L"line", .label = L"Line", .isOfPlace = true},
    {.field = Field::name, .name = L"name", .label = L"Name"},
    {.field = Field::state, .name = L"state", .label = L"State"},
    {.field = Field::command, .name = L"command", .label = L"Command"},
    {.field = Field::commandType, .name = L"commandType", .label = L"Type"},
    {.field = Field::file, .name = L"file", .label = L"File"},
    {.field = Field::exists, .name = L"exists", .label = L"Exists", .kind = FieldKind::truth},
    {.field = Field::maker, .name = L"maker", .label = L"Maker"},
    {.field = Field::fileVersion, .name = L"fileVersion", .label = L"File version"},
    {.field = Field::size, .name = L"size", .label = L"Size", .kind = FieldKind::number},
    {.field = Field::lastWrite, .name = L"lastWrite", .label = L"Last write"},
    {.field = Field::sha256, .name = L"sha256", .label = L"SHA-256"},
    {.field = Field::error, .name = L"error", .label = L"Error"},
};
static_assert(std::size(table) == fieldCount);

}  // namespace

std::span<const FieldRow> fieldTable() {
    return table;
}

const std::wstring& Entry::text(Field field) const {
    static const std::wstring none;
    const std::optional<std::wstring>& text = (*this)[field];
    return text ? *text : none;
}

}  // namespace report
