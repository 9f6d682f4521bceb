// The icon list on a real window: geometry, pixels of its picture, keys, mouse, data and resources.
#include <windows.h>
#include <shellapi.h>
#include <winternl.h>
#include <gtest/gtest.h>

#include <cmath>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "registry/modCommon.h"
#include "support/RegistryScope.h"
#include "ui/ListBoxIcons.h"
#include "ui/win.h"

using ui::ListBoxIcons;

namespace {

// Built by appending: GCC 12 warns falsely about "text" + std::to_string(...) at -O3.
std::string KeyOf(int i, const char* prefix = "k") {
  std::string s = prefix;
  s += std::to_string(i);
  return s;
}

std::string Shell32() {
  char dir[MAX_PATH];
  UINT n = GetSystemDirectoryA(dir, MAX_PATH);
  return std::string(dir, n) + "\\shell32.dll";
}

// --- resource counts -------------------------------------------------------------------------------
// Wine's GetGuiResources answers 0, so where it does the counts come from the process's own tables:
// GDI objects from the shared handle table that the process environment block points at, icons and
// cursors by asking every user handle slot whether it holds one of ours.

struct GdiEntry {
  uint64_t object;
  uint32_t owner;
  uint16_t unique;
  uint8_t type;
  uint8_t flags;
  uint64_t user;
};
static_assert(sizeof(GdiEntry) == 24);

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"  // NtCurrentTeb reads gs:[0x30], which GCC cannot see
const char* ProcessEnvironmentBlock() {
  return reinterpret_cast<const char*>(NtCurrentTeb()->ProcessEnvironmentBlock);
}
#pragma GCC diagnostic pop

int GdiObjects() {
  DWORD n = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  if (n) return static_cast<int>(n);
  const char* peb = ProcessEnvironmentBlock();
  auto* table = *reinterpret_cast<GdiEntry* const*>(peb + 0xf8);  // GdiSharedHandleTable
  if (!table) return -1;
  int live = 0;
  for (int i = 0; i < 0x4000; ++i)
    if (table[i].type) ++live;
  return live;
}

int LiveIcons() {
  int live = 0;
  for (uintptr_t h = 0x20; h < 0x10000; h += 2) {
    ICONINFO ii;
    if (GetIconInfo(reinterpret_cast<HICON>(h), &ii)) {
      ++live;
      DeleteObject(ii.hbmMask);
      if (ii.hbmColor) DeleteObject(ii.hbmColor);
    }
  }
  return live;
}

// Writes a one-frame animated cursor whose 32 x 32 image is solid red.
void WriteRedAni(const std::string& path) {
  auto put = [](std::string& s, uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) s += static_cast<char>((v >> (8 * i)) & 0xff);
  };
  std::string image;  // BITMAPINFOHEADER (double height for the mask), colour rows, AND mask
  for (uint32_t v : {40u, 32u, 64u}) put(image, v, 4);
  put(image, 1, 2), put(image, 32, 2);
  image.append(24, '\0');
  for (int i = 0; i < 32 * 32; ++i) put(image, 0xFFFF0000u, 4);
  image.append(32 * 4, '\0');
  std::string cur;  // header, one directory entry (hot spot 0,0), image
  put(cur, 0, 2), put(cur, 2, 2), put(cur, 1, 2), put(cur, 0x2020, 4), put(cur, 0, 4);
  put(cur, static_cast<uint32_t>(image.size()), 4), put(cur, 22, 4);
  cur += image;
  std::string fram = "framicon";
  put(fram, static_cast<uint32_t>(cur.size()), 4);
  fram += cur;
  std::string body = "ACONanih";
  for (uint32_t v : {36u, 36u, 1u, 1u, 0u, 0u, 0u, 0u, 10u, 1u}) put(body, v, 4);
  body += "LIST";
  put(body, static_cast<uint32_t>(fram.size()), 4);
  body += fram;
  std::string file = "RIFF";
  put(file, static_cast<uint32_t>(body.size()), 4);
  std::ofstream(path, std::ios::binary) << file + body;
}

// --- a host window ---------------------------------------------------------------------------------

class Host : public ui::Window {
 public:
  Host() {
    Create("VxListTestHost", 0, WS_OVERLAPPEDWINDOW | WS_VISIBLE, "List test", 40, 40, 480, 420, nullptr,
           nullptr);
  }
};

