// The about box: the version from the version resource, the real dialog and its links.
#include "UiTest.h"

#include <winver.h>

#include <cstdlib>

#include "ids_about.h"
#include "support/ScriptedSeam.h"
#include "ui/frmAbout.h"

namespace {

// The version resource of this test program (it carries the program's resources) as bytes.
std::string OwnVersionResource() {
  HMODULE self = GetModuleHandleA(nullptr);
  HRSRC info = FindResourceA(self, MAKEINTRESOURCEA(VS_VERSION_INFO), MAKEINTRESOURCEA(16));
  if (!info) return {};
  const char* data = static_cast<const char*>(LockResource(LoadResource(self, info)));
  return std::string(data, SizeofResource(self, info));
}

// The parser gives what the system's reader gives (ResourcesTest), and for a damaged resource an empty
// text or the right one, never a crash or a wrong text: every truncation, every byte set to 0x00 and 0xFF.
TEST(Version, ReadsTheResourceAsTheSystemDoesAndNeverOutOfBounds) {
  const std::string res = OwnVersionResource();
  ASSERT_FALSE(res.empty());
  for (auto [name, text] : {std::pair{"ProductVersion", "2.06"}, {"ProductName", "Vexillor"}, {"NoSuchText", ""}})
    EXPECT_EQ(ui::VersionResourceText(res.data(), res.size(), name), text) << name;
  for (size_t n = 0; n < res.size(); ++n) {
    std::string cut = res.substr(0, n);  // its own buffer, so a read past it is a real fault
    const std::string got = ui::VersionResourceText(cut.data(), cut.size(), "ProductVersion");
    EXPECT_TRUE(got.empty() || got == "2.06") << n;
  }
  for (size_t i = 0; i < res.size(); ++i)
    for (char b : {'\0', '\xFF'}) {
      std::string bad = res;
      bad[i] = b;
      (void)ui::VersionResourceText(bad.data(), bad.size(), "ProductVersion");
    }
  EXPECT_EQ(ui::VersionResourceText(nullptr, 100, "ProductVersion"), "");
}

TEST(frmAbout, ShowsNameVersionIconAndAddressesAndOpensTheLinks) {
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
  const ui::AboutRequest about{"http://www.quenby.example/vexillor", "mailto:vexillor@quenby.example"};
  auto item = [](HWND d, int id) { return GetDlgItem(d, id); };
  vxtest::RunModal("About Vexillor",
                   {[&](HWND d) {
                      EXPECT_EQ(ui::GetText(item(d, IDC_ABOUT_NAME)), "Vexillor");
                      EXPECT_EQ(ui::GetText(item(d, IDC_ABOUT_VERSION)), "Version 2.06");
                      EXPECT_EQ(ui::GetText(item(d, IDC_ABOUT_HOME)), about.homePage);
                      EXPECT_EQ(ui::GetText(item(d, IDC_ABOUT_MAIL)), "vexillor@quenby.example");
                      EXPECT_NE(SendMessageA(item(d, IDC_ABOUT_ICON), STM_GETICON, 0, 0), 0);
                      EXPECT_NE(ui::GetText(item(d, IDC_ABOUT_CREDITS)).find("Quenby"), std::string::npos);
                      // The name stands out: a larger font than the rest.
                      LOGFONTA name{}, body{};
                      GetObjectA(reinterpret_cast<HFONT>(SendMessageA(item(d, IDC_ABOUT_NAME), WM_GETFONT, 0, 0)),
                                 sizeof name, &name);
                      GetObjectA(reinterpret_cast<HFONT>(SendMessageA(d, WM_GETFONT, 0, 0)), sizeof body, &body);
                      EXPECT_GT(std::abs(name.lfHeight), std::abs(body.lfHeight));
                      // A click on each address opens it as the Web sub-menu does.
                      for (int id : {IDC_ABOUT_HOME, IDC_ABOUT_MAIL})
                        SendMessageA(d, WM_COMMAND, MAKEWPARAM(id, STN_CLICKED), reinterpret_cast<LPARAM>(item(d, id)));
                      EXPECT_EQ(seam.opened, (std::vector<std::string>{about.homePage, about.mail}));
                      EXPECT_EQ(GetFocus(), item(d, IDOK));
                      vxtest::PostKey(VK_ESCAPE);
                    }},
                   [&] { ui::RealSeam().ShowAbout(nullptr, about); return 0; });
  vxtest::RunModal("About Vexillor", {[](HWND) { vxtest::PostKey(VK_RETURN); }},  // Enter presses OK
                   [&] { ui::RealSeam().ShowAbout(nullptr, about); return 0; });
  EXPECT_EQ(ui::MailShown("a@b"), "a@b");
}

}  // namespace
