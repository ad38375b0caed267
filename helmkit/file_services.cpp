#include "helmkit/file_services.h"

#include <algorithm>

#include "win32/base/text.h"
#include "win32/files/file_replacement.h"
#include "win32/files/files.h"

namespace helmkit::server {

namespace {

// Byte n is the character U+00nn; what is no byte goes through the code page.
std::string bytesOfText(std::wstring_view text) {
    const auto isByte = [](wchar_t c) { return c < 0x100; };
    std::string bytes;
    while (!text.empty()) {
        const size_t others = std::find_if(text.begin(), text.end(), isByte) - text.begin();
        bytes += win32::toAnsi(text.substr(0, others));
        text.remove_prefix(others);
        const size_t plain = std::find_if_not(text.begin(), text.end(), isByte) - text.begin();
        bytes += win32::textAsBytes(text.substr(0, plain));
        text.remove_prefix(plain);
    }
    return bytes;
}

// A piece at a time: a backup takes many megabytes already.
void writeText(const std::wstring& path, std::wstring_view text) {
    const size_t longest = 1 << 16;
    win32::NoFileRedirection off;
    win32::FileReplacement file(path);
    while (!text.empty()) {
        size_t length = std::min(longest, text.size());
        const bool endsInPair = (text[length - 1] & 0xFC00) == 0xD800;
        if (length < text.size() && endsInPair) --length;
        const std::string bytes = bytesOfText(text.substr(0, length));
        file.write(bytes.data(), bytes.size());
        text.remove_prefix(length);
    }
    file.commit();
}

class ByteArray {
  public:
    explicit ByteArray(size_t size) : array_(::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(size))) {
        if (!array_) win32::raiseOutOfMemory();
    }
    ~ByteArray() {
        if (array_) ::SafeArrayDestroy(array_);
    }
    ByteArray(const ByteArray&) = delete;
    ByteArray& operator=(const ByteArray&) = delete;
    void* data() { return array_->pvData; }
    SAFEARRAY* release() { return std::exchange(array_, nullptr); }

  private:
    SAFEARRAY* array_;
};

// Each byte as a character. The bytes are read into the upper half of the text's own room and widened from
// its beginning on, where no byte is overwritten before its turn.
win32::BString readText(const std::wstring& path) {
    win32::FileReader file(path);
    // Twice the size is to fit into a text, whose length in bytes is a 32-bit number.
    if (file.size() > 0x3FFFFFFF) win32::raiseWin32(ERROR_FILE_TOO_LARGE, path);
    const size_t size = static_cast<size_t>(file.size());
    win32::BString text = win32::BString::ofLength(size);
    auto* bytes = reinterpret_cast<unsigned char*>(text.get()) + size;
    const size_t got = file.read(bytes, size);
    std::copy(bytes, bytes + got, text.get());
    if (got == size) return text;
    return win32::BString(win32::BString::view(text.get()).substr(0, got));
}

SAFEARRAY* readBytes(const std::wstring& path) {
    win32::FileReader file(path);
    if (file.size() > 0x7FFFFFFF) win32::raiseWin32(ERROR_FILE_TOO_LARGE, path);
    size_t size = static_cast<size_t>(file.size());
    ByteArray bytes(size);
    if (file.read(bytes.data(), size) != size) win32::raiseWin32(ERROR_HANDLE_EOF, path);
    return bytes.release();
}

}  // namespace

STDMETHODIMP FileServices::CreateFolder(BSTR path) {
    return method([&] { win32::createFolder(win32::BString::copy(path)); });
}

STDMETHODIMP FileServices::FileExists(BSTR path, VARIANT_BOOL* exists) {
    return method([&] {
        win32::result(exists) = win32::fileExists(win32::BString::copy(path)) ? VARIANT_TRUE : VARIANT_FALSE;
    });
}

STDMETHODIMP FileServices::ReadTextFile(BSTR path, BSTR* text) {
    return method([&] {
        win32::result(text);
        *text = readText(win32::BString::copy(path)).release();
    });
}

STDMETHODIMP FileServices::WriteTextFile(BSTR path, BSTR text) {
    return method([&] { writeText(win32::BString::copy(path), win32::BString::view(text)); });
}

STDMETHODIMP FileServices::ReadFileBytes(BSTR path, SAFEARRAY** bytes) {
    return method([&] {
        win32::result(bytes);
        try {
            *bytes = readBytes(win32::BString::copy(path));
        } catch (const std::exception&) {
            // Callers take a file that cannot be read as one without bytes.
            *bytes = ByteArray(0).release();
        }
    });
}

}  // namespace helmkit::server
