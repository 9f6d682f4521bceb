// The real "Change Icon" dialog, driven through its own message loop: grid geometry and scrolling
// for files of known icon counts, the failure messages, selection by keys and mouse, OK and Cancel.
#include <gtest/gtest.h>

#include <windows.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "ModalDriver.h"
#include "ids_picker.h"
#include "support/ScriptedSeam.h"
#include "ui/frmChangeIcon.h"
#include "ui/win.h"

namespace {

using ui::frmChangeIcon;
using vxtest::Click;
using vxtest::ModalSteps;
using vxtest::PostKey;
constexpr int kCell = frmChangeIcon::kCell;

// One 32 x 32 icon image of a single colour, as an icon resource holds it (a DIB of double
// height: colour pixels, then the transparency mask).
std::vector<BYTE> IconImage(BYTE red, BYTE green, BYTE blue) {
  BITMAPINFOHEADER header{};
  header.biSize = sizeof header;
  header.biWidth = 32;
  header.biHeight = 64;
  header.biPlanes = 1;
  header.biBitCount = 32;
  header.biSizeImage = 32 * 32 * 4 + 32 * 4;
  std::vector<BYTE> image(reinterpret_cast<BYTE*>(&header), reinterpret_cast<BYTE*>(&header) + sizeof header);
  for (int i = 0; i < 32 * 32; ++i) image.insert(image.end(), {blue, green, red, 255});
  image.resize(image.size() + 32 * 4, 0);  // mask: all opaque
  return image;
}

#pragma pack(push, 2)
struct GroupHeader { WORD reserved, type, count; };
struct GroupEntry { BYTE width, height, colours, reserved; WORD planes, bitCount; DWORD bytes; WORD id; };
#pragma pack(pop)

// A module holding exactly `count` icon groups: a copy of this test program with its resources
// replaced.
bool WriteIconLibrary(const std::string& path, int count) {
  if (!CopyFileA(ui::ModulePath().c_str(), path.c_str(), FALSE)) return false;
  HANDLE update = BeginUpdateResourceA(path.c_str(), TRUE);
  if (!update) return false;
  const WORD language = MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL);
  bool ok = true;
  for (int i = 0; i < count; ++i) {
    const WORD id = static_cast<WORD>(i + 1);
    std::vector<BYTE> image = IconImage(static_cast<BYTE>(40 + i * 6), static_cast<BYTE>(200 - i * 5), 90);
    ok = ok && UpdateResourceA(update, RT_ICON, MAKEINTRESOURCEA(id), language, image.data(),
                               static_cast<DWORD>(image.size()));
    std::vector<BYTE> group(sizeof(GroupHeader) + sizeof(GroupEntry));
    GroupHeader gh{0, 1, 1};
    GroupEntry ge{32, 32, 0, 0, 1, 32, static_cast<DWORD>(image.size()), id};
    memcpy(group.data(), &gh, sizeof gh);
    memcpy(group.data() + sizeof gh, &ge, sizeof ge);
    ok = ok && UpdateResourceA(update, RT_GROUP_ICON, MAKEINTRESOURCEA(id), language, group.data(),
                               static_cast<DWORD>(group.size()));
  }
  return EndUpdateResourceA(update, !ok) && ok;
}

std::string TempFolder() {
  char buf[MAX_PATH];
  GetTempPathA(MAX_PATH, buf);
  return std::string(buf) + "vxpicker" + std::to_string(GetCurrentProcessId());  // runs may overlap
}

std::string Library(int count) { return TempFolder() + "\\icons" + std::to_string(count) + ".dll"; }
std::string TextFile() { return TempFolder() + "\\notes.txt"; }
std::string Shell32() {
  char buf[MAX_PATH];
  GetSystemDirectoryA(buf, MAX_PATH);
  return std::string(buf) + "\\shell32.dll";
}

HWND Item(HWND dialog, int id) { return GetDlgItem(dialog, id); }

