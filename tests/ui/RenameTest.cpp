// The real "Rename" box, driven through its own message loop.

#include "UiTest.h"
#include "ids_picker.h"
#include "support/ScriptedSeam.h"

namespace {

std::optional<std::string> Ask(std::vector<vxtest::Step> steps) {
  return vxtest::RunModal("Rename", std::move(steps), [] {
    return ui::RealSeam().AskName(nullptr, "Type a new name for Recycle Bin (empty)", "Recycle Bin",
                                  "Recycle Bin (reset)");
  });
}

HWND Box(HWND dialog) { return GetDlgItem(dialog, IDC_RN_TEXT); }

TEST(frmRename, AnEmptyNameIsRefusedAndEscapeGivesNothing) {
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
  auto name = Ask({[&](HWND dialog) {
                     SetWindowTextA(Box(dialog), "");
                     vxtest::Click(GetDlgItem(dialog, IDOK));
                   },
                   [&](HWND dialog) {
                     ASSERT_EQ(seam.prompts.size(), 1u);
                     EXPECT_EQ(seam.prompts[0].message, "You must provide a name for your system icon.");
                     EXPECT_EQ(ui::GetText(Box(dialog)), "Recycle Bin (reset)");
                     SendMessageA(Box(dialog), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>("Bin"));
                     vxtest::PostKey(VK_RETURN);
                   }});
  EXPECT_EQ(name, "Bin");
  EXPECT_EQ(Ask({[](HWND d) { SetWindowTextA(Box(d), "Trash"); vxtest::PostKey(VK_ESCAPE); }}), std::nullopt);
  EXPECT_EQ(seam.prompts.size(), 1u);
}

}  // namespace
