// The files that a list of specifications means.
#pragma once

#include <string>
#include <vector>

#include "win32/files/file_search.h"

namespace support {

// How cZip's options bear on the search.
struct ZipSearch {
    std::wstring basePath;
    bool folderNames = false;
    bool recurse = false;
    bool directories = false;
    bool systemAndHidden = false;
    // Never taken in: an archive cannot hold itself.
    std::wstring archive;
};

struct ZipInput {
    std::wstring path;
    std::wstring storedName;  // with a slash at the end for a folder
    win32::FoundFile file;
};

// Files and folders in the order of the file specs, and of the file system below each; one that several
// specifications mean is taken once. Throws when a specification means nothing at all (ERROR_FILE_NOT_FOUND),
// when two different files would be stored under one name (ERROR_DUP_NAME), and when a folder cannot be
// looked into. What a wildcard means only because of the archive itself, or of files passed over as hidden,
// counts as nothing.
std::vector<ZipInput> findInputs(const std::vector<std::wstring>& specs, const ZipSearch& search);

}  // namespace support
