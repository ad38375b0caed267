#include "support/zip_archive_source.h"

#include <optional>

#include "support/zip_source_base.h"
#include "win32/files/file_replacement.h"
#include "win32/files/file_search.h"
#include "win32/files/files.h"

namespace support {

namespace {

class Archive {
  public:
    Archive(std::wstring path, KeptFailure& kept) : kept(kept), path_(std::move(path)) {}

    zip_int64_t command(void* data, zip_uint64_t length, zip_source_cmd_t command) {
        switch (command) {
            case ZIP_SOURCE_OPEN:
                reader_.emplace(path_);
                return seekTo(0);
            case ZIP_SOURCE_READ:
                return read(data, length);
            case ZIP_SOURCE_CLOSE:
                reader_.reset();
                return done;
            case ZIP_SOURCE_STAT:
                return stat(data);
            case ZIP_SOURCE_SEEK:
                return seek(data, length);
            case ZIP_SOURCE_TELL:
                return static_cast<zip_int64_t>(offset_);
            case ZIP_SOURCE_ACCEPT_EMPTY:
                return 1;
            case ZIP_SOURCE_SUPPORTS:
                return ZIP_SOURCE_SUPPORTS_WRITABLE |
                       ZIP_SOURCE_MAKE_COMMAND_BITMASK(ZIP_SOURCE_ACCEPT_EMPTY);
            default:
                return commandWriting(data, length, command);
        }
    }

    KeptFailure& kept;
    ZipError error;

  private:
    zip_int64_t commandWriting(void* data, zip_uint64_t length, zip_source_cmd_t command) {
        win32::NoFileRedirection off;
        switch (command) {
            case ZIP_SOURCE_BEGIN_WRITE:
                writer_.emplace(path_);
                return done;
            case ZIP_SOURCE_WRITE:
                writer_->write(data, static_cast<size_t>(length));
                return length;
            case ZIP_SOURCE_TELL_WRITE:
                return static_cast<zip_int64_t>(writer_->position());
            case ZIP_SOURCE_SEEK_WRITE:
                return seekWriting(*static_cast<zip_source_args_seek_t*>(data));
            case ZIP_SOURCE_COMMIT_WRITE:
                writer_->commit();
                [[fallthrough]];
            case ZIP_SOURCE_ROLLBACK_WRITE:
                writer_.reset();
                return done;
            case ZIP_SOURCE_REMOVE:
                return remove();
            default:
                return fail(ZIP_ER_OPNOTSUPP);
        }
    }

    zip_int64_t fail(int code, int systemCode = 0) {
        zip_error_set(&error, code, systemCode);
        return failed;
    }

    // An archive that is not there must answer exactly so: libzip then makes a new one.
    zip_int64_t stat(void* data) {
        if (!win32::fileExists(path_)) return fail(ZIP_ER_READ, ENOENT);
        zip_stat_t record{};
        record.size = reader_ ? reader_->size() : win32::FileReader(path_).size();
        record.valid = ZIP_STAT_SIZE;
        return giveRecord(record, data);
    }

    zip_int64_t read(void* data, zip_uint64_t length) {
        const size_t got = reader_->read(data, static_cast<size_t>(length));
        offset_ += got;
        return static_cast<zip_int64_t>(got);
    }

    zip_int64_t seekTo(zip_int64_t offset) {
        offset_ = static_cast<uint64_t>(offset);
        reader_->skipTo(offset_);
        return done;
    }

    zip_int64_t seek(void* data, zip_uint64_t length) {
        const zip_int64_t offset =
            zip_source_seek_compute_offset(offset_, reader_->size(), data, length, &error);
        return offset < 0 ? failed : seekTo(offset);
    }

    // libzip names places by what TELL_WRITE has told it, and comes back to the end so.
    zip_int64_t seekWriting(const zip_source_args_seek_t& where) {
        if (where.whence != SEEK_SET || where.offset < 0) return fail(ZIP_ER_INVAL);
        writer_->seekTo(static_cast<uint64_t>(where.offset));
        return done;
    }

    zip_int64_t remove() {
        reader_.reset();
        win32::removeFile(path_);
        return done;
    }

    std::wstring path_;
    std::optional<win32::FileReader> reader_;
    uint64_t offset_{};
    std::optional<win32::FileReplacement> writer_;
};

}  // namespace

ZipSource makeArchiveSource(const std::wstring& path, KeptFailure& kept) {
    return SourceOf<Archive>::make(std::make_unique<Archive>(path, kept));
}

}  // namespace support

// libzip's zip_open, which nobody calls, stands beside zip_open_from_source and asks for the source of a
// named file, whose code is left out of the library.
extern "C" zip_source_t* zip_source_file_create(const char*, zip_uint64_t, zip_int64_t, zip_error_t* error) {
    zip_error_set(error, ZIP_ER_OPNOTSUPP, 0);
    return nullptr;
}
