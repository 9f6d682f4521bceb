// Path macros and single theme values: what reaches the file, what comes back, and which locations a
// theme may never name.
#include <gtest/gtest.h>

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

TEST(Macros, NetworkAndDeviceLocations) {
  const struct { const char* location; bool refused; } cases[] = {
      {"\\\\host\\share\\x.ico,0", true},   {"//host/share/x.ico,0", true},  {"\\/host\\x.ico", true},
      {"\\\\?\\C:\\x.ico,0", true},         {"\\\\.\\pipe\\x", true},        {"\\??\\UNC\\host\\s\\x.ico", true},
      {"  \\\\host\\share\\x.ico", true},   {"http://host/x.ico,0", true},  {"HTTPS:host", true},
      {"file:///C:/x.ico,0", true},         {"ftp:x", true},                 {"C:\\x.ico,0", false},
      {"c:x.ico", false},                   {"x.ico,0", false},              {"\\Windows\\x.ico,0", false},
      {"..\\x.ico,0", false},               {"", false},                     {"1:x", false},
      {"\x92\xD4:x", true},                 {"x.ico:stream,0", true},        {"C:\\a:b", false},
  };
  for (const auto& c : cases) EXPECT_EQ(vx::IsNetworkOrDevice(c.location), c.refused) << c.location;
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
