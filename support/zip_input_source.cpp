#include "support/zip_input_source.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "support/zip_source_base.h"
#include "win32/files/files.h"

namespace support {

namespace {

class Input {
  public:
    Input(const ZipInput& input, ZipReading reading, KeptFailure& kept)
        : kept(kept),
          path_(input.path),
          modified_(modificationTime(input.file.lastWrite)),
          reading_(std::move(reading)) {}

    zip_int64_t command(void* data, zip_uint64_t length, zip_source_cmd_t command) {
        switch (command) {
            case ZIP_SOURCE_OPEN:
                run_.emplace(path_, reading_.lineEnds);
                tell(0);
                return done;
            case ZIP_SOURCE_READ:
                return read(static_cast<char*>(data), static_cast<size_t>(length));
            case ZIP_SOURCE_CLOSE:
                run_.reset();
                return done;
            case ZIP_SOURCE_STAT:
                return stat(data);
            case ZIP_SOURCE_SUPPORTS:
                return ZIP_SOURCE_SUPPORTS_READABLE;
            default:
                zip_error_set(&error, ZIP_ER_OPNOTSUPP, 0);
                return failed;
        }
    }

    KeptFailure& kept;
    ZipError error;

  private:
    // From opening to closing: libzip may read a file more than once.
    struct Run {
        Run(const std::wstring& path, LineEnds lineEnds) : reader(path), converter(lineEnds) {}
        win32::FileReader reader;
        LineEndConverter converter;
        std::string pending;  // converted and not yet given
        uint64_t readBytes = 0;
        bool isAtEnd = false;
        std::optional<int> told;
    };

    bool converts() const { return reading_.lineEnds != LineEnds::asTheyAre; }

    // The size as it will be stored must be known before the data: libzip would otherwise write every entry
    // in the form for more than 4 GiB, which older readers do not understand.
    zip_int64_t stat(void* data) {
        if (!storedSize_) storedSize_ = converts() ? convertedSize() : win32::FileReader(path_).size();
        zip_stat_t record{};
        record.size = *storedSize_;
        record.mtime = modified_;
        record.valid = ZIP_STAT_SIZE | ZIP_STAT_MTIME;
        return giveRecord(record, data);
    }

    uint64_t convertedSize() const {
        win32::FileReader reader(path_);
        LineEndConverter converter(reading_.lineEnds);
        std::string piece(pieceSize, '\0');
        uint64_t size = 0;
        while (size_t got = reader.read(piece.data(), piece.size())) {
            size += converter.convert({piece.data(), got}).size();
        }
        return size + converter.finish().size();
    }

    zip_int64_t read(char* data, size_t length) {
        if (!converts()) return readPlain(data, length);
        while (run_->pending.empty() && !run_->isAtEnd) {
            std::string piece(pieceSize, '\0');
            piece.resize(static_cast<size_t>(readPlain(piece.data(), piece.size())));
            run_->isAtEnd = piece.empty();
            run_->pending = run_->isAtEnd ? run_->converter.finish() : run_->converter.convert(piece);
        }
        const size_t given = run_->pending.copy(data, length);
        run_->pending.erase(0, given);
        return static_cast<zip_int64_t>(given);
    }

    zip_int64_t readPlain(char* data, size_t length) {
        const size_t got = run_->reader.read(data, length);
        const uint64_t soFar = run_->readBytes += got, whole = run_->reader.size();
        tell(got == 0 || soFar >= whole ? 100 : static_cast<int>(soFar / (whole / 100 + 1)));
        return static_cast<zip_int64_t>(got);
    }

    void tell(int percent) {
        if (percent == run_->told) return;
        run_->told = percent;
        if (reading_.progress) reading_.progress(percent);
    }

    static constexpr size_t pieceSize = 8192;

    std::wstring path_;
    time_t modified_;
    ZipReading reading_;
    std::optional<uint64_t> storedSize_;
    std::optional<Run> run_;
};

}  // namespace

time_t modificationTime(const FILETIME& written) {
    const int64_t latest = std::numeric_limits<time_t>::max();
    return static_cast<time_t>(std::clamp<int64_t>(win32::unixTime(written), 0, latest));
}

ZipSource makeInputSource(const ZipInput& input, const ZipReading& reading, KeptFailure& kept) {
    return SourceOf<Input>::make(std::make_unique<Input>(input, reading, kept));
}

}  // namespace support
