// COM on the caller's side: owners of interfaces, strings and variants, and the way back from an HRESULT with
// IErrorInfo to an Error.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "win32/base/error.h"
#include "win32/base/platform.h"

namespace win32 {

// COM for this thread (single-threaded apartment), for the lifetime of the object.
class ComApartment {
  public:
    ComApartment() { ::CoInitialize(nullptr); }
    ~ComApartment() { ::CoUninitialize(); }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
};

// Owns one reference.
template <class Interface>
class ComPtr {
  public:
    ComPtr() = default;
    // Shares: adds a reference of its own.
    ComPtr(Interface* pointer) : pointer_(pointer) {
        if (pointer_) pointer_->AddRef();
    }
    ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
    ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~ComPtr() {
        if (pointer_) pointer_->Release();
    }

    // Takes over a reference that the caller owns.
    static ComPtr adopt(Interface* pointer) {
        ComPtr owner;
        owner.pointer_ = pointer;
        return owner;
    }

    Interface* get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }
    Interface* release() { return std::exchange(pointer_, nullptr); }
    // For an [out] argument; what was held is released first.
    Interface** out() {
        *this = ComPtr();
        return &pointer_;
    }
    // Another interface of the same object, null when it has none.
    template <class Other>
    ComPtr<Other> as(REFIID iid) const {
        ComPtr<Other> other;
        if (pointer_) pointer_->QueryInterface(iid, reinterpret_cast<void**>(other.out()));
        return other;
    }

  private:
    Interface* pointer_ = nullptr;
};

// Owns a BSTR: counted UTF-16 text, inner NULs included.
class BString {
  public:
    BString() = default;
    explicit BString(std::wstring_view text)
        : text_(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
        if (!text_) raiseOutOfMemory();
    }
    // For a caller that writes the characters itself.
    static BString ofLength(size_t length) {
        BString text;
        text.text_ = ::SysAllocStringLen(nullptr, static_cast<UINT>(length));
        if (!text.text_) raiseOutOfMemory();
        return text;
    }
    BString(BString&& other) noexcept : text_(other.release()) {}
    BString& operator=(BString&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~BString() { ::SysFreeString(text_); }

    static std::wstring_view view(BSTR text) {
        return text ? std::wstring_view(text, ::SysStringLen(text)) : std::wstring_view();
    }
    static std::wstring copy(BSTR text) { return std::wstring(view(text)); }

    BSTR get() const { return text_; }
    BSTR release() { return std::exchange(text_, nullptr); }
    BSTR* out() {
        *this = BString();
        return &text_;
    }
    std::wstring text() const { return std::wstring(view(text_)); }

  private:
    BSTR text_ = nullptr;
};

class Variant : public VARIANT {
  public:
    Variant() { ::VariantInit(this); }
    explicit Variant(std::wstring_view text) : Variant() {
        bstrVal = BString(text).release();
        vt = VT_BSTR;
    }
    explicit Variant(LONG number) : Variant() {
        lVal = number;
        vt = VT_I4;
    }
    Variant(Variant&& other) noexcept : VARIANT(other) { ::VariantInit(&other); }
    Variant& operator=(Variant&& other) noexcept {
        std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
        return *this;
    }
    ~Variant() { ::VariantClear(this); }
    VARIANT* out() {
        ::VariantClear(this);
        return this;
    }
    // The value as a plain variant, which the caller owns then.
    VARIANT detach() {
        VARIANT value = *this;
        ::VariantInit(this);
        return value;
    }
};

// Throws the failure of a COM call as an Error, described by its IErrorInfo where it left one.
void check(HRESULT result);

// Makes an object of a registered or manifested class; failures are thrown.
template <class Interface>
ComPtr<Interface> create(REFCLSID clsid, REFIID iid) {
    ComPtr<Interface> object;
    check(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid,
                             reinterpret_cast<void**>(object.out())));
    return object;
}

// Calls an operation by name through IDispatch, arguments in the order of its declaration; failures are
// thrown. By-reference arguments are variants of a VT_BYREF type.
void invoke(IDispatch* object, const wchar_t* name, VARIANT* arguments, unsigned count);

}  // namespace win32
