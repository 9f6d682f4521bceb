// The icon list on a real window: its picture, keys, data rules and handle use.
#include "UiTest.h"
#include <shellapi.h>
#include <winternl.h>

#include <algorithm>
#include <cmath>

#include "ui/ListBoxIcons.h"

using ui::ListBoxIcons;

namespace {

constexpr int kWidth = 300, kHeight = 280;

class ListTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(list.Create(host.hwnd(), 100, 10, 10, kWidth, kHeight));
    ui::DoEvents();
  }
  void Fill(int n) {  // up to n items
    for (int i = list.Count(); i < n; ++i)
      list.AddItem("Item", vxtest::Shell32(), int16_t(i + 3), std::string(1, char('a' + i)));
  }
  void Key(int vk) { SendMessageA(list.surface(), WM_KEYDOWN, static_cast<WPARAM>(vk), 0); }

  vxtest::HostWindow host;
  ListBoxIcons list;
  const COLORREF window = GetSysColor(COLOR_WINDOW), highlight = GetSysColor(COLOR_HIGHLIGHT);
};

// Rows of 50: highlight across the row, shell32's icon of the item's index at (15, 9), the caption centred
// in the space right of x = 40 and cut at 20 characters when added, at 25 when redrawn.
TEST_F(ListTest, RowsShowHighlightIconAndCentredCaption) {
  list.Move(10, 10, 200, kHeight);
  const std::string longCaption = "Microsoft Windows Network Neighborhood";
  const std::string cut20 = longCaption.substr(0, 20) + " ...", cut25 = longCaption.substr(0, 25) + " ...";
  Fill(2);
  list.AddItem(longCaption, "", 0, "long");
  auto centredLeft = [&](const std::string& s) {
    return static_cast<int>(std::nearbyint((list.SurfaceWidth() + 40) / 2.0 - list.CaptionWidth(s) / 2.0));
  };
  ASSERT_GT(centredLeft(cut20) - centredLeft(cut25), 6);  // the two cuts are told apart
  auto expectAt = [&](int row, COLORREF background, const std::string& shown) {  // the ink of the caption band
    int lo = -1, hi = -1;
    for (int y = row * 50 + 18; y < row * 50 + 48; ++y)
      for (int x = 2; x < list.SurfaceWidth() - 2; ++x)
        if (list.Pixel(x, y) != background) lo = lo < 0 ? x : std::min(lo, x), hi = std::max(hi, x);
    const int left = centredLeft(shown);
    EXPECT_TRUE(lo >= left - 1 && lo <= left + 2) << shown << ": " << lo << " for " << left;
    EXPECT_LE(hi, left + list.CaptionWidth(shown) + 1) << shown;
  };
  expectAt(2, window, cut20);
  list.ListRefresh();
  list.SelItemIndex(2);
  expectAt(2, highlight, cut25);
  list.SelItemIndex(1);
  const int w = list.SurfaceWidth();
  for (auto [x, y, lit] : {std::tuple{w - 3, 52, true}, {8, 97, true}, {w - 3, 45, false}, {8, 110, false}})
    EXPECT_EQ(list.Pixel(x, y), lit ? highlight : window) << x << "," << y;

  for (int row = 0; row < 2; ++row) {
    const COLORREF back = row == 1 ? highlight : window;
    ui::IconHandle icon(ExtractIconA(GetModuleHandleA(nullptr), vxtest::Shell32().c_str(), static_cast<UINT>(row + 3)));
    const std::vector<COLORREF> want = vxtest::Render(icon.get(), back);
    int differing = 0;
    for (int i = 0; i < 32 * 32; ++i) differing += want[i] != list.Pixel(15 + i % 32, row * 50 + 9 + i / 32);
    EXPECT_GT(std::count_if(want.begin(), want.end(), [&](COLORREF c) { return c != back; }), 50) << row;
    EXPECT_EQ(differing, 0) << "row " << row;
  }
}

// ListCount is the surface's height in rows: the rows that fit until there are more items.
TEST_F(ListTest, ListCountFollowsTheSurfaceAndKeysMoveWithinBoundsAndTheListFollows) {
  EXPECT_EQ(list.ListCount(), 5);
  EXPECT_EQ(list.ScrollMax(), 276 - 250);  // the distance to the view's height, even from a shorter surface
  for (int n : {4, 5, 6, 8}) { Fill(n); EXPECT_EQ(list.ListCount(), std::max(5, n)) << n; }
  ASSERT_EQ(list.ScrollMax(), 400 - 276);
  list.SelItemIndex(0);
  const struct { int key; double row; int scroll; } steps[] = {
      {VK_UP, 0, 0},      {VK_NEXT, 4, 0},    {VK_DOWN, 5, 50}, {VK_DOWN, 6, 100}, {VK_DOWN, 7, 124}, {VK_DOWN, 7, 124},
      {VK_PRIOR, 3, 124}, {VK_PRIOR, 3, 124}, {VK_UP, 2, 74},   {VK_UP, 1, 24},    {VK_HOME, 1, 24},
  };
  for (const auto& s : steps) {
    Key(s.key);
    SCOPED_TRACE("key " + std::to_string(s.key) + " to row " + std::to_string(s.row));
    EXPECT_EQ(list.ListIndex(), s.row);
    EXPECT_EQ(list.ScrollValue(), s.scroll);
    RECT r;
    GetWindowRect(list.surface(), &r);
    MapWindowPoints(nullptr, list.hwnd(), reinterpret_cast<POINT*>(&r), 2);
    EXPECT_EQ(r.top, -s.scroll);  // the surface really moved
  }
  for (int row = 0; row < 8; ++row) EXPECT_EQ(list.Pixel(3, row * 50 + 25) == highlight, row == 1) << row;
}

