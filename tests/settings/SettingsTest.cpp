// The settings model without a window: the fill from the real registry, Restore all Settings, toggles,
// and the settings stage of Apply as steps.
#include <gtest/gtest.h>

#include "ui/HelpTopics.h"

#include <algorithm>
#include <functional>

#include "apply/Executor.h"
#include "icons/Refresh.h"
#include "settings/Settings.h"
#include "settings/SettingsFixture.h"
#include "support/ScriptedSeam.h"

namespace {

using namespace vx;

constexpr const char* kRootExplore = "HKEY_CLASSES_ROOT\\Folder\\Shell\\RootExplore";
constexpr const char* kPanel = "Control Panel.{21EC2020-3AEA-1069-A2DD-08002B30309D}";
constexpr const char* kVerbVX = "HKEY_CLASSES_ROOT\\CLSID\\{20D04FE0-3AEA-1069-A2D8-08002B30309D}\\Shell\\VX";

Environment Env(const char* edition, bool desktopUpdate) {
  return MakeEnvironment(edition, "C:\\windows", "C:\\windows\\system32", desktopUpdate ? "4.72.3110.0" : "4.70",
                         true, "C:\\Program Files\\Vexillor\\Vexillor.exe");
}

const ScreenInfo kScreen{32, 800, 600};

class Settings : public ::testing::Test {
 protected:
  vxtest::SettingsScope scope;
  vxtest::ScriptedSeam seam;
  vxtest::SeamScope seamScope{seam};
};

using vxtest::WriteRaw;
void Dword(const std::string& key, const std::string& value, DWORD n) {
  WriteRaw(key, value, REG_DWORD, std::string(reinterpret_cast<const char*>(&n), 4));
}

TEST_F(Settings, EveryReadRuleAsWritten) {
  const Environment env = Env("Win98", true);
  const std::string one("\1\0\0\0", 4), zero(4, '\0');
  const struct { const char* what; std::function<void()> setup; const char* key; int image; } cases[] = {
      {"Beep NO", [] { modRegistry::SaveString(kSoundKey, "Beep", "NO"); }, "Beep On Errors", kImageOff},
      {"Beep missing", [] { modRegistry::DeleteValue(kSoundKey, "Beep"); }, "Beep On Errors", kImageOn},
      {"blink 65535", [] { modRegistry::SaveString(kDesktopKey, "CursorBlinkRate", "65535"); }, "Non-blinking Cursor", kImageOn},
      {"smooth 1", [] { Dword(kDesktopKey, "SmoothScroll", 1); }, "Smooth Scrolling", kImageOn},
      {"smooth missing", [] { modRegistry::DeleteValue(kDesktopKey, "SmoothScroll"); }, "Smooth Scrolling", kImageOff},
      {"animation missing", [] { modRegistry::DeleteValue(kWindowMetricsKey, "MinAnimate"); }, "Window Animation", kImageOn},
      {"animation 0", [] { modRegistry::SaveString(kWindowMetricsKey, "MinAnimate", "0"); }, "Window Animation", kImageOff},
      {"favorites one", [&] { WriteRaw(kPoliciesKey, "NoFavoritesMenu", REG_BINARY, one); }, "Remove 'Favorites' from Start Menu", kImageOn},
      {"log off zero", [&] { WriteRaw(kPoliciesKey, "NoLogOff", REG_BINARY, zero); }, "Remove 'Log Off' Command", kImageOff},
      {"changes missing", [] { modRegistry::DeleteValue(kPoliciesKey, "NoActiveDesktopChanges"); }, "Allow changes to Active Desktop", kImageOn},
      {"changes one", [&] { WriteRaw(kPoliciesKey, "NoActiveDesktopChanges", REG_BINARY, one); }, "Allow changes to Active Desktop", kImageOn},
      {"changes zero", [&] { WriteRaw(kPoliciesKey, "NoActiveDesktopChanges", REG_BINARY, zero); }, "Allow changes to Active Desktop", kImageOff},
      {"save missing", [] { modRegistry::DeleteValue(kPoliciesKey, "NoSaveSettings"); }, "Save Settings on Exit", kImageOff},
      {"save zero", [&] { WriteRaw(kPoliciesKey, "NoSaveSettings", REG_BINARY, zero); }, "Save Settings on Exit", kImageOn},
      {"link missing", [] { modRegistry::DeleteValue(kExplorerKey, "link"); }, "\"Shortcut to\" Prefix on New Shortcuts", kImageOn},
      {"link zero", [&] { WriteRaw(kExplorerKey, "link", REG_BINARY, zero); }, "\"Shortcut to\" Prefix on New Shortcuts", kImageOff},
      {"explore empty", [] { modRegistry::SaveString(std::string(kRootExplore) + "\\Command", "", ""); }, "Explore From Here", kImageOn},
      {"explore other", [] { modRegistry::SaveString(std::string(kRootExplore) + "\\Command", "", "x.exe"); }, "Explore From Here", kImageOff},
      {"explore gone", [] { vxtest::DeleteTree(kRootExplore); }, "Explore From Here", kImageOff},
      {"notepad", [] { modRegistry::SaveString("HKEY_CLASSES_ROOT\\*\\Shell\\Notepad\\Command", "", "NOTEPAD.EXE \"%1\""); }, "Note Pad", kImageOn},
      {"notepad case", [] { modRegistry::SaveString("HKEY_CLASSES_ROOT\\*\\Shell\\Notepad\\Command", "", "notepad.exe \"%1\""); }, "Note Pad", kImageOff},
      {"nethood 1", [] { Dword(kPoliciesKey, "NoNetHood", 1); }, "Hide Network Neighborhood", kImageOff},
      {"nethood 999", [] { Dword(kPoliciesKey, "NoNetHood", 999); }, "Hide Network Neighborhood", kImageOn},
      {"all drives", [] { Dword(kPoliciesKey, "NoDrives", 0x3FFFFFF); }, "Hide Drives in 'My Computer'", kImageOn},
      {"some drives", [] { Dword(kPoliciesKey, "NoDrives", 4); }, "Hide Drives in 'My Computer'", kImageOff},
      {"tab missing", [] { modRegistry::DeleteValue(kSettingsKey, "Active Tab"); }, "Restore Active Tab", kImageOn},
      {"tab 0", [] { Dword(kSettingsKey, "Active Tab", 0); }, "Restore Active Tab", kImageOff},
      {"our verb", [&] { modRegistry::SaveString(std::string(kVerbVX) + "\\Command", "", "c:\\program files\\VEXILLOR\\vexillor.EXE"); },
       "Add Vexillor to My Computer context menu", kImageOn},
      {"folder there", [&] { CreateDirectoryA(scope.Cascade("Printers.{2227A280-3AEA-1069-A2DE-08002B30309D}").c_str(), nullptr); },
       "Printers.{2227A280-3AEA-1069-A2DE-08002B30309D}", kImageOn},
      {"folder absent", [] {}, kPanel, kImageOff},
  };
  for (const auto& c : cases) {
    c.setup();
    const SettingsModel model = ReadSettings(env, kScreen);
    EXPECT_EQ(model.Image(c.key), c.image) << c.what;
  }
}

TEST_F(Settings, NumericTextsAndTheDelayUntilClicked) {
  const Environment env = Env("Win95", false);
  const struct { const char *stored, *width, *delay; bool clicked; } cases[] = {  // stored nullptr: missing
      {nullptr, "4", "400", false},  {"", "4", "400", false},         {"abc", "abc", "abc", false},
      {"250", "250", "250", false},  {"65535", "65535", "400", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored ? c.stored : "missing");
    for (const char* v : {"DoubleClickWidth", "MenuShowDelay"}) {
      if (c.stored)
        modRegistry::SaveString(kDesktopKey, v, c.stored);
      else
        modRegistry::DeleteValue(kDesktopKey, v);
    }
    SettingsModel m = ReadSettings(env, kScreen);
    EXPECT_EQ(m.Value("Double Click Width"), c.width);
    EXPECT_EQ(m.Value(kMenuShowDelayKey), c.delay);
    EXPECT_EQ(m.IsOn(kDelayUntilClickedKey), c.clicked);
    EXPECT_EQ(m.Image(kMenuShowDelayKey), c.clicked ? kImageNumberOverridden : kImageNumber);
    RestoreSettings(m);  // the delay goes back to 400 with the off picture; the click stays
    EXPECT_EQ(m.Value(kMenuShowDelayKey) + (m.IsOn(kDelayUntilClickedKey) ? " clicked" : ""), c.clicked ? "400 clicked" : "400");
    EXPECT_EQ(m.Image(kMenuShowDelayKey), kImageOff);
  }
}

// Each edition's whole tree is checked in its own process (SettingsEditionTest); here the Plus! rule.
TEST_F(Settings, PlusSettingsNeedPlusOrWindowsNT) {
  const struct { const char* edition; bool plus, available; } cases[] = {  // plus: COOL.DLL present
      {"Win95", false, false}, {"Win95", true, true}, {"Win98", false, false}, {"WinNT", false, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.edition) + (c.plus ? " with Plus!" : ""));
    modRegistry::DeleteValue(kPlusSetupKey, "COOL.DLL");
    if (c.plus) modRegistry::SaveString(kPlusSetupKey, "COOL.DLL", "1");
    modRegistry::SaveString(kDesktopKey, "DragFullWindows", "1");
    SettingsModel m = ReadSettings(Env(c.edition, false), kScreen);
    for (const char* k : {"Font Smoothing", "Full Window Dragging", "Stretch Desktop Wallpaper"})
      EXPECT_EQ(m.Image(k) == kImageUnavailable, !c.available) << k;
    // Restore all Settings leaves an unavailable setting unavailable.
    m.SetImage("Full Window Dragging", c.available ? kImageOff : kImageUnavailable);
    RestoreSettings(m);
    EXPECT_EQ(m.Image("Full Window Dragging"), c.available ? kImageOn : kImageUnavailable);
  }
}

