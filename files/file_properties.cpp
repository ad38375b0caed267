#include "files/file_properties.h"

#include "win32/system/desktop.h"

namespace files {

bool ShowFileProperties(const std::wstring& fileName, HWND ownerWindow) {
    win32::ShellRequest request;
    request.mask = SEE_MASK_INVOKEIDLIST | SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
    request.owner = ownerWindow;
    request.verb = L"properties";
    request.file = fileName;
    request.show = SW_HIDE;
    return win32::desktop().shellExecute(request);
}

}  // namespace files
