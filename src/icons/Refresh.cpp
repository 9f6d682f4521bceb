#include "icons/Refresh.h"

#include <shlobj.h>

#include "registry/modCommon.h"

#include "registry/modRegistry.h"
#include "ui/frmPrompt.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"

namespace vx {
namespace {

// The help index entry of the rebuild notice's "&Help".
constexpr const char* kRebuildHelpKeyword = "Icon Cache";

constexpr const char* kShellIconSize = "Shell Icon Size";
constexpr int kStandardIconSize = 32;

}  // namespace

Plan BuildRebuildPlan(const std::string& storedSize) {
  // The integer value of the text, as far as it reads as one (a stray unit or blank is ignored).
  // A text without a number, or one past any icon size, leaves the standard size.
  const std::optional<int32_t> stored = ParseInt32(storedSize);
  const int size = stored && *stored > 0 && *stored < 1024 ? *stored : kStandardIconSize;
  Plan plan = {
      SetString(kWindowMetricsKey, kShellIconSize, std::to_string(size + 1)),
      Broadcast(SPI_SETICONMETRICS, 0),
      SetString(kWindowMetricsKey, kShellIconSize, std::to_string(size)),
      Broadcast(SPI_SETICONMETRICS, 0),
  };
  for (Step& s : plan) s.label = "icon cache rebuild";
  return plan;
}

void RebuildIconCache(const Environment& env, RunFlags& flags, const std::function<void()>& refreshFolderTree) {
  Run(BuildRebuildPlan(modRegistry::GetString(kWindowMetricsKey, kShellIconSize)));
  // Later shells keep icons per file type as well, and drop them only when told that associations changed.
  if (env.perUser) SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
  if (refreshFolderTree) refreshFolderTree();
  ShowRebuildNotice(env, flags);
}

void ShowRebuildNotice(const Environment& env, RunFlags& flags) {
  // RebuildNotice itself honours and records "Dialog Rebuild"; its "&Help" is ours to open.
  const modMsgbox::RebuildAnswer answer =
      env.perUser ? modMsgbox::RebuildNoticeLater() : modMsgbox::RebuildNotice(env.editionName);
  if (answer == modMsgbox::RebuildAnswer::Help)
    ui::GetSeam().OpenHelp(modMsgbox::Owner(), ui::AppHelpFile(), HELP_PARTIALKEY, kRebuildHelpKeyword);
  flags.rebuildCachePending = false;
}

void PromptRestart(const Environment& env, RunFlags& flags) {
  const bool yes = modMsgbox::RestartNow() == modMsgbox::RestartAnswer::Yes;
  flags.restartNeeded = false;
  if (yes)
    ui::GetSeam().RestartWindows(env.IsNT());
  else
    flags.restartLater = true;
}

}  // namespace vx
