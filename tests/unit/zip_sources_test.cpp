// What libzip reads from and writes to, asked as libzip does.
#include <algorithm>
#include <cerrno>
#include <limits>
#include <stdexcept>
#include <vector>

#include <doctest/doctest.h>

#include "support/zip_archive_source.h"
#include "support/zip_input_source.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/handle.h"

// What a source has said of itself; libzip keeps it for its own use.
extern "C" zip_int64_t zip_source_supports(zip_source_t*);

namespace {

using support::LineEnds;

FILETIME fileTime(uint64_t steps) {
    return {static_cast<DWORD>(steps), static_cast<DWORD>(steps >> 32)};
}

// A step of FILETIME's clock at a second since 1970.
uint64_t stepAt(int64_t second) {
    return static_cast<uint64_t>(second + 11644473600) * 10000000;
}

struct Sources : TempFolder {
    support::KeptFailure kept;
    support::ZipReading reading;
    std::vector<int> told;

    support::ZipSource input(const std::string& content) {
        write(file(L"input"), content);
        support::ZipInput found;
        found.path = file(L"input");
        found.file.lastWrite = fileTime(stepAt(1234567));
        return makeInputSource(found, reading, kept);
    }
    void listen() {
        reading.progress = [this](int percent) { told.push_back(percent); };
    }
    support::ZipSource archive() { return support::makeArchiveSource(file(L"archive"), kept); }

    // What is left of a source, so many bytes at a time.
    static std::string rest(const support::ZipSource& source, size_t atOnce) {
        std::string bytes, piece(atOnce, '\0');
        for (;;) {
            const zip_int64_t got = zip_source_read(source.get(), piece.data(), piece.size());
            REQUIRE(got >= 0);
            if (got == 0) return bytes;
            bytes.append(piece, 0, static_cast<size_t>(got));
        }
    }
    static std::string all(const support::ZipSource& source, size_t atOnce) {
        REQUIRE(zip_source_open(source.get()) == 0);
        const std::string bytes = rest(source, atOnce);
        REQUIRE(zip_source_close(source.get()) == 0);
        return bytes;
    }
    static zip_stat_t statOf(const support::ZipSource& source) {
        zip_stat_t record;
        REQUIRE(zip_source_stat(source.get(), &record) == 0);
        return record;
    }
    static void checkError(const support::ZipSource& source, int code, int systemCode) {
        CHECK(zip_error_code_zip(zip_source_error(source.get())) == code);
        CHECK(zip_error_code_system(zip_source_error(source.get())) == systemCode);
    }
    // Some of a text written, up to where it is decided.
    void writeText(const support::ZipSource& source) {
        REQUIRE(zip_source_begin_write(source.get()) == 0);
        REQUIRE(zip_source_write(source.get(), "abcd", 4) == 4);
        CHECK(zip_source_tell_write(source.get()) == 4);
        REQUIRE(zip_source_seek_write(source.get(), 1, SEEK_SET) == 0);
        REQUIRE(zip_source_write(source.get(), "X", 1) == 1);
        CHECK(zip_source_tell_write(source.get()) == 2);
        REQUIRE(zip_source_seek_write(source.get(), 0, SEEK_SET) == 0);
        CHECK(zip_source_tell_write(source.get()) == 0);
    }
};

long numberOf(int code) {
    support::KeptFailure none;
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    const win32::Error told = support::zipError(none, &error, L"C:\\a.zip");
    zip_error_fini(&error);
    CHECK(told.description.find(L"C:\\a.zip: ") == 0);
    CHECK(told.description.size() > 12);
    return told.number;
}

}  // namespace