// The colour on screen at a point of the grid, after the grid has been repainted from scratch.
COLORREF ScreenPixel(HWND grid, int x, int y) {
  RedrawWindow(grid, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
  HDC dc = GetDC(grid);
  COLORREF c = GetPixel(dc, x, y);
  ReleaseDC(grid, dc);
  return c;
}

class frmChangeIconTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    CreateDirectoryA(TempFolder().c_str(), nullptr);
    for (int count : {1, 5, 32, 33}) ASSERT_TRUE(WriteIconLibrary(Library(count), count)) << count;
    HANDLE f = CreateFileA(TextFile().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(f, "no icons here\r\n", 15, &written, nullptr);
    CloseHandle(f);
  }
  static void TearDownTestSuite() {
    for (int count : {1, 5, 32, 33}) DeleteFileA(Library(count).c_str());
    DeleteFileA(TextFile().c_str());
    RemoveDirectoryA(TempFolder().c_str());
  }

  // Opens the picker on file/index and runs the steps inside it.
  bool Run(const std::string& file, int16_t index, std::vector<ModalSteps::Step> steps) {
    form.Filename = file;
    form.IconIndex = index;
    const size_t expected = steps.size();
    ModalSteps driver("Change Icon", std::move(steps));
    bool ok = form.ChooseIcon();
    EXPECT_EQ(driver.ran(), expected) << "the dialog closed before every step ran";
    EXPECT_FALSE(driver.leftOpen()) << "the dialog had to be closed by the test";
    return ok;
  }

  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
  frmChangeIcon form;
};

TEST_F(frmChangeIconTest, GridSizeAndScrollingFollowTheIconCount) {
  struct Case { int count; int width; bool scrolls; int scrollMax; };
  const Case cases[] = {
      {1, 38, false, 0}, {5, 76, false, 0}, {32, 304, false, 0}, {33, 342, true, 38},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.count);
    Run(Library(c.count), 0, {[&](HWND dialog) {
          EXPECT_EQ(form.IconCount(), c.count);
          EXPECT_EQ(form.InnerWidth(), 8 * kCell);
          EXPECT_EQ(form.GridWidth(), c.width);
          RECT grid;
          GetClientRect(form.GridWindow(), &grid);
          EXPECT_EQ(grid.right, c.width);
          EXPECT_EQ(grid.bottom, 4 * kCell);
          HWND scroll = Item(dialog, IDC_CI_SCROLL);
          EXPECT_EQ(IsWindowEnabled(scroll) != FALSE, c.scrolls);
          EXPECT_EQ(form.ScrollMax(), c.scrollMax);
          if (c.scrolls) {
            EXPECT_EQ(form.ScrollLargeChange(), 8 * kCell);
          }
          EXPECT_TRUE(IsWindowEnabled(Item(dialog, IDOK)));
          // Only a file of one icon takes the focus to OK; otherwise the grid has it.
          EXPECT_EQ(GetFocus() == Item(dialog, IDOK), c.count == 1);
          EXPECT_EQ(GetFocus() == form.GridWindow(), c.count != 1);
          Click(Item(dialog, IDCANCEL));
        }});
  }
  EXPECT_TRUE(seam.messages.empty());
}

