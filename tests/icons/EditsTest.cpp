// Change, Default Icon and Rename on real icon lists, with a scripted picker, rename box and file
// dialog, through a host that records what the main window would show.
#include <gtest/gtest.h>

#include <optional>

#include "IconFixtures.h"
#include "icons/IconEdits.h"
#include "support/ScriptedSeam.h"

namespace {

class FakeHost : public vx::EditHost {
 public:
  explicit FakeHost(vx::Environment e) : env(std::move(e)), real(env) {}
  HWND Owner() override { return real.window.hwnd(); }
  const vx::Environment& Env() override { return env; }
  const std::vector<vx::IconItem>& Catalogue() override { return real.catalogue; }
  int CurrentTab() override { return tab; }
  ui::ListBoxIcons* List(int t) override { return t >= 0 && t < 10 ? real.lists[t] : nullptr; }
  std::string InfoBar() override { return info; }
  void SetInfoBar(const std::string& text) override { info = text; }
  void EnableDefault(bool on) override { defaultOn = on; }
  void EnableRename(bool on) override { renameOn = on; }
  void EnableApply() override { applyOn = true; }
  void SetRebuildCachePending() override { pending = true; }
  std::string ExplorerPath() override { return ""; }
  void RefreshFolderTree() override {}

  // Selects an item as the user would, then forgets every mark.
  void Select(int t, const std::string& key) {
    tab = t;
    List(t)->SelItemKey(key);
    vx::lstbxIcons_Click(*this, t);
    applyOn = pending = false;
  }
  std::string At(int t, const std::string& key) { return List(t)->ItemFullPath(key); }

  vx::Environment env;
  vxtest::RealLists real;
  int tab = vx::kTabDesktop;
  std::string info;
  std::optional<bool> defaultOn, renameOn;
  bool applyOn = false, pending = false;
};

class Edits : public ::testing::Test {
 protected:
  Edits() {
    modRegistry::SaveString("HKEY_CLASSES_ROOT\\.zip", "", "vxtest.zip");  // lists "Zip File"
    modRegistry::SaveString(vx::kShellIconsKey, "8", shell + ",9");
    host = std::make_unique<FakeHost>(vxtest::Env("Win98", "4.72.3110.0", true));
  }
  vxtest::CatalogueRegistry saved;
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
  const std::string shell = vxtest::Shell32();
  std::unique_ptr<FakeHost> host;
};

TEST_F(Edits, SelectionShowsTheLocationAndSetsTheButtons) {
  FakeHost& h = *host;
  EXPECT_EQ(h.At(vx::kTabDrives, "Hard Drive"), shell + ",9");  // with the stored override
  h.List(vx::kTabPointers)->Change("Move", "C:\\vxtest\\move.cur", 0);
  const std::optional<bool> same;
  struct { int tab; const char* key; std::string info; std::optional<bool> defaultOn, renameOn; } cases[] = {
      {vx::kTabDesktop, "Recycle Bin (full)", "", same, true},
      {vx::kTabStart, "Programs", "", true, false},
      {vx::kTabSystem, "Zip File", "", false, same},
      {vx::kTabPointers, "Busy", "Windows Default Cursor", false, false},
      {vx::kTabPointers, "Move", "C:\\vxtest\\move.cur", true, false},
  };
  for (const auto& c : cases) {
    h.defaultOn.reset();
    h.renameOn.reset();
    h.Select(c.tab, c.key);
    EXPECT_EQ(h.info, c.info.empty() ? h.At(c.tab, c.key) : c.info) << c.key;
    EXPECT_EQ(h.defaultOn, c.defaultOn) << c.key;
    EXPECT_EQ(h.renameOn, c.renameOn) << c.key;
  }
  // Only paging and arrow keys (33, 34, 38, 40) run the selection handler.
  for (int code : {33, 34, 38, 40, 13, 37}) {
    h.info = "-";
    vx::lstbxIcons_KeyDown(h, vx::kTabPointers, code, 0);
    EXPECT_EQ(h.info, code == 13 || code == 37 ? "-" : "C:\\vxtest\\move.cur") << code;
  }
}

TEST_F(Edits, ChangeTakesThePickersChoice) {
  FakeHost& h = *host;
  h.Select(vx::kTabDrives, "Hard Drive");
  // The location already shown, then a cancelled picker: no edit either time.
  seam.iconChoices = {{true, shell, 9}, {false, "", 0}, {true, shell, 41}};
  vx::cmdChange_Click(h);
  vx::cmdChange_Click(h);
  EXPECT_EQ(seam.iconAsks[0].file + "," + std::to_string(seam.iconAsks[0].index), shell + ",9");
  EXPECT_EQ(h.At(vx::kTabDrives, "Hard Drive"), shell + ",9");
  EXPECT_FALSE(h.applyOn || h.pending);
  vx::cmdChange_Click(h);
  EXPECT_EQ(h.At(vx::kTabDrives, "Hard Drive"), shell + ",41");
  EXPECT_EQ(h.info, shell + ",41");
  EXPECT_TRUE(h.applyOn && h.pending);
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "8"), shell + ",9");  // only Apply writes

  h.Select(vx::kTabSystem, "Zip File");  // a double-click is Change too
  seam.iconChoices = {{true, shell, 70}};
  vx::lstbxIcons_DblClick(h, vx::kTabSystem);
  EXPECT_EQ(h.At(vx::kTabSystem, "Zip File"), shell + ",70");
}

