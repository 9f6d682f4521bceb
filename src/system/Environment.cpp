#include "system/Environment.h"

#include <windows.h>

#include "registry/modRegistry.h"
#include "system/Keys.h"
#include "system/LaterWindows.h"

namespace vx {
namespace {

constexpr const char* kIeKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer";
constexpr const char* kStartMenuOrderKey =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder\\Start Menu\\Menu";

std::string Folder(UINT(WINAPI* get)(LPSTR, UINT)) {
  char buf[260];
  UINT n = get(buf, sizeof buf);
  if (n >= sizeof buf) n = 0;
  std::string s(buf, n);
  if (!s.empty() && s.back() == '\\') s.pop_back();
  return s;
}

bool StartsWith(const std::string& s, const char* prefix) { return s.rfind(prefix, 0) == 0; }

}  // namespace

std::string EditionCode(unsigned platformId, unsigned minorVersion) {
  if (platformId == VER_PLATFORM_WIN32_NT) return "WinNT";
  return minorVersion < 10 ? "Win95" : "Win98";
}

Environment MakeEnvironment(const std::string& editionCode, const std::string& windowsFolder,
                            const std::string& systemFolder, const std::string& ieVersion,
                            bool startMenuOrderReadable, const std::string& exePath) {
  Environment e;
  e.editionCode = editionCode;
  e.editionName = editionCode == "WinNT" ? "Windows NT" : editionCode == "Win98" ? "Windows 98" : "Windows 95";
  e.windowsFolder = windowsFolder;
  e.systemFolder = systemFolder;
  e.ieVersion = ieVersion;
  e.exePath = exePath;
  const bool ie471 = StartsWith(ieVersion, "4.71");
  const bool ie472 = StartsWith(ieVersion, "4.72");
  e.desktopUpdate = (ie471 || ie472) && startMenuOrderReadable;
  const bool nt = e.IsNT(), w98 = e.IsWin98();

  // Windows 98 keeps per-user copies of four desktop classes.
  const std::string machine = kMachineClsid;
  const std::string perUser = w98 ? kUserClsid : machine;
  e.myComputerKey = perUser + clsid::kMyComputer;
  e.myDocumentsKey = perUser + clsid::kMyDocuments;
  e.networkNeighborhoodKey = perUser + clsid::kNetworkNeighborhood;
  e.recycleBinKey = perUser + clsid::kRecycleBin;
  e.internetKey = machine + (e.desktopUpdate ? clsid::kInternetDesktopUpdate : clsid::kInternet);
  e.dialUpKey = machine + (nt ? clsid::kDialUpNT : clsid::kDialUp);
  e.mailKey = machine + clsid::kInBox;

  e.soundRecorder = (nt ? systemFolder : windowsFolder) + "\\sndrec32.exe";
  e.mediaPlayer = nt ? systemFolder + "\\mplay32.exe" : windowsFolder + "\\mplayer.exe";
  e.wordPad = nt ? "C:\\Program Files\\Windows NT\\Accessories\\Wordpad.exe"
                 : "C:\\Program Files\\Accessories\\Wordpad.exe";
  e.paint = nt ? systemFolder + "\\Mspaint.exe" : "C:\\Program Files\\Accessories\\Mspaint.exe";

  if (e.desktopUpdate) {
    e.textDocumentIcon = ie471 ? 63 : 64;
    e.batchFileIcon = ie471 ? 64 : 65;
    e.configSettingsIcon = ie471 ? 62 : 63;
    e.controlPanelIcon = ie471 ? 50 : 51;
    e.printersIcon = ie471 ? 51 : 52;
  }
  if (ie471 || ie472) e.usersProgramGroupIcon = 42;

  if (nt) {
    e.dialUpDefaultFile = systemFolder + "\\rasshell.dll";
    e.dialUpDefaultIndex = 0;
    e.mailDefaultFile = "C:\\Program Files\\Windows NT\\Windows Messaging\\exchng32.exe";
    e.mailDefaultIndex = 0;
  } else {
    e.dialUpDefaultFile = systemFolder + "\\shell32.dll";
    e.dialUpDefaultIndex = 33;
    e.mailDefaultFile = systemFolder + (w98 ? "\\cool.dll" : "\\mapi32.dll");
    e.mailDefaultIndex = w98 ? 30 : 3;
  }
  return e;
}

void SetNtVersion(Environment& env, unsigned ntVersion, bool administrator) {
  if (!env.IsNT()) return;
  env.ntVersion = ntVersion;
  env.perUser = ntVersion >= 0x0501;
  if (!env.perUser) return;
  env.editionName = "Windows";
  env.administrator = administrator;
  env.pinAndPerson = ntVersion >= 0x0A00;
}

Environment DetectEnvironment() {
  OSVERSIONINFOA vi{};
  vi.dwOSVersionInfoSize = sizeof vi;  // 148 bytes
  GetVersionExA(&vi);
  const std::string ie = modRegistry::GetString(kIeKey, "Version");
  const bool order = modRegistry::GetBinary(kStartMenuOrderKey, "Order") != modRegistry::kError;
  char exe[MAX_PATH];
  DWORD n = GetModuleFileNameA(nullptr, exe, MAX_PATH);
  Environment env = MakeEnvironment(EditionCode(vi.dwPlatformId, vi.dwMinorVersion), Folder(GetWindowsDirectoryA),
                                    Folder(GetSystemDirectoryA), ie, order, std::string(exe, n));
  const unsigned nt =
      vi.dwPlatformId == VER_PLATFORM_WIN32_NT ? later::NtVersion(vi.dwMajorVersion * 256 + vi.dwMinorVersion) : 0;
  SetNtVersion(env, nt, nt >= 0x0501 ? later::IsAdministrator() : true);
  return env;
}

}  // namespace vx