// Lines of the plan that mention a text, for checking a setting's steps.
std::vector<std::string> Lines(const Plan& plan, const std::string& part) {
  std::vector<std::string> out;
  for (const std::string& l : Describe(plan))
    if (l.find(part) != std::string::npos) out.push_back(l);
  return out;
}

TEST_F(Settings, TheStageWritesEachRuleInItsOrder) {
  SettingsModel m = ReadSettings(Env("Win98", true), kScreen);
  RestoreSettings(m);
  const Plan restored = BuildSettingsPlan(m, Env("Win98", true), 4);
  const std::vector<std::string> lines = Describe(restored);
  ASSERT_GE(lines.size(), 10u);
  EXPECT_EQ(lines[0], "set string \"HKEY_CURRENT_USER\\Control Panel\\Sound\" \"Beep\" = \"Yes\"");
  EXPECT_EQ(lines[1], "system parameter 2 1 null 0");
  EXPECT_EQ(lines[2], "set string \"HKEY_CURRENT_USER\\Control Panel\\desktop\" \"CursorBlinkRate\" = \"500\"");
  EXPECT_EQ(lines[3], "set dword \"HKEY_CURRENT_USER\\Control Panel\\desktop\" \"SmoothScroll\" = 0");
  EXPECT_EQ(lines[5].rfind("system parameter 73 ", 0), 0u);
  // The numbers in their write order: height before width, then the delay, skippable from there on.
  std::vector<std::string> order;
  for (const Step& s : restored)
    if (s.kind == StepKind::SetString && s.key == kDesktopKey) order.push_back(s.value);
  const std::vector<std::string> expected = {"CursorBlinkRate", "DoubleClickHeight", "DoubleClickWidth", "DragHeight",
                                             "DragWidth", "FontSmoothing", "DragFullWindows", "WallpaperStyle",
                                             "MenuShowDelay", "WallpaperOriginX", "WallpaperOriginY"};
  EXPECT_EQ(order, expected);
  const auto delay = std::find_if(restored.begin(), restored.end(), [](const Step& s) { return s.value == "MenuShowDelay"; });
  ASSERT_NE(delay, restored.end());
  EXPECT_TRUE(std::none_of(restored.begin(), delay, [](const Step& s) { return s.skipOnError; }));
  EXPECT_TRUE(std::all_of(delay, restored.end(), [](const Step& s) { return s.skipOnError; }));
  EXPECT_EQ(Lines(restored, "\"Active Tab\""), (std::vector<std::string>{"set dword \"HKEY_CURRENT_USER\\Software\\Quenby\\Vexillor\\Settings\" \"Active Tab\" = 4"}));
  EXPECT_EQ(Lines(restored, "NoLogoff").size(), 1u);  // written with its own spelling

  const struct { const char* key; int image; const char* part; std::vector<std::string> want; } cases[] = {
      {"Font Smoothing", kImageOn, "FontSmoothing",
       {"set string \"HKEY_CURRENT_USER\\Control Panel\\desktop\" \"FontSmoothing\" = \"1\""}},
      {"Explore From Here", kImageOn, "RootExplore",
       {"set string \"HKEY_CLASSES_ROOT\\Folder\\Shell\\RootExplore\\Command\" \"\" = \"EXPLORER.EXE /E,/Root,/IDList,%I\"",
        "set string \"HKEY_CLASSES_ROOT\\Folder\\Shell\\RootExplore\" \"\" = \"E&xplore From Here\""}},
      {"Quick View", kImageOff, "QuickView", {"delete key \"HKEY_CLASSES_ROOT\\*\" \"QuickView\""}},
      {"Swap Mouse Buttons", kImageOn, "system parameter 33 ", {"system parameter 33 1 null 0"}},
      {kPanel, kImageOn, kPanel, {"create folder \"" + scope.Cascade(kPanel) + "\""}},
      {kPanel, kImageOff, kPanel, {"remove folder \"" + scope.Cascade(kPanel) + "\""}},
      {"Allow changes to Active Desktop", kImageOn, "NoActiveDesktopChanges",
       {"set binary \"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer\" \"NoActiveDesktopChanges\" = 00 00 00 00"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.key) + (c.image == kImageOn ? " on" : " off"));
    const Environment env = Env("Win98", true);
    SettingsModel model = ReadSettings(env, kScreen);
    model.SetImage(c.key, c.image);
    model.values[kMenuShowDelayKey] = "123";
    EXPECT_EQ(Lines(BuildSettingsPlan(model, env, 2), c.part), c.want);
  }
  // Without the desktop update its policies are not written at all.
  SettingsModel plain = ReadSettings(Env("Win95", false), kScreen);
  EXPECT_TRUE(Lines(BuildSettingsPlan(plain, Env("Win95", false), 2), "NoFavoritesMenu").empty());
}

