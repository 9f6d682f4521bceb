#include <windows.h>
#include <commctrl.h>

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "registry/modRegistry.h"
#include "support/RegistryScope.h"
#include "ui/FolderTree.h"
#include "ui/Splitter.h"
#include "ui/win.h"

namespace {

namespace fs = std::filesystem;

TEST(SplitterRules, DragKeepsTheTreeBetweenTheLimits) {
  struct Case { int width, x, expected; };
  const Case cases[] = {
      {3375, 0, 3375},    {3375, 1, 3376},    {3375, -1, 3375},   {3375, -500, 3375},
      {4000, -624, 3376}, {4000, -625, 3375}, {4000, -626, 3375}, {4000, 815, 4815},
      {4000, 816, 4000},  {4000, 3000, 4000}, {4815, 1, 4815},    {4815, -15, 4800},
      {4814, 1, 4815},    {4814, 2, 4814},    {4094, 1, 4095},    {3376, -1, 3375},
  };
  for (const Case& c : cases)
    EXPECT_EQ(ui::SplitterDragWidth(c.width, c.x), c.expected) << c.width << " + " << c.x;
}

TEST(SplitterRules, DoubleClickSnapsToTheNearerLimit) {
  struct Case { int width, expected; };
  const Case cases[] = {
      {3375, 4815}, {3376, 3375}, {4094, 3375}, {4095, 4815},
      {4814, 4815}, {4815, 3375}, {4816, 4815}, {3000, 3375},
  };
  for (const Case& c : cases) EXPECT_EQ(ui::SplitterSnapWidth(c.width), c.expected) << c.width;
}

TEST(SplitterRules, BarFollowsTheTreesRightEdge) {
  EXPECT_EQ(ui::SplitterLeft(120, 3375), 3445);
  EXPECT_EQ(ui::SplitterLeft(0, 4815), 4765);
}

class Host : public ui::Window {};

// A top-level window to hold the controls under test.
struct HostWindow {
  Host host;
  HostWindow() {
    host.Create("VxTestTreeHost", 0, WS_OVERLAPPEDWINDOW | WS_VISIBLE, "Folder tree", 40, 40, 420, 480,
                nullptr, nullptr);
  }
};

TEST(SplitterBar, ReportsPressMoveReleaseAndDoubleClick) {
  HostWindow w;
  ui::Splitter bar;
  ASSERT_TRUE(bar.Create(w.host.hwnd(), 101, 100, 0, 4, 300));
  std::vector<std::string> seen;
  bar.Pressed = [&](int x) { seen.push_back("press " + std::to_string(x)); };
  bar.Moved = [&](int x) { seen.push_back("move " + std::to_string(x)); };
  bar.Released = [&](int x) { seen.push_back("release " + std::to_string(x)); };
  bar.DoubleClicked = [&] { seen.push_back("double"); };

  SendMessageA(bar.hwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(2, 5));  // not dragging: not reported
  SendMessageA(bar.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 5));
  EXPECT_TRUE(bar.dragging());
  EXPECT_EQ(GetCapture(), bar.hwnd());
  SendMessageA(bar.hwnd(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(static_cast<WORD>(-7), 5));
  SendMessageA(bar.hwnd(), WM_LBUTTONUP, 0, MAKELPARAM(30, 5));
  EXPECT_FALSE(bar.dragging());
  EXPECT_NE(GetCapture(), bar.hwnd());
  SendMessageA(bar.hwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(9, 5));
  SendMessageA(bar.hwnd(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(2, 5));

  // A drag that loses the mouse to another window ends as well.
  SendMessageA(bar.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 5));
  SetCapture(w.host.hwnd());
  EXPECT_FALSE(bar.dragging());
  ReleaseCapture();

  const std::vector<std::string> expected = {"press 2", "move -7", "release 30", "double", "press 1",
                                             "release 0"};
  EXPECT_EQ(seen, expected);
}

TEST(FolderListing, VisibilityFollowsExplorersHiddenChoices) {
  const DWORD H = FILE_ATTRIBUTE_HIDDEN, S = FILE_ATTRIBUTE_SYSTEM, D = FILE_ATTRIBUTE_DIRECTORY;
  struct Case { DWORD attributes; bool showHidden, showSuper, expected; };
  const Case cases[] = {
      {D, false, false, true},         {D | S, false, false, true},  {D | H, false, false, false},
      {D | H, true, false, true},      {D | H | S, true, false, false}, {D | H | S, true, true, true},
      {D | H | S, false, true, false}, {D | FILE_ATTRIBUTE_READONLY, false, false, true},
  };
  for (const Case& c : cases)
    EXPECT_EQ(ui::FolderVisible(c.attributes, c.showHidden, c.showSuper), c.expected)
        << std::hex << c.attributes << " " << c.showHidden << c.showSuper;
}

TEST(FolderListing, DriveCaptions) {
  EXPECT_EQ(ui::DriveCaption("C:\\", ""), "(C:)");
  EXPECT_EQ(ui::DriveCaption("D:\\", "System"), "System (D:)");
}

// C:\vxtree, made fresh for each test and removed afterwards.
class FolderTreeTest : public ::testing::Test {
 protected:
  const std::string base = "C:\\vxtree";
  void SetUp() override {
    std::error_code ec;
    fs::remove_all(base, ec);
    Make("A\\B");
  }
  void TearDown() override {
    std::error_code ec;
    fs::remove_all(base, ec);
  }
  void Make(const std::string& rel) { fs::create_directories(base + "\\" + rel); }
  void Remove(const std::string& rel) {
    std::error_code ec;
    fs::remove_all(base + "\\" + rel, ec);
  }

