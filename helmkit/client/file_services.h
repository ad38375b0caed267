// The file service as its callers see it. Every operation throws a win32::Error when the library raises one.
//
// The program above win32/ looks at files through this service; only what the service lacks is asked of
// win32/files/.
#pragma once

#include <string>

#include "helmkit.h"
#include "win32/com/com.h"

namespace helmkit {

class FileServices {
  public:
    FileServices();

    void CreateFolder(const std::wstring& path);
    bool FileExists(const std::wstring& path);
    // One character for each byte.
    win32::BString ReadTextFile(const std::wstring& path);
    void WriteTextFile(const std::wstring& path, const std::wstring& text);
    // The same without a copy of the text.
    void WriteTextFile(const std::wstring& path, const win32::BString& text);
    // The file's bytes in a safe array that the caller owns; empty when the file cannot be read.
    struct Bytes {
        SAFEARRAY* array = nullptr;
        Bytes() = default;
        Bytes(Bytes&& other) noexcept : array(std::exchange(other.array, nullptr)) {}
        Bytes& operator=(Bytes&&) = delete;
        ~Bytes() {
            if (array) ::SafeArrayDestroy(array);
        }
    };
    Bytes ReadFileBytes(const std::wstring& path);

  private:
    win32::ComPtr<IFileServices> object_;
};

}  // namespace helmkit