// Real writes and their undo are the window's tests (tests/app); here, a missing policies key: the byte
// writes report "Error" and write nothing, and the rest of the stage goes on.
TEST_F(Settings, WithoutThePoliciesKeyTheByteWritesReportError) {
  const Environment env = Env("Win98", true);
  SettingsModel m = ReadSettings(env, kScreen);
  RestoreSettings(m);
  vxtest::DeleteTree(kPoliciesKey);
  modRegistry::SaveString(kDesktopKey, "DoubleClickWidth", "9");
  const ApplyResult result = Execute(BuildSettingsPlan(m, env, 3));
  EXPECT_FALSE(scope.errors.empty());
  EXPECT_EQ(scope.errors, std::vector<std::string>(scope.errors.size(), "Error"));
  EXPECT_FALSE(result.ok());
  EXPECT_EQ(modRegistry::GetString(kDesktopKey, "DoubleClickWidth"), "4");
  vx::Run(result.undo.plan);
  EXPECT_EQ(modRegistry::GetString(kDesktopKey, "DoubleClickWidth"), "9");
}

TEST_F(Settings, TogglesWarnBeforeTheRiskyOnesAndSetTheFlags) {
  const struct { const char *key, *edition; int bitsPerPixel; std::vector<int> answers; bool changes; size_t prompts;
                 bool rebuild, restart; } cases[] = {
      {kNotepadKey, "Win98", 32, {0}, false, 1, false, false},
      {kNotepadKey, "Win98", 32, {1}, true, 1, false, false},
      {kHideNetworkKey, "Win98", 32, {1}, false, 1, false, false},
      {kHideNetworkKey, "Win98", 32, {0}, true, 1, false, true},
      {kHideNetworkKey, "Win98", 32, {2}, true, 1, false, true},
      {kDisableDesktopKey, "Win98", 32, {0}, false, 1, false, false},
      {kDisableDesktopKey, "Win98", 32, {1}, true, 1, false, true},
      {kAllColoursKey, "Win98", 16, {}, true, 0, false, true},
      {kAllColoursKey, "Win98", 8, {0}, true, 1, false, true},
      {"Remove 'Run' Command", "Win98", 32, {}, true, 0, true, false},
      {"Remove 'Run' Command", "WinNT", 32, {}, true, 0, true, true},
      {"Large Icons", "WinNT", 32, {}, true, 0, true, false},
      {"\"Shortcut to\" Prefix on New Shortcuts", "Win98", 32, {}, true, 0, false, true},
      {"Font Smoothing", "Win95", 32, {}, false, 0, false, false},  // unavailable without Plus!
      {"General", "Win98", 32, {}, false, 0, false, false},
      {kMenuShowDelayKey, "Win98", 32, {}, false, 0, false, false},
  };
  modRegistry::DeleteValue(kPlusSetupKey, "COOL.DLL");
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.key) + " " + c.edition);
    const Environment env = Env(c.edition, false);
    SettingsModel m = ReadSettings(env, ScreenInfo{c.bitsPerPixel, 800, 600});
    if (m.Find(c.key)->row->kind == NodeKind::Switch && m.Image(c.key) != kImageUnavailable)
      m.SetImage(c.key, kImageOff);
    seam.prompts.clear();
    seam.helpCalls.clear();
    for (int a : c.answers) seam.promptAnswers.push_back({a, false});
    RunFlags flags;
    const int before = m.Image(c.key);
    EXPECT_EQ(ToggleSetting(m, c.key, env, flags), c.changes);
    EXPECT_EQ(m.Image(c.key), c.changes ? kImageOn : before);
    EXPECT_EQ(seam.prompts.size(), c.prompts);
    EXPECT_EQ(flags.rebuildCachePending, c.rebuild);
    EXPECT_EQ(flags.restartNeeded, c.restart);
    seam.promptAnswers.clear();
    // Turning it off again asks nothing.
    if (c.changes) {
      seam.prompts.clear();
      EXPECT_TRUE(ToggleSetting(m, c.key, env, flags));
      EXPECT_EQ(m.Image(c.key), kImageOff);
      EXPECT_TRUE(seam.prompts.empty());
    }
  }
  // The network warning's "&Help" shows the setting's pop-up help and goes ahead.
  const Environment env = Env("Win98", false);
  SettingsModel m = ReadSettings(env, kScreen);
  m.SetImage(kHideNetworkKey, kImageOff);
  seam.helpCalls.clear();
  seam.promptAnswers.push_back({0, false});
  RunFlags flags;
  EXPECT_TRUE(ToggleSetting(m, kHideNetworkKey, env, flags));
  ASSERT_EQ(seam.helpCalls.size(), 1u);
  EXPECT_EQ(seam.helpCalls[0].keyword, "46");
  EXPECT_EQ(seam.prompts.back().buttons, (std::array<std::string, 3>{"&Help", "Cancel", "OK"}));
}

