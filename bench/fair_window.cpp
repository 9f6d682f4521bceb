// The fair baseline of the start-up benchmark: a program that does only what Vexillor cannot avoid before
// its window waits idle. It carries the same manifest (common controls 6) and resources, initialises the
// same common-control classes, loads shell32, builds one window of Vexillor's size with the same kinds of
// controls (menu bar, toolbar with its image list, tab strip of nine tabs, a pane with a tree view, eight
// list frames with scroll bars, buttons, info bar), makes the same registry reads and icon counts as
// filling the icon lists does (the catalogue and each item's current icon), and draws the icons of the
// rows a person sees on the first tab. What it leaves out is Vexillor's own cost: drawing rows nobody sees,
// its control code, preferences, recent themes and recovery checks.
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "icons/Catalogue.h"
#include "icons/Items.h"
#include "ids_art.h"
#include "resource.h"
#include "system/Environment.h"

namespace {

constexpr int kClientWidth = 540, kClientHeight = 456, kRow = 50;
HWND g_firstList = nullptr;
std::vector<vx::ShownIcon> g_seen;  // the first tab's rows, as the program shows them

LRESULT CALLBACK ListProc(HWND h, UINT m, WPARAM w, LPARAM l) {
  if (m == WM_PAINT) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(h, &ps);
    FillRect(dc, &ps.rcPaint, GetSysColorBrush(COLOR_WINDOW));
    RECT r;
    GetClientRect(h, &r);
    if (h == g_firstList)
      for (size_t i = 0; i < g_seen.size() && static_cast<int>(i) * kRow < r.bottom; ++i) {
        HICON icon = ExtractIconA(GetModuleHandleA(nullptr), g_seen[i].file.c_str(),
                                  static_cast<UINT>(g_seen[i].index));
        if (reinterpret_cast<UINT_PTR>(icon) > 1) {
          DrawIcon(dc, 15, static_cast<int>(i) * kRow + 9, icon);
          DestroyIcon(icon);
        }
        TextOutA(dc, 60, static_cast<int>(i) * kRow + 20, "Item", 4);
      }
    EndPaint(h, &ps);
    return 0;
  }
  return DefWindowProcA(h, m, w, l);
}

LRESULT CALLBACK Proc(HWND h, UINT m, WPARAM w, LPARAM l) {
  if (m == WM_DESTROY) {
    PostQuitMessage(0);
    return 0;
  }
  return DefWindowProcA(h, m, w, l);
}

HWND Child(DWORD ex, const char* cls, const char* text, DWORD style, int x, int y, int w, int h, HWND parent,
           int id = 0) {
  return CreateWindowExA(ex, cls, text, WS_CHILD | WS_VISIBLE | style, x, y, w, h, parent,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr), nullptr);
}

}  // namespace

