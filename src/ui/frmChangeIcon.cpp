#include "ui/frmChangeIcon.h"

#include <shellapi.h>
#include <windowsx.h>

#include <algorithm>
#include <oleacc.h>

#include "ids_picker.h"
#include "system/Location.h"
#include "ui/seam.h"
#include "ui/win.h"

namespace ui {
namespace {

constexpr char kTitle[] = "Change Icon";
constexpr char kContainerClass[] = "VxIconContainer";
constexpr char kGridClass[] = "VxIconGrid";
constexpr int kCell = frmChangeIcon::kCell;
constexpr int kGridHeight = kCell * frmChangeIcon::kIconsPerColumn;
// Open-file filters, in the order the person sees them.
constexpr char kFilter[] =
    "Icon Files\0*.exe;*.dll;*.icl;*.ico\0Programs\0*.exe\0Libraries\0*.dll\0Icons\0*.ico\0"
    "All Files\0*.*\0";

HINSTANCE Instance() { return GetModuleHandleA(nullptr); }

// A directory search for the name itself: ExtractIconA alone would also find a bare name on the
// program search path, which the person could not find in any folder.
bool FileExists(const std::string& name) {
  WIN32_FIND_DATAA found;
  HANDLE h = FindFirstFileA(name.c_str(), &found);
  if (h == INVALID_HANDLE_VALUE) return false;
  FindClose(h);
  return true;
}

void RegisterClasses() {
  RegisterWindowClass(kContainerClass, DefWindowProcA, 0, reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1));
  RegisterWindowClass(kGridClass, DefWindowProcA, CS_DBLCLKS, nullptr);  // procedure replaced per window
}

RECT ChildRect(HWND dialog, HWND child) {
  RECT r;
  GetWindowRect(child, &r);
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&r), 2);
  return r;
}

void Place(HWND h, int x, int y, int w, int height) {
  SetWindowPos(h, nullptr, x, y, w, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

bool frmChangeIcon::ChooseIcon(HWND owner) {
  RegisterClasses();
  return RunModal(IDD_CHANGEICON, owner) == IDOK;
}

int frmChangeIcon::SelectedIndex() const {
  return sel_.left / kCell * kIconsPerColumn + sel_.top / kCell;
}

int frmChangeIcon::ScrollValue() const { return scroll_ ? GetScrollPos(scroll_, SB_CTL) : 0; }

int frmChangeIcon::ScrollLargeChange() const {
  SCROLLINFO si{};
  si.cbSize = sizeof si;
  si.fMask = SIF_PAGE;
  if (!scroll_ || !GetScrollInfo(scroll_, SB_CTL, &si)) return 0;
  return static_cast<int>(si.nPage);
}

int frmChangeIcon::InnerWidth() const {
  RECT r{};
  if (container_) GetClientRect(container_, &r);
  return r.right;
}

// --- window procedures --------------------------------------------------------------------------

INT_PTR frmChangeIcon::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_INITDIALOG:
      Form_Load();
      return FALSE;  // the focus is already where it belongs
    case WM_COMMAND:
      switch (LOWORD(wp)) {
        case IDOK:
          // Enter reaches here even while OK is disabled; the grid is then empty.
          if (IsWindowEnabled(cmdOK_)) cmdOK_Click();
          return TRUE;
        case IDCANCEL:  // Cancel, Escape and the close box
          cmdCancel_Click();
          return TRUE;
        case IDC_CI_BROWSE:
          if (HIWORD(wp) == BN_CLICKED) cmdBrowse_Click();
          return TRUE;
        case IDC_CI_FILENAME:
          if (HIWORD(wp) == EN_SETFOCUS) SendMessageA(txtFilename_, EM_SETSEL, 0, -1);
          return TRUE;
      }
      return FALSE;
    case WM_HSCROLL:
      if (reinterpret_cast<HWND>(lp) == scroll_) {
        Scroll_Change(LOWORD(wp));
        return TRUE;
      }
      return FALSE;
    case WM_DESTROY:
      if (GetCapture() == lstMain_) ReleaseCapture();
      SetWindowLongPtrA(txtFilename_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(editProc_));
      a11y_.reset();
      txtFilename_ = cmdOK_ = container_ = lstMain_ = scroll_ = nullptr;
      return FALSE;
  }
  return FALSE;
}

LRESULT CALLBACK frmChangeIcon::GridProc(HWND h, UINT msg, WPARAM wp, LPARAM lp) noexcept {
  try {
    auto* self = reinterpret_cast<frmChangeIcon*>(GetWindowLongPtrA(h, GWLP_USERDATA));
    if (!self || self->lstMain_ != h) return DefWindowProcA(h, msg, wp, lp);
    return self->HandleGrid(msg, wp, lp);
  } catch (...) {
    return DefWindowProcA(h, msg, wp, lp);
  }
}

