#include "support/zip_update.h"

#include <algorithm>
#include <cstring>

#include "support/zip_archive_source.h"
#include "support/zip_input_source.h"
#include "support/zip_names.h"
#include "win32/base/text.h"

namespace support {

namespace {

const DWORD volumeLabelAttribute = 8;
// What the format's attribute byte can say: read-only, hidden, system, volume label, folder, archive.
const DWORD storedAttributes = 0x3F;

// Info-ZIP takes the names of a FAT file system for text in a DOS code page, even those flagged as UTF-8. So
// an entry with such a name says that it comes from Unix, and carries a file mode beside the attributes.
const DWORD unixFile = 0100644, unixFolder = 040755, unixWriting = 0222;

bool isAscii(const std::wstring& text) {
    return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c < 0x80; });
}

LineEnds lineEndsOf(const cZip& options) {
    if (options.ConvertCRLFToLF) return LineEnds::crLfToLf;
    return options.ConvertLFToCRLF ? LineEnds::lfToCrLf : LineEnds::asTheyAre;
}

std::wstring fromUtf8(const char* text) {
    const int length = static_cast<int>(std::strlen(text));
    std::wstring result(::MultiByteToWideChar(CP_UTF8, 0, text, length, nullptr, 0), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, text, length, result.data(), static_cast<int>(result.size()));
    return result;
}

}  // namespace

ZipUpdate::ZipUpdate(const cZip& options, const std::wstring& archive, const std::vector<std::wstring>& specs)
    : options_(options), archive_(archive), specs_(specs) {}

void ZipUpdate::open(int flags) {
    ZipError error;
    ZipSource source = makeArchiveSource(archive_, kept_);
    zip_.reset(zip_open_from_source(source.get(), flags, &error));
    if (!zip_) throw zipError(kept_, &error, archive_);
    source.release();
    checked(zip_register_progress_callback_with_state(zip_.get(), 0.01, &onProgress, nullptr, this));
    checked(zip_register_cancel_callback_with_state(zip_.get(), &onCancel, nullptr, this));
    noteEntries();
}

void ZipUpdate::noteEntries() {
    const Index count = zip_get_num_entries(zip_.get(), ZIP_FL_UNCHANGED);
    for (Index entry = 0; entry < count; ++entry) present_.emplace(win32::lowered(nameOf(entry)), entry);
}

// As the archive had it at opening.
std::wstring ZipUpdate::nameOf(Index entry) const {
    const char* name = zip_get_name(zip_.get(), entry, ZIP_FL_UNCHANGED);
    return fromUtf8(name ? name : "");
}

void ZipUpdate::add() {
    const ZipSearch search = {options_.BasePath,
                              options_.StoreFolderNames,
                              options_.RecurseSubDirs,
                              options_.StoreDirectories,
                              options_.IncludeSystemAndHiddenFiles,
                              archive_};
    const std::vector<ZipInput> inputs = findInputs(specs_, search);
    // Before the archive is touched: written anew with nothing to hold, it would go.
    if (inputs.empty()) {
        win32::raise(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
                     L"No file was found to be stored in " + archive_);
    }
    if (options_.Encrypt) askPassword();
    const bool keeps = options_.AllowAppend || options_.UpdateOnlyIfNewer || options_.FreshenFiles;
    open(options_.FreshenFiles ? 0 : keeps ? ZIP_CREATE : ZIP_CREATE | ZIP_TRUNCATE);
    for (const ZipInput& input : inputs) addInput(input);
    if (options_.StoreVolumeLabel) addVolumeLabel();
    finish();
}

void ZipUpdate::addInput(const ZipInput& input) {
    const Index present = find(input.storedName);
    if (present < 0 ? options_.FreshenFiles : options_.UpdateOnlyIfNewer && !isNewer(input, present)) return;
    if (input.file.isFolder()) {
        if (present < 0) setAttributes(addFolder(input), input);
    } else {
        setAttributes(addFile(input, present), input);
    }
}

ZipUpdate::Index ZipUpdate::addFolder(const ZipInput& input) {
    const std::string name = win32::toUtf8(input.storedName);
    const Index entry = checked(zip_dir_add(zip_.get(), name.c_str(), ZIP_FL_ENC_UTF_8));
    checked(zip_file_set_mtime(zip_.get(), entry, modificationTime(input.file.lastWrite), zip_flags_t{}));
    return entry;
}

ZipUpdate::Index ZipUpdate::addFile(const ZipInput& input, Index present) {
    ZipReading reading;
    reading.lineEnds = lineEndsOf(options_);
    reading.progress = [this, name = input.storedName](int percent) { progress(name, percent); };
    ZipSource source = makeInputSource(input, reading, kept_);
    const std::string name = win32::toUtf8(input.storedName);
    const Index entry = present < 0 ? zip_file_add(zip_.get(), name.c_str(), source.get(), ZIP_FL_ENC_UTF_8)
                                    : zip_file_replace(zip_.get(), present, source.get(), zip_flags_t{});
    checked(entry);
    source.release();
    const Index written = present < 0 ? entry : present;
    if (present >= 0) startAfresh(written);
    const zip_uint16_t method = options_.Encrypt ? ZIP_EM_TRAD_PKWARE : ZIP_EM_NONE;
    checked(
        zip_file_set_encryption(zip_.get(), written, method, options_.Encrypt ? password_.c_str() : nullptr));
    return written;
}

