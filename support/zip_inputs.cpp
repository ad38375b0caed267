#include "support/zip_inputs.h"

#include <map>
#include <utility>

#include "support/zip_names.h"
#include "win32/base/error.h"
#include "win32/base/text.h"

namespace support {

namespace {

const DWORD systemOrHidden = FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_HIDDEN;

class Finder {
  public:
    explicit Finder(const ZipSearch& search)
        : search_(search), archive_(win32::lowered(win32::fullPath(search.archive))) {}

    void find(const std::wstring& spec) {
        const size_t before = met_;
        const Place place = {resolvedPath(spec, search_.basePath), resolvedPath(spec, {})};
        if (hasWildcard(namePart(place.path))) {
            findMatching({folderPart(place.path), folderPart(place.given)},
                         win32::lowered(namePart(place.path)));
        } else {
            findNamed(place);
        }
        if (met_ == before) win32::raiseWin32(ERROR_FILE_NOT_FOUND, spec);
    }

    std::vector<ZipInput> inputs;

  private:
    // Where something is, and how its file spec spells it: what is stored is that spelling.
    struct Place {
        std::wstring path, given;
        Place operator+(const std::wstring& more) const { return {path + more, given + more}; }
    };

    void findNamed(Place place) {
        for (std::wstring* text : {&place.path, &place.given}) {
            while (!text->empty() && text->back() == L'\\') text->pop_back();
        }
        const auto file = win32::findFile(place.path);
        if (!file) return;
        take(place, *file);
        if (file->isFolder() && search_.recurse && !isPassedOver(*file)) findMatching(place + L"\\", L"*");
    }

    // A wildcard means the matching files of its folder and, with recursion, of all folders below.
    void findMatching(const Place& folder, const std::wstring& pattern) {
        std::vector<Place> below;
        for (const win32::FoundFile& file : win32::filesIn(folder.path.empty() ? L"." : folder.path)) {
            if (matchesPattern(win32::lowered(file.name), pattern)) take(folder + file.name, file);
            // A link to a folder above would lead round and round.
            const bool isLink = (file.attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
            if (file.isFolder() && !isLink && !isPassedOver(file))
                below.push_back(folder + file.name + L"\\");
        }
        if (!search_.recurse) return;
        for (const Place& next : below) findMatching(next, pattern);
    }

    bool isPassedOver(const win32::FoundFile& file) const {
        return !search_.systemAndHidden && (file.attributes & systemOrHidden) != 0;
    }

    void take(const Place& place, const win32::FoundFile& file) {
        if (isPassedOver(file)) return;
        const std::wstring full = win32::lowered(win32::fullPath(place.path));
        if (full == archive_) return;
        ++met_;
        std::wstring name = storedName(place.given, search_.folderNames);
        if (file.isFolder()) {
            // Without folder names there is nothing that a directory entry could be the folder of.
            if (!search_.directories || !search_.folderNames || name.empty()) return;
            name += L'/';
        }
        const auto [known, isNew] = byName_.emplace(win32::lowered(name), full);
        if (isNew) {
            inputs.push_back({place.path, name, file});
        } else if (known->second != full) {
            win32::raiseWin32(ERROR_DUP_NAME, place.path);
        }
    }

    const ZipSearch& search_;
    std::wstring archive_;
    std::map<std::wstring, std::wstring> byName_;  // lower-case stored name to lower-case full path
    size_t met_{};
};

}  // namespace

std::vector<ZipInput> findInputs(const std::vector<std::wstring>& specs, const ZipSearch& search) {
    Finder finder(search);
    for (const std::wstring& spec : specs) finder.find(spec);
    return std::move(finder.inputs);
}

}  // namespace support
