// floor.exe: the smallest program that does what Quillon's start does. It starts COM, makes a window with a
// tab strip and a list view, runs the floors of the backup and of the four refreshes and shows itself.
#include <objbase.h>

#include "bench/floor/floors.h"

namespace {

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DESTROY) ::PostQuitMessage(0);
    return ::DefWindowProcW(window, message, wParam, lParam);
}

HWND createWindow(HINSTANCE instance) {
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // IDC_ARROW
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = L"QuillonFloor";
    ::RegisterClassW(&windowClass);
    return ::CreateWindowExW(0, windowClass.lpszClassName, L"Floor", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                             CW_USEDEFAULT, CW_USEDEFAULT, 640, 460, nullptr, nullptr, instance, nullptr);
}

void createTabStrip(HWND parent) {
    HWND strip = ::CreateWindowExW(0, L"SysTabControl32", L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 0, 0,
                                   620, 400, parent, nullptr, nullptr, nullptr);
    for (const wchar_t* caption : {L"Help", L"General", L"Winlogon", L"Custom", L"Services"}) {
        TCITEMW tab = {};
        tab.mask = TCIF_TEXT;
        tab.pszText = const_cast<wchar_t*>(caption);
        ::SendMessageW(strip, TCM_INSERTITEMW, ::SendMessageW(strip, TCM_GETITEMCOUNT, 0, 0),
                       reinterpret_cast<LPARAM>(&tab));
    }
}

std::wstring fileBesideProgram(const wchar_t* name) {
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder = path;
    return folder.substr(0, folder.rfind(L'\\') + 1) + name;
}

std::vector<bench::floor::Row> allRows() {
    std::vector<bench::floor::Row> rows;
    for (auto* read : {bench::floor::readGeneral, bench::floor::readWinlogon, bench::floor::readOther,
                       bench::floor::readServices}) {
        for (bench::floor::Row& row : read()) rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    ::InitCommonControls();
    ::CoInitialize(nullptr);
    HWND window = createWindow(instance);
    createTabStrip(window);
    bench::floor::List list;
    list.create(window);
    bench::floor::backup(fileBesideProgram(L"floor.backup"));
    list.fill(allRows());
    ::ShowWindow(window, SW_SHOWNORMAL);
    ::UpdateWindow(window);
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    ::CoUninitialize();
    return 0;
}
