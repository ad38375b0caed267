// A new, empty folder, which goes away with what is in it.
#pragma once

#include <string>

class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // Without a backslash at the end.
    const std::wstring& path() const { return path_; }
    std::wstring file(const std::wstring& name) const { return path_ + L'\\' + name; }

    // The tests' own reading and writing, which uses none of the code that is tested.
    static void write(const std::wstring& path, const std::string& bytes);
    static std::string read(const std::wstring& path);
    // Files and folders in it.
    int count() const;

  private:
    std::wstring path_;
};
