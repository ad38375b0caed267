#include "win32/system/environment.h"

#include "win32/base/flavour.h"

namespace win32 {

std::wstring environmentVariable(const std::wstring& name) {
    return withFlavour([&]<class F>(F f) {
        DWORD size = f.getEnvironmentVariable(f.in(name), nullptr, DWORD{0});
        TextBuffer<F> buffer(size);
        return buffer.text(f.getEnvironmentVariable(f.in(name), buffer.data(), size));
    });
}

void setEnvironmentVariable(const std::wstring& name, const std::wstring& value) {
    withFlavour([&](auto f) { f.setEnvironmentVariable(f.in(name), f.in(value)); });
}

}  // namespace win32
