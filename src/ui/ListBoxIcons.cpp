#include "ui/ListBoxIcons.h"

#include <shellapi.h>
#include <windowsx.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "registry/modCommon.h"
#include "system/Location.h"
#include "ui/Accessible.h"
#include "ui/win.h"

namespace ui {

namespace {

constexpr int kRow = ListBoxIcons::kRowHeight;
constexpr int kIconLeft = 15;
constexpr int kIconTop = 9;
constexpr int kCaptionTop = 20;
constexpr int kMarkTop = 34;       // a row's note, under its caption
constexpr int kCaptionArea = 40;   // captions are centred between here and the right edge
constexpr int kTooWideMargin = 60;  // a caption wider than the surface less this is cut
constexpr int kPageStep = 200;
constexpr int kDragStep = 5;
constexpr int kBorder = 4;       // Container's client edge, two pixels a side
constexpr int kListOverlap = 3;  // lstMain runs one pixel under the scroll bar
constexpr size_t kCutWhenAdded = 20;
constexpr size_t kCutWhenRedrawn = 25;
constexpr UINT kCaptionFlags = DT_SINGLELINE | DT_NOCLIP | DT_NOPREFIX;

// The empty list is 250 pixels high: five rows fit before AddItem starts growing it at the sixth
// item, so every height it takes is a whole number of rows.
constexpr int kEmptyHeight = 5 * kRow;

const char* const kContainerClass = "VxListBoxIcons";
const char* const kSurfaceClass = "VxListBoxIconsSurface";
const char* const kMetricsKey = "Control Panel\\desktop\\WindowMetrics";

// The visual-basic shift mask: 1 Shift, 2 Ctrl, 4 Alt.
int ShiftState() {
  int s = 0;
  if (GetKeyState(VK_SHIFT) < 0) s |= 1;
  if (GetKeyState(VK_CONTROL) < 0) s |= 2;
  if (GetKeyState(VK_MENU) < 0) s |= 4;
  return s;
}

// A rectangle outlined and filled in one colour, as the rows' erase and highlight bands are.
void Band(HDC dc, int left, int top, int right, int bottom, COLORREF color) {
  Handle<HGDIOBJ, GdiTraits> pen(CreatePen(PS_SOLID, 1, color));
  Handle<HGDIOBJ, GdiTraits> brush(CreateSolidBrush(color));
  SelectScope p(dc, pen.get());
  SelectScope b(dc, brush.get());
  Rectangle(dc, left, top, right, bottom);
}

// The captions' font: the face the icon titles use, at the standard icon-title size (8 points), never
// taller than fits between the caption top and the row's end. Only the face is taken from the system:
// accessibility settings make icon titles 48 pixels high or more, and a damaged record gives
// thousands, which would spill over every row (and take the font engine minutes to draw).
LOGFONTA CaptionFont(const std::string& face) {
  LOGFONTA lf{};
  WindowDc screen(nullptr);
  const int dpi = GetDeviceCaps(screen.get(), LOGPIXELSY);
  const int points8 = MulDiv(8, dpi > 0 ? dpi : 96, 72);
  lf.lfHeight = -std::min(points8, (kRow - kCaptionTop) * 3 / 4);
  lf.lfWeight = FW_NORMAL;
  lf.lfCharSet = DEFAULT_CHARSET;
  lstrcpynA(lf.lfFaceName, face.c_str(), LF_FACESIZE);
  return lf;
}

// The face name of the system's icon titles, before the stored record is read.
std::string IconTitleFace() {
  LOGFONTA lf{};
  if (!SystemParametersInfoA(SPI_GETICONTITLELOGFONT, sizeof lf, &lf, 0)) return "MS Sans Serif";
  lf.lfFaceName[LF_FACESIZE - 1] = '\0';
  return lf.lfFaceName;
}

}  // namespace

// The face name inside a stored font record: the first run of two or more characters from 32 to
// 125. A lone printable byte is a stray piece of the numeric fields in front of the name.
std::string FaceNameFromFontRecord(const std::string& bytes) {
  std::string name;
  for (unsigned char c : bytes) {
    if (c >= 32 && c <= 125) {
      name += static_cast<char>(c);
    } else if (name.size() == 1) {
      name.clear();
    } else if (name.size() >= 2) {
      break;
    }
  }
  return name.size() >= 2 ? name : std::string();  // a lone byte at the very end is no name either
}

std::string SplitIconLocation(std::string& location, int16_t& index) {
  size_t comma = location.rfind(',');
  if (comma == std::string::npos) return "";
  index = ParseIconIndex(std::string_view(location).substr(comma + 1));
  location.resize(comma);
  return location;
}

struct ListBoxIcons::Impl final : AccessibleItems {
  struct Item {
    std::string caption, iconPath, key, listIndex, infoTip;
    std::string mark;  // a short note drawn under the caption ("" for none)
    int16_t iconIndex = 0;
  };

