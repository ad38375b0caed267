#include "resources/messages.h"

#include "helmkit/client/shared_services.h"
#include "resources/box_text.h"
#include "win32/base/flavour.h"
#include "win32/system/desktop.h"
#include "win32/system/resources.h"
#include "win32/windows/window.h"

namespace resources {

std::wstring messageText(int number, std::vector<std::wstring> arguments) {
    for (std::wstring& argument : arguments) {
        argument = boxText(argument, win32::flavour() == win32::Flavour::ansi);
    }
    return helmkit::systemServices().FormatMessage(win32::loadString(number), arguments);
}

int showMessage(HWND window, int number, UINT style, const std::vector<std::wstring>& arguments) {
    return win32::desktop().messageBox(win32::topLevelOf(window), messageText(number, arguments),
                                       win32::loadString(STRING_PRODUCT), style);
}

}  // namespace resources
