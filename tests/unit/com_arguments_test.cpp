// The arguments of a late-bound call against what the operation declares.
#include "win32/com/com_arguments.h"

#include <doctest/doctest.h>

#include <cmath>
#include <cstring>
#include <deque>
#include <vector>

#include "tests/support/counting_dispatch.h"
#include "tests/support/raised.h"
#include "tests/support/text.h"

namespace {

using win32::AdaptedArguments;
using win32::Variant;

// An operation's declaration, its parameters in their order.
struct Operation {
    std::deque<TYPEDESC> types;
    std::vector<ELEMDESC> parameters;
    FUNCDESC description = {};

    Operation& takes(const TYPEDESC& type, USHORT flags = PARAMFLAG_FIN) {
        ELEMDESC parameter = {};
        parameter.tdesc = type;
        parameter.paramdesc.wParamFlags = flags;
        parameters.push_back(parameter);
        return *this;
    }
    Operation& takes(VARTYPE type) { return takes(plain(type)); }
    Operation& gives(const TYPEDESC& type, USHORT flags = PARAMFLAG_FOUT) {
        return takes(pointerTo(type), flags);
    }
    Operation& gives(VARTYPE type, USHORT flags = PARAMFLAG_FOUT) { return gives(plain(type), flags); }
    static TYPEDESC plain(VARTYPE type) {
        TYPEDESC description = {};
        description.vt = type;
        return description;
    }
    TYPEDESC pointerTo(const TYPEDESC& type, VARTYPE kind = VT_PTR) {
        types.push_back(type);
        TYPEDESC description = plain(kind);
        description.lptdesc = &types.back();
        return description;
    }
    const FUNCDESC* get() {
        description.cParams = static_cast<SHORT>(parameters.size());
        description.lprgelemdescParam = parameters.data();
        return &description;
    }
};

// Arguments in the order of the declaration, handed over last first.
struct Call {
    std::vector<VARIANT> given;
    AdaptedArguments adapted;

    Call(Operation& operation, std::vector<VARIANT> arguments, UINT named = 0)
        : given(arguments.rbegin(), arguments.rend()),
          adapted(operation.get(), {given.data(), nullptr, static_cast<UINT>(given.size()), named}) {}
    VARIANT& argument(size_t position) {
        return adapted.parameters()->rgvarg[adapted.parameters()->cArgs - 1 - position];
    }
};

template <class Value>
VARIANT of(VARTYPE type, Value value) {
    VARIANT made = {};
    made.vt = type;
    std::memcpy(&made.llVal, &value, sizeof value);
    return made;
}
// A variable of the caller's.
template <class Value>
VARIANT to(VARTYPE type, Value& variable) {
    return of(static_cast<VARTYPE>(VT_BYREF | type), &variable);
}

const double hive = 2147483650.0;

}  // namespace

TEST_CASE("a number beyond 2^31 of any kind is the 32-bit integer of the same bits") {
    Operation operation;
    operation.takes(VT_I4);
    CY money;
    money.int64 = 21474836500000;
    VARIANT decimal = {};
    decimal.decVal.Lo64 = 2147483650u;
    decimal.vt = VT_DECIMAL;
    for (const VARIANT& kind :
         {of(VT_R8, hive), of(VT_UI4, 0x80000002u), of(VT_UINT, 0x80000002u), of(VT_CY, money), decimal,
          of(VT_I8, 0x80000002ll), of(VT_UI8, 0x80000002ull)}) {
        CAPTURE(kind.vt);
        Call call(operation, {kind});
        CHECK(call.argument(0).vt == VT_I4);
        CHECK(call.argument(0).lVal == static_cast<LONG>(0x80000002));
        CHECK(call.given[0].vt == kind.vt);
    }
    CHECK(Call(operation, {of(VT_R4, 2147483648.0f)}).argument(0).lVal == LONG_MIN);
    CHECK(Call(operation, {of(VT_R8, 2147483648.0)}).argument(0).lVal == LONG_MIN);
    CHECK(Call(operation, {of(VT_R8, 2147483647.0)}).argument(0).lVal == LONG_MAX);
    CHECK(Call(operation, {of(VT_R8, 4294967295.0)}).argument(0).lVal == -1);
    CHECK(Call(operation, {of(VT_R8, -5.0)}).argument(0).lVal == -5);
    CHECK(Call(operation, {of(VT_R8, 2.7)}).argument(0).lVal == 3);
    CHECK(raisedBy([&] { Call(operation, {of(VT_R8, -2147483649.0)}); }).number == DISP_E_OVERFLOW);
    CHECK(raisedBy([&] { Call(operation, {of(VT_R8, 4294967296.0)}); }).number == DISP_E_OVERFLOW);
    Variant text(L"2147483650");
    CHECK(raisedBy([&] { Call(operation, {text}); }).number == DISP_E_OVERFLOW);
    Operation small;
    small.takes(VT_I2);
    CHECK(raisedBy([&] { Call(small, {of(VT_R8, hive)}); }).number == DISP_E_OVERFLOW);
}

