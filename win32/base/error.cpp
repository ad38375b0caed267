#include "win32/base/error.h"

#include <new>

#include "win32/base/flavour.h"

namespace win32 {

std::wstring systemDescription(DWORD code) {
    std::wstring text = withFlavour([&]<class F>(F f) {
        TextBuffer<F> buffer(512);
        DWORD length = f.formatMessage(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                       code, 0, buffer.data(), buffer.capacity(), nullptr);
        return buffer.text(length);
    });
    while (!text.empty() && (text.back() == L'\r' || text.back() == L'\n' || text.back() == L' '))
        text.pop_back();
    return text.empty() ? L"Error " + std::to_wstring(code) : text;
}

void raise(HRESULT number, std::wstring description) {
    throw Error(number, std::move(description));
}

void raiseWin32(DWORD code, const std::wstring& what) {
    std::wstring description = systemDescription(code);
    raise(HRESULT_FROM_WIN32(code), what.empty() ? description : what + L": " + description);
}

void raiseLastError(const std::wstring& what) {
    raiseWin32(::GetLastError(), what);
}

namespace {

Error outOfMemory() {
    return Error(E_OUTOFMEMORY, L"Out of memory");
}

Error described() {
    try {
        throw;
    } catch (const Error& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return outOfMemory();
    } catch (const std::exception& error) {
        std::string what = error.what();
        return Error(E_UNEXPECTED, std::wstring(what.begin(), what.end()));
    } catch (...) {
        return Error(E_UNEXPECTED, L"Unexpected error");
    }
}

long numberOfCurrent() noexcept {
    try {
        throw;
    } catch (const Error& error) {
        return error.number;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace

void raiseOutOfMemory() {
    throw outOfMemory();
}

Error currentError() noexcept {
    try {
        return described();
    } catch (...) {
        // This exception is handled here: the one asked about is current again behind this block.
    }
    return Error(numberOfCurrent(), {});
}

}  // namespace win32
