#pragma once
// What every settings test puts back: each key a settings write can touch, the system parameters Apply
// sets (so no later test runs with swapped mouse buttons), and a private Start Menu folder.
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
    for (Flag& f : flags_) SystemParametersInfoA(f.get, 0, &f.value, 0);
    animation_.cbSize = sizeof animation_;
    SystemParametersInfoA(SPI_GETANIMATION, sizeof animation_, &animation_, 0);
    SystemParametersInfoA(SPI_GETDESKWALLPAPER, MAX_PATH, wallpaper_, 0);
    for (Metric& m : metrics_) m.value = m.metric < 0 ? static_cast<int>(GetDoubleClickTime()) : GetSystemMetrics(m.metric);
  }
  ~ParameterGuard() {
    for (const Flag& f : flags_) SystemParametersInfoA(f.set, static_cast<UINT>(f.value), nullptr, 0);
    SystemParametersInfoA(SPI_SETANIMATION, sizeof animation_, &animation_, 0);
    SystemParametersInfoA(SPI_SETDESKWALLPAPER, 0, wallpaper_, 0);
    for (const Metric& m : metrics_) SystemParametersInfoA(m.set, static_cast<UINT>(m.value), nullptr, 0);
  }
  ParameterGuard(const ParameterGuard&) = delete;
  ParameterGuard& operator=(const ParameterGuard&) = delete;

 private:
  struct Flag { UINT get, set; BOOL value; };
  struct Metric { int metric; UINT set; int value; };  // metric -1: the double-click time
  Flag flags_[4] = {{SPI_GETBEEP, SPI_SETBEEP, TRUE}, {SPI_GETICONTITLEWRAP, SPI_SETICONTITLEWRAP, TRUE},
                    {SPI_GETFONTSMOOTHING, SPI_SETFONTSMOOTHING, FALSE},
                    {SPI_GETDRAGFULLWINDOWS, SPI_SETDRAGFULLWINDOWS, FALSE}};
  Metric metrics_[6] = {{SM_SWAPBUTTON, SPI_SETMOUSEBUTTONSWAP, 0}, {SM_CXDOUBLECLK, SPI_SETDOUBLECLKWIDTH, 4},
                        {SM_CYDOUBLECLK, SPI_SETDOUBLECLKHEIGHT, 4}, {SM_CXDRAG, SPI_SETDRAGWIDTH, 4},
                        {SM_CYDRAG, SPI_SETDRAGHEIGHT, 4}, {-1, SPI_SETDOUBLECLICKTIME, 500}};
  ANIMATIONINFO animation_{};
  char wallpaper_[MAX_PATH + 1] = {};
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
