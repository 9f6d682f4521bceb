#include "app/Undo.h"

#include "app/CommandLine.h"

#include "apply/Journal.h"
#include "icons/Refresh.h"
#include "registry/modRegistry.h"
#include "ui/modMsgbox.h"

namespace vx {

bool CanUndoLastApply() {
  const auto record = ReadJournal(JournalPath());
  return record && record->complete;
}

bool ApplyWasInterrupted() {
  const auto record = ReadJournal(JournalPath());
  return record && !record->complete;
}

std::optional<ApplyResult> UndoLastApply(const Environment& env, RunFlags& flags,
                                         const std::function<void()>& refreshFolderTree, bool quiet) {
  const std::string path = JournalPath();
  const auto record = ReadJournal(path);
  if (!record) return std::nullopt;
  Journal journal(path, record->kind == Journal::kUndo ? Journal::kApply : Journal::kUndo);
  ApplyResult result = Execute(record->undo, &journal);
  journal.Complete();
  // The shell is refreshed as Apply refreshes it, and the icon size left exactly as the undo put it.
  const Plan size = PutBackLater(kWindowMetricsKey, "Shell Icon Size");
  if (quiet) {
    Run(BuildRebuildPlan(modRegistry::GetString(kWindowMetricsKey, "Shell Icon Size")));
    flags.rebuildCachePending = false;
  } else {
    RebuildIconCache(env, flags, refreshFolderTree);
  }
  Run(size);
  return result;
}

void KeepInterruptedApply() { CompleteJournal(JournalPath()); }

int UndoFromCommandLine(const Environment& env, bool quiet) {
  RunFlags flags;
  const auto result = UndoLastApply(env, flags, {}, quiet);
  if (!result) return kExitNothingToUndo;
  return result->ok() ? kExitOk : kExitWriteFailed;
}

}  // namespace vx