TEST_F(frmChangeIconTest, UnusableFilesAreReportedAndOkIsDisabled) {
  struct Case { std::string file; std::string message; };
  const std::string missing = TempFolder() + "\\missing.dll";
  const Case cases[] = {
      {missing, "File not found \"" + missing + "\""},
      {TextFile(), "No Icons found in \"" + TextFile() + "\""},
      {"", "File not found \"\""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    seam.messages.clear();
    Run(c.file, 3, {[&](HWND dialog) {
          ASSERT_EQ(seam.messages.size(), 1u);
          EXPECT_EQ(seam.messages[0].text, c.message);
          EXPECT_EQ(seam.messages[0].title, "Change Icon");
          EXPECT_EQ(seam.messages[0].flags, static_cast<unsigned>(MB_OK | MB_ICONEXCLAMATION));
          EXPECT_FALSE(IsWindowEnabled(Item(dialog, IDOK)));
          EXPECT_FALSE(IsWindowEnabled(form.GridWindow()));
          EXPECT_EQ(form.ScrollMax(), 0);
          EXPECT_EQ(GetFocus(), Item(dialog, IDC_CI_FILENAME));
          // Enter cannot leave through the disabled OK; it shows the same file again.
          PostKey(VK_RETURN);
        },
        [&](HWND dialog) {
          EXPECT_EQ(seam.messages.size(), 2u);
          EXPECT_FALSE(IsWindowEnabled(Item(dialog, IDOK)));
          PostKey(VK_ESCAPE);  // the file box leaves Escape to the dialog
        }});
  }
}

TEST_F(frmChangeIconTest, ChooseIconSelectsTheGivenIndexAndScrollsItIntoView) {
  const std::string shell = Shell32();
  const int count = static_cast<int>(
      reinterpret_cast<INT_PTR>(ExtractIconA(GetModuleHandleA(nullptr), shell.c_str(), static_cast<UINT>(-1))));
  ASSERT_GT(count, 160);
  const int columns = (count + 3) / 4;
  bool ok = Run(shell, 150, {[&](HWND) {
                  EXPECT_EQ(form.SelectedIndex(), 150);
                  RECT sel = form.SelectionRect();
                  EXPECT_EQ(sel.left, 37 * kCell);
                  EXPECT_EQ(sel.top, 2 * kCell);
                  EXPECT_EQ(form.ScrollMax(), columns * kCell - 8 * kCell);
                  EXPECT_EQ(form.ScrollValue(), 38 * kCell - 8 * kCell);
                  // The grid has moved left by the scroll value, so the column is the last one shown.
                  RECT grid;
                  GetWindowRect(form.GridWindow(), &grid);
                  MapWindowPoints(nullptr, GetParent(form.GridWindow()), reinterpret_cast<POINT*>(&grid), 2);
                  EXPECT_EQ(grid.left, -form.ScrollValue());
                  EXPECT_EQ(sel.right + grid.left, form.InnerWidth());
                  // Repainted from the picture kept behind the grid: highlight under the selected
                  // cell's corner, window colour in a cell's gap.
                  EXPECT_EQ(ScreenPixel(form.GridWindow(), sel.left + 1, sel.top + 1), GetSysColor(COLOR_HIGHLIGHT));
                  EXPECT_EQ(ScreenPixel(form.GridWindow(), sel.left + 1 - kCell, sel.top + 1), GetSysColor(COLOR_WINDOW));
                  Click(GetDlgItem(GetParent(GetParent(form.GridWindow())), IDCANCEL));
                }});
  EXPECT_FALSE(ok);
  EXPECT_EQ(form.Filename, shell);
  EXPECT_EQ(form.IconIndex, 150);
}

TEST_F(frmChangeIconTest, ArrowKeysMoveTheSelectionEnableOkAndScroll) {
  // From cell 0 of the 33-icon file: expected index and scroll value after each key.
  struct Move { UINT key; int index; int scroll; };
  const Move moves[] = {
      {VK_DOWN, 1, 0},   {VK_DOWN, 2, 0},   {VK_DOWN, 3, 0},   {VK_DOWN, 3, 0},  // stays in the column
      {VK_RIGHT, 7, 0},  {VK_UP, 6, 0},     {VK_LEFT, 2, 0},   {VK_LEFT, 2, 0},  // stays at the left
      {VK_RIGHT, 6, 0},  {VK_RIGHT, 10, 0}, {VK_RIGHT, 14, 0}, {VK_RIGHT, 18, 0},
      {VK_RIGHT, 22, 0}, {VK_RIGHT, 26, 0}, {VK_RIGHT, 30, 0}, {VK_RIGHT, 34, 38},  // ninth column
      {VK_RIGHT, 34, 38}, {VK_UP, 33, 38},  {VK_UP, 32, 38},
  };
  std::vector<ModalSteps::Step> steps;
  steps.push_back([&](HWND dialog) {
    EnableWindow(Item(dialog, IDOK), FALSE);
    PostKey(moves[0].key);
  });
  for (size_t i = 0; i < std::size(moves); ++i) {
    steps.push_back([&, i](HWND dialog) {
      SCOPED_TRACE(i);
      EXPECT_EQ(form.SelectedIndex(), moves[i].index);
      EXPECT_EQ(form.ScrollValue(), moves[i].scroll);
      if (i == 0) {
        EXPECT_TRUE(IsWindowEnabled(Item(dialog, IDOK)));
      }
      if (i + 1 < std::size(moves)) PostKey(moves[i + 1].key);
      else Click(Item(dialog, IDOK));
    });
  }
  EXPECT_TRUE(Run(Library(33), 0, std::move(steps)));
  EXPECT_EQ(form.IconIndex, 32);
  EXPECT_EQ(form.Filename, Library(33));
}

TEST_F(frmChangeIconTest, OkKeepsTheIndexWhenAnEmptyCellIsSelected) {
  // Cell 34 lies in the ninth column of a 33-icon file, below its only icon.
  EXPECT_TRUE(Run(Library(33), 2, {[&](HWND) {
                    for (int i = 0; i < 8; ++i) PostKey(VK_RIGHT);
                  },
                  [&](HWND dialog) {
                    EXPECT_EQ(form.SelectedIndex(), 34);
                    Click(Item(dialog, IDOK));
                  }}));
  EXPECT_EQ(form.IconIndex, 2);
}

TEST_F(frmChangeIconTest, MouseSelectsDragsAndDoubleClickAccepts) {
  auto at = [](int column, int row) { return MAKELPARAM(column * kCell + 5, row * kCell + 5); };
  EXPECT_TRUE(Run(Library(33), 0, {[&](HWND) {
                    HWND grid = form.GridWindow();
                    SendMessageA(grid, WM_LBUTTONDOWN, MK_LBUTTON, at(2, 1));
                    SendMessageA(grid, WM_LBUTTONUP, 0, at(2, 1));
                    EXPECT_EQ(form.SelectedIndex(), 9);
                    EXPECT_EQ(GetFocus(), grid);
                    // Below the grid: ignored.
                    SendMessageA(grid, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 4 * kCell + 2));
                    EXPECT_EQ(form.SelectedIndex(), 9);
                    // Dragging past the right edge of the frame selects and scrolls one cell.
                    SendMessageA(grid, WM_MOUSEMOVE, MK_LBUTTON, at(8, 0));
                    EXPECT_EQ(form.SelectedIndex(), 32);
                    EXPECT_EQ(form.ScrollValue(), 38);
                    SendMessageA(grid, WM_MOUSEMOVE, MK_LBUTTON, at(0, 3));
                    EXPECT_EQ(form.SelectedIndex(), 3);
                    EXPECT_EQ(form.ScrollValue(), 0);
                    SendMessageA(grid, WM_LBUTTONUP, 0, at(0, 3));
                    // The wheel scrolls by columns, within the range.
                    SendMessageA(grid, WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
                    EXPECT_EQ(form.ScrollValue(), 38);
                    SendMessageA(grid, WM_MOUSEWHEEL, MAKEWPARAM(0, 2 * WHEEL_DELTA), 0);
                    EXPECT_EQ(form.ScrollValue(), 0);
                    // Moving without the button changes nothing.
                    SendMessageA(grid, WM_MOUSEMOVE, 0, at(5, 2));
                    EXPECT_EQ(form.SelectedIndex(), 3);
                    SendMessageA(grid, WM_LBUTTONDOWN, MK_LBUTTON, at(3, 1));
                    SendMessageA(grid, WM_LBUTTONUP, 0, at(3, 1));
                    SendMessageA(grid, WM_LBUTTONDBLCLK, MK_LBUTTON, at(3, 1));
                  }}));
  EXPECT_EQ(form.IconIndex, 13);
}

TEST_F(frmChangeIconTest, DoubleClickDoesNothingWhileOkIsDisabled) {
  Run(Library(5), 0, {[&](HWND dialog) {
        EnableWindow(Item(dialog, IDOK), FALSE);
        SendMessageA(form.GridWindow(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(45, 5));
        EXPECT_EQ(form.SelectedIndex(), 4);
      },
      [&](HWND dialog) { Click(Item(dialog, IDCANCEL)); }});
  EXPECT_EQ(form.IconIndex, 0);
}

TEST_F(frmChangeIconTest, CancelEscapeAndTheCloseBoxChangeNothing) {
  const std::vector<std::pair<const char*, ModalSteps::Step>> ways = {
      {"Cancel", [](HWND dialog) { Click(GetDlgItem(dialog, IDCANCEL)); }},
      {"Escape", [](HWND) { PostKey(VK_ESCAPE); }},
      {"close box", [](HWND dialog) { PostMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); }},
  };
  for (const auto& [name, close] : ways) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(Run(Library(5), 1, {[&](HWND dialog) {
                       PostKey(VK_RIGHT);
                       SetWindowTextA(GetDlgItem(dialog, IDC_CI_FILENAME), Library(33).c_str());
                     },
                     [&](HWND dialog) {
                       EXPECT_EQ(form.SelectedIndex(), 5);
                       close(dialog);
                     }}));
    EXPECT_EQ(form.Filename, Library(5));
    EXPECT_EQ(form.IconIndex, 1);
  }
}

