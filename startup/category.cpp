#include "startup/category.h"

#include "helmkit/client/trap.h"
#include "startup/enumeration.h"
#include "win32/system/resources.h"

namespace startup {

StartupItemList Category::EnumItems(const helmkit::Logger& log) const {
    StartupItemList list(design_.iconField);
    helmkit::trapped(log, source(L".EnumItems"), [&] {
        Enumeration run(design_.typeName, log, list);
        enumerate(run);
    });
    return list;
}

Category::Deletion Category::deleteItem(const StartupItem&, const std::wstring&,
                                        const helmkit::Logger&) const {
    return {.succeeded = false, .logLine = {}};
}

ListedRow listedRow(const CategoryDesign& design, const StartupItem& item) {
    ListedRow row = {item.name(), item.manufacturer(), item.file()};
    if (row.second.empty() && design.namesMissingMaker) row.second = win32::loadString(STRING_NOT_SPECIFIED);
    return row;
}

}  // namespace startup