constexpr int kWidth = 300, kHeight = 280;

class ListTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(list.Create(host.hwnd(), 100, 10, 10, kWidth, kHeight));
    ui::DoEvents();
  }
  void Fill(int n, const std::string& path = Shell32()) {
    for (int i = 0; i < n; ++i)
      list.AddItem(KeyOf(i, "Item "), path, static_cast<int16_t>(i + 3), KeyOf(i));
  }
  void Key(int vk) { SendMessageA(list.surface(), WM_KEYDOWN, static_cast<WPARAM>(vk), 0); }
  void Mouse(UINT msg, WPARAM wp, int y) { SendMessageA(list.surface(), msg, wp, MAKELPARAM(30, y)); }
  // Where lstMain stands inside Container.
  POINT SurfaceOrigin() const {
    RECT r;
    GetWindowRect(list.surface(), &r);
    POINT p{r.left, r.top};
    ScreenToClient(list.hwnd(), &p);
    return p;
  }
  // Whether a row's caption band, from column fromX on, holds a pixel of the colour.
  bool HasInk(int row, COLORREF color, int fromX) const {
    for (int y = row * 50 + 18; y < row * 50 + 48; ++y)
      for (int x = fromX; x < list.SurfaceWidth(); ++x)
        if (list.Pixel(x, y) == color) return true;
    return false;
  }
  // Leftmost and rightmost columns of the caption band that differ from the row's background
  // (the outermost two columns hold the focus rectangle and the column under the scroll bar).
  std::pair<int, int> Extent(int row, COLORREF background) const {
    int lo = -1, hi = -1;
    for (int y = row * 50 + 18; y < row * 50 + 48; ++y)
      for (int x = 2; x < list.SurfaceWidth() - 2; ++x)
        if (list.Pixel(x, y) != background) {
          if (lo < 0 || x < lo) lo = x;
          if (x > hi) hi = x;
        }
    return {lo, hi};
  }
  int CentredLeft(const std::string& text) const {
    return static_cast<int>(
        std::nearbyint((list.SurfaceWidth() + 40) / 2.0 - list.CaptionWidth(text) / 2.0));
  }

  Host host;
  ListBoxIcons list;
  const COLORREF window = GetSysColor(COLOR_WINDOW), text = GetSysColor(COLOR_WINDOWTEXT),
                 highlight = GetSysColor(COLOR_HIGHLIGHT), highlightText = GetSysColor(COLOR_HIGHLIGHTTEXT);
};

// --- geometry --------------------------------------------------------------------------------------

TEST_F(ListTest, ChildWindowsFollowTheBorderAllowances) {
  const int sw = GetSystemMetrics(SM_CYHSCROLL);
  EXPECT_TRUE(GetWindowLongA(list.hwnd(), GWL_STYLE) & WS_CLIPCHILDREN);
  for (auto [w, h] : {std::pair{kWidth, kHeight}, std::pair{420, 330}, std::pair{200, 150}}) {
    list.Move(10, 10, w, h);
    SCOPED_TRACE(std::to_string(w) + "x" + std::to_string(h));
    RECT outer, sb, s;
    GetWindowRect(list.hwnd(), &outer);
    GetWindowRect(list.scrollBar(), &sb);
    GetClientRect(list.surface(), &s);
    POINT p{sb.left, sb.top};
    ScreenToClient(list.hwnd(), &p);
    EXPECT_EQ(outer.right - outer.left, w);
    EXPECT_EQ(outer.bottom - outer.top, h);
    EXPECT_EQ(sb.right - sb.left, sw);
    EXPECT_EQ(sb.bottom - sb.top, h - 4);
    EXPECT_EQ(p.x, w - sw - 4);
    EXPECT_EQ(s.right, w - sw - 3);
    EXPECT_EQ(list.SurfaceWidth(), w - sw - 3);
    EXPECT_EQ(s.bottom, 250);
    EXPECT_EQ(list.ScrollMax(), std::abs(250 - (h - 4)));
  }
}

