// Continuing as administrator: on the XP family a user without administrator rights applies what is
// kept per user, and what is kept for every user goes on, as a theme opened pending, in a copy of the
// program started with administrator rights.
#include "app/Main.h"

#include <shlobj.h>

#include "registry/LaterApi.h"
#include "themes/Themes.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"

namespace vx {
namespace {

// The lists as a theme save sees them, showing only the held-back items.
class HeldLists : public ThemeLists {
 public:
  HeldLists(const ListValues& values, const std::vector<const IconItem*>& held) : values_(values), held_(held) {}
  std::string ItemFullPath(int tab, const std::string& key) const override {
    for (const IconItem* item : held_)
      if (item->tab == tab && item->key == key) return values_.ItemFullPath(tab, key);
    return "";
  }
  bool Change(int, const std::string&, const std::string&) override { return false; }
  void ListRefresh(int) override {}

 private:
  const ListValues& values_;
  const std::vector<const IconItem*>& held_;
};

}  // namespace

std::string Main::PendingThemePath() {
  std::string dir = later::AppDataFolder(true) + "\\Vexillor";
  CreateDirectoryA(dir.c_str(), nullptr);
  return dir + "\\For all users.vxtheme";
}

bool Main::OfferAdministrator(const ListValues& values) {
  const std::vector<const IconItem*> held = HeldBackItems(env_, catalogue_, values);
  if (held.empty()) return false;
  std::vector<std::string> names;
  for (const IconItem* item : held) names.push_back(item->caption);
  if (modMsgbox::ContinueAsAdministrator(names) != modMsgbox::ElevateAnswer::Continue) return false;
  // A fresh file: a theme save never removes what an older one left.
  const std::string path = PendingThemePath();
  DeleteFileA(path.c_str());
  const HeldLists lists(values, held);
  if (vx::SaveThemeFile(path, env_, lists) == 0) return false;
  return ui::GetSeam().RunAsAdministrator(hwnd(), env_.exePath, "\"" + path + "\"");
}

}  // namespace vx
