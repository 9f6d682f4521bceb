// Change, Default Icon and Rename on real icon lists, with a scripted picker, rename box and file
// dialog, through a host that records what the main window would show.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>

#include "IconFixtures.h"
#include "icons/IconEdits.h"
#include "registry/modRegistry.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"
#include "ui/ListBoxIcons.h"

namespace {

class FakeHost : public vx::EditHost {
 public:
  explicit FakeHost(vx::Environment e) : env(std::move(e)) {
    parent = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 400, 600, nullptr, nullptr,
                             GetModuleHandleA(nullptr), nullptr);
    vx::IconLists lists{};
    for (int t : {2, 3, 4, 5, 6, 7, 9}) {
      owned[t] = std::make_unique<ui::ListBoxIcons>();
      owned[t]->Create(parent, 100 + t, 0, 0, 300, 500);
      lists[t] = owned[t].get();
    }
    catalogue = vx::Add_Icons(env, lists);
  }
  ~FakeHost() override {
    for (auto& l : owned) l.reset();
    DestroyWindow(parent);
  }

  HWND Owner() override { return parent; }
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

  // Selects an item as the user would: the list's selection, then the selection handler.
  void Select(int t, const std::string& key) {
    tab = t;
    List(t)->SelItemKey(key);
    vx::lstbxIcons_Click(*this, t);
  }
  void ClearMarks() {
    applyOn = pending = false;
    defaultOn.reset();
    renameOn.reset();
    treeRefreshes = 0;
  }
  std::string At(int t, const std::string& key) { return List(t)->ItemFullPath(key); }

  vx::Environment env;
  HWND parent = nullptr;
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
    // Classes for two document types, so that their rows are listed.
    modRegistry::SaveString("HKEY_CLASSES_ROOT\\.zip", "", "vxtest.zip");
    modRegistry::SaveString("HKEY_CLASSES_ROOT\\.txt", "", "vxtest.txt");
    host = std::make_unique<FakeHost>(vxtest::Env("Win98", "4.72.3110.0", true));
  }
  vxtest::SavedValues saved{vxtest::CatalogueValues()};
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
  std::unique_ptr<FakeHost> host;
  const std::string shell = vxtest::SystemFolder() + "\\shell32.dll";
};

TEST_F(Edits, SelectionShowsTheLocationAndSetsTheButtons) {
  FakeHost& h = *host;
  h.List(vx::kTabPointers)->Change("Move", "C:\\vxtest\\move.cur", 0);
  struct Case {
    int tab;
    const char* key;
    std::string info;  // "" = the item's full location
    std::optional<bool> defaultOn, renameOn;
  } cases[] = {
      {vx::kTabDesktop, "My Computer", "", std::nullopt, true},
      {vx::kTabDesktop, "Recycle Bin (full)", "", std::nullopt, true},
      {vx::kTabFolders, "Control Panel", "", std::nullopt, true},
      {vx::kTabStart, "Programs", "", true, false},
      {vx::kTabFolders, "Closed Folder", "", true, false},
      {vx::kTabSystem, "Zip File", "", false, std::nullopt},
      {vx::kTabPointers, "Busy", "Windows Default Cursor", false, false},
      {vx::kTabPointers, "Move", "C:\\vxtest\\move.cur", true, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.key);
    h.ClearMarks();
    h.Select(c.tab, c.key);
    EXPECT_EQ(h.List(c.tab)->SeledKey(), c.key);
    EXPECT_EQ(h.info, c.info.empty() ? h.At(c.tab, c.key) : c.info);
    EXPECT_EQ(h.defaultOn, c.defaultOn);
    EXPECT_EQ(h.renameOn, c.renameOn);
    EXPECT_FALSE(h.applyOn);
  }
}