LRESULT frmChangeIcon::HandleGrid(UINT msg, WPARAM wp, LPARAM lp) {
  const int x = GET_X_LPARAM(lp), y = GET_Y_LPARAM(lp);
  switch (msg) {
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
    case WM_PRINTCLIENT:
      return buffer_.Paint(lstMain_, msg, wp);
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
      SetFocus(lstMain_);
      lstMain_MouseDown(x, y);
      if (msg == WM_LBUTTONDOWN) SetCapture(lstMain_);  // dragging past the frame keeps selecting
      return 0;
    case WM_LBUTTONUP:
      if (GetCapture() == lstMain_) ReleaseCapture();
      return 0;
    case WM_MOUSEMOVE:
      if (wp & MK_LBUTTON) lstMain_MouseMove(x, y);
      return 0;
    case WM_LBUTTONDBLCLK:
      lstMain_MouseDown(x, y);
      lstMain_DblClick();
      return 0;
    case WM_KEYDOWN:
      lstMain_KeyDown(static_cast<int>(wp));
      return 0;
    case WM_GETOBJECT:
      if (a11y_) {
        if (const LRESULT answer = a11y_->Answer(wp, lp)) return answer;
      }
      break;
    case WM_SETFOCUS:
      if (a11y_) a11y_->AnnounceFocus();
      break;
    case WM_MOUSEWHEEL:  // the wheel turns the grid by columns: down or towards you is to the right
      SetScrollValue(ScrollValue() - GET_WHEEL_DELTA_WPARAM(wp) / WHEEL_DELTA * kCell);
      return 0;
  }
  return DefWindowProcA(lstMain_, msg, wp, lp);
}

// The file box keeps its own procedure; ours goes in front of it with plain window subclassing,
// which every Windows version has (the common-controls subclass helpers need a newer comctl32).
LRESULT CALLBACK frmChangeIcon::FilenameProc(HWND h, UINT msg, WPARAM wp, LPARAM lp) noexcept {
  auto* self = reinterpret_cast<frmChangeIcon*>(GetWindowLongPtrA(h, GWLP_USERDATA));
  if (!self || !self->editProc_) return DefWindowProcA(h, msg, wp, lp);
  try {
    switch (msg) {
      case WM_GETDLGCODE:
        // Enter belongs to the box (it shows the typed file), not to the default button.
        if (wp == VK_RETURN) return CallWindowProcA(self->editProc_, h, msg, wp, lp) | DLGC_WANTALLKEYS;
        break;
      case WM_KEYDOWN:
        if (wp == VK_RETURN) {
          self->txtFilename_Enter();
          return 0;
        }
        break;
      case WM_CHAR:
        if (wp == '\r') return 0;  // no beep
        break;
    }
    return CallWindowProcA(self->editProc_, h, msg, wp, lp);
  } catch (...) {
    return 0;
  }
}

// --- events -------------------------------------------------------------------------------------

void frmChangeIcon::Form_Load() {
  txtFilename_ = Item(IDC_CI_FILENAME);
  cmdOK_ = Item(IDOK);
  container_ = Item(IDC_CI_CONTAINER);
  scroll_ = Item(IDC_CI_SCROLL);
  SetWindowLongPtrA(txtFilename_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  editProc_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrA(txtFilename_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&FilenameProc)));
  lstMain_ = CreateWindowExA(0, kGridClass, "", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, 0, kGridHeight,
                             container_, reinterpret_cast<HMENU>(IDC_CI_LIST), Instance(), nullptr);
  SetWindowLongPtrA(lstMain_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetWindowLongPtrA(lstMain_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&GridProc));
  a11y_ = std::make_unique<AccessibleList>(lstMain_, static_cast<const AccessibleItems&>(*this));
  Layout();
  gridWidth_ = 0;
  sel_ = RECT{0, 0, kCell, kCell};
  SetScrollRange(0, 0, false);

  SetText(txtFilename_, Filename);
  DisplayIcons();
  const int column = IconIndex / kIconsPerColumn, row = IconIndex % kIconsPerColumn;
  Press(column * kCell, row * kCell);
  const int right = (column + 1) * kCell;
  if (right > ScrollValue() + InnerWidth()) SetScrollValue(std::min(scrollMax_, right - InnerWidth()));

  // A one-icon file has already sent the focus to OK.
  HWND focus = txtFilename_;
  if (IsWindowEnabled(lstMain_)) focus = iconCount_ == 1 ? cmdOK_ : lstMain_;
  MoveFocusTo(focus);
}