TEST_F(Edits, DefaultIconRestoresTheWindowsDefaultInTheList) {
  FakeHost& h = *host;
  const std::string sys = vxtest::SystemFolder();
  struct { int tab; const char* key; std::string location; } cases[] = {
      {vx::kTabDesktop, "My Computer", vxtest::WindowsFolder() + "\\explorer.exe,0"},
      {vx::kTabDesktop, "In Box", sys + "\\cool.dll,30"},
      {vx::kTabFolders, "Printers", shell + ",52"},
      {vx::kTabSystem, "MS-DOS Batch File", shell + ",65"},
      {vx::kTabSystem, "Zip File", shell + ",5"},  // no default: keeps its icon, no mark
  };
  for (const auto& c : cases) {
    h.List(c.tab)->Change(c.key, shell, 5);
    h.Select(c.tab, c.key);
    vx::cmdDefault_Click(h);
    EXPECT_EQ(h.At(c.tab, c.key), c.location) << c.key;
    EXPECT_EQ(h.info, c.location) << c.key;
    EXPECT_EQ(h.pending && h.applyOn, c.location != shell + ",5") << c.key;
  }
}

TEST_F(Edits, PointersChooseACursorFileAndGoBackToTheDefault) {
  FakeHost& h = *host;
  h.Select(vx::kTabPointers, "Busy");
  seam.files = {std::string("C:\\vxtest\\busy.ani"), std::nullopt};
  vx::cmdChange_Click(h);
  EXPECT_EQ(h.At(vx::kTabPointers, "Busy"), "C:\\vxtest\\busy.ani,0");
  EXPECT_TRUE(h.applyOn && !h.pending);
  vx::cmdChange_Click(h);  // cancelled: keeps the item
  EXPECT_EQ(h.At(vx::kTabPointers, "Busy"), "C:\\vxtest\\busy.ani,0");
  ASSERT_EQ(seam.fileDialogs.size(), 2u);  // "Windows Default Cursor" names no file; then the shown one
  EXPECT_EQ(seam.fileDialogs[0].initialFile + "|" + seam.fileDialogs[1].initialFile, "|C:\\vxtest\\busy.ani");

  for (auto [key, n] : {std::pair{"Busy", 4}, {"Hand", 15}}) {
    h.List(vx::kTabPointers)->Change(key, "C:\\vxtest\\other.cur", 0);
    h.Select(vx::kTabPointers, key);
    vx::cmdDefault_Click(h);
    EXPECT_EQ(h.At(vx::kTabPointers, key), h.env.exePath + "," + std::to_string(n));
    EXPECT_EQ(h.info, "Windows Default Cursor");
    EXPECT_EQ(h.defaultOn, false);
  }
}

TEST_F(Edits, RenameSetsTheCaptionOnly) {
  FakeHost& h = *host;
  ui::ListBoxIcons& desk = *h.List(vx::kTabDesktop);
  const std::string icon = h.At(vx::kTabDesktop, "Recycle Bin (full)");
  h.Select(vx::kTabDesktop, "Recycle Bin (full)");
  seam.names = {std::string("Bin"), std::nullopt, std::string("My Computer")};
  vx::cmdRename_Click(h);
  ASSERT_EQ(seam.nameAsks.size(), 1u);
  EXPECT_EQ(seam.nameAsks[0].label, "Type a new name for Recycle Bin (full)");
  EXPECT_EQ(seam.nameAsks[0].text, "Recycle Bin");
  EXPECT_EQ(desk.ItemCaption("Recycle Bin (empty)") + "|" + desk.ItemCaption("Recycle Bin (full)"),
            "Bin (empty)|Bin (full)");
  EXPECT_EQ(desk.Key(6) + "|" + desk.Key(7), "Recycle Bin (empty)|Recycle Bin (full)");
  EXPECT_EQ(h.At(vx::kTabDesktop, "Recycle Bin (full)"), icon);
  EXPECT_TRUE(h.pending && h.applyOn);

  h.Select(vx::kTabDesktop, "My Computer");
  vx::cmdRename_Click(h);  // cancelled
  vx::cmdRename_Click(h);  // unchanged
  EXPECT_FALSE(h.pending || h.applyOn);
  h.Select(vx::kTabStart, "Programs");  // not named from a class key: never renamed
  vx::cmdRename_Click(h);
  EXPECT_EQ(seam.nameAsks.size(), 3u);
}

}  // namespace
