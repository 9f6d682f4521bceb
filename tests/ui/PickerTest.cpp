// The real "Change Icon" dialog, driven through its own message loop, on files of known icon counts.

#include "UiTest.h"
#include <fstream>

#include "ids_picker.h"
#include "support/ScriptedSeam.h"
#include "ui/frmChangeIcon.h"

namespace {

using ui::frmChangeIcon;
using vxtest::Click, vxtest::Step, vxtest::PostKey;
constexpr int kCell = frmChangeIcon::kCell;

#pragma pack(push, 2)
struct GroupIcon {  // an icon group of one image
  WORD reserved, type, count; BYTE width, height, colours, zero; WORD planes, bitCount; DWORD bytes; WORD id;
};
#pragma pack(pop)

// A module holding exactly `count` single-colour 32 x 32 icons: a copy of this test program with its
// resources replaced.
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

TEST_F(frmChangeIconTest, GridSizeAndScrollingFollowTheIconCount) {
  const struct { int count, width; bool scrolls; int scrollMax; } cases[] = {
      {1, 38, false, 0}, {5, 76, false, 0}, {32, 304, false, 0}, {33, 342, true, 38},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.count);
    Run(Library(c.count), 0, {[&](HWND) {
          RECT grid;
          GetClientRect(form.GridWindow(), &grid);
          EXPECT_EQ(grid.right, c.width);
          EXPECT_EQ(grid.bottom, 4 * kCell);
          EXPECT_EQ(IsWindowEnabled(Item(IDC_CI_SCROLL)) != FALSE, c.scrolls);
          EXPECT_EQ(form.ScrollMax(), c.scrollMax);
          Click(Item(IDCANCEL));
        }});
  }
}

TEST_F(frmChangeIconTest, ChooseIconSelectsTheGivenIndexAndScrollsItIntoView) {
  EXPECT_FALSE(Run(vxtest::Shell32(), 150, {[&](HWND) {
                     EXPECT_EQ(form.SelectedIndex(), 150);
                     RECT sel = form.SelectionRect();
                     EXPECT_EQ(std::pair(sel.left, sel.top), std::pair(37L * kCell, 2L * kCell));
                     EXPECT_EQ(form.ScrollValue(), 30 * kCell);
                     Click(Item(IDCANCEL));
                   }}));
  EXPECT_EQ(form.IconIndex, 150);
}

TEST_F(frmChangeIconTest, ArrowKeysMoveTheSelectionWithinTheGridAndScroll) {
  // From cell 0 of the 33-icon file: the index and scroll value after each key; the edges hold.
  const struct { UINT key; int index, scroll; } moves[] = {
      {VK_UP, 0, 0},     {VK_LEFT, 0, 0},   {VK_DOWN, 1, 0},   {VK_DOWN, 2, 0},    {VK_DOWN, 3, 0},
      {VK_DOWN, 3, 0},   {VK_RIGHT, 7, 0},  {VK_UP, 6, 0},     {VK_RIGHT, 10, 0},  {VK_RIGHT, 14, 0},
      {VK_RIGHT, 18, 0}, {VK_RIGHT, 22, 0}, {VK_RIGHT, 26, 0}, {VK_RIGHT, 30, 0},  {VK_RIGHT, 34, 38},
      {VK_RIGHT, 34, 38}, {VK_UP, 33, 38},  {VK_UP, 32, 38},  // the ninth column scrolls into view
  };
  std::vector<Step> steps = {[&](HWND) { PostKey(moves[0].key); }};
  for (size_t i = 0; i < std::size(moves); ++i) {
    steps.push_back([&, i](HWND) {
      SCOPED_TRACE(i);
      EXPECT_EQ(form.SelectedIndex(), moves[i].index);
      EXPECT_EQ(form.ScrollValue(), moves[i].scroll);
      if (i + 1 < std::size(moves)) PostKey(moves[i + 1].key);
      else Click(Item(IDOK));
    });
  }
  EXPECT_TRUE(Run(Library(33), 0, std::move(steps)));
  EXPECT_EQ(form.IconIndex, 32);
}

TEST_F(frmChangeIconTest, OkAndEnterReturnTheChoiceCancelAndEscapeChangeNothing) {
  const std::pair<Step, bool> ways[] = {
      {[](HWND d) { Click(GetDlgItem(d, IDOK)); }, true}, {[](HWND) { PostKey(VK_RETURN); }, true},
      {[](HWND d) { Click(GetDlgItem(d, IDCANCEL)); }, false}, {[](HWND) { PostKey(VK_ESCAPE); }, false},
  };
  for (const auto& [leave, ok] : ways) {
    std::string file = Library(33);
    int16_t index = 1;
    EXPECT_EQ(vxtest::RunModal("Change Icon", {[](HWND) { PostKey(VK_RIGHT); }, leave},
                               [&] { return ui::RealSeam().ChooseIcon(nullptr, file, index); }), ok);
    EXPECT_EQ(index, ok ? 5 : 1) << ok;
  }
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
      EXPECT_EQ(seam.messages[0].text, message);
      EXPECT_EQ(seam.messages[0].title, "Change Icon");
      EXPECT_EQ(seam.messages[0].flags, static_cast<unsigned>(MB_OK | MB_ICONEXCLAMATION));
      EXPECT_FALSE(IsWindowEnabled(Item(IDOK)));
      seam.messages.clear();
      type(next);
    };
  };
  Run(Library(33), 32, {[&](HWND dialog) {
        EXPECT_EQ(form.ScrollValue(), 38);
        SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(IDC_CI_FILENAME)), TRUE);
        type(missing);
      },
      refused("File not found \"" + missing + "\"", TextFile()),
      refused("No Icons found in \"" + TextFile() + "\"", Library(5)),
      [&](HWND) {
        EXPECT_EQ(form.IconCount(), 5);
        EXPECT_EQ(form.ScrollValue(), 0);
        type(Library(33));
      },
      [&](HWND) { EXPECT_EQ(form.IconCount(), 33); Click(Item(IDOK)); }});
  EXPECT_EQ(form.Filename, Library(33));
  EXPECT_EQ(form.IconIndex, 32);  // the selected cell was kept
}

}  // namespace
