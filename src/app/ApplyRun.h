#pragma once
// Apply as one run of its stages, in their order: the settings stage (only when the settings tree was
// filled in this run and the program was not started to apply a theme), the icon stages, then the icon
// cache rebuild when icons changed and the restart offer when a setting needs one. The stages are built
// as one plan and carried out by the executor, so a failing step never leaves the run half-done without
// a record: the result names the failed steps and holds the undo of everything that was written.
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "apply/Executor.h"
#include "apply/Journal.h"
#include "apply/RunFlags.h"
#include "icons/Catalogue.h"
#include "icons/IconApply.h"
#include "system/Environment.h"

namespace vx {

struct ApplyInput {
  const Environment& env;
  const std::vector<IconItem>& catalogue;
  const ListValues& lists;
  std::string currentThemePath;
  // The settings stage's plan, and the tree's "Bitmap Thumbnail as Default Icon" state, when the tree
  // was filled (both are asked only then).
  std::function<Plan()> settingsStage;
  std::function<std::optional<bool>()> bitmapThumbnail;
  std::function<void()> refreshFolderTree;
  Journal* journal = nullptr;  // when given, the run is journaled
  StopCheck stop = nullptr;    // asked between steps: true stops the run there (the session is ending)
};

// The plan of the stages that write (settings, icons), as the run would carry it out.
Plan BuildApplyPlan(const ApplyInput& input, const RunFlags& flags);

// Carries out Apply. When a step threw and the run stopped, neither the rebuild nor the restart offer
// runs, and the flags stay as they were so that the next Apply does them. The journal is marked
// complete after the cache rebuild, whose own writes it covers; a run stopped because the session is
// ending leaves it incomplete, to be put back at the next start. When the journal could not be written
// and the run was not to go on without it, nothing ran (result.notStarted).
ApplyResult RunApply(const ApplyInput& input, RunFlags& flags);

}  // namespace vx
