#pragma once
// ListBoxIcons: the owner-drawn list of icons with captions shown on every icon tab. At most 19
// items, each with caption, icon file, icon index, key, list index and info tip. Rows are 50 pixels
// high; a row is drawn when it is first seen, its icon extracted, drawn and destroyed at once (no icon
// handle is kept).
#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>

namespace ui {

// Splits an icon location ("file,index") at its last comma: returns the file and sets index to the
// 16-bit value of the text after the comma, and cuts location to the file. A location without a
// comma returns "" and changes neither argument.
std::string SplitIconLocation(std::string& location, int16_t& index);

// The face name inside the shell's stored icon-title font record (the raw bytes of the "IconFont"
// value): the first run of two or more bytes from 32 to 125; a lone such byte is skipped.
std::string FaceNameFromFontRecord(const std::string& bytes);

class ListBoxIcons {
 public:
  static constexpr int kCapacity = 19;
  static constexpr int kRowHeight = 50;

  ListBoxIcons();
  ~ListBoxIcons();
  ListBoxIcons(const ListBoxIcons&) = delete;
  ListBoxIcons& operator=(const ListBoxIcons&) = delete;

  // Creates the control (Container, lstMain and Scroll) as a child of parent; runs SystemSettings.
  bool Create(HWND parent, int id, int x, int y, int width, int height);
  HWND hwnd() const;       // the control's outer window (Container)
  HWND surface() const;    // lstMain, the drawing surface that takes focus and keys
  HWND scrollBar() const;  // Scroll
  void Move(int x, int y, int width, int height);

  // Events raised to the host.
  std::function<void()> Click;
  std::function<void()> DblClick;
  std::function<void(int keyCode, int shift)> KeyDown;
  std::function<void(int charCode)> KeyPress;
  std::function<void(int keyCode, int shift)> KeyUp;
  std::function<void(int button, int shift, int x, int y)> MouseUp;

  void AddItem(const std::string& caption, const std::string& iconPath, int16_t iconIndex,
               const std::string& key);
  // While one of these lives, rows added change the list's windows (size, scroll bar) not each time
  // but once, when it ends: filling a list a row at a time otherwise moves and repaints it per row.
  class Filling {
   public:
    explicit Filling(ListBoxIcons& list);
    ~Filling();
    Filling(Filling&& other) noexcept : list_(other.list_) { other.list_ = nullptr; }
    Filling(const Filling&) = delete;
    Filling& operator=(const Filling&) = delete;
    Filling& operator=(Filling&&) = delete;

   private:
    ListBoxIcons* list_;
  };
  void Change(const std::string& key, const std::string& iconPath, int16_t iconIndex = -1,
              const std::string& caption = "");
  // A short mark drawn under the item's caption and the longer info tip shown for it (both empty
  // unless set). Set before the row is first drawn.
  void SetNote(const std::string& key, const std::string& mark, const std::string& tip);
  std::string ItemInfoTip(const std::string& key) const;
  void SelItemKey(const std::string& key);
  void SelItemIndex(int16_t index);

  double ListIndex() const;
  std::string Key(int index) const;
  double ListCount() const;
  int Count() const;  // items added so far

  std::string SeledKey() const;
  std::string SeledCaption() const;
  std::string SeledInfoTip() const;
  std::string SeledListIndex() const;
  std::string SeledIconPath() const;
  int16_t SeledIconIndex() const;
  std::string SeledFullIconPath() const;

  std::string ItemFullPath(const std::string& key) const;
  std::string ItemFullPathmouse(const std::string& key) const;
  std::string ItemCaption(const std::string& key) const;

  void ItemRefresh();
  void ListRefresh();
  void SystemSettings();

  // Read-only views used by tests and the host's tooltip.
  RECT SelectionRect() const;
  std::string FontName() const;
  int SurfaceWidth() const;
  int SurfaceHeight() const;
  int ScrollValue() const;
  int ScrollMax() const;
  // A pixel of lstMain's picture (the back buffer that WM_PAINT shows), and the width of a text
  // in the caption font.
  COLORREF Pixel(int x, int y) const;
  int CaptionWidth(const std::string& text) const;
  // Rows whose drawing waits for them to be seen (painted or read through Pixel).
  int RowsOwed() const;

 private:
  struct Impl;
  Impl* impl_;
};

}  // namespace ui
