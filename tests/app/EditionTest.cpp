// Edition detection, checked for real: the environment probe runs in a process of its own under each
// Windows edition that Wine can emulate, and every environment value is compared.
#include <gtest/gtest.h>

#include <map>

#include "registry/modRegistry.h"
#include "support/RegistryScope.h"
#include "ui/win.h"

namespace {

std::string Folder(UINT(WINAPI* get)(LPSTR, UINT)) {
  char buf[MAX_PATH];
  UINT n = get(buf, MAX_PATH);
  return std::string(buf, n);
}

std::string ProbePath() {
  std::string self = ui::ModulePath();
  return self.substr(0, self.rfind('\\') + 1) + "envprobe.exe";
}

// Runs a copy of the probe named after the edition under that emulated edition; "" runs the default.
std::map<std::string, std::string> RunProbe(const std::string& edition) {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string name = "envprobe_" + (edition.empty() ? std::string("default") : edition) + ".exe";
  const std::string copy = std::string(temp) + name;
  CopyFileA(ProbePath().c_str(), copy.c_str(), FALSE);
  const std::string appKey = "HKEY_CURRENT_USER\\Software\\Wine\\AppDefaults\\" + name;
  vxtest::DeleteTree(appKey);
  if (!edition.empty()) modRegistry::SaveString(appKey, "Version", edition);

  const std::string out = std::string(temp) + name + ".ini";
  DeleteFileA(out.c_str());
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  std::string cmd = "\"" + copy + "\" \"" + out + "\"";
  if (CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &si, &pi)) {
    WaitForSingleObject(pi.hProcess, 20000);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
  }
  // The section comes back as "name=value" strings, each ended by a NUL.
  std::map<std::string, std::string> values;
  std::string section(32768, '\0');
  section.resize(GetPrivateProfileSectionA("environment", section.data(), 32768, out.c_str()));
  for (size_t start = 0, end; start < section.size(); start = end + 1) {
    end = section.find('\0', start);
    const std::string line = section.substr(start, end - start);
    const auto eq = line.find('=');
    if (eq != std::string::npos) values[line.substr(0, eq)] = line.substr(eq + 1);
  }
  DeleteFileA(out.c_str());
  vxtest::DeleteTree(appKey);
  DeleteFileA(copy.c_str());
  return values;
}

struct Expected {
  const char* wineVersion;
  const char* code;
  const char* name;
};

TEST(Edition, EveryEnvironmentValueUnderEachEmulatedEdition) {
  const std::string win = Folder(GetWindowsDirectoryA), sys = Folder(GetSystemDirectoryA);
  const std::string hkcr = "HKEY_CLASSES_ROOT\\CLSID\\", hkcu = "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\";
  const Expected editions[] = {
      {"win95", "Win95", "Windows 95"},
      {"win98", "Win98", "Windows 98"},
      {"nt40", "WinNT", "Windows NT"},
      {"", "WinNT", "Windows NT"},  // Wine's default is a current Windows: the NT platform
  };
  for (const auto& ed : editions) {
    SCOPED_TRACE(ed.wineVersion[0] ? ed.wineVersion : "default");
    auto v = RunProbe(ed.wineVersion);
    ASSERT_FALSE(v.empty()) << "the probe did not run";
    const bool nt = std::string(ed.code) == "WinNT", w98 = std::string(ed.code) == "Win98";
    const std::string perUser = w98 ? hkcu : hkcr;
    EXPECT_EQ(v["editionCode"], ed.code);
    EXPECT_EQ(v["editionName"], ed.name);
    EXPECT_EQ(v["windowsFolder"], win);
    EXPECT_EQ(v["systemFolder"], sys);
    EXPECT_NE(v["windowsFolder"].back(), '\\');
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
    EXPECT_EQ(v["mailDefault"], nt ? "C:\\Program Files\\Windows NT\\Windows Messaging\\exchng32.exe,0"
                                   : sys + (w98 ? "\\cool.dll,30" : "\\mapi32.dll,3"));
  }
}

// The shell version decides the desktop update and six icon numbers; the Start menu order value must
// be readable as well, except for the Users Program Group number.
TEST(Edition, DesktopUpdateFollowsTheShellVersionAndStartMenuOrder) {
  const std::string ieKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer";
  const std::string orderKey =
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder\\Start Menu\\Menu";
  DWORD type = 0;
  std::string oldVersion;
  const bool hadVersion = vxtest::ReadRaw(ieKey, "Version", type, oldVersion);
  vxtest::RegistryScope orderScope({"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder"});

  struct Case {
    const char* version;
    bool order;
    const char* update;
    const char* icons;
    const char* internetClass;
  } cases[] = {
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
    auto v = RunProbe("win98");
    EXPECT_EQ(v["desktopUpdate"], c.update);
    EXPECT_EQ(v["icons"], c.icons);
    EXPECT_EQ(v["internetKey"], std::string("HKEY_CLASSES_ROOT\\CLSID\\") + c.internetClass);
  }
  if (hadVersion)
    vxtest::WriteRaw(ieKey, "Version", type, oldVersion);
  else
    modRegistry::DeleteValue(ieKey, "Version");
}

}  // namespace
