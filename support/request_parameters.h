// The named parameters of a support request, read from the companion library's objects.
#pragma once

#include <string>
#include <vector>

#include "helmkit.h"
#include "win32/com/com.h"

namespace support {

// The parameters of a record in its order.
std::vector<win32::ComPtr<IField>> parametersOf(IRecord* record);

std::wstring nameOf(const win32::ComPtr<IField>& parameter);
LONG valueCount(const win32::ComPtr<IField>& parameter);
// The value at a position, the first is 1, as text.
std::wstring valueAt(const win32::ComPtr<IField>& parameter, LONG position);

}  // namespace support
