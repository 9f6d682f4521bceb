// The icon list under the icon-title font records that accessibility settings and damage leave behind:
// the captions take only the record's face name, every caption stays inside its row, and the real
// program starts to an idle window that shows its rows.
#include "UiTest.h"
#include <commctrl.h>

#include "ids_main.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"
#include "support/RegistryScope.h"
#include "ui/ListBoxIcons.h"

namespace {

constexpr char kMetrics[] = "HKEY_CURRENT_USER\\Control Panel\\desktop\\WindowMetrics";
// Where Wine keeps a system parameter set for the session only; while it is there, it rules over the
// record for every process.
constexpr char kSessionParameters[] = "HKEY_CURRENT_USER\\Software\\Wine\\Temporary System Parameters";

// A font record as NT and Wine store it (LOGFONTW, pitch and family 0x22 before a wide face) and as an
// ANSI system stores it (LOGFONTA, here with a pitch byte of 0 so that the face stands alone).
template <class LogFont, class Char>
std::string FontRecord(LONG height, const Char* face, BYTE pitchAndFamily) {
  LogFont lf{};
  lf.lfHeight = height;
  lf.lfWeight = FW_NORMAL;
  lf.lfPitchAndFamily = pitchAndFamily;
  for (int i = 0; face[i] && i + 1 < LF_FACESIZE; ++i) lf.lfFaceName[i] = face[i];
  return std::string(reinterpret_cast<const char*>(&lf), sizeof lf);
}

// One record in the registry and, optionally, a system icon-title font of another height, for the
// length of a case; both are put back afterwards.
class IconFontScope {
 public:
  IconFontScope(const std::string& record, LONG systemHeight) {
    SystemParametersInfoW(SPI_GETICONTITLELOGFONT, sizeof before_, &before_, 0);
    if (systemHeight != 0) {
      LOGFONTW lf = before_;
      lf.lfHeight = systemHeight;
      changed_ = SystemParametersInfoW(SPI_SETICONTITLELOGFONT, sizeof lf, &lf, 0) != FALSE;
    }
    if (systemHeight == 0) vxtest::DeleteTree(kSessionParameters);
    vxtest::WriteRaw(kMetrics, "IconFont", REG_BINARY, record);
  }
  ~IconFontScope() {
    if (changed_) SystemParametersInfoW(SPI_SETICONTITLELOGFONT, sizeof before_, &before_, 0);
  }