TEST_F(frmChangeIconTest, EnterInTheFileBoxShowsTheTypedFile) {
  // Start scrolled to the ninth column of the 33-icon file, then type other names.
  Run(Library(33), 32, {[&](HWND dialog) {
        EXPECT_EQ(form.ScrollValue(), 38);
        HWND box = Item(dialog, IDC_CI_FILENAME);
        SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(box), TRUE);
        SetWindowTextA(box, Library(5).c_str());
        PostKey(VK_RETURN);
      },
      [&](HWND dialog) {
        EXPECT_EQ(form.IconCount(), 5);
        EXPECT_EQ(form.GridWidth(), 76);
        EXPECT_EQ(form.ScrollValue(), 0);
        EXPECT_FALSE(IsWindowEnabled(Item(dialog, IDC_CI_SCROLL)));
        SetWindowTextA(Item(dialog, IDC_CI_FILENAME), "C:\\nowhere\\none.dll");
        PostKey(VK_RETURN);
      },
      [&](HWND dialog) {
        ASSERT_EQ(seam.messages.size(), 1u);
        EXPECT_EQ(seam.messages[0].text, "File not found \"C:\\nowhere\\none.dll\"");
        EXPECT_FALSE(IsWindowEnabled(Item(dialog, IDOK)));
        SetWindowTextA(Item(dialog, IDC_CI_FILENAME), Library(33).c_str());
        PostKey(VK_RETURN);
      },
      [&](HWND dialog) {
        EXPECT_EQ(form.IconCount(), 33);
        EXPECT_EQ(form.GridWidth(), 342);
        EXPECT_TRUE(IsWindowEnabled(Item(dialog, IDOK)));
        EXPECT_TRUE(IsWindowEnabled(Item(dialog, IDC_CI_SCROLL)));
        Click(Item(dialog, IDOK));
      }});
  EXPECT_EQ(form.Filename, Library(33));
  EXPECT_EQ(form.IconIndex, 32);  // the selected cell was kept
}