  std::string Text(HTREEITEM item) {
    char buf[MAX_PATH] = {};
    TVITEMA tvi{};
    tvi.mask = TVIF_TEXT;
    tvi.hItem = item;
    tvi.pszText = buf;
    tvi.cchTextMax = sizeof buf;
    TreeView_GetItem(tree.hwnd(), &tvi);
    return buf;
  }
  std::vector<std::string> Children(HTREEITEM parent) {
    std::vector<std::string> names;
    for (HTREEITEM c = TreeView_GetChild(tree.hwnd(), parent); c; c = TreeView_GetNextSibling(tree.hwnd(), c))
      names.push_back(Text(c));
    return names;
  }
  HTREEITEM Child(HTREEITEM parent, const std::string& name) {
    for (HTREEITEM c = TreeView_GetChild(tree.hwnd(), parent); c; c = TreeView_GetNextSibling(tree.hwnd(), c))
      if (Text(c) == name) return c;
    return nullptr;
  }
  HTREEITEM DriveC() {
    for (HTREEITEM r = TreeView_GetRoot(tree.hwnd()); r; r = TreeView_GetNextSibling(tree.hwnd(), r))
      if (Text(r).ends_with("(C:)")) return r;
    return nullptr;
  }
  bool Expanded(HTREEITEM item) {
    return (TreeView_GetItemState(tree.hwnd(), item, TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
  }
  void CreateTree() {
    ASSERT_TRUE(tree.Create(w.host.hwnd(), 100, 0, 0, 320, 440));
    tree.Click = [this] { ++clicks; };
  }

  HostWindow w;
  ui::FolderTree tree;
  int clicks = 0;
};

TEST_F(FolderTreeTest, ListsTheDrivesInOrder) {
  CreateTree();
  std::vector<std::string> expected;
  char buf[512] = {};
  GetLogicalDriveStringsA(sizeof buf, buf);
  for (const char* root = buf; *root; root += lstrlenA(root) + 1)
    expected.push_back(std::string("(") + root[0] + ":)");
  std::vector<std::string> shown;
  for (HTREEITEM r = TreeView_GetRoot(tree.hwnd()); r; r = TreeView_GetNextSibling(tree.hwnd(), r)) {
    std::string caption = Text(r);
    shown.push_back(caption.substr(caption.size() - 4));
  }
  EXPECT_EQ(shown, expected);
  EXPECT_NE(DriveC(), nullptr);
  EXPECT_EQ(tree.Path(), "");
}

TEST_F(FolderTreeTest, SetPathSelectsAndPathReadsBack) {
  CreateTree();
  struct Case { std::string set, path; };
  const Case cases[] = {
      {"C:\\vxtree\\A\\B", "C:\\vxtree\\A\\B"},
      {"c:\\VXTREE\\a\\", "C:\\vxtree\\A"},  // the folders' own spelling, no trailing backslash
      {"C:\\", "C:\\"},
      {"C:", "C:\\"},
      {"C:\\vxtree", "C:\\vxtree"},
  };
  for (const Case& c : cases) {
    EXPECT_TRUE(tree.SetPath(c.set)) << c.set;
    EXPECT_EQ(tree.Path(), c.path) << c.set;
  }
  // Paths that are not there leave the selection alone.
  for (const char* missing : {"C:\\vxtree\\nothing", "C:\\vxtree\\A\\B\\C", "", "vxtree", "Q:\\"}) {
    EXPECT_FALSE(tree.SetPath(missing)) << missing;
    EXPECT_EQ(tree.Path(), "C:\\vxtree") << missing;
  }
  // The way down is expanded, so the selection is in view.
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A\\B"));
  HTREEITEM vx = Child(DriveC(), "vxtree");
  ASSERT_NE(vx, nullptr);
  EXPECT_TRUE(Expanded(DriveC()));
  EXPECT_TRUE(Expanded(vx));
  EXPECT_TRUE(Expanded(Child(vx, "A")));
}

TEST_F(FolderTreeTest, SubFoldersAreSortedWithoutCaseAndFilesLeftOut) {
  for (const char* name : {"b", "C", "a", "B2", "_x"}) Make(name);
  HANDLE f = CreateFileA("C:\\vxtree\\file.txt", GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  CloseHandle(f);
  Make("hidden");
  SetFileAttributesA("C:\\vxtree\\hidden", FILE_ATTRIBUTE_HIDDEN);

  std::vector<std::string> expected = {"_x", "A", "a", "b", "B2", "C"};
  // "A" and "a" can both exist on a case-sensitive Unix folder only; on Windows "a" is "A".
  if (fs::equivalent("C:\\vxtree\\a", "C:\\vxtree\\A")) expected.erase(expected.begin() + 2);
  EXPECT_EQ(ui::ListSubFolders(base, false, false), expected);
  std::vector<std::string> withHidden = ui::ListSubFolders(base, true, false);
  EXPECT_NE(std::find(withHidden.begin(), withHidden.end(), "hidden"), withHidden.end());

  CreateTree();
  ASSERT_TRUE(tree.SetPath(base));
  HTREEITEM vx = Child(DriveC(), "vxtree");
  TreeView_Expand(tree.hwnd(), vx, TVE_EXPAND);
  EXPECT_EQ(Children(vx), ui::ListSubFolders(base, false, false));
}

TEST_F(FolderTreeTest, ClickFiresOncePerSelectionChange) {
  CreateTree();
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A"));
  EXPECT_EQ(clicks, 1);
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A"));  // already selected
  EXPECT_EQ(clicks, 1);
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A\\B"));
  EXPECT_EQ(clicks, 2);

  // The keyboard moves the selection as in any tree: Left goes to the parent folder.
  std::string seenInClick;
  tree.Click = [&] { ++clicks; seenInClick = tree.Path(); };
  SetFocus(tree.hwnd());
  SendMessageA(tree.hwnd(), WM_KEYDOWN, VK_LEFT, 0);
  EXPECT_EQ(clicks, 3);
  EXPECT_EQ(seenInClick, "C:\\vxtree\\A");
  EXPECT_EQ(tree.Path(), "C:\\vxtree\\A");
}

TEST_F(FolderTreeTest, ExpandingAFolderWithoutSubFoldersDropsItsButton) {
  Make("A\\Leaf");
  CreateTree();
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A\\Leaf"));
  HTREEITEM a = Child(Child(DriveC(), "vxtree"), "A");
  HTREEITEM leaf = Child(a, "Leaf");
  ASSERT_NE(leaf, nullptr);
  TreeView_Expand(tree.hwnd(), leaf, TVE_EXPAND);
  EXPECT_FALSE(Expanded(leaf));
  TVITEMA tvi{};
  tvi.mask = TVIF_CHILDREN;
  tvi.hItem = leaf;
  TreeView_GetItem(tree.hwnd(), &tvi);
  EXPECT_EQ(tvi.cChildren, 0);
}

TEST_F(FolderTreeTest, RefreshAddsAndDropsFoldersKeepingSelectionAndExpansion) {
  Make("Gone");
  Make("Keep\\Inner");
  CreateTree();
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A\\B"));
  HTREEITEM vx = Child(DriveC(), "vxtree");
  ASSERT_EQ(Children(vx), (std::vector<std::string>{"A", "Gone", "Keep"}));
  clicks = 0;

  Make("New");
  Make("A\\Added");
  Remove("Gone");
  tree.Refresh();
  EXPECT_EQ(Children(vx), (std::vector<std::string>{"A", "Keep", "New"}));
  EXPECT_EQ(Children(Child(vx, "A")), (std::vector<std::string>{"Added", "B"}));
  EXPECT_EQ(tree.Path(), "C:\\vxtree\\A\\B");
  EXPECT_TRUE(Expanded(vx));
  EXPECT_TRUE(Expanded(Child(vx, "A")));
  EXPECT_EQ(clicks, 0);  // the selection did not change

  // A collapsed folder is read again when it is next opened.
  HTREEITEM keep = Child(vx, "Keep");
  TreeView_Expand(tree.hwnd(), keep, TVE_EXPAND);
  ASSERT_EQ(Children(keep), std::vector<std::string>{"Inner"});
  TreeView_Expand(tree.hwnd(), keep, TVE_COLLAPSE);
  Make("Keep\\Later");
  tree.Refresh();
  TreeView_Expand(tree.hwnd(), keep, TVE_EXPAND);
  EXPECT_EQ(Children(keep), (std::vector<std::string>{"Inner", "Later"}));

  // When the selected folder itself goes, the nearest folder above it is selected, with a Click.
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A\\B"));
  clicks = 0;
  Remove("A");
  tree.Refresh();
  EXPECT_EQ(tree.Path(), "C:\\vxtree");
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(Children(vx), (std::vector<std::string>{"Keep", "New"}));
}

// Puts the user's Explorer choices back as they were when the test ends.
class ExplorerChoices {
 public:
  static constexpr const char* kKey =
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Advanced";
  ExplorerChoices() {
    for (Saved& v : saved_) v.had = vxtest::ReadRaw(kKey, v.name, v.type, v.bytes);
  }
  ~ExplorerChoices() {
    for (const Saved& v : saved_) v.had ? vxtest::WriteRaw(kKey, v.name, v.type, v.bytes) : Set(v.name, -1);
  }
  // -1 removes the value.
  static void Set(const std::string& name, int value) {
    if (value < 0) modRegistry::DeleteValue(kKey, name);
    else modRegistry::SaveDword(kKey, name, value);
  }

 private:
  struct Saved { std::string name; bool had = false; DWORD type = 0; std::string bytes; };
  Saved saved_[2] = {{"Hidden", false, 0, {}}, {"ShowSuperHidden", false, 0, {}}};
};

// The user's Explorer choices decide which hidden folders show; the tree reads them again on Refresh.
TEST_F(FolderTreeTest, HiddenFoldersFollowTheUsersExplorerChoices) {
  ExplorerChoices keep;
  Make("Hid");
  Make("Prot");
  SetFileAttributesA("C:\\vxtree\\Hid", FILE_ATTRIBUTE_HIDDEN);
  SetFileAttributesA("C:\\vxtree\\Prot", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  ExplorerChoices::Set("Hidden", 2);
  CreateTree();
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A"));
  HTREEITEM vx = Child(DriveC(), "vxtree");

  struct Case { int hidden, super; std::vector<std::string> shown; };
  const Case cases[] = {
      {2, 0, {"A"}},                  // Explorer's default: hidden things stay hidden
      {1, 0, {"A", "Hid"}},           // hidden shown, protected system folders not
      {1, 1, {"A", "Hid", "Prot"}},
      {1, -1, {"A", "Hid", "Prot"}},  // no such choice (Windows 95, 98): showing hidden shows all
      {-1, -1, {"A"}},
  };
  for (const Case& c : cases) {
    ExplorerChoices::Set("Hidden", c.hidden);
    ExplorerChoices::Set("ShowSuperHidden", c.super);
    tree.Refresh();
    EXPECT_EQ(Children(vx), c.shown) << c.hidden << " " << c.super;
  }
}

TEST_F(FolderTreeTest, SetPathFindsAFolderMadeAfterItsParentWasRead) {
  CreateTree();
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A"));
  Make("A\\Fresh");
  EXPECT_TRUE(tree.SetPath("C:\\vxtree\\A\\Fresh"));
  EXPECT_EQ(tree.Path(), "C:\\vxtree\\A\\Fresh");
}

TEST_F(FolderTreeTest, TreeGoesWithItsParentWindow) {
  auto host = std::make_unique<HostWindow>();
  {
    ui::FolderTree t;
    ASSERT_TRUE(t.Create(host->host.hwnd(), 100, 0, 0, 200, 200));
    host.reset();  // the parent is destroyed first; the tree object must cope
    EXPECT_EQ(t.hwnd(), nullptr);
    EXPECT_EQ(t.Path(), "");
    EXPECT_FALSE(t.SetPath("C:\\"));
    t.Refresh();
  }
}

// Shows the tree for a screenshot: run with --gtest_also_run_disabled_tests and VX_SHOT_SECONDS.
TEST_F(FolderTreeTest, DISABLED_Show) {
  Make("Documents");
  Make("Pictures\\Holidays");
  Make("A very long folder name that does not fit into the pane");
  // Laid out as on the Explorer tab: the tree at its narrow width, the bar on its right edge, and a
  // list beside it standing in for the folder's icon list.
  ASSERT_TRUE(tree.Create(w.host.hwnd(), 100, 6, 6, ui::kTreeMinWidth / 15, 420));
  int barLeft = ui::SplitterLeft(6 * 15, ui::kTreeMinWidth) / 15;
  ui::Splitter bar;
  bar.Create(w.host.hwnd(), 101, barLeft, 6, 6, 420);
  CreateWindowExA(WS_EX_CLIENTEDGE, "LISTBOX", "", WS_CHILD | WS_VISIBLE, barLeft + 6, 6, 160, 420,
                  w.host.hwnd(), nullptr, GetModuleHandleA(nullptr), nullptr);
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\Pictures"));
  TreeView_Expand(tree.hwnd(), DriveC(), TVE_EXPAND);
  SetFocus(tree.hwnd());
  const char* s = getenv("VX_SHOT_SECONDS");
  DWORD until = GetTickCount() + 1000u * static_cast<DWORD>(s ? atoi(s) : 5);
  while (GetTickCount() < until) {
    ui::DoEvents();
    Sleep(20);
  }
}

}  // namespace
