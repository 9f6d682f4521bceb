#include "app/Main.h"

#include <commctrl.h>
#include <shellapi.h>

#include <cstring>

#include "app/Shell.h"
#include "icons/FolderIcons.h"
#include "icons/IconApply.h"
#include "icons/Refresh.h"
#include "registry/modCommon.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "ui/frmPrompt.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"

namespace vx {
namespace {

constexpr const char* kClassName = "VexillorMain";
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

Main::Main() = default;

Main::~Main() {
  Destroy();
  if (font_) DeleteObject(font_);
}

bool Main::Create(const Environment& env, const std::string& commandLine, bool quitOnClose) {
  env_ = env;
  commandLine_ = commandLine;
  quitOnClose_ = quitOnClose;
  RECT r{0, 0, kClientWidth, kClientHeight};
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  const DWORD exStyle = WS_EX_CONTROLPARENT;
  AdjustWindowRectEx(&r, style, TRUE, exStyle);
  HICON icon = LoadIconA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDI_PROGRAM));
  if (!ui::Window::Create(kClassName, exStyle, style, "Vexillor", kDesignLeft, kDesignTop, r.right - r.left,
                          r.bottom - r.top, nullptr, nullptr, CS_DBLCLKS,
                          reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1), icon))
    return false;
  modMsgbox::SetOwner(hwnd());
  CreateMenus();
  CreateControls();
  Form_Load();
  return true;
}

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
                     {"Restore all &Pointers", IDM_TOOLS_RESTORE_POINTERS}});
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
  for (int id : UnavailableCommands()) EnableMenuItem(menu_, static_cast<UINT>(id), MF_BYCOMMAND | MF_GRAYED);
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
  for (int id : UnavailableCommands()) SendMessageA(toolbar_, TB_ENABLEBUTTON, static_cast<WPARAM>(id), FALSE);
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
  settingsTree_ = CreateWindowExA(WS_EX_CLIENTEDGE, WC_TREEVIEWA, "",
                                  WS_CHILD | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                                      TVS_SHOWSELALWAYS,
                                  0, 0, 0, 0, pane_, reinterpret_cast<HMENU>(IDC_SETTINGS_TREE), inst, nullptr);
  SendMessageA(settingsTree_, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
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
  MoveWindow(settingsTree_, inner, inner, paneWidth - 2 * inner, paneHeight - 2 * inner, TRUE);
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

// --- start-up and shut-down ---------------------------------------------------------------------------

void Main::Form_Load() {
  // Every step runs on its own: a failing one leaves the design state and the next goes on.
  catalogue_ = Add_Icons(env_, [this] {
    IconLists lists{};
    for (size_t i = 0; i < lists_.size(); ++i) lists[i] = lists_[i].get();
    return lists;
  }());
  // Each list starts with its first row selected, so every tab shows where the keyboard is.
  for (auto& list : lists_)
    if (list && list->Count() > 0) list->SelItemIndex(0);
  SetToolbarStyle(false);
  if (!commandLine_.empty()) {
    OpenTheme(commandLine_, true);
  } else {
    RestorePosition();
  }
  SetCurrentTheme("load");
  ShowWindow(hwnd(), SW_SHOW);
  UpdateWindow(hwnd());
  const int32_t active = modRegistry::GetDword(kSettingsKey, "Active Tab");
  SelectTab(active == 0 || active == modRegistry::kDwordError || active < 1 || active > kTabCount ? kTabDesktop
                                                                                                     : active);
  SetRecentThemes(commandLine_);
}

void Main::RestorePosition() {
  RECT r;
  GetWindowRect(hwnd(), &r);
  const int tppX = ui::TwipsPerPixelX(), tppY = ui::TwipsPerPixelY();
  if (modRegistry::GetDword(kSettingsKey, "Positions") == 0) {
    // Centre: each difference made whole (in twips) before the integer halving.
    const int screenW = GetSystemMetrics(SM_CXSCREEN) * tppX, screenH = GetSystemMetrics(SM_CYSCREEN) * tppY;
    const int left = (screenW - (r.right - r.left) * tppX) / 2;
    const int top = (screenH - (r.bottom - r.top) * tppY) / 2;
    SetWindowPos(hwnd(), nullptr, left / tppX, top / tppY, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    return;
  }
  int top = 0, left = 0;
  int x = r.left, y = r.top;
  if (ParseTwips(modRegistry::GetString(kSettingsKey, "Top"), top)) y = top / tppY;
  if (ParseTwips(modRegistry::GetString(kSettingsKey, "Left"), left)) x = left / tppX;
  SetWindowPos(hwnd(), nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Main::SetToolbarStyle(bool textBeside) {
  HWND inner = FindWindowExA(toolbarHost_, nullptr, "ToolbarWindow32", nullptr);
  if (!inner) return;
  // The flat-style constant is a 16-bit value widened with its sign, so the high word is all ones.
  const int16_t flat = static_cast<int16_t>(textBeside ? 0x9840 : 0x8840);
  const LRESULT style = SendMessageA(inner, TB_GETSTYLE, 0, 0);
  SendMessageA(inner, TB_SETSTYLE, 0, static_cast<LPARAM>(static_cast<DWORD>(style) | static_cast<DWORD>(static_cast<int32_t>(flat))));
  InvalidateRect(inner, nullptr, TRUE);
}

void Main::SetCurrentTheme(const std::string& p) {
  if (p == "load") {
    std::string stored = modRegistry::GetString(kSettingsKey, "Current Theme");
    SetCurrentTheme(HoldsPath(stored) ? stored : "");
    return;
  }
  SetWindowTextA(hwnd(), ThemeTitle(p).c_str());
  currentTheme_ = p;
  if (!p.empty()) SetRecentThemes(p);
}

void Main::SetRecentThemes(const std::string& path) {
  RecentThemes(path, recent_);
  RebuildRecentMenu();
}

void Main::RebuildRecentMenu() {
  HMENU file = fileMenu();
  // Take out whatever recent section is there (the items between "Rebuild Icon Cache" and the
  // separator before "Exit"), then put in what is to be shown.
  for (int id = IDM_FILE_RECENT1; id < IDM_FILE_RECENT1 + 4; ++id) DeleteMenu(file, static_cast<UINT>(id), MF_BYCOMMAND);
  int rebuild = -1;
  for (int i = 0; i < GetMenuItemCount(file); ++i)
    if (GetMenuItemID(file, i) == IDM_FILE_REBUILD) rebuild = i;
  // A separator right after the rebuild item that is followed by another separator is the recent one.
  if (GetMenuItemCount(file) > rebuild + 2 && GetMenuItemID(file, rebuild + 1) == 0 &&
      GetMenuItemID(file, rebuild + 2) == 0)
    DeleteMenu(file, static_cast<UINT>(rebuild + 1), MF_BYPOSITION);
  UINT pos = static_cast<UINT>(rebuild + 1);
  if (recent_.separator) InsertMenuA(file, pos++, MF_BYPOSITION | MF_SEPARATOR, 0, nullptr);
  for (int n = 0; n < 4; ++n) {
    if (!recent_.visible[static_cast<size_t>(n)]) continue;
    InsertMenuA(file, pos++, MF_BYPOSITION | MF_STRING, static_cast<UINT_PTR>(IDM_FILE_RECENT1 + n),
                recent_.captions[static_cast<size_t>(n)].c_str());
  }
  DrawMenuBar(hwnd());
}

bool Main::Form_QueryUnload() {
  if (!applyEnabled()) return false;
  switch (modMsgbox::SaveBeforeClosing()) {
    case 0:  // "&Cancel": stay open, changes still pending
      return true;
    case 2:  // "Yes": apply, then close
      cmdApply_Click();
      return false;
    default:  // "No": close without applying
      return false;
  }
}

void Main::Form_Unload() {
  if (restartLater) modMsgbox::RestartLater();
  if (modRegistry::GetDword(kSettingsKey, "Active Tab") != 0)
    modRegistry::SaveDword(kSettingsKey, "Active Tab", CurrentTab());
  // The settings tree is empty until its catalogue fills it; its on/off nodes are keyed by their
  // captions, which is what is recorded here (numeric nodes will need their own keys then).
  if (TreeView_GetCount(settingsTree_) >= 2) {
    char text[260] = {};
    TVITEMA item{};
    item.mask = TVIF_TEXT;
    item.hItem = TreeView_GetSelection(settingsTree_);
    item.pszText = text;
    item.cchTextMax = sizeof text;
    if (item.hItem && TreeView_GetItem(settingsTree_, &item)) modRegistry::SaveString(kSettingsKey, "Selected", text);
  }
  RECT r;
  GetWindowRect(hwnd(), &r);
  modRegistry::SaveString(kSettingsKey, "Left", FormatTwips(r.left * ui::TwipsPerPixelX()));
  modRegistry::SaveString(kSettingsKey, "Top", FormatTwips(r.top * ui::TwipsPerPixelY()));
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
  if (shell && !treeFilled) FillSettingsTree();
  ShowWindow(settingsTree_, shell ? SW_SHOW : SW_HIDE);
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

void Main::FillSettingsTree() {
  // The settings tree is built on its first visit by the settings catalogue; until that lands the
  // tree stays empty and the flag stays clear.
}

// --- commands -------------------------------------------------------------------------------------

bool Main::applyEnabled() const { return IsWindowEnabled(GetDlgItem(hwnd(), IDC_APPLY)) != FALSE; }

void Main::cmdApply_Click() {
  ui::MousePointer wait(ui::MousePointer::kHourglass);
  IconLists lists{};
  for (size_t i = 0; i < lists_.size(); ++i) lists[i] = lists_[i].get();
  IconApplyOptions options;
  options.settingsTreeBuilt = treeFilled;
  options.autoApplyMode = autoApplyMode;
  options.currentThemePath = currentTheme_;
  lastUndo_ = ApplyIconChanges(env_, catalogue_, lists, options, rebuildCachePending, restartNeeded, restartLater,
                   [this] { RefreshFolderTree(); });
  EnableWindow(control(IDC_APPLY), FALSE);
}

void Main::cmdOK_Click() {
  if (applyEnabled()) cmdApply_Click();
  cmdCancel_Click();
}

void Main::cmdCancel_Click() { PostMessageA(hwnd(), WM_CLOSE, 0, 0); }

void Main::cmdHelp_Click() { ui::GetSeam().ShellOpen(hwnd(), ui::AppHelpFile()); }

void Main::OnCommand(int id) {
  switch (id) {
    case IDOK: cmdOK_Click(); break;
    case IDCANCEL: cmdCancel_Click(); break;
    case IDC_APPLY: cmdApply_Click(); break;
    case IDC_HELPBTN: case IDM_HELP_CONTENTS: cmdHelp_Click(); break;
    case IDC_CHANGE: cmdChange_Click(*this); break;
    case IDC_DEFAULT: cmdDefault_Click(*this); break;
    case IDC_RENAME: cmdRename_Click(*this); break;
    case IDT_BACK: if (CurrentTab() > 1) SelectTab(CurrentTab() - 1); break;
    case IDT_FORWARD: if (CurrentTab() < kTabCount) SelectTab(CurrentTab() + 1); break;
    case IDM_FILE_OPEN: OpenTheme("", false); break;
    case IDM_FILE_SAVE: SaveTheme(); break;
    case IDM_FILE_SAVEAS: SaveThemeAs(); break;
    case IDM_FILE_REBUILD: {
      ui::MousePointer wait(ui::MousePointer::kHourglass);
      RebuildIconCache();
      break;
    }
    case IDM_FILE_EXIT: PostMessageA(hwnd(), WM_CLOSE, 0, 0); break;
    case IDM_TOOLS_RESTORE_SETTINGS: RestoreAllSettings(); break;
    case IDM_TOOLS_RESTORE_ICONS: RestoreAllIcons(); break;
    case IDM_TOOLS_RESTORE_POINTERS: RestoreAllPointers(); break;
    case IDM_HELP_WHATSTHIS: EnterContextHelp(); break;
    case IDM_HELP_ABOUT: ShowAbout(hwnd()); break;
    case IDT_NEXT_TAB: if (CurrentTab() < kTabCount) SelectTab(CurrentTab() + 1); break;
    case IDT_PREV_TAB: if (CurrentTab() > 1) SelectTab(CurrentTab() - 1); break;
    case IDM_WEB_EMAIL: ui::GetSeam().ShellOpen(hwnd(), kAuthorMail); break;
    case IDM_WEB_HOME: ui::GetSeam().ShellOpen(hwnd(), kHomePage); break;
    case IDM_WEB_THEMES: ui::GetSeam().ShellOpen(hwnd(), std::string(kHomePage) + "/themes.htm"); break;
    default:
      if (id >= IDM_FILE_RECENT1 && id < IDM_FILE_RECENT1 + 4)
        OpenTheme(modRegistry::GetString(kThemesKey, std::to_string(id - IDM_FILE_RECENT1 + 1)), false);
      break;
  }
}

// Context help: the pointer becomes the help pointer until the next click, which shows the help of
// the control under it; Escape, a right click or any command ends the mode without help.
void Main::EnterContextHelp() {
  contextHelp_ = true;
  SetCapture(hwnd());
  SetCursor(LoadCursorA(nullptr, IDC_HELP));
}

void Main::EndContextHelp(POINT pt, bool show) {
  contextHelp_ = false;
  ReleaseCapture();
  SetCursor(LoadCursorA(nullptr, IDC_ARROW));
  if (!show) return;
  // Down to the deepest visible control under the point, disabled ones included (WindowFromPoint
  // would pass over a disabled button, and its help is wanted all the same).
  HWND target = hwnd();
  for (;;) {
    POINT local = pt;
    ScreenToClient(target, &local);
    HWND child = ChildWindowFromPointEx(target, local, CWP_SKIPINVISIBLE | CWP_SKIPTRANSPARENT);
    if (!child || child == target) break;
    target = child;
  }
  for (HWND w = target; w && w != hwnd(); w = GetParent(w)) {
    if (unsigned topic = HelpTopicOf(GetDlgCtrlID(w))) {
      ui::GetSeam().OpenHelp(hwnd(), ui::AppHelpFile(), HELP_CONTEXTPOPUP, std::to_string(topic));
      return;
    }
  }
}

// --- commands that arrive with later work ----------------------------------------------------------------

void Main::OpenTheme(const std::string&, bool) {}
void Main::SaveTheme() {}
void Main::SaveThemeAs() {}
void Main::RestoreAllSettings() {}
void Main::RestoreAllIcons() {}
void Main::RestoreAllPointers() {}

// --- the Explorer tab ------------------------------------------------------------------------------------

void Main::lstbxExplorer_Click() {
  const std::string path = folderTree_.Path();
  if (path.find(':') == std::string::npos) {
    SetInfoBar("");
    return;
  }
  SetInfoBar(FolderIconInfo(path, env_.systemFolder));
}

// --- EditHost ------------------------------------------------------------------------------------------

ui::ListBoxIcons* Main::List(int tab) {
  if (tab < 0 || tab >= static_cast<int>(lists_.size())) return nullptr;
  return lists_[static_cast<size_t>(tab)].get();
}

std::string Main::InfoBar() { return ui::GetText(control(IDC_INFOBAR)); }
void Main::SetInfoBar(const std::string& text) { ui::SetText(control(IDC_INFOBAR), text); }
void Main::EnableDefault(bool on) { EnableWindow(GetDlgItem(pane_, IDC_DEFAULT), on); }
void Main::EnableRename(bool on) { EnableWindow(GetDlgItem(pane_, IDC_RENAME), on); }
void Main::EnableApply() { EnableWindow(control(IDC_APPLY), TRUE); }
std::string Main::ExplorerPath() { return folderTree_.hwnd() ? folderTree_.Path() : std::string(); }
void Main::RefreshFolderTree() {
  if (folderTree_.hwnd()) folderTree_.Refresh();
}
void Main::FocusFolderTree() {
  if (folderTree_.hwnd()) SetFocus(folderTree_.hwnd());
}
void Main::RebuildIconCache() { vx::RebuildIconCache(env_, rebuildCachePending, [this] { RefreshFolderTree(); }); }

// --- messages ---------------------------------------------------------------------------------------

LRESULT Main::OnNotify(const NMHDR* hdr) {
  if (hdr->idFrom == IDC_TABSTRIP && hdr->code == TCN_SELCHANGE) {
    TabStrip_Click();
    return 0;
  }
  if (hdr->code == TTN_GETDISPINFOA) {
    auto* info = reinterpret_cast<NMTTDISPINFOA*>(const_cast<NMHDR*>(hdr));
    for (const auto& b : ToolbarButtons())
      if (b.caption && static_cast<UINT_PTR>(b.command) == hdr->idFrom) info->lpszText = const_cast<char*>(b.caption);
    return 0;
  }
  return 0;
}

LRESULT Main::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_COMMAND:
      if (contextHelp_) {
        EndContextHelp({}, false);
        return 0;
      }
      OnCommand(LOWORD(wp));
      return 0;
    case WM_MOUSEMOVE:
      if (contextHelp_) SetCursor(LoadCursorA(nullptr, IDC_HELP));
      return 0;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
      if (contextHelp_) {
        POINT pt{static_cast<short>(LOWORD(lp)), static_cast<short>(HIWORD(lp))};
        ClientToScreen(hwnd(), &pt);
        EndContextHelp(pt, msg == WM_LBUTTONDOWN);
      }
      return 0;
    case WM_KEYDOWN:
      if (contextHelp_ && wp == VK_ESCAPE) EndContextHelp({}, false);
      return 0;
    case WM_CAPTURECHANGED:
      if (contextHelp_ && reinterpret_cast<HWND>(lp) != hwnd()) contextHelp_ = false;
      return 0;
    case WM_NOTIFY:
      return OnNotify(reinterpret_cast<const NMHDR*>(lp));
    case WM_CLOSE:
      if (closing_ || Form_QueryUnload()) return 0;
      closing_ = true;
      Form_Unload();
      // DestroyWindow itself (not Destroy, which detaches first) so WM_DESTROY still reaches us.
      DestroyWindow(hwnd());
      return 0;
    case WM_DESTROY:
      if (quitOnClose_) PostQuitMessage(0);
      return 0;
    default:
      return Default(msg, wp, lp);
  }
}

// --- the program ------------------------------------------------------------------------------------

int RunMain(const std::string& commandLine, int show) {
  (void)show;
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES | ICC_BAR_CLASSES | ICC_TAB_CLASSES | ICC_TREEVIEW_CLASSES};
  InitCommonControlsEx(&icc);
  Main main;
  if (!main.Create(DetectEnvironment(), commandLine)) return 1;
  HACCEL accel = CreateMainAccelerators();
  MSG msg;
  while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
    if (main.hwnd() && TranslateAcceleratorA(main.hwnd(), accel, &msg)) continue;
    if (main.hwnd() && IsDialogMessageA(main.hwnd(), &msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  DestroyAcceleratorTable(accel);
  return static_cast<int>(msg.wParam);
}

}  // namespace vx