  // A row's drawing that is owed until the row is first seen: what AddItem or a full redraw would have
  // put there, taken down when it was asked for (a later Change does not alter it).
  struct Pending {
    bool owed = false;
    bool band = false;  // a redraw starts from the window-coloured band; a new row does not
    std::string path, caption;
    int index = 0;
    size_t keep = kCutWhenAdded;
  };

  // The selection's highlight, owed like a row: what it will show is fixed when it is asked for.
  struct PendingHighlight {
    bool owed = false;
    RECT rect{};
    std::string path, caption;
    int index = 0;
    bool cursor = false;  // an animated pointer: drawn from the file as a cursor
  };

  // The outer frame: lays out its two children and forwards the scroll bar's requests.
  class ContainerWindow : public Window {
   public:
    explicit ContainerWindow(Impl& impl) : impl_(impl) {}

   protected:
    LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override {
      switch (msg) {
        case WM_SIZE:
          impl_.Layout();
          return 0;
        case WM_VSCROLL:
          impl_.OnScroll(LOWORD(wp));
          return 0;
        case WM_SETFOCUS:
          if (impl_.surface.hwnd()) SetFocus(impl_.surface.hwnd());
          return 0;
      }
      return Default(msg, wp, lp);
    }

   private:
    Impl& impl_;
  };

  // lstMain: shows the back buffer and turns mouse and keys into selections.
  class SurfaceWindow : public Window {
   public:
    explicit SurfaceWindow(Impl& impl) : impl_(impl) {}

   protected:
    LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override {
      switch (msg) {
        case WM_PAINT:
          impl_.EnsureBuffer();
          impl_.DrawSeenRows();
          return impl_.buffer.Paint(hwnd(), msg, wp);
        case WM_PRINTCLIENT:
          impl_.EnsureBuffer();
          impl_.DrawAllOwed();
          return impl_.buffer.Paint(hwnd(), msg, wp);
        case WM_ERASEBKGND:
          return 1;
        case WM_GETDLGCODE:
          return DLGC_WANTARROWS | DLGC_WANTCHARS;
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
          impl_.OnButtonDown(msg, GET_Y_LPARAM(lp));
          return 0;
        case WM_LBUTTONDBLCLK:
          // No capture here: the host answers a double click with a modal dialog.
          impl_.pressed = false;
          impl_.dblClicked = true;
          if (impl_.owner.DblClick) impl_.owner.DblClick();
          return 0;
        case WM_MOUSEMOVE:
          if (wp & MK_LBUTTON) impl_.OnDrag(GET_Y_LPARAM(lp));
          impl_.TipFor(GET_Y_LPARAM(lp) / kRow);
          return 0;
        case WM_LBUTTONUP:
        case WM_RBUTTONUP:
        case WM_MBUTTONUP:
          impl_.OnButtonUp(msg, wp, GET_X_LPARAM(lp), GET_Y_LPARAM(lp));
          return 0;
        case WM_CAPTURECHANGED:
          impl_.pressed = false;
          return 0;
        case WM_KEYDOWN:
          impl_.OnKeyDown(static_cast<int>(wp));
          return 0;
        case WM_KEYUP:
          if (impl_.owner.KeyUp) impl_.owner.KeyUp(static_cast<int>(wp), ShiftState());
          return 0;
        case WM_CHAR:
          if (impl_.owner.KeyPress) impl_.owner.KeyPress(static_cast<int>(wp));
          return 0;
        case WM_GETOBJECT:
          if (impl_.a11y) {
            if (const LRESULT answer = impl_.a11y->Answer(wp, lp)) return answer;
          }
          break;
        case WM_SETFOCUS:
          if (impl_.a11y) impl_.a11y->AnnounceFocus();
          break;
      }
      return Default(msg, wp, lp);
    }

   private:
    Impl& impl_;
  };

  explicit Impl(ListBoxIcons& o) : owner(o), container(*this), surface(*this) {}

  ~Impl() override {
    a11y.reset();
    if (tip) DestroyWindow(tip);
    surface.Destroy();
    container.Destroy();
  }

  ListBoxIcons& owner;
  ContainerWindow container;
  SurfaceWindow surface;
  HWND scroll = nullptr;

  // The info tips: a tooltip over lstMain, made when the first item gets one, whose text follows the
  // row under the mouse.
  HWND tip = nullptr;
  int tipRow = -1;

