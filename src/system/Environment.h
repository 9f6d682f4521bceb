#pragma once
// Facts about the running system, determined once at start-up and read everywhere after. Tests build
// their own (for example "Windows 95 without the desktop update") to exercise every condition.
#include <string>

namespace vx {

struct Environment {
  std::string editionCode;  // "Win95", "Win98" or "WinNT"
  std::string editionName;  // "Windows 95", "Windows 98" or "Windows NT"
  std::string windowsFolder;  // no trailing backslash
  std::string systemFolder;   // no trailing backslash
  std::string binaryZero = std::string("\0\0\0\0", 4);
  std::string binaryOne = std::string("\1\0\0\0", 4);
  std::string ieVersion;      // "Version" of the Internet Explorer key, or "Error"
  bool desktopUpdate = false; // Internet Explorer 4.71/4.72 with the Start menu order value present

  // Class key paths (without "\DefaultIcon").
  std::string myComputerKey, myDocumentsKey, networkNeighborhoodKey, recycleBinKey, internetKey,
      dialUpKey, mailKey;

  // Default program files.
  std::string soundRecorder, mediaPlayer, wordPad, paint;

  // Shell32 icon numbers that move with the shell version.
  int textDocumentIcon = 59, batchFileIcon = 60, configSettingsIcon = 58, usersProgramGroupIcon = 73,
      controlPanelIcon = 46, printersIcon = 47;

  // Dial-Up Networking and the mail item (In Box): their edition-dependent Windows defaults.
  std::string dialUpDefaultFile, mailDefaultFile;
  int dialUpDefaultIndex = 0, mailDefaultIndex = 0;

  std::string exePath;  // the program's own executable

  // Windows XP and later (NT 5.1 on): Explorer reads per-user copies of the icon and name stores, and
  // most users run without administrator rights, so the program writes per user and only what changed.
  // Off for 95, 98, NT 4 and 2000, whose shells read only the machine-wide stores.
  unsigned ntVersion = 0;     // NT major * 256 + minor (0x0A00 for Windows 10 and 11); 0 off NT
  bool perUser = false;       // the XP family: per-user stores, write only what differs
  bool administrator = true;  // may write the machine-wide stores (always so before XP)
  bool pinAndPerson = false;  // Windows 10's two extra pointer roles, "Pin" and "Person"

  bool IsWin95() const { return editionCode == "Win95"; }
  bool IsWin98() const { return editionCode == "Win98"; }
  bool IsNT() const { return editionCode == "WinNT"; }
};

// Fills every derived value from the edition code, the two folders, the Internet Explorer version
// and the desktop-update flag. Used by DetectEnvironment and by tests that build an environment.
Environment MakeEnvironment(const std::string& editionCode, const std::string& windowsFolder,
                            const std::string& systemFolder, const std::string& ieVersion,
                            bool startMenuOrderReadable, const std::string& exePath);

// Turns on the XP family's values for an NT version (major * 256 + minor); below 5.1 nothing changes.
// The edition name becomes the plain "Windows": these systems call themselves by other names.
void SetNtVersion(Environment& env, unsigned ntVersion, bool administrator);

// The running system's environment (GetVersionExA, the folders, the registry).
Environment DetectEnvironment();

// "Win95", "Win98" or "WinNT" from a platform id and minor version.
std::string EditionCode(unsigned platformId, unsigned minorVersion);

}  // namespace vx
