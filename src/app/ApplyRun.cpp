#include "app/ApplyRun.h"

#include "icons/Refresh.h"
#include "registry/modRegistry.h"
#include "system/Keys.h"

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
  ApplyResult result = Execute(BuildApplyPlan(input, flags), input.journal, input.stop);
  if (result.notStarted) return result;
  if (result.interrupted) return result;  // the journal stays incomplete: the next start puts it back
  const bool rebuild = !result.stopped && flags.rebuildCachePending;
  if (rebuild) {
    // The rebuild writes the icon size itself (creating it when it was missing): what it found goes
    // into the undo record too, to be put back first.
    const Plan back = PutBackLater(kWindowMetricsKey, "Shell Icon Size");
    result.undo.plan.insert(result.undo.plan.begin(), back.begin(), back.end());
    if (input.journal) input.journal->Extend(back);
    Run(BuildRebuildPlan(modRegistry::GetString(kWindowMetricsKey, "Shell Icon Size")));
    if (input.refreshFolderTree) input.refreshFolderTree();
  }
  if (input.journal) input.journal->Complete();
  if (rebuild) ShowRebuildNotice(input.env, flags);
  if (!result.stopped && flags.restartNeeded) PromptRestart(input.env, flags);
  return result;
}

}  // namespace vx
