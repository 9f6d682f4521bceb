#pragma once
// The bar between the Explorer tab's folder tree and its icon list. The width rules work in twips,
// the unit the main window keeps its layout in; the bar itself reports pixels.
#include <windows.h>

#include <functional>

#include "ui/win.h"

namespace ui {

// The folder tree's width is kept between these two, in twips.
inline constexpr int kTreeMinWidth = 3375;
inline constexpr int kTreeMaxWidth = 4815;
// Double-clicks below this snap to the narrow width, from here on to the wide one.
inline constexpr int kTreeSnapMidpoint = 4095;
// The bar's left edge sits this far inside the tree's right edge.
inline constexpr int kSplitterOverlap = 50;

// The tree's width after a drag step of mouseX (the pointer's offset on the bar, in twips): a step
// that would pass the wide limit changes nothing; anything at or below the narrow limit clamps to it.
int SplitterDragWidth(int treeWidth, int mouseX);
// The tree's width after a double-click on the bar: it toggles between the two limits, a width in
// between going to the nearer one.
int SplitterSnapWidth(int treeWidth);
// The bar's left edge for a tree at treeLeft that is treeWidth wide.
int SplitterLeft(int treeLeft, int treeWidth);

// A thin vertical bar with the west-east sizing pointer. It captures the mouse while a button is held
// and reports to its host; the host moves the tree and the bar with the rules above.
class Splitter : public Window {
 public:
  // Creates the bar as a child of parent (a plain, borderless bar in the dialog face colour), above
  // its siblings; Move keeps it there.
  bool Create(HWND parent, int id, int x, int y, int w, int h);
  void Move(int x, int y, int w, int h);

  // Set by a press on the bar, cleared by the release (or by losing the mouse capture).
  bool dragging() const { return dragging_; }

  // x is the pointer's offset from the bar's left edge in pixels (negative when left of it).
  std::function<void(int x)> Pressed;
  std::function<void(int x)> Moved;  // raised only while dragging
  std::function<void(int x)> Released;
  std::function<void()> DoubleClicked;

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;

 private:
  void EndDrag(int x);
  bool dragging_ = false;
};

}  // namespace ui