TEST_CASE("nothing is a type's zero, its empty text or no object") {
    for (VARTYPE nothing : {VT_EMPTY, VT_NULL, VT_ERROR}) {
        CAPTURE(nothing);
        Operation operation;
        operation.takes(VT_I4)
            .takes(VT_BSTR)
            .takes(VT_DISPATCH)
            .takes(VT_UNKNOWN)
            .takes(operation.pointerTo(Operation::plain(VT_UI1), VT_SAFEARRAY));
        const VARIANT given = of(nothing, 0x77777777u);
        Call call(operation, {given, given, given, given, given});
        CHECK(call.argument(0).vt == VT_I4);
        CHECK(call.argument(0).lVal == 0);
        CHECK(call.argument(1).vt == VT_BSTR);
        CHECK(::SysStringLen(call.argument(1).bstrVal) == 0);
        CHECK(call.argument(2).vt == VT_DISPATCH);
        CHECK(call.argument(2).pdispVal == nullptr);
        CHECK(call.argument(3).vt == VT_UNKNOWN);
        CHECK(call.argument(3).punkVal == nullptr);
        CHECK(call.argument(4).vt == (VT_ARRAY | VT_UI1));
        CHECK(call.argument(4).parray == nullptr);
    }
}

TEST_CASE("each argument is converted to its own parameter's type, the caller's stay as they are") {
    Operation operation;
    operation.takes(VT_I4).takes(VT_BSTR).takes(VT_VARIANT);
    Variant text(L"12");
    LONG seven = 7;
    {
        Call call(operation, {text, to(VT_I4, seven), to(VT_I4, seven), text});
        CHECK(call.argument(0).lVal == 12);
        CHECK(win32::BString::view(call.argument(1).bstrVal) == L"7");
        CHECK(call.argument(2).vt == (VT_BYREF | VT_I4));
        CHECK(call.argument(2).plVal == &seven);
        CHECK(call.argument(3).bstrVal == text.bstrVal);
        call.adapted.giveBack();
    }
    CHECK(seven == 7);
    CHECK(win32::BString::view(text.bstrVal) == L"12");
    CHECK(Call(operation, {text}).argument(0).lVal == 12);
    Variant yes, expected, letters(L"letters");
    yes.vt = VT_BOOL;
    yes.boolVal = VARIANT_TRUE;
    REQUIRE(::VariantChangeType(&expected, &yes, VARIANT_LOCALBOOL, VT_BSTR) == S_OK);
    Call flags(operation, {text, yes});
    CHECK(win32::BString::view(flags.argument(1).bstrVal) == win32::BString::view(expected.bstrVal));
    CHECK(raisedBy([&] { Call(operation, {letters}); }).number == DISP_E_TYPEMISMATCH);
}

TEST_CASE("with named arguments or without a declaration everything is left as it is") {
    Operation operation;
    operation.takes(VT_I4);
    Variant text(L"12");
    CHECK(Call(operation, {text}, 1).argument(0).vt == VT_BSTR);
    DISPPARAMS given = {&text, nullptr, 1, 0};
    AdaptedArguments adapted(nullptr, given);
    CHECK(adapted.parameters()->rgvarg[0].vt == VT_BSTR);
    CHECK(adapted.parameters()->cArgs == 1);
}

TEST_CASE("a parameter that is an interface takes an object, other types are left to Windows") {
    CountingDispatch object;
    {
        Operation operation;
        operation.takes(operation.pointerTo(Operation::plain(VT_USERDEFINED)))
            .takes(operation.pointerTo(Operation::plain(VT_I4)))
            .takes(VT_USERDEFINED)
            .takes(VT_DISPATCH);
        Variant text(L"x");
        Call call(operation, {of(VT_UNKNOWN, static_cast<IUnknown*>(&object)), text, text,
                              of(VT_DISPATCH, static_cast<IDispatch*>(&object))});
        CHECK(call.argument(0).vt == VT_DISPATCH);
        CHECK(call.argument(0).pdispVal == &object);
        CHECK(call.argument(1).bstrVal == text.bstrVal);
        CHECK(call.argument(2).bstrVal == text.bstrVal);
        CHECK(call.argument(3).pdispVal == &object);
        CHECK(object.references == 1);
    }
    CHECK(object.references == 0);
}

