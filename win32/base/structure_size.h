// How large a structure is to every Windows since 98, for those that carry their own size.
//
// Windows refuses a size that it does not know, and newer headers append members. So a call is told the size
// that stands here; a structure that does not stand here cannot be asked for. Those of the common controls
// carry no size: their mask tells which members count.
#pragma once

#include <cstddef>

#include "win32/base/platform.h"

namespace win32 {

// Gives back `size`, that for this processor, and holds it in the 32-bit program to the one of Windows 98.
template <size_t size, size_t onWindows98>
consteval DWORD heldSize() {
    static_assert(sizeof(void*) != 4 || size == onWindows98);
    return size;
}

// Windows Vista appended iPaddedBorderWidth.
template <class Metrics, class Font>
consteval size_t upToMessageFont() {
    return offsetof(Metrics, lfMessageFont) + sizeof(Font);
}

template <class Structure>
consteval DWORD structureSize() = delete;

template <>
consteval DWORD structureSize<NONCLIENTMETRICSA>() {
    return heldSize<upToMessageFont<NONCLIENTMETRICSA, LOGFONTA>(), 340>();
}
template <>
consteval DWORD structureSize<NONCLIENTMETRICSW>() {
    return heldSize<upToMessageFont<NONCLIENTMETRICSW, LOGFONTW>(), 500>();
}
template <>
consteval DWORD structureSize<OSVERSIONINFOA>() {
    return heldSize<sizeof(OSVERSIONINFOA), 148>();
}
template <>
consteval DWORD structureSize<OSVERSIONINFOW>() {
    return heldSize<sizeof(OSVERSIONINFOW), 276>();
}
template <>
consteval DWORD structureSize<HIGHCONTRASTA>() {
    return heldSize<sizeof(HIGHCONTRASTA), 12>();
}
template <>
consteval DWORD structureSize<HIGHCONTRASTW>() {
    return heldSize<sizeof(HIGHCONTRASTW), 12>();
}
template <>
consteval DWORD structureSize<STARTUPINFOA>() {
    return heldSize<sizeof(STARTUPINFOA), 68>();
}
template <>
consteval DWORD structureSize<STARTUPINFOW>() {
    return heldSize<sizeof(STARTUPINFOW), 68>();
}
template <>
consteval DWORD structureSize<SHELLEXECUTEINFOA>() {
    return heldSize<sizeof(SHELLEXECUTEINFOA), 60>();
}
template <>
consteval DWORD structureSize<SHELLEXECUTEINFOW>() {
    return heldSize<sizeof(SHELLEXECUTEINFOW), 60>();
}
template <>
consteval DWORD structureSize<BITMAPINFOHEADER>() {
    return heldSize<sizeof(BITMAPINFOHEADER), 40>();
}

}  // namespace win32
