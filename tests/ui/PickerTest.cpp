// The real "Change Icon" dialog, driven through its own message loop, on files of known icon counts.

#include "UiTest.h"
#include <fstream>
#include <oleacc.h>

#include "ids_picker.h"
#include "support/ScreenReader.h"
#include "support/ScriptedSeam.h"
#include "ui/frmChangeIcon.h"

namespace {

using ui::frmChangeIcon;
using vxtest::Click, vxtest::Step, vxtest::PostKey;

#pragma pack(push, 2)
struct GroupIcon {  // an icon group of one image
  WORD reserved, type, count; BYTE width, height, colours, zero; WORD planes, bitCount; DWORD bytes; WORD id;
};
#pragma pack(pop)

// A module holding exactly `count` single-colour 32 x 32 icons: this test program with its resources replaced.
bool WriteIconLibrary(const std::string& path, int count) {
  if (!CopyFileA(ui::ModulePath().c_str(), path.c_str(), FALSE)) return false;
  HANDLE update = BeginUpdateResourceA(path.c_str(), TRUE);
  bool ok = update != nullptr;
  for (int i = 0; ok && i < count; ++i) {
    BITMAPINFOHEADER h{sizeof h, 32, 64, 1, 32, 0, 32 * 32 * 4 + 32 * 4, 0, 0, 0, 0};
    std::vector<BYTE> image(reinterpret_cast<BYTE*>(&h), reinterpret_cast<BYTE*>(&h) + sizeof h);
    for (int p = 0; p < 32 * 32; ++p) image.insert(image.end(), {90, BYTE(200 - i * 5), BYTE(40 + i * 6), 255});
    image.resize(image.size() + 32 * 4, 0);  // mask: all opaque
    const WORD id = static_cast<WORD>(i + 1), language = MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL);
    GroupIcon group{0, 1, 1, 32, 32, 0, 0, 1, 32, static_cast<DWORD>(image.size()), id};
    ok = UpdateResourceA(update, RT_ICON, MAKEINTRESOURCEA(id), language, image.data(), group.bytes) &&
         UpdateResourceA(update, RT_GROUP_ICON, MAKEINTRESOURCEA(id), language, &group, sizeof group);
  }
  return update && EndUpdateResourceA(update, !ok) && ok;
}

const std::string& Folder() { static const std::string folder = vxtest::TempFolder("vxpicker"); return folder; }
std::string Library(int count) { return Folder() + "\\icons" + std::to_string(count) + ".dll"; }
std::string TextFile() { return Folder() + "\\notes.txt"; }

class frmChangeIconTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    for (int count : {1, 5, 32, 33}) ASSERT_TRUE(WriteIconLibrary(Library(count), count)) << count;
    std::ofstream(TextFile()) << "no icons here\n";
  }
  static void TearDownTestSuite() {
    for (const std::string& f : {Library(1), Library(5), Library(32), Library(33), TextFile()}) DeleteFileA(f.c_str());
    RemoveDirectoryA(Folder().c_str());
  }
  bool Run(const std::string& file, int16_t index, std::vector<Step> steps) {
    form.Filename = file;
    form.IconIndex = index;
    return vxtest::RunModal("Change Icon", std::move(steps), [&] { return form.ChooseIcon(); });
  }
  HWND Item(int id) const { return GetDlgItem(form.hwnd(), id); }

  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
  frmChangeIcon form;
};

