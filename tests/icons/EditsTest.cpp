// Change, Default Icon and Rename on real icon lists, with a scripted picker, rename box and file dialog.
#include <gtest/gtest.h>

#include <tuple>

#include "IconFixtures.h"
#include "icons/IconApply.h"
#include "icons/IconEdits.h"
#include "support/ScriptedSeam.h"

namespace {

class Edits : public ::testing::Test, public vxtest::RecordingHost {
 protected:
  Edits() : RecordingHost(vxtest::Env("Win98", "4.72.3110.0", true)) {
    modRegistry::SaveString("HKEY_CLASSES_ROOT\\.zip", "", "vxtest.zip");  // lists "Zip File"
    modRegistry::SaveString(vx::kShellIconsKey, "8", shell + ",9");
    real = std::make_unique<vxtest::RealLists>(env);
  }

  // Selects an item as the user would, then forgets every mark.
  void Select(int t, const std::string& key) {
    tab = t;
    List(t)->SelItemKey(key);
    vx::lstbxIcons_Click(*this, t);
    applyOn = pending = false;
  }
  std::string At(int t, const std::string& key) { return List(t)->ItemFullPath(key); }

  vxtest::CatalogueRegistry saved;
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
  const std::string shell = vxtest::Shell32();
};

TEST_F(Edits, SelectionShowsTheLocationAndSetsTheButtons) {
  List(vx::kTabPointers)->Change("Move", "C:\\vxtest\\move.cur", 0);
  const std::optional<bool> same;
  struct { int tab; const char* key; std::string info; std::optional<bool> defaultOn, renameOn; } cases[] = {
      {vx::kTabDesktop, "Recycle Bin (full)", "", same, true},
      {vx::kTabSystem, "Zip File", "", false, same},
      {vx::kTabPointers, "Busy", "Windows Default Cursor", false, false},
      {vx::kTabPointers, "Move", "C:\\vxtest\\move.cur", true, false},
  };
  for (const auto& c : cases) {
    defaultOn = renameOn = std::nullopt;
    Select(c.tab, c.key);
    EXPECT_EQ(info, c.info.empty() ? At(c.tab, c.key) : c.info) << c.key;
    EXPECT_EQ(std::pair(defaultOn, renameOn), std::pair(c.defaultOn, c.renameOn)) << c.key;
  }
  for (int code : {33, 34, 38, 40, 13, 37}) {  // only the paging and arrow keys select
    info = "-";
    vx::lstbxIcons_KeyDown(*this, vx::kTabPointers, code, 0);
    EXPECT_EQ(info, code == 13 || code == 37 ? "-" : "C:\\vxtest\\move.cur") << code;
  }
}

TEST_F(Edits, ChangeTakesThePickersChoice) {
  Select(vx::kTabDrives, "Hard Drive");
  // The location already shown, then a cancelled picker: no edit either time; a double-click is Change too.
  seam.iconChoices = {{true, shell, 9}, {false, "", 0}, {true, shell, 41}};
  vx::cmdChange_Click(*this);
  vx::cmdChange_Click(*this);
  EXPECT_EQ(seam.iconAsks[0].file + "," + std::to_string(seam.iconAsks[0].index), shell + ",9");  // the stored one
  EXPECT_FALSE(applyOn || pending);
  vx::lstbxIcons_DblClick(*this, vx::kTabDrives);
  EXPECT_EQ(At(vx::kTabDrives, "Hard Drive") + "|" + info, shell + ",41|" + shell + ",41");
  EXPECT_TRUE(applyOn && pending);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "8"), shell + ",9");  // only Apply writes
}

TEST_F(Edits, ChangeOnTheExplorerTabStartsFromTheKindsIcon) {
  const vxtest::SavedFile autorun("C:\\autorun.inf");  // the drive root's choice is written at once
  List(vx::kTabFolders)->Change("Closed Folder", shell, 4);
  tab = vx::kTabExplorer;
  struct { std::string info, path, start; } cases[] = {
      {"", "C:\\vxtest", ""},  // nothing selected: no picker
      {"", "C:\\", shell + ",9"},  // the Hard Drive item's icon
      {"Windows Default Icon", "C:\\vxtest\\sub", shell + ",4"},  // the Closed Folder item's
      {"C:\\vxtest\\own.ico,2", "C:\\vxtest", "C:\\vxtest\\own.ico,2"},
  };
  for (const auto& c : cases) {
    info = c.info;
    path = c.path;
    seam.iconAsks.clear();
    seam.iconChoices = {{true, shell, 77}};
    vx::cmdChange_Click(*this);
    const auto& ask = seam.iconAsks;
    EXPECT_EQ(ask.empty() ? "" : ask[0].file + "," + std::to_string(ask[0].index), c.start) << c.path;
  }
}

