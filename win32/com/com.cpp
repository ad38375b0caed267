#include "win32/com/com.h"

#include <algorithm>
#include <vector>

namespace win32 {

namespace {

[[noreturn]] void raiseException(EXCEPINFO& exception) {
    if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
    BString source, description, help;
    *source.out() = exception.bstrSource;
    *description.out() = exception.bstrDescription;
    *help.out() = exception.bstrHelpFile;
    HRESULT number = exception.scode ? exception.scode : static_cast<HRESULT>(exception.wCode);
    raise(number, description.text().empty() ? systemDescription(number) : description.text());
}

}  // namespace

void check(HRESULT result) {
    if (SUCCEEDED(result)) return;
    ComPtr<IErrorInfo> info;
    BString description;
    if (::GetErrorInfo(0, info.out()) == S_OK) info->GetDescription(description.out());
    raise(result, description.text().empty() ? systemDescription(result) : description.text());
}

void invoke(IDispatch* object, const wchar_t* name, VARIANT* arguments, unsigned count) {
    BString spelled(name);
    BSTR names[] = {spelled.get()};
    DISPID id;
    check(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id));
    // IDispatch takes the last argument first. The copies are shallow: the caller keeps what they hold.
    std::vector<VARIANT> reversed(arguments, arguments + count);
    std::reverse(reversed.begin(), reversed.end());
    DISPPARAMS parameters = {reversed.data(), nullptr, count, 0};
    EXCEPINFO exception = {};
    HRESULT result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                                    &exception, nullptr);
    if (result == DISP_E_EXCEPTION) raiseException(exception);
    check(result);
}

}  // namespace win32