  TOOLINFOA TipTool(const std::string& text) const {
    TOOLINFOA ti{};
    ti.cbSize = TTTOOLINFOA_V1_SIZE;
    ti.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    ti.hwnd = surface.hwnd();
    ti.uId = reinterpret_cast<UINT_PTR>(surface.hwnd());
    ti.lpszText = const_cast<char*>(text.c_str());
    return ti;
  }

  void EnsureTip() {
    if (tip || !surface.hwnd()) return;
    tip = CreateWindowExA(0, TOOLTIPS_CLASSA, "", WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, CW_USEDEFAULT,
                          CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, surface.hwnd(), nullptr, nullptr, nullptr);
    if (!tip) return;
    SendMessageA(tip, TTM_SETMAXTIPWIDTH, 0, 300);
    const std::string none;
    TOOLINFOA ti = TipTool(none);
    SendMessageA(tip, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&ti));
  }

  void TipFor(int row) {
    if (!tip || row == tipRow) return;
    tipRow = row;
    const std::string text = row >= 0 && row < count ? Slot(row).infoTip : std::string();
    SendMessageA(tip, TTM_POP, 0, 0);
    TOOLINFOA ti = TipTool(text);
    SendMessageA(tip, TTM_UPDATETIPTEXTA, 0, reinterpret_cast<LPARAM>(&ti));
    SendMessageA(tip, TTM_ACTIVATE, text.empty() ? FALSE : TRUE, 0);
  }

  std::array<Item, kCapacity> items{};
  std::array<Pending, kCapacity> owed{};
  int16_t count = 0;
  // Pixels of lstMain of the selected row: left 0, top row x 50, right width - 1, bottom top + 50.
  RECT sel{};
  // Whether a selection has been drawn yet: a fresh list shows no highlight until one is made.
  bool highlightShown = false;
  PendingHighlight owedHighlight;
  // The extension found for the last path that had one; a path without "." reuses it.
  std::string lastExt;

  std::string fontName;
  FontHandle font;
  int scrollWidth = 17;

  // lstMain's picture, kept so that WM_PAINT can show rows drawn one at a time long before. It takes
  // the surface's size only when something is drawn or shown: filling a list grows the surface a row
  // at a time, and a new picture each time would be copied over and over.
  BackBuffer buffer;
  int surfW = 0, surfH = kEmptyHeight;

  void EnsureBuffer() {
    const int w = std::max(1, surfW), h = std::max(1, surfH);
    if (buffer && (buffer.width() != w || buffer.height() != h)) buffer.Resize(w, h, true);
  }

  int scrollValue = 0, scrollMax = 0;
  bool pressed = false, dblClicked = false;
  int filling = 0;  // open Filling scopes: the windows catch up with added rows when the last ends
  std::unique_ptr<AccessibleList> a11y;  // made with lstMain, gone before it

  Item& Slot(int index) {
    if (index < 0 || index >= kCapacity) throw std::out_of_range("ListBoxIcons: item index out of range");
    return items[static_cast<size_t>(index)];
  }
  const Item& Slot(int index) const { return const_cast<Impl*>(this)->Slot(index); }

  int SelectedRow() const { return sel.top / kRow; }
  const Item& Selected() const { return Slot(SelectedRow()); }

  // Index of the first item with the key, or Count when none has it.
  int Find(const std::string& key) const {
    int i = 0;
    while (i < count && items[static_cast<size_t>(i)].key != key) ++i;
    return i;
  }

  int ContainerWidth() const {
    RECT r{};
    if (container.hwnd()) GetWindowRect(container.hwnd(), &r);
    return r.right - r.left;
  }
  int ContainerHeight() const {
    RECT r{};
    if (container.hwnd()) GetWindowRect(container.hwnd(), &r);
    return r.bottom - r.top;
  }
  int InnerHeight() const {
    RECT r{};
    if (container.hwnd()) GetClientRect(container.hwnd(), &r);
    return r.bottom - r.top;
  }

  void Repaint() {
    if (surface.hwnd()) InvalidateRect(surface.hwnd(), nullptr, FALSE);
  }

  // --- drawing -------------------------------------------------------------------------------------

  int TextWidth(const std::string& text) const {
    if (!buffer) return 0;
    SelectScope f(buffer.dc(), font.get());
    SIZE size{};
    GetTextExtentPoint32A(buffer.dc(), text.c_str(), static_cast<int>(text.size()), &size);
    return size.cx;
  }

