// The list-view common control in report view, one row selectable at a time.
#pragma once

#include <string>

#include "win32/base/platform.h"

namespace win32 {

class ListView {
  public:
    static constexpr int none = -1;

    // The window is the parent's, which destroys it.
    void create(HWND parent, int id);
    HWND window() const { return window_; }

    void addColumn(int column, const std::wstring& title);
    // In pixels; a negative width becomes 0 (some negative numbers would mean "automatic").
    void setColumnWidth(int column, int pixels);
    // The list does not own the images.
    void setImages(HIMAGELIST images);

    // Rows are counted from 0. A row that cannot be added is thrown. What is asked about a row that is not
    // there, or after the window has gone, is none or empty.
    void clear();
    void reserve(int rows);
    int addRow(const std::wstring& text, int image, LPARAM tag);
    void setText(int row, int column, const std::wstring& text);
    int count() const;
    std::wstring text(int row, int column) const;
    int image(int row) const;
    LPARAM tag(int row) const;

    // The selected row or none.
    int selected() const;
    // Selects a row, gives it the keyboard focus and scrolls to it.
    void select(int row);

    // While false, changes are not drawn; true repaints the whole list.
    void setRedraw(bool redraw);

  private:
    HWND window_ = nullptr;
};

// Nothing of the list is drawn for the lifetime of the object; then all of it is.
class DrawingOff {
  public:
    explicit DrawingOff(ListView& list) : list_(list) { list_.setRedraw(false); }
    ~DrawingOff() { list_.setRedraw(true); }
    DrawingOff(const DrawingOff&) = delete;
    DrawingOff& operator=(const DrawingOff&) = delete;

  private:
    ListView& list_;
};

}  // namespace win32
