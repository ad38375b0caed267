#include "support/zip_line_ends.h"

namespace support {

std::string LineEndConverter::convert(std::string_view piece) {
    if (how_ == LineEnds::asTheyAre) return std::string(piece);
    std::string result;
    for (char byte : piece) {
        if (how_ == LineEnds::crLfToLf) {
            if (sawCr_ && byte != '\n') result += '\r';
            if (byte != '\r') result += byte;
        } else {
            if (byte == '\n' && !sawCr_) result += '\r';
            result += byte;
        }
        sawCr_ = byte == '\r';
    }
    return result;
}

std::string LineEndConverter::finish() const {
    return how_ == LineEnds::crLfToLf && sawCr_ ? "\r" : "";
}

}  // namespace support