  void DrawCaption(std::string text, int row, size_t keep, COLORREF color) {
    HDC dc = buffer.dc();
    if (TextWidth(text) > surfW - kTooWideMargin) text = text.substr(0, keep) + " ...";
    const double width = TextWidth(text);
    // Rounded to the nearest integer, halves to even.
    const int left = static_cast<int>(std::nearbyint((surfW + kCaptionArea) / 2.0 - width / 2.0));
    RECT r{left, row * kRow + kCaptionTop, surfW - 1, row * kRow + kRow};
    SelectScope f(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, color);
    DrawTextA(dc, text.c_str(), static_cast<int>(text.size()), &r, kCaptionFlags);
    if (row < 0 || row >= count) return;
    const std::string& mark = Slot(row).mark;
    if (mark.empty()) return;
    // Under the caption, dimmed unless the row is highlighted.
    const int markLeft = static_cast<int>(std::nearbyint((surfW + kCaptionArea) / 2.0 - TextWidth(mark) / 2.0));
    RECT m{markLeft, row * kRow + kMarkTop, surfW - 1, row * kRow + kRow};
    if (color != GetSysColor(COLOR_HIGHLIGHTTEXT)) SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
    DrawTextA(dc, mark.c_str(), static_cast<int>(mark.size()), &m, kCaptionFlags);
  }

  static HINSTANCE Instance() { return GetModuleHandleA(nullptr); }

  // Icons are taken from the file, drawn and destroyed at once. ExtractIconA answers an index of -1
  // with the icon count and a file that is no icon source with 1: neither is a handle to draw.
  void DrawExtracted(const std::string& path, int index, int y) {
    if (index == -1 || path.empty()) return;
    vx::QuietDriveErrors noDiskBox;
    HICON icon = ExtractIconA(Instance(), path.c_str(), static_cast<UINT>(index));
    if (reinterpret_cast<UINT_PTR>(icon) <= 1) return;
    DrawIcon(buffer.dc(), kIconLeft, y, icon);
    DestroyIcon(icon);
  }

  // Notes the extension of a row's path, as drawing the row does: a path without "." keeps the last
  // one. Answers whether the row is drawn as an animated pointer.
  bool NoteExtension(const std::string& path) {
    const size_t dot = path.find('.');
    if (dot != std::string::npos) lastExt = path.substr(dot + 1);
    return lastExt == "ani";
  }

  // A row drawn again in the normal colours is owed like any other. An empty row past the last item
  // has no icon to wait for and is cleared at once.
  void RedrawRowNormal(int row) {
    if (!buffer) return;
    const Item& item = Slot(row);
    const bool ani = NoteExtension(item.iconPath);
    if (owedHighlight.owed && owedHighlight.rect.top / kRow == row) owedHighlight = PendingHighlight{};
    if (row < count) {
      owed[static_cast<size_t>(row)] =
          Pending{true, true, item.iconPath, item.caption, ani ? 0 : item.iconIndex, kCutWhenRedrawn};
      return;
    }
    EnsureBuffer();
    Band(buffer.dc(), 0, row * kRow, surfW, row * kRow + kRow + 1, GetSysColor(COLOR_WINDOW));
  }

  // The highlight of the selected row waits for the row to be seen, like the row itself: at start
  // every tab's list selects its first row, and only one of them is on show.
  void DrawHighlight() {
    const Item& item = Selected();
    const bool ani = NoteExtension(item.iconPath);
    owedHighlight = PendingHighlight{true, sel, item.iconPath, item.caption, ani ? 0 : item.iconIndex, ani};
    highlightShown = true;
  }

  void SettleHighlight() {
    if (!owedHighlight.owed || !buffer) return;
    const PendingHighlight h = std::move(owedHighlight);
    owedHighlight = PendingHighlight{};
    EnsureBuffer();
    const int row = h.rect.top / kRow;
    // The row above owes a band whose last line is this row's first; the highlight must cover it.
    DrawOwed(row - 1, row);
    HDC dc = buffer.dc();
    Band(dc, h.rect.left, h.rect.top, h.rect.right, h.rect.bottom, GetSysColor(COLOR_HIGHLIGHT));
    DrawFocusRect(dc, &h.rect);
    const int y = row * kRow + kIconTop;
    if (h.cursor) {
      HCURSOR cursor =
          static_cast<HCURSOR>(LoadImageA(nullptr, h.path.c_str(), IMAGE_CURSOR, 0, 0, LR_LOADFROMFILE));
      if (cursor) {
        DrawIcon(dc, kIconLeft, y, cursor);
        DestroyCursor(cursor);
      }
    } else {
      DrawExtracted(h.path, h.index, y);
    }
    DrawCaption(h.caption, row, kCutWhenRedrawn, GetSysColor(COLOR_HIGHLIGHTTEXT));
  }

  // --- selection and scrolling ---------------------------------------------------------------------

