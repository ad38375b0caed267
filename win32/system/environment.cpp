#include "win32/system/environment.h"

#include "win32/base/flavour.h"

namespace win32 {

std::optional<std::wstring> findEnvironmentVariable(const std::wstring& name) {
    if (name.empty() || !isExactName(name)) return {};
    return withFlavour([&]<class F>(F f) -> std::optional<std::wstring> {
        ::SetLastError(ERROR_SUCCESS);
        DWORD size = f.getEnvironmentVariable(f.in(name), nullptr, DWORD{0});
        if (size == 0 && ::GetLastError() == ERROR_ENVVAR_NOT_FOUND) return {};
        TextBuffer<F> buffer(size);
        return buffer.text(f.getEnvironmentVariable(f.in(name), buffer.data(), size));
    });
}

std::wstring environmentVariable(const std::wstring& name) {
    return findEnvironmentVariable(name).value_or(std::wstring());
}

void setEnvironmentVariable(const std::wstring& name, const std::wstring& value) {
    withFlavour([&](auto f) { f.setEnvironmentVariable(f.in(name), f.in(value)); });
}

}  // namespace win32
