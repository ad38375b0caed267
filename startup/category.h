// A category of startup places. It needs no window: a page, a test or another program may list it.
#pragma once

#include <string>

#include "helmkit/client/logger.h"
#include "startup/StartupItem.h"
#include "startup/category_design.h"

namespace startup {

class Enumeration;

class Category {
  public:
    virtual ~Category() = default;

    const CategoryDesign& design() const { return design_; }

    // The entries in their order. A place or an entry that fails is logged and the next is read; what was
    // gathered before an error is returned. Throws only when no list can be made at all.
    StartupItemList EnumItems(const helmkit::Logger& log) const;

    // Windows needs the entry, or its place is at its default: the delete command refuses it.
    static bool isProtected(const StartupItem& item) { return item.icon() == Icon::protectedEntry; }

    virtual DeletionMessages messagesFor(const StartupItem&) const { return design_.messages; }

    struct Deletion {
        bool succeeded;
        std::wstring logLine;  // written whether it succeeded or not; none when empty
        std::wstring logSource = {};
    };
    // Removes the entry, without asking. `rowText` is its name as the user saw it; `log` gets what goes wrong
    // beside the deletion itself. A status other than success is returned; what the category does not expect
    // is thrown. The default removes nothing and fails.
    virtual Deletion deleteItem(const StartupItem& item, const std::wstring& rowText,
                                const helmkit::Logger& log) const;

  protected:
    // `design` is kept as a reference.
    explicit Category(const CategoryDesign& design) : design_(design) {}

    // Appends what is found. What it throws is logged under ".EnumItems".
    virtual void enumerate(Enumeration& run) const = 0;

    // The source of a log line of one of the category's procedures, as in "ucRun.EnumItems".
    std::wstring source(const wchar_t* procedure) const { return design_.typeName + std::wstring(procedure); }

  private:
    const CategoryDesign& design_;
};

// The texts of a row.
struct ListedRow {
    std::wstring text;
    std::wstring second;  // second column
    std::wstring file;    // full path of the related file, may be empty
};

ListedRow listedRow(const CategoryDesign& design, const StartupItem& item);

}  // namespace startup