  // A press at y of lstMain: every selection, by mouse, keys or code, comes through here.
  void PressAt(int y) {
    if (y < 0 || y >= surfH || !buffer) return;
    const int before = SelectedItem();
    RedrawRowNormal(SelectedRow());
    sel.left = 0;
    sel.top = y / kRow * kRow;
    sel.right = surfW - 1;
    sel.bottom = sel.top + kRow;
    DrawHighlight();
    Repaint();
    if (a11y && SelectedItem() != before) a11y->Announce(SelectedItem());
  }

  void SetScrollValue(int value) {
    if (value < 0) value = 0;
    if (value > scrollMax) value = scrollMax;
    scrollValue = value;
    if (scroll) {
      SCROLLINFO si{sizeof si, SIF_POS, 0, 0, 0, value, 0};
      SetScrollInfo(scroll, SB_CTL, &si, TRUE);
    }
    if (surface.hwnd())
      SetWindowPos(surface.hwnd(), nullptr, 0, -value, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  }

  void SetScrollMax(int max) {
    scrollMax = max;
    if (scroll) {
      // The thumb shows the visible share; the range is arranged so that the largest value is max.
      const int page = InnerHeight() > 0 ? InnerHeight() : 1;
      SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE | SIF_DISABLENOSCROLL, 0, max + page - 1,
                    static_cast<UINT>(page), 0, 0};
      SetScrollInfo(scroll, SB_CTL, &si, TRUE);
    }
    SetScrollValue(scrollValue);
  }

  void UpdateScrollMax() { SetScrollMax(std::abs(surfH - InnerHeight())); }

  void OnScroll(int code) {
    int value = scrollValue;
    switch (code) {
      case SB_LINEUP: value -= kRow; break;
      case SB_LINEDOWN: value += kRow; break;
      case SB_PAGEUP: value -= kPageStep; break;
      case SB_PAGEDOWN: value += kPageStep; break;
      case SB_TOP: value = 0; break;
      case SB_BOTTOM: value = scrollMax; break;
      case SB_THUMBTRACK:
      case SB_THUMBPOSITION: {
        SCROLLINFO si{sizeof si, SIF_TRACKPOS, 0, 0, 0, 0, 0};
        GetScrollInfo(scroll, SB_CTL, &si);
        value = si.nTrackPos;
        break;
      }
      default: return;
    }
    SetScrollValue(value);
  }

  // After a step down: scroll when the selected row ends below the visible part.
  void FollowDown(int step) {
    if (SelectedRow() * kRow + kRow > scrollValue + ContainerHeight())
      SetScrollValue(scrollValue + step <= scrollMax ? scrollValue + step : scrollMax);
  }
  void FollowUp(int step) {
    if (SelectedRow() * kRow < scrollValue) SetScrollValue(scrollValue - step >= 0 ? scrollValue - step : 0);
  }

  void OnKeyDown(int key) {
    const int top = SelectedRow() * kRow;
    switch (key) {
      case VK_DOWN: PressAt(top + kRow); FollowDown(kRow); break;
      case VK_UP: PressAt(top - kRow); FollowUp(kRow); break;
      case VK_PRIOR: PressAt(top - kPageStep); FollowUp(kPageStep); break;
      case VK_NEXT: PressAt(top + kPageStep); FollowDown(kPageStep); break;
      default: break;
    }
    if (owner.KeyDown) owner.KeyDown(key, ShiftState());
  }

  void OnButtonDown(UINT msg, int y) {
    SetFocus(surface.hwnd());
    if (msg == WM_LBUTTONDOWN) {
      pressed = true;
      dblClicked = false;
    }
    // Holding the pointer lets a drag past the visible rows go on scrolling.
    SetCapture(surface.hwnd());
    PressAt(y);
  }

  // The bounds are tested a whole row ahead while the step is small, so the list creeps along
  // while the pointer stays beyond the edge and then snaps to the end.
  void OnDrag(int y) {
    PressAt(y);
    const int top = SelectedRow() * kRow;
    if (top < scrollValue) SetScrollValue(scrollValue - kRow < 0 ? 0 : scrollValue - kDragStep);
    if (top + kRow > scrollValue + ContainerHeight())
      SetScrollValue(scrollValue + kRow > scrollMax ? scrollMax : scrollValue + kDragStep);
  }

  void OnButtonUp(UINT msg, WPARAM wp, int x, int y) {
    const bool wasPressed = pressed;
    const bool wasDouble = dblClicked;
    pressed = false;
    dblClicked = false;
    const bool anyHeld = (wp & (MK_LBUTTON | MK_RBUTTON | MK_MBUTTON)) != 0;
    if (!anyHeld && GetCapture() == surface.hwnd()) ReleaseCapture();
    int shift = 0;
    if (wp & MK_SHIFT) shift |= 1;
    if (wp & MK_CONTROL) shift |= 2;
    if (GetKeyState(VK_MENU) < 0) shift |= 4;
    const int button = msg == WM_LBUTTONUP ? 1 : msg == WM_RBUTTONUP ? 2 : 4;
    if (msg == WM_LBUTTONUP && wasPressed && !wasDouble && owner.Click) owner.Click();
    if (owner.MouseUp) owner.MouseUp(button, shift, x, y);
  }