TEST_F(frmChangeIconTest, BrowseAsksForAnIconFileAndShowsIt) {
  seam.files = {std::nullopt, Library(1)};
  EXPECT_TRUE(Run(Library(33), 6, {[&](HWND dialog) { Click(Item(dialog, IDC_CI_BROWSE)); },
                                   [&](HWND dialog) {
                                     // Cancelled: nothing changes.
                                     EXPECT_EQ(form.IconCount(), 33);
                                     Click(Item(dialog, IDC_CI_BROWSE));
                                   },
                                   [&](HWND dialog) {
                                     EXPECT_EQ(ui::GetText(Item(dialog, IDC_CI_FILENAME)), Library(1));
                                     EXPECT_EQ(form.IconCount(), 1);
                                     EXPECT_EQ(form.SelectedIndex(), 0);
                                     EXPECT_EQ(GetFocus(), Item(dialog, IDOK));
                                     PostKey(VK_RETURN);
                                   }}));
  ASSERT_EQ(seam.fileDialogs.size(), 2u);
  const ui::FileDialog& asked = seam.fileDialogs[0];
  EXPECT_EQ(asked.title, "Change Icon");
  EXPECT_FALSE(asked.save);
  const char filter[] = "Icon Files\0*.exe;*.dll;*.icl;*.ico\0Programs\0*.exe\0Libraries\0*.dll\0Icons\0*.ico\0"
                        "All Files\0*.*\0";
  EXPECT_EQ(asked.filter, std::string(filter, sizeof filter - 1));
  EXPECT_EQ(asked.initialFile, Library(33));
  EXPECT_EQ(form.Filename, Library(1));
  EXPECT_EQ(form.IconIndex, 0);
}

