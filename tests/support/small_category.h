// A category as somebody might add it: its table, its texts and its rule.
#pragma once

#include "startup/category.h"
#include "startup/enumeration.h"

inline const startup::CategoryDesign smallDesign = {.typeName = L"ucSmall",
                                                    .heading = L"Detected small programs:",
                                                    .columns = {L"Small Name", L"Small Maker"},
                                                    .note = L"Related File:",
                                                    .button = L"&Delete From Startup",
                                                    .messages = {.refusal = STRING_REFUSE_RUN}};

// One entry for each value of one key.
class ucSmall : public startup::Category {
  public:
    ucSmall() : Category(smallDesign) {}

    static constexpr wchar_t key[] = L"Software\\Small";

    Deletion deleteItem(const startup::StartupItem& item, const std::wstring& rowText,
                        const helmkit::Logger&) const override {
        const LONG status = helmkit::RegistryAccess().DeleteValue(helmkit::HKLM, key, item.entryName());
        return {.succeeded = status == ERROR_SUCCESS, .logLine = L"Small: " + rowText};
    }

  protected:
    void enumerate(startup::Enumeration& run) const override {
        for (const std::wstring& name : run.registry.EnumValues(helmkit::HKLM, key)) {
            run.entry([&] {
                const std::wstring file = run.commands.resolve(run.readString(helmkit::HKLM, key, name));
                run.list.add({.entryName = name, .name = name, .file = file});
            });
        }
    }
};
