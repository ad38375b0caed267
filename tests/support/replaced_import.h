// A function of Windows with another in its place: for what Windows does only on a machine in a bad way, and
// for the records that it is given.
#pragma once

#include <cstring>

#include <doctest/doctest.h>

#include "win32/base/platform.h"

// In force while it lives, for the calls of this program alone. `name` is the imported one, as in
// "MoveFileA".
class ReplacedImport {
  public:
    template <class Function>
    ReplacedImport(const char* name, Function* replacement)
        : place_(placeOf(name)), original_(place_ ? *place_ : nullptr) {
        REQUIRE_MESSAGE(place_, "not imported: " << name);
        put(place_, reinterpret_cast<void*>(replacement));
    }
    // Gives the function itself away, for a replacement that goes on to it.
    template <class Function>
    ReplacedImport(const char* name, Function* replacement, Function*& original)
        : ReplacedImport(name, replacement) {
        original = reinterpret_cast<Function*>(original_);
    }
    ~ReplacedImport() {
        if (place_) put(place_, original_);
    }
    ReplacedImport(const ReplacedImport&) = delete;
    ReplacedImport& operator=(const ReplacedImport&) = delete;

    // Where the import stands, null for none; and something else in its place, for good.
    static void** placeOf(const char* name) {
        auto* image = reinterpret_cast<char*>(::GetModuleHandleW(nullptr));
        auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(image);
        auto* headers = reinterpret_cast<IMAGE_NT_HEADERS*>(image + dos->e_lfanew);
        const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(image + directory.VirtualAddress);
        for (; library->Name; ++library) {
            auto* names = reinterpret_cast<IMAGE_THUNK_DATA*>(image + library->OriginalFirstThunk);
            auto* functions = reinterpret_cast<void**>(image + library->FirstThunk);
            for (; names->u1.AddressOfData; ++names, ++functions) {
                if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
                auto* entry = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(image + names->u1.AddressOfData);
                if (!std::strcmp(reinterpret_cast<char*>(entry->Name), name)) return functions;
            }
        }
        return nullptr;
    }
    static void put(void** place, void* function) {
        DWORD before = 0;
        ::VirtualProtect(place, sizeof *place, PAGE_READWRITE, &before);
        *place = function;
        ::VirtualProtect(place, sizeof *place, before, &before);
    }

  private:
    void** place_;
    void* original_;
};
