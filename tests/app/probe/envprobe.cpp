// Writes the environment the program determines at start-up to the profile file named on its command
// line (section "environment"), so a test can run it under each emulated Windows edition in a process
// of its own.
#include <windows.h>

#include <cstdio>
#include <string>

#include "system/Environment.h"

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const vx::Environment e = vx::DetectEnvironment();
  auto line = [&](const char* name, const std::string& value) {
    WritePrivateProfileStringA("environment", name, value.c_str(), argv[1]);
  };
  auto hex = [](const std::string& bytes) {
    std::string out;
    char b[4];
    for (unsigned char c : bytes) {
      std::snprintf(b, sizeof b, "%02X", c);
      out += b;
    }
    return out;
  };
  line("editionCode", e.editionCode);
  line("editionName", e.editionName);
  line("windowsFolder", e.windowsFolder);
  line("systemFolder", e.systemFolder);
  line("binaryZero", hex(e.binaryZero));
  line("binaryOne", hex(e.binaryOne));
  line("ieVersion", e.ieVersion);
  line("desktopUpdate", e.desktopUpdate ? "1" : "0");
  line("myComputerKey", e.myComputerKey);
  line("myDocumentsKey", e.myDocumentsKey);
  line("networkNeighborhoodKey", e.networkNeighborhoodKey);
  line("recycleBinKey", e.recycleBinKey);
  line("internetKey", e.internetKey);
  line("dialUpKey", e.dialUpKey);
  line("mailKey", e.mailKey);
  line("soundRecorder", e.soundRecorder);
  line("mediaPlayer", e.mediaPlayer);
  line("wordPad", e.wordPad);
  line("paint", e.paint);
  line("icons", std::to_string(e.textDocumentIcon) + " " + std::to_string(e.batchFileIcon) + " " +
                    std::to_string(e.configSettingsIcon) + " " + std::to_string(e.usersProgramGroupIcon) + " " +
                    std::to_string(e.controlPanelIcon) + " " + std::to_string(e.printersIcon));
  line("dialUpDefault", e.dialUpDefaultFile + "," + std::to_string(e.dialUpDefaultIndex));
  line("mailDefault", e.mailDefaultFile + "," + std::to_string(e.mailDefaultIndex));
  return 0;
}