// A replaced entry would keep the method of its predecessor, and the extra fields that tell its old time.
void ZipUpdate::startAfresh(Index entry) {
    checked(zip_set_file_compression(zip_.get(), entry, ZIP_CM_DEFAULT, 0));
    for (zip_flags_t where : {ZIP_FL_LOCAL, ZIP_FL_CENTRAL}) {
        checked(zip_file_extra_field_delete(zip_.get(), entry, ZIP_EXTRA_FIELD_ALL, where));
    }
}

void ZipUpdate::addVolumeLabel() {
    const std::wstring label = win32::volumeLabel(resolvedPath(specs_.front(), options_.BasePath));
    if (label.empty() || find(label) >= 0) return;
    ZipSource nothing(zip_source_buffer(zip_.get(), nullptr, 0, {}));
    const std::string name = win32::toUtf8(label);
    const Index entry = checked(zip_file_add(zip_.get(), name.c_str(), nothing.get(), ZIP_FL_ENC_UTF_8));
    nothing.release();
    setAttributes(entry, ZIP_OPSYS_DOS, volumeLabelAttribute);
}

// Both times have the two seconds of the format: an entry that was made of this very file is not older.
bool ZipUpdate::isNewer(const ZipInput& input, Index entry) {
    zip_stat_t record;
    checked(zip_stat_index(zip_.get(), entry, ZIP_FL_UNCHANGED, &record));
    return (modificationTime(input.file.lastWrite) & ~time_t{1}) > record.mtime;
}

void ZipUpdate::setAttributes(Index entry, const ZipInput& input) {
    const DWORD attributes = input.file.attributes & storedAttributes;
    if (isAscii(input.storedName)) return setAttributes(entry, ZIP_OPSYS_DOS, attributes);
    const DWORD kind = input.file.isFolder() ? unixFolder : unixFile;
    setAttributes(entry, ZIP_OPSYS_UNIX,
                  (kind & ~(attributes & FILE_ATTRIBUTE_READONLY ? unixWriting : 0)) << 16 | attributes);
}

void ZipUpdate::setAttributes(Index entry, int system, DWORD attributes) {
    checked(zip_file_set_external_attributes(zip_.get(), entry, zip_flags_t{}, system, attributes));
}

void ZipUpdate::askPassword() {
    bool refuse = false;
    std::wstring password;
    if (options_.PasswordRequest) options_.PasswordRequest(refuse, password);
    if (refuse || password.empty()) win32::raiseWin32(ERROR_CANCELLED, archive_);
    // A password that the code page changes could never be typed again.
    if (!win32::survivesAnsi(password) || password.find(L'\0') != std::wstring::npos) {
        win32::raiseWin32(ERROR_NO_UNICODE_TRANSLATION, archive_);
    }
    password_ = win32::toAnsi(password);
}

void ZipUpdate::remove() {
    open(0);
    for (const std::wstring& spec : specs_) {
        const bool found = removeMatching(storedName(spec, true)) ||
                           (!options_.StoreFolderNames && removeMatching(storedName(spec, false)));
        if (!found) win32::raiseWin32(ERROR_FILE_NOT_FOUND, spec);
    }
    finish();
}

bool ZipUpdate::removeMatching(const std::wstring& pattern) {
    const std::wstring lowered = win32::lowered(pattern);
    bool found = false;
    const Index count = zip_get_num_entries(zip_.get(), ZIP_FL_UNCHANGED);
    for (Index entry = 0; entry < count; ++entry) {
        std::wstring name = win32::lowered(nameOf(entry));
        if (!name.empty() && name.back() == L'/') name.pop_back();
        if (!matchesPattern(name, lowered)) continue;
        found = true;
        // Not if an earlier specification has removed it.
        if (zip_get_name(zip_.get(), entry, zip_flags_t{})) checked(zip_delete(zip_.get(), entry));
    }
    return found;
}

void ZipUpdate::finish() {
    if (zip_close(zip_.get()) != 0) fail();
    zip_.release();
}

ZipUpdate::Index ZipUpdate::find(const std::wstring& name) const {
    const auto found = present_.find(win32::lowered(name));
    return found == present_.end() ? -1 : found->second;
}

ZipUpdate::Index ZipUpdate::checked(Index result) {
    if (result < 0) fail();
    return result;
}

void ZipUpdate::fail() {
    throw zipError(kept_, zip_get_error(zip_.get()), archive_);
}

void ZipUpdate::progress(const std::wstring& name, int percent) {
    current_ = name;
    if (options_.Progress) options_.Progress(name, percent);
    asksAgain_ = true;
    ask();
    if (isCancelled_) win32::raiseWin32(ERROR_CANCELLED, archive_);
}

void ZipUpdate::ask() {
    if (!asksAgain_ || isCancelled_ || !options_.Cancel) return;
    asksAgain_ = false;
    options_.Cancel(isCancelled_, current_);
}

// Entries that stay are copied by libzip itself, which asks through these two.
void ZipUpdate::onProgress(zip_t*, double, void* run) {
    static_cast<ZipUpdate*>(run)->asksAgain_ = true;
}

int ZipUpdate::onCancel(zip_t*, void* run) {
    auto* self = static_cast<ZipUpdate*>(run);
    try {
        self->ask();
        return self->isCancelled_;
    } catch (...) {
        self->kept_.keep();
        return 1;
    }
}

}  // namespace support
