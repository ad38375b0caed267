// Objects that are known by name only, and called late.
#pragma once

#include "win32/com/com.h"

namespace win32 {

// A new object of a class named by its program identifier, null when there is none of that name here.
ComPtr<IDispatch> createByName(const wchar_t* programId);

// A property without arguments; failures are thrown.
Variant propertyOf(IDispatch* object, const wchar_t* name);

// The same as a number or a text, converted as Automation does.
LONG numberProperty(IDispatch* object, const wchar_t* name);
std::wstring textProperty(IDispatch* object, const wchar_t* name);

// True for the variants without a value: empty, null, and an argument that was left out.
bool isNothing(const VARIANT& value);

// A value, or the variable that it refers to, as text in the form of US English whatever the user's language;
// empty for nothing. What has no text is thrown.
std::wstring valueText(const VARIANT& value);

// An object passed by reference to a late-bound call, which may put another in its place.
class DispatchByReference {
  public:
    explicit DispatchByReference(IDispatch* object) : object_(ComPtr<IDispatch>(object).release()) {}
    ~DispatchByReference() { take(); }
    DispatchByReference(const DispatchByReference&) = delete;
    DispatchByReference& operator=(const DispatchByReference&) = delete;

    // The argument, valid while the object is. Not to be cleared.
    VARIANT variant();
    // What the call has left there.
    ComPtr<IDispatch> take() { return ComPtr<IDispatch>::adopt(std::exchange(object_, nullptr)); }

  private:
    IDispatch* object_;
};

}  // namespace win32