// Sizes the frame to show exactly eight columns whatever the dialog font, and arranges the rest
// around it: the template gives the margins, the text heights and the button sizes.
void frmChangeIcon::Layout() {
  RECT unit{4, 4, 7, 7};
  MapDialogRect(hwnd(), &unit);
  const int gap = unit.left, marginX = unit.right, marginY = unit.bottom;

  RECT frame{0, 0, kVisibleColumns * kCell, kGridHeight};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrA(container_, GWL_STYLE)), FALSE,
                     static_cast<DWORD>(GetWindowLongPtrA(container_, GWL_EXSTYLE)));
  const int frameW = frame.right - frame.left, frameH = frame.bottom - frame.top;
  const RECT c = ChildRect(hwnd(), container_);
  const int left = c.left, right = left + frameW;
  Place(container_, left, c.top, frameW, frameH);
  const int scrollH = GetSystemMetrics(SM_CYHSCROLL);
  Place(scroll_, left, c.top + frameH, frameW, scrollH);

  HWND browse = Item(IDC_CI_BROWSE);
  const RECT b = ChildRect(hwnd(), browse);
  const int browseW = b.right - b.left;
  Place(browse, right - browseW, b.top, browseW, b.bottom - b.top);
  const RECT e = ChildRect(hwnd(), txtFilename_);
  Place(txtFilename_, e.left, e.top, right - browseW - gap - e.left, e.bottom - e.top);
  for (int id : {IDC_CI_FILELABEL, IDC_CI_ICONLABEL}) {
    HWND label = Item(id);
    const RECT l = ChildRect(hwnd(), label);
    Place(label, l.left, l.top, right - l.left, l.bottom - l.top);
  }

  HWND cancel = Item(IDCANCEL);
  const RECT k = ChildRect(hwnd(), cancel);
  const int buttonW = k.right - k.left, buttonH = k.bottom - k.top;
  const int buttonTop = c.top + frameH + scrollH + marginY;
  Place(cancel, right - buttonW, buttonTop, buttonW, buttonH);
  Place(cmdOK_, right - 2 * buttonW - gap, buttonTop, buttonW, buttonH);

  // Centred over the owner, kept on the work area.
  SizeAndCentre(right + marginX, buttonTop + buttonH + marginY, GetWindow(hwnd(), GW_OWNER));
}

void frmChangeIcon::DisplayIcons() {
  if (!hwnd()) return;
  EnableWindow(lstMain_, FALSE);
  ClearGrid(gridWidth_);

  displayed_ = GetText(txtFilename_);
  vx::QuietDriveErrors noDiskBox;
  iconCount_ = static_cast<int16_t>(
      reinterpret_cast<INT_PTR>(ExtractIconA(Instance(), displayed_.c_str(), static_cast<UINT>(-1))));
  if (!FileExists(displayed_)) {
    ShowFailure("File not found \"" + displayed_ + "\"");
    return;
  }
  if (iconCount_ <= 0) {
    ShowFailure("No Icons found in \"" + displayed_ + "\"");
    return;
  }

  const int columns = iconCount_ / kIconsPerColumn + (iconCount_ % kIconsPerColumn ? 1 : 0);
  ClearGrid(columns * kCell);
  columnDrawn_.assign(static_cast<size_t>(columns), false);
  const int inner = InnerWidth();
  if (iconCount_ <= kVisibleColumns * kIconsPerColumn) {
    SetScrollRange(0, 0, false);
  } else {
    SetScrollRange(gridWidth_ - inner, inner, true);
  }

  if (iconCount_ == 1) {
    Press(0, 0);
    MoveFocusTo(cmdOK_);
  }

  DrawColumnsInView();
  EnableWindow(lstMain_, TRUE);
  InvalidateRect(lstMain_, nullptr, FALSE);
}

// Each icon of a column in the order the grid fills (top to bottom), a selected cell with its
// highlight, exactly as if every column had been drawn when the file was opened.
void frmChangeIcon::DrawColumnsInView() {
  const int columns = static_cast<int>(columnDrawn_.size());
  const int value = ScrollValue();
  const int first = value / kCell, last = std::min(columns - 1, (value + InnerWidth() - 1) / kCell);
  for (int column = std::max(0, first); column <= last; ++column) {
    if (columnDrawn_[static_cast<size_t>(column)]) continue;
    columnDrawn_[static_cast<size_t>(column)] = true;
    for (int row = 0; row < kIconsPerColumn && column * kIconsPerColumn + row < iconCount_; ++row) {
      const RECT cell{column * kCell, row * kCell, (column + 1) * kCell, (row + 1) * kCell};
      DrawCell(cell, highlightDrawn_ && EqualRect(&cell, &sel_));
    }
  }
}

