// The real prompt dialog, driven as a person would: a timer on the test thread finds the dialog
// inside its modal loop, reads what it shows, and presses buttons or keys.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <vector>

#include "registry/modRegistry.h"
#include "support/RegistryScope.h"
#include "support/ScriptedSeam.h"
#include "ui/frmPrompt.h"
#include "ui/modMsgbox.h"
#include "ui/win.h"

namespace {

using Step = std::function<void(HWND dialog)>;

// Real dialogs, recorded commands and help calls.
class RealPromptSeam : public vxtest::ScriptedSeam {
 public:
  ui::PromptAnswer ShowPrompt(HWND owner, const ui::PromptRequest& r) override {
    prompts.push_back(r);
    return ui::RealSeam().ShowPrompt(owner, r);
  }
};

// One step per timer tick once the dialog is up; a dialog still open long after the last step is
// closed so that a broken dialog fails the test instead of hanging it.
struct Driver {
  std::vector<Step> steps;
  size_t next = 0;
  int ticks = 0;
  bool timedOut = false;
  HWND dialog = nullptr;
};
Driver* g_driver = nullptr;

BOOL CALLBACK FindPrompt(HWND hwnd, LPARAM out) {
  char cls[32] = {};
  GetClassNameA(hwnd, cls, sizeof cls);
  if (IsWindowVisible(hwnd) && std::string(cls) == "#32770" && ui::GetText(hwnd) == "Vexillor") {
    *reinterpret_cast<HWND*>(out) = hwnd;
    return FALSE;
  }
  return TRUE;
}

void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
  Driver& d = *g_driver;
  ++d.ticks;
  HWND dialog = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), FindPrompt, reinterpret_cast<LPARAM>(&dialog));
  if (!dialog) return;
  d.dialog = dialog;
  if (d.next < d.steps.size()) {
    d.steps[d.next++](dialog);
  } else if (d.ticks > 400) {
    d.timedOut = true;
    EndDialog(dialog, 1);
  }
}

ui::PromptAnswer Drive(const std::function<ui::PromptAnswer()>& show, std::vector<Step> steps,
                       bool expectDialog = true) {
  Driver d;
  d.steps = std::move(steps);
  g_driver = &d;
  UINT_PTR timer = SetTimer(nullptr, 0, 20, Tick);
  ui::PromptAnswer answer = show();
  KillTimer(nullptr, timer);
  g_driver = nullptr;
  EXPECT_EQ(d.dialog != nullptr, expectDialog) << "the dialog appeared";
  if (expectDialog) {
    EXPECT_EQ(d.next, d.steps.size()) << "the dialog closed before the script ended";
  }
  EXPECT_FALSE(d.timedOut) << "the dialog stayed open";
  return answer;
}

ui::PromptAnswer DriveRequest(const ui::PromptRequest& r, std::vector<Step> steps, HWND owner = nullptr) {
  return Drive([&] { return ui::RealSeam().ShowPrompt(owner, r); }, std::move(steps));
}

ui::PromptRequest Request(std::array<std::string, 3> buttons, std::string checkBox = "") {
  ui::PromptRequest r;
  r.message = "First paragraph of the question.\n\nSecond paragraph, which is a good deal longer so that it "
              "has to wrap over more than one line in the dialog.";
  r.buttons = std::move(buttons);
  r.icon = ui::kIconQuestion;
  r.checkBox = std::move(checkBox);
  return r;
}

bool IsClass(HWND w, const char* name) {
  char cls[32] = {};
  GetClassNameA(w, cls, sizeof cls);
  return lstrcmpiA(cls, name) == 0;
}

RECT ClientRectOf(HWND control, HWND dialog) {
  RECT r{};
  GetWindowRect(control, &r);
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&r), 2);
  return r;
}

