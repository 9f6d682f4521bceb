// Taking an Apply back and looking at one before it is made: Undo Last Apply, Review Changes, the offer
// to put things back after an Apply that was cut off, and what the window shows afterwards.
#include "app/Main.h"

#include <algorithm>

#include "app/Undo.h"
#include "apply/Journal.h"
#include "apply/Preview.h"
#include "icons/Refresh.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"

namespace vx {
namespace {

// Machine-wide stores that a user without administrator rights cannot write on current Windows.
bool MachineWide(const Step& s) {
  return s.key.rfind("HKEY_LOCAL_MACHINE\\", 0) == 0 || s.key.rfind("HKEY_CLASSES_ROOT\\", 0) == 0;
}

}  // namespace

void ReportFailures(const ApplyResult& result) {
  if (result.failures.empty()) return;
  std::vector<std::string> failed;
  bool administrator = false;
  for (const StepFailure& f : result.failures) {
    std::string line = f.step.label.empty() ? Describe(f.step) : f.step.label;
    if (f.reason != "the write failed") line += " (" + f.reason + ")";
    if (std::find(failed.begin(), failed.end(), line) == failed.end()) failed.push_back(line);
    administrator = administrator || MachineWide(f.step);
  }
  modMsgbox::ApplyFailed(failed, result.stopped, administrator);
}

void Main::UndoLastApply() {
  ui::MousePointer wait(ui::MousePointer::kHourglass);
  BusyScope busy(*this);
  if (const auto result = vx::UndoLastApply(env_, flags, [this] { RefreshFolderTree(); }, false, hwnd())) {
    lastApply_ = *result;
    ReportFailures(*result);
  }
  ReloadIcons();
  EnableWindow(control(IDC_APPLY), FALSE);
}

void Main::OfferRecovery() {
  const JournalState state = LastJournalState();
  const bool damaged = !ReadJournalFiles(JournalPath()).damaged.empty();
  if (state != JournalState::InterruptedApply && state != JournalState::InterruptedUndo && !damaged) return;
  // Checked before anything is asked: a journal that is not the program's own is set aside, said once.
  const auto record = CheckedJournal(env_);
  if (!record || record->complete) return;
  const bool undo = record->kind == Journal::kUndo;
  if ((undo ? modMsgbox::InterruptedUndo() : modMsgbox::InterruptedApply()) == modMsgbox::YesNo::Yes) {
    UndoLastApply();
  } else {
    KeepInterruptedApply();
  }
}

void Main::ReviewChanges() {
  const IconLists lists = Lists();
  const ListBoxValues values(lists);
  std::vector<ui::ReviewRow> rows;
  Plan plan = BuildApplyPlan(MakeApplyInput(values), flags);
  // The rebuild that follows writes too (and puts the icon size back).
  if (flags.rebuildCachePending)
    Append(plan, BuildRebuildPlan(modRegistry::GetString(kWindowMetricsKey, "Shell Icon Size")));
  for (const PreviewLine& line : Preview(plan))
    rows.push_back({line.change, line.where, line.now, line.after});
  ui::GetSeam().ShowReview(hwnd(), "Apply would make these changes; nothing has been written yet.", rows);
}

void Main::ReloadIcons() {
  for (const IconItem& fresh : BuildCatalogue(env_)) {
    ui::ListBoxIcons* list = List(fresh.tab);
    if (!list || !FindItem(catalogue_, fresh.tab, fresh.key)) continue;
    const ShownIcon shown = CurrentIcon(fresh, env_);
    list->Change(fresh.key, shown.file, shown.index, fresh.caption);
  }
  for (auto& list : lists_)
    if (list) list->ListRefresh();
  if (List(CurrentTab())) lstbxIcons_Click(*this, CurrentTab());
}

}  // namespace vx
