// Message boxes with texts of the string table, titled with the program's name.
#pragma once

#include <string>
#include <vector>

#include "resources/resource_ids.h"
#include "win32/base/platform.h"

namespace resources {

// The styles that the program uses.
constexpr UINT exclamation = MB_ICONEXCLAMATION;
constexpr UINT exclamationOkCancel = MB_ICONEXCLAMATION | MB_OKCANCEL;
constexpr UINT informationBox = MB_ICONINFORMATION;

// Entry `number` of the string table with %1 and so on filled in, each as a box may show it (box_text.h).
std::wstring messageText(int number, std::vector<std::wstring> arguments = {});

// Shows it, owned by the top-level window that holds `window`; gives back the button pressed.
int showMessage(HWND window, int number, UINT style, const std::vector<std::wstring>& arguments = {});

}  // namespace resources
