// The real seam's help: context numbers show the in-program pop-up, keywords open a page.
#include "UiTest.h"

#include <cstdlib>

#include "support/ScriptedSeam.h"
#include "ui/HelpPopup.h"
#include "ui/HelpTopics.h"

namespace {

const std::string kHelp = "C:\\Vexillor\\help\\index.html";

HWND FindPopup() { return FindWindowA(ui::kHelpPopupClass, nullptr); }

RECT ScreenRect(HWND w) {
  RECT r;
  GetWindowRect(w, &r);
  return r;
}

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
  HWND first = FindPopup();
  ui::RealSeam().OpenHelp(host.hwnd(), kHelp, HELP_CONTEXTPOPUP, "25");
  HWND second = FindPopup();
  EXPECT_FALSE(IsWindow(first));  // one pop-up at a time
  SendMessageA(second, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 1));  // on the text, not the link
  EXPECT_FALSE(IsWindow(second));
  ui::RealSeam().OpenHelp(host.hwnd(), kHelp, HELP_CONTEXTPOPUP, "26");
  HWND third = FindPopup();
  SendMessageA(third, WM_KEYDOWN, VK_ESCAPE, 0);
  EXPECT_FALSE(IsWindow(third));
  EXPECT_TRUE(seam.opened.empty());
}

// Centred just below the point it is shown at; at the screen's edges it moves to stay on the screen,
// above the point when there is no room below.
TEST(HelpPopup, StandsBelowThePointAndStaysOnTheScreen) {
  vxtest::HostWindow host;
  RECT work;
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  const POINT middle{(work.left + work.right) / 2, (work.top + work.bottom) / 2};
  HWND shown = ui::ShowHelpPopup(host.hwnd(), middle, "A short text.", "x.html");
  ASSERT_NE(shown, nullptr);
  RECT m = ScreenRect(shown);
  EXPECT_GT(m.top, middle.y);
  EXPECT_LT(m.top, middle.y + 40);
  EXPECT_LE(std::abs((m.left + m.right) / 2 - middle.x), 1);
  ui::CloseHelpPopup();
  const POINT corners[] = {{work.right - 2, work.bottom - 2}, {work.left + 1, work.top + 1}};
  for (POINT at : corners) {
    HWND popup = ui::ShowHelpPopup(host.hwnd(), at, std::string(300, 'w'), "x.html");
    ASSERT_NE(popup, nullptr);
    RECT r = ScreenRect(popup);
    EXPECT_GE(r.left, work.left);
    EXPECT_GE(r.top, work.top);
    EXPECT_LE(r.right, work.right);
    EXPECT_LE(r.bottom, work.bottom);
    if (at.y > middle.y) {
      EXPECT_LT(r.bottom, at.y);  // above the point
    }
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
