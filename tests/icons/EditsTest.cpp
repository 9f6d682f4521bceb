// Change, Default Icon and Rename on real icon lists filled by Add_Icons, with a scripted picker,
// rename box and file dialog, through a host that records what the main window would show.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>

#include "IconFixtures.h"
#include "icons/IconEdits.h"
#include "registry/modRegistry.h"
#include "support/ScriptedSeam.h"
#include "ui/ListBoxIcons.h"

namespace {

class FakeHost : public vx::EditHost {
 public:
  explicit FakeHost(vx::Environment e) : env(std::move(e)) {
    // A hidden window owns the lists, as the main window would.
    created = window.Create("VxIconEditsTestHost", 0, WS_OVERLAPPEDWINDOW, "", 0, 0, 400, 600, nullptr, nullptr);
    vx::IconLists lists{};
    for (int t : {2, 3, 4, 5, 6, 7, 9}) {
      owned[t] = std::make_unique<ui::ListBoxIcons>();
      created = owned[t]->Create(window.hwnd(), 100 + t, 0, 0, 300, 500) && created;
      lists[t] = owned[t].get();
    }
    catalogue = vx::Add_Icons(env, lists);
  }
  ~FakeHost() override {
    for (auto& l : owned) l.reset();
    window.Destroy();
  }
  HWND Owner() override { return window.hwnd(); }
  const vx::Environment& Env() override { return env; }
  const std::vector<vx::IconItem>& Catalogue() override { return catalogue; }
  int CurrentTab() override { return tab; }
  ui::ListBoxIcons* List(int t) override { return t >= 0 && t < 10 ? owned[t].get() : nullptr; }
  std::string InfoBar() override { return info; }
  void SetInfoBar(const std::string& text) override { info = text; }
  void EnableDefault(bool on) override { defaultOn = on; }
  void EnableRename(bool on) override { renameOn = on; }
  void EnableApply() override { applyOn = true; }
  void SetRebuildCachePending() override { pending = true; }
  std::string ExplorerPath() override { return explorerPath; }
  void RefreshFolderTree() override { ++treeRefreshes; }
  void FocusFolderTree() override {}
  void lstbxExplorer_Click() override {}
  void RebuildIconCache() override {}

  // Selects an item as the user would, then forgets every mark.
  void Select(int t, const std::string& key) {
    tab = t;
    List(t)->SelItemKey(key);
    vx::lstbxIcons_Click(*this, t);
    applyOn = pending = false;
    treeRefreshes = 0;
  }
  std::string At(int t, const std::string& key) { return List(t)->ItemFullPath(key); }

