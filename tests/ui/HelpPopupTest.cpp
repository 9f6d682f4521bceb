// The real seam's help: context numbers show the in-program pop-up, keywords open a page.
#include "UiTest.h"

#include <cstdlib>
#include <tuple>

#include "support/ScriptedSeam.h"
#include "ui/HelpPopup.h"
#include "ui/HelpTopics.h"

namespace {

const std::string kHelp = "C:\\Vexillor\\help\\index.html";

HWND FindPopup() { return FindWindowA(ui::kHelpPopupClass, nullptr); }

// A number shows its own text near the pointer; the link opens the full topic and closes the pop-up.
TEST(HelpPopup, ShowsTheTopicsTextAndItsLinkOpensTheFullTopic) {
  vxtest::HostWindow host;
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
  const struct { const char* number; const char* page; } cases[] = {
      {"46", "network.html#hide-network-neighborhood"},
      {"1020", "window.html#change"},
      {"74", "shell.html"},
  };
  for (const auto& c : cases) {
    seam.opened.clear();
    ui::RealSeam().OpenHelp(host.hwnd(), kHelp, HELP_CONTEXTPOPUP, c.number);
    HWND popup = FindPopup();
    ASSERT_NE(popup, nullptr) << c.number;
    EXPECT_EQ(popup, ui::HelpPopupWindow());
    EXPECT_TRUE(IsWindowVisible(popup));
    EXPECT_EQ(ui::GetText(popup), ui::FindHelpTopic(std::stoul(c.number))->popup);
    EXPECT_TRUE(seam.opened.empty()) << "a pop-up opens nothing by itself";

    RECT link = ui::HelpPopupLinkRect();
    ASSERT_FALSE(IsRectEmpty(&link)) << c.number;
    SendMessageA(popup, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(link.left + 2, link.top + 2));
    EXPECT_EQ(ui::HelpPopupWindow(), nullptr);
    EXPECT_FALSE(IsWindow(popup));
    ASSERT_EQ(seam.opened.size(), 1u);
    EXPECT_EQ(seam.opened[0], ui::HelpTarget(kHelp, c.page));
  }
}

// No topic: the system's own words and no link. A key, a click beside the link, or another pop-up
// closes it; nothing is opened.
TEST(HelpPopup, ClosesOnAKeyOrAClickAndAnUnknownNumberHasNoLink) {
  vxtest::HostWindow host;
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
  for (const char* number : {"9999", "0", "", "x"}) {
    ui::RealSeam().OpenHelp(host.hwnd(), kHelp, HELP_CONTEXTPOPUP, number);
    HWND popup = FindPopup();
    ASSERT_NE(popup, nullptr) << number;
    EXPECT_EQ(ui::GetText(popup), ui::kNoHelpText);
    RECT link = ui::HelpPopupLinkRect();
    EXPECT_TRUE(IsRectEmpty(&link));
    SendMessageA(popup, WM_KEYDOWN, VK_RETURN, 0);  // Enter without a link just closes
    EXPECT_FALSE(IsWindow(popup)) << number;
  }
  ui::RealSeam().OpenHelp(host.hwnd(), kHelp, HELP_CONTEXTPOPUP, "23");
  HWND previous = FindPopup();
  // A click on the text (not the link), or Escape; one pop-up at a time.
  for (auto [number, message, wp, lp] : {std::tuple<const char*, UINT, WPARAM, LPARAM>{"25", WM_LBUTTONDOWN, MK_LBUTTON,
                                                                                      MAKELPARAM(1, 1)},
                                         {"26", WM_KEYDOWN, VK_ESCAPE, 0}}) {
    ui::RealSeam().OpenHelp(host.hwnd(), kHelp, HELP_CONTEXTPOPUP, number);
    HWND popup = FindPopup();
    EXPECT_FALSE(IsWindow(previous));
    SendMessageA(popup, message, wp, lp);
    EXPECT_FALSE(IsWindow(popup)) << number;
    previous = popup;
  }
  EXPECT_TRUE(seam.opened.empty());
}

// Centred just below the point; at the screen's edges it moves to stay on it, above the point if need be.
TEST(HelpPopup, StandsBelowThePointAndStaysOnTheScreen) {
  vxtest::HostWindow host;
  RECT work, r;
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  const POINT middle{(work.left + work.right) / 2, (work.top + work.bottom) / 2};
  for (POINT at : {middle, POINT{work.right - 2, work.bottom - 2}, POINT{work.left + 1, work.top + 1}}) {
    const bool centre = at.x == middle.x;
    HWND popup = ui::ShowHelpPopup(host.hwnd(), at, centre ? "A short text." : std::string(300, 'w'), "x.html");
    ASSERT_NE(popup, nullptr);
    GetWindowRect(popup, &r);
    EXPECT_TRUE(r.left >= work.left && r.top >= work.top && r.right <= work.right && r.bottom <= work.bottom) << at.x;
    EXPECT_TRUE(!centre || (r.top > at.y && r.top < at.y + 40 && std::abs((r.left + r.right) / 2 - at.x) <= 1));
    EXPECT_TRUE(at.y <= middle.y || r.bottom < at.y) << "above the point";
    ui::CloseHelpPopup();
  }
}

// Keywords and context topics open pages through the seam's ShellOpen.
TEST(HelpPages, KeywordsAndTopicsOpenTheirPages) {
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
  ui::RealSeam().OpenHelp(nullptr, kHelp, HELP_PARTIALKEY, "Icon Cache");
  ui::RealSeam().OpenHelp(nullptr, kHelp, HELP_CONTEXT, "4600");
  ui::RealSeam().OpenHelp(nullptr, kHelp, HELP_PARTIALKEY, "Hide, Network Neighborhood");
  const std::vector<std::string> expected = {"C:\\Vexillor\\help\\icon-cache.html",
                                             "C:\\Vexillor\\help\\icon-cache.html",
                                             "C:\\Vexillor\\help\\network.html"};
  EXPECT_EQ(seam.opened, expected);
  EXPECT_EQ(FindPopup(), nullptr);
}

}  // namespace