TEST_F(Settings, BoundsTypedNumbersAndHelpNumbers) {
  SettingsModel m = ReadSettings(Env("Win98", false), ScreenInfo{32, 1024, 768});
  const struct { const char* key; int in, out; bool beep; } cases[] = {
      {"Double Click Width", 33, 32, true}, {"Double Click Width", 0, 1, false}, {"Drag Height", 32, 32, false},
      {"Double Click Speed", 901, 900, true}, {"Double Click Speed", 900, 900, false},
      {kMenuShowDelayKey, 10000, 9999, true}, {"Wallpaper Horizontal Origin", 1025, 1024, true},
      {"Wallpaper Vertical Origin", 769, 768, true}, {"Wallpaper Vertical Origin", 0, 0, false},
  };
  for (const auto& c : cases) {
    const Bounded b = BoundValue(m, c.key, c.in);
    EXPECT_EQ(b.value, c.out) << c.key << " " << c.in;
    EXPECT_EQ(b.beep, c.beep) << c.key << " " << c.in;
  }
  const std::pair<const char*, std::optional<int>> typed[] = {
      {"40", 40}, {" -5 ", -5}, {"4x", std::nullopt}, {"abc", std::nullopt}, {"99999999999", std::nullopt}};
  for (const auto& [text, n] : typed) EXPECT_EQ(TypedNumber(text), n) << text;
  // The page's What's This test covers the groups and the first settings.
  const std::pair<const char*, int> help[] = {{"Drag", 42}, {"Wallpaper Vertical Origin", 58}, {"Display Splash Screen", 60},
                                              {"Restore Window Position", 62}, {"Delay Until Clicked", 57}};
  for (const auto& [key, n] : help) EXPECT_EQ(HelpNumber(key), n) << key;
}