TEST_CASE("a result goes into the caller's variable in its own type, and nowhere beside it") {
    struct Row {
        VARTYPE type;
        size_t size;
        double value;  // 65 as it stands there, read as a number
    };
    const Row rows[] = {{VT_UI1, 1, 65},
                        {VT_I2, 2, 65},
                        {VT_BOOL, 2, -1},
                        {VT_I4, 4, 65},
                        {VT_UI4, 4, 65},
                        {VT_INT, 4, 65},
                        {VT_UINT, 4, 65},
                        {VT_R4, 4, 65},
                        {VT_R8, 8, 65},
                        {VT_DATE, 8, 65},
                        {VT_VARIANT, sizeof(VARIANT), 65}};
    for (const Row& row : rows) {
        CAPTURE(row.type);
        Operation operation;
        operation.gives(VT_I4);
        BYTE bytes[40];
        std::memset(bytes, 0x55, sizeof bytes);
        if (row.type == VT_VARIANT) *reinterpret_cast<VARIANT*>(bytes) = VARIANT();
        Call call(operation, {to(row.type, bytes)});
        if (row.type == VT_I4) {
            CHECK(call.argument(0).byref == bytes);
            continue;
        }
        CHECK(call.argument(0).vt == (VT_BYREF | VT_I4));
        CHECK(call.argument(0).byref != bytes);
        CHECK(*call.argument(0).plVal == 0);
        *call.argument(0).plVal = 65;
        call.adapted.giveBack();
        Variant stored, number;
        if (row.type == VT_VARIANT) {
            stored = Variant(reinterpret_cast<VARIANT*>(bytes)->lVal);
            CHECK(reinterpret_cast<VARIANT*>(bytes)->vt == VT_I4);
        } else {
            stored.vt = row.type;
            std::memcpy(&stored.llVal, bytes, row.size);
        }
        REQUIRE(::VariantChangeType(&number, &stored, 0, VT_R8) == S_OK);
        CHECK(number.dblVal == row.value);
        CHECK(bytes[row.size] == 0x55);
    }
    CY money = {};
    Operation operation;
    operation.gives(VT_I4);
    Call call(operation, {to(VT_CY, money)});
    CHECK(raisedBy([&] { call.adapted.giveBack(); }).number == DISP_E_TYPEMISMATCH);
}

TEST_CASE("what goes in and out is converted both ways, what is no variable gets nothing") {
    Operation operation;
    operation.gives(VT_I4, PARAMFLAG_FIN | PARAMFLAG_FOUT);
    SHORT small = 12;
    Variant large(L"34");
    for (VARIANT argument : {to(VT_I2, small), to(VT_VARIANT, static_cast<VARIANT&>(large))}) {
        Call call(operation, {argument});
        CHECK(call.argument(0).vt == (VT_BYREF | VT_I4));
        CHECK(*call.argument(0).plVal == (argument.vt == (VT_BYREF | VT_I2) ? 12 : 34));
        *call.argument(0).plVal = 77;
        call.adapted.giveBack();
    }
    CHECK(small == 77);
    CHECK(large.vt == VT_I4);
    CHECK(large.lVal == 77);
    Call expression(operation, {of(VT_R8, hive)});
    CHECK(*expression.argument(0).plVal == static_cast<LONG>(0x80000002));
    CHECK(expression.given[0].dblVal == hive);
    expression.adapted.giveBack();
    CHECK(expression.given[0].dblVal == hive);
    Operation nowhere;
    nowhere.gives(VT_I4);
    Variant text(L"x");
    Call result(nowhere, {text});
    CHECK(*result.argument(0).plVal == 0);
    result.adapted.giveBack();
    CHECK(win32::BString::view(text.bstrVal) == L"x");
}

TEST_CASE("objects and texts that variables held are let go of, and so is a result that nobody takes") {
    CountingDispatch before, after;
    const auto callWith = [&](VARIANT argument) {
        Operation operation;
        operation.gives(operation.pointerTo(Operation::plain(VT_USERDEFINED)));
        Call call(operation, {argument});
        CHECK(call.argument(0).vt == (VT_BYREF | VT_DISPATCH));
        CHECK(*call.argument(0).ppdispVal == nullptr);
        after.AddRef();
        *call.argument(0).ppdispVal = &after;
        call.adapted.giveBack();
    };
    Variant variable;
    for (VARTYPE type : {VT_VARIANT, VT_UNKNOWN}) {
        before.references = 1;
        after.references = 0;
        IUnknown* plain = &before;
        variable.vt = VT_DISPATCH;
        variable.pdispVal = &before;
        callWith(type == VT_VARIANT ? to(type, static_cast<VARIANT&>(variable)) : to(type, plain));
        CHECK(before.references == 0);
        CHECK(after.references == 1);
        CHECK((type == VT_VARIANT ? variable.punkVal : plain) == &after);
        variable.vt = VT_EMPTY;
    }
    after.references = 0;
    callWith(of(VT_I4, 5));
    CHECK(after.references == 0);
    IUnknown* none = nullptr;
    callWith(to(VT_UNKNOWN, none));
    CHECK(none == &after);

    Operation text;
    text.gives(VT_I4);
    BSTR old = ::SysAllocString(L"old");
    Call call(text, {to(VT_BSTR, old)});
    *call.argument(0).plVal = 65;
    call.adapted.giveBack();
    CHECK(win32::BString::view(old) == L"65");
    ::SysFreeString(old);
}
