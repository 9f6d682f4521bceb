// Edition detection for real: the environment probe runs under each edition Wine can emulate.
#include <gtest/gtest.h>

#include <map>

#include "registry/LaterApi.h"
#include "registry/modRegistry.h"
#include "support/KeySnapshot.h"
#include "support/RealProgram.h"
#include "support/RegistryScope.h"

namespace {

std::string Folder(UINT(WINAPI* get)(LPSTR, UINT)) {
  char buf[MAX_PATH];
  UINT n = get(buf, MAX_PATH);
  return std::string(buf, n);
}

TEST(Edition, EveryEnvironmentValueUnderEachEmulatedEdition) {
  const std::string win = Folder(GetWindowsDirectoryA), sys = Folder(GetSystemDirectoryA);
  const std::string hkcr = "HKEY_CLASSES_ROOT\\CLSID\\", hkcu = "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\";
  const struct { const char *wineVersion, *code, *name; } editions[] = {
      {"win95", "Win95", "Windows 95"},
      {"win98", "Win98", "Windows 98"},
      {"nt40", "WinNT", "Windows NT"},
      {"", "WinNT", "Windows NT"},  // the tests' default, Windows 2000: the NT platform before XP
      {"winxp", "WinNT", "Windows"},
      {"win10", "WinNT", "Windows"},
  };
  for (const auto& ed : editions) {
    SCOPED_TRACE(ed.wineVersion[0] ? ed.wineVersion : "default");
    auto v = vxtest::RunProbe("envprobe.exe", ed.wineVersion, "environment");
    ASSERT_FALSE(v.empty()) << "the probe did not run";
    const bool nt = std::string(ed.code) == "WinNT", w98 = std::string(ed.code) == "Win98";
    const std::string perUser = w98 ? hkcu : hkcr;
    EXPECT_EQ(v["editionCode"], ed.code);
    EXPECT_EQ(v["editionName"], ed.name);
    EXPECT_EQ(v["windowsFolder"], win);
    EXPECT_EQ(v["systemFolder"], sys);
    EXPECT_EQ(v["binaryZero"], "00000000");
    EXPECT_EQ(v["binaryOne"], "01000000");
    EXPECT_EQ(v["desktopUpdate"], "0");
    EXPECT_EQ(v["myComputerKey"], perUser + "{20D04FE0-3AEA-1069-A2D8-08002B30309D}");
    EXPECT_EQ(v["myDocumentsKey"], perUser + "{450D8FBA-AD25-11D0-98A8-0800361B1103}");
    EXPECT_EQ(v["networkNeighborhoodKey"], perUser + "{208D2C60-3AEA-1069-A2D7-08002B30309D}");
    EXPECT_EQ(v["recycleBinKey"], perUser + "{645FF040-5081-101B-9F08-00AA002F954E}");
    EXPECT_EQ(v["internetKey"], hkcr + "{FBF23B42-E3F0-101B-8488-00AA003E56F8}");
    EXPECT_EQ(v["dialUpKey"], hkcr + (nt ? "{a4d92740-67cd-11cf-96f2-00aa00a11dd9}" : "{992CFFA0-F557-101A-88EC-00DD010CCC48}"));
    EXPECT_EQ(v["mailKey"], hkcr + "{00020D75-0000-0000-C000-000000000046}");
    EXPECT_EQ(v["soundRecorder"], (nt ? sys : win) + "\\sndrec32.exe");
    EXPECT_EQ(v["mediaPlayer"], nt ? sys + "\\mplay32.exe" : win + "\\mplayer.exe");
    EXPECT_EQ(v["wordPad"], nt ? "C:\\Program Files\\Windows NT\\Accessories\\Wordpad.exe"
                               : "C:\\Program Files\\Accessories\\Wordpad.exe");
    EXPECT_EQ(v["paint"], nt ? sys + "\\Mspaint.exe" : "C:\\Program Files\\Accessories\\Mspaint.exe");
    EXPECT_EQ(v["icons"], "59 60 58 73 46 47");
    EXPECT_EQ(v["dialUpDefault"], nt ? sys + "\\rasshell.dll,0" : sys + "\\shell32.dll,33");
    // The per-user family from XP on; Windows 10's two pointers (told by ntdll, whatever the manifest says).
    const std::string wine = ed.wineVersion;
    EXPECT_EQ(v["perUser"], wine == "winxp" || wine == "win10" ? "1" : "0");
    EXPECT_EQ(v["pinAndPerson"], wine == "win10" ? "1" : "0");
    EXPECT_EQ(v["mailDefault"], nt ? "C:\\Program Files\\Windows NT\\Windows Messaging\\exchng32.exe,0"
                                   : sys + (w98 ? "\\cool.dll,30" : "\\mapi32.dll,3"));
  }
}

// The shell version and a readable Start menu order decide the desktop update and six icon numbers.
TEST(Edition, DesktopUpdateFollowsTheShellVersionAndStartMenuOrder) {
  // Windows 95, 98 and NT 4 never ran under WOW64: emulated in a 64-bit prefix they would read the
  // 32-bit registry view. They are checked in the 32-bit prefix.
  if (later::IsWow64()) GTEST_SKIP() << "the old editions are tested in a 32-bit prefix";
  const std::string ieKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer";
  const std::string orderKey =
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder\\Start Menu\\Menu";
  vxtest::KeySnapshot saved({ieKey, "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder"});
  const struct { const char* version; bool order; const char *update, *icons, *internetClass; } cases[] = {
      {"4.71.1712.6", true, "1", "63 64 62 42 50 51", "{871C5380-42A0-1069-A2EA-08002B30309D}"},
      {"4.72.3110.0", true, "1", "64 65 63 42 51 52", "{871C5380-42A0-1069-A2EA-08002B30309D}"},
      {"4.72.3110.0", false, "0", "59 60 58 42 46 47", "{FBF23B42-E3F0-101B-8488-00AA003E56F8}"},
      {"4.70.1155", true, "0", "59 60 58 73 46 47", "{FBF23B42-E3F0-101B-8488-00AA003E56F8}"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.version) + (c.order ? " with order" : " without order"));
    modRegistry::SaveString(ieKey, "Version", c.version);
    vxtest::DeleteTree(orderKey);
    if (c.order) vxtest::WriteRaw(orderKey, "Order", REG_BINARY, std::string("\x08\0\0\0", 4));
    auto v = vxtest::RunProbe("envprobe.exe", "win98", "environment");
    EXPECT_EQ(v["desktopUpdate"], c.update);
    EXPECT_EQ(v["icons"], c.icons);
    EXPECT_EQ(v["internetKey"], std::string("HKEY_CLASSES_ROOT\\CLSID\\") + c.internetClass);
  }
}

}  // namespace