void frmChangeIcon::ShowFailure(const std::string& text) {
  GetSeam().ShowMessage(hwnd(), text, kTitle, MB_OK | MB_ICONEXCLAMATION);
  SetScrollRange(0, 0, false);
  if (GetFocus() == cmdOK_) MoveFocusTo(txtFilename_);
  EnableWindow(cmdOK_, FALSE);
}

void frmChangeIcon::cmdBrowse_Click() {
  FileDialog dialog;
  dialog.title = kTitle;
  dialog.filter.assign(kFilter, sizeof kFilter - 1);
  const std::string current = GetText(txtFilename_);
  if (FileExists(current)) dialog.initialFile = current;  // a broken name would stop the dialog opening
  if (!GetSeam().ShowFileDialog(hwnd(), dialog)) return;
  SetText(txtFilename_, dialog.initialFile);
  SetScrollValue(0);
  EnableWindow(cmdOK_, TRUE);
  DisplayIcons();
}

void frmChangeIcon::cmdOK_Click() {
  Filename = GetText(txtFilename_);
  // An empty cell of the last column keeps the old index.
  const int index = SelectedIndex();
  if (index < iconCount_) IconIndex = static_cast<int16_t>(index);
  EndDialog(hwnd(), IDOK);
}

void frmChangeIcon::cmdCancel_Click() { EndDialog(hwnd(), IDCANCEL); }

void frmChangeIcon::txtFilename_Enter() {
  SetScrollValue(0);
  EnableWindow(cmdOK_, TRUE);
  DisplayIcons();
}

void frmChangeIcon::lstMain_MouseDown(int x, int y) { Press(x, y); }

void frmChangeIcon::lstMain_MouseMove(int x, int y) {
  Press(x, y);
  FollowSelection();
}

void frmChangeIcon::lstMain_KeyDown(int keyCode) {
  int dx = 0, dy = 0;
  switch (keyCode) {
    case VK_LEFT: dx = -kCell; break;
    case VK_RIGHT: dx = kCell; break;
    case VK_UP: dy = -kCell; break;
    case VK_DOWN: dy = kCell; break;
    default: return;
  }
  EnableWindow(cmdOK_, TRUE);
  Press(sel_.left + dx, sel_.top + dy);
  FollowSelection();
}

void frmChangeIcon::lstMain_DblClick() {
  if (IsWindowEnabled(cmdOK_)) cmdOK_Click();
}

void frmChangeIcon::Scroll_Change(int code) {
  int value = ScrollValue();
  switch (code) {
    case SB_LINELEFT: value -= kCell; break;
    case SB_LINERIGHT: value += kCell; break;
    case SB_PAGELEFT: value -= InnerWidth(); break;
    case SB_PAGERIGHT: value += InnerWidth(); break;
    case SB_LEFT: value = 0; break;
    case SB_RIGHT: value = scrollMax_; break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: {
      SCROLLINFO si{};
      si.cbSize = sizeof si;
      si.fMask = SIF_TRACKPOS;
      GetScrollInfo(scroll_, SB_CTL, &si);
      value = si.nTrackPos;
      break;
    }
    default: return;
  }
  SetScrollValue(value);
}

// --- drawing and scrolling ----------------------------------------------------------------------

void frmChangeIcon::Press(int x, int y) {
  if (x < 0 || y < 0 || x >= gridWidth_ || y >= kGridHeight) return;
  const int before = SelectedItem();
  DrawCell(sel_, false);
  const int left = x / kCell * kCell, top = y / kCell * kCell;
  sel_ = RECT{left, top, left + kCell, top + kCell};
  DrawCell(sel_, true);
  highlightDrawn_ = true;
  if (a11y_ && SelectedItem() != before) a11y_->Announce(SelectedItem());
}

std::string frmChangeIcon::ItemName(int item) const { return "Icon " + std::to_string(item + 1); }

RECT frmChangeIcon::ItemRect(int item) const {
  const int left = item / kIconsPerColumn * kCell, top = item % kIconsPerColumn * kCell;
  return RECT{left, top, left + kCell, top + kCell};
}

int frmChangeIcon::SelectedItem() const {
  const int index = SelectedIndex();
  return highlightDrawn_ && index < iconCount_ ? index : -1;
}

