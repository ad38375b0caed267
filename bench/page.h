// A startup page and the floor's list, side by side under windows that are never shown, in a Windows of the
// benchmark's own: registry, folder, desktop.
#pragma once

#include "bench/figures.h"
#include "bench/floor/list.h"
#include "bench/rounds.h"
#include "helmkit/client/logger.h"
#include "startup/StartupListControl.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/temp_folder.h"
#include "win32/windows/window.h"

namespace bench {

class HiddenWindow : public win32::Window {
  public:
    HiddenWindow();

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
};

struct World {
    TempFolder folder;
    RegistryFixture registry;
    ScriptedDesktop desktop;
};

// The page, filled, and a list for the floor, of the same size.
template <class Category>
struct Pages {
    HiddenWindow ourParent, floorParent;
    startup::StartupListControl page{ourParent.handle(), std::make_unique<Category>()};
    floor::List list;

    Pages() {
        helmkit::Logger log = helmkit::Logger::create();
        list.create(floorParent.handle());
        ::SetWindowPos(page.handle(), nullptr, 0, 0, 400, 260, SWP_NOZORDER | SWP_NOACTIVATE);
        page.Init(log);
    }
};

// Ends the run unless both lists show the same texts: they are to have done the same work.
void requireSameRows(win32::ListView& ours, HWND floor);
// The same, but not of the first column: the floor's rows have no descriptions.
void requireSameValues(win32::ListView& ours, HWND floor);

}  // namespace bench
