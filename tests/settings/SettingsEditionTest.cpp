// The Shell tab's tree of each Windows edition, filled by the settings probe under Wine's emulation of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

#include "registry/LaterApi.h"
#include "registry/modRegistry.h"
#include "settings/SettingsFixture.h"
#include "support/RealProgram.h"

namespace {

using namespace vx;

struct Node { int depth; std::string text; int image; };

// The probe writes "edition", "filled" and one "depth|text|image" line a node, numbered from 1.
std::vector<Node> Nodes(std::map<std::string, std::string>& tree) {
  std::vector<Node> nodes;
  for (int i = 1; tree.count(std::to_string(i)); ++i) {
    const std::string& line = tree[std::to_string(i)];
    const auto a = line.find('|'), b = line.rfind('|');
    nodes.push_back({std::stoi(line.substr(0, a)), line.substr(a + 1, b - a - 1), std::stoi(line.substr(b + 1))});
  }
  return nodes;
}

TEST(SettingsEdition, EachEditionsTreeInItsOwnProcess) {
  // Windows 95, 98 and NT 4 never ran under WOW64: emulated in a 64-bit prefix they would read the
  // 32-bit registry view. They are checked in the 32-bit prefix.
  if (later::IsWow64()) GTEST_SKIP() << "the old editions are tested in a 32-bit prefix";
  vxtest::SettingsScope scope;
  const std::string ieKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer";
  const std::string orderKey =
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder\\Start Menu\\Menu";
  vxtest::KeySnapshot ie({ieKey, "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder"});
  modRegistry::DeleteValue(kPlusSetupKey, "COOL.DLL");
  modRegistry::SaveString(kDesktopKey, "FontSmoothing", "1");
  modRegistry::SaveString(kDesktopKey, "DragFullWindows", "0");

  // update: Internet Explorer 4.72 with the Start menu order, which makes the desktop update.
  const struct { const char *wine, *code; bool update; int plusImage; } cases[] = {{"win95", "Win95", false, kImageUnavailable}, {"win98", "Win98", true, kImageUnavailable},
               {"nt40", "WinNT", false, kImageOn}};
  const std::vector<std::string> groups = {"General", "Explorer", "Menu Items", "Icons", "Mouse", "Plus!",
                                           "Restrictions", "Start Menu", "Cascading Menus", "Wallpaper", "Options"};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.wine);
    modRegistry::SaveString(ieKey, "Version", c.update ? "4.72.3110.0" : "4.70.1155");
    if (c.update) vxtest::WriteRaw(orderKey, "Order", REG_BINARY, std::string("\x08\0\0\0", 4));
    auto tree = vxtest::RunProbe("settingsprobe.exe", c.wine, "tree");
    const std::vector<Node> nodes = Nodes(tree);
    ASSERT_FALSE(nodes.empty()) << "the probe did not run";
    EXPECT_EQ(tree["edition"], c.code);
    EXPECT_EQ(tree["filled"], "1");
    auto find = [&](const std::string& text) {
      auto n = std::find_if(nodes.begin(), nodes.end(), [&](const Node& n) { return n.text == text; });
      return n == nodes.end() ? nullptr : &*n;
    };
    std::vector<std::string> want = groups, top, mouse;
    if (c.update) want.insert(want.begin() + 1, "Active Desktop");
    bool under = false;  // under "Mouse"
    for (const Node& n : nodes) {
      if (n.depth == 0) under = (top.push_back(n.text), n.text == "Mouse");
      if (under && n.depth == 1) mouse.push_back(n.text);
    }
    EXPECT_EQ(top, want);
    EXPECT_EQ(nodes.size(), c.update ? 68u : 60u);  // sixteen groups (seventeen) and the settings
    EXPECT_EQ(find("Clear Recent Documents on Exit") != nullptr, c.update);
    EXPECT_EQ(find("Font Smoothing")->image, c.plusImage);
    EXPECT_EQ(find("Full Window Dragging")->image, c.plusImage == kImageOn ? kImageOff : c.plusImage);
    // Expanded, every group shows its open picture; numbers show 3 under their sub-groups.
    EXPECT_EQ(find("Mouse")->image, kImageGroupOpen);
    ASSERT_NE(find("Width"), nullptr);
    EXPECT_EQ(find("Width")->depth, 2);
    EXPECT_EQ(find("Width")->image, kImageNumber);
    EXPECT_EQ(find("Delay Until Clicked")->depth, 2);
    EXPECT_EQ(mouse, (std::vector<std::string>{"Double Click", "Drag", "Swap Mouse Buttons"}));
  }
}

}  // namespace
