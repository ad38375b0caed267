#include "win32/files/version_resource.h"

#include <algorithm>

#include "win32/base/flavour.h"
#include "win32/base/path.h"
#include "win32/files/files.h"
#include "win32/files/version_block.h"
#include "win32/files/version_functions.h"

namespace win32 {

namespace {

// The room that Windows asks for is believed up to what a resource can hold: its lengths are 16-bit numbers.
const DWORD largestBlock = 1 << 20;

// Windows believes the lengths in a block, 16-bit numbers: it reads, and for ANSI texts writes, up to twice
// 64 KiB further on. Behind each block there is that much room.
const size_t roomBehind = 3 << 16;

// A block's own length is a 16-bit number, too.
const DWORD usualBlock = 3 << 16;

// The file was opened and looked through: asking for the size would tell the same.
bool hasNoResource(DWORD error) {
    return error >= ERROR_RESOURCE_DATA_NOT_FOUND && error <= ERROR_RESOURCE_LANG_NOT_FOUND;
}

// Windows opens the file as LoadLibrary would: a name without a folder is searched for, and one without an
// extension means the library of that name, unless it ends with a point.
std::wstring asOpened(const std::wstring& path) {
    return path.find(L'.', path.find_last_of(L"\\/")) == std::wstring::npos ? path + L'.' : path;
}

// Pages of zeros, of which only those that are touched cost anything.
OwnedPages pagesFor(DWORD size, size_t& room) {
    room = size + roomBehind;
    return OwnedPages(::VirtualAlloc(nullptr, room, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
}

// Asking for the size opens and maps the file as reading does. The NT family needs no size: it writes what
// fits. Windows 95, 98 and Me read at the place that asking for the size has put into the handle.
template <class F>
OwnedPages readAtOnce(const VersionFunctions<F>& version, F f, const std::wstring& file, size_t& room) {
    OwnedPages block = pagesFor(usualBlock, room);
    if (block && version.getInfo(f.in(file), 0, usualBlock, block.get())) return block;
    return {};
}

template <class F>
OwnedPages readBySize(const VersionFunctions<F>& version, F f, const std::wstring& file, size_t& room) {
    DWORD handle = 0;
    const DWORD size = version.getInfoSize(f.in(file), &handle);
    if (size == 0 || size > largestBlock) return {};
    OwnedPages block = pagesFor(size, room);
    if (block && version.getInfo(f.in(file), handle, size, block.get())) return block;
    return {};
}

// What VerQueryValue points at, with as many items as it may hold within the block. The length it tells is
// a number of characters for strings and of bytes for the rest.
template <class Item, class F>
std::optional<std::basic_string_view<Item>> queried(F f, std::string_view block, const std::wstring& path) {
    void* found = nullptr;
    UINT length = 0;
    if (block.empty() || !versionFunctions<F>().queryValue(block.data(), f.in(path), &found, &length) ||
        !found)
        return {};
    auto* first = static_cast<const char*>(found);
    const char* end = block.data() + block.size();
    if (first < block.data() || first > end) return {};
    return std::basic_string_view<Item>(reinterpret_cast<const Item*>(first),
                                        std::min<size_t>(length, (end - first) / sizeof(Item)));
}

std::string translationBytes(std::string_view block) {
    return withFlavour([&](auto f) {
        return std::string(queried<char>(f, block, L"\\VarFileInfo\\Translation").value_or(""));
    });
}

bool isBlank(const std::wstring& text) {
    return text.find_first_not_of(L" \t\r\n") == std::wstring::npos;
}

}  // namespace

OwnedPages readVersionBlock(const std::wstring& path, size_t& room) {
    if (!isFullPath(path) || !fileExists(path)) return {};
    return withFlavour([&]<class F>(F f) -> OwnedPages {
        const VersionFunctions<F>& version = versionFunctions<F>();
        if (!version.queryValue) return {};
        NoFileRedirection off;
        const std::wstring file = asOpened(path);
        OwnedPages block = f.isWide ? readAtOnce(version, f, file, room) : OwnedPages();
        return block || (f.isWide && hasNoResource(::GetLastError())) ? std::move(block)
                                                                      : readBySize(version, f, file, room);
    });
}

VersionResource::VersionResource(const std::wstring& path, LANGID userLanguage)
    : pages_(readVersionBlock(path, room_)),
      block_(static_cast<const char*>(pages_.get()), pages_ ? room_ : 0),
      tables_(tableOrder(translationsOf(translationBytes(block_)), userLanguage, stringTableKeys(block_))) {}

std::optional<std::wstring> VersionResource::string(const std::wstring& name) const {
    std::optional<std::wstring> blank;
    if (block_.empty()) return blank;
    for (const std::wstring& table : tables_) {
        std::optional<std::wstring> text = stringOf(table, name);
        if (text && !isBlank(*text)) return text;
        if (text && !blank) blank = text;
    }
    return blank;
}

std::optional<std::wstring> VersionResource::stringOf(const std::wstring& table,
                                                      const std::wstring& name) const {
    // An empty name would ask for the table itself, whose data is no text.
    if (name.empty() || name.find(L'\\') != std::wstring::npos || name.find(L'\0') != std::wstring::npos)
        return {};
    return withFlavour([&]<class F>(F f) -> std::optional<std::wstring> {
        using Char = typename F::Char;
        const auto characters = queried<Char>(f, block_, L"\\StringFileInfo\\" + table + L'\\' + name);
        if (!characters) return {};
        return f.out(characters->data(), std::min(characters->find(Char{}), characters->size()));
    });
}

}  // namespace win32
