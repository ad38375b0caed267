// The Windows headers, for the whole program.
//
// cmake/windows.cmake chooses which Windows they describe: the standard headers may include them before this
// one does. That Windows is newer than the oldest one that the program runs on, so a function newer than
// Windows 98 is looked up at run time (scripts/check-imports.py holds the program to it) and a structure gets
// its size from win32/base/structure_size.h.
//
// The names that would choose a string flavour behind the reader's back are taken away: a text call is spelt
// with its A or W, and only this folder spells one.
#pragma once

#include <ole2.h>
#include <oleauto.h>
#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#undef CreateFont
#undef CreateWindow
#undef DefWindowProc
#undef DispatchMessage
#undef FormatMessage
#undef GetFileVersionInfo
#undef GetMessage
#undef GetTempFileName
#undef GetWindowText
#undef LoadString
#undef MessageBox
#undef PeekMessage
#undef PostMessage
#undef SendMessage
#undef SetWindowText