  // --- what screen readers read ---------------------------------------------------------------------

  int ItemCount() const override { return count; }
  std::string ItemName(int item) const override { return Slot(item).caption; }
  std::string ItemDescription(int item) const override {
    const Item& i = Slot(item);
    return i.infoTip.empty() ? i.mark : i.infoTip;
  }
  RECT ItemRect(int item) const override { return RECT{0, item * kRow, surfW, item * kRow + kRow}; }
  int SelectedItem() const override { return highlightShown && SelectedRow() < count ? SelectedRow() : -1; }
  int ItemAt(POINT p) const override { return p.y >= 0 && p.y / kRow < count ? p.y / kRow : -1; }

  // --- layout and settings -------------------------------------------------------------------------

  void Layout() {
    if (!container.hwnd() || !surface.hwnd()) return;
    const int w = ContainerWidth();
    const int h = ContainerHeight();
    if (scroll) MoveWindow(scroll, w - scrollWidth - kBorder, 0, scrollWidth, h - kBorder, TRUE);
    const int newW = std::max(1, w - scrollWidth - kListOverlap);
    if (newW != surfW) SetSurfaceSize(newW, surfH);
    UpdateScrollMax();
  }

  void SetSurfaceSize(int w, int h) {
    const bool widthChanged = w != surfW;
    surfW = w;
    surfH = h;
    if (surface.hwnd())
      SetWindowPos(surface.hwnd(), nullptr, 0, -scrollValue, w, h, SWP_NOZORDER | SWP_NOACTIVATE);
    // The captions are centred on the width: a new width needs every row drawn again.
    if (widthChanged) {
      sel.right = surfW - 1;
      if (count > 0 || highlightShown) RedrawAll();
    }
    Repaint();
  }

  // Every row is owed a full redraw, drawn when it is next seen. The extension carried from row to
  // row is worked out now, in row order, as drawing them all at once would.
  void RedrawAll() {
    for (int r = 0; r < count; ++r) {
      const Item& item = items[static_cast<size_t>(r)];
      const size_t dot = item.iconPath.find('.');
      if (dot != std::string::npos) lastExt = item.iconPath.substr(dot + 1);
      owed[static_cast<size_t>(r)] = Pending{true, true, item.iconPath, item.caption,
                                             lastExt == "ani" ? 0 : item.iconIndex, kCutWhenRedrawn};
    }
    if (highlightShown) DrawHighlight();
  }

  // --- rows drawn when first seen ------------------------------------------------------------------
  // Extracting an icon is the dear part of a row, and most rows of most tabs are never scrolled to.
  // A row's drawing is therefore owed until it is painted, read, or drawn over; owed drawings touch
  // no pixel of another row except the band's first line below (window-coloured either way), so
  // settling them late in any order leaves the picture they would have left at once.

  void DrawOwed(int first, int last) {
    if (!buffer) return;
    EnsureBuffer();
    for (int r = std::max(first, 0); r <= std::min(last, count - 1); ++r) {
      Pending& p = owed[static_cast<size_t>(r)];
      if (!p.owed) continue;
      Pending todo = std::move(p);
      p = Pending{};
      const int top = r * kRow;
      if (todo.band) Band(buffer.dc(), 0, top, surfW, top + kRow + 1, GetSysColor(COLOR_WINDOW));
      DrawExtracted(todo.path, todo.index, top + kIconTop);
      DrawCaption(todo.caption, r, todo.keep, GetSysColor(COLOR_WINDOWTEXT));
    }
    const int highlightRow = owedHighlight.rect.top / kRow;
    if (owedHighlight.owed && highlightRow >= first && highlightRow <= last) SettleHighlight();
  }

  void DrawAllOwed() {
    DrawOwed(0, count - 1);
    SettleHighlight();
  }

  // Before reading a row: what is owed there, and to the rows whose bands meet it.
  void DrawOwedAround(int row) { DrawOwed(row - 1, row + 1); }

  // The rows in the list's frame, for WM_PAINT (hidden tabs get no WM_PAINT at all).
  void DrawSeenRows() {
    const int inner = InnerHeight();
    if (inner <= 0) return;
    DrawOwed(scrollValue / kRow - 1, (scrollValue + inner - 1) / kRow + 1);
  }