// The buttons that do something besides answering, pressed in the real dialog: each action happens once.
TEST_F(Settings, APromptButtonThatActsActsOnce) {
  const Environment env = Env("Win98", false);
  SettingsModel m = ReadSettings(env, ScreenInfo{8, 800, 600});
  vxtest::RegistryScope memory{{vxtest::kProgramKey}};  // the rebuild notice is shown, whatever was remembered
  RunFlags flags;
  const struct { const char* name; std::function<void()> show; const char* press; size_t commands, helps, restarts = 0; }
      cases[] = {
      {"colour depth", [&] { m.SetImage(kAllColoursKey, kImageOff); ToggleSetting(m, kAllColoursKey, env, flags); },
       "&Settings...", 1, 0},
      {"hide Network Neighborhood",
       [&] { m.SetImage(kHideNetworkKey, kImageOff); ToggleSetting(m, kHideNetworkKey, env, flags); }, "&Help", 0, 1},
      {"rebuild notice", [&] { ShowRebuildNotice(env, flags); }, "&Help", 0, 1},
      {"restart now", [&] { PromptRestart(env, flags); }, "Yes", 0, 0, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    seam.commands.clear(), seam.helpCalls.clear(), seam.prompts.clear(), seam.restarts.clear();
    seam.presses = {c.press};
    c.show();
    EXPECT_EQ(seam.prompts.size(), 1u);
    EXPECT_TRUE(seam.presses.empty());
    EXPECT_EQ(seam.commands.size(), c.commands);
    EXPECT_EQ(seam.helpCalls.size(), c.helps);
    EXPECT_EQ(seam.restarts.size(), c.restarts);
  }
}

}  // namespace

