#include "ui/Splitter.h"

#include <windowsx.h>

namespace ui {

int SplitterDragWidth(int treeWidth, int mouseX) {
  int w = treeWidth + mouseX;
  if (w > kTreeMaxWidth) return treeWidth;
  return w > kTreeMinWidth ? w : kTreeMinWidth;
}

int SplitterSnapWidth(int treeWidth) {
  if (treeWidth == kTreeMinWidth || (treeWidth >= kTreeSnapMidpoint && treeWidth != kTreeMaxWidth))
    return kTreeMaxWidth;
  return kTreeMinWidth;
}

int SplitterLeft(int treeLeft, int treeWidth) { return treeLeft + treeWidth - kSplitterOverlap; }

bool Splitter::Create(HWND parent, int id, int x, int y, int w, int h) {
  if (!Window::Create("VxSplitter", 0, WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, "", x, y, w, h, parent,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id))))
    return false;
  // The bar overlaps the tree's right edge, so it must lie above it to be seen and grabbed.
  SetWindowPos(hwnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  return true;
}

void Splitter::Move(int x, int y, int w, int h) {
  if (hwnd()) SetWindowPos(hwnd(), HWND_TOP, x, y, w, h, SWP_NOACTIVATE);
}

void Splitter::EndDrag(int x) {
  if (!dragging_) return;
  dragging_ = false;
  if (Released) Released(x);
}

LRESULT Splitter::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_SETCURSOR:
      if (LOWORD(lp) == HTCLIENT) {
        SetCursor(LoadCursorA(nullptr, IDC_SIZEWE));
        return TRUE;
      }
      break;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
      dragging_ = true;
      SetCapture(hwnd());
      if (Pressed) Pressed(GET_X_LPARAM(lp));
      return 0;
    case WM_MOUSEMOVE:
      if (dragging_ && Moved) Moved(GET_X_LPARAM(lp));
      return 0;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
      // Clear the flag first: ReleaseCapture sends WM_CAPTURECHANGED, which must not report twice.
      EndDrag(GET_X_LPARAM(lp));
      if (GetCapture() == hwnd()) ReleaseCapture();
      return 0;
    case WM_CAPTURECHANGED:
      // Another window took the mouse (a dialog, Alt+Tab): the drag is over.
      EndDrag(0);
      return 0;
    case WM_LBUTTONDBLCLK:
      if (DoubleClicked) DoubleClicked();
      return 0;
    default:
      break;
  }
  return Default(msg, wp, lp);
}

}  // namespace ui
