// The prompts: every routine's text, buttons, icon and check box; the "do not show again" memory; and
// the real dialog driven as a person would: buttons on screen, the check box, the ways out, and the
// commands of "&Help" and "&Settings...".
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

#include "UiTest.h"
#include "registry/modRegistry.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"
#include "ui/frmPrompt.h"
#include "ui/modMsgbox.h"

namespace {

using vxtest::Step;

// Real dialogs; commands and help calls recorded.
struct RealPromptSeam : vxtest::ScriptedSeam {
  ui::PromptAnswer ShowPrompt(HWND o, const ui::PromptRequest& r) override { return ui::RealSeam().ShowPrompt(o, r); }
};

ui::PromptAnswer Show(const ui::PromptRequest& r, std::vector<Step> steps) {
  return vxtest::RunModal("Vexillor", std::move(steps), [&] { return ui::RealSeam().ShowPrompt(nullptr, r); });
}

ui::PromptRequest Request(std::array<std::string, 3> buttons, std::string checkBox = "") {
  return {"First paragraph.\n\nSecond paragraph.", std::move(buttons), ui::kIconQuestion, 0, std::move(checkBox)};
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

const Step kTick = [](HWND dialog) { vxtest::Click(CheckBox(dialog)); };

TEST(PromptDialog, ButtonsStandRightToLeftBySlotAndAnswerTheirSlot) {
  struct Case { std::array<std::string, 3> buttons; std::vector<std::string> leftToRight; std::string box; };
  const Case cases[] = {
      {{"&Cancel", "No", "Yes"}, {"Yes", "No", "&Cancel"}, "Do not ask me this question next time"},
      {{"&Help", "OK", ""}, {"OK", "&Help"}, "Do not show this dialog again"},
      {{"OK", "", ""}, {"OK"}, ""},
  };
  vxtest::ScriptedSeam seam;  // "&Help" must not open the real help
  vxtest::SeamScope scope(seam);
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
        if (tick) steps.push_back(kTick);
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
      vxtest::ScriptedSeam seam;
      vxtest::SeamScope scope(seam);
      Step close = escape ? Step([](HWND) { vxtest::PostKey(VK_ESCAPE); })
                          : Step([](HWND d) { PostMessageA(d, WM_SYSCOMMAND, SC_CLOSE, 0); });
      ui::PromptAnswer a = Show(Request(buttons, "Box"), {kTick, close});
      EXPECT_EQ(a.result, slot);
      EXPECT_TRUE(a.doNotShow);
      EXPECT_TRUE(seam.helpCalls.empty());  // leaving this way runs no button's command
      EXPECT_TRUE(seam.commands.empty());
    }
  }
}

TEST(PromptDialog, HelpAndSettingsRunTheirCommandAndAnswerTheirSlot) {
  vxtest::RegistryScope registry{{vxtest::kProgramKey}};
  const std::string helpFile = ui::ModulePath().substr(0, ui::ModulePath().rfind('\\')) + "\\Help.hlp";
  const struct { const char* name; std::function<int()> show; std::string press; int slot; std::string help; bool run; }
      cases[] = {
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
    std::string help;  // file, command (261: HELP_PARTIALKEY) and keyword of each call
    for (const auto& h : seam.helpCalls) help += h.file + " " + std::to_string(h.command) + " " + h.keyword;
    EXPECT_EQ(help, c.help.empty() ? "" : helpFile + " 261 " + c.help);
    EXPECT_EQ(seam.commands, c.run ? std::vector<std::string>{"rundll32.exe shell32.dll,Control_RunDLL desk.cpl,,3"}
                                   : std::vector<std::string>{});
  }
}

const std::string kSettings = vxtest::kProgramKey + "\\Settings";

struct RoutineCase {
  const char* name;
  std::function<int()> show;
  std::string message;
  std::array<std::string, 3> buttons;
  std::string icon, checkBox;
  int helpTopic;
};