TEST_F(ListTest, ListCountReportsTheSurfaceHeightNotTheItems) {
  const struct { int items; double count; } cases[] = {{0, 5}, {4, 5}, {5, 5}, {6, 6}, {8, 8}};
  for (const auto& c : cases) {
    ListBoxIcons l;
    ASSERT_TRUE(l.Create(host.hwnd(), 101, 0, 0, kWidth, kHeight));
    for (int i = 0; i < c.items; ++i) l.AddItem("x", "", 0, KeyOf(i));
    EXPECT_EQ(l.ListCount(), c.count) << c.items << " items";
    EXPECT_EQ(l.SurfaceHeight(), static_cast<int>(c.count) * 50);
    EXPECT_EQ(l.ScrollMax(), std::abs(static_cast<int>(c.count) * 50 - (kHeight - 4)));
  }
}

// --- drawing ---------------------------------------------------------------------------------------

TEST_F(ListTest, RowsShowIconsCaptionsAndTheHighlight) {
  Fill(3);
  list.SelItemIndex(1);
  const int w = list.SurfaceWidth();
  // The highlight fills the selected row up to the column under the scroll bar.
  for (auto [x, y] : {std::pair{2, 52}, std::pair{w - 3, 60}, std::pair{8, 97}, std::pair{w / 2, 55}})
    EXPECT_EQ(list.Pixel(x, y), highlight) << x << "," << y;
  for (auto [x, y] : {std::pair{2, 2}, std::pair{w - 3, 45}, std::pair{8, 110}, std::pair{w / 2, 140}})
    EXPECT_EQ(list.Pixel(x, y), window) << x << "," << y;

  // Each icon is shell32's icon of the item's index, drawn at (15, row x 50 + 9).
  HDC screen = GetDC(nullptr);
  HDC ref = CreateCompatibleDC(screen);
  HBITMAP bmp = CreateCompatibleBitmap(screen, 32, 32);
  ReleaseDC(nullptr, screen);
  HGDIOBJ old = SelectObject(ref, bmp);
  for (int row = 0; row < 3; ++row) {
    const COLORREF back = row == 1 ? highlight : window;
    HBRUSH b = CreateSolidBrush(back);
    RECT all{0, 0, 32, 32};
    FillRect(ref, &all, b);
    DeleteObject(b);
    HICON icon = ExtractIconA(GetModuleHandleA(nullptr), Shell32().c_str(), static_cast<UINT>(row + 3));
    ASSERT_TRUE(icon);
    DrawIcon(ref, 0, 0, icon);
    DestroyIcon(icon);
    int differing = 0, inked = 0;
    for (int y = 0; y < 32; ++y)
      for (int x = 0; x < 32; ++x) {
        if (GetPixel(ref, x, y) != back) ++inked;
        if (GetPixel(ref, x, y) != list.Pixel(15 + x, row * 50 + 9 + y)) ++differing;
      }
    EXPECT_GT(inked, 50) << "row " << row;
    EXPECT_EQ(differing, 0) << "row " << row;
  }
  SelectObject(ref, old);
  DeleteObject(bmp);
  DeleteDC(ref);

  // Captions stand right of the icons (which may hold text-coloured pixels themselves).
  EXPECT_TRUE(HasInk(0, text, 48));
  EXPECT_TRUE(HasInk(1, highlightText, 48));
  EXPECT_FALSE(HasInk(1, text, 48));
  EXPECT_TRUE(HasInk(2, text, 48));
}

TEST_F(ListTest, CaptionsAreCentredAndLongOnesCut20WhenAddedAnd25WhenRedrawn) {
  list.Move(10, 10, 200, kHeight);
  const std::string longCaption = "Settings - Control Panel (Windows)";
  const std::string cut20 = longCaption.substr(0, 20) + " ...", cut25 = longCaption.substr(0, 25) + " ...";
  const char* const fitting[] = {"Printers", "A", "Recycle Bin"};
  list.AddItem(longCaption, "", 0, "long");
  for (const char* c : fitting) list.AddItem(c, "", 0, c);
  ASSERT_GT(list.CaptionWidth(longCaption), list.SurfaceWidth() - 60);
  ASSERT_GT(CentredLeft(cut20) - CentredLeft(cut25), 6);

  auto expectAt = [&](int row, COLORREF background, const std::string& shown) {
    auto [lo, hi] = Extent(row, background);
    const int left = CentredLeft(shown);
    EXPECT_TRUE(lo >= left - 1 && lo <= left + 2) << shown << ": " << lo << " for " << left;
    EXPECT_LE(hi, left + list.CaptionWidth(shown) + 1) << shown;
  };
  expectAt(0, window, cut20);
  for (int r = 0; r < 3; ++r) expectAt(r + 1, window, fitting[r]);
  list.ListRefresh();
  expectAt(0, window, cut25);
  for (int r = 0; r < 3; ++r) expectAt(r + 1, window, fitting[r]);
  list.SelItemIndex(0);
  expectAt(0, highlight, cut25);
  EXPECT_EQ(list.ItemCaption("long"), longCaption);
}

