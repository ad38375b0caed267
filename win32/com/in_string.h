// Texts for the [in] arguments of COM calls.
#pragma once

#include <cstddef>

#include "win32/com/com.h"

namespace win32 {

// A text for [in] arguments. It is valid while the object is; the callee may read and copy it, no more.
//
// A short one is laid out on the stack as a BSTR is, its size in bytes before it: allocating one for each of
// the thousands of texts in a list takes most of the time of filling it.
class InString {
  public:
    explicit InString(std::wstring_view text) {
        if (text.size() > room) {
            long_ = BString(text);
            return;
        }
        short_.size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        text.copy(short_.text, text.size());
        short_.text[text.size()] = L'\0';
    }
    InString(const InString&) = delete;
    InString& operator=(const InString&) = delete;

    BSTR get() { return long_.get() ? long_.get() : short_.text; }
    // Not to be cleared.
    VARIANT variant() {
        VARIANT text = {};
        text.vt = VT_BSTR;
        text.bstrVal = get();
        return text;
    }

  private:
    static constexpr size_t room = 259;
    struct alignas(8) Short {
        DWORD padding, size;
        wchar_t text[room + 1];
    };
    // SysStringLen reads the four bytes before the text; SysAllocString aligns a text to eight bytes.
    static_assert(offsetof(Short, text) - offsetof(Short, size) == sizeof(DWORD));
    static_assert(offsetof(Short, text) % 8 == 0 && alignof(Short) == 8);

    Short short_;
    BString long_;
};

}  // namespace win32