  vx::Environment env;
  ui::Window window;
  bool created = false;
  std::array<std::unique_ptr<ui::ListBoxIcons>, 10> owned;
  std::vector<vx::IconItem> catalogue;
  int tab = vx::kTabDesktop;
  std::string info, explorerPath;
  std::optional<bool> defaultOn, renameOn;
  bool applyOn = false, pending = false;
  int treeRefreshes = 0;
};

class Edits : public ::testing::Test {
 protected:
  Edits() {
    modRegistry::SaveString("HKEY_CLASSES_ROOT\\.zip", "", "vxtest.zip");  // lists "Zip File"
    modRegistry::SaveString(vx::kShellIconsKey, "8", shell + ",9");
    host = std::make_unique<FakeHost>(vxtest::Env("Win98", "4.72.3110.0", true));
  }
  vxtest::SavedValues saved{vxtest::CatalogueValues()};
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
  const std::string shell = vxtest::SystemFolder() + "\\shell32.dll";
  std::unique_ptr<FakeHost> host;
};

TEST_F(Edits, AddIconsFillsEveryList) {
  ASSERT_TRUE(host->created);
  for (int tab : {2, 3, 4, 5, 6, 7, 9}) {
    int n = 0;
    for (const auto& i : host->catalogue)
      if (i.tab == tab) {
        EXPECT_EQ(host->List(tab)->Key(n++), i.key);
        EXPECT_EQ(host->List(tab)->ItemCaption(i.key), i.caption);
      }
    EXPECT_EQ(host->List(tab)->Count(), n) << tab;
  }
  EXPECT_EQ(host->At(vx::kTabDrives, "Hard Drive"), shell + ",9");  // the stored override
  EXPECT_EQ(host->At(vx::kTabPointers, "Hand"), host->env.exePath + ",15");
}

TEST_F(Edits, SelectionShowsTheLocationAndSetsTheButtons) {
  FakeHost& h = *host;
  h.List(vx::kTabPointers)->Change("Move", "C:\\vxtest\\move.cur", 0);
  const std::optional<bool> same;
  struct { int tab; const char* key; std::string info; std::optional<bool> defaultOn, renameOn; } cases[] = {
      {vx::kTabDesktop, "Recycle Bin (full)", "", same, true},
      {vx::kTabFolders, "Control Panel", "", same, true},
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
  // Only paging and arrow keys run the selection handler.
  for (int code : {33, 34, 38, 40, 13, 36, 37, 39}) {
    h.info = "-";
    vx::lstbxIcons_KeyDown(h, vx::kTabPointers, code, 0);
    const bool runs = code == 33 || code == 34 || code == 38 || code == 40;
    EXPECT_EQ(h.info, runs ? "C:\\vxtest\\move.cur" : "-") << code;
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
  // A new location changes the item only inside its list.
  vx::cmdChange_Click(h);
  EXPECT_EQ(h.At(vx::kTabDrives, "Hard Drive"), shell + ",41");
  EXPECT_EQ(h.info, shell + ",41");
  EXPECT_TRUE(h.applyOn && h.pending);
  EXPECT_EQ(h.At(vx::kTabDrives, "RAM Drive"), shell + ",12");

  // A double-click is Change after a short pause.
  h.Select(vx::kTabSystem, "Zip File");
  seam.iconChoices = {{true, shell, 70}};
  vx::lstbxIcons_DblClick(h, vx::kTabSystem);
  EXPECT_EQ(h.At(vx::kTabSystem, "Zip File"), shell + ",70");
}

TEST_F(Edits, ChangeOnTheExplorerTabStartsFromTheKindsIcon) {
  const vxtest::SavedFile autorun("C:\\autorun.inf");  // the drive root's choice is written at once
  FakeHost& h = *host;
  h.List(vx::kTabFolders)->Change("Closed Folder", shell, 4);
  struct { std::string info, path, start; } cases[] = {
      {"", "C:\\vxtest", ""},  // nothing selected: no picker
      {"", "C:\\", shell + ",9"},
      {"Windows Default Icon", "C:\\vxtest\\sub", shell + ",4"},
      {"C:\\vxtest\\own.ico,2", "C:\\vxtest", "C:\\vxtest\\own.ico,2"},
  };
  for (const auto& c : cases) {
    h.tab = vx::kTabExplorer;
    h.applyOn = false;
    h.treeRefreshes = 0;
    h.info = c.info;
    h.explorerPath = c.path;
    seam.iconAsks.clear();
    seam.iconChoices = {{true, shell, 77}};
    vx::cmdChange_Click(h);
    ASSERT_EQ(seam.iconAsks.size(), c.start.empty() ? 0u : 1u) << c.path;
    if (c.start.empty()) continue;
    EXPECT_EQ(seam.iconAsks[0].file + "," + std::to_string(seam.iconAsks[0].index), c.start);
    EXPECT_EQ(h.treeRefreshes, 1);  // written at once: the tree refreshes, Apply stays off
    EXPECT_FALSE(h.applyOn);
  }
  EXPECT_EQ(h.At(vx::kTabDrives, "Hard Drive"), shell + ",9");
}

TEST_F(Edits, DefaultIconRestoresTheWindowsDefaultInTheList) {
  FakeHost& h = *host;
  const std::string sys = vxtest::SystemFolder();
  struct { int tab; const char* key; std::string location; } cases[] = {
      {vx::kTabDesktop, "My Computer", vxtest::WindowsFolder() + "\\explorer.exe,0"},
      {vx::kTabDesktop, "In Box", sys + "\\cool.dll,30"},
      {vx::kTabStart, "Log Off...", shell + ",44"},
      {vx::kTabFolders, "Printers", shell + ",52"},
      {vx::kTabDrives, "Hard Drive", shell + ",8"},
      {vx::kTabSystem, "MS-DOS Batch File", shell + ",65"},
      {vx::kTabSystem, "Zip File", shell + ",5"},  // no default: keeps its icon, no mark
  };
  for (const auto& c : cases) {
    h.List(c.tab)->Change(c.key, shell, 5);
    h.Select(c.tab, c.key);
    vx::cmdDefault_Click(h);
    EXPECT_EQ(h.At(c.tab, c.key), c.location) << c.key;
    const bool restored = c.location != shell + ",5";
    EXPECT_EQ(h.info, restored ? c.location : shell + ",5") << c.key;
    EXPECT_EQ(h.pending && h.applyOn, restored) << c.key;
  }
}

TEST_F(Edits, PointersChooseACursorFileAndGoBackToTheDefault) {
  FakeHost& h = *host;
  h.Select(vx::kTabPointers, "Busy");
  seam.files = {std::string("C:\\vxtest\\busy.ani"), std::nullopt};
  vx::cmdChange_Click(h);
  static constexpr char kFilter[] =
      "Cursor Files\0*.cur;*.ani\0Standard Cursors (*.cur)\0*.cur\0Animated Cursors (*.ani)\0*.ani\0";
  ASSERT_EQ(seam.fileDialogs.size(), 1u);
  EXPECT_EQ(seam.fileDialogs[0].title, "Browse for Pointers");
  EXPECT_EQ(seam.fileDialogs[0].filter, std::string(kFilter, sizeof kFilter - 1));
  EXPECT_EQ(seam.fileDialogs[0].initialFile, "");  // "Windows Default Cursor" names no file
  EXPECT_EQ(h.At(vx::kTabPointers, "Busy"), "C:\\vxtest\\busy.ani,0");
  EXPECT_EQ(h.info, "C:\\vxtest\\busy.ani,0");
  EXPECT_TRUE(h.applyOn);
  EXPECT_FALSE(h.pending);
  // The next dialog starts from the shown file; cancelling keeps the item.
  vx::cmdChange_Click(h);
  EXPECT_EQ(seam.fileDialogs[1].initialFile, "C:\\vxtest\\busy.ani");
  EXPECT_EQ(h.At(vx::kTabPointers, "Busy"), "C:\\vxtest\\busy.ani,0");

  for (auto [key, n] : {std::pair{"Busy", 4}, {"Hand", 15}}) {
    h.List(vx::kTabPointers)->Change(key, "C:\\vxtest\\other.cur", 0);
    h.Select(vx::kTabPointers, key);
    vx::cmdDefault_Click(h);
    EXPECT_EQ(h.At(vx::kTabPointers, key), h.env.exePath + "," + std::to_string(n));
    EXPECT_EQ(h.info, "Windows Default Cursor");
    EXPECT_EQ(h.defaultOn, false);
    EXPECT_TRUE(h.applyOn);
  }
}

TEST_F(Edits, RenameSetsTheCaptionOnly) {
  FakeHost& h = *host;
  ui::ListBoxIcons& desk = *h.List(vx::kTabDesktop);
  h.Select(vx::kTabDesktop, "Recycle Bin (full)");
  seam.names = {std::string("Bin")};
  vx::cmdRename_Click(h);
  ASSERT_EQ(seam.nameAsks.size(), 1u);
  EXPECT_EQ(seam.nameAsks[0].label, "Type a new name for Recycle Bin (full)");
  EXPECT_EQ(seam.nameAsks[0].text, "Recycle Bin");
  EXPECT_EQ(seam.nameAsks[0].emptyReset, "Recycle Bin (full)");
  EXPECT_EQ(desk.ItemCaption("Recycle Bin (empty)") + "|" + desk.ItemCaption("Recycle Bin (full)"),
            "Bin (empty)|Bin (full)");
  EXPECT_EQ(desk.Key(6) + "|" + desk.Key(7), "Recycle Bin (empty)|Recycle Bin (full)");
  EXPECT_TRUE(h.pending && h.applyOn);

  // Cancelled and unchanged names leave no mark; a new one changes the caption but not the icon.
  const std::string icon = h.At(vx::kTabDesktop, "My Computer");
  h.Select(vx::kTabDesktop, "My Computer");
  seam.names = {std::nullopt, std::string("My Computer"), std::string("Work Box")};
  vx::cmdRename_Click(h);
  vx::cmdRename_Click(h);
  EXPECT_FALSE(h.pending || h.applyOn);
  vx::cmdRename_Click(h);
  EXPECT_EQ(seam.nameAsks.back().label, "Type a new name for My Computer");
  EXPECT_EQ(seam.nameAsks.back().text, "My Computer");
  EXPECT_EQ(desk.ItemCaption("My Computer"), "Work Box");
  EXPECT_EQ(h.At(vx::kTabDesktop, "My Computer"), icon);
  EXPECT_TRUE(h.pending && h.applyOn);

  // Items the shell does not name from a class key are never renamed.
  h.Select(vx::kTabStart, "Programs");
  vx::cmdRename_Click(h);
  EXPECT_EQ(seam.nameAsks.size(), 4u);
}

}  // namespace
