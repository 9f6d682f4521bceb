// The main window's furniture: menus, toolbar, tab strip, panes and buttons, their layout, the tabs and
// the Explorer tab's splitter.
#include "app/Main.h"

#include <commctrl.h>

#include "app/Shell.h"
#include "resource.h"

namespace vx {
namespace {

constexpr const char* kPaneClass = "VexillorPane";
constexpr const char* kTabCaptions[Main::kTabCount] = {"Shell",  "Desktop", "Start",    "Folders", "Drives",
                                                       "Others", "System",  "Explorer", "Pointers"};

// Layout of the client area, in pixels.
constexpr int kMargin = 7;
constexpr int kButtonWidth = 84, kButtonHeight = 25, kSideButtonWidth = 104;
constexpr int kInfoBarHeight = 22;

// The pane container over the tab strip's display area, and the toolbar's host: both pass their
// children's notifications up to the main window.
class Pane : public ui::Window {
 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override {
    switch (msg) {
      case WM_COMMAND:
      case WM_NOTIFY:
      case WM_CTLCOLORSTATIC:
      case WM_CTLCOLORBTN:
        return SendMessageA(GetParent(hwnd()), msg, wp, lp);
      default:
        return Default(msg, wp, lp);
    }
  }
};

struct MenuRow {
  const char* caption;  // nullptr: separator
  int id;
};

void AppendRows(HMENU menu, std::initializer_list<MenuRow> rows) {
  for (const auto& r : rows) {
    if (r.caption)
      AppendMenuA(menu, MF_STRING, static_cast<UINT_PTR>(r.id), r.caption);
    else
      AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
  }
}

}  // namespace

// --- building the window ------------------------------------------------------------------------------

void Main::CreateMenus() {
  menu_ = CreateMenu();
  HMENU file = CreatePopupMenu();
  AppendRows(file, {{"&Open Theme...", IDM_FILE_OPEN},
                    {nullptr, 0},
                    {"&Save Theme", IDM_FILE_SAVE},
                    {"Save Theme &As...", IDM_FILE_SAVEAS},
                    {nullptr, 0},
                    {"Rebuild Icon &Cache", IDM_FILE_REBUILD},
                    {nullptr, 0},
                    {"&Exit", IDM_FILE_EXIT}});
  HMENU tools = CreatePopupMenu();
  AppendRows(tools, {{"Restore all &Settings", IDM_TOOLS_RESTORE_SETTINGS},
                     {"Restore all &Icons", IDM_TOOLS_RESTORE_ICONS},
                     {"Restore all &Pointers", IDM_TOOLS_RESTORE_POINTERS},
                     {nullptr, 0},
                     {"&Undo Last Apply", IDM_TOOLS_UNDO},
                     {"Re&view Changes...", IDM_TOOLS_REVIEW}});
  HMENU web = CreatePopupMenu();
  AppendRows(web, {{"&Email Author", IDM_WEB_EMAIL},
                   {"Vexillor &Home Page", IDM_WEB_HOME},
                   {nullptr, 0},
                   {"Additional &Icon Themes", IDM_WEB_THEMES}});
  HMENU help = CreatePopupMenu();
  AppendRows(help, {{"&Contents and Index", IDM_HELP_CONTENTS}, {"What's &This?", IDM_HELP_WHATSTHIS}, {nullptr, 0}});
  AppendMenuA(help, MF_POPUP, reinterpret_cast<UINT_PTR>(web), "VX on the &Web");
  AppendMenuA(help, MF_STRING, IDM_HELP_ABOUT, "&About Vexillor");
  AppendMenuA(menu_, MF_POPUP, reinterpret_cast<UINT_PTR>(file), "&File");
  AppendMenuA(menu_, MF_POPUP, reinterpret_cast<UINT_PTR>(tools), "&Tools");
  AppendMenuA(menu_, MF_POPUP, reinterpret_cast<UINT_PTR>(help), "&Help");
  SetMenu(hwnd(), menu_);
}

HMENU Main::fileMenu() const { return GetSubMenu(menu_, 0); }

void Main::CreateToolbar() {
  HINSTANCE inst = GetModuleHandleA(nullptr);
  // The toolbar control is a host window with the common toolbar inside it; the style routine looks
  // the inner toolbar up by its class name.
  toolbarHostWindow_ = std::make_unique<Pane>();
  toolbarHostWindow_->Create("VexillorToolbarHost", 0, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, "", 0, 0,
                             kClientWidth, 30, hwnd(), reinterpret_cast<HMENU>(IDC_TOOLBAR_HOST));
  toolbarHost_ = toolbarHostWindow_->hwnd();
  toolbar_ = CreateWindowExA(0, TOOLBARCLASSNAMEA, "",
                             WS_CHILD | WS_VISIBLE | TBSTYLE_TOOLTIPS | CCS_NODIVIDER | CCS_NORESIZE, 0, 2,
                             kClientWidth, 28, toolbarHost_, reinterpret_cast<HMENU>(IDC_TOOLBAR), inst, nullptr);
  SendMessageA(toolbar_, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
  toolbarImages_.reset(ImageList_LoadImageA(inst, MAKEINTRESOURCEA(IDB_TOOLBAR), 16, 0, RGB(255, 0, 255),
                                            IMAGE_BITMAP, LR_CREATEDIBSECTION));
  SendMessageA(toolbar_, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(toolbarImages_.get()));
  std::vector<TBBUTTON> buttons;
  for (const auto& b : ToolbarButtons()) {
    TBBUTTON t{};
    if (b.caption == nullptr) {
      t.fsStyle = BTNS_SEP;
    } else {
      t.iBitmap = b.image;
      t.idCommand = b.command;
      t.fsState = TBSTATE_ENABLED;
      t.fsStyle = BTNS_BUTTON;
      t.iString = -1;
    }
    buttons.push_back(t);
  }
  SendMessageA(toolbar_, TB_ADDBUTTONS, buttons.size(), reinterpret_cast<LPARAM>(buttons.data()));
}

void Main::CreateControls() {
  HINSTANCE inst = GetModuleHandleA(nullptr);
  NONCLIENTMETRICSA ncm{};
  ncm.cbSize = sizeof ncm;
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof ncm, &ncm, 0);
  font_ = CreateFontIndirectA(&ncm.lfMessageFont);

  CreateToolbar();
  tab_ = CreateWindowExA(0, WC_TABCONTROLA, "", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS, 0, 0, 0, 0,
                         hwnd(), reinterpret_cast<HMENU>(IDC_TABSTRIP), inst, nullptr);
  SendMessageA(tab_, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
  for (int i = 0; i < kTabCount; ++i) {
    TCITEMA item{};
    item.mask = TCIF_TEXT;
    item.pszText = const_cast<char*>(kTabCaptions[i]);
    SendMessageA(tab_, TCM_INSERTITEMA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
  }
  paneWindow_ = std::make_unique<Pane>();
  paneWindow_->Create(kPaneClass, WS_EX_CONTROLPARENT, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, "", 0, 0, 0, 0,
                      hwnd(), reinterpret_cast<HMENU>(IDC_PANE));
  pane_ = paneWindow_->hwnd();

  auto button = [&](HWND parent, const char* text, int id, DWORD extra = 0) {
    HWND b = CreateWindowExA(0, "BUTTON", text, WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON | extra, 0, 0,
                             0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), inst, nullptr);
    SendMessageA(b, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
    return b;
  };
  CreateSettingsPage();
  for (int tab = kTabDesktop; tab <= kTabPointers; ++tab) {
    if (tab == kTabExplorer) continue;
    auto list = std::make_unique<ui::ListBoxIcons>();
    list->Create(pane_, IDC_LIST_FIRST + tab, 0, 0, 100, 100);
    ShowWindow(list->hwnd(), SW_HIDE);
    list->Click = [this, tab] { lstbxIcons_Click(*this, tab); };
    list->DblClick = [this, tab] { lstbxIcons_DblClick(*this, tab); };
    list->KeyDown = [this, tab](int key, int shift) { lstbxIcons_KeyDown(*this, tab, key, shift); };
    lists_[static_cast<size_t>(tab)] = std::move(list);
  }
  splitter_.Create(pane_, IDC_SPLITTER, 0, 0, 6, 100);
  ShowWindow(splitter_.hwnd(), SW_HIDE);
  splitter_.Moved = [this](int x) { OnSplitterMove(x); };
  splitter_.DoubleClicked = [this] { SetTreeWidthTwips(ui::SplitterSnapWidth(treeWidth_)); };

  button(pane_, "&Change...", IDC_CHANGE);
  button(pane_, "&Default Icon", IDC_DEFAULT);
  button(pane_, "&Rename...", IDC_RENAME);
  EnableWindow(control(IDC_RENAME), FALSE);

  HWND info = CreateWindowExA(WS_EX_STATICEDGE, "STATIC", "",
                              WS_CHILD | WS_VISIBLE | SS_LEFTNOWORDWRAP | SS_PATHELLIPSIS | SS_CENTERIMAGE, 0, 0, 0,
                              0, hwnd(), reinterpret_cast<HMENU>(IDC_INFOBAR), inst, nullptr);
  SendMessageA(info, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
  button(hwnd(), "OK", IDOK, BS_DEFPUSHBUTTON);
  button(hwnd(), "Cancel", IDCANCEL);
  button(hwnd(), "&Apply", IDC_APPLY);
  button(hwnd(), "Help", IDC_HELPBTN);  // Alt+H belongs to the Help menu
  EnableWindow(control(IDC_APPLY), FALSE);
  LayoutPanes();
}

void Main::LayoutPanes() {
  RECT client;
  GetClientRect(hwnd(), &client);
  const int width = client.right, height = client.bottom;
  SendMessageA(toolbar_, TB_AUTOSIZE, 0, 0);
  RECT tb;
  GetWindowRect(toolbar_, &tb);
  const int toolbarHeight = tb.bottom - tb.top + 4;
  MoveWindow(toolbarHost_, 0, 0, width, toolbarHeight, TRUE);

  const int buttonsTop = height - kMargin - kButtonHeight;
  const int infoTop = buttonsTop - kMargin - kInfoBarHeight;
  const int tabTop = toolbarHeight + 4;
  MoveWindow(tab_, kMargin, tabTop, width - 2 * kMargin, infoTop - kMargin - tabTop, TRUE);
  MoveWindow(control(IDC_INFOBAR), kMargin, infoTop, width - 2 * kMargin, kInfoBarHeight, TRUE);
  const int ids[] = {IDOK, IDCANCEL, IDC_APPLY, IDC_HELPBTN};
  for (int i = 0; i < 4; ++i)
    MoveWindow(control(ids[i]), width - kMargin - (4 - i) * (kButtonWidth + 6) + 6, buttonsTop, kButtonWidth,
               kButtonHeight, TRUE);

  RECT display;
  GetWindowRect(tab_, &display);
  MapWindowPoints(nullptr, hwnd(), reinterpret_cast<POINT*>(&display), 2);
  SendMessageA(tab_, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&display));
  const int paneWidth = display.right - display.left, paneHeight = display.bottom - display.top;
  MoveWindow(pane_, display.left, display.top, paneWidth, paneHeight, TRUE);

  const int inner = 8;
  const int sideLeft = paneWidth - inner - kSideButtonWidth;
  const int side[] = {IDC_CHANGE, IDC_DEFAULT, IDC_RENAME};
  for (int i = 0; i < 3; ++i)
    MoveWindow(GetDlgItem(pane_, side[i]), sideLeft, inner + i * (kButtonHeight + 6),
               kSideButtonWidth, kButtonHeight, TRUE);
  const int listWidth = sideLeft - 2 * inner;
  for (auto& list : lists_)
    if (list) list->Move(inner, inner, listWidth, paneHeight - 2 * inner);
  settings_->page().Move(inner, inner, paneWidth - 2 * inner, paneHeight - 2 * inner);
  SetTreeWidthTwips(treeWidth_);
}

// The folder tree reads every drive when it is made, so it is made on the first visit of its tab
// rather than at start-up.
void Main::EnsureFolderTree() {
  if (folderTree_.hwnd()) return;
  folderTree_.Create(pane_, IDC_FOLDER_TREE, 0, 0, 100, 100);
  folderTree_.Click = [this] { lstbxExplorer_Click(); };
  SetWindowPos(splitter_.hwnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  SetTreeWidthTwips(treeWidth_);
}

void Main::SetTreeWidthTwips(int twips) {
  treeWidth_ = twips;
  if (!pane_ || !folderTree_.hwnd()) return;
  RECT pane;
  GetClientRect(pane_, &pane);
  const int tpp = ui::TwipsPerPixelX();
  const int inner = 8;
  const int treeLeftTwips = inner * tpp;
  folderTree_.Move(inner, inner, treeWidth_ / tpp, pane.bottom - 2 * inner);
  const int splitterLeft = ui::SplitterLeft(treeLeftTwips, treeWidth_) / tpp;
  MoveWindow(splitter_.hwnd(), splitterLeft, inner, 6, pane.bottom - 2 * inner, TRUE);
}

void Main::OnSplitterMove(int x) {
  const int width = ui::SplitterDragWidth(treeWidth_, x * ui::TwipsPerPixelX());
  if (width != treeWidth_) SetTreeWidthTwips(width);
}

// --- tabs ------------------------------------------------------------------------------------------

int Main::CurrentTab() { return static_cast<int>(SendMessageA(tab_, TCM_GETCURSEL, 0, 0)) + 1; }

void Main::SelectTab(int tab) {
  if (tab < 1 || tab > kTabCount) return;
  SendMessageA(tab_, TCM_SETCURSEL, static_cast<WPARAM>(tab - 1), 0);
  TabStrip_Click();
}

void Main::TabStrip_Click() {
  const int tab = CurrentTab();
  SetWindowPos(pane_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  EnableWindow(pane_, TRUE);
  ShowPaneOf(tab);
}

void Main::ShowPaneOf(int tab) {
  for (size_t i = 0; i < lists_.size(); ++i)
    if (lists_[i]) ShowWindow(lists_[i]->hwnd(), static_cast<int>(i) == tab ? SW_SHOW : SW_HIDE);
  const bool explorer = tab == kTabExplorer, shell = tab == kTabShell;
  if (explorer) EnsureFolderTree();
  if (folderTree_.hwnd()) ShowWindow(folderTree_.hwnd(), explorer ? SW_SHOW : SW_HIDE);
  ShowWindow(splitter_.hwnd(), explorer ? SW_SHOW : SW_HIDE);
  if (shell && !flags.treeFilled) FillSettingsTree();
  ShowWindow(settings_->page().hwnd(), shell ? SW_SHOW : SW_HIDE);
  for (int id : {IDC_CHANGE, IDC_DEFAULT, IDC_RENAME}) ShowWindow(GetDlgItem(pane_, id), shell ? SW_HIDE : SW_SHOW);
  if (explorer) {
    EnableDefault(true);
    EnableRename(false);
    EnableWindow(GetDlgItem(pane_, IDC_CHANGE), TRUE);
    lstbxExplorer_Click();
  } else if (shell) {
    SetInfoBar("");
  } else if (List(tab)) {
    EnableWindow(GetDlgItem(pane_, IDC_CHANGE), TRUE);
    lstbxIcons_Click(*this, tab);
  }
}

}  // namespace vx