int frmChangeIcon::ItemAt(POINT p) const {
  if (p.x < 0 || p.y < 0 || p.x >= gridWidth_ || p.y >= kGridHeight) return -1;
  const int item = p.x / kCell * kIconsPerColumn + p.y / kCell;
  return item < iconCount_ ? item : -1;
}

// Up and down stay in the column; left and right keep the row.
int frmChangeIcon::ItemToward(int item, LONG navDir) const {
  int next = -1;
  switch (navDir) {
    case NAVDIR_UP: next = item % kIconsPerColumn > 0 ? item - 1 : -1; break;
    case NAVDIR_DOWN: next = item % kIconsPerColumn < kIconsPerColumn - 1 ? item + 1 : -1; break;
    case NAVDIR_LEFT: next = item - kIconsPerColumn; break;
    case NAVDIR_RIGHT: next = item + kIconsPerColumn; break;
    default: return AccessibleItems::ItemToward(item, navDir);
  }
  return next >= 0 && next < iconCount_ ? next : -1;
}

void frmChangeIcon::DrawCell(const RECT& cell, bool selected) {
  if (!buffer_) return;
  FillRect(buffer_.dc(), &cell, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
  if (selected) DrawFocusRect(buffer_.dc(), &cell);
  const int index = cell.left / kCell * kIconsPerColumn + cell.top / kCell;
  if (index < iconCount_) DrawIconAt(index, cell.left + kIconOffset, cell.top + kIconOffset);
  InvalidateRect(lstMain_, &cell, FALSE);
}

void frmChangeIcon::DrawIconAt(int index, int x, int y) {
  // Extracted, drawn and destroyed at once: no icon handle outlives the drawing.
  vx::QuietDriveErrors noDiskBox;
  HICON icon = ExtractIconA(Instance(), displayed_.c_str(), static_cast<UINT>(index));
  if (!icon || icon == reinterpret_cast<HICON>(1)) return;
  if (buffer_) DrawIcon(buffer_.dc(), x, y, icon);
  DestroyIcon(icon);
}

void frmChangeIcon::ClearGrid(int width) {
  columnDrawn_.clear();  // nothing to draw until the new file's grid is laid out
  highlightDrawn_ = false;
  buffer_.Resize(width, kGridHeight, false);
  gridWidth_ = width;
  SetWindowPos(lstMain_, nullptr, -ScrollValue(), 0, width, kGridHeight, SWP_NOZORDER | SWP_NOACTIVATE);
  InvalidateRect(lstMain_, nullptr, FALSE);
}

void frmChangeIcon::SetScrollRange(int maximum, int largeChange, bool enabled) {
  scrollMax_ = std::max(0, maximum);
  SCROLLINFO si{};
  si.cbSize = sizeof si;
  si.fMask = SIF_RANGE | SIF_PAGE;
  // The thumb covers one large change, so the highest position is exactly the maximum.
  si.nMin = 0;
  si.nMax = scrollMax_ > 0 ? scrollMax_ + largeChange - 1 : 0;
  si.nPage = scrollMax_ > 0 ? static_cast<UINT>(largeChange) : 0;
  SetScrollInfo(scroll_, SB_CTL, &si, TRUE);
  EnableWindow(scroll_, enabled);
  EnableScrollBar(scroll_, SB_CTL, enabled ? ESB_ENABLE_BOTH : ESB_DISABLE_BOTH);
  SetScrollValue(ScrollValue());
}

void frmChangeIcon::SetScrollValue(int value) {
  value = std::clamp(value, 0, scrollMax_);
  SCROLLINFO si{};
  si.cbSize = sizeof si;
  si.fMask = SIF_POS;
  si.nPos = value;
  SetScrollInfo(scroll_, SB_CTL, &si, TRUE);
  SetWindowPos(lstMain_, nullptr, -value, 0, gridWidth_, kGridHeight, SWP_NOZORDER | SWP_NOACTIVATE);
  DrawColumnsInView();
}

void frmChangeIcon::FollowSelection() {
  const int value = ScrollValue();
  if (sel_.left < value) {
    SetScrollValue(std::max(0, value - kCell));
  } else if (sel_.right > value + InnerWidth()) {
    SetScrollValue(std::min(scrollMax_, value + kCell));
  }
}

// --- the seam's picker ----------------------------------------------------------------------------

bool RealSeam::ChooseIcon(HWND owner, std::string& file, int16_t& index) {
  frmChangeIcon form;
  form.Filename = file;
  form.IconIndex = index;
  if (!form.ChooseIcon(owner)) return false;
  file = form.Filename;
  index = form.IconIndex;
  return true;
}

}  // namespace ui