TEST_F(Edits, DefaultIconRestoresTheWindowsDefaultInTheList) {
  struct { int tab; const char* key; std::string location, info = ""; } cases[] = {
      {vx::kTabDesktop, "My Computer", vxtest::WindowsFolder() + "\\explorer.exe,0"},
      {vx::kTabSystem, "MS-DOS Batch File", shell + ",65"},
      {vx::kTabSystem, "Zip File", shell + ",5"},  // no default: keeps its icon, no mark
      {vx::kTabPointers, "Hand", env.exePath + ",15", "Windows Default Cursor"},
  };
  for (const auto& c : cases) {
    List(c.tab)->Change(c.key, shell, 5);
    Select(c.tab, c.key);
    vx::cmdDefault_Click(*this);
    EXPECT_EQ(At(c.tab, c.key) + "|" + info, c.location + "|" + (c.info.empty() ? c.location : c.info));
    EXPECT_EQ(pending && applyOn, c.location != shell + ",5") << c.key;
  }
  EXPECT_EQ(defaultOn, false);
}

TEST_F(Edits, PointersChooseACursorFile) {
  Select(vx::kTabPointers, "Busy");
  seam.files = {std::string("C:\\vxtest\\busy.ani"), std::nullopt};
  vx::cmdChange_Click(*this);
  EXPECT_EQ(At(vx::kTabPointers, "Busy"), "C:\\vxtest\\busy.ani,0");
  EXPECT_TRUE(applyOn && !pending);
  vx::cmdChange_Click(*this);  // cancelled: keeps the item
  ASSERT_EQ(seam.fileDialogs.size(), 2u);  // "Windows Default Cursor" names no file; then the shown one
  EXPECT_EQ(seam.fileDialogs[0].initialFile + "|" + seam.fileDialogs[1].initialFile, "|C:\\vxtest\\busy.ani");
}

TEST_F(Edits, RenameSetsTheCaptionOnly) {
  ui::ListBoxIcons& desk = *List(vx::kTabDesktop);
  Select(vx::kTabDesktop, "Recycle Bin (full)");
  seam.names = {std::string("Bin"), std::nullopt, std::string("My Computer")};
  vx::cmdRename_Click(*this);
  ASSERT_EQ(seam.nameAsks.size(), 1u);
  EXPECT_EQ(seam.nameAsks[0].label + "|" + seam.nameAsks[0].text, "Type a new name for Recycle Bin (full)|Recycle Bin");
  EXPECT_EQ(desk.ItemCaption("Recycle Bin (empty)") + "|" + desk.ItemCaption("Recycle Bin (full)"),
            "Bin (empty)|Bin (full)");
  EXPECT_TRUE(pending && applyOn);

  Select(vx::kTabDesktop, "My Computer");
  vx::cmdRename_Click(*this);  // cancelled
  vx::cmdRename_Click(*this);  // unchanged
  EXPECT_FALSE(pending || applyOn);
  Select(vx::kTabStart, "Programs");  // not named from a class key: never renamed
  vx::cmdRename_Click(*this);
  EXPECT_EQ(seam.nameAsks.size(), 3u);
}

// Apply writes what the lists hold; "Printer" (no item) and a default pointer read as empty, never ",0".
TEST_F(Edits, ApplyWritesWhatTheListsHold) {
  List(vx::kTabDrives)->Change("Hard Drive", shell, 41);
  std::string all;
  for (const auto& line : vx::Describe(vx::BuildIconApplyPlan(env, real->catalogue, real->lists, {}))) all += line;
  for (const auto& [key, value, text] : {std::tuple{vx::kShellIconsKey, "8", shell + ",41"},
                                         {vx::kShellIconsKey, "16", ""}, {vx::kCursorsKey, "Wait", ""}})
    EXPECT_NE(all.find(vx::Describe(vx::SetString(key, value, text))), std::string::npos) << value;
  EXPECT_EQ(all.find("= \",0\""), std::string::npos);
}

}  // namespace
