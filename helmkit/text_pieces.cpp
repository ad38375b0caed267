#include "helmkit/text_pieces.h"

namespace helmkit {

std::wstring& TextPieces::end() {
    const size_t longPiece = 1 << 18;
    return pieces_.empty() || pieces_.back().size() >= longPiece ? startPiece() : pieces_.back();
}

std::wstring& TextPieces::startPiece() {
    return pieces_.emplace_back();
}

size_t TextPieces::length() const {
    size_t length = 0;
    for (const std::wstring& piece : pieces_) length += piece.size();
    return length;
}

void TextPieces::moveTo(wchar_t* at) {
    for (; !pieces_.empty(); pieces_.pop_front()) {
        at += pieces_.front().copy(at, pieces_.front().size());
    }
}

std::wstring TextPieces::text() const {
    std::wstring whole;
    whole.reserve(length());
    for (const std::wstring& piece : pieces_) whole += piece;
    return whole;
}

}  // namespace helmkit