 private:
  vxtest::KeySnapshot keep_{{kMetrics, kSessionParameters}};  // restored after the parameter
  LOGFONTW before_{};
  bool changed_ = false;
};

std::string SystemIconTitleFace() {
  LOGFONTA lf{};
  SystemParametersInfoA(SPI_GETICONTITLELOGFONT, sizeof lf, &lf, 0);
  return lf.lfFaceName;
}

// The top and bottom line (relative to the row) with caption ink, right of the icons; -1 when none.
std::pair<int, int> InkRows(const std::function<COLORREF(int, int)>& pixel, int width, int row) {
  const COLORREF window = GetSysColor(COLOR_WINDOW);
  int top = -1, bottom = -1;
  for (int y = 0; y < ui::ListBoxIcons::kRowHeight; ++y)
    for (int x = 50; x < width - 2; ++x)
      if (pixel(x, row * ui::ListBoxIcons::kRowHeight + y) != window) {
        if (top < 0) top = y;
        bottom = y;
        break;
      }
  return {top, bottom};
}

struct Record { const char* what; std::string bytes; LONG systemHeight; };  // 0: the system's font as it is

const std::vector<Record>& Records() {
  static const std::vector<Record> records = {
      {"Wine's own", FontRecord<LOGFONTW>(-11, L"MS Shell Dlg", 0x22), 0},
      {"48 pixels, wide", FontRecord<LOGFONTW>(-48, L"Tahoma", 0x22), -48},
      {"48 pixels, ANSI", FontRecord<LOGFONTA>(-48, "Tahoma", 0), -48},
      {"damaged: 50 printable bytes", std::string(50, 'A'), 0},
      {"no NUL at all, 5000 bytes", std::string(5000, 'B'), 0},
      {"lone printables only", std::string("A\x01" "B\x02" "C", 5), -48},
      {"empty", "", -48},
  };
  return records;
}

TEST(IconFont, CaptionsTakeOnlyTheFaceNameAndStayInsideTheirRows) {
  const std::string expected[] = {"\"M", "\"T", "Tahoma", std::string(50, 'A'), std::string(5000, 'B'), "", ""};
  for (size_t i = 0; i < Records().size(); ++i) {
    const Record& r = Records()[i];
    SCOPED_TRACE(r.what);
    IconFontScope scope(r.bytes, r.systemHeight);
    vxtest::HostWindow host;
    ui::ListBoxIcons list;
    ASSERT_TRUE(list.Create(host.hwnd(), 100, 10, 10, 300, 280));
    // A record that holds no name leaves the system's face.
    EXPECT_EQ(list.FontName(), expected[i].empty() ? SystemIconTitleFace() : expected[i]);
    for (int n = 0; n < 6; ++n) list.AddItem("Row", "", 0, std::to_string(n));
    list.ListRefresh();
    for (int row = 0; row < 6; ++row) {
      auto [top, bottom] = InkRows([&](int x, int y) { return list.Pixel(x, y); }, list.SurfaceWidth(), row);
      EXPECT_GE(top, 20) << "row " << row;  // drawn, and from the caption's top
      EXPECT_LT(bottom, ui::ListBoxIcons::kRowHeight - 1) << "row " << row;
      EXPECT_GE(bottom - top, 4) << "row " << row;
    }
  }
}

// The list's drawing surface that is shown (the Desktop tab's at a first start).
BOOL CALLBACK FindSurface(HWND h, LPARAM lp) {
  char cls[64] = {};
  GetClassNameA(h, cls, sizeof cls);
  if (std::string(cls) != "VxListBoxIconsSurface" || !IsWindowVisible(h)) return TRUE;
  *reinterpret_cast<HWND*>(lp) = h;
  return FALSE;
}

HWND VisibleSurface(HWND main) {
  HWND found = nullptr;
  EnumChildWindows(main, FindSurface, reinterpret_cast<LPARAM>(&found));
  return found;
}

// Each record in turn: the program opens its window, answers messages, shows nine tab captions and
// draws a caption in each visible row of the Desktop tab's list, read back from the screen.
TEST(IconFont, TheProgramStartsToAnIdleWindowWithEachRecord) {
  for (size_t i : {size_t{1}, size_t{3}, size_t{4}}) {  // 48 pixels; damaged; no NUL
    const Record& r = Records()[i];
    SCOPED_TRACE(r.what);
    vxtest::RegistryScope prefs({vxtest::kProgramKey});  // a first start: the Desktop tab
    IconFontScope scope(r.bytes, 0);
    vxtest::RealProgram program;
    HWND main = program.Main();
    ASSERT_NE(main, nullptr) << "no window, or never idle";
    DWORD_PTR answer = 0;
    EXPECT_NE(SendMessageTimeoutA(main, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, &answer), 0) << "busy";
    EXPECT_EQ(SendMessageA(GetDlgItem(main, IDC_TABSTRIP), TCM_GETITEMCOUNT, 0, 0), 9);

    HWND surface = VisibleSurface(main);
    ASSERT_NE(surface, nullptr);
    RedrawWindow(main, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    SendMessageTimeoutA(main, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, &answer);
    RECT shown, at;
    GetClientRect(GetParent(surface), &shown);  // the visible part: the list's frame
    MapWindowPoints(GetParent(surface), nullptr, reinterpret_cast<POINT*>(&shown), 2);
    GetWindowRect(surface, &at);
    ui::WindowDc screen(nullptr);
    const int rows = (shown.bottom - at.top) / ui::ListBoxIcons::kRowHeight;
    ASSERT_GE(rows, 4);
    for (int row = 1; row < rows; ++row) {  // row 0 is selected, in the highlight colour
      auto [top, bottom] = InkRows([&](int x, int y) { return GetPixel(screen.get(), at.left + x, at.top + y); },
                                   at.right - at.left - 20, row);
      EXPECT_GE(top, 20) << "row " << row;
      EXPECT_LT(bottom, ui::ListBoxIcons::kRowHeight - 1) << "row " << row;
    }
    PostMessageA(main, WM_CLOSE, 0, 0);
    EXPECT_TRUE(program.Ended(15000)) << "the program did not end";
  }
}

}  // namespace
