#include "icons/Refresh.h"

#include <cstdlib>

#include "registry/modRegistry.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"

namespace vx {
namespace {

constexpr const char* kShellIconSize = "Shell Icon Size";
constexpr int kStandardIconSize = 32;
constexpr int kRestartYes = 1;  // RestartNow's buttons: slot 0 "No", slot 1 "Yes"

}  // namespace

Plan BuildRebuildPlan(const std::string& storedSize) {
  // The integer value of the text, as far as it reads as one (a stray unit or blank is ignored).
  const int size = storedSize.empty() || storedSize == modRegistry::kError
                       ? kStandardIconSize
                       : std::atoi(storedSize.c_str());
  return {
      SetString(kWindowMetricsKey, kShellIconSize, std::to_string(size + 1)),
      Broadcast(SPI_SETICONMETRICS, 0),
      SetString(kWindowMetricsKey, kShellIconSize, std::to_string(size)),
      Broadcast(SPI_SETICONMETRICS, 0),
  };
}

void RebuildIconCache(const Environment& env, bool& rebuildCachePending,
                      const std::function<void()>& refreshFolderTree) {
  Run(BuildRebuildPlan(modRegistry::GetString(kWindowMetricsKey, kShellIconSize)));
  if (refreshFolderTree) refreshFolderTree();
  ShowRebuildNotice(env, rebuildCachePending);
}

void ShowRebuildNotice(const Environment& env, bool& rebuildCachePending) {
  // RebuildNotice itself honours and records "Dialog Rebuild".
  modMsgbox::RebuildNotice(env.editionName);
  rebuildCachePending = false;
}

bool PromptRestart(const Environment& env, bool& restartNeeded) {
  const bool yes = modMsgbox::RestartNow() == kRestartYes;
  restartNeeded = false;
  if (yes) ui::GetSeam().RestartWindows(env.IsNT());
  return !yes;
}

}  // namespace vx