TEST(PromptRoutines, EachPromptHasItsTextButtonsAndIcon) {
  const std::string sureChange = "\n\nAre you sure you want to change this setting?";
  const std::string sureContinue = "\n\nAre you sure you want to continue?";
  const RoutineCase cases[] = {
      {"RestartLater", modMsgbox::RestartLater,
       "One or more of these changes you have made will only take effect the next time you start Windows.",
       {"OK", "", ""}, "32516", "", 0},
      {"ColourDepth", modMsgbox::ColourDepth,
       "Your display is currently configured for 256 colours or less.\n\nTo use high colour icons, your "
       "display's colour palette must be set to either High Colour or True Colour.\n\nYou can change your "
       "colour palette settings by selecting the \"Settings...\" button below.",
       {"&Settings...", "OK", ""}, "32513", "", 0},
      {"NotepadOnAllFiles", modMsgbox::NotepadOnAllFiles,
       "Adding Notepad to all files causes conflicts with the Microsoft Office shortcut bar." + sureChange,
       {"Cancel", "OK", ""}, "32514", "", 0},
      {"HideNetworkNeighborhood", modMsgbox::HideNetworkNeighborhood,
       "Hiding Network Neighborhood disables shell support for Universal Naming Convention (UNC) notation." +
           sureChange, {"&Help", "Cancel", "OK"}, "32515", "", 0},
      {"DisableDesktop", modMsgbox::DisableDesktop,
       "Disabling the Desktop causes a conflict with Internet Explorer 4.0 which may make this change "
       "irreversable." + sureChange, {"Cancel", "OK", ""}, "32515", "", 0},
      {"RestoreAllPointers", [] { return modMsgbox::RestoreAllPointers("Windows 98"); },
       "Restoring all your Windows 98 pointers will return them to Microsoft setup defaults." + sureContinue,
       {"Cancel", "OK", ""}, "32514", "", 0},
      {"RestoreAllIcons", [] { return modMsgbox::RestoreAllIcons("Windows NT"); },
       "Restoring all your Windows NT system icons will return them to Microsoft setup defaults." + sureContinue,
       {"Cancel", "OK", ""}, "32514", "", 0},
      {"RestoreAllSettings", [] { return modMsgbox::RestoreAllSettings("Windows 95"); },
       "Restoring all your Windows 95 system settings will return them to Microsoft setup defaults." +
           sureContinue, {"Cancel", "OK", ""}, "32514", "", 0},
      {"SaveBeforeClosing", modMsgbox::SaveBeforeClosing, "Would you like to save your changes before closing?",
       {"&Cancel", "No", "Yes"}, "32514", "", 0},
      {"InvalidTheme", [] { return modMsgbox::InvalidTheme("C:\\My Themes\\odd & end.txt"); },
       "The file C:\\My Themes\\odd & end.txt does not appear to be a valid theme file.", {"OK", "", ""},
       "32513", "", 0},
      {"OverwriteTheme", [] { return modMsgbox::OverwriteTheme("Blue Sky"); },
       "Are you sure you want to overwrite the Icon Theme:\n\nBlue Sky\n\nIf you tick the box below, theme "
       "files will automatically be overwritten when you click save.",
       {"&Cancel", "No", "Yes"}, "32514", "Do not ask me this question next time", 0},
      {"RestartNow", modMsgbox::RestartNow,
       "You will need to restart your computer for one or more of these changes to take effect.\n\nWould you "
       "like to restart your computer now?", {"No", "Yes", ""}, "32514", "", 0},
      {"RebuildNotice", [] { return modMsgbox::RebuildNotice("Windows 98"); },
       "Vexillor has notified Windows 98 of your changes.\n\nWindows 95 and Windows NT contains flaws that can "
       "cause these changes to be ignored under certain conditions.\n\nIf your changes are not applied you "
       "will need to select the \"Rebuild Icon Cache\" option from the File menu.\n\nFor more information about "
       "this problem, please select the \"Help\" button below.",
       {"&Help", "OK", ""}, "32515", "Do not show this dialog again", 4600},
      {"EmptyName", modMsgbox::EmptyName, "You must provide a name for your system icon.", {"OK", "", ""},
       "32515", "", 0},
      {"RemoveDesktopIni", modMsgbox::RemoveDesktopIni,
       "Restoring this icon will remove the 'desktop.ini' file from the selected folder." + sureContinue,
       {"Cancel", "OK", ""}, "32514", "", 0},
      {"RemoveAutorunInf", modMsgbox::RemoveAutorunInf,
       "Restoring this icon will remove the 'autorun.inf' file from the selected hard drive." + sureContinue,
       {"Cancel", "OK", ""}, "32514", "", 0},
      {"NothingToRestore", modMsgbox::NothingToRestore,
       "You must select a customised folder or hard drive before it can be restored to the default icon.",
       {"OK", "", ""}, "32516", "", 0},
  };
  vxtest::RegistryScope registry{{vxtest::kProgramKey}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    vxtest::ScriptedSeam seam;
    vxtest::SeamScope scope(seam);
    seam.promptAnswers.push_back({1, false});  // the pressed slot comes back unchanged
    EXPECT_EQ(c.show(), 1);
    ASSERT_EQ(seam.prompts.size(), 1u);
    const ui::PromptRequest& r = seam.prompts[0];
    EXPECT_EQ(r.message, c.message);
    EXPECT_EQ(r.buttons, c.buttons);
    EXPECT_EQ(r.icon, c.icon);
    EXPECT_EQ(r.checkBox, c.checkBox);
    EXPECT_EQ(r.helpTopic, c.helpTopic);
    // Only the remembered prompts may leave anything behind, and only when ticked.
    EXPECT_FALSE(vxtest::KeyExists(kSettings));
  }
}

