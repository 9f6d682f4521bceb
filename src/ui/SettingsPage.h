#pragma once
// SettingsPage: the Shell tab's page. A tree of settings drawn with the program's seven tree images,
// a numeric editor under it (a frame captioned with the setting, a text box, a vertical scroll bar
// that counts up with its upper arrow, a unit label) and the tree's right-click menu. The page only
// shows and reports: what a node means and what an edit does belong to whoever handles its events.
#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <string>

#include "ui/win.h"

namespace ui {

class SettingsPage : public Window {
 public:
  // The tree's height with the editor hidden and shown, in twips.
  static constexpr int kTreeTwips = 3450, kTreeWithEditorTwips = 2690;
  // The scroll bar's range is 0 to kScrollMax; typed values from 32767 up never reach it.
  static constexpr int kScrollMax = 32766;
  static constexpr int kSmallStep = 1, kLargeStep = 10;
  // The right-click menu's items, by index (1 and 3 are separators).
  enum MenuItem { kWhatsThis = 0, kStateItem = 2, kExpandAll = 4, kCollapseAll = 5 };

  SettingsPage();
  ~SettingsPage() override;

  bool Create(HWND parent, int id, HFONT font);
  void Move(int x, int y, int width, int height);
  // The window whose picture shows behind the page (the tab strip under the pane); none: the page
  // paints itself in the button face colour.
  void SetBackdrop(HWND backdrop);
  HWND tree() const { return tree_; }
  HWND frame() const { return frame_; }
  HWND scrollBar() const { return scroll_; }
  HWND textBox() const { return text_; }
  HWND unitLabel() const { return unit_; }

  // Nodes. Images are the program's image numbers, 1 to 7 (TREEI_* + 1); data is the caller's own.
  HTREEITEM AddNode(HTREEITEM parent, const std::string& text, int image, LPARAM data);
  void SetImage(HTREEITEM item, int image);
  int ImageOf(HTREEITEM item) const;
  LPARAM DataOf(HTREEITEM item) const;
  HTREEITEM Selected() const;
  void Select(HTREEITEM item);  // makes it visible and selects it
  bool Expanded(HTREEITEM item) const;
  bool HasChildren(HTREEITEM item) const;
  void Expand(HTREEITEM item, bool expand);
  // A group's picture from its expanded state.
  void ShowExpansion(HTREEITEM item);
  void ExpandAll(bool expand);
  // The nodes are all in: the item under the pointer is highlighted from now on (track-select), and
  // Shift+F10 opens the menu.
  void Filled();

  // The numeric editor.
  void ShowEditor(bool show, const std::string& caption);
  bool EditorShown() const;
  void SetUnit(const std::string& unit);
  int ScrollValue() const { return value_; }
  // Moves the bar (within its range) and raises ScrollChange, as a change of the bar's value does.
  void SetScrollValue(int value);
  std::string Text() const;
  void SetText(const std::string& text);  // and selects all of it
  void UndoText();                         // the edit control's own undo (WM_UNDO)
  void FocusText();

  // The right-click menu with the state item's caption and state; the caller destroys it.
  HMENU BuildMenu(const std::string& stateCaption, bool stateEnabled) const;
  // Shows it at a screen point; the index of the chosen item, or -1.
  int ShowMenu(POINT screen, const std::string& stateCaption, bool stateEnabled);

  // Events.
  std::function<void()> DblClick;     // a double-click on the tree
  std::function<void()> SpaceKey;     // the space bar in the tree
  std::function<void()> NodeClick;    // the selection moved (by mouse, keys or code)
  std::function<void()> ScrollChange; // the scroll bar's value changed
  std::function<void()> TextKeyUp;    // a key went up in the text box
  std::function<void(POINT screen)> ContextMenu;  // right button over a node (selected first), or the menu key

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;

 private:
  LRESULT OnNotify(const NMHDR* hdr);
  void OnScroll(int code);
  void LayOut();
  void Repaint(HWND child);
  void MenuAtSelection();
  static LRESULT CALLBACK TreeProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id, DWORD_PTR self) noexcept;
  static LRESULT CALLBACK TextProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id, DWORD_PTR self) noexcept;

  HWND backdrop_ = nullptr;
  HWND tree_ = nullptr, frame_ = nullptr, scroll_ = nullptr, text_ = nullptr, unit_ = nullptr;
  ImageListHandle images_;
  int value_ = 0;
  bool editor_ = false;
  int width_ = 0;
};

}  // namespace ui
