#include "ui/SettingsPage.h"

#include <algorithm>

#include "registry/LaterApi.h"
#include "resource.h"

namespace ui {
namespace {

constexpr const char* kPageClass = "VexillorSettingsPage";
constexpr UINT_PTR kTextSubclass = 1, kTreeSubclass = 2;

HWND Child(const char* cls, DWORD exStyle, DWORD style, HWND parent, int id, HFONT font, const char* text = "") {
  HWND h = CreateWindowExA(exStyle, cls, text, WS_CHILD | style, 0, 0, 0, 0, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr), nullptr);
  if (h && font) SendMessageA(h, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  return h;
}

}  // namespace

SettingsPage::SettingsPage() = default;

SettingsPage::~SettingsPage() {
  if (text_ && IsWindow(text_)) later::RemoveWindowSubclass(text_, &SettingsPage::TextProc, kTextSubclass);
  if (tree_ && IsWindow(tree_)) later::RemoveWindowSubclass(tree_, &SettingsPage::TreeProc, kTreeSubclass);
  Destroy();
}

bool SettingsPage::Create(HWND parent, int id, HFONT font) {
  if (!Window::Create(kPageClass, WS_EX_CONTROLPARENT, WS_CHILD, "", 0, 0, 0, 0, parent,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id))))
    return false;
  tree_ = Child(WC_TREEVIEWA, WS_EX_CLIENTEDGE,
                WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                hwnd(), IDC_SETTINGS_TREE, font);
  frame_ = Child("BUTTON", 0, BS_GROUPBOX, hwnd(), IDC_SETTINGS_FRAME, font);
  text_ = Child("EDIT", WS_EX_CLIENTEDGE, WS_TABSTOP | ES_AUTOHSCROLL, hwnd(), IDC_SETTINGS_TEXT, font);
  scroll_ = Child("SCROLLBAR", 0, WS_TABSTOP | SBS_VERT, hwnd(), IDC_SETTINGS_SCROLL, font);
  unit_ = Child("STATIC", 0, SS_LEFT, hwnd(), IDC_SETTINGS_UNIT, font);
  if (!tree_ || !frame_ || !text_ || !scroll_ || !unit_) return false;
  later::SetWindowSubclass(text_, &SettingsPage::TextProc, kTextSubclass, reinterpret_cast<DWORD_PTR>(this));
  SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE | SIF_POS, 0, kScrollMax, 0, kScrollMax, 0};
  SetScrollInfo(scroll_, SB_CTL, &si, FALSE);
  images_.reset(ImageList_LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDB_TREE), 16, 0, ART_MASK_COLOUR,
                                     IMAGE_BITMAP, LR_CREATEDIBSECTION));
  TreeView_SetImageList(tree_, images_.get(), TVSIL_NORMAL);
  return true;
}

void SettingsPage::Move(int x, int y, int width, int height) {
  MoveWindow(hwnd(), x, y, width, height, TRUE);
  width_ = width;
  LayOut();
}

void SettingsPage::LayOut() {
  const int tpp = TwipsPerPixelY();
  const int treeHeight = (editor_ ? kTreeWithEditorTwips : kTreeTwips) / tpp;
  MoveWindow(tree_, 0, 0, width_, treeHeight, TRUE);
  const int top = kTreeWithEditorTwips / tpp + 4;
  const int height = (kTreeTwips - kTreeWithEditorTwips) / tpp - 4;
  MoveWindow(frame_, 0, top, width_, height, TRUE);
  MoveWindow(text_, 12, top + 18, 72, 22, TRUE);
  MoveWindow(scroll_, 85, top + 17, 17, 24, TRUE);
  MoveWindow(unit_, 110, top + 21, std::max(0, width_ - 120), 18, TRUE);
}

// --- nodes ---------------------------------------------------------------------------------------

