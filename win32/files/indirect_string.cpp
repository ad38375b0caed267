#include "win32/files/indirect_string.h"

#include "win32/base/flavour.h"
#include "win32/base/handle.h"
#include "win32/files/files.h"
#include "win32/files/local_files.h"
#include "win32/system/desktop.h"
#include "win32/system/system.h"

namespace win32 {

namespace {

struct Reference {
    std::wstring file;
    unsigned number = 0;
};

bool parse(const std::wstring& text, Reference& reference) {
    if (text.empty() || text.front() != L'@') return false;
    size_t comma = text.rfind(L",-");
    if (comma == std::wstring::npos || comma + 2 >= text.size()) return false;
    for (size_t at = comma + 2; at < text.size(); ++at) {
        if (text[at] < L'0' || text[at] > L'9') return false;
        reference.number = reference.number * 10 + (text[at] - L'0');
        if (reference.number > 0xFFFF) return false;
    }
    reference.file = text.substr(1, comma - 1);
    return true;
}

}  // namespace

std::wstring displayedText(const std::wstring& text) {
    Reference reference;
    if (!isNtFamily() || majorVersion() < 6 || !parse(text, reference)) return text;
    std::wstring path = expandEnvironment(reference.file);
    if (path.find(L'\\') == std::wstring::npos) path = systemFolder() + L"\\" + path;
    // A file on another machine is never opened just to show a name.
    if (!isLocal(path)) return text;
    NoFileRedirection wholeSystem;
    return withFlavour([&]<class F>(F f) {
        OwnedModule file(f.loadLibraryEx(f.in(path), nullptr, DWORD{LOAD_LIBRARY_AS_DATAFILE}));
        if (!file) return text;
        TextBuffer<F> buffer(4096);
        int length =
            f.loadString(file.get(), reference.number, buffer.data(), static_cast<int>(buffer.capacity()));
        return length > 0 ? buffer.text(length) : text;
    });
}

}  // namespace win32