namespace {

// On the XP family a setting that Windows ignores says so in its What's This?; elsewhere nothing changes.
TEST(SettingsNotes, WhatsThisNotesSettingsThisWindowsIgnores) {
  Environment xp = Env("WinNT", false), win10 = Env("WinNT", false);
  SetNtVersion(xp, 0x0501, true);
  SetNtVersion(win10, 0x0A00, true);
  const struct { const char* key; const Environment& env; bool noted; } cases[] = {
      {"Quick View", xp, true},
      {"Quick View", Env("Win98", false), false},
      {"Quick View", Env("WinNT", false), false},
      {"Remove folders from 'Settings' on Start Menu", xp, false},  // XP's Start menu still has them
      {"Remove folders from 'Settings' on Start Menu", win10, true},
      {"Beep On Errors", win10, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.key) + " on " + c.env.editionName + " " + std::to_string(c.env.ntVersion));
    const ui::HelpTopic* topic = ui::FindHelpTopic(static_cast<unsigned>(HelpNumber(c.key, c.env)));
    ASSERT_NE(topic, nullptr);
    const std::string popup = topic->popup;
    EXPECT_EQ(popup.find(ui::kNoEffectNote) != std::string::npos, c.noted);
    EXPECT_EQ(popup.rfind(ui::FindHelpTopic(static_cast<unsigned>(HelpNumber(c.key)))->popup, 0), 0u);
  }
}

}  // namespace
