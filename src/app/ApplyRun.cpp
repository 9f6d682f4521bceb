#include "app/ApplyRun.h"

#include "icons/Refresh.h"

namespace vx {

Plan BuildApplyPlan(const ApplyInput& input, const RunFlags& flags) {
  const bool settings = flags.treeFilled && !flags.autoApplyMode;
  Plan plan;
  if (settings && input.settingsStage) plan = input.settingsStage();
  IconApplyOptions options;
  options.settingsTreeBuilt = flags.treeFilled;
  options.autoApplyMode = flags.autoApplyMode;
  if (settings && input.bitmapThumbnail) options.bitmapThumbnail = input.bitmapThumbnail();
  options.currentThemePath = input.currentThemePath;
  Append(plan, BuildIconApplyPlan(input.env, input.catalogue, input.lists, options));
  return plan;
}

ApplyResult RunApply(const ApplyInput& input, RunFlags& flags) {
  ApplyResult result = Execute(BuildApplyPlan(input, flags), input.journal);
  if (result.stopped) return result;
  if (flags.rebuildCachePending) RebuildIconCache(input.env, flags, input.refreshFolderTree);
  if (flags.restartNeeded) PromptRestart(input.env, flags);
  return result;
}

}  // namespace vx
