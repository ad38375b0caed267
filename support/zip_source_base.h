// Tying a C++ object to libzip's source call-back. For the zip_source files only.
#pragma once

#include <cerrno>
#include <cstring>

#include "support/zip_source.h"

namespace support {

// What a command answers; libzip looks only whether it is negative.
const zip_int64_t done = 0, failed = -1;

// `State` has `zip_int64_t command(void*, zip_uint64_t, zip_source_cmd_t)`, which may throw, and the members
// `KeptFailure& kept` and `ZipError error`. The source owns it.
template <class State>
struct SourceOf {
    static ZipSource make(std::unique_ptr<State> state) {
        zip_source_t* source = zip_source_function_create(&call, state.get(), nullptr);
        if (!source) win32::raiseOutOfMemory();
        state.release();
        return ZipSource(source);
    }

  private:
    static zip_int64_t call(void* object, void* data, zip_uint64_t length, zip_source_cmd_t command) {
        State* state = static_cast<State*>(object);
        if (command == ZIP_SOURCE_FREE) {
            delete state;
            return done;
        }
        if (command == ZIP_SOURCE_ERROR) return zip_error_to_data(&state->error, data, length);
        try {
            return state->command(data, length, command);
        } catch (...) {
            state->kept.keep();
        }
        // libzip wants a number of its own; the exception that is kept says more.
        zip_error_set(&state->error, ZIP_ER_INTERNAL, EIO);
        return failed;
    }
};

// The answer to ZIP_SOURCE_STAT; libzip gives room for its own record.
inline zip_int64_t giveRecord(const zip_stat_t& record, void* data) {
    std::memcpy(data, &record, sizeof record);
    return sizeof record;
}

}  // namespace support
