// The Windows headers, for the whole program.
//
// Everything newer than Windows 98 is looked up at run time, so the headers are asked for no more than
// Windows 2000 offers, and the names that would choose a string flavour behind the reader's back are taken
// away: a text call is spelt with its A or W, and only this folder spells one.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
// The standard headers may have chosen a newer Windows already.
#undef WINVER
#undef _WIN32_WINNT
#undef _WIN32_IE
#define WINVER 0x0500
#define _WIN32_WINNT 0x0500
#define _WIN32_IE 0x0400

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