TEST_F(ListTest, ChangeFollowsItsRules) {
  list.AddItem("Alpha", "a.dll", 3, "a");
  list.AddItem("Beta", "b.dll", 4, "b");
  const struct { const char *path; int16_t index; const char *caption, *full, *shown; } cases[] = {
      {"", -1, "", "a.dll,3", "Alpha"},  // nothing given: nothing changes
      {"x.dll", 5, "", "x.dll,5", "Alpha"},
      {"", 7, "", "x.dll,7", "Alpha"},
      {"y.dll,12", -1, "", "y.dll,12", "Alpha"},  // a location is split at its last comma
      {"nocomma.dll", -1, "", "y.dll,12", "Alpha"},
      {"w.dll,-1", -1, "Gamma", "w.dll,12", "Gamma"},  // -1 after the comma keeps the old index
  };
  for (const auto& c : cases) {
    list.Change("a", c.path, c.index, c.caption);
    EXPECT_EQ(list.ItemFullPath("a") + " " + list.ItemCaption("a"), c.full + std::string(" ") + c.shown) << c.path;
  }
  list.Change("A", "q.dll", 9, "Ghost");  // keys compare case-sensitively
  EXPECT_EQ(list.ItemFullPath("a"), "w.dll,12");
}

TEST(SplitIconLocation, CutsAtTheLastComma) {
  const struct { const char* in; const char* path; int16_t index; } cases[] = {
      {"a,b,3", "a,b", 3}, {"f,-4", "f", -4}, {"f,70000", "f", 4464}, {"f,abc", "f", 0}, {",5", "", 5},
      {"f, 12", "f", 12},  {"f,7x", "f", 7},  {"x", "", 99},
  };
  for (const auto& c : cases) {
    std::string loc = c.in;
    int16_t index = 99;
    EXPECT_EQ(ui::SplitIconLocation(loc, index), c.path) << c.in;
    EXPECT_EQ(loc, c.in[0] == 'x' ? "x" : c.path) << c.in;  // no comma: nothing changes
    EXPECT_EQ(index, c.index) << c.in;
  }
}

// "IconFont" holds a LOGFONT: height -11, weight 400, pitch and family, then an ANSI or wide face (IconFontTest
// reads whole records through the list).
TEST(FaceNameFromFontRecord, TakesTheFirstRunOfTwoPrintables) {
  const std::string head("\xF5\xFF\xFF\xFF\0\0\0\0\x90\x01\0\0", 12);
  const struct { std::string bytes; const char* name; } cases[] = {
      {head + std::string("\x22Tahoma\0", 8), "\"Tahoma"},  // a printable pitch byte joins the name
      {head + std::string("\0T\0a\0h\0", 7), ""},
      {std::string("A\x01" "B\x02" "Co\x03" "De", 9), "Co"},
      {"~Verdana}", "Verdana}"},
  };
  for (const auto& c : cases) EXPECT_EQ(ui::FaceNameFromFontRecord(c.bytes), c.name);
}

// Wine's GetGuiResources answers 0, so count the live entries of the shared GDI handle table the PEB
// points at. Under Wine every icon or cursor keeps its frames there as bitmaps, so leaked icons show too.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"  // NtCurrentTeb reads gs:[0x30], which GCC cannot see
int GdiObjects() {
  struct Entry { uint64_t object; uint32_t owner; uint16_t unique; uint8_t type, flags; uint64_t user; };
  auto* peb = reinterpret_cast<const char*>(NtCurrentTeb()->ProcessEnvironmentBlock);
#ifdef _WIN64
  constexpr size_t kTableAt = 0xf8;  // GdiSharedHandleTable in a 64-bit PEB
#else
  constexpr size_t kTableAt = 0x94;  // and in a 32-bit one (Wine keeps the entries' layout)
#endif
  auto* table = *reinterpret_cast<Entry* const*>(peb + kTableAt);
#ifndef _WIN64
  // Under WOW64 Wine fills only the 64-bit PEB's table; the 32-bit TEB's GdiBatchCount holds the address
  // of the 64-bit TEB, whose Peb (at 0x60) points at that PEB.
  const auto teb64 = *reinterpret_cast<const uint32_t*>(reinterpret_cast<const char*>(NtCurrentTeb()) + 0xf70);
  if (!table && teb64) {
    const auto peb64 = *reinterpret_cast<const uint64_t*>(static_cast<uintptr_t>(teb64) + 0x60);
    const uint64_t at = peb64 >> 32 ? 0 : *reinterpret_cast<const uint64_t*>(static_cast<uintptr_t>(peb64) + 0xf8);
    if (at >> 32 == 0) table = reinterpret_cast<Entry*>(static_cast<uintptr_t>(at));
  }
#endif
  int live = 0;
  for (int i = 0; table && i < 0x4000; ++i) live += table[i].type != 0;
  return live;
}
#pragma GCC diagnostic pop

TEST_F(ListTest, ThousandsOfRedrawsKeepNoHandles) {
  Fill(8);
  list.ListRefresh();
  ui::DoEvents();
  const int gdi = GdiObjects();
  ASSERT_GT(gdi, 0);
  for (int i = 0; i < 200; ++i) {  // about 3,000 row drawings
    list.ListRefresh();
    list.SelItemIndex(static_cast<int16_t>(i % 8));
    Key(i % 3 ? VK_DOWN : VK_PRIOR);
    list.ItemRefresh();
    if (i % 20 == 0) ui::DoEvents();
  }
  ui::DoEvents();
  EXPECT_LE(GdiObjects(), gdi + 2);
}

}  // namespace
