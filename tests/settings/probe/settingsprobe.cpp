// Fills the Shell tab's tree as the program does, under whatever Windows edition Wine emulates for it,
// and writes what the tree control shows to the profile file named on its command line: section "tree",
// one line per node in display order, "depth|text|image".
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "apply/RunFlags.h"
#include "settings/SettingsTree.h"
#include "system/Environment.h"

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES | ICC_TREEVIEW_CLASSES};
  InitCommonControlsEx(&icc);
  const vx::Environment env = vx::DetectEnvironment();
  vx::RunFlags flags;
  HWND host = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 500, 400, nullptr, nullptr, nullptr, nullptr);
  vx::SettingsTree tree({host, &env, &flags, [] {}, [] {}});
  if (!tree.Create(host, 1, nullptr)) return 3;
  tree.Fill(vx::CurrentScreen());
  tree.page().ExpandAll(true);
  HWND view = tree.page().tree();
  int n = 0;
  auto walk = [&](auto&& self, HTREEITEM item, int depth) -> void {
    for (; item; item = TreeView_GetNextSibling(view, item)) {
      char text[260] = {};
      TVITEMA it{};
      it.mask = TVIF_TEXT | TVIF_IMAGE;
      it.hItem = item;
      it.pszText = text;
      it.cchTextMax = sizeof text;
      TreeView_GetItem(view, &it);
      const std::string line = std::to_string(depth) + "|" + text + "|" + std::to_string(it.iImage + 1);
      WritePrivateProfileStringA("tree", std::to_string(++n).c_str(), line.c_str(), argv[1]);
      self(self, TreeView_GetChild(view, item), depth + 1);
    }
  };
  walk(walk, TreeView_GetRoot(view), 0);
  WritePrivateProfileStringA("tree", "edition", env.editionCode.c_str(), argv[1]);
  WritePrivateProfileStringA("tree", "filled", flags.treeFilled ? "1" : "0", argv[1]);
  return 0;
}