// Visible push buttons from left to right.
std::vector<HWND> PushButtons(HWND dialog) {
  std::vector<HWND> found;
  for (HWND c = GetWindow(dialog, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) {
    LONG type = GetWindowLongA(c, GWL_STYLE) & BS_TYPEMASK;
    if (IsWindowVisible(c) && IsClass(c, "Button") && (type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON))
      found.push_back(c);
  }
  std::sort(found.begin(), found.end(),
            [&](HWND a, HWND b) { return ClientRectOf(a, dialog).left < ClientRectOf(b, dialog).left; });
  return found;
}

HWND Captioned(HWND dialog, const std::string& caption) {
  for (HWND c = GetWindow(dialog, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT))
    if (IsWindowVisible(c) && ui::GetText(c) == caption) return c;
  return nullptr;
}

HWND CheckBox(HWND dialog) {
  for (HWND c = GetWindow(dialog, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT))
    if (IsWindowVisible(c) && IsClass(c, "Button") && (GetWindowLongA(c, GWL_STYLE) & BS_TYPEMASK) == BS_AUTOCHECKBOX)
      return c;
  return nullptr;
}

Step Click(const std::string& caption) {
  return [caption](HWND dialog) {
    HWND b = Captioned(dialog, caption);
    ASSERT_NE(b, nullptr) << caption;
    SendMessageA(b, BM_CLICK, 0, 0);
  };
}

Step TickBox() {
  return [](HWND dialog) {
    HWND c = CheckBox(dialog);
    ASSERT_NE(c, nullptr);
    SendMessageA(c, BM_CLICK, 0, 0);
    EXPECT_EQ(SendMessageA(c, BM_GETCHECK, 0, 0), BST_CHECKED);
  };
}

// A key as the dialog's message loop receives it, aimed at the control with the focus.
Step Key(UINT message, WPARAM key) {
  return [message, key](HWND dialog) {
    HWND focus = GetFocus();
    PostMessageA(focus && IsChild(dialog, focus) ? focus : dialog, message, key, 1);
  };
}

// What the person sees: the caption, the message, the icon, the buttons left to right, the check box,
// all inside the dialog, nothing clipped or overlapping.
Step CheckLayout(const ui::PromptRequest& r, std::vector<std::string> leftToRight) {
  return [r, leftToRight](HWND dialog) {
    RECT client{}, frame{}, work{};
    GetClientRect(dialog, &client);
    GetWindowRect(dialog, &frame);
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_TRUE(frame.left >= work.left && frame.top >= work.top && frame.right <= work.right &&
                frame.bottom <= work.bottom)
        << "the dialog stays on the desktop";
    auto inside = [&](const RECT& c) {
      return c.left >= client.left && c.top >= client.top && c.right <= client.right && c.bottom <= client.bottom;
    };
    std::vector<HWND> buttons = PushButtons(dialog);
    ASSERT_EQ(buttons.size(), leftToRight.size());
    for (size_t i = 0; i < buttons.size(); ++i) {
      RECT b = ClientRectOf(buttons[i], dialog);
      RECT first = ClientRectOf(buttons[0], dialog);
      EXPECT_EQ(ui::GetText(buttons[i]), leftToRight[i]);
      EXPECT_TRUE(inside(b));
      EXPECT_EQ(b.right - b.left, first.right - first.left) << "buttons of one width";
      EXPECT_EQ(b.top, first.top) << "buttons in one row";
      if (i > 0) {
        EXPECT_GT(b.left, ClientRectOf(buttons[i - 1], dialog).right);
      }
    }
    // The leftmost button is the default one and has the focus.
    ASSERT_FALSE(buttons.empty());
    EXPECT_EQ(GetWindowLongA(buttons[0], GWL_STYLE) & BS_TYPEMASK, BS_DEFPUSHBUTTON);
    EXPECT_EQ(GetFocus(), buttons[0]);

    HWND text = nullptr, icon = nullptr;
    for (HWND c = GetWindow(dialog, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) {
      if (!IsClass(c, "Static") || !IsWindowVisible(c)) continue;
      if ((GetWindowLongA(c, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) icon = c;
      else text = c;
    }
    ASSERT_NE(text, nullptr);
    std::string shown = ui::GetText(text);
    std::string expected;
    for (char ch : r.message) expected += ch == '\n' ? std::string("\r\n") : std::string(1, ch);
    EXPECT_EQ(shown, expected);
    RECT t = ClientRectOf(text, dialog);
    EXPECT_TRUE(inside(t));
    EXPECT_LT(t.bottom, ClientRectOf(buttons[0], dialog).top);
    {
      // Measured in the control's own font at its own width, the message fits its height.
      ui::WindowDc dc(text);
      ui::SelectScope font(dc.get(), reinterpret_cast<HGDIOBJ>(SendMessageA(text, WM_GETFONT, 0, 0)));
      RECT need{0, 0, t.right - t.left, 0};
      DrawTextA(dc.get(), shown.c_str(), -1, &need,
                DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX | DT_EDITCONTROL);
      EXPECT_LE(need.right, t.right - t.left);
      EXPECT_LE(need.bottom, t.bottom - t.top);
      EXPECT_GT(need.bottom, 0);
    }
    ASSERT_NE(icon, nullptr);
    EXPECT_NE(SendMessageA(icon, STM_GETICON, 0, 0), 0);
    RECT i = ClientRectOf(icon, dialog);
    EXPECT_TRUE(inside(i));
    EXPECT_LE(i.right, t.left) << "icon to the left of the message";

    HWND check = CheckBox(dialog);
    EXPECT_EQ(check != nullptr, !r.checkBox.empty());
    if (check) {
      RECT c = ClientRectOf(check, dialog);
      EXPECT_EQ(ui::GetText(check), r.checkBox);
      EXPECT_TRUE(inside(c));
      EXPECT_LT(c.right, ClientRectOf(buttons[0], dialog).left) << "check box left of the buttons";
      EXPECT_EQ(SendMessageA(check, BM_GETCHECK, 0, 0), BST_UNCHECKED);
    }
  };
}

TEST(PromptDialog, ShowsTheRequestAndAnswersWithThePressedSlot) {
  const auto r = Request({"&Cancel", "No", "Yes"}, "Do not ask me this question next time");
  const std::vector<std::string> leftToRight = {"Yes", "No", "&Cancel"};
  for (int slot = 0; slot < 3; ++slot) {
    for (bool tick : {false, true}) {
      SCOPED_TRACE(testing::Message() << "slot " << slot << " tick " << tick);
      std::vector<Step> steps = {CheckLayout(r, leftToRight)};
      if (tick) steps.push_back(TickBox());
      steps.push_back(Click(r.buttons[slot]));
      ui::PromptAnswer a = DriveRequest(r, steps);
      EXPECT_EQ(a.result, slot);
      EXPECT_EQ(a.doNotShow, tick);
    }
  }
}

TEST(PromptDialog, LaysOutEveryButtonSet) {
  struct Case {
    std::array<std::string, 3> buttons;
    std::vector<std::string> leftToRight;
    std::string checkBox;
  };
  const Case cases[] = {
      {{"OK", "", ""}, {"OK"}, ""},
      {{"Cancel", "OK", ""}, {"OK", "Cancel"}, ""},
      {{"&Settings...", "OK", ""}, {"OK", "&Settings..."}, ""},
      {{"&Help", "OK", ""}, {"OK", "&Help"}, "Do not show this dialog again"},
      {{"&Help", "Cancel", "OK"}, {"OK", "Cancel", "&Help"}, ""},
      {{"A much longer caption", "OK", ""}, {"OK", "A much longer caption"}, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.leftToRight[0] + " ... " + c.leftToRight.back());
    const auto r = Request(c.buttons, c.checkBox);
    ui::PromptAnswer a = DriveRequest(r, {CheckLayout(r, c.leftToRight), Click(c.leftToRight[0])});
    EXPECT_EQ(a.result, ui::PromptDefaultSlot(r));
  }
  // A one-line message, and a path far longer than a line, with an ampersand shown as it is.
  auto shortOne = Request({"OK", "", ""});
  shortOne.message = "Done.";
  auto longPath = Request({"OK", "", ""});
  longPath.message = "The file C:\\" + std::string(40, 'x');
  for (int i = 0; i < 12; ++i) longPath.message += "\\Rock&Roll_folder_" + std::to_string(i);
  longPath.message += ".vxtheme does not appear to be a valid theme file.";
  for (const auto& r : {shortOne, longPath}) {
    EXPECT_EQ(DriveRequest(r, {CheckLayout(r, {"OK"}), Click("OK")}).result, 0);
  }
}

TEST(PromptDialog, EscapeAndTheCloseBoxAnswerCancelOrOk) {
  struct Case {
    std::array<std::string, 3> buttons;
    int slot;
  };
  const Case cases[] = {
      {{"&Cancel", "No", "Yes"}, 0}, {{"&Help", "Cancel", "OK"}, 1}, {{"Cancel", "OK", ""}, 0},
      {{"&Help", "OK", ""}, 1},      {{"&Settings...", "OK", ""}, 1}, {{"OK", "", ""}, 0},
      {{"No", "Yes", ""}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.buttons[0] + "/" + c.buttons[1] + "/" + c.buttons[2]);
    EXPECT_EQ(ui::PromptCancelSlot(Request(c.buttons)), c.slot);
    for (int way = 0; way < 2; ++way) {
      RealPromptSeam seam;
      vxtest::SeamScope scope(seam);
      Step close = way == 0 ? Key(WM_KEYDOWN, VK_ESCAPE)
                            : Step([](HWND d) { PostMessageA(d, WM_SYSCOMMAND, SC_CLOSE, 0); });
      ui::PromptAnswer a = DriveRequest(Request(c.buttons, "Box"), {TickBox(), close});
      EXPECT_EQ(a.result, c.slot) << (way == 0 ? "Escape" : "close box");
      EXPECT_TRUE(a.doNotShow);
      // Leaving this way runs no button's command.
      EXPECT_TRUE(seam.helpCalls.empty());
      EXPECT_TRUE(seam.commands.empty());
    }
  }
}

TEST(PromptDialog, KeyboardEnterTabAndMnemonics) {
  const auto r = Request({"&Cancel", "No", "Yes"}, "Box");
  // Enter presses the default (leftmost) button.
  EXPECT_EQ(DriveRequest(r, {Key(WM_KEYDOWN, VK_RETURN)}).result, 2);
  // Tab walks Yes -> No -> &Cancel -> the check box; Enter then presses the focused button.
  std::vector<std::string> focused;
  auto note = [&](HWND) { focused.push_back(ui::GetText(GetFocus())); };
  ui::PromptAnswer a = DriveRequest(r, {note, Key(WM_KEYDOWN, VK_TAB), note, Key(WM_KEYDOWN, VK_TAB), note,
                                        Key(WM_KEYDOWN, VK_TAB), note, Key(WM_KEYDOWN, VK_TAB), note,
                                        Key(WM_KEYDOWN, VK_RETURN)});
  EXPECT_EQ(focused, (std::vector<std::string>{"Yes", "No", "&Cancel", "Box", "Yes"}));
  EXPECT_EQ(a.result, 2);
  // The access keys, with and without Alt.
  EXPECT_EQ(DriveRequest(r, {Key(WM_CHAR, 'c')}).result, 0);
  EXPECT_EQ(DriveRequest(r, {Key(WM_SYSCHAR, 'C')}).result, 0);
}

TEST(PromptDialog, HelpAndSettingsRunTheirCommandAndAnswerTheirSlot) {
  vxtest::RegistryScope registry{{vxtest::kProgramKey}};
  const std::string helpFile = ui::AppHelpFile();
  ASSERT_GT(helpFile.size(), std::string("\\Help.hlp").size());
  EXPECT_EQ(helpFile, ui::ModulePath().substr(0, ui::ModulePath().rfind('\\')) + "\\Help.hlp");
  struct Case {
    const char* name;
    std::function<int()> show;
    std::string press;
    int slot;
    std::string keyword;  // of the help call, if one is expected
    bool command;
  };
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
    ui::PromptAnswer a = Drive([&] { return ui::PromptAnswer{c.show(), false}; }, {Click(c.press)});
    EXPECT_EQ(a.result, c.slot);
    if (c.keyword.empty()) {
      EXPECT_TRUE(seam.helpCalls.empty());
    } else {
      ASSERT_EQ(seam.helpCalls.size(), 1u);
      EXPECT_EQ(seam.helpCalls[0].file, helpFile);
      EXPECT_EQ(seam.helpCalls[0].command, 261u);
      EXPECT_EQ(seam.helpCalls[0].keyword, c.keyword);
    }
    EXPECT_EQ(seam.commands, c.command ? std::vector<std::string>{"rundll32.exe shell32.dll,Control_RunDLL desk.cpl,,3"}
                                       : std::vector<std::string>{});
  }
}

TEST(PromptDialog, HelpKeywordFollowsTheFirstTenCharacters) {
  const std::pair<const char*, const char*> table[] = {
      {"Vexillor has notified Windows 95 of your changes.", "Icon Cache"},
      {"Vexillor h", "Icon Cache"},
      {"Hiding Network Neighborhood disables...", "Hide, Network Neighborhood"},
      {"The program could not find the folder.", "Introduction, Explorer"},
      {"vexillor has notified", ""},  // the comparison is exact
      {"Vexillor", ""},
      {"", ""},
      {" Hiding Net", ""},
  };
  for (const auto& [message, keyword] : table) EXPECT_EQ(ui::PromptHelpKeyword(message), keyword) << message;
}

TEST(PromptDialog, F1OpensTheTopicOfAPromptThatHasOne) {
  for (int topic : {4600, 0}) {
    RealPromptSeam seam;
    vxtest::SeamScope scope(seam);
    auto r = Request({"&Help", "OK", ""});
    r.helpTopic = topic;
    auto f1 = [](HWND dialog) {
      SetForegroundWindow(dialog);
      keybd_event(VK_F1, 0, 0, 0);
      keybd_event(VK_F1, 0, KEYEVENTF_KEYUP, 0);
    };
    ui::PromptAnswer a = DriveRequest(r, {f1, [](HWND) {}, [](HWND) {}, Click("OK")});
    EXPECT_EQ(a.result, 1);
    if (topic) {
      ASSERT_EQ(seam.helpCalls.size(), 1u);
      EXPECT_EQ(seam.helpCalls[0].command, static_cast<unsigned>(HELP_CONTEXT));
      EXPECT_EQ(seam.helpCalls[0].keyword, "4600");
    } else {
      EXPECT_TRUE(seam.helpCalls.empty());
    }
  }
}

TEST(PromptDialog, IsModalToItsOwnerAndCentredOnIt) {
  HWND owner = CreateWindowExA(0, "STATIC", "Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 60, 50, 700, 500, nullptr,
                               nullptr, GetModuleHandleA(nullptr), nullptr);
  ASSERT_NE(owner, nullptr);
  auto check = [owner](HWND dialog) {
    EXPECT_FALSE(IsWindowEnabled(owner)) << "the owner waits while the prompt is up";
    EXPECT_EQ(GetWindow(dialog, GW_OWNER), owner);
    RECT o{}, d{};
    GetWindowRect(owner, &o);
    GetWindowRect(dialog, &d);
    EXPECT_NEAR((d.left + d.right) / 2, (o.left + o.right) / 2, 2);
    EXPECT_NEAR((d.top + d.bottom) / 2, (o.top + o.bottom) / 2, 2);
  };
  ui::PromptAnswer a = DriveRequest(Request({"OK", "", ""}), {check, Click("OK")}, owner);
  EXPECT_EQ(a.result, 0);
  EXPECT_TRUE(IsWindowEnabled(owner));
  DestroyWindow(owner);
}

TEST(PromptDialog, RememberedPromptsEndToEnd) {
  vxtest::RegistryScope registry{{vxtest::kProgramKey}};
  RealPromptSeam seam;
  vxtest::SeamScope scope(seam);
  const std::string settings = vxtest::kProgramKey + "\\Settings";
  ui::PromptAnswer a =
      Drive([] { return ui::PromptAnswer{modMsgbox::OverwriteTheme("Autumn"), false}; }, {TickBox(), Click("No")});
  EXPECT_EQ(a.result, 1);
  EXPECT_EQ(modRegistry::GetDword(settings, "Dialog Overwrite"), 1);
  // Not asked again.
  a = Drive([] { return ui::PromptAnswer{modMsgbox::OverwriteTheme("Autumn"), false}; }, {Click("Yes")}, false);
  EXPECT_EQ(a.result, -1);
  EXPECT_EQ(seam.prompts.size(), 1u);
}

// Holds the busiest prompts on screen for a screenshot; run by hand with
// --gtest_also_run_disabled_tests --gtest_filter=*Screenshot* (VX_PROMPT_HOLD_MS sets the time).
TEST(PromptDialog, DISABLED_Screenshot) {
  vxtest::RegistryScope registry{{vxtest::kProgramKey}};
  const char* hold = std::getenv("VX_PROMPT_HOLD_MS");
  const int ticks = (hold ? std::atoi(hold) : 4000) / 20;
  std::vector<Step> wait(static_cast<size_t>(ticks), [](HWND) {});
  auto withEscape = wait;
  withEscape.push_back(Key(WM_KEYDOWN, VK_ESCAPE));
  Drive([] { return ui::PromptAnswer{modMsgbox::OverwriteTheme("Blue Sky & Clouds"), false}; }, withEscape);
  Drive([] { return ui::PromptAnswer{modMsgbox::RebuildNotice("Windows 98"), false}; }, withEscape);
  Drive([] { return ui::PromptAnswer{modMsgbox::SaveBeforeClosing(), false}; }, withEscape);
  Drive([] {
    return ui::PromptAnswer{modMsgbox::InvalidTheme("C:\\Documents and Settings\\Administrator\\Application "
                                                    "Data\\Quenby\\Themes\\Rock & Roll\\Unfinished\\"
                                                    "A_very_long_theme_name_without_any_spaces_at_all.txt"),
                            false};
  }, withEscape);
}

}  // namespace