TEST_F(Edits, PagingAndArrowKeysRunTheSelectionHandler) {
  FakeHost& h = *host;
  h.tab = vx::kTabDrives;
  h.List(vx::kTabDrives)->SelItemKey("CD-ROM Drive");
  for (int code : {33, 34, 38, 40, 13, 35, 36, 37, 39, 46}) {
    h.info = "unchanged";
    vx::lstbxIcons_KeyDown(h, vx::kTabDrives, code, 0);
    const bool runs = code == 33 || code == 34 || code == 38 || code == 40;
    EXPECT_EQ(h.info, runs ? h.At(vx::kTabDrives, "CD-ROM Drive") : "unchanged") << code;
  }
}

TEST_F(Edits, ChangeTakesThePickersChoice) {
  FakeHost& h = *host;
  h.Select(vx::kTabDrives, "Hard Drive");
  const std::string before = h.info;
  ASSERT_EQ(before, shell + ",8");

  // The same location as shown, then a cancelled picker: no edit either time.
  seam.iconChoices = {{true, shell, 8}, {false, "", 0}};
  h.ClearMarks();
  vx::cmdChange_Click(h);
  vx::cmdChange_Click(h);
  ASSERT_EQ(seam.iconAsks.size(), 2u);
  EXPECT_EQ(seam.iconAsks[0].file, shell);
  EXPECT_EQ(seam.iconAsks[0].index, 8);
  EXPECT_EQ(h.At(vx::kTabDrives, "Hard Drive"), before);
  EXPECT_FALSE(h.applyOn);
  EXPECT_FALSE(h.pending);

  // A new location changes the item only inside its list.
  seam.iconChoices = {{true, shell, 41}};
  vx::cmdChange_Click(h);
  EXPECT_EQ(h.At(vx::kTabDrives, "Hard Drive"), shell + ",41");
  EXPECT_EQ(h.info, shell + ",41");
  EXPECT_TRUE(h.applyOn);
  EXPECT_TRUE(h.pending);
  EXPECT_EQ(h.treeRefreshes, 0);
  EXPECT_EQ(h.At(vx::kTabDrives, "RAM Drive"), shell + ",12");

  // "Zip File" has no default but can be changed.
  h.Select(vx::kTabSystem, "Zip File");
  seam.iconChoices = {{true, shell, 70}};
  vx::cmdChange_Click(h);
  EXPECT_EQ(h.At(vx::kTabSystem, "Zip File"), shell + ",70");

  // A double-click is Change after a short pause.
  h.Select(vx::kTabOthers, "Audio CD");
  seam.iconChoices = {{true, shell, 3}};
  vx::lstbxIcons_DblClick(h, vx::kTabOthers);
  EXPECT_EQ(seam.iconAsks.back().index, 40);
  EXPECT_EQ(h.At(vx::kTabOthers, "Audio CD"), shell + ",3");
}

TEST_F(Edits, ChangeOnTheExplorerTabStartsFromTheKindsIcon) {
  FakeHost& h = *host;
  h.List(vx::kTabDrives)->Change("Hard Drive", shell, 9);
  h.List(vx::kTabFolders)->Change("Closed Folder", shell, 4);
  struct Case {
    std::string info, path;
    bool asked;
    std::string file;
    int index;
  } cases[] = {
      {"", "C:\\vxtest", false, "", 0},                          // nothing selected
      {"", "C:\\", true, shell, 9},                              // a drive root
      {"Windows Default Icon", "D:\\", true, shell, 9},
      {"Windows Default Icon", "C:\\vxtest\\sub", true, shell, 4},
      {"C:\\vxtest\\own.ico,2", "C:\\vxtest", true, "C:\\vxtest\\own.ico", 2},  // already customised
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.info + " / " + c.path);
    h.tab = vx::kTabExplorer;
    h.info = c.info;
    h.explorerPath = c.path;
    h.ClearMarks();
    seam.iconAsks.clear();
    seam.iconChoices = {{true, shell, 77}};
    vx::cmdChange_Click(h);
    ASSERT_EQ(seam.iconAsks.size(), c.asked ? 1u : 0u);
    if (!c.asked) {
      EXPECT_EQ(h.treeRefreshes, 0);
      continue;
    }
    EXPECT_EQ(seam.iconAsks[0].file, c.file);
    EXPECT_EQ(seam.iconAsks[0].index, c.index);
    // Written at once elsewhere: the tree refreshes, Apply stays off.
    EXPECT_EQ(h.treeRefreshes, 1);
    EXPECT_FALSE(h.applyOn);
    EXPECT_TRUE(h.pending);
  }
  EXPECT_EQ(h.At(vx::kTabDrives, "Hard Drive"), shell + ",9");
  EXPECT_EQ(h.At(vx::kTabFolders, "Closed Folder"), shell + ",4");
}

