// The arguments of a late-bound call, made to fit the operation's declaration. For com_dispatch.cpp only.
#pragma once

#include <deque>
#include <vector>

#include "win32/com/com.h"

namespace win32 {

// By-value arguments are converted to the declared type; a number from 2^31 to 2^32-1 becomes the 32-bit
// integer of the same bits, as hives are such numbers. By-reference arguments of another type than declared
// (a variant, a short integer) are replaced by an own variable, whose value goes back after the call. What
// cannot be converted is thrown as DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW.
//
// Calls with named arguments are left as they are.
class AdaptedArguments {
  public:
    // `operation` may be null: nothing is adapted then.
    AdaptedArguments(const FUNCDESC* operation, const DISPPARAMS& given);

    DISPPARAMS* parameters() { return &adapted_; }
    // Brings the results to the caller's variables; called after a call that succeeded.
    void giveBack();

  private:
    struct Variable {
        Variant value;
        VARIANT callers;  // the by-reference argument that gets the result, VT_EMPTY for none
    };

    void adapt(const ELEMDESC& declared, VARIANT& argument);
    void adaptReference(VARTYPE type, bool isInput, VARIANT& argument);
    void adaptValue(VARTYPE type, VARIANT& argument);

    std::vector<VARIANT> arguments_;  // shallow copies: the caller keeps what they hold
    std::deque<Variable> variables_;  // a deque: pointers into it must stay
    DISPPARAMS adapted_;
};

}  // namespace win32
