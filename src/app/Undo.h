#pragma once
// Taking an Apply back: the journal of the last run holds the undo record of everything it touched.
// Running it (with a journal of its own, so that a second undo redoes) puts back values with their
// types, deleted keys whole, removes the keys and folders the run created, sets the system parameters
// back, and then the shell is refreshed as Apply refreshes it.
#include <functional>
#include <optional>

#include "apply/Executor.h"
#include "apply/RunFlags.h"
#include "system/Environment.h"

namespace vx {

// True when a run can be taken back (its journal is complete).
bool CanUndoLastApply();
// True when the last run was cut off (its journal is incomplete).
bool ApplyWasInterrupted();

// Takes the last run back. Quiet: the icon cache is rebuilt without its notice. Nothing when there is
// no journal.
std::optional<ApplyResult> UndoLastApply(const Environment& env, RunFlags& flags,
                                         const std::function<void()>& refreshFolderTree, bool quiet);

// Marks an interrupted run as finished, when the user chose to keep what it wrote.
void KeepInterruptedApply();

// "/undo" and "/q /undo": kExitOk when done, kExitNothingToUndo, or kExitWriteFailed (CommandLine.h).
int UndoFromCommandLine(const Environment& env, bool quiet);

}  // namespace vx
