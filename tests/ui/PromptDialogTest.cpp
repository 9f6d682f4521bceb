// The prompts: every routine's request, the "do not show again" memory, and the real dialog.

#include <algorithm>

#include "UiTest.h"
#include "ids_prompt.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"
#include "ui/modMsgbox.h"

namespace {

using vxtest::Step;

// Visible buttons from left to right.
std::vector<HWND> PushButtons(HWND dialog) {
  std::vector<HWND> found;
  for (int slot = 0; slot < 3; ++slot)
    if (HWND b = GetDlgItem(dialog, IDC_PROMPT_BUTTON0 + slot); b && IsWindowVisible(b)) found.push_back(b);
  auto left = [](HWND w) { RECT r; GetWindowRect(w, &r); return r.left; };
  std::sort(found.begin(), found.end(), [&](HWND a, HWND b) { return left(a) < left(b); });
  return found;
}

// Each button once, then Escape; every other run ticks the box. No button does anything but answer.
TEST(PromptDialog, ButtonsStandRightToLeftBySlotAndAnswerTheirSlot) {
  const struct { std::string first; std::array<std::string, 3> buttons; std::vector<std::string> leftToRight;
                 std::string box; int escape; } cases[] = {
      {"First paragraph.", {"&Cancel", "No", "Yes"}, {"Yes", "No", "&Cancel"}, "Do not ask me this question next time",
       0},
      {"Vexillor has.", {"&Help", "OK", ""}, {"OK", "&Help"}, "Do not show this dialog again", 1},
      {"Colours.", {"&Settings...", "OK", ""}, {"OK", "&Settings..."}, "", 1},
  };
  vxtest::ScriptedSeam seam;  // records help and commands instead of running them
  vxtest::SeamScope scope(seam);
  for (const auto& c : cases) {
    const ui::PromptRequest r{c.first + "\n\nSecond paragraph.", c.buttons, ui::kIconQuestion, 0, c.box};
    auto looks = [&](HWND dialog) {
      std::vector<std::string> shown;
      for (HWND b : PushButtons(dialog)) shown.push_back(ui::GetText(b));
      EXPECT_EQ(shown, c.leftToRight);
      EXPECT_EQ(GetFocus(), PushButtons(dialog).at(0)) << "the leftmost button is the default";
      HWND box = GetDlgItem(dialog, IDC_PROMPT_CHECK);
      EXPECT_EQ(box && IsWindowVisible(box) ? ui::GetText(box) : "", c.box);
      EXPECT_NE(FindWindowExA(dialog, nullptr, "Static", (c.first + "\r\n\r\nSecond paragraph.").c_str()), nullptr);
    };
    const int n = static_cast<int>(c.leftToRight.size());
    for (int slot = 0; slot <= n; ++slot) {
      const bool tick = !c.box.empty() && slot % 2;
      SCOPED_TRACE(testing::Message() << c.first << " slot " << slot << " tick " << tick);
      std::vector<Step> steps = {looks};
      if (tick) steps.push_back([](HWND d) { vxtest::Click(GetDlgItem(d, IDC_PROMPT_CHECK)); });
      if (slot == n) steps.push_back([](HWND) { vxtest::PostKey(VK_ESCAPE); });
      else steps.push_back([&c, slot](HWND d) {  // the button that shows the slot's caption
          for (HWND b : PushButtons(d))
            if (ui::GetText(b) == c.buttons[slot]) vxtest::Click(b);
        });
      auto a = vxtest::RunModal("Vexillor", steps, [&] { return ui::RealSeam().ShowPrompt(nullptr, r); });
      EXPECT_EQ(a.result, slot < n ? slot : c.escape);
      EXPECT_EQ(a.doNotShow, tick);
      std::string ran;
      for (const auto& h : seam.helpCalls) ran += h.file + " " + std::to_string(h.command) + " " + h.keyword;
      for (const auto& command : seam.commands) ran += command;
      EXPECT_EQ(ran, "") << "the dialog only answers; its caller acts";
      seam.helpCalls.clear(), seam.commands.clear();
    }
  }
}

const std::string kSettings = vxtest::kProgramKey + "\\Settings";

// A prompt routine as its pressed slot.
template <class Show>
std::function<int()> Slot(Show show) {
  return [show] { return static_cast<int>(show()); };
}

// The prompts whose texts no test of their command reads (those of closing, themes, Rename and the
// Explorer tab are read there).
TEST(PromptRoutines, EachPromptHasItsTextButtonsAndIcon) {
  const std::string change = "\n\nAre you sure you want to change this setting?";
  const std::string sure = "\n\nAre you sure you want to continue?";
  const std::array<std::string, 3> cancelOk{"Cancel", "OK", ""}, cancelNoYes{"&Cancel", "No", "Yes"};
  const struct { std::function<int()> show; std::string icon; std::array<std::string, 3> buttons;
                 std::string message, checkBox = ""; int helpTopic = 0; } cases[] = {
      {Slot(modMsgbox::ColourDepth), "32513", {"&Settings...", "OK", ""},
       "Your display is currently configured for 256 colours or less.\n\nTo use high colour icons, your display's "
       "colour palette must be set to either High Colour or True Colour.\n\nYou can change your colour palette "
       "settings by selecting the \"Settings...\" button below."},
      {Slot(modMsgbox::NotepadOnAllFiles), "32514", cancelOk,
       "Adding Notepad to all files causes conflicts with the Microsoft Office shortcut bar." + change},
      {Slot(modMsgbox::HideNetworkNeighborhood), "32515", {"&Help", "Cancel", "OK"},
       "Hiding Network Neighborhood disables shell support for Universal Naming Convention (UNC) notation." + change},
      {Slot(modMsgbox::DisableDesktop), "32515", cancelOk,
       "Disabling the Desktop causes a conflict with Internet Explorer 4.0 which may make this change irreversable." +
           change},
      {Slot([] { return modMsgbox::RestoreAllPointers("Windows 98"); }), "32514", cancelOk,
       "Restoring all your Windows 98 pointers will return them to Microsoft setup defaults." + sure},
      {Slot([] { return modMsgbox::RestoreAllSettings("Windows 95"); }), "32514", cancelOk,
       "Restoring all your Windows 95 system settings will return them to Microsoft setup defaults." + sure},
      {Slot([] { return modMsgbox::OverwriteTheme("Blue Sky"); }), "32514", cancelNoYes,
       "Are you sure you want to overwrite the Icon Theme:\n\nBlue Sky\n\nIf you tick the box below, theme files will "
       "automatically be overwritten when you click save.", "Do not ask me this question next time"},
      {Slot(modMsgbox::RestartNow), "32514", {"No", "Yes", ""},
       "You will need to restart your computer for one or more of these changes to take effect.\n\nWould you like to "
       "restart your computer now?"},
      {Slot([] { return modMsgbox::RebuildNotice("Windows 98"); }), "32515", {"&Help", "OK", ""},
       "Vexillor has notified Windows 98 of your changes.\n\nWindows 95 and Windows NT contains flaws that can cause "
       "these changes to be ignored under certain conditions.\n\nIf your changes are not applied you will need to "
       "select the \"Rebuild Icon Cache\" option from the File menu.\n\nFor more information about this problem, "
       "please select the \"Help\" button below.", "Do not show this dialog again", 4600},
  };
  vxtest::RegistryScope registry{{vxtest::kProgramKey}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    vxtest::ScriptedSeam seam;
    vxtest::SeamScope scope(seam);
    seam.promptAnswers.push_back({1, false});  // the pressed slot comes back unchanged
    EXPECT_EQ(c.show(), 1);
    ASSERT_EQ(seam.prompts.size(), 1u);
    const ui::PromptRequest& r = seam.prompts[0];
    EXPECT_EQ(std::tie(r.message, r.buttons, r.icon, r.checkBox, r.helpTopic),
              std::tie(c.message, c.buttons, c.icon, c.checkBox, c.helpTopic));
    EXPECT_FALSE(vxtest::KeyExists(kSettings));
  }
}

TEST(PromptMemory, OneSuppressesThePromptAnyOtherValueShowsItAndTheTickWritesOne) {
  const std::string one("\1\0\0\0", 4);
  const struct { DWORD type; std::string stored; bool tick; int first, second; } cases[] = {
      {REG_NONE, "", false, 2, 0},  // nothing stored; an unanswered prompt gives slot 0
      {REG_NONE, "", true, 2, -1}, {REG_DWORD, one, false, -1, -1},
      {REG_SZ, std::string("1\0", 2), true, 2, -1},  // not a number
  };
  const std::pair<const char*, std::function<int()>> memories[] = {
      {"Dialog Rebuild", Slot([] { return modMsgbox::RebuildNotice("Windows 95"); })},
      {"Dialog Overwrite", Slot([] { return modMsgbox::OverwriteTheme("Autumn"); })}};
  for (const auto& [value, show] : memories)
    for (const auto& c : cases) {
      SCOPED_TRACE(testing::Message() << value << " type " << c.type << " tick " << c.tick);
      vxtest::RegistryScope registry{{vxtest::kProgramKey}};
      if (c.type != REG_NONE) vxtest::WriteRaw(kSettings, value, c.type, c.stored);
      vxtest::ScriptedSeam seam;
      vxtest::SeamScope scope(seam);
      seam.promptAnswers.push_back({2, c.tick});
      EXPECT_EQ(show(), c.first);
      EXPECT_EQ(show(), c.second);
      DWORD type = 0;  // what the tick left behind
      std::string bytes;
      const bool remembered = vxtest::ReadRaw(kSettings, value, type, bytes) && type == REG_DWORD && bytes == one;
      EXPECT_EQ(remembered, c.tick || c.first == -1);
    }
}

}  // namespace