TEST_CASE("a failure of libzip has a number that Windows' users know") {
    CHECK(numberOf(ZIP_ER_MEMORY) == E_OUTOFMEMORY);
    CHECK(numberOf(ZIP_ER_CANCELLED) == HRESULT_FROM_WIN32(ERROR_CANCELLED));
    CHECK(numberOf(ZIP_ER_NOENT) == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    for (int code : {ZIP_ER_NOZIP, ZIP_ER_INCONS, ZIP_ER_MULTIDISK, ZIP_ER_EOF})
        CHECK(numberOf(code) == HRESULT_FROM_WIN32(ERROR_INVALID_DATA));
    for (int code : {ZIP_ER_READ, ZIP_ER_WRITE, ZIP_ER_EXISTS}) CHECK(numberOf(code) == E_FAIL);
}

TEST_CASE("of several exceptions the first is kept, and thrown once") {
    support::KeptFailure kept;
    for (const char* text : {"first", "second"}) {
        try {
            throw std::runtime_error(text);
        } catch (...) {
            kept.keep();
        }
    }
    CHECK_THROWS_WITH(kept.rethrow(), "first");
    CHECK_NOTHROW(kept.rethrow());
}

TEST_CASE("a file's time is in the range of the C library's") {
    CHECK(support::modificationTime(fileTime(0)) == 0);
    CHECK(support::modificationTime(fileTime(stepAt(0) - 1)) == 0);
    for (int second : {0, 1, 1600000000})
        CHECK(support::modificationTime(fileTime(stepAt(second) + 9999999)) == second);
    const int64_t late = 5000000000, latest = std::numeric_limits<time_t>::max();
    CHECK(support::modificationTime(fileTime(stepAt(late))) == std::min(late, latest));
}

TEST_CASE_FIXTURE(Sources, "an input tells its size and time, is read in any pieces, and again") {
    const auto source = input("12345");
    CHECK(zip_source_supports(source.get()) == ZIP_SOURCE_SUPPORTS_READABLE);
    for (int i = 0; i < 2; ++i) {
        const zip_stat_t record = statOf(source);
        CHECK(record.valid == (ZIP_STAT_SIZE | ZIP_STAT_MTIME));
        CHECK(record.size == 5);
        CHECK(record.mtime == 1234567);
        CHECK(all(source, 2) == "12345");
        CHECK(all(source, 100) == "12345");
    }
    CHECK(zip_source_begin_write(source.get()) == -1);
    checkError(source, ZIP_ER_OPNOTSUPP, 0);
}

TEST_CASE_FIXTURE(Sources, "of an input each percentage is told once, from 0 to 100, at each reading") {
    listen();
    const auto source = input("12345");
    for (int i = 0; i < 2; ++i) {
        told.clear();
        all(source, 1);
        CHECK(told == std::vector<int>{0, 1, 2, 3, 4, 100});
    }
    told.clear();
    all(input(std::string(250, 'x')), 50);
    CHECK(told == std::vector<int>{0, 16, 33, 50, 66, 100});
    told.clear();
    all(input(""), 50);
    CHECK(told == std::vector<int>{0, 100});
}

TEST_CASE_FIXTURE(Sources, "line ends are converted in any pieces, and anew at each reading") {
    const std::string text = std::string(8191, 'x') + "\r\na\nb\r";
    const std::pair<LineEnds, std::string> rows[] = {
        {LineEnds::asTheyAre, text},
        {LineEnds::crLfToLf, std::string(8191, 'x') + "\na\nb\r"},
        {LineEnds::lfToCrLf, std::string(8191, 'x') + "\r\na\r\nb\r"},
    };
    for (const auto& [lineEnds, converted] : rows) {
        reading.lineEnds = lineEnds;
        const auto source = input(text);
        CHECK(statOf(source).size == converted.size());
        for (size_t atOnce : {size_t{7}, size_t{8192}, converted.size(), size_t{20000}})
            CHECK(all(source, atOnce) == converted);
        // What is given up in the middle leaves nothing for the next time.
        REQUIRE(zip_source_open(source.get()) == 0);
        char some[100];
        CHECK(zip_source_read(source.get(), some, sizeof some) == sizeof some);
        REQUIRE(zip_source_close(source.get()) == 0);
        CHECK(all(source, 5000) == converted);
    }
}

TEST_CASE_FIXTURE(Sources, "what is converted is read in pieces of 8 KiB") {
    listen();
    reading.lineEnds = LineEnds::crLfToLf;
    all(input(std::string(8193, 'x')), 20000);
    CHECK(told == std::vector<int>{0, 99, 100});
}

TEST_CASE_FIXTURE(Sources, "an input that is gone is an error of its own, which is kept") {
    const auto source = input("x");
    REQUIRE(::DeleteFileW(file(L"input").c_str()));
    CHECK(zip_source_open(source.get()) == -1);
    checkError(source, ZIP_ER_INTERNAL, EIO);
    CHECK_THROWS_AS(kept.rethrow(), win32::Error);
}

TEST_CASE_FIXTURE(Sources, "an archive that is not there says so, one that is there its size") {
    const auto source = archive();
    CHECK(zip_source_supports(source.get()) ==
          (ZIP_SOURCE_SUPPORTS_WRITABLE | ZIP_SOURCE_MAKE_COMMAND_BITMASK(ZIP_SOURCE_ACCEPT_EMPTY)));
    zip_stat_t record;
    CHECK(zip_source_stat(source.get(), &record) == -1);
    checkError(source, ZIP_ER_READ, ENOENT);
    CHECK_NOTHROW(kept.rethrow());
    write(file(L"archive"), "0123456789");
    CHECK(statOf(source).size == 10);
    CHECK(statOf(source).valid == ZIP_STAT_SIZE);
    REQUIRE(zip_source_open(source.get()) == 0);
    // As it was when it was opened.
    const win32::OwnedFile other(::CreateFileW(file(L"archive").c_str(), FILE_APPEND_DATA,
                                               FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                               nullptr));
    DWORD written = 0;
    REQUIRE(::WriteFile(other.get(), "+", 1, &written, nullptr));
    CHECK(statOf(source).size == 10);
}

TEST_CASE_FIXTURE(Sources, "an archive is read from any place") {
    write(file(L"archive"), "0123456789");
    const auto source = archive();
    CHECK(all(source, 4) == "0123456789");
    REQUIRE(zip_source_open(source.get()) == 0);
    CHECK(zip_source_tell(source.get()) == 0);
    REQUIRE(zip_source_seek(source.get(), 6, SEEK_SET) == 0);
    CHECK(zip_source_tell(source.get()) == 6);
    CHECK(rest(source, 3) == "6789");
    CHECK(zip_source_tell(source.get()) == 10);
    REQUIRE(zip_source_seek(source.get(), -3, SEEK_CUR) == 0);
    CHECK(rest(source, 3) == "789");
    REQUIRE(zip_source_seek(source.get(), 0, SEEK_SET) == 0);
    CHECK(zip_source_tell(source.get()) == 0);
    CHECK(rest(source, 3) == "0123456789");
    REQUIRE(zip_source_seek(source.get(), -1, SEEK_END) == 0);
    CHECK(rest(source, 3) == "9");
    CHECK(zip_source_seek(source.get(), -1, SEEK_SET) == -1);
    checkError(source, ZIP_ER_INVAL, 0);
    CHECK(zip_source_close(source.get()) == 0);
    // While it is closed another program may write to it.
    CHECK(::DeleteFileW(file(L"archive").c_str()));
}

TEST_CASE_FIXTURE(Sources, "an archive is written whole or not at all") {
    write(file(L"archive"), "old");
    const auto source = archive();
    writeText(source);
    CHECK(zip_source_seek_write(source.get(), 1, SEEK_CUR) == -1);
    checkError(source, ZIP_ER_INVAL, 0);
    CHECK(zip_source_seek_write(source.get(), -1, SEEK_SET) == -1);
    checkError(source, ZIP_ER_INVAL, 0);
    CHECK(read(file(L"archive")) == "old");
    CHECK(count() == 2);
    zip_source_rollback_write(source.get());
    CHECK(read(file(L"archive")) == "old");
    CHECK(count() == 1);
    writeText(source);
    CHECK(zip_source_commit_write(source.get()) == 0);
    CHECK(read(file(L"archive")) == "aXcd");
    CHECK(count() == 1);
}

TEST_CASE("no archive is opened by libzip's own file sources") {
    zip_error_t error;
    zip_error_init(&error);
    CHECK(zip_source_file_create("a.zip", 0, 0, &error) == nullptr);
    CHECK(zip_error_code_zip(&error) == ZIP_ER_OPNOTSUPP);
    CHECK(zip_error_code_system(&error) == 0);
    zip_error_fini(&error);
}

TEST_CASE_FIXTURE(Sources, "a source that nobody takes lets go of its file") {
    {
        const support::ZipSource source = input("abc");
        REQUIRE(zip_source_open(source.get()) == 0);
        CHECK_FALSE(::DeleteFileW(file(L"input").c_str()));
    }
    CHECK(::DeleteFileW(file(L"input").c_str()));
}
