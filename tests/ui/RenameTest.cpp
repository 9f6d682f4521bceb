// The real "Rename" box, driven through its own message loop.
#include <gtest/gtest.h>

#include <windows.h>

#include "ModalDriver.h"
#include "ids_picker.h"
#include "support/ScriptedSeam.h"
#include "ui/seam.h"
#include "ui/win.h"

namespace {

using vxtest::Click;
using vxtest::ModalSteps;
using vxtest::PostKey;

class frmRenameTest : public ::testing::Test {
 protected:
  // Asks through the real seam's rename box and runs the steps inside it.
  std::optional<std::string> Ask(std::vector<ModalSteps::Step> steps) {
    const size_t expected = steps.size();
    ModalSteps driver("Rename", std::move(steps));
    auto name = ui::RealSeam().AskName(nullptr, "Type a new name for Recycle Bin (empty)", "Recycle Bin",
                                       "Recycle Bin (reset)");
    EXPECT_EQ(driver.ran(), expected) << "the box closed before every step ran";
    EXPECT_FALSE(driver.leftOpen()) << "the box had to be closed by the test";
    return name;
  }
  static HWND Box(HWND dialog) { return GetDlgItem(dialog, IDC_RN_TEXT); }

  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
};

TEST_F(frmRenameTest, ShowsTheLabelAndTheTextSelected) {
  auto name = Ask({[](HWND dialog) {
    EXPECT_EQ(ui::GetText(GetDlgItem(dialog, IDC_RN_LABEL)), "Type a new name for Recycle Bin (empty)");
    EXPECT_EQ(ui::GetText(Box(dialog)), "Recycle Bin");
    EXPECT_EQ(GetFocus(), Box(dialog));
    DWORD start = 0, end = 0;
    SendMessageA(Box(dialog), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(start, 0u);
    EXPECT_EQ(end, 11u);
    Click(GetDlgItem(dialog, IDCANCEL));
  }});
  EXPECT_FALSE(name);
}

TEST_F(frmRenameTest, AnEmptyNameIsRefusedAndTheResetTextComesBack) {
  auto name = Ask({[&](HWND dialog) {
                     SetWindowTextA(Box(dialog), "");
                     Click(GetDlgItem(dialog, IDOK));
                   },
                   [&](HWND dialog) {
                     ASSERT_EQ(seam.prompts.size(), 1u);
                     EXPECT_EQ(seam.prompts[0].message, "You must provide a name for your system icon.");
                     EXPECT_EQ(seam.prompts[0].buttons[0], "OK");
                     EXPECT_EQ(ui::GetText(Box(dialog)), "Recycle Bin (reset)");
                     EXPECT_EQ(GetFocus(), Box(dialog));
                     // Typing over the selected reset text replaces it.
                     SendMessageA(Box(dialog), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>("Bin"));
                     PostKey(VK_RETURN);
                   }});
  ASSERT_TRUE(name);
  EXPECT_EQ(*name, "Bin");
}

TEST_F(frmRenameTest, EnterAndOkGiveTheTextEscapeCancelAndCloseGiveNothing) {
  struct Case { const char* how; ModalSteps::Step step; std::optional<std::string> expected; };
  const Case cases[] = {
      {"OK", [](HWND d) { SetWindowTextA(Box(d), "Trash"); Click(GetDlgItem(d, IDOK)); }, "Trash"},
      {"Enter", [](HWND) { PostKey(VK_RETURN); }, "Recycle Bin"},
      {"Escape", [](HWND d) { SetWindowTextA(Box(d), "Trash"); PostKey(VK_ESCAPE); }, std::nullopt},
      {"Cancel", [](HWND d) { SetWindowTextA(Box(d), "Trash"); Click(GetDlgItem(d, IDCANCEL)); }, std::nullopt},
      {"close box", [](HWND d) { PostMessageA(d, WM_SYSCOMMAND, SC_CLOSE, 0); }, std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.how);
    EXPECT_EQ(Ask({c.step}), c.expected);
  }
  EXPECT_TRUE(seam.prompts.empty());
}

}  // namespace
