// The XP family for real: the program under Wine's Windows 10 emulation applying a theme, and the offer
// to continue as administrator carrying the machine-wide edits over to a second window.
#include <gtest/gtest.h>
#include <windows.h>

#include "MainWindowFixture.h"
#include "app/CommandLine.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"

namespace {

const std::string kExplorer = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\CLSID\\";
const std::string kComputer = "{20D04FE0-3AEA-1069-A2D8-08002B30309D}", kBin = "{645FF040-5081-101B-9F08-00AA002F954E}";
const std::string kMachineClsid = "HKEY_CLASSES_ROOT\\CLSID\\";
const std::string kAppDefaults = "HKEY_CURRENT_USER\\Software\\Wine\\AppDefaults\\vexillor.exe";
const char* const kRoles[] = {"Arrow", "Help", "AppStarting", "Wait", "Crosshair", "IBeam", "NWPEN", "No", "SizeNS",
                              "SizeWE", "SizeNWSE", "SizeNESW", "SizeAll", "UpArrow", "Hand", "Pin", "Person"};
const char* const kPointers[] = {"Normal Select", "Help Select", "Working In Background", "Busy", "Precision Select",
                                 "Text Select", "Handwriting", "Unavailable", "Vertical Resize", "Horizontal Resize",
                                 "Diagonal Resize 1", "Diagonal Resize 2", "Move", "Alternate Select", "Hand",
                                 "Location Select", "Person Select"};

std::string TempFile(const char* name) {
  char temp[MAX_PATH] = {};
  return std::string(temp, GetTempPathA(MAX_PATH, temp)) + name;
}

class PerUserProgram : public vxtest::MainWindowTest {
 protected:
  PerUserProgram() {
    modRegistry::SaveDword(vx::kSettingsKey, "Dialog Rebuild", 1);
    modRegistry::SaveString("HKEY_CLASSES_ROOT\\.txt", "", "vxtestfile");
    modRegistry::SaveString("HKEY_CLASSES_ROOT\\vxtestfile\\DefaultIcon", "", "%1");
  }
  ~PerUserProgram() override { DeleteFileA(theme.c_str()); }

  const std::string shell = [] { char b[MAX_PATH]; return std::string(b, GetSystemDirectoryA(b, MAX_PATH)); }() +
                            "\\shell32.dll";
  const std::vector<std::string> machine = {kMachineClsid + kComputer, kMachineClsid + kBin,
                                            "HKEY_CLASSES_ROOT\\vxtestfile"};
  vxtest::KeySnapshot saved{{kExplorer.substr(0, kExplorer.size() - 1), "HKEY_CURRENT_USER\\Software\\Classes\\vxtestfile",
                             vx::kCursorsKey, vx::kShellIconsKey, vx::kWindowMetricsKey, kAppDefaults,
                             "HKEY_CLASSES_ROOT\\.txt", machine[0], machine[1], machine[2]}};
  std::string theme = TempFile("Sunset.vxtheme");
};

// "/a" under Windows 10: icons and names per user, the machine's class keys untouched, seventeen pointers
// and the scheme named after the theme.
TEST_F(PerUserProgram, AThemeAppliedUnderWindows10WritesPerUser) {
  DeleteFileA(theme.c_str());
  const std::pair<const char*, std::string> icons[] = {
      {"My Computer", shell + ",5"}, {"Recycle Bin (empty)", shell + ",6"}, {"Recycle Bin (full)", shell + ",7"}};
  for (const auto& [key, value] : icons) WritePrivateProfileStringA("Desktop Icons", key, value.c_str(), theme.c_str());
  WritePrivateProfileStringA("System Icons", "Text Document", (shell + ",8").c_str(), theme.c_str());
  WritePrivateProfileStringA("Folder Icons", "Closed Folder", (shell + ",9").c_str(), theme.c_str());
  for (int i = 0; i < 17; ++i)
    WritePrivateProfileStringA("Pointers", kPointers[i], ("C:\\vxtest\\" + std::to_string(i) + ".cur,0").c_str(),
                               theme.c_str());
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, theme.c_str());
  const std::vector<std::string> before = vxtest::KeysNow(machine);

  modRegistry::SaveString(kAppDefaults, "Version", "win10");
  DWORD code = 99;
  EXPECT_TRUE(vxtest::RealProgram("/a \"" + theme + "\"").Ended(60000, &code));
  EXPECT_EQ(code, 0u);

  EXPECT_EQ(vxtest::KeysNow(machine), before);  // no machine-wide write for a per-user row
  EXPECT_EQ(modRegistry::GetString(kExplorer + kComputer + "\\DefaultIcon", ""), shell + ",5");
  EXPECT_EQ(modRegistry::GetString(kExplorer + kBin + "\\DefaultIcon", "Empty"), shell + ",6");
  EXPECT_EQ(modRegistry::GetString(kExplorer + kBin + "\\DefaultIcon", "Full"), shell + ",7");
  EXPECT_EQ(modRegistry::GetString("HKEY_CURRENT_USER\\Software\\Classes\\vxtestfile\\DefaultIcon", ""), shell + ",8");
  // Wine runs every program as an administrator, so the machine-wide row is written too.
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), shell + ",9");
  std::string scheme;
  for (int i = 0; i < 17; ++i) {
    const std::string file = "C:\\vxtest\\" + std::to_string(i) + ".cur";
    EXPECT_EQ(modRegistry::GetString(vx::kCursorsKey, kRoles[i]), file) << kRoles[i];
    scheme += (i ? "," : "") + file;
  }
  EXPECT_EQ(modRegistry::GetString(vx::kCursorsKey, ""), "Sunset");
  EXPECT_EQ(modRegistry::GetDword(vx::kCursorsKey, "Scheme Source"), 1);
  DWORD type = 0;
  std::string bytes;  // longer than the program's own reads take
  EXPECT_TRUE(vxtest::ReadRaw(std::string(vx::kCursorsKey) + "\\Schemes", "Sunset", type, bytes));
  EXPECT_EQ(bytes, scheme + std::string(1, '\0'));
}

