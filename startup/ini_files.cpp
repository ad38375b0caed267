#include "startup/ini_files.h"

#include "helmkit/client/file_services.h"
#include "helmkit/client/shared_services.h"

namespace startup {

const std::vector<IniLine>& IniFiles::startupLinesOf(const std::wstring& file) {
    if (auto known = known_.find(file); known != known_.end()) return known->second;
    std::vector<IniLine> lines;
    if (helmkit::fileServices().FileExists(file)) {
        const win32::BString text = helmkit::fileServices().ReadTextFile(file);
        lines = startupLines(win32::BString::view(text.get()));
    }
    return known_.emplace(file, std::move(lines)).first->second;
}

}  // namespace startup
