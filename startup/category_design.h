// What a category's page shows and says, as a table.
#pragma once

#include "resources/resource_ids.h"
#include "startup/StartupItem.h"

namespace startup {

// What the delete command says on its way: numbers of the string table, 0 for no message. %1 is the row's
// text.
struct DeletionMessages {
    int refusal;  // of a protected entry
    int confirmation = STRING_CONFIRM_DELETE;
    int success = STRING_DELETED;
    int failure = STRING_ACCESS_DENIED;
};

struct CategoryDesign {
    const wchar_t* typeName;  // in the log; with "1" behind it the name of the page's control
    const wchar_t* heading;   // above the list
    const wchar_t* columns[2];
    const wchar_t* note;    // left of the file box; on the button's row where there is no file box
    const wchar_t* button;  // its caption
    IconField iconField = IconField::gridIcon;
    DeletionMessages messages = {};
    bool deletes = true;  // false: button and menu open the properties of the row's file
    bool hasFileBox = true;
    bool hasContextMenu = true;
    bool hasContextMenuKey = true;
    bool hidesSeparator = true;     // together with Properties, for an entry without a file
    bool namesMissingMaker = true;  // an empty second column reads "Not specified"
    bool emphasizesValues = false;  // second column of rows with the exclamation icon
    bool keepsSelection = false;    // over a refresh, by place; otherwise the first row is selected
};

}  // namespace startup
