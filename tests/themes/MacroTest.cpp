// Path macros and single theme values: what reaches the file, what comes back, and which locations a
// theme may never name.
#include <gtest/gtest.h>

#include "system/Location.h"
#include "themes/ThemeFile.h"
#include "themes/ThemeFixtures.h"

namespace {

const vx::ThemeFolders kFolders{"C:\\WINDOWS\\SYSTEM", "C:\\WINDOWS", "D:\\Themes", "C:\\Program Files\\Vexillor"};

TEST(Macros, WrittenFormFollowsTheRulesInOrder) {
  const struct { const char* location; const char* written; } cases[] = {
      // The system folder is tested first, so it is never "%WinDir%SYSTEM\...".
      {"C:\\WINDOWS\\SYSTEM\\shell32.dll,3", "%WinSysDir%shell32.dll,3"},
      {"C:\\WINDOWS\\explorer.exe,0", "%WinDir%explorer.exe,0"},
      {"C:\\WINDOWS\\Cursors\\arrow.cur,0", "%WinDir%Cursors\\arrow.cur,0"},
      // Exact comparisons: a folder differing only in case is written whole.
      {"c:\\windows\\system\\shell32.dll,3", "c:\\windows\\system\\shell32.dll,3"},
      // A plain prefix test: a sibling folder loses the character after the folder's name.
      {"C:\\WINDOWS2\\x.ico,0", "%WinDir%\\x.ico,0"},
      {"C:\\WINDOWS\\SYSTEM32\\x.dll,1", "%WinSysDir%2\\x.dll,1"},
      // The theme's folder only for files directly in it.
      {"D:\\Themes\\blue.ico,2", "%ThemeDir%blue.ico,2"},
      {"D:\\Themes\\Sub\\blue.ico,2", "D:\\Themes\\Sub\\blue.ico,2"},
      {"D:\\ThemesX\\blue.ico,2", "D:\\ThemesX\\blue.ico,2"},
      {"C:\\Program Files\\Vexillor\\extra.dll,4", "%AppDir%extra.dll,4"},
      {"E:\\Icons\\x.ico,1", "E:\\Icons\\x.ico,1"},
      {"C:\\WINDOWS", "%WinDir%"},
  };
  for (const auto& c : cases) EXPECT_EQ(vx::MacroForm(c.location, kFolders), c.written) << c.location;

  // The theme's own folder is tested before the program's.
  vx::ThemeFolders inAppFolder = kFolders;
  inAppFolder.theme = inAppFolder.app;
  EXPECT_EQ(vx::MacroForm("C:\\Program Files\\Vexillor\\x.ico,0", inAppFolder), "%ThemeDir%x.ico,0");
  // A folder the environment does not know matches nothing.
  EXPECT_EQ(vx::MacroForm("C:\\x.ico,0", vx::ThemeFolders{}), "C:\\x.ico,0");
}

TEST(Macros, ReadInAnyCaseWithOrWithoutABackslash) {
  const struct { const char* value; const char* read; } cases[] = {
      {"%WinSysDir%shell32.dll,3", "C:\\WINDOWS\\SYSTEM\\shell32.dll,3"},
      {"%WINDIR%explorer.exe,0", "C:\\WINDOWS\\explorer.exe,0"},
      {"%windir%\\Cursors\\arrow.cur", "C:\\WINDOWS\\Cursors\\arrow.cur"},
      {"%ThEmEdIr%blue.ico,2", "D:\\Themes\\blue.ico,2"},
      {"%themedir%\\Dangerous Creatures arrow.cur", "D:\\Themes\\Dangerous Creatures arrow.cur"},
      {"%AppDir%extra.dll,4", "C:\\Program Files\\Vexillor\\extra.dll,4"},
      {"%WinDir%", "C:\\WINDOWS\\"},
      {"%WinDirX%a.ico", "%WinDirX%a.ico"},
      {"x%WinDir%a.ico", "x%WinDir%a.ico"},
      {"E:\\x.ico,1", "E:\\x.ico,1"},
      {"", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(vx::ExpandMacros(c.value, kFolders), c.read) << c.value;
}

// What may reach the system: judged after the quotes the shell strips and the variables it expands.
TEST(Location, SharesDevicesAddressesAndStreamsAreRefused) {
  using R = vx::LocationRisk;
  SetEnvironmentVariableA("VX_SHARE", "\\\\host\\home");
  SetEnvironmentVariableA("VX_LOCAL", "C:\\Icons");
  SetEnvironmentVariableA("VX_UNSET", nullptr);
  const struct { const char* location; R risk; } cases[] = {
      {"\\\\host\\share\\x.ico,0", R::Share},     {"//host/share/x.ico,0", R::Share},   {"\\/host\\x.ico", R::Share},
      {"\"\\\\host\\share\\x.ico\",0", R::Share}, {"\"\\\\host\"\\s\\x.ico", R::Share}, {"  \\\\host\\s\\x.ico", R::Share},
      {"%VX_SHARE%\\x.ico,0", R::Share},          {"%vx_share%x.ico", R::Share},        {"%VX_UNSET%\\x.ico", R::UnsetVariable},
      {"C:\\a\\%VX_UNSET%.ico", R::UnsetVariable}, {"%VX_LOCAL%\\x.ico,2", R::None},    {"100%.ico,0", R::None},
      {"%SystemRoot%\\system32\\shell32.dll,3", R::None},
      {"\\\\?\\C:\\x.ico,0", R::RawPath},         {"\\\\.\\pipe\\x", R::RawPath},      {"\\??\\C:\\x.ico", R::RawPath},
      {"//?/C:/x.ico", R::RawPath},
      {"http://host/x.ico,0", R::Address},        {"HTTPS:host", R::Address},          {"file:///C:/x.ico,0", R::Address},
      {"\"shell:x\",0", R::Address},
      {"x.ico:stream,0", R::Address},              {"C:\\a:b", R::Stream},              {"1:x", R::Stream},
      {"C:\\x.ico::$DATA,0", R::Stream}, {"C:\\x.ico:s,0", R::Stream},
      {"COM1", R::DeviceName},                    {"nul,0", R::DeviceName},            {"CONIN$", R::DeviceName},
      {"C:\\x\\LPT1.ico,0", R::DeviceName},       {"C:\\con\\x.ico", R::DeviceName},   {"C:\\x\\Aux .a.b,3", R::DeviceName},
      {"C:\\x\\clock$", R::DeviceName},           {"prn.cur", R::DeviceName},
      {"C:\\x.ico,0", R::None},                   {"c:x.ico", R::None},                {"x.ico,0", R::None},
      {"\\Windows\\x.ico,0", R::None},            {"..\\x.ico,0", R::None},            {"", R::None},
      {"C:\\x\\COM10.ico", R::None},              {"C:\\x\\console.ico", R::None},     {"C:\\nul-not\\x.ico", R::None},
  };
  for (const auto& c : cases) EXPECT_EQ(vx::CheckLocation(c.location), c.risk) << c.location;
  // Every refusal has words for the report.
  for (const auto& c : cases) {
    EXPECT_EQ(std::string(vx::RiskText(c.risk)).empty(), c.risk == R::None) << c.location;
  }
}

TEST(Location, TheProgramsOwnFileIsKnownByItsFullPath) {
  const struct { const char* a; const char* b; bool same; } cases[] = {
      {"C:\\Vx\\vexillor.exe", "c:\\vx\\VEXILLOR.EXE", true}, {"C:\\Vx\\.\\vexillor.exe", "C:\\Vx\\vexillor.exe", true},
      {"C:\\Vx\\sub\\..\\vexillor.exe", "C:\\Vx\\vexillor.exe", true}, {"C:/Vx/vexillor.exe", "C:\\Vx\\vexillor.exe", true},
      {"C:\\Vx\\vexillor.exe.ico", "C:\\Vx\\vexillor.exe", false}, {"", "C:\\Vx\\vexillor.exe", false},
  };
  for (const auto& c : cases) EXPECT_EQ(vx::SameFile(c.a, c.b), c.same) << c.a;
}

// Around icon drawing a missing disk raises no box; the mode before comes back afterwards.
TEST(Location, DriveErrorsAreQuietForTheScopeOnly) {
  const UINT before = SetErrorMode(SEM_NOALIGNMENTFAULTEXCEPT);
  UINT inside = 0;
  {
    vx::QuietDriveErrors quiet;
    inside = SetErrorMode(0);
    SetErrorMode(inside);
  }
  EXPECT_EQ(inside, static_cast<UINT>(SEM_NOALIGNMENTFAULTEXCEPT | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX));
  EXPECT_EQ(SetErrorMode(before), static_cast<UINT>(SEM_NOALIGNMENTFAULTEXCEPT));
}

TEST(ThemeEntry, WriteAndReadThroughTheProfileCalls) {
  vxtest::ScratchFolder folder("vxmacros");
  const std::string file = folder.File("t.vxtheme");
  vx::Environment env = vx::MakeEnvironment("Win98", "C:\\WINDOWS", "C:\\WINDOWS\\SYSTEM", "Error", false,
                                            "C:\\Program Files\\Vexillor\\vexillor.exe");
  auto raw = [&](const char* key) {
    char b[300] = {};
    GetPrivateProfileStringA("S", key, "(absent)", b, sizeof b, file.c_str());
    return std::string(b);
  };
  EXPECT_TRUE(vx::WriteThemeEntry("S", "Sys", "C:\\WINDOWS\\SYSTEM\\shell32.dll,3", file, env));
  EXPECT_TRUE(vx::WriteThemeEntry("S", "Own", folder.File("own.ico,5"), file, env));
  EXPECT_EQ(raw("Sys"), "%WinSysDir%shell32.dll,3");
  EXPECT_EQ(raw("Own"), "%ThemeDir%own.ico,5");
  EXPECT_EQ(vx::ReadThemeEntry("S", "Sys", file, env), "C:\\WINDOWS\\SYSTEM\\shell32.dll,3");
  EXPECT_EQ(vx::ReadThemeEntry("s", "OWN", file, env), folder.File("own.ico,5"));

  // Nothing is written for an empty location or the program's own pointers, and what was there stays.
  EXPECT_FALSE(vx::WriteThemeEntry("S", "Empty", "", file, env));
  EXPECT_FALSE(vx::WriteThemeEntry("S", "Sys", "C:\\PROGRAM FILES\\VEXILLOR\\VEXILLOR.EXE,3", file, env));
  EXPECT_EQ(raw("Empty"), "(absent)");
  EXPECT_EQ(raw("Sys"), "%WinSysDir%shell32.dll,3");
  EXPECT_EQ(vx::ReadThemeEntry("S", "Empty", file, env), "");
  EXPECT_EQ(vx::ReadThemeEntry("Nowhere", "Sys", file, env), "");
  EXPECT_EQ(vx::ReadThemeEntry("S", "Sys", folder.File("missing.vxtheme"), env), "");

  // The read is 127 characters wide: a longer value comes back cut to 126.
  const std::string longValue = "E:\\" + std::string(200, 'a') + ".ico,1";
  WritePrivateProfileStringA("S", "Long", longValue.c_str(), file.c_str());
  EXPECT_EQ(vx::ReadThemeEntry("S", "Long", file, env), longValue.substr(0, 126));
  WritePrivateProfileStringA("S", "Macro", ("%WinDir%" + std::string(150, 'b')).c_str(), file.c_str());
  EXPECT_EQ(vx::ReadThemeEntry("S", "Macro", file, env), "C:\\WINDOWS\\" + std::string(118, 'b'));
}

}  // namespace
