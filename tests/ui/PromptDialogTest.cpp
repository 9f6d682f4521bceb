// The real prompt dialog, driven as a person would: buttons on screen, the check box, the ways out,
// and the commands of "&Help" and "&Settings...".
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "UiTest.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"
#include "ui/frmPrompt.h"
#include "ui/modMsgbox.h"

namespace {

using Step = vxtest::ModalSteps::Step;

// Real dialogs; commands and help calls recorded.
class RealPromptSeam : public vxtest::ScriptedSeam {
 public:
  ui::PromptAnswer ShowPrompt(HWND owner, const ui::PromptRequest& r) override {
    return ui::RealSeam().ShowPrompt(owner, r);
  }
};

ui::PromptAnswer Show(const ui::PromptRequest& r, std::vector<Step> steps) {
  return vxtest::RunModal("Vexillor", std::move(steps), [&] { return ui::RealSeam().ShowPrompt(nullptr, r); });
}

ui::PromptRequest Request(std::array<std::string, 3> buttons, std::string checkBox = "") {
  ui::PromptRequest r;
  r.message = "First paragraph.\n\nSecond paragraph.";
  r.buttons = std::move(buttons);
  r.icon = ui::kIconQuestion;
  r.checkBox = std::move(checkBox);
  return r;
}

LONG ButtonType(HWND c) {
  char cls[32] = {};
  GetClassNameA(c, cls, sizeof cls);
  return IsWindowVisible(c) && lstrcmpiA(cls, "Button") == 0 ? GetWindowLongA(c, GWL_STYLE) & BS_TYPEMASK : -1;
}

// Visible push buttons from left to right.
std::vector<HWND> PushButtons(HWND dialog) {
  std::vector<HWND> found;
  for (HWND c = GetWindow(dialog, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT))
    if (ButtonType(c) == BS_PUSHBUTTON || ButtonType(c) == BS_DEFPUSHBUTTON) found.push_back(c);
  auto left = [](HWND w) { RECT r; GetWindowRect(w, &r); return r.left; };
  std::sort(found.begin(), found.end(), [&](HWND a, HWND b) { return left(a) < left(b); });
  return found;
}

HWND CheckBox(HWND dialog) {
  for (HWND c = GetWindow(dialog, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT))
    if (ButtonType(c) == BS_AUTOCHECKBOX) return c;
  return nullptr;
}

Step Press(const std::string& caption) {
  return [caption](HWND dialog) {
    for (HWND b : PushButtons(dialog))
      if (ui::GetText(b) == caption) return vxtest::Click(b);
    ADD_FAILURE() << "no button " << caption;
  };
}

Step TickBox() {
  return [](HWND dialog) {
    HWND c = CheckBox(dialog);
    ASSERT_NE(c, nullptr);
    vxtest::Click(c);
  };
}

TEST(PromptDialog, ButtonsStandRightToLeftBySlotAndAnswerTheirSlot) {
  struct Case { std::array<std::string, 3> buttons; std::vector<std::string> leftToRight; std::string box; };
  const Case cases[] = {
      {{"&Cancel", "No", "Yes"}, {"Yes", "No", "&Cancel"}, "Do not ask me this question next time"},
      {{"&Help", "OK", ""}, {"OK", "&Help"}, "Do not show this dialog again"},
      {{"OK", "", ""}, {"OK"}, ""},
  };
  for (const auto& c : cases) {
    const auto r = Request(c.buttons, c.box);
    auto looks = [&](HWND dialog) {
      std::vector<std::string> shown;
      for (HWND b : PushButtons(dialog)) shown.push_back(ui::GetText(b));
      EXPECT_EQ(shown, c.leftToRight);
      EXPECT_EQ(GetFocus(), PushButtons(dialog).at(0)) << "the leftmost button is the default";
      HWND box = CheckBox(dialog);
      EXPECT_EQ(box ? ui::GetText(box) : "", c.box);
      EXPECT_NE(FindWindowExA(dialog, nullptr, "Static", "First paragraph.\r\n\r\nSecond paragraph."), nullptr);
    };
    for (int slot = 0; slot < static_cast<int>(c.leftToRight.size()); ++slot) {
      for (bool tick : {false, true}) {
        if (tick && c.box.empty()) continue;
        SCOPED_TRACE(testing::Message() << c.leftToRight[0] << " slot " << slot << " tick " << tick);
        std::vector<Step> steps = {looks};
        if (tick) steps.push_back(TickBox());
        steps.push_back(Press(c.buttons[slot]));
        ui::PromptAnswer a = Show(r, steps);
        EXPECT_EQ(a.result, slot);
        EXPECT_EQ(a.doNotShow, tick);
      }
    }
  }
}

TEST(PromptDialog, EscapeAndTheCloseBoxAnswerCancelOrOk) {
  const std::pair<std::array<std::string, 3>, int> cases[] = {
      {{"&Cancel", "No", "Yes"}, 0}, {{"&Help", "Cancel", "OK"}, 1}, {{"&Help", "OK", ""}, 1},
      {{"&Settings...", "OK", ""}, 1}, {{"OK", "", ""}, 0},         {{"No", "Yes", ""}, 0},
  };
  for (const auto& [buttons, slot] : cases) {
    for (bool escape : {true, false}) {
      SCOPED_TRACE(buttons[0] + "/" + buttons[1] + (escape ? " Escape" : " close box"));
      RealPromptSeam seam;
      vxtest::SeamScope scope(seam);
      Step close = escape ? Step([](HWND) { vxtest::PostKey(VK_ESCAPE); })
                          : Step([](HWND d) { PostMessageA(d, WM_SYSCOMMAND, SC_CLOSE, 0); });
      ui::PromptAnswer a = Show(Request(buttons, "Box"), {TickBox(), close});
      EXPECT_EQ(a.result, slot);
      EXPECT_TRUE(a.doNotShow);
      EXPECT_TRUE(seam.helpCalls.empty());  // leaving this way runs no button's command
      EXPECT_TRUE(seam.commands.empty());
    }
  }
}

TEST(PromptDialog, HelpAndSettingsRunTheirCommandAndAnswerTheirSlot) {
  vxtest::RegistryScope registry{{vxtest::kProgramKey}};
  struct Case { const char* name; std::function<int()> show; std::string press; int slot; std::string keyword; bool command; };
  const Case cases[] = {
      {"rebuild notice", [] { return modMsgbox::RebuildNotice("Windows 98"); }, "&Help", 0, "Icon Cache", false},
      {"hide network", modMsgbox::HideNetworkNeighborhood, "&Help", 0, "Hide, Network Neighborhood", false},
      {"hide network, OK", modMsgbox::HideNetworkNeighborhood, "OK", 2, "", false},
      {"colour depth", modMsgbox::ColourDepth, "&Settings...", 0, "", true},
      {"colour depth, OK", modMsgbox::ColourDepth, "OK", 1, "", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    RealPromptSeam seam;
    vxtest::SeamScope scope(seam);
    EXPECT_EQ(vxtest::RunModal("Vexillor", {Press(c.press)}, c.show), c.slot);
    if (c.keyword.empty()) {
      EXPECT_TRUE(seam.helpCalls.empty());
    } else {
      ASSERT_EQ(seam.helpCalls.size(), 1u);
      EXPECT_EQ(seam.helpCalls[0].file, ui::ModulePath().substr(0, ui::ModulePath().rfind('\\')) + "\\Help.hlp");
      EXPECT_EQ(seam.helpCalls[0].command, 261u);  // HELP_PARTIALKEY
      EXPECT_EQ(seam.helpCalls[0].keyword, c.keyword);
    }
    EXPECT_EQ(seam.commands, c.command ? std::vector<std::string>{"rundll32.exe shell32.dll,Control_RunDLL desk.cpl,,3"}
                                       : std::vector<std::string>{});
  }
}

}  // namespace
