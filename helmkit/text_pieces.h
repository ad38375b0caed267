// A long text that grows without being copied: one string would be moved into twice its room again and again,
// which a text of many megabytes does not find.
#pragma once

#include <deque>
#include <string>

namespace helmkit {

class TextPieces {
  public:
    // Where to append what is short.
    std::wstring& end();
    // An empty piece of its own, for what is long.
    std::wstring& startPiece();

    size_t length() const;
    // Moves the text to `at`, which has room for its length; each piece is freed when it has been copied.
    void moveTo(wchar_t* at);
    // The whole text as one.
    std::wstring text() const;

  private:
    std::deque<std::wstring> pieces_;  // references to its pieces stay
};

}  // namespace helmkit