HTREEITEM SettingsPage::AddNode(HTREEITEM parent, const std::string& text, int image, LPARAM data) {
  TVINSERTSTRUCTA ins{};
  ins.hParent = parent ? parent : TVI_ROOT;
  ins.hInsertAfter = TVI_LAST;
  ins.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
  ins.item.pszText = const_cast<char*>(text.c_str());
  ins.item.iImage = ins.item.iSelectedImage = image - 1;
  ins.item.lParam = data;
  return reinterpret_cast<HTREEITEM>(SendMessageA(tree_, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&ins)));
}

void SettingsPage::SetImage(HTREEITEM item, int image) {
  TVITEMA it{};
  it.mask = TVIF_HANDLE | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
  it.hItem = item;
  it.iImage = it.iSelectedImage = image - 1;
  SendMessageA(tree_, TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&it));
}

int SettingsPage::ImageOf(HTREEITEM item) const {
  TVITEMA it{};
  it.mask = TVIF_HANDLE | TVIF_IMAGE;
  it.hItem = item;
  if (!SendMessageA(tree_, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&it))) return 0;
  return it.iImage + 1;
}

LPARAM SettingsPage::DataOf(HTREEITEM item) const {
  TVITEMA it{};
  it.mask = TVIF_HANDLE | TVIF_PARAM;
  it.hItem = item;
  if (!item || !SendMessageA(tree_, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&it))) return -1;
  return it.lParam;
}

HTREEITEM SettingsPage::Selected() const { return TreeView_GetSelection(tree_); }

void SettingsPage::Select(HTREEITEM item) {
  TreeView_EnsureVisible(tree_, item);
  TreeView_SelectItem(tree_, item);
}