TEST_F(ListTest, ThePictureSurvivesBeingCoveredAndUncovered) {
  Fill(3);
  list.SelItemIndex(2);
  UpdateWindow(host.hwnd());
  ui::DoEvents();
  auto screenPixel = [&](int x, int y) {
    HDC dc = GetDC(list.surface());
    COLORREF c = GetPixel(dc, x, y);
    ReleaseDC(list.surface(), dc);
    return c;
  };
  EXPECT_EQ(screenPixel(5, 110), highlight);
  EXPECT_EQ(screenPixel(5, 60), window);

  RECT r;
  GetWindowRect(list.surface(), &r);
  HWND cover = CreateWindowExA(WS_EX_TOPMOST, "STATIC", "", WS_POPUP | WS_VISIBLE | SS_BLACKRECT, r.left, r.top,
                               r.right - r.left, r.bottom - r.top, nullptr, nullptr, nullptr, nullptr);
  UpdateWindow(cover);
  ui::DoEvents();
  DestroyWindow(cover);
  UpdateWindow(host.hwnd());
  UpdateWindow(list.surface());
  ui::DoEvents();
  EXPECT_EQ(screenPixel(5, 110), highlight);
  EXPECT_EQ(screenPixel(5, 60), window);
  EXPECT_EQ(screenPixel(15 + 16, 9 + 16), list.Pixel(15 + 16, 9 + 16));
}

TEST_F(ListTest, AnimatedCursorsShowTheirFirstFrameWhenSelected) {
  char tmp[MAX_PATH];
  GetTempPathA(MAX_PATH, tmp);
  const std::string dotted = std::string(tmp) + "vx.lst";
  CreateDirectoryA(dotted.c_str(), nullptr);
  const std::string ani = std::string(tmp) + "vxtest.ani", inDotted = dotted + "\\vxtest.ani";
  for (const auto& path : {ani, inDotted}) WriteRedAni(path);

  list.AddItem("Busy", ani, 0, "busy");
  list.AddItem("Busy too", inDotted, 0, "dotted");
  const COLORREF red = RGB(255, 0, 0);
  list.SelItemIndex(0);
  EXPECT_EQ(list.Pixel(31, 25), red);
  EXPECT_EQ(list.Pixel(16, 10), red);
  // The extension is what follows the first ".": here "lst\vxtest.ani", so no cursor is loaded.
  list.SelItemIndex(1);
  EXPECT_NE(list.Pixel(31, 75), red);
  EXPECT_NE(list.Pixel(31, 25), red);

  DeleteFileA(ani.c_str());
  DeleteFileA(inDotted.c_str());
  RemoveDirectoryA(dotted.c_str());
}

// --- keyboard, mouse and scroll bar ----------------------------------------------------------------

TEST_F(ListTest, KeysMoveTheSelectionAndTheListFollows) {
  Fill(8);  // 400 pixels in 276: the scroll maximum is 124
  ASSERT_EQ(list.ScrollMax(), 124);
  std::vector<std::pair<int, double>> seen;
  list.KeyDown = [&](int code, int) { seen.push_back({code, list.ListIndex()}); };
  list.SelItemIndex(0);
  const struct { int key; double row; int scroll; } steps[] = {
      {VK_UP, 0, 0},      {VK_DOWN, 1, 0},   {VK_DOWN, 2, 0},   {VK_DOWN, 3, 0},   {VK_DOWN, 4, 0},
      {VK_DOWN, 5, 50},   {VK_DOWN, 6, 100}, {VK_DOWN, 7, 124}, {VK_DOWN, 7, 124}, {VK_NEXT, 7, 124},
      {VK_PRIOR, 3, 124}, {VK_PRIOR, 3, 124}, {VK_UP, 2, 74},   {VK_UP, 1, 24},    {VK_UP, 0, 0},
      {VK_NEXT, 4, 0},    {VK_NEXT, 4, 0},   {VK_HOME, 4, 0},   {VK_END, 4, 0},    {VK_DOWN, 5, 50},
  };
  for (const auto& s : steps) {
    Key(s.key);
    SCOPED_TRACE("key " + std::to_string(s.key) + " to row " + std::to_string(s.row));
    EXPECT_EQ(list.ListIndex(), s.row);
    EXPECT_EQ(list.ScrollValue(), s.scroll);
    EXPECT_EQ(SurfaceOrigin().y, -s.scroll);
    EXPECT_EQ(GetScrollPos(list.scrollBar(), SB_CTL), s.scroll);
  }
  ASSERT_EQ(seen.size(), std::size(steps));
  for (size_t i = 0; i < seen.size(); ++i) {
    EXPECT_EQ(seen[i].first, steps[i].key);
    EXPECT_EQ(seen[i].second, steps[i].row);  // the host hears of the key after the move
  }
  // The highlight moved with the selection: only row 5 is highlighted.
  for (int row = 0; row < 8; ++row) EXPECT_EQ(list.Pixel(3, row * 50 + 25) == highlight, row == 5) << row;
}