  int RowsOwed() const {
    int n = 0;
    for (int r = 0; r < count; ++r) n += owed[static_cast<size_t>(r)].owed;
    return n + owedHighlight.owed;
  }

  void ApplySystemSettings() {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, kMetricsKey, 0, KEY_READ, &key) == ERROR_SUCCESS) {
      DWORD type = 0, size = 0;
      if (RegQueryValueExA(key, "IconFont", nullptr, &type, nullptr, &size) == ERROR_SUCCESS && size > 0) {
        std::string bytes(size, '\0');
        if (RegQueryValueExA(key, "IconFont", nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()),
                             &size) == ERROR_SUCCESS) {
          bytes.resize(size);
          SetFontFace(FaceNameFromFontRecord(bytes));
        }
      }
      RegCloseKey(key);
    }
    scrollWidth = GetSystemMetrics(SM_CYHSCROLL);
    Layout();
  }

  // An empty name would leave no font at all: the current one stays.
  void SetFontFace(const std::string& face) {
    if (face.empty()) return;
    LOGFONTA lf = CaptionFont(face);
    FontHandle f(CreateFontIndirectA(&lf));
    if (!f) return;
    DrawAllOwed();  // owed rows keep the font they were asked for in
    font = std::move(f);
    fontName = face;
  }

  bool Create(HWND parent, int id, int x, int y, int w, int h) {
    if (!container.Create(kContainerClass, WS_EX_CLIENTEDGE | WS_EX_CONTROLPARENT, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, "", x, y,
                          w, h, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), CS_DBLCLKS,
                          reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1)))
      return false;
    fontName = IconTitleFace();
    LOGFONTA lf = CaptionFont(fontName);
    font.reset(CreateFontIndirectA(&lf));
    scroll = CreateWindowExA(0, "SCROLLBAR", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | SBS_VERT, 0, 0,
                             scrollWidth, std::max(0, h - kBorder), container.hwnd(), nullptr, Instance(),
                             nullptr);
    surfW = std::max(1, w - scrollWidth - kListOverlap);
    buffer.Resize(surfW, surfH, true);
    if (!surface.Create(kSurfaceClass, 0, WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_TABSTOP, "", 0, 0, surfW, surfH,
                        container.hwnd(), nullptr, CS_DBLCLKS, nullptr))
      return false;
    // The scroll bar stays above the one column of lstMain that runs under it.
    SetWindowPos(scroll, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    sel = RECT{0, 0, surfW - 1, kRow};
    a11y = std::make_unique<AccessibleList>(surface.hwnd(), *this);
    ApplySystemSettings();
    return true;
  }
};

ListBoxIcons::ListBoxIcons() : impl_(new Impl(*this)) {}
ListBoxIcons::~ListBoxIcons() { delete impl_; }

bool ListBoxIcons::Create(HWND parent, int id, int x, int y, int width, int height) {
  return impl_->Create(parent, id, x, y, width, height);
}

HWND ListBoxIcons::hwnd() const { return impl_->container.hwnd(); }
HWND ListBoxIcons::surface() const { return impl_->surface.hwnd(); }
HWND ListBoxIcons::scrollBar() const { return impl_->scroll; }

void ListBoxIcons::Move(int x, int y, int width, int height) {
  if (hwnd()) MoveWindow(hwnd(), x, y, width, height, TRUE);
}

void ListBoxIcons::AddItem(const std::string& caption, const std::string& iconPath, int16_t iconIndex,
                           const std::string& key) {
  Impl& m = *impl_;
  const int slot = m.count;
  Impl::Item& item = m.Slot(slot);
  if (m.count > 4) {
    if (m.filling) m.surfH = (m.count + 1) * kRow;
    else m.SetSurfaceSize(m.surfW, (m.count + 1) * kRow);
  }
  item.caption = caption;
  item.iconPath = iconPath;
  item.iconIndex = iconIndex;
  item.key = key;
  item.listIndex = std::to_string(slot);
  ++m.count;
  // Drawn when first seen. Cursor files get no special case here: a new row shows the file's icon.
  // A highlight waiting on this empty row was there first and is drawn under the new row.
  if (m.owedHighlight.owed && m.owedHighlight.rect.top / kRow == slot) m.SettleHighlight();
  if (m.buffer)
    m.owed[static_cast<size_t>(slot)] = Impl::Pending{true, false, iconPath, caption, iconIndex, kCutWhenAdded};
  if (m.filling) return;
  m.Repaint();
  m.UpdateScrollMax();
}

ListBoxIcons::Filling::Filling(ListBoxIcons& list) : list_(&list) { ++list.impl_->filling; }

