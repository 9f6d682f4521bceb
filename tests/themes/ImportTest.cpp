// The two imports (a Plus! theme and a Motif file) read by their tables; what they do not name stays.
#include <gtest/gtest.h>

#include <set>

#include "themes/ThemeFixtures.h"

namespace {

// A Plus! theme as the product wrote them: class sections, the Shell Icons section, the cursor scheme,
// macros in mixed case with and without a backslash, pointers without an index.
const char* const kPlusTheme = R"([Control Panel\Desktop]
Wallpaper=%WinDir%Dangerous Creatures wallpaper.bmp

[CLSID\{20D04FE0-3AEA-1069-A2D8-08002B30309D}\DefaultIcon]
DefaultValue=%WinDir%Plus\computer.ico,0

[CLSID\{208D2C60-3AEA-1069-A2D7-08002B30309D}\DefaultIcon]
DefaultValue=%ThemeDir%network.ico,1

[CLSID\{FBF23B42-E3F0-101B-8488-00AA003E56F8}\DefaultIcon]
DefaultValue=%WINDIR%\internet.ico,2

[CLSID\{00020D75-0000-0000-C000-000000000046}\DefaultIcon]
DefaultValue=%themedir%\inbox.ico,3

[CLSID\{00020D76-0000-0000-C000-000000000046}\DefaultIcon]
DefaultValue=%ThemeDir%inbox2.ico,4

[CLSID\{645FF040-5081-101B-9F08-00AA002F954E}\DefaultIcon]
DefaultValue=%ThemeDir%bin.ico,9
empty=%ThemeDir%empty.ico,5
full=%ThemeDir%full.ico,6

[CLSID\{21EC2020-3AEA-1069-A2DD-08002B30309D}\DefaultIcon]
DefaultValue=C:\Icons\control.ico,7

[CLSID\{a4d92740-67cd-11cf-96f2-00aa00a11dd9}\DefaultIcon]
DefaultValue=C:\Icons\dialup-nt.ico,8

[CLSID\{85BBD920-42A0-1069-A2E4-08002B30309D}\DefaultIcon]
DefaultValue=C:\Icons\briefcase.ico,0

[Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Icons]
3=C:\Icons\closed.ico,3
19=C:\Icons\programs.ico,19
28=C:\Icons\sharing.ico,28
44=C:\Icons\logoff.ico,44
0=C:\Icons\default.ico,0
2=C:\Icons\dos.ico,2
7=C:\Icons\removable.ico,7

[Control Panel\Cursors]
Arrow=%ThemeDir%Dangerous Creatures arrow.cur
Wait=%WinDir%Cursors\busy.ani
NWPen=C:\Cursors\pen.cur,2
Hand=%ThemeDir%hand.cur
)";

TEST(ImportPlusTheme, ClassicLayoutByItsTable) {
  vxtest::ScratchFolder folder("vxplus");
  const std::string file = folder.File("Dangerous Creatures.theme");
  vxtest::WriteBytes(file, kPlusTheme);
  const vx::Environment env = vx::MakeEnvironment("Win98", "C:\\WINDOWS", "C:\\WINDOWS\\SYSTEM", "4.72", true,
                                                  "C:\\Vx\\vexillor.exe");
  vxtest::RecordingLists lists(env);
  const auto before = lists.items;
  const vx::LoadReport report = vx::ImportPlusTheme(file, env, lists);
  const std::string dir = folder.path() + "\\";

  const struct { int tab; const char* key; std::string location; } expected[] = {
      {vx::kTabDesktop, "My Computer", "C:\\WINDOWS\\Plus\\computer.ico,0"},
      {vx::kTabDesktop, "Network Neighborhood", dir + "network.ico,1"},
      {vx::kTabDesktop, "The Internet", "C:\\WINDOWS\\internet.ico,2"},
      {vx::kTabDesktop, "In Box", dir + "inbox2.ico,4"},  // the second mail class, read after the first
      {vx::kTabDesktop, "Recycle Bin (empty)", dir + "empty.ico,5"},
      {vx::kTabDesktop, "Recycle Bin (full)", dir + "full.ico,6"},
      {vx::kTabFolders, "Control Panel", "C:\\Icons\\control.ico,7"},
      {vx::kTabFolders, "Dial-Up Networking", "C:\\Icons\\dialup-nt.ico,8"},
      {vx::kTabFolders, "Closed Folder", "C:\\Icons\\closed.ico,3"},
      {vx::kTabStart, "Programs", "C:\\Icons\\programs.ico,19"},
      {vx::kTabOthers, "Sharing Overlay", "C:\\Icons\\sharing.ico,28"},
      {vx::kTabSystem, "Default Icon", "C:\\Icons\\default.ico,0"},
      {vx::kTabSystem, "MS-DOS Application", "C:\\Icons\\dos.ico,2"},
      {vx::kTabDrives, "Removable Drive", "C:\\Icons\\removable.ico,7"},
      // Pointers name their cursor file alone: taken with index 0.
      {vx::kTabPointers, "Normal Select", dir + "Dangerous Creatures arrow.cur,0"},
      {vx::kTabPointers, "Busy", "C:\\WINDOWS\\Cursors\\busy.ani,0"},
      {vx::kTabPointers, "Handwriting", "C:\\Cursors\\pen.cur,2"},
      {vx::kTabPointers, "Hand", dir + "hand.cur,0"},
  };
  std::set<std::pair<int, std::string>> named;
  for (const auto& e : expected) {
    EXPECT_EQ(lists.ItemFullPath(e.tab, e.key), e.location) << e.key;
    named.insert({e.tab, e.key});
  }
  // Everything else stays: My Briefcase (its class is in the file but not in the table), Log Off...
  // (override 44), the document types, the pointers the file leaves out.
  for (const auto& [k, v] : before)
    EXPECT_TRUE(named.count(k) || lists.items[k] == v) << k.second;
  EXPECT_TRUE(report.refused.empty());
  // In the order of the Plus! table: Wait before Arrow, NWPen after both, Hand last; each list redrawn.
  std::vector<std::string> pointers;
  for (const auto& c : lists.changes)
    if (c.tab == vx::kTabPointers) pointers.push_back(c.key);
  EXPECT_EQ(pointers, (std::vector<std::string>{"Busy", "Normal Select", "Handwriting", "Hand"}));
  EXPECT_EQ(lists.refreshed, (std::vector<int>{vx::kTabDesktop, vx::kTabStart, vx::kTabFolders, vx::kTabDrives,
                                               vx::kTabOthers, vx::kTabSystem, vx::kTabPointers}));
}

TEST(ImportMotif, FourDesktopEntriesAndThePointersWithoutHand) {
  vxtest::ScratchFolder folder("vxmotif");
  const std::string file = folder.File("Set.motif");
  vxtest::WriteBytes(file, kPlusTheme);
  const vx::Environment env = vx::MakeEnvironment("Win98", "C:\\WINDOWS", "C:\\WINDOWS\\SYSTEM", "Error", false,
                                                  "C:\\Vx\\vexillor.exe");
  vxtest::RecordingLists lists(env);
  vx::ImportMotif(file, env, lists);
  std::vector<std::string> changed;
  for (const auto& c : lists.changes) changed.push_back(c.key);
  EXPECT_EQ(changed, (std::vector<std::string>{"My Computer", "Network Neighborhood", "Recycle Bin (empty)",
                                               "Recycle Bin (full)", "Busy", "Normal Select", "Handwriting"}));
  EXPECT_EQ(lists.ItemFullPath(vx::kTabPointers, "Hand"), "C:\\Before\\Hand.ico,1");
}

}  // namespace
