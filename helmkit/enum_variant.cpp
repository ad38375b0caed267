#include "helmkit/enum_variant.h"

#include "win32/com/com_server.h"

namespace helmkit::server {

namespace {

class Enumerator : public win32::SingleInterfaceObject<IEnumVARIANT, &IID_IEnumVARIANT> {
  public:
    Enumerator(Sequence& sequence, LONG position)
        : sequence_(sequence), owner_(sequence.owner()), position_(position) {}

    STDMETHODIMP Next(ULONG wanted, VARIANT* items, ULONG* fetched) override {
        if (fetched) *fetched = 0;
        if (!items || (wanted > 1 && !fetched)) return E_POINTER;
        ULONG count = 0;
        HRESULT outcome = win32::guarded(IID_IEnumVARIANT, [&] {
            for (; count < wanted && position_ < sequence_.length(); ++count, ++position_) {
                win32::Variant item = sequence_.itemAt(position_);
                items[count] = item;
                ::VariantInit(&item);
            }
        });
        if (FAILED(outcome)) {
            position_ -= static_cast<LONG>(count);
            while (count) ::VariantClear(&items[--count]);
            return outcome;
        }
        if (fetched) *fetched = count;
        return count == wanted ? S_OK : S_FALSE;
    }
    STDMETHODIMP Skip(ULONG count) override {
        ULONG left = static_cast<ULONG>(sequence_.length() - position_);
        position_ += static_cast<LONG>(count < left ? count : left);
        return count <= left ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override {
        position_ = 0;
        return S_OK;
    }
    STDMETHODIMP Clone(IEnumVARIANT** copy) override {
        return win32::guarded(IID_IEnumVARIANT,
                              [&] { win32::result(copy) = newEnumerator(sequence_, position_).release(); });
    }

  private:
    Sequence& sequence_;
    win32::ComPtr<IUnknown> owner_;
    LONG position_;
};

}  // namespace

win32::ComPtr<IEnumVARIANT> newEnumerator(Sequence& sequence, LONG position) {
    return win32::ComPtr<IEnumVARIANT>::adopt(new Enumerator(sequence, position));
}

}  // namespace helmkit::server
