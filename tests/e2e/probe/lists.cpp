// List views of another program: their records are written into that program's memory and read back.
#include "tests/e2e/probe/commands.h"
#include "tests/e2e/probe/json.h"

#include <commctrl.h>

namespace probe {
namespace {

constexpr int kTextLength = 2048;

LRESULT ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR result = 0;
    if (!::SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, kPatience, &result))
        throw Failure{"the list does not answer", ::GetLastError()};
    return static_cast<LRESULT>(result);
}

// Room for one LVITEMW and its text inside the program that owns the list. The probe is built for the same
// processor as the program, so the record has the same layout there.
class Foreign {
  public:
    explicit Foreign(HWND list) : list_(list) {
        DWORD id = 0;
        ::GetWindowThreadProcessId(list, &id);
        process_ = ::OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
        if (!process_) throw Failure{"OpenProcess", ::GetLastError()};
        memory_ = static_cast<char*>(::VirtualAllocEx(process_, nullptr, kSize, MEM_COMMIT, PAGE_READWRITE));
        if (!memory_) throw Failure{"VirtualAllocEx", ::GetLastError()};
    }
    ~Foreign() {
        if (memory_) ::VirtualFreeEx(process_, memory_, 0, MEM_RELEASE);
        if (process_) ::CloseHandle(process_);
    }
    Foreign(const Foreign&) = delete;

    LVITEMW exchange(UINT messageId, WPARAM wParam, LVITEMW item) {
        item.pszText = reinterpret_cast<wchar_t*>(memory_ + sizeof item);
        item.cchTextMax = kTextLength;
        ::WriteProcessMemory(process_, memory_, &item, sizeof item, nullptr);
        answer_ = ask(list_, messageId, wParam, reinterpret_cast<LPARAM>(memory_));
        ::ReadProcessMemory(process_, memory_, &item, sizeof item, nullptr);
        return item;
    }
    LRESULT answer() const { return answer_; }

    // For messages that take a rectangle with their wishes in it and fill it in.
    RECT fillRectangle(UINT messageId, WPARAM wParam, RECT rectangle) {
        ::WriteProcessMemory(process_, memory_, &rectangle, sizeof rectangle, nullptr);
        answer_ = ask(list_, messageId, wParam, reinterpret_cast<LPARAM>(memory_));
        ::ReadProcessMemory(process_, memory_, &rectangle, sizeof rectangle, nullptr);
        return rectangle;
    }

    // The list may answer with a text of its own instead of filling the buffer.
    std::wstring text(const LVITEMW& item) {
        std::wstring text(kTextLength, L'\0');
        ::ReadProcessMemory(process_, item.pszText, text.data(), kTextLength * sizeof(wchar_t), nullptr);
        return text.substr(0, text.find(L'\0'));
    }

  private:
    static constexpr size_t kSize = sizeof(LVITEMW) + (kTextLength + 1) * sizeof(wchar_t);
    HWND list_;
    HANDLE process_ = nullptr;
    char* memory_ = nullptr;
    LRESULT answer_ = 0;
};

std::string textAt(Foreign& foreign, int row, int column) {
    LVITEMW item{};
    item.iSubItem = column;
    return quoted(foreign.text(foreign.exchange(LVM_GETITEMTEXTW, row, item)));
}

std::string rowAt(Foreign& foreign, int row) {
    LVITEMW item{};
    item.mask = LVIF_IMAGE | LVIF_STATE;
    item.iItem = row;
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    item = foreign.exchange(LVM_GETITEMW, 0, item);
    if (!foreign.answer()) throw Failure{"LVM_GETITEM"};
    return object({member("texts", array({textAt(foreign, row, 0), textAt(foreign, row, 1)})),
                   member("image", item.iImage), flag("selected", item.state & LVIS_SELECTED)});
}

// rows <list>
std::string rows(const Fields& fields) {
    HWND list = windowField(fields, 0);
    Foreign foreign(list);
    std::vector<std::string> result;
    int count = static_cast<int>(ask(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) result.push_back(rowAt(foreign, row));
    return object({member("rows", array(result))});
}

std::string textPlace(Foreign& foreign, HWND list, int row, int column) {
    RECT place = foreign.fillRectangle(LVM_GETSUBITEMRECT, row, RECT{LVIR_LABEL, column, 0, 0});
    if (!foreign.answer()) throw Failure{"LVM_GETSUBITEMRECT"};
    ::MapWindowPoints(list, nullptr, reinterpret_cast<POINT*>(&place), 2);
    return array({std::to_string(place.left), std::to_string(place.top), std::to_string(place.right),
                  std::to_string(place.bottom)});
}

// places <list>: for every row where on the screen the texts of its two columns stand
std::string places(const Fields& fields) {
    HWND list = windowField(fields, 0);
    Foreign foreign(list);
    std::vector<std::string> result;
    int count = static_cast<int>(ask(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row)
        result.push_back(array({textPlace(foreign, list, row, 0), textPlace(foreign, list, row, 1)}));
    return object({member("places", array(result))});
}

// select <list> <row>: -1 takes the selection away
std::string select(const Fields& fields) {
    HWND list = windowField(fields, 0);
    Foreign foreign(list);
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    foreign.exchange(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), item);
    int row = numberField(fields, 1);
    if (row < 0) return done();
    item.state = item.stateMask;
    foreign.exchange(LVM_SETITEMSTATE, row, item);
    if (!foreign.answer()) throw Failure{"LVM_SETITEMSTATE"};
    return done();
}

}  // namespace

void addListCommands(Commands& commands) {
    commands.insert({{L"rows", rows}, {L"places", places}, {L"select", select}});
}

}  // namespace probe
