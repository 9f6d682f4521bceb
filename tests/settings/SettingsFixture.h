#pragma once
// What every settings test puts back: each registry key a settings write can touch (with the Shell
// Folders and the Plus! setup key), the system parameters Apply sets (so no later test runs with swapped
// mouse buttons), and a Start Menu folder of its own in the temporary folder for the cascading menus.
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "registry/modRegistry.h"
#include "settings/Settings.h"
#include "support/KeySnapshot.h"
#include "support/RegistryScope.h"
#include "system/Keys.h"

namespace vxtest {

// The parameters the settings stage sets, read now and set back at the end of the scope.
class ParameterGuard {
 public:
  ParameterGuard() {
    SystemParametersInfoA(SPI_GETBEEP, 0, &beep_, 0);
    SystemParametersInfoA(SPI_GETICONTITLEWRAP, 0, &wrap_, 0);
    SystemParametersInfoA(SPI_GETFONTSMOOTHING, 0, &smoothing_, 0);
    SystemParametersInfoA(SPI_GETDRAGFULLWINDOWS, 0, &fullDrag_, 0);
    animation_.cbSize = sizeof animation_;
    SystemParametersInfoA(SPI_GETANIMATION, sizeof animation_, &animation_, 0);
    SystemParametersInfoA(SPI_GETDESKWALLPAPER, MAX_PATH, wallpaper_, 0);
    swap_ = GetSystemMetrics(SM_SWAPBUTTON);
    clickW_ = GetSystemMetrics(SM_CXDOUBLECLK);
    clickH_ = GetSystemMetrics(SM_CYDOUBLECLK);
    dragW_ = GetSystemMetrics(SM_CXDRAG);
    dragH_ = GetSystemMetrics(SM_CYDRAG);
    time_ = GetDoubleClickTime();
  }
  ~ParameterGuard() {
    SystemParametersInfoA(SPI_SETBEEP, beep_, nullptr, 0);
    SystemParametersInfoA(SPI_SETICONTITLEWRAP, wrap_, nullptr, 0);
    SystemParametersInfoA(SPI_SETFONTSMOOTHING, smoothing_, nullptr, 0);
    SystemParametersInfoA(SPI_SETDRAGFULLWINDOWS, fullDrag_, nullptr, 0);
    SystemParametersInfoA(SPI_SETANIMATION, sizeof animation_, &animation_, 0);
    SystemParametersInfoA(SPI_SETDESKWALLPAPER, 0, wallpaper_, 0);
    SystemParametersInfoA(SPI_SETMOUSEBUTTONSWAP, static_cast<UINT>(swap_), nullptr, 0);
    SystemParametersInfoA(SPI_SETDOUBLECLKWIDTH, static_cast<UINT>(clickW_), nullptr, 0);
    SystemParametersInfoA(SPI_SETDOUBLECLKHEIGHT, static_cast<UINT>(clickH_), nullptr, 0);
    SystemParametersInfoA(SPI_SETDRAGWIDTH, static_cast<UINT>(dragW_), nullptr, 0);
    SystemParametersInfoA(SPI_SETDRAGHEIGHT, static_cast<UINT>(dragH_), nullptr, 0);
    SystemParametersInfoA(SPI_SETDOUBLECLICKTIME, time_, nullptr, 0);
  }
  ParameterGuard(const ParameterGuard&) = delete;
  ParameterGuard& operator=(const ParameterGuard&) = delete;
  int swap() const { return swap_; }

 private:
  BOOL beep_ = TRUE, wrap_ = TRUE, smoothing_ = FALSE, fullDrag_ = FALSE;
  ANIMATIONINFO animation_{};
  char wallpaper_[MAX_PATH + 1] = {};
  int swap_ = 0, clickW_ = 4, clickH_ = 4, dragW_ = 4, dragH_ = 4;
  UINT time_ = 500;
};

// Every settings key as it was, a private Start Menu folder, the system parameters.
class SettingsScope {
 public:
  SettingsScope() : keys_(Keys()), program_({vx::kProgramKey}) {
    char temp[MAX_PATH];
    GetTempPathA(MAX_PATH, temp);
    startMenu_ = std::string(temp) + "vx-start-menu";
    CreateDirectoryA(startMenu_.c_str(), nullptr);
    modRegistry::SaveString(vx::kShellFoldersKey, "Start Menu", startMenu_);
    // The policies key the byte writes need (they report "Error" without it).
    modRegistry::CreateKey(vx::kPoliciesKey);
    modRegistry::SetErrorReporter([this](const std::string& text) { errors.push_back(text); });
  }
  ~SettingsScope() {
    for (const vx::SettingRow& r : vx::SettingsTable())
      if (r.read == vx::ReadAs::Folder) RemoveDirectoryA((startMenu_ + "\\" + r.key).c_str());
    RemoveDirectoryA(startMenu_.c_str());
    modRegistry::SetErrorReporter([](const std::string& text) { MessageBoxA(nullptr, text.c_str(), "Vexillor", MB_OK); });
  }
  SettingsScope(const SettingsScope&) = delete;
  SettingsScope& operator=(const SettingsScope&) = delete;

  static std::vector<std::string> Keys() {
    std::vector<std::string> keys = vx::SettingsKeys();
    keys.push_back(vx::kPlusSetupKey);
    keys.push_back("HKEY_CLASSES_ROOT\\.bmp");
    keys.push_back("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies");
    return keys;
  }
  const std::string& startMenu() const { return startMenu_; }
  std::string Cascade(const std::string& key) const { return startMenu_ + "\\" + key; }

  std::vector<std::string> errors;  // what the registry module reported with its "Error" message

 private:
  ParameterGuard parameters_;
  KeySnapshot keys_;
  RegistryScope program_;
  std::string startMenu_;
};

}  // namespace vxtest