// Without administrator rights the machine-wide edit waits: saved as a theme, the program asked to start
// elevated with it, and the second window opens it pending.
TEST_F(PerUserProgram, ContinueAsAdministratorCarriesTheMachineWideEditsOver) {
  vx::Environment user = vx::DetectEnvironment();
  vx::SetNtVersion(user, 0x0A00, false);
  const std::string folder = modRegistry::GetString(vx::kShellIconsKey, "3");
  for (int answer : {0, 1}) {
    SCOPED_TRACE(answer ? "continue" : "not now");
    seam.elevated.clear();
    auto m = Open("", user);
    m->Lists()[vx::kTabFolders]->Change("Closed Folder", shell + ",9", -1);
    m->Lists()[vx::kTabDesktop]->Change("My Computer", shell + ",4", -1);
    m->EnableApply();
    seam.promptAnswers.push_back({answer, false});
    m->cmdApply_Click();
    ui::DoEvents();
    EXPECT_EQ(modRegistry::GetString(kExplorer + kComputer + "\\DefaultIcon", ""), shell + ",4");
    EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), folder);
    ASSERT_FALSE(seam.prompts.empty());
    EXPECT_NE(seam.prompts.back().message.find("Closed Folder"), std::string::npos);
    if (!answer) {
      EXPECT_TRUE(seam.elevated.empty());
      EXPECT_TRUE(IsWindowEnabled(GetDlgItem(m->hwnd(), IDC_APPLY)));  // still pending here
      seam.promptAnswers.push_back({1, false});  // close without applying
      Close(*m);
      continue;
    }
    const std::string pending = vx::Main::PendingThemePath();
    EXPECT_EQ(seam.elevated, std::vector<std::string>{user.exePath + " \"" + pending + "\""});
    EXPECT_EQ(m->hwnd(), nullptr);  // this window made way for the elevated one
    char value[MAX_PATH] = {};
    GetPrivateProfileStringA("Folder Icons", "Closed Folder", "", value, MAX_PATH, pending.c_str());
    EXPECT_NE(std::string(value).find("shell32.dll,9"), std::string::npos);
    EXPECT_EQ(GetPrivateProfileStringA("Desktop Icons", "My Computer", "", value, MAX_PATH, pending.c_str()), 0u);

    vx::Environment admin = user;
    admin.administrator = true;
    auto elevated = Open("\"" + pending + "\"", admin);
    EXPECT_EQ(elevated->Lists()[vx::kTabFolders]->ItemFullPath("Closed Folder"), shell + ",9");
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(elevated->hwnd(), IDC_APPLY)));
    EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), folder);  // nothing before Apply
    seam.promptAnswers.push_back({1, false});
    Close(*elevated);
    DeleteFileA(pending.c_str());
  }
}

// A quiet "/a" without administrator rights writes what it may and says what it left: in the log and
// by its exit code.
TEST_F(PerUserProgram, AQuietRunNamesWhatNeedsAnAdministrator) {
  vx::Environment user = vx::DetectEnvironment();
  vx::SetNtVersion(user, 0x0A00, false);
  DeleteFileA(theme.c_str());
  WritePrivateProfileStringA("Folder Icons", "Closed Folder", (shell + ",9").c_str(), theme.c_str());
  WritePrivateProfileStringA("Desktop Icons", "My Computer", (shell + ",4").c_str(), theme.c_str());
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, theme.c_str());
  const std::string folder = modRegistry::GetString(vx::kShellIconsKey, "3"), log = TempFile("vx peruser.log");
  DeleteFileA(log.c_str());
  {
    vx::QuietRun run(log);
    vx::Main m;
    m.SetQuietRun(&run);
    ASSERT_TRUE(m.Create(user, "/a \"" + theme + "\"", false));
    ui::DoEvents();
    EXPECT_EQ(m.exitCode(), vx::kExitWriteFailed);
  }
  EXPECT_EQ(modRegistry::GetString(kExplorer + kComputer + "\\DefaultIcon", ""), shell + ",4");
  EXPECT_EQ(modRegistry::GetString(vx::kShellIconsKey, "3"), folder);
  char text[4096] = {};
  HANDLE f = CreateFileA(log.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  DWORD n = 0;
  ReadFile(f, text, sizeof text - 1, &n, nullptr);
  CloseHandle(f);
  EXPECT_NE(std::string(text, n).find("not written: Closed Folder"), std::string::npos) << text;
  DeleteFileA(log.c_str());
}

}  // namespace
