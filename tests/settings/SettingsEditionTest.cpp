// The Shell tab's tree of each Windows edition, filled in a process of its own (the settings probe) under
// Wine's emulation of that edition.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "registry/modRegistry.h"
#include "settings/SettingsFixture.h"
#include "support/RegistryScope.h"
#include "ui/win.h"

namespace {

using namespace vx;

struct Node {
  int depth;
  std::string text;
  int image;
};

struct Probe {
  std::string edition;
  bool filled = false;
  std::vector<Node> nodes;
  const Node* Find(const std::string& text) const {
    for (const Node& n : nodes)
      if (n.text == text) return &n;
    return nullptr;
  }
};

Probe RunProbe(const std::string& edition) {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string self = ui::ModulePath();
  const std::string name = "settingsprobe_" + edition + ".exe";
  const std::string copy = std::string(temp) + name, out = copy + ".ini";
  CopyFileA((self.substr(0, self.rfind('\\') + 1) + "settingsprobe.exe").c_str(), copy.c_str(), FALSE);
  const std::string appKey = "HKEY_CURRENT_USER\\Software\\Wine\\AppDefaults\\" + name;
  modRegistry::SaveString(appKey, "Version", edition);
  DeleteFileA(out.c_str());
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  std::string cmd = "\"" + copy + "\" \"" + out + "\"";
  if (CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &si, &pi)) {
    WaitForSingleObject(pi.hProcess, 30000);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
  }
  char buf[512];
  GetPrivateProfileStringA("tree", "edition", "", buf, sizeof buf, out.c_str());
  Probe p;
  p.edition = buf;
  p.filled = GetPrivateProfileIntA("tree", "filled", 0, out.c_str()) == 1;
  for (int i = 1;; ++i) {
    if (!GetPrivateProfileStringA("tree", std::to_string(i).c_str(), "", buf, sizeof buf, out.c_str())) break;
    const std::string line = buf;
    const auto a = line.find('|'), b = line.rfind('|');
    p.nodes.push_back({std::stoi(line.substr(0, a)), line.substr(a + 1, b - a - 1), std::stoi(line.substr(b + 1))});
  }
  DeleteFileA(out.c_str());
  DeleteFileA(copy.c_str());
  vxtest::DeleteTree(appKey);
  return p;
}

TEST(SettingsEdition, EachEditionsTreeInItsOwnProcess) {
  vxtest::SettingsScope scope;
  const std::string ieKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer";
  const std::string orderKey =
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder\\Start Menu\\Menu";
  vxtest::KeySnapshot ie({ieKey, "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder"});
  modRegistry::DeleteValue(kPlusSetupKey, "COOL.DLL");
  modRegistry::SaveString(kDesktopKey, "FontSmoothing", "1");
  modRegistry::SaveString(kDesktopKey, "DragFullWindows", "0");

  struct Case {
    const char* wine;
    const char* code;
    bool update;  // Internet Explorer 4.72 with the Start menu order: the desktop update
    int plusImage;
  } cases[] = {{"win95", "Win95", false, kImageUnavailable}, {"win98", "Win98", true, kImageUnavailable},
               {"nt40", "WinNT", false, kImageOn}};
  const std::vector<std::string> groups = {"General", "Explorer", "Menu Items", "Icons", "Mouse", "Plus!",
                                           "Restrictions", "Start Menu", "Cascading Menus", "Wallpaper", "Options"};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.wine);
    if (c.update) {
      modRegistry::SaveString(ieKey, "Version", "4.72.3110.0");
      vxtest::WriteRaw(orderKey, "Order", REG_BINARY, std::string("\x08\0\0\0", 4));
    } else {
      modRegistry::SaveString(ieKey, "Version", "4.70.1155");
    }
    const Probe p = RunProbe(c.wine);
    ASSERT_FALSE(p.nodes.empty()) << "the probe did not run";
    EXPECT_EQ(p.edition, c.code);
    EXPECT_TRUE(p.filled);
    std::vector<std::string> want = groups, top, mouse;
    if (c.update) want.insert(want.begin() + 1, "Active Desktop");
    bool under = false;  // under "Mouse"
    for (const Node& n : p.nodes) {
      if (n.depth == 0) under = (top.push_back(n.text), n.text == "Mouse");
      if (under && n.depth == 1) mouse.push_back(n.text);
    }
    EXPECT_EQ(top, want);
    EXPECT_EQ(p.nodes.size(), c.update ? 68u : 60u);  // sixteen groups (seventeen) and the settings
    EXPECT_EQ(p.Find("Clear Recent Documents on Exit") != nullptr, c.update);
    EXPECT_EQ(p.Find("Font Smoothing")->image, c.plusImage);
    EXPECT_EQ(p.Find("Full Window Dragging")->image, c.plusImage == kImageOn ? kImageOff : c.plusImage);
    // Expanded, every group shows its open picture; numbers show 3 under their sub-groups.
    EXPECT_EQ(p.Find("Mouse")->image, kImageGroupOpen);
    ASSERT_NE(p.Find("Width"), nullptr);
    EXPECT_EQ(p.Find("Width")->depth, 2);
    EXPECT_EQ(p.Find("Width")->image, kImageNumber);
    EXPECT_EQ(p.Find("Delay Until Clicked")->depth, 2);
    EXPECT_EQ(mouse, (std::vector<std::string>{"Double Click", "Drag", "Swap Mouse Buttons"}));
  }
}

}  // namespace
