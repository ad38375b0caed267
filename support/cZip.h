// The zip writer: what to put into which archive, and how. Made over libzip, which offers no calls for most
// of the options below; this header says what each of them does.
//
// An archive is written whole or not at all: what throws, refuses or cancels leaves an existing archive byte
// for byte as it was, and makes none. Failures are win32::Errors. Names are stored with forward slashes and,
// where they are not ASCII, as UTF-8 with the flag that says so. Entries carry the Windows attributes of
// their files and say that they come from a FAT file system, those with a name beyond ASCII from Unix, since
// Info-ZIP would read it wrongly otherwise. Files over 4 GiB are stored in the zip64 form,
// others never are.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "win32/base/platform.h"

namespace support {

class cZip {
  public:
    // The archive to write. A relative path starts at BasePath.
    std::wstring ZipFile;

    // The folder that relative specifications and a relative ZipFile start at; empty for the process's
    // current folder. That folder itself is never changed. One that does not exist is an error
    // (ERROR_PATH_NOT_FOUND).
    std::wstring BasePath;

    // Encrypts the entries that are written, by the traditional method of the format (ZIP_EM_TRAD_PKWARE),
    // with the password of PasswordRequest in the ANSI code page. Entries that stay are left as they are.
    bool Encrypt = false;

    // Also takes files that are hidden or system files, and looks into such folders. Without it they are
    // passed over even where a specification names one.
    bool IncludeSystemAndHiddenFiles = false;

    // Adds the label of the volume that the first specification lies on, as the format's own kind of entry:
    // empty, of that name, with the attribute 8 (volume label). A volume without a label adds none.
    bool StoreVolumeLabel = false;

    // Adds an entry for each folder that is met (zip_dir_add). Nothing without StoreFolderNames.
    bool StoreDirectories = false;

    // Stores the folders of each name as its specification spells them, without drive, server, share and
    // `..`. Without it bare file names are stored, and two files of one name are an error (ERROR_DUP_NAME).
    bool StoreFolderNames = false;

    // A wildcard also means the matching files in all folders below, and a folder everything in it. Links to
    // folders are not followed.
    bool RecurseSubDirs = false;

    // Leaves entries as they are whose file is not newer, in the two-second steps of the format. Files
    // without an entry are added. The existing archive is kept.
    bool UpdateOnlyIfNewer = false;

    // Replaces entries that the archive has and adds none; together with UpdateOnlyIfNewer only by newer
    // files. The existing archive is kept; one that does not exist is an error (ERROR_FILE_NOT_FOUND).
    bool FreshenFiles = false;

    // How much the library tells of its work. Kept for callers; libzip has no messages of its own, and
    // Progress is raised at every level.
    LONG MessageLevel = 0;

    // Line ends of every file on the way in, whether it is a text or not. Both at once are an error
    // (E_INVALIDARG).
    bool ConvertCRLFToLF = false;
    bool ConvertLFToCRLF = false;

    // Keeps the entries of an existing archive: files are added to them and replace those of the same name.
    // Without it the archive is made anew, unless UpdateOnlyIfNewer or FreshenFiles asks for what is in it.
    bool AllowAppend = false;

    // Raised when work on an entry begins and as it goes on, with its name, and as entries that stay are
    // copied, with the name of the last one begun (empty before the first); setting the Boolean stops
    // the operation (ERROR_CANCELLED).
    std::function<void(bool& cancel, const std::wstring& name)> Cancel;
    // Raised once for an operation that encrypts, before anything is written. Setting the Boolean refuses; a
    // refusal, an empty password and no handler end the operation (ERROR_CANCELLED).
    std::function<void(bool& refuse, std::wstring& password)> PasswordRequest;
    // The entry's name and the percentage, 0 to 100, of its file that has been read: at least 0 and 100.
    std::function<void(const std::wstring& name, LONG percent)> Progress;

    // The list of specifications: paths whose last part may hold `*` and `?`.
    void ClearFileSpecs();
    // Gives back the new count.
    LONG AddFileSpec(const std::wstring& sSpec);
    LONG FileSpecCount() const;
    // One-based; DISP_E_BADINDEX out of range.
    const std::wstring& FileSpec(LONG index) const;

    // Makes or updates the archive. An empty list is an error (E_INVALIDARG), as is a specification that
    // means nothing (ERROR_FILE_NOT_FOUND) and an existing file that is to be kept and is no sound archive
    // (ERROR_INVALID_DATA).
    void Zip();

    // Removes the listed entries. A specification means the entries of its name in full, in any letter case,
    // where `*` also spans folders; where there are none and StoreFolderNames is false, those of its bare
    // name. One that means no entry is an error (ERROR_FILE_NOT_FOUND). An archive without entries is
    // deleted.
    void Delete();

  private:
    std::wstring archivePath() const;
    std::vector<std::wstring> specs_;
};

}  // namespace support
