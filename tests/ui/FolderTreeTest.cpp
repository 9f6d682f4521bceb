// The folder tree on the Explorer tab and the splitter rules beside it.
#include <windows.h>
#include <commctrl.h>

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "UiTest.h"
#include "ui/FolderTree.h"
#include "ui/Splitter.h"

namespace {

namespace fs = std::filesystem;

TEST(SplitterRules, DragKeepsTheTreeBetweenTheLimits) {
  const struct { int width, x, expected; } cases[] = {
      {3375, 0, 3375},    {3375, 1, 3376},    {3375, -1, 3375},   {3375, -500, 3375},
      {4000, -624, 3376}, {4000, -625, 3375}, {4000, -626, 3375}, {4000, 815, 4815},
      {4000, 816, 4000},  {4000, 3000, 4000}, {4815, 1, 4815},    {4815, -15, 4800},
      {4814, 1, 4815},    {4814, 2, 4814},    {4094, 1, 4095},    {3376, -1, 3375},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ui::SplitterDragWidth(c.width, c.x), c.expected) << c.width << " + " << c.x;
}

TEST(SplitterRules, DoubleClickSnapsToTheNearerLimit) {
  const std::pair<int, int> cases[] = {{3375, 4815}, {3376, 3375}, {4094, 3375}, {4095, 4815},
                                       {4814, 4815}, {4815, 3375}, {4816, 4815}, {3000, 3375}};
  for (auto [width, expected] : cases) EXPECT_EQ(ui::SplitterSnapWidth(width), expected) << width;
}

TEST(SplitterRules, BarFollowsTheTreesRightEdge) {
  EXPECT_EQ(ui::SplitterLeft(120, 3375), 3445);
  EXPECT_EQ(ui::SplitterLeft(0, 4815), 4765);
}

// C:\vxtree, made fresh for each test and removed afterwards.
class FolderTreeTest : public ::testing::Test {
 protected:
  const std::string base = "C:\\vxtree";
  void SetUp() override {
    std::error_code ec;
    fs::remove_all(base, ec);
    Make("A\\B");
    ASSERT_TRUE(tree.Create(host.hwnd(), 100, 0, 0, 320, 440));
    tree.Click = [this] { ++clicks; };
  }
  void TearDown() override {
    std::error_code ec;
    fs::remove_all(base, ec);
  }
  void Make(const std::string& rel) { fs::create_directories(base + "\\" + rel); }
  std::string Text(HTREEITEM item) {
    char buf[MAX_PATH] = {};
    TVITEMA tvi{TVIF_TEXT, item, 0, 0, buf, sizeof buf, 0, 0, 0, 0};
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
    HTREEITEM c = TreeView_GetChild(tree.hwnd(), parent);
    while (c && Text(c) != name) c = TreeView_GetNextSibling(tree.hwnd(), c);
    return c;
  }
  HTREEITEM VxTree() {
    for (HTREEITEM r = TreeView_GetRoot(tree.hwnd()); r; r = TreeView_GetNextSibling(tree.hwnd(), r))
      if (Text(r).ends_with("(C:)")) return Child(r, "vxtree");
    return nullptr;
  }

  vxtest::HostWindow host{420, 480};
  ui::FolderTree tree;
  int clicks = 0;
};

TEST_F(FolderTreeTest, SetPathSelectsAndPathReadsBack) {
  EXPECT_EQ(tree.Path(), "");
  const std::pair<std::string, std::string> cases[] = {
      {"C:\\vxtree\\A\\B", "C:\\vxtree\\A\\B"},
      {"c:\\VXTREE\\a\\", "C:\\vxtree\\A"},  // the folders' own spelling, no trailing backslash
      {"C:\\", "C:\\"},
      {"C:", "C:\\"},
      {"C:\\vxtree", "C:\\vxtree"},
  };
  for (const auto& [set, path] : cases) {
    EXPECT_TRUE(tree.SetPath(set)) << set;
    EXPECT_EQ(tree.Path(), path) << set;
  }
  // Paths that are not there leave the selection alone.
  for (const char* missing : {"C:\\vxtree\\nothing", "C:\\vxtree\\A\\B\\C", "", "vxtree", "Q:\\"}) {
    EXPECT_FALSE(tree.SetPath(missing)) << missing;
    EXPECT_EQ(tree.Path(), "C:\\vxtree") << missing;
  }
}

TEST_F(FolderTreeTest, ClickFiresOncePerSelectionChange) {
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A"));
  EXPECT_EQ(clicks, 1);
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A"));  // already selected
  EXPECT_EQ(clicks, 1);
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A\\B"));
  EXPECT_EQ(clicks, 2);
  // The keyboard moves the selection too: Left goes to the parent folder.
  std::string seenInClick;
  tree.Click = [&] { ++clicks; seenInClick = tree.Path(); };
  SetFocus(tree.hwnd());
  SendMessageA(tree.hwnd(), WM_KEYDOWN, VK_LEFT, 0);
  EXPECT_EQ(clicks, 3);
  EXPECT_EQ(seenInClick, "C:\\vxtree\\A");
}

TEST_F(FolderTreeTest, RefreshAddsNewFoldersAndDropsDeletedOnes) {
  Make("Gone");
  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A\\B"));
  HTREEITEM vx = VxTree();
  ASSERT_EQ(Children(vx), (std::vector<std::string>{"A", "Gone"}));
  clicks = 0;
  Make("New");
  Make("A\\Added");
  fs::remove_all(base + "\\Gone");
  tree.Refresh();
  EXPECT_EQ(Children(vx), (std::vector<std::string>{"A", "New"}));
  EXPECT_EQ(Children(Child(vx, "A")), (std::vector<std::string>{"Added", "B"}));
  EXPECT_EQ(tree.Path(), "C:\\vxtree\\A\\B");
  EXPECT_EQ(clicks, 0);  // the selection did not change
  // When the selected folder itself goes, the nearest folder above it is selected, with a Click.
  fs::remove_all(base + "\\A");
  tree.Refresh();
  EXPECT_EQ(tree.Path(), "C:\\vxtree");
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(Children(vx), std::vector<std::string>{"New"});
}

}  // namespace