ListBoxIcons::Filling::~Filling() {
  if (!list_) return;
  Impl& m = *list_->impl_;
  if (--m.filling > 0) return;
  m.SetSurfaceSize(m.surfW, m.surfH);
  m.UpdateScrollMax();
}

void ListBoxIcons::Change(const std::string& key, const std::string& iconPath, int16_t iconIndex,
                          const std::string& caption) {
  Impl& m = *impl_;
  std::string path = iconPath;
  int16_t index = iconIndex;
  if (!path.empty() && index == -1) {
    std::string location = iconPath;
    path = SplitIconLocation(location, index);
  }
  Impl::Item& item = m.Slot(m.Find(key));
  if (!caption.empty()) item.caption = caption;
  if (!path.empty()) item.iconPath = path;
  if (index != -1) item.iconIndex = index;
}

void ListBoxIcons::SetNote(const std::string& key, const std::string& mark, const std::string& tip) {
  Impl& m = *impl_;
  const int i = m.Find(key);
  if (i >= m.count) return;
  Impl::Item& item = m.Slot(i);
  item.mark = mark;
  item.infoTip = tip;
  if (!tip.empty()) m.EnsureTip();
}

std::string ListBoxIcons::ItemInfoTip(const std::string& key) const {
  const int i = impl_->Find(key);
  return i < impl_->count ? impl_->Slot(i).infoTip : std::string();
}

void ListBoxIcons::SelItemKey(const std::string& key) {
  const int i = impl_->Find(key);
  if (i < impl_->count) impl_->PressAt(i * kRow);
}

void ListBoxIcons::SelItemIndex(int16_t index) { impl_->PressAt(index * kRow); }

double ListBoxIcons::ListIndex() const { return impl_->SelectedRow(); }
std::string ListBoxIcons::Key(int index) const { return impl_->Slot(index).key; }
double ListBoxIcons::ListCount() const { return impl_->surfH / static_cast<double>(kRow); }
int ListBoxIcons::Count() const { return impl_->count; }

std::string ListBoxIcons::SeledKey() const { return impl_->Selected().key; }
std::string ListBoxIcons::SeledCaption() const { return impl_->Selected().caption; }
std::string ListBoxIcons::SeledInfoTip() const { return impl_->Selected().infoTip; }
std::string ListBoxIcons::SeledListIndex() const { return impl_->Selected().listIndex; }
std::string ListBoxIcons::SeledIconPath() const { return impl_->Selected().iconPath; }
int16_t ListBoxIcons::SeledIconIndex() const { return impl_->Selected().iconIndex; }
std::string ListBoxIcons::SeledFullIconPath() const {
  const auto& item = impl_->Selected();
  return item.iconPath + "," + std::to_string(item.iconIndex);
}

std::string ListBoxIcons::ItemFullPath(const std::string& key) const {
  // A key that no item holds has no location at all: the empty text, not a comma and an index.
  const int i = impl_->Find(key);
  if (i >= impl_->count) return "";
  const auto& item = impl_->Slot(i);
  return item.iconPath + "," + std::to_string(item.iconIndex);
}

std::string ListBoxIcons::ItemFullPathmouse(const std::string& key) const {
  const auto& item = impl_->Slot(impl_->Find(key));
  // The program's own pointers live in its executable; that path is nothing to show a person.
  if (vx::SameFile(item.iconPath, ModulePath())) return "";
  return item.iconPath;
}

std::string ListBoxIcons::ItemCaption(const std::string& key) const {
  return impl_->Slot(impl_->Find(key)).caption;
}

void ListBoxIcons::ItemRefresh() { impl_->PressAt(impl_->SelectedRow() * kRow); }

void ListBoxIcons::ListRefresh() {
  impl_->RedrawAll();
  impl_->Repaint();
}

void ListBoxIcons::SystemSettings() { impl_->ApplySystemSettings(); }

RECT ListBoxIcons::SelectionRect() const { return impl_->sel; }
std::string ListBoxIcons::FontName() const { return impl_->fontName; }
int ListBoxIcons::SurfaceWidth() const { return impl_->surfW; }
int ListBoxIcons::SurfaceHeight() const { return impl_->surfH; }
int ListBoxIcons::ScrollValue() const { return impl_->scrollValue; }
int ListBoxIcons::ScrollMax() const { return impl_->scrollMax; }

COLORREF ListBoxIcons::Pixel(int x, int y) const {
  impl_->EnsureBuffer();
  if (y >= 0) impl_->DrawOwedAround(y / kRow);  // read as it will be seen
  return impl_->buffer.Pixel(x, y);
}

int ListBoxIcons::CaptionWidth(const std::string& text) const { return impl_->TextWidth(text); }
int ListBoxIcons::RowsOwed() const { return impl_->RowsOwed(); }

}  // namespace ui