// Through the seam: OK and Enter return the cell chosen, Cancel and Escape leave the index alone.
TEST_F(frmChangeIconTest, GridWidthAndScrollingFollowTheIconCountAndOnlyOkOrEnterChoose) {
  const struct { int count, width; bool scrolls; Step leave; bool chosen; } cases[] = {
      {1, 38, false, [](HWND d) { Click(GetDlgItem(d, IDCANCEL)); }, false},
      {5, 76, false, [](HWND d) { Click(GetDlgItem(d, IDOK)); }, true},
      {32, 304, false, [](HWND) { PostKey(VK_ESCAPE); }, false},
      {33, 342, true, [](HWND) { PostKey(VK_RETURN); }, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.count);
    std::string file = Library(c.count);
    int16_t index = 0;
    const Step look = [&](HWND d) {
      RECT grid;
      GetClientRect(GetDlgItem(GetDlgItem(d, IDC_CI_CONTAINER), IDC_CI_LIST), &grid);
      EXPECT_EQ(grid.right, c.width);
      EXPECT_EQ(IsWindowEnabled(GetDlgItem(d, IDC_CI_SCROLL)) != FALSE, c.scrolls);
      PostKey(VK_DOWN);
    };
    EXPECT_EQ(vxtest::RunModal("Change Icon", {look, c.leave},
                               [&] { return ui::RealSeam().ChooseIcon(nullptr, file, index); }), c.chosen);
    EXPECT_EQ(index, c.chosen ? 1 : 0);
  }
}

TEST_F(frmChangeIconTest, ArrowKeysMoveTheSelectionWithinTheGridAndScroll) {
  // From cell 0 of the 33-icon file: index and scroll after each key; the edges hold, the ninth column scrolls.
  const struct { UINT key; int index, scroll; } moves[] = {
      {VK_UP, 0, 0}, {VK_LEFT, 0, 0}, {VK_DOWN, 1, 0}, {VK_DOWN, 2, 0}, {VK_DOWN, 3, 0}, {VK_DOWN, 3, 0},
      {VK_RIGHT, 7, 0}, {VK_UP, 6, 0}, {VK_RIGHT, 10, 0}, {VK_RIGHT, 14, 0}, {VK_RIGHT, 18, 0}, {VK_RIGHT, 22, 0},
      {VK_RIGHT, 26, 0}, {VK_RIGHT, 30, 0}, {VK_RIGHT, 34, 38}, {VK_RIGHT, 34, 38}, {VK_UP, 33, 38}, {VK_UP, 32, 38},
  };
  std::vector<Step> steps = {[&](HWND) { PostKey(moves[0].key); }};
  for (size_t i = 0; i < std::size(moves); ++i) {
    steps.push_back([&, i](HWND) {
      EXPECT_EQ(std::pair(form.SelectedIndex(), form.ScrollValue()), std::pair(moves[i].index, moves[i].scroll)) << i;
      if (i + 1 < std::size(moves)) PostKey(moves[i + 1].key);
      else Click(Item(IDOK));
    });
  }
  EXPECT_TRUE(Run(Library(33), 0, std::move(steps)));
  EXPECT_EQ(form.IconIndex, 32);
}

// A screen reader in another process hears one item per icon (none for the empty cells of the last
// column) and which one is selected, before and after a key moves it; an empty cell selects nothing.
TEST_F(frmChangeIconTest, ScreenReaderHearsEveryIconAndTheSelectedOne) {
  const auto hear = [&](HWND d, int selected) {
    const vxtest::HeardList heard = vxtest::ReadAsScreenReader(GetDlgItem(GetDlgItem(d, IDC_CI_CONTAINER), IDC_CI_LIST));
    ASSERT_EQ(heard.error, "");
    EXPECT_EQ(heard.role, ROLE_SYSTEM_LIST);
    ASSERT_EQ(heard.count, 5);
    ASSERT_EQ(heard.items.size(), 5u);
    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(heard.items[size_t(i)].name, "Icon " + std::to_string(i + 1));
      EXPECT_EQ(heard.items[size_t(i)].role, ROLE_SYSTEM_LISTITEM);
      EXPECT_EQ((heard.items[size_t(i)].state & STATE_SYSTEM_SELECTED) != 0, i == selected) << i;
    }
    EXPECT_EQ(heard.selection, selected + 1);
  };
  EXPECT_FALSE(Run(Library(5), 2, {[&](HWND d) { hear(d, 2); PostKey(VK_DOWN); },
                                   [&](HWND d) { hear(d, 3); PostKey(VK_RIGHT); },
                                   [&](HWND d) { hear(d, -1); Click(Item(IDCANCEL)); }}));  // an empty cell
}