TEST_F(Edits, DefaultIconRestoresTheWindowsDefaultInTheList) {
  FakeHost& h = *host;
  const std::string sys = vxtest::SystemFolder(), win = vxtest::WindowsFolder();
  struct Case {
    int tab;
    const char* key;
    std::string location;
  } cases[] = {
      {vx::kTabDesktop, "My Computer", win + "\\explorer.exe,0"},
      {vx::kTabDesktop, "In Box", sys + "\\cool.dll,30"},
      {vx::kTabDesktop, "Recycle Bin (full)", shell + ",32"},
      {vx::kTabStart, "Log Off...", shell + ",44"},
      {vx::kTabFolders, "Printers", shell + ",52"},
      {vx::kTabFolders, "Subscriptions", sys + "\\Webcheck.dll,0"},
      {vx::kTabDrives, "Floppy Drive 3.5", shell + ",6"},
      {vx::kTabOthers, "Sharing Overlay", shell + ",28"},
      {vx::kTabSystem, "Text Document", shell + ",64"},
      {vx::kTabSystem, "Default Document", shell + ",1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.key);
    h.List(c.tab)->Change(c.key, shell, 99);
    h.Select(c.tab, c.key);
    h.ClearMarks();
    vx::cmdDefault_Click(h);
    EXPECT_EQ(h.At(c.tab, c.key), c.location);
    EXPECT_EQ(h.info, c.location);
    EXPECT_TRUE(h.pending);
    EXPECT_TRUE(h.applyOn);
  }

  // "Zip File" has no default: nothing happens.
  h.List(vx::kTabSystem)->Change("Zip File", shell, 5);
  h.Select(vx::kTabSystem, "Zip File");
  h.ClearMarks();
  vx::cmdDefault_Click(h);
  EXPECT_EQ(h.At(vx::kTabSystem, "Zip File"), shell + ",5");
  EXPECT_FALSE(h.applyOn);
  EXPECT_FALSE(h.pending);
}

TEST_F(Edits, PointersChooseACursorFileAndGoBackToTheDefault) {
  FakeHost& h = *host;
  const std::string exe = h.env.exePath;
  h.Select(vx::kTabPointers, "Busy");
  ASSERT_EQ(h.info, "Windows Default Cursor");
  h.ClearMarks();

  seam.files = {std::string("C:\\vxtest\\busy.ani")};
  vx::cmdChange_Click(h);
  ASSERT_EQ(seam.fileDialogs.size(), 1u);
  EXPECT_EQ(seam.fileDialogs[0].title, "Browse for Pointers");
  static constexpr char kFilter[] =
      "Cursor Files\0*.cur;*.ani\0Standard Cursors (*.cur)\0*.cur\0Animated Cursors (*.ani)\0*.ani\0";
  EXPECT_EQ(seam.fileDialogs[0].filter, std::string(kFilter, sizeof kFilter - 1));
  EXPECT_EQ(seam.fileDialogs[0].initialFile, "");  // "Windows Default Cursor" names no file
  EXPECT_TRUE(seam.iconAsks.empty());
  EXPECT_EQ(h.At(vx::kTabPointers, "Busy"), "C:\\vxtest\\busy.ani,0");
  EXPECT_EQ(h.info, "C:\\vxtest\\busy.ani,0");
  EXPECT_TRUE(h.applyOn);
  EXPECT_FALSE(h.pending);

  // The next dialog starts from the shown file; cancelling keeps the item.
  seam.files = {std::nullopt};
  vx::cmdChange_Click(h);
  ASSERT_EQ(seam.fileDialogs.size(), 2u);
  EXPECT_EQ(seam.fileDialogs[1].initialFile, "C:\\vxtest\\busy.ani");
  EXPECT_EQ(h.At(vx::kTabPointers, "Busy"), "C:\\vxtest\\busy.ani,0");

  struct { const char* key; int n; } defaults[] = {{"Busy", 4}, {"Normal Select", 1}, {"Hand", 15}};
  for (const auto& d : defaults) {
    SCOPED_TRACE(d.key);
    h.List(vx::kTabPointers)->Change(d.key, "C:\\vxtest\\other.cur", 0);
    h.Select(vx::kTabPointers, d.key);
    ASSERT_EQ(h.defaultOn, true);
    h.ClearMarks();
    vx::cmdDefault_Click(h);
    EXPECT_EQ(h.At(vx::kTabPointers, d.key), exe + "," + std::to_string(d.n));
    EXPECT_EQ(h.info, "Windows Default Cursor");
    EXPECT_EQ(h.defaultOn, false);
    EXPECT_TRUE(h.applyOn);
  }
}

TEST_F(Edits, RenameSetsTheCaptionOnly) {
  FakeHost& h = *host;
  ui::ListBoxIcons& desk = *h.List(vx::kTabDesktop);

  // The Recycle Bin's two rows share one name.
  h.Select(vx::kTabDesktop, "Recycle Bin (full)");
  h.ClearMarks();
  seam.names = {std::string("Bin")};
  vx::cmdRename_Click(h);
  ASSERT_EQ(seam.nameAsks.size(), 1u);
  EXPECT_EQ(seam.nameAsks[0].label, "Type a new name for Recycle Bin (full)");
  EXPECT_EQ(seam.nameAsks[0].text, "Recycle Bin");
  EXPECT_EQ(seam.nameAsks[0].emptyReset, "Recycle Bin (full)");
  EXPECT_EQ(desk.ItemCaption("Recycle Bin (empty)"), "Bin (empty)");
  EXPECT_EQ(desk.ItemCaption("Recycle Bin (full)"), "Bin (full)");
  EXPECT_EQ(desk.Key(6), "Recycle Bin (empty)");
  EXPECT_EQ(desk.Key(7), "Recycle Bin (full)");
  EXPECT_TRUE(h.pending);
  EXPECT_TRUE(h.applyOn);

  h.Select(vx::kTabDesktop, "Recycle Bin (empty)");
  seam.names = {std::nullopt};
  vx::cmdRename_Click(h);
  EXPECT_EQ(seam.nameAsks[1].text, "Bin");

  // Cancelled and unchanged names leave no mark; the icon stays whatever the caption.
  const std::string icon = h.At(vx::kTabDesktop, "My Computer");
  h.Select(vx::kTabDesktop, "My Computer");
  h.ClearMarks();
  seam.names = {std::nullopt, std::string("My Computer"), std::string("Work Box")};
  vx::cmdRename_Click(h);
  vx::cmdRename_Click(h);
  EXPECT_FALSE(h.pending);
  EXPECT_FALSE(h.applyOn);
  EXPECT_EQ(desk.ItemCaption("My Computer"), "My Computer");
  vx::cmdRename_Click(h);
  EXPECT_EQ(seam.nameAsks.back().label, "Type a new name for My Computer");
  EXPECT_EQ(seam.nameAsks.back().text, "My Computer");
  EXPECT_EQ(desk.ItemCaption("My Computer"), "Work Box");
  EXPECT_EQ(h.At(vx::kTabDesktop, "My Computer"), icon);
  EXPECT_TRUE(h.pending);
  EXPECT_TRUE(h.applyOn);

  // An item the shell does not name from a class key is not renamed, even with the button left on.
  const size_t asked = seam.nameAsks.size();
  h.Select(vx::kTabStart, "Programs");
  seam.names = {std::string("Apps")};
  vx::cmdRename_Click(h);
  EXPECT_EQ(seam.nameAsks.size(), asked);
  EXPECT_EQ(h.List(vx::kTabStart)->ItemCaption("Programs"), "Programs");
}

}  // namespace