int WINAPI WinMain(HINSTANCE inst, HINSTANCE, LPSTR, int) {
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES | ICC_BAR_CLASSES | ICC_TAB_CLASSES | ICC_TREEVIEW_CLASSES};
  InitCommonControlsEx(&icc);
  WNDCLASSA wc{};
  wc.style = CS_DBLCLKS;
  wc.lpfnWndProc = Proc;
  wc.hInstance = inst;
  wc.hIcon = LoadIconA(inst, MAKEINTRESOURCEA(IDI_PROGRAM));
  wc.hCursor = LoadCursorA(nullptr, IDC_ARROW);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = "FairWindow";
  RegisterClassA(&wc);
  wc.lpfnWndProc = ListProc;
  wc.hIcon = nullptr;
  wc.hbrBackground = nullptr;
  wc.lpszClassName = "FairList";
  RegisterClassA(&wc);

  // The registry reads and icon counts of filling the lists: the catalogue, then each item's icon.
  const vx::Environment env = vx::DetectEnvironment();
  for (const vx::IconItem& item : vx::BuildCatalogue(env)) {
    const vx::ShownIcon shown = vx::CurrentIcon(item, env);
    if (item.tab == vx::kTabDesktop) g_seen.push_back(shown);
  }

  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  RECT r{0, 0, kClientWidth, kClientHeight};
  AdjustWindowRectEx(&r, style, TRUE, WS_EX_CONTROLPARENT);
  HMENU menu = CreateMenu();
  for (const char* title : {"&File", "&Tools", "&Help"}) {
    HMENU popup = CreatePopupMenu();
    for (int i = 0; i < 6; ++i) AppendMenuA(popup, MF_STRING, static_cast<UINT_PTR>(1000 + i), "Command");
    AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), title);
  }
  HWND main = CreateWindowExA(WS_EX_CONTROLPARENT, "FairWindow", "Fair", style, 120, 80, r.right - r.left,
                              r.bottom - r.top, nullptr, menu, inst, nullptr);
  NONCLIENTMETRICSA ncm{};
  ncm.cbSize = sizeof ncm;
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof ncm, &ncm, 0);
  HFONT font = CreateFontIndirectA(&ncm.lfMessageFont);

  HWND toolbar = Child(0, TOOLBARCLASSNAMEA, "", TBSTYLE_TOOLTIPS | CCS_NODIVIDER | CCS_NORESIZE, 0, 2,
                       kClientWidth, 28, main);
  SendMessageA(toolbar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
  HIMAGELIST images = ImageList_LoadImageA(inst, MAKEINTRESOURCEA(IDB_TOOLBAR), 16, 0, RGB(255, 0, 255),
                                           IMAGE_BITMAP, LR_CREATEDIBSECTION);
  SendMessageA(toolbar, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images));
  std::vector<TBBUTTON> buttons(10);
  for (int i = 0; i < 10; ++i)
    buttons[static_cast<size_t>(i)] = TBBUTTON{i, 2000 + i, TBSTATE_ENABLED, BTNS_BUTTON, {}, 0, -1};
  SendMessageA(toolbar, TB_ADDBUTTONS, buttons.size(), reinterpret_cast<LPARAM>(buttons.data()));

  HWND tab = Child(0, WC_TABCONTROLA, "", WS_TABSTOP | WS_CLIPSIBLINGS, 6, 34, kClientWidth - 12, 340, main,
                   IDC_TABSTRIP);
  SendMessageA(tab, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  for (int i = 0; i < 9; ++i) {
    TCITEMA item{};
    item.mask = TCIF_TEXT;
    item.pszText = const_cast<char*>("Tab");
    SendMessageA(tab, TCM_INSERTITEMA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
  }
  HWND pane = Child(WS_EX_CONTROLPARENT, "STATIC", "", WS_CLIPCHILDREN, 12, 60, kClientWidth - 24, 306, main);
  HWND tree = Child(WS_EX_CLIENTEDGE, WC_TREEVIEWA, "", TVS_HASBUTTONS | TVS_HASLINES, 0, 0, 180, 300, pane);
  ShowWindow(tree, SW_HIDE);
  for (int i = 0; i < 8; ++i) {
    HWND frame = Child(WS_EX_CLIENTEDGE, "FairList", "", WS_CLIPCHILDREN, 0, 0, 380, 300, pane);
    Child(0, "SCROLLBAR", "", SBS_VERT, 359, 0, 17, 296, frame);
    HWND list = Child(0, "FairList", "", WS_TABSTOP, 0, 0, 358, 950, frame);
    if (i == 0) g_firstList = list;
    else ShowWindow(frame, SW_HIDE);
  }
  int y = 10;
  for (const char* text : {"&Change...", "&Default Icon", "&Rename..."}) {
    SendMessageA(Child(0, "BUTTON", text, WS_TABSTOP, 400, y, 100, 24, pane), WM_SETFONT,
                 reinterpret_cast<WPARAM>(font), FALSE);
    y += 30;
  }
  SendMessageA(Child(WS_EX_STATICEDGE, "STATIC", "", SS_LEFTNOWORDWRAP | SS_PATHELLIPSIS | SS_CENTERIMAGE, 6, 380,
                     kClientWidth - 12, 22, main),
               WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  int x = 200;
  for (const char* text : {"OK", "Cancel", "&Apply", "Help"}) {
    SendMessageA(Child(0, "BUTTON", text, WS_TABSTOP, x, 420, 75, 24, main), WM_SETFONT,
                 reinterpret_cast<WPARAM>(font), FALSE);
    x += 82;
  }
  ShowWindow(main, SW_SHOW);
  UpdateWindow(main);
  MSG msg;
  while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
    if (IsDialogMessageA(main, &msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  ImageList_Destroy(images);
  DeleteObject(font);
  return 0;
}