TEST_F(frmChangeIconTest, EnterInTheFileBoxShowsTheTypedFileOrSaysWhyNot) {
  const std::string missing = Folder() + "\\missing.dll";
  auto type = [&](const std::string& file) {
    SetWindowTextA(Item(IDC_CI_FILENAME), file.c_str());
    PostKey(VK_RETURN);
  };
  auto refused = [&](const std::string& message, const std::string& next) {
    return [&, message, next](HWND) {
      ASSERT_EQ(seam.messages.size(), 1u);
      const auto& m = seam.messages[0];
      EXPECT_EQ(std::tie(m.text, m.title, m.flags),
                std::tuple(message, std::string("Change Icon"), unsigned(MB_OK | MB_ICONEXCLAMATION)));
      EXPECT_FALSE(IsWindowEnabled(Item(IDOK)));
      seam.messages.clear();
      type(next);
    };
  };
  Run(Library(33), 32, {[&](HWND dialog) {  // the given index is selected and scrolled into view
        EXPECT_EQ(form.SelectedIndex(), 32);
        EXPECT_EQ(form.SelectionRect().left, 8 * frmChangeIcon::kCell);
        EXPECT_EQ(form.ScrollValue(), 38);
        SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(IDC_CI_FILENAME)), TRUE);
        type(missing);
      },
      refused("File not found \"" + missing + "\"", TextFile()),
      refused("No Icons found in \"" + TextFile() + "\"", Library(5)),
      [&](HWND) { EXPECT_EQ(std::pair(form.IconCount(), form.ScrollValue()), std::pair(5, 0)); type(Library(33)); },
      [&](HWND) { EXPECT_EQ(form.IconCount(), 33); Click(Item(IDOK)); }});
  EXPECT_EQ(form.Filename, Library(33));
  EXPECT_EQ(form.IconIndex, 32);  // the selected cell was kept
}

// The grid's whole picture, as WM_PRINTCLIENT gives it (columns out of view included).
std::vector<COLORREF> GridPicture(HWND grid, int width) {
  ui::WindowDc screen(nullptr);
  ui::MemDc dc(CreateCompatibleDC(screen.get()));
  ui::BitmapHandle bitmap(CreateCompatibleBitmap(screen.get(), width, 4 * frmChangeIcon::kCell));
  ui::SelectScope keep(dc.get(), bitmap.get());
  SendMessageA(grid, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc.get()), PRF_CLIENT);
  std::vector<COLORREF> centres;  // the middle of each cell's icon, in the order the grid fills
  for (int i = 0; i < width / frmChangeIcon::kCell * 4; ++i)
    centres.push_back(GetPixel(dc.get(), i / 4 * frmChangeIcon::kCell + 19, i % 4 * frmChangeIcon::kCell + 19));
  return centres;
}

// Columns come into the picture as they are scrolled into view: after going to either end, every
// cell shows its own icon (icon i of the library is the colour below), whichever cell it opened on.
TEST_F(frmChangeIconTest, EveryColumnScrolledIntoViewShowsItsIcons) {
  auto colour = [](int i) { return RGB(40 + i * 6, 200 - i * 5, 90); };
  for (int16_t opened : {int16_t{0}, int16_t{32}}) {
    SCOPED_TRACE(opened);
    auto scroll = [&](int code) {
      return [this, code](HWND d) { SendMessageA(d, WM_HSCROLL, static_cast<WPARAM>(code), reinterpret_cast<LPARAM>(Item(IDC_CI_SCROLL))); };
    };
    Run(Library(33), opened, {scroll(opened ? SB_LEFT : SB_RIGHT), scroll(opened ? SB_RIGHT : SB_LEFT), [&](HWND) {
          const std::vector<COLORREF> cells = GridPicture(form.GridWindow(), form.GridWidth());
          ASSERT_EQ(cells.size(), 36u);
          for (int i = 0; i < 36; ++i)
            EXPECT_EQ(cells[static_cast<size_t>(i)], i < 33 ? colour(i) : GetSysColor(COLOR_WINDOW)) << "cell " << i;
          Click(Item(IDCANCEL));
        }});
  }
}

}  // namespace
