#include "helmkit/record_list.h"

namespace helmkit::server {

STDMETHODIMP RecordList::AddRecord(IRecord** record) {
    return method([&] {
        win32::result(record);
        records_.push_back(win32::ComPtr<IRecord>::adopt(new Record(names_)));
        *record = win32::ComPtr<IRecord>(records_.back()).release();
    });
}

STDMETHODIMP RecordList::get_Count(LONG* count) {
    return method([&] { win32::result(count) = length(); });
}

STDMETHODIMP RecordList::get_Item(LONG position, IRecord** record) {
    return method([&] {
        win32::result(record);
        if (position < 1 || position > length())
            win32::raise(DISP_E_BADINDEX, L"The list has no record there");
        *record = win32::ComPtr<IRecord>(records_[position - 1]).release();
    });
}

STDMETHODIMP RecordList::get__NewEnum(IUnknown** enumerator) {
    return method([&] { win32::result(enumerator) = newEnumerator(*this).release(); });
}

win32::Variant RecordList::itemAt(LONG position) {
    win32::Variant item;
    item.pdispVal = win32::ComPtr<IRecord>(records_[position]).release();
    item.vt = VT_DISPATCH;
    return item;
}

}  // namespace helmkit::server
