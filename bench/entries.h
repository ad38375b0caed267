// Startup entries for the figures: what stands in the registry and the files behind it.
#pragma once

#include <string>
#include <vector>

#include "win32/base/platform.h"

namespace bench {

const int distinctFiles = 200;

// Makes program files with version resources in a folder and gives their paths. More than one folder could
// ask for are never made: entries share them.
std::vector<std::wstring> makePrograms(const std::wstring& folder, int count = distinctFiles);

struct Value {
    HKEY hive;
    std::wstring keyPath, name, data;
};

// Values of the Run key that name the files in turn, with arguments of their own.
std::vector<Value> runValues(int count, const std::vector<std::wstring>& programs);
// Image paths and display names of services. Every second one is known good, the others name the files.
std::vector<Value> serviceValues(int count, const std::vector<std::wstring>& programs);

// Puts them into this process's registry.
void store(const std::vector<Value>& values);

}  // namespace bench
