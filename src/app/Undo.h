#pragma once
// Taking an Apply back: the journal of the last run holds what undoes each of its steps. Running it
// (with a journal of its own, so that a second undo redoes) puts back values with their types, deleted
// keys whole, removes the keys and folders the run created, sets the system parameters back, and then
// the shell is refreshed as Apply refreshes it. A journal runs only after it passed JournalCheck.h.
#include <functional>
#include <optional>
#include <string>

#include "apply/Executor.h"
#include "apply/Journal.h"
#include "apply/RunFlags.h"
#include "system/Environment.h"

namespace vx {

enum class JournalState { None, Complete, InterruptedApply, InterruptedUndo };
// What the newest journal says, read without checking it (for menus and offers).
JournalState LastJournalState();
// True when a run can be taken back (its journal is complete), or a journal file is damaged (choosing
// Undo Last Apply then says so).
bool CanUndoLastApply();

// The newest journal when it passes every check; one that fails is set aside and the user told, once.
std::optional<JournalRecord> CheckedJournal(const Environment& env);
// The newest journal, when it may run: nothing when there is none; when it fails a check (it is set
// aside and the user told, once); or when, with administrator rights, the user declines the
// machine-wide writes it would make (after seeing them listed).
std::optional<JournalRecord> LoadJournalToRun(const Environment& env, HWND owner);

// Takes the last run back, or finishes an undo that was cut off. Quiet: the icon cache is rebuilt
// without its notice. Nothing when there is no journal that may run.
std::optional<ApplyResult> UndoLastApply(const Environment& env, RunFlags& flags,
                                         const std::function<void()>& refreshFolderTree, bool quiet,
                                         HWND owner = nullptr);

// Marks an interrupted run as finished, when the user chose to keep what it wrote.
void KeepInterruptedApply();

// "/undo" and "/q /undo": kExitOk when done, kExitNothingToUndo, kExitJournalRefused or
// kExitWriteFailed (CommandLine.h).
int UndoFromCommandLine(const Environment& env, bool quiet);

// A quiet run's first step: an interrupted journal is put back before anything else. kExitOk when there
// was none or it is back; kExitJournalRefused when it could not be run or put back in full.
int RecoverBeforeQuietRun(const Environment& env, const std::function<void(const std::string&)>& log);

// Why the last journal looked at was not run ("" when it was), for logs.
const std::string& JournalRefusal();

// With administrator rights on Windows NT (where the machine-wide keys are closed to other users).
bool RunsAsAdministrator();

}  // namespace vx
