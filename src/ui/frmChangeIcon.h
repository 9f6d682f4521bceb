#pragma once
// frmChangeIcon: the modal "Change Icon" dialog. It shows every icon of a file in a grid (lstMain)
// of 38-pixel cells, four to a column, filled column by column, inside a frame (Container) eight
// columns wide with a horizontal scroll bar (Scroll). The caller sets Filename and IconIndex, calls
// ChooseIcon and reads them back; they change only when the person presses OK. A column's icons are
// extracted when it first comes into view, so a large file opens as fast as a small one.
#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ui/Accessible.h"
#include "ui/ModalDialog.h"
#include "ui/win.h"

namespace ui {

class frmChangeIcon : public ModalDialog, private AccessibleItems {
 public:
  static constexpr int kCell = 38;           // cell size in pixels, square
  static constexpr int kIconOffset = 3;      // an icon's offset inside its cell
  static constexpr int kIconsPerColumn = 4;
  static constexpr int kVisibleColumns = 8;  // files of up to 32 icons need no scrolling

  // The result of the dialog: written by OK only.
  std::string Filename;
  int16_t IconIndex = 0;

  // Shows the dialog modally with Filename in the file box and the cell of IconIndex selected and
  // scrolled into view. True when the person pressed OK, false on Cancel, Escape or the close box.
  bool ChooseIcon(HWND owner = nullptr);
  // Counts the icons of the file named in the file box and draws those in view (while the dialog is open).
  void DisplayIcons();

  // Read-only views for the host and the tests (valid while the dialog is open).
  HWND GridWindow() const { return lstMain_; }
  int IconCount() const { return iconCount_; }
  RECT SelectionRect() const { return sel_; }
  int SelectedIndex() const;  // column x 4 + row of the selected cell
  int GridWidth() const { return gridWidth_; }
  int ScrollValue() const;
  int ScrollMax() const { return scrollMax_; }
  int ScrollLargeChange() const;
  int InnerWidth() const;  // the inner width of Container

 private:
  static LRESULT CALLBACK GridProc(HWND, UINT, WPARAM, LPARAM) noexcept;
  static LRESULT CALLBACK FilenameProc(HWND, UINT, WPARAM, LPARAM) noexcept;
  INT_PTR HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;
  LRESULT HandleGrid(UINT msg, WPARAM wp, LPARAM lp);

  void Form_Load();
  void Layout();
  void cmdBrowse_Click();
  void cmdOK_Click();
  void cmdCancel_Click();
  void txtFilename_Enter();
  void lstMain_MouseDown(int x, int y);
  void lstMain_MouseMove(int x, int y);
  void lstMain_KeyDown(int keyCode);
  void lstMain_DblClick();
  void Scroll_Change(int code);

  void Press(int x, int y);  // selects the cell under (x, y) of lstMain, if there is one
  void DrawCell(const RECT& cell, bool selected);
  void DrawIconAt(int index, int x, int y);
  void DrawColumnsInView();  // the columns of the visible part not drawn yet
  void ClearGrid(int width);
  void SetScrollRange(int maximum, int largeChange, bool enabled);
  void SetScrollValue(int value);
  void FollowSelection();  // one step of 38 towards the selected column
  void ShowFailure(const std::string& text);

  // The grid as screen readers read it: one item per icon, column by column.
  int ItemCount() const override { return iconCount_; }
  std::string ItemName(int item) const override;
  RECT ItemRect(int item) const override;
  int SelectedItem() const override;
  int ItemAt(POINT client) const override;
  int ItemToward(int item, LONG navDir) const override;

  HWND txtFilename_ = nullptr;
  HWND cmdOK_ = nullptr;
  HWND container_ = nullptr;
  HWND lstMain_ = nullptr;
  HWND scroll_ = nullptr;
  WNDPROC editProc_ = nullptr;  // the file box's own procedure, under ours
  BackBuffer buffer_;  // lstMain's picture
  std::string displayed_;  // the file whose icons the grid shows
  int16_t iconCount_ = 0;
  std::vector<bool> columnDrawn_;  // per column of the grid: its icons are in the picture
  bool highlightDrawn_ = false;    // a new file's grid shows no selection until a cell is pressed
  RECT sel_{0, 0, kCell, kCell};
  int gridWidth_ = 0;
  int scrollMax_ = 0;
  std::unique_ptr<AccessibleList> a11y_;  // lives with lstMain
};

}  // namespace ui
