// From a configured command to the one file on disk that it starts.
#pragma once

#include <string>
#include <vector>

#include "files/long_paths.h"
#include "files/reach.h"
#include "helmkit/client/records.h"

namespace files {

// Lives for one refresh of a list: answers are remembered and never looked up again, so a file that comes or
// goes meanwhile keeps its first answer until the next refresh makes a new checker.
class CFileChecker {
  public:
    CFileChecker();

    // The file part of a command line (files/command_line.h).
    std::wstring GetFileNameFromCommandLine(const std::wstring& cl) const;

    // The full, long path of a file as the system's search finds it (SearchPath with no path of its own), or
    // the name itself, less a leading "\??\", when it finds none. On the NT family a path that cannot be made
    // long (GetLongPathName) becomes the empty text; on Windows 95, 98 and Me paths stay as they were found.
    std::wstring GetFullFileNameFromShortFilename(const std::wstring& fileName);

    // True for a full path on a drive or share that does not answer: nothing there is looked at.
    bool isOutOfReach(const std::wstring& path) { return reach_.isBeyond(path); }

    // The folders of the environment variable PATH, each with a backslash at its end; an empty one is "\".
    // The search follows the system's own order and does not consult them.
    const std::vector<std::wstring>& searchFolders() const { return searchFolders_; }

  private:
    std::wstring resolved(const std::wstring& name);

    helmkit::KeyedList cache_;
    LongPaths longPaths_;
    Reach reach_;
    std::vector<std::wstring> searchFolders_;
};

}  // namespace files
