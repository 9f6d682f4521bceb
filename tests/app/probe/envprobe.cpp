// Writes the environment the program determines at start-up to the profile file named on its command
// line (section "environment"), so a test can run it under each emulated Windows edition.
#include <windows.h>

#include <cstdio>
#include <string>
#include <utility>

#include "system/Environment.h"

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const vx::Environment e = vx::DetectEnvironment();
  auto hex = [](const std::string& bytes) {
    std::string out;
    char b[4];
    for (unsigned char c : bytes) { std::snprintf(b, sizeof b, "%02X", c); out += b; }
    return out;
  };
  auto n = [](int i) { return std::to_string(i); };
  const std::pair<const char*, std::string> values[] = {
      {"editionCode", e.editionCode}, {"editionName", e.editionName},
      {"windowsFolder", e.windowsFolder}, {"systemFolder", e.systemFolder},
      {"binaryZero", hex(e.binaryZero)}, {"binaryOne", hex(e.binaryOne)},
      {"ieVersion", e.ieVersion}, {"desktopUpdate", e.desktopUpdate ? "1" : "0"},
      {"myComputerKey", e.myComputerKey}, {"myDocumentsKey", e.myDocumentsKey},
      {"networkNeighborhoodKey", e.networkNeighborhoodKey}, {"recycleBinKey", e.recycleBinKey},
      {"internetKey", e.internetKey}, {"dialUpKey", e.dialUpKey}, {"mailKey", e.mailKey},
      {"soundRecorder", e.soundRecorder}, {"mediaPlayer", e.mediaPlayer}, {"wordPad", e.wordPad},
      {"paint", e.paint},
      {"icons", n(e.textDocumentIcon) + " " + n(e.batchFileIcon) + " " + n(e.configSettingsIcon) + " " +
                    n(e.usersProgramGroupIcon) + " " + n(e.controlPanelIcon) + " " + n(e.printersIcon)},
      {"dialUpDefault", e.dialUpDefaultFile + "," + n(e.dialUpDefaultIndex)},
      {"mailDefault", e.mailDefaultFile + "," + n(e.mailDefaultIndex)},
      {"ntVersion", n(static_cast<int>(e.ntVersion))}, {"perUser", e.perUser ? "1" : "0"},
      {"pinAndPerson", e.pinAndPerson ? "1" : "0"},
  };
  for (const auto& [name, value] : values) WritePrivateProfileStringA("environment", name, value.c_str(), argv[1]);
  return 0;
}
