// The real seam's help: context numbers show the in-program pop-up, keywords open a page.
#include "UiTest.h"

#include <cstdlib>

#include "support/ScriptedSeam.h"
#include "ui/HelpPopup.h"
#include "ui/HelpTopics.h"

namespace {

const std::string kHelp = "C:\\Vexillor\\help\\index.html";

HWND FindPopup() { return FindWindowA(ui::kHelpPopupClass, nullptr); }

// A number shows its own text near the pointer, a number without a topic the system's words and no link.
// The link opens the full topic; a key, a click beside the link, or the next pop-up closes it, opening nothing.
TEST(HelpPopup, ShowsTheTopicsTextAndClosesByItsLinkAKeyOrAClick) {
  vxtest::HostWindow host;
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope scope{seam};
  const struct { const char *number, *page; UINT message; WPARAM key; } cases[] = {  // page: the link, clicked
      {"46", "network.html#hide-network-neighborhood", WM_LBUTTONDOWN, MK_LBUTTON},
      {"1020", "window.html#change", WM_LBUTTONDOWN, MK_LBUTTON}, {"74", "shell.html", WM_LBUTTONDOWN, MK_LBUTTON},
      {"25", nullptr, WM_LBUTTONDOWN, MK_LBUTTON}, {"26", nullptr, WM_KEYDOWN, VK_ESCAPE},
      {"9999", nullptr, WM_KEYDOWN, VK_RETURN}, {"0", nullptr, WM_KEYDOWN, VK_RETURN},  // Enter without a link
      {"", nullptr, WM_KEYDOWN, VK_RETURN}, {"x", nullptr, WM_KEYDOWN, VK_RETURN},
  };
  ui::RealSeam().OpenHelp(host.hwnd(), kHelp, HELP_CONTEXTPOPUP, "23");
  HWND previous = FindPopup();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.number);
    seam.opened.clear();
    ui::RealSeam().OpenHelp(host.hwnd(), kHelp, HELP_CONTEXTPOPUP, c.number);
    HWND popup = FindPopup();
    ASSERT_NE(popup, nullptr);
    EXPECT_FALSE(IsWindow(previous));  // one pop-up at a time
    EXPECT_EQ(popup, ui::HelpPopupWindow());
    EXPECT_TRUE(IsWindowVisible(popup));
    const ui::HelpTopic* topic = ui::FindHelpTopic(std::strtoul(c.number, nullptr, 10));
    EXPECT_EQ(ui::GetText(popup), topic ? topic->popup : ui::kNoHelpText);
    RECT link = ui::HelpPopupLinkRect();
    EXPECT_EQ(IsRectEmpty(&link) != FALSE, topic == nullptr);
    EXPECT_TRUE(seam.opened.empty()) << "a pop-up opens nothing by itself";
    const LPARAM at = c.page ? MAKELPARAM(link.left + 2, link.top + 2) : MAKELPARAM(1, 1);
    SendMessageA(popup, c.message, c.key, c.message == WM_LBUTTONDOWN ? at : 0);
    EXPECT_FALSE(IsWindow(popup));
    EXPECT_EQ(ui::HelpPopupWindow(), nullptr);
    EXPECT_EQ(seam.opened, c.page ? std::vector<std::string>{ui::HelpTarget(kHelp, c.page)} : std::vector<std::string>{});
    previous = popup;
  }
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
