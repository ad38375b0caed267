// Line-end conversion of what goes into an archive. Pure.
#pragma once

#include <string>
#include <string_view>

namespace support {

enum class LineEnds { asTheyAre, crLfToLf, lfToCrLf };

// Converts a text that comes in pieces. CR LF becomes LF, or an LF that no CR precedes becomes CR LF; a CR
// that no LF follows stays. Every other byte passes, also those of files that are no text.
class LineEndConverter {
  public:
    explicit LineEndConverter(LineEnds how) : how_(how) {}

    // The converted piece. A CR at its end may wait for the next piece.
    std::string convert(std::string_view piece);
    // What still waits after the last piece.
    std::string finish() const;

  private:
    LineEnds how_;
    bool sawCr_ = false;  // the byte before was a CR; on the way to LF it is held back
};

}  // namespace support