bool SettingsPage::Expanded(HTREEITEM item) const {
  return (TreeView_GetItemState(tree_, item, TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
}

bool SettingsPage::HasChildren(HTREEITEM item) const { return TreeView_GetChild(tree_, item) != nullptr; }

void SettingsPage::Expand(HTREEITEM item, bool expand) {
  TreeView_Expand(tree_, item, expand ? TVE_EXPAND : TVE_COLLAPSE);
  // An expansion asked for by a program sends no notification: the picture follows here.
  ShowExpansion(item);
}

void SettingsPage::ShowExpansion(HTREEITEM item) {
  // A group shows its open picture while expanded.
  const int image = ImageOf(item);
  constexpr int closed = TREEI_GROUP_CLOSED + 1, open = TREEI_GROUP_OPEN + 1;
  if (image == closed || image == open) SetImage(item, Expanded(item) ? open : closed);
}

void SettingsPage::ExpandAll(bool expand) {
  // Depth first, children before their parent, so that collapsing leaves every level collapsed.
  std::function<void(HTREEITEM)> walk = [&](HTREEITEM item) {
    for (; item; item = TreeView_GetNextSibling(tree_, item)) {
      if (HTREEITEM child = TreeView_GetChild(tree_, item)) {
        if (expand) Expand(item, true);
        walk(child);
        if (!expand) Expand(item, false);
      }
    }
  };
  walk(TreeView_GetRoot(tree_));
  if (HTREEITEM sel = Selected()) TreeView_EnsureVisible(tree_, sel);
}

void SettingsPage::Filled() {
  SetWindowLongPtrA(tree_, GWL_STYLE, GetWindowLongPtrA(tree_, GWL_STYLE) | TVS_TRACKSELECT);
  // Only now: a subclassed tree pays a property lookup for every message, each insert of the fill too.
  later::SetWindowSubclass(tree_, &SettingsPage::TreeProc, kTreeSubclass, reinterpret_cast<DWORD_PTR>(this));
}

// --- numeric editor --------------------------------------------------------------------------------

void SettingsPage::ShowEditor(bool show, const std::string& caption) {
  editor_ = show;
  if (show && GetText(frame_) != caption) {
    ui::SetText(frame_, caption);
    Repaint(frame_);
  }
  LayOut();
  for (HWND h : {frame_, text_, scroll_, unit_}) ShowWindow(h, show ? SW_SHOW : SW_HIDE);
}

bool SettingsPage::EditorShown() const { return editor_; }

void SettingsPage::SetUnit(const std::string& unit) {
  if (GetText(unit_) == unit) return;
  ui::SetText(unit_, unit);
  Repaint(unit_);
}

// A see-through control shows its new text only once the page behind it is painted again.
void SettingsPage::Repaint(HWND child) {
  RECT r;
  GetWindowRect(child, &r);
  MapWindowPoints(nullptr, hwnd(), reinterpret_cast<POINT*>(&r), 2);
  RedrawWindow(hwnd(), &r, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void SettingsPage::SetBackdrop(HWND backdrop) { backdrop_ = backdrop; }

void SettingsPage::SetScrollValue(int value) {
  value_ = std::clamp(value, 0, kScrollMax);
  // The bar runs top to bottom: its position is counted from the largest value, so the upper arrow
  // adds and the lower one takes away, as a spinner does.
  SetScrollPos(scroll_, SB_CTL, kScrollMax - value_, TRUE);
  if (ScrollChange) ScrollChange();
}

std::string SettingsPage::Text() const { return GetText(text_); }

void SettingsPage::SetText(const std::string& text) {
  ui::SetText(text_, text);
  SendMessageA(text_, EM_SETSEL, 0, -1);
}

void SettingsPage::UndoText() { SendMessageA(text_, WM_UNDO, 0, 0); }

void SettingsPage::FocusText() { SetFocus(text_); }

void SettingsPage::OnScroll(int code) {
  int v = value_;
  switch (code) {
    case SB_LINEUP: v += kSmallStep; break;
    case SB_LINEDOWN: v -= kSmallStep; break;
    case SB_PAGEUP: v += kLargeStep; break;
    case SB_PAGEDOWN: v -= kLargeStep; break;
    case SB_TOP: v = kScrollMax; break;
    case SB_BOTTOM: v = 0; break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: {
      SCROLLINFO si{sizeof si, SIF_TRACKPOS, 0, 0, 0, 0, 0};
      GetScrollInfo(scroll_, SB_CTL, &si);
      v = kScrollMax - si.nTrackPos;
      break;
    }
    default: return;
  }
  v = std::clamp(v, 0, kScrollMax);
  if (v != value_) SetScrollValue(v);
}

LRESULT CALLBACK SettingsPage::TextProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR, DWORD_PTR self) noexcept {
  LRESULT result = 0;
  Guarded([&] {
    auto* page = reinterpret_cast<SettingsPage*>(self);
    result = later::DefSubclassProc(hwnd, msg, wp, lp);
    if (msg == WM_KEYUP && page->TextKeyUp) page->TextKeyUp();
    if (msg == WM_SETFOCUS) SendMessageA(hwnd, EM_SETSEL, 0, -1);
  });
  return result;
}

// Shift+F10 opens the right-click menu as the menu key does (not every system turns it into a
// WM_CONTEXTMENU).
LRESULT CALLBACK SettingsPage::TreeProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR, DWORD_PTR self) noexcept {
  LRESULT result = 0;
  Guarded([&] {
    if ((msg == WM_SYSKEYDOWN || msg == WM_KEYDOWN) && wp == VK_F10 && (GetKeyState(VK_SHIFT) & 0x8000)) {
      reinterpret_cast<SettingsPage*>(self)->MenuAtSelection();
      return;
    }
    result = later::DefSubclassProc(hwnd, msg, wp, lp);
  });
  return result;
}

void SettingsPage::MenuAtSelection() {
  HTREEITEM sel = Selected();
  RECT r{};
  if (!sel || !TreeView_GetItemRect(tree_, sel, &r, TRUE)) return;
  POINT at{r.left + 8, r.bottom};
  ClientToScreen(tree_, &at);
  if (ContextMenu) ContextMenu(at);
}

// --- menu ------------------------------------------------------------------------------------------

HMENU SettingsPage::BuildMenu(const std::string& stateCaption, bool stateEnabled) const {
  HMENU menu = CreatePopupMenu();
  AppendMenuA(menu, MF_STRING, IDM_TREE_MENU + kWhatsThis, "&What's This?");
  AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
  AppendMenuA(menu, MF_STRING | (stateEnabled ? 0u : MF_GRAYED), IDM_TREE_MENU + kStateItem, stateCaption.c_str());
  AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
  AppendMenuA(menu, MF_STRING, IDM_TREE_MENU + kExpandAll, "Expand &All");
  AppendMenuA(menu, MF_STRING, IDM_TREE_MENU + kCollapseAll, "&Collapse All");
  return menu;
}

int SettingsPage::ShowMenu(POINT screen, const std::string& stateCaption, bool stateEnabled) {
  HMENU menu = BuildMenu(stateCaption, stateEnabled);
  const int id = TrackPopupMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON | TPM_LEFTALIGN | TPM_TOPALIGN, screen.x,
                                screen.y, 0, hwnd(), nullptr);
  DestroyMenu(menu);
  return id >= IDM_TREE_MENU && id <= IDM_TREE_MENU + kCollapseAll ? id - IDM_TREE_MENU : -1;
}

// --- messages ----------------------------------------------------------------------------------------

LRESULT SettingsPage::OnNotify(const NMHDR* hdr) {
  switch (hdr->code) {
    case NM_DBLCLK:
      if (DblClick) DblClick();
      return 0;
    case TVN_KEYDOWN: {
      const auto* key = reinterpret_cast<const NMTVKEYDOWN*>(hdr);
      if (key->wVKey != VK_SPACE) return 0;
      if (SpaceKey) SpaceKey();
      return 1;  // not part of an incremental search
    }
    case TVN_SELCHANGEDA:
    case TVN_SELCHANGEDW:
      if (NodeClick) NodeClick();
      return 0;
    case TVN_ITEMEXPANDEDA:
    case TVN_ITEMEXPANDEDW: {
      ShowExpansion(reinterpret_cast<const NMTREEVIEWA*>(hdr)->itemNew.hItem);
      return 0;
    }
    case NM_RCLICK: {
      const DWORD pos = GetMessagePos();
      TVHITTESTINFO hit{};
      hit.pt = {static_cast<short>(LOWORD(pos)), static_cast<short>(HIWORD(pos))};
      const POINT screen = hit.pt;
      ScreenToClient(tree_, &hit.pt);
      HTREEITEM item = TreeView_HitTest(tree_, &hit);
      if (!item || !(hit.flags & TVHT_ONITEM)) return 1;
      Select(item);
      if (ContextMenu) ContextMenu(screen);
      return 1;
    }
    default:
      return 0;
  }
}

LRESULT SettingsPage::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_NOTIFY: {
      const auto* hdr = reinterpret_cast<const NMHDR*>(lp);
      return hdr->hwndFrom == tree_ ? OnNotify(hdr) : 0;
    }
    case WM_VSCROLL:
      if (reinterpret_cast<HWND>(lp) == scroll_) OnScroll(LOWORD(wp));
      return 0;
    case WM_CONTEXTMENU:
      // From the keyboard (the menu key, Shift+F10): at the selected node.
      if (reinterpret_cast<HWND>(wp) == tree_ && lp == -1) MenuAtSelection();
      return 0;
    case WM_COMMAND:
      return 0;
    case WM_ERASEBKGND: {
      if (!backdrop_) return Default(msg, wp, lp);
      // The backdrop's own picture behind the page (a themed tab body is not a plain colour).
      HDC dc = reinterpret_cast<HDC>(wp);
      POINT origin{0, 0};
      MapWindowPoints(hwnd(), backdrop_, &origin, 1);
      POINT old;
      OffsetWindowOrgEx(dc, origin.x, origin.y, &old);
      SendMessageA(backdrop_, WM_PRINTCLIENT, wp, PRF_CLIENT);
      SetWindowOrgEx(dc, old.x, old.y, nullptr);
      return 1;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      if (!backdrop_) return Default(msg, wp, lp);
      SetBkMode(reinterpret_cast<HDC>(wp), TRANSPARENT);
      return reinterpret_cast<LRESULT>(GetStockObject(NULL_BRUSH));
    default:
      return Default(msg, wp, lp);
  }
}

}  // namespace ui
