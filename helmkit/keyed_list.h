#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

#include "helmkit.h"
#include "helmkit/enum_variant.h"
#include "win32/com/com_server.h"

namespace helmkit::server {

// IKeyedList: values under string keys, in insertion order. Keys are compared exactly, letter case included.
class KeyedList : public win32::AutomationObject<IKeyedList, &IID_IKeyedList>, private Sequence {
  public:
    // Appends a name under itself, also one that is listed already: a list of names hides none.
    void append(std::wstring name);

    STDMETHODIMP Add(VARIANT item, BSTR key) override;
    STDMETHODIMP Exists(BSTR key, VARIANT_BOOL* present) override;
    // A key that is missing raises E_INVALIDARG, a position outside the list DISP_E_BADINDEX.
    STDMETHODIMP get_Item(VARIANT keyOrPosition, VARIANT* item) override;
    STDMETHODIMP get_Count(LONG* count) override;
    STDMETHODIMP get__NewEnum(IUnknown** enumerator) override;

  private:
    struct Entry {
        std::wstring key;
        win32::Variant item;
    };

    LONG length() override { return static_cast<LONG>(entries_.size()); }
    win32::Variant itemAt(LONG position) override;
    IUnknown* owner() override { return static_cast<IKeyedList*>(this); }

    const Entry* find(std::wstring_view key);
    const Entry& entryOf(std::wstring_view key);
    const Entry& entryOf(const VARIANT& keyOrPosition);

    // An entry stays where it is: the index refers to its key.
    std::deque<Entry> entries_;
    // Of the first `indexed_` entries; the others are put in when a key is looked up, so that a list that is
    // only walked has no index.
    std::unordered_map<std::wstring_view, size_t> index_;
    size_t indexed_ = 0;
};

}  // namespace helmkit::server
