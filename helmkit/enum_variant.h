// Walking a list of the library through IEnumVARIANT.
#pragma once

#include "win32/com/com.h"

namespace helmkit::server {

// What can be walked. The walk ends where the list ends at that moment.
class Sequence {
  public:
    virtual LONG length() = 0;
    // A copy of the item at a position, the first is 0.
    virtual win32::Variant itemAt(LONG position) = 0;
    // What keeps the sequence alive.
    virtual IUnknown* owner() = 0;

  protected:
    ~Sequence() = default;
};

// An enumerator at the first item. It serves as many items per call as are asked for. A call in which an item
// fails gives none and stays where it was.
win32::ComPtr<IEnumVARIANT> newEnumerator(Sequence& sequence, LONG position = 0);

}  // namespace helmkit::server
