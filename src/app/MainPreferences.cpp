// The main window's preferences: its position, the toolbar style, the current theme in the title bar
// and the recent themes on the File menu.
#include "app/Main.h"

#include <commctrl.h>

#include "registry/modRegistry.h"
#include "resource.h"

namespace vx {

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
  // The items live in the File menu's drop-down, built anew each time it opens: the menu bar itself
  // is unchanged and needs no redrawing.
}

}  // namespace vx
