// A Windows of a test's own around a startup page: registry, Windows folder, desktop, logger.
#pragma once

#include "startup/StartupListControl.h"
#include "tests/support/helmkit_classes.h"
#include "tests/support/recording_logger.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "tests/support/versioned_file.h"
#include "win32/system/environment.h"
#include "win32/windows/list_view.h"
#include "win32/windows/scale.h"
#include "win32/windows/window.h"

// The parent of the pages, 400 x 300 pixels and never shown.
class HiddenWindow : public win32::Window {
  public:
    HiddenWindow() {
        create(L"QuillonTestWindow", L"test", WS_OVERLAPPEDWINDOW, 0, nullptr, nullptr);
        ::SetWindowPos(handle(), nullptr, 0, 0, 400, 300, SWP_NOZORDER | SWP_NOACTIVATE);
    }
};

// A resolution at which a pixel is a twip, so that measures are seen as they are meant.
class TwipResolution {
  public:
    explicit TwipResolution(HWND topLevel) : topLevel_(topLevel) { win32::keepDpi(topLevel, 1440); }
    ~TwipResolution() { win32::forgetDpi(topLevel_); }
    TwipResolution(const TwipResolution&) = delete;
    TwipResolution& operator=(const TwipResolution&) = delete;

  private:
    HWND topLevel_;
};

// Left, top, width and height of a child window.
inline std::vector<int> placeIn(HWND parent, HWND window) {
    RECT place;
    ::GetWindowRect(window, &place);
    ::MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    return {int(place.left), int(place.top), int(place.right - place.left), int(place.bottom - place.top)};
}

// An environment variable with another value for a while.
class Variable {
  public:
    Variable(const std::wstring& name, const std::wstring& value)
        : name_(name), before_(win32::environmentVariable(name)) {
        win32::setEnvironmentVariable(name, value);
    }
    ~Variable() { win32::setEnvironmentVariable(name_, before_); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    std::wstring name_, before_;
};

// The page of a category.
template <class Category>
class PageOf : public startup::StartupListControl {
  public:
    explicit PageOf(HWND parent) : StartupListControl(parent, std::make_unique<Category>()) {}
};

struct PageFixture {
    TempFolder folder;
    // What %windir% and %programfiles% mean: folders of the test's own.
    std::wstring windows = folder.file(L"Windows"), programs = folder.file(L"Programs");
    Variable windirVariable{L"windir", windows}, programsVariable{L"programfiles", programs};
    RegistryFixture registry;
    HelmkitClasses classes;
    ScriptedDesktop desktop;
    RecordingLogger log;
    HiddenWindow parent;

    PageFixture() {
        for (const std::wstring& path : {windows, windows + L"\\system32", windows + L"\\system", programs}) {
            REQUIRE(::CreateDirectoryW(path.c_str(), nullptr));
        }
    }

    // The path of a new program file in a folder of the fixture.
    std::wstring program(const std::wstring& path, const VersionStrings& strings = {}) {
        makeProgramFile(path, strings);
        return path;
    }

    static HWND control(const win32::Window& page, int id) { return ::GetDlgItem(page.handle(), id); }
    static std::wstring fileBox(const win32::Window& page) { return win32::windowText(control(page, 102)); }
    static void press(const win32::Window& page, int button) {
        ::SendMessageW(page.handle(), WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                       reinterpret_cast<LPARAM>(control(page, button)));
    }
};
