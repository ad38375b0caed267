#include "win32/system/identity.h"

#include "win32/base/flavour.h"

namespace win32 {

namespace {

// Names of computers and users have up to 256 characters.
const DWORD nameRoom = 300;

}  // namespace

std::wstring computerName() {
    return withFlavour([]<class F>(F f) {
        TextBuffer<F> buffer(nameRoom);
        DWORD length = nameRoom;
        return f.getComputerName(buffer.data(), &length) ? buffer.text(length) : std::wstring();
    });
}

std::wstring userName() {
    return withFlavour([]<class F>(F f) {
        TextBuffer<F> buffer(nameRoom);
        DWORD length = nameRoom;
        // The length that it tells counts the NUL.
        if (!f.getUserName(buffer.data(), &length) || length == 0) return std::wstring();
        return buffer.text(length - 1);
    });
}

std::wstring commandLine() {
    return withFlavour([]<class F>(F f) {
        const typename F::Char* line = f.getCommandLine();
        return f.out(line, std::char_traits<typename F::Char>::length(line));
    });
}

}  // namespace win32
