// The folder tree on the Explorer tab and the splitter rules beside it.
#include "UiTest.h"
#include <commctrl.h>

#include <filesystem>

#include "ui/FolderTree.h"
#include "ui/Splitter.h"

namespace {

namespace fs = std::filesystem;

// The tree is kept between 3375 and 4815 twips; a drag past the maximum is refused outright.
TEST(SplitterRules, DragClampsDoubleClickSnapsAndTheBarFollowsTheTree) {
  const struct { int width, x, expected; } drags[] = {
      {3375, -1, 3375}, {4000, -624, 3376}, {4000, -625, 3375}, {4000, 815, 4815}, {4000, 816, 4000}, {4815, -15, 4800},
  };
  for (const auto& c : drags) EXPECT_EQ(ui::SplitterDragWidth(c.width, c.x), c.expected) << c.width << " + " << c.x;
  const std::pair<int, int> snaps[] = {{3000, 3375}, {3375, 4815}, {4094, 3375}, {4095, 4815}, {4816, 4815}};
  for (auto [width, expected] : snaps) EXPECT_EQ(ui::SplitterSnapWidth(width), expected) << width;
  EXPECT_EQ(ui::SplitterLeft(120, 3375), 3445);
}

// C:\vxtree, made fresh for the test and removed afterwards.
class FolderTreeTest : public ::testing::Test {
 protected:
  const std::string base = "C:\\vxtree";
  void SetUp() override {
    TearDown();
    Make("A\\B"), Make("Gone");
    ASSERT_TRUE(tree.Create(host.hwnd(), 100, 0, 0, 320, 440));
    tree.Click = [this] { ++clicks; };
  }
  void TearDown() override { std::error_code ec; fs::remove_all(base, ec); }
  void Make(const std::string& rel) { fs::create_directories(base + "\\" + rel); }
  std::vector<std::string> Children(HTREEITEM parent) {
    std::vector<std::string> names;
    for (HTREEITEM c = TreeView_GetChild(tree.hwnd(), parent); c; c = TreeView_GetNextSibling(tree.hwnd(), c)) {
      char buf[MAX_PATH] = {};
      TVITEMA tvi{TVIF_TEXT, c, 0, 0, buf, sizeof buf, 0, 0, 0, 0};
      TreeView_GetItem(tree.hwnd(), &tvi);
      names.push_back(buf);
    }
    return names;
  }

  vxtest::HostWindow host{420, 480};
  ui::FolderTree tree;
  int clicks = 0;
};

// SetPath and the keyboard select, Path reads back, Click fires once per change, Refresh follows the disk.
TEST_F(FolderTreeTest, SetPathPathClickAndRefresh) {
  EXPECT_EQ(tree.Path(), "");
  const struct { const char *set, *path; int clicks; } cases[] = {
      {"C:\\", "C:\\", 1},
      {"C:", "C:\\", 1},  // already selected: no Click
      {"c:\\VXTREE\\a\\", "C:\\vxtree\\A", 2},  // the folders' own spelling, no trailing backslash
      {"C:\\vxtree\\A\\B", "C:\\vxtree\\A\\B", 3},
  };
  for (const auto& c : cases) {
    EXPECT_TRUE(tree.SetPath(c.set)) << c.set;
    EXPECT_EQ(tree.Path(), c.path) << c.set;
    EXPECT_EQ(clicks, c.clicks) << c.set;
  }
  for (const char* missing : {"C:\\vxtree\\A\\B\\C", "", "vxtree", "Q:\\"}) {  // the selection stays
    EXPECT_FALSE(tree.SetPath(missing)) << missing;
    EXPECT_EQ(tree.Path(), "C:\\vxtree\\A\\B") << missing;
  }
  // The keyboard moves the selection too, and Path already tells the new folder inside Click.
  std::string seenInClick;
  tree.Click = [&] { ++clicks, seenInClick = tree.Path(); };
  SetFocus(tree.hwnd());
  SendMessageA(tree.hwnd(), WM_KEYDOWN, VK_LEFT, 0);
  EXPECT_EQ(clicks, 4);
  EXPECT_EQ(seenInClick, "C:\\vxtree\\A");

  ASSERT_TRUE(tree.SetPath("C:\\vxtree\\A\\B"));
  const HTREEITEM a = TreeView_GetParent(tree.hwnd(), TreeView_GetSelection(tree.hwnd()));
  const HTREEITEM vx = TreeView_GetParent(tree.hwnd(), a);
  ASSERT_EQ(Children(vx), (std::vector<std::string>{"A", "Gone"}));
  clicks = 0;
  Make("New"), Make("A\\Added");
  fs::remove_all(base + "\\Gone");
  tree.Refresh();
  EXPECT_EQ(Children(vx), (std::vector<std::string>{"A", "New"}));
  EXPECT_EQ(Children(a), (std::vector<std::string>{"Added", "B"}));
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
