// The icon list draws a row when the row is first seen: rows out of view cost nothing until they are
// painted or read, and the picture they leave is the one drawing them at once would have left.
#include "UiTest.h"

#include <functional>
#include <tuple>

#include "ui/ListBoxIcons.h"

using ui::ListBoxIcons;

namespace {

constexpr int kRow = ListBoxIcons::kRowHeight;

// Every row read once: nothing is owed any more, as when every row was drawn the moment it was asked for.
void SettleAll(ListBoxIcons& list) {
  for (int y = 1; y < list.SurfaceHeight(); y += kRow) list.Pixel(0, y);
}

void AddRows(ListBoxIcons& list, int n) {
  const std::string captions[] = {"My Computer", "Microsoft Windows Network Neighborhood (entire)", "Recycle Bin"};
  for (int i = list.Count(); i < n; ++i)
    list.AddItem(captions[i % 3], i % 4 == 3 ? "C:\\no such file.ico" : vxtest::Shell32(), int16_t(i * 2 + 1),
                 std::string(1, char('a' + i)));
}

// Steps a person and the program take, each run on a list that settles every row at once and on one
// that leaves rows owed until the end; the two pictures must be the same pixel for pixel.
TEST(LazyRows, ThePictureIsTheSameWhicheverOrderRowsAreFirstSeenIn) {
  using Step = std::function<void(ListBoxIcons&)>;
  const struct { const char* what; std::vector<Step> steps; } scripts[] = {
      {"rows added", {[](ListBoxIcons& l) { AddRows(l, 12); }}},
      {"added, then one selected",
       {[](ListBoxIcons& l) { AddRows(l, 12); }, [](ListBoxIcons& l) { l.SelItemIndex(7); }}},
      {"selected three times before it was seen, the last on an empty row that is then filled",
       {[](ListBoxIcons& l) { AddRows(l, 3); }, [](ListBoxIcons& l) { l.SelItemIndex(1); },
        [](ListBoxIcons& l) { l.SelItemIndex(2); }, [](ListBoxIcons& l) { l.SelItemIndex(4); },
        [](ListBoxIcons& l) { AddRows(l, 8); }}},
      {"selected, then the list narrowed (every row drawn again)",
       {[](ListBoxIcons& l) { AddRows(l, 9); }, [](ListBoxIcons& l) { l.SelItemIndex(4); },
        [](ListBoxIcons& l) { l.Move(10, 10, 220, 280); }}},
      {"changed before it was seen (the row shows what it was added with)",
       {[](ListBoxIcons& l) { AddRows(l, 10); },
        [](ListBoxIcons& l) { l.Change("i", vxtest::Shell32(), 40, "Changed"); }}},
      {"refreshed, changed, refreshed again",
       {[](ListBoxIcons& l) { AddRows(l, 8); }, [](ListBoxIcons& l) { l.ListRefresh(); },
        [](ListBoxIcons& l) { l.Change("g", vxtest::Shell32(), 12, "Changed"); },
        [](ListBoxIcons& l) { l.ListRefresh(); },
        [](ListBoxIcons& l) { l.SelItemIndex(6); }, [](ListBoxIcons& l) { l.SelItemIndex(5); }}},
      {"keys walk down past the view",
       {[](ListBoxIcons& l) { AddRows(l, 14); }, [](ListBoxIcons& l) { l.SelItemIndex(0); },
        [](ListBoxIcons& l) { for (int i = 0; i < 9; ++i) SendMessageA(l.surface(), WM_KEYDOWN, VK_DOWN, 0); },
        [](ListBoxIcons& l) { l.ItemRefresh(); }}},
  };
  for (const auto& script : scripts) {
    SCOPED_TRACE(script.what);
    vxtest::HostWindow host;
    ListBoxIcons atOnce, whenSeen;
    ASSERT_TRUE(atOnce.Create(host.hwnd(), 100, 10, 10, 300, 280));
    ASSERT_TRUE(whenSeen.Create(host.hwnd(), 101, 10, 10, 300, 280));
    for (const Step& step : script.steps) {
      step(atOnce);
      SettleAll(atOnce);
      step(whenSeen);
    }
    EXPECT_GT(whenSeen.RowsOwed(), 0) << "nothing was left to draw later";
    ASSERT_EQ(atOnce.SurfaceHeight(), whenSeen.SurfaceHeight());
    int differing = 0;
    for (int r = whenSeen.Count() - 1; r >= 0; --r)  // read from the bottom: the reverse of drawing order
      for (int y = r * kRow; y < r * kRow + kRow; ++y)
        for (int x = 0; x < whenSeen.SurfaceWidth(); x += 2) differing += whenSeen.Pixel(x, y) != atOnce.Pixel(x, y);
    EXPECT_EQ(differing, 0);
    EXPECT_EQ(whenSeen.RowsOwed(), 0);
  }
}

// Only the rows in the frame are drawn when the list is painted; scrolling draws the ones it brings
// into view, and a hidden list (a tab not shown) draws none until it is shown.
TEST(LazyRows, PaintingDrawsTheRowsInViewAndScrollingTheRestAsTheyCome) {
  vxtest::HostWindow host;
  ListBoxIcons shown, hidden;
  ASSERT_TRUE(shown.Create(host.hwnd(), 100, 10, 10, 300, 280));
  ASSERT_TRUE(hidden.Create(host.hwnd(), 101, 10, 10, 300, 280));
  ShowWindow(hidden.hwnd(), SW_HIDE);
  AddRows(shown, 19);
  AddRows(hidden, 19);
  EXPECT_EQ(shown.RowsOwed(), 19);
  ui::DoEvents();
  UpdateWindow(host.hwnd());
  const int inView = 280 / kRow + 1;  // a part-seen row is drawn as well
  EXPECT_GE(shown.RowsOwed(), 19 - inView - 1);
  EXPECT_LE(shown.RowsOwed(), 19 - inView + 1);
  EXPECT_EQ(hidden.RowsOwed(), 19);
  hidden.SelItemIndex(2);  // as every tab's list is at start
  EXPECT_EQ(hidden.RowsOwed(), 19 + 1) << "a hidden list drew its highlight";

  SendMessageA(shown.hwnd(), WM_VSCROLL, SB_BOTTOM, 0);
  ui::DoEvents();
  UpdateWindow(host.hwnd());
  const int owedAfterScroll = shown.RowsOwed();
  EXPECT_LT(owedAfterScroll, 19 - inView - 1) << "the rows scrolled to were not drawn";
  EXPECT_GT(owedAfterScroll, 0) << "rows never in view were drawn";
  for (int i = 0; i < 20; ++i) SendMessageA(shown.hwnd(), WM_VSCROLL, SB_LINEUP, 0), UpdateWindow(host.hwnd());
  ui::DoEvents();
  EXPECT_EQ(shown.RowsOwed(), 0);

  ShowWindow(hidden.hwnd(), SW_SHOW);
  ui::DoEvents();
  UpdateWindow(host.hwnd());
  EXPECT_LT(hidden.RowsOwed(), 19);
}


// Rows added in one fill move and size the list's windows once, at its end, and leave them as adding
// the rows one at a time does: the same surface, scroll range, thumb and picture.
TEST(LazyRows, AFillLeavesTheWindowsAsRowByRowAddsDo) {
  vxtest::HostWindow host;
  ListBoxIcons byRow, filled;
  ASSERT_TRUE(byRow.Create(host.hwnd(), 100, 10, 10, 300, 280));
  ASSERT_TRUE(filled.Create(host.hwnd(), 101, 10, 10, 300, 280));
  auto surfaceHeight = [](ListBoxIcons& l) {
    RECT r{};
    GetWindowRect(l.surface(), &r);
    return r.bottom - r.top;
  };
  AddRows(byRow, 14);
  {
    ListBoxIcons::Filling fill(filled);
    ListBoxIcons::Filling nested(filled);  // a fill inside a fill ends with the outer one
    AddRows(filled, 14);
    EXPECT_LT(surfaceHeight(filled), 14 * kRow) << "the windows followed each row";
  }
  EXPECT_EQ(surfaceHeight(filled), surfaceHeight(byRow));
  EXPECT_EQ(filled.SurfaceHeight(), byRow.SurfaceHeight());
  EXPECT_EQ(filled.ScrollMax(), byRow.ScrollMax());
  SCROLLINFO a{sizeof a, SIF_ALL, 0, 0, 0, 0, 0}, b = a;
  GetScrollInfo(byRow.scrollBar(), SB_CTL, &a);
  GetScrollInfo(filled.scrollBar(), SB_CTL, &b);
  EXPECT_EQ(std::make_tuple(a.nMin, a.nMax, a.nPage, a.nPos), std::make_tuple(b.nMin, b.nMax, b.nPage, b.nPos));
  filled.SelItemIndex(12);
  byRow.SelItemIndex(12);
  int differing = 0;
  for (int y = 0; y < byRow.SurfaceHeight(); y += 3)
    for (int x = 0; x < byRow.SurfaceWidth(); x += 3) differing += filled.Pixel(x, y) != byRow.Pixel(x, y);
  EXPECT_EQ(differing, 0);
}

// A selected animated pointer is drawn from its file as a cursor; one that will not load still shows
// its caption on the highlight.
TEST(LazyRows, AnAnimatedPointerThatWillNotLoadKeepsItsCaptionWhenSelected) {
  vxtest::HostWindow host;
  ListBoxIcons list;
  ASSERT_TRUE(list.Create(host.hwnd(), 100, 10, 10, 300, 280));
  list.AddItem("Busy", "C:\\no such pointer.ani", 0, "Wait");
  list.SelItemIndex(0);
  int ink = 0;
  for (int y = 18; y < 48; ++y)
    for (int x = 40; x < list.SurfaceWidth() - 2; ++x) ink += list.Pixel(x, y) == GetSysColor(COLOR_HIGHLIGHTTEXT);
  EXPECT_GT(ink, 10);
}

}  // namespace
