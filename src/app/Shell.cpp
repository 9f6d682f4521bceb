#include "app/Shell.h"

#include "resource.h"
#include "ui/seam.h"

namespace vx {

const std::vector<ToolbarButton>& ToolbarButtons() {
  static const std::vector<ToolbarButton> buttons = {
      {"Open Theme", 0, IDM_FILE_OPEN},
      {"Save Theme", 1, IDM_FILE_SAVE},
      {nullptr, 0, 0},
      {"Back", 2, IDT_BACK},
      {"Forward", 3, IDT_FORWARD},
      {nullptr, 0, 0},
      {"Rebuild Icon Cache", 4, IDM_FILE_REBUILD},
      {"Restore Icons", 5, IDM_TOOLS_RESTORE_ICONS},
      {nullptr, 0, 0},
      {"Vexillor Home Page", 6, IDM_WEB_HOME},
      {"Email Author", 7, IDM_WEB_EMAIL},
      {nullptr, 0, 0},
      {"What's This?", 8, IDM_HELP_WHATSTHIS},
      {"Contents && Index", 9, IDM_HELP_CONTENTS},
      {"About Vexillor", 10, IDM_HELP_ABOUT},
      {nullptr, 0, 0},
      {"Exit", 11, IDM_FILE_EXIT},
  };
  return buttons;
}

HACCEL CreateMainAccelerators() {
  ACCEL keys[] = {
      {FVIRTKEY | FCONTROL, 'O', IDM_FILE_OPEN},
      {FVIRTKEY | FCONTROL, 'S', IDM_FILE_SAVE},
      {FVIRTKEY, VK_F1, IDM_HELP_CONTENTS},
      {FVIRTKEY | FSHIFT, VK_F1, IDM_HELP_WHATSTHIS},
      {FVIRTKEY | FCONTROL, VK_TAB, IDT_FORWARD},
      {FVIRTKEY | FCONTROL | FSHIFT, VK_TAB, IDT_BACK},
      {FVIRTKEY | FCONTROL, VK_NEXT, IDT_FORWARD},
      {FVIRTKEY | FCONTROL, VK_PRIOR, IDT_BACK},
  };
  return CreateAcceleratorTableA(keys, static_cast<int>(sizeof keys / sizeof keys[0]));
}

unsigned HelpTopicOf(int id) {
  static const struct {
    int id;
    unsigned topic;
  } topics[] = {
      {IDC_TABSTRIP, 1000}, {IDC_INFOBAR, 1010}, {IDC_CHANGE, 1020}, {IDC_DEFAULT, 1030}, {IDC_RENAME, 1040},
      {IDOK, 1050},         {IDCANCEL, 1060},    {IDC_APPLY, 1070},  {IDC_HELPBTN, 1080}, {IDC_SETTINGS_TREE, 1090},
      {IDC_FOLDER_TREE, 1100}, {IDC_TOOLBAR, 1110},
  };
  if (id > IDC_LIST_FIRST && id < IDC_LIST_FIRST + 10) return 1200 + static_cast<unsigned>(id - IDC_LIST_FIRST);
  for (const auto& t : topics)
    if (t.id == id) return t.topic;
  return 0;
}

void ShowAbout(HWND owner) { ui::GetSeam().ShowAbout(owner, {kHomePage, kAuthorMail}); }

}  // namespace vx