TEST_F(frmChangeIconTest, TheSeamsPickerReturnsTheChoice) {
  std::string file = Library(33);
  int16_t index = 4;
  {
    ModalSteps driver("Change Icon", {[](HWND d) {
                                        SetWindowTextA(GetDlgItem(d, IDC_CI_FILENAME), Library(5).c_str());
                                        PostKey(VK_DOWN);
                                      },
                                      [](HWND) { PostKey(VK_RETURN); }});
    EXPECT_TRUE(ui::RealSeam().ChooseIcon(nullptr, file, index));
  }
  EXPECT_EQ(file, Library(5));
  EXPECT_EQ(index, 5);
  {
    ModalSteps driver("Change Icon", {[](HWND) { PostKey(VK_LEFT); }, [](HWND) { PostKey(VK_ESCAPE); }});
    EXPECT_FALSE(ui::RealSeam().ChooseIcon(nullptr, file, index));
  }
  EXPECT_EQ(file, Library(5));
  EXPECT_EQ(index, 5);
}

}  // namespace

namespace {

// Alt and a letter, as the dialog manager sees it.
void PostMnemonic(char letter) { PostMessageA(GetFocus(), WM_SYSCHAR, static_cast<WPARAM>(letter), 1 << 29); }

TEST_F(frmChangeIconTest, MnemonicsAndTabOrderReachEveryControl) {
  std::vector<int> ids;  // control id of the focus at each step
  auto note = [&](HWND) { ids.push_back(GetFocus() ? GetDlgCtrlID(GetFocus()) : 0); };
  auto tab = [&](HWND d) { note(d); PostKey(VK_TAB); };
  Run(Library(33), 0, {[&](HWND d) { note(d); PostMnemonic('f'); },
                       tab, tab, tab, tab, tab,
                       [&](HWND d) { note(d); PostMnemonic('i'); },
                       [&](HWND d) {
                         note(d);
                         // Focus put into the file box by a click or a call also selects all of it.
                         SendMessageA(GetDlgItem(d, IDC_CI_FILENAME), EM_SETSEL, 2, 2);
                         SetFocus(GetDlgItem(d, IDC_CI_FILENAME));
                         DWORD start = 1, end = 0;
                         SendMessageA(GetFocus(), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                                      reinterpret_cast<LPARAM>(&end));
                         EXPECT_EQ(start, 0u);
                         EXPECT_EQ(end, Library(33).size());
                         Click(GetDlgItem(d, IDCANCEL));
                       }});
  const std::vector<int> expected = {IDC_CI_LIST,  IDC_CI_FILENAME, IDC_CI_BROWSE, IDC_CI_LIST,
                                     IDOK,         IDCANCEL,        IDC_CI_FILENAME, IDC_CI_LIST};
  EXPECT_EQ(ids, expected);
}

}  // namespace