TEST_F(ListTest, MouseSelectsTakesFocusAndRaisesEvents) {
  Fill(8);
  int clicks = 0, doubles = 0;
  std::vector<int> ups;
  list.Click = [&] { ++clicks; };
  list.DblClick = [&] { ++doubles; };
  list.MouseUp = [&](int button, int, int, int) { ups.push_back(button); };
  SetFocus(host.hwnd());

  Mouse(WM_LBUTTONDOWN, MK_LBUTTON, 120);
  EXPECT_EQ(GetFocus(), list.surface());
  EXPECT_EQ(list.ListIndex(), 2);
  Mouse(WM_LBUTTONUP, 0, 120);
  EXPECT_EQ(clicks, 1);
  Mouse(WM_RBUTTONDOWN, MK_RBUTTON, 160);
  Mouse(WM_RBUTTONUP, 0, 160);
  EXPECT_EQ(list.ListIndex(), 3);
  EXPECT_EQ(clicks, 1);
  Mouse(WM_LBUTTONDBLCLK, MK_LBUTTON, 160);
  Mouse(WM_LBUTTONUP, 0, 160);
  EXPECT_EQ(doubles, 1);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(ups, (std::vector<int>{1, 2, 1}));
  // Outside the rows nothing changes.
  for (int y : {-1, 400, 460}) {
    Mouse(WM_LBUTTONDOWN, MK_LBUTTON, y);
    Mouse(WM_LBUTTONUP, 0, y);
    EXPECT_EQ(list.ListIndex(), 3);
  }
  EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(ListTest, DraggingCreepsByFiveAndSnapsAtTheEnds) {
  Fill(8);
  auto scrollTo = [&](std::initializer_list<int> codes) {
    for (int code : codes)
      SendMessageA(list.hwnd(), WM_VSCROLL, static_cast<WPARAM>(code), reinterpret_cast<LPARAM>(list.scrollBar()));
  };
  struct Move { int y; double row; int scroll; };
  auto drag = [&](std::initializer_list<Move> moves) {
    for (const auto& m : moves) {
      Mouse(WM_MOUSEMOVE, MK_LBUTTON, m.y);
      SCOPED_TRACE("move to " + std::to_string(m.y));
      EXPECT_EQ(list.ListIndex(), m.row);
      EXPECT_EQ(list.ScrollValue(), m.scroll);
    }
  };
  Mouse(WM_LBUTTONDOWN, MK_LBUTTON, 10);
  // Below the visible rows the list creeps down; outside the surface the selection stays.
  drag({{290, 5, 5}, {290, 5, 10}, {-10, 5, 15}, {160, 3, 15}, {360, 7, 20}, {360, 7, 25}, {60, 1, 25}});
  // Above, it creeps up until a whole row's step would pass the top, then it snaps there.
  drag({{10, 0, 0}});
  scrollTo({SB_BOTTOM});
  drag({{60, 1, 119}, {60, 1, 114}, {10, 0, 109}});
  // Near the far end the bound is tested a row ahead as well.
  scrollTo({SB_TOP, SB_LINEDOWN, SB_LINEDOWN});
  ASSERT_EQ(list.ScrollValue(), 100);
  drag({{390, 7, 124}});
  Mouse(WM_MOUSEMOVE, 0, 10);  // no button held: no selection
  EXPECT_EQ(list.ListIndex(), 7);
  Mouse(WM_LBUTTONUP, 0, 10);
}

TEST_F(ListTest, ScrollBarMovesTheSurface) {
  Fill(8);
  const struct { int code; int value; } steps[] = {
      {SB_LINEDOWN, 50}, {SB_LINEDOWN, 100}, {SB_LINEDOWN, 124}, {SB_LINEUP, 74},
      {SB_PAGEUP, 0},    {SB_PAGEDOWN, 124}, {SB_TOP, 0},        {SB_BOTTOM, 124},
  };
  for (const auto& s : steps) {
    SendMessageA(list.hwnd(), WM_VSCROLL, static_cast<WPARAM>(s.code), reinterpret_cast<LPARAM>(list.scrollBar()));
    EXPECT_EQ(list.ScrollValue(), s.value) << s.code;
    EXPECT_EQ(SurfaceOrigin().y, -s.value) << s.code;
  }
}

// --- data ------------------------------------------------------------------------------------------

TEST_F(ListTest, ChangeFollowsItsRules) {
  list.AddItem("Alpha", "a.dll", 3, "a");
  list.AddItem("Beta", "b.dll", 4, "b");
  const struct { const char* path; int16_t index; const char* caption; const char* full; const char* shown; } cases[] = {
      {"", -1, "", "a.dll,3", "Alpha"},
      {"x.dll", 5, "", "x.dll,5", "Alpha"},
      {"", 7, "", "x.dll,7", "Alpha"},
      {"y.dll,12", -1, "", "y.dll,12", "Alpha"},
      {"c:\\a,b\\z.dll,-2", -1, "", "c:\\a,b\\z.dll,-2", "Alpha"},
      {"nocomma.dll", -1, "", "c:\\a,b\\z.dll,-2", "Alpha"},
      {"w.dll,-1", -1, "", "w.dll,-2", "Alpha"},
      {"", -1, "Gamma", "w.dll,-2", "Gamma"},
      {"v.ico", 0, "Delta", "v.ico,0", "Delta"},
  };
  for (const auto& c : cases) {
    list.Change("a", c.path, c.index, c.caption);
    EXPECT_EQ(list.ItemFullPath("a"), c.full) << c.path << " " << c.index;
    EXPECT_EQ(list.ItemCaption("a"), c.shown) << c.path << " " << c.index;
  }
  EXPECT_EQ(list.ItemFullPath("b"), "b.dll,4");

  // No match (keys compare case-sensitively): the slot after the last item is written, which a
  // later AddItem takes over.
  EXPECT_EQ(list.ItemFullPath("missing"), ",0");
  list.Change("A", "q.dll", 9, "Ghost");
  EXPECT_EQ(list.ItemFullPath("a"), "v.ico,0");
  EXPECT_EQ(list.ItemFullPath("missing"), "q.dll,9");
  EXPECT_EQ(list.ItemCaption("missing"), "Ghost");
  list.AddItem("Third", "t.dll", 1, "c");
  EXPECT_EQ(list.ItemFullPath("c"), "t.dll,1");
  EXPECT_EQ(list.ItemFullPath("missing"), ",0");
}

TEST_F(ListTest, SelectedAndKeyedReadersAgree) {
  const std::string own = ::UpperAscii(ui::ModulePath());
  list.AddItem("Alpha", "a.dll", 3, "a");
  list.AddItem("Beta", "b.dll", -7, "b");
  list.AddItem("Beta again", "c.dll", 1, "b");
  list.AddItem("Mine", own, 2, "own");
  list.SelItemKey("b");  // the first of two
  list.SelItemKey("nothing");
  EXPECT_EQ(list.ListIndex(), 1);
  EXPECT_EQ(std::vector<std::string>({list.SeledKey(), list.SeledCaption(), list.SeledInfoTip(),
                                      list.SeledListIndex(), list.SeledIconPath(), list.SeledFullIconPath()}),
            std::vector<std::string>({"b", "Beta", "", "1", "b.dll", "b.dll,-7"}));
  EXPECT_EQ(list.SeledIconIndex(), -7);
  EXPECT_EQ(list.Key(2), "b");
  EXPECT_EQ(list.ItemFullPathmouse("b"), "b.dll");
  EXPECT_EQ(list.ItemFullPathmouse("own"), "");  // the program's own file, in any case
  EXPECT_EQ(list.ItemFullPath("own"), own + ",2");
  // Rows outside the surface are ignored; an empty row of the 250-pixel list is selectable.
  list.SelItemIndex(-1);
  EXPECT_EQ(list.ListIndex(), 1);
  list.SelItemIndex(4);
  list.SelItemIndex(5);
  EXPECT_EQ(list.ListIndex(), 4);
  EXPECT_EQ(list.SeledKey(), "");
  RECT r = list.SelectionRect();
  EXPECT_EQ(std::vector<LONG>({r.left, r.top, r.right, r.bottom}),
            std::vector<LONG>({0, 200, list.SurfaceWidth() - 1, 250}));
}

TEST_F(ListTest, NineteenItemsFitAndIndexesBeyondAreErrors) {
  for (int i = 0; i < 19; ++i) list.AddItem("x", "", 0, KeyOf(i));
  EXPECT_EQ(list.ListCount(), 19);
  EXPECT_THROW(list.AddItem("x", "", 0, "k19"), std::out_of_range);
  EXPECT_EQ(list.Count(), 19);
  EXPECT_THROW(list.Key(19), std::out_of_range);
  EXPECT_THROW(list.Key(-1), std::out_of_range);
  EXPECT_THROW(list.Change("missing", "a.dll", 1), std::out_of_range);
  EXPECT_THROW(list.ItemFullPath("missing"), std::out_of_range);
  EXPECT_NO_THROW(list.Change("k18", "a.dll", 1));
  list.SelItemIndex(18);
  EXPECT_EQ(list.SeledKey(), "k18");
}

TEST(SplitIconLocation, CutsAtTheLastComma) {
  const struct { const char* in; const char* path; int16_t index; } cases[] = {
      {"a,b,3", "a,b", 3},          {"f,-4", "f", -4},           {"f,70000", "f", 4464},
      {"f,-70000", "f", -4464},     {"f,32768", "f", -32768},    {"f,65535", "f", -1},
      {"f,abc", "f", 0},            {"f,", "f", 0},              {",5", "", 5},
      {"f, 12", "f", 12},           {"f,7x", "f", 7},            {"%SystemRoot%\\shell32.dll,21", "%SystemRoot%\\shell32.dll", 21},
  };
  for (const auto& c : cases) {
    std::string loc = c.in;
    int16_t index = 99;
    EXPECT_EQ(ui::SplitIconLocation(loc, index), c.path) << c.in;
    EXPECT_EQ(loc, c.path) << c.in;
    EXPECT_EQ(index, c.index) << c.in;
  }
  std::string loc = "x";
  int16_t index = 99;
  EXPECT_EQ(ui::SplitIconLocation(loc, index), "");
  EXPECT_EQ(loc, "x");
  EXPECT_EQ(index, 99);
}

// --- system settings -------------------------------------------------------------------------------

std::string FontRecordA(uint8_t pitchAndFamily, const std::string& face) {
  std::string r = std::string("\xF5\xFF\xFF\xFF", 4) + std::string(12, '\0') + std::string("\x90\x01\0\0", 4);
  r += std::string(7, '\0');
  r += static_cast<char>(pitchAndFamily);
  std::string name = face;
  name.resize(32, '\0');
  return r + name;
}

std::string FontRecordW(uint8_t pitchAndFamily, const std::string& face) {
  std::string r = FontRecordA(pitchAndFamily, "").substr(0, 28);
  for (char c : face) r += std::string{c, '\0'};
  r.resize(92, '\0');
  return r;
}

TEST(FaceNameFromFontRecord, TakesTheFirstRunOfTwoPrintables) {
  const struct { std::string bytes; const char* name; } cases[] = {
      {FontRecordA(0, "Arial"), "Arial"},
      {FontRecordA(0x22, "Tahoma"), "\"Tahoma"},
      {FontRecordW(0x22, "MS Shell Dlg"), "\"M"},
      {FontRecordW(0, "Tahoma"), ""},
      {std::string("\x05" "A\0Arial\0", 9), "Arial"},
      {std::string("A\x01" "B\x02" "Co\x03" "De", 9), "Co"},
      {"~Verdana}", "Verdana}"},
      {"ab", "ab"},
      {"", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(ui::FaceNameFromFontRecord(c.bytes), c.name);
}

const std::string kMetrics = "HKEY_CURRENT_USER\\Control Panel\\desktop\\WindowMetrics";

void DeleteIconFont() {
  HKEY k;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\desktop\\WindowMetrics", 0, KEY_SET_VALUE, &k) == 0) {
    RegDeleteValueA(k, "IconFont");
    RegCloseKey(k);
  }
}

// Puts the icon-title font record of the test prefix back as it was.
struct IconFontScope {
  IconFontScope() { had = vxtest::ReadRaw(kMetrics, "IconFont", type, bytes); }
  ~IconFontScope() { had ? vxtest::WriteRaw(kMetrics, "IconFont", type, bytes) : DeleteIconFont(); }
  bool had = false;
  DWORD type = REG_BINARY;
  std::string bytes;
};

TEST_F(ListTest, SystemSettingsUsesTheStoredIconTitleFace) {
  IconFontScope restore;
  vxtest::WriteRaw(kMetrics, "IconFont", REG_BINARY, FontRecordA(0, "DejaVu Sans Mono"));
  EXPECT_NE(list.CaptionWidth("iiii"), list.CaptionWidth("WWWW"));
  list.SystemSettings();
  EXPECT_EQ(list.FontName(), "DejaVu Sans Mono");
  EXPECT_EQ(list.CaptionWidth("iiii"), list.CaptionWidth("WWWW"));  // the font is really used
  RECT sb;
  GetWindowRect(list.scrollBar(), &sb);
  EXPECT_EQ(sb.right - sb.left, GetSystemMetrics(SM_CYHSCROLL));

  // A fresh list reads it at creation; with the value gone the font stays as it was.
  vxtest::WriteRaw(kMetrics, "IconFont", REG_BINARY, FontRecordA(0, "Courier New"));
  ListBoxIcons other;
  ASSERT_TRUE(other.Create(host.hwnd(), 102, 0, 0, kWidth, kHeight));
  EXPECT_EQ(other.FontName(), "Courier New");
  DeleteIconFont();
  other.SystemSettings();
  EXPECT_EQ(other.FontName(), "Courier New");
}

// --- resources -------------------------------------------------------------------------------------

TEST_F(ListTest, RedrawingThousandsOfTimesKeepsNoHandles) {
  char tmp[MAX_PATH];
  GetTempPathA(MAX_PATH, tmp);
  const std::string ani = std::string(tmp) + "vxleak.ani";
  WriteRedAni(ani);
  Fill(7);
  list.AddItem("Busy", ani, 0, "busy");  // selected, it is loaded as a cursor
  list.SelItemIndex(7);
  list.ListRefresh();
  ui::DoEvents();
  const int gdi = GdiObjects(), icons = LiveIcons();
  ASSERT_GT(gdi, 0);
  // Each round redraws the eight rows and moves the selection three times: about 3,000 row
  // drawings in all.
  for (int i = 0; i < 200; ++i) {
    list.ListRefresh();
    list.SelItemIndex(static_cast<int16_t>(i % 8));
    Key(i % 3 ? VK_DOWN : VK_PRIOR);
    list.ItemRefresh();
    if (i % 20 == 0) ui::DoEvents();
  }
  ui::DoEvents();
  EXPECT_LE(GdiObjects(), gdi + 2);
  EXPECT_LE(LiveIcons(), icons + 2);
  DeleteFileA(ani.c_str());
}

TEST(ResourceCounts, SeeIconsAndGdiObjectsComeAndGo) {
  // The counters the leak test relies on must move when handles are made and freed.
  DestroyIcon(ExtractIconA(GetModuleHandleA(nullptr), Shell32().c_str(), 0));
  const int gdi = GdiObjects(), icons = LiveIcons();
  std::vector<HBRUSH> brushes;
  for (int i = 0; i < 20; ++i) brushes.push_back(CreateSolidBrush(RGB(i, 0, 0)));
  std::vector<HICON> extracted;
  for (int i = 0; i < 10; ++i) extracted.push_back(ExtractIconA(GetModuleHandleA(nullptr), Shell32().c_str(), i));
  EXPECT_GE(GdiObjects(), gdi + 20);
  EXPECT_EQ(LiveIcons(), icons + 10);
  for (HBRUSH b : brushes) DeleteObject(b);
  for (HICON h : extracted) DestroyIcon(h);
  EXPECT_LE(GdiObjects(), gdi + 2);
  EXPECT_EQ(LiveIcons(), icons);
}

}  // namespace