const std::pair<const char*, std::function<int()>> kMemories[] = {
    {"Dialog Rebuild", [] { return modMsgbox::RebuildNotice("Windows 95"); }},
    {"Dialog Overwrite", [] { return modMsgbox::OverwriteTheme("Autumn"); }},
};

TEST(PromptMemory, OneSuppressesThePromptAnyOtherValueShowsItAndTheTickWritesOne) {
  const std::string one("\1\0\0\0", 4), zero("\0\0\0\0", 4);
  const struct { bool present; DWORD type; std::string bytes; bool shown; } stored[] = {
      {false, 0, "", true},  // never asked before
      {true, REG_DWORD, one, false},
      {true, REG_DWORD, zero, true},
      {true, REG_DWORD, std::string("\2\0\0\0", 4), true},
      {true, REG_SZ, std::string("1\0", 2), true},  // not a number
  };
  for (const auto& [value, show] : kMemories) {
    for (const auto& s : stored) {
      SCOPED_TRACE(testing::Message() << value << " type " << s.type << " bytes " << s.bytes.size());
      vxtest::RegistryScope registry{{vxtest::kProgramKey}};
      if (s.present) vxtest::WriteRaw(kSettings, value, s.type, s.bytes);
      vxtest::ScriptedSeam seam;
      vxtest::SeamScope scope(seam);
      seam.promptAnswers.push_back({2, false});
      EXPECT_EQ(show(), s.shown ? 2 : -1);
      EXPECT_EQ(seam.prompts.size(), s.shown ? 1u : 0u);
    }
    for (bool tick : {false, true}) {
      SCOPED_TRACE(testing::Message() << value << " tick " << tick);
      vxtest::RegistryScope registry{{vxtest::kProgramKey}};
      vxtest::WriteRaw(kSettings, value, REG_DWORD, zero);
      vxtest::ScriptedSeam seam;
      vxtest::SeamScope scope(seam);
      seam.promptAnswers.push_back({2, tick});
      EXPECT_EQ(show(), 2);
      DWORD type = 0;
      std::string bytes;
      ASSERT_TRUE(vxtest::ReadRaw(kSettings, value, type, bytes));
      EXPECT_EQ(type, static_cast<DWORD>(REG_DWORD));
      EXPECT_EQ(bytes, tick ? one : zero);
      EXPECT_EQ(show(), tick ? -1 : 0);  // once remembered, the next call asks nothing
    }
  }
}

}  // namespace
