#include "app/Undo.h"

#include <windows.h>

#include "app/CommandLine.h"
#include "app/JournalCheck.h"
#include "apply/Preview.h"
#include "icons/Refresh.h"
#include "registry/modRegistry.h"
#include "system/Keys.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"

namespace vx {
namespace {

std::string& LastRefusal() {
  static std::string why;
  return why;
}

// The token functions are looked up, not imported: Windows 95 and NT 4 lack some of them.
template <typename F>
F Advapi(const char* name) {
  return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("advapi32.dll"), name)));
}

bool MembershipOfAdministrators() {
  const auto check = Advapi<BOOL(WINAPI*)(HANDLE, PSID, PBOOL)>("CheckTokenMembership");
  const auto allocate = Advapi<BOOL(WINAPI*)(PSID_IDENTIFIER_AUTHORITY, BYTE, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD,
                                             DWORD, DWORD, PSID*)>("AllocateAndInitializeSid");
  const auto release = Advapi<PVOID(WINAPI*)(PSID)>("FreeSid");
  if (!check || !allocate || !release) return false;
  SID_IDENTIFIER_AUTHORITY nt = SECURITY_NT_AUTHORITY;
  PSID admins = nullptr;
  if (!allocate(&nt, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0, 0, 0, 0, &admins)) return false;
  BOOL member = FALSE;
  if (!check(nullptr, admins, &member)) member = FALSE;
  release(admins);
  return member != FALSE;
}

// Since Vista an administrator's programs run without those rights unless raised: the token says.
std::optional<bool> Elevated() {
  const auto open = Advapi<BOOL(WINAPI*)(HANDLE, DWORD, PHANDLE)>("OpenProcessToken");
  const auto query = Advapi<BOOL(WINAPI*)(HANDLE, TOKEN_INFORMATION_CLASS, LPVOID, DWORD, PDWORD)>("GetTokenInformation");
  HANDLE token = nullptr;
  if (!open || !query || !open(GetCurrentProcess(), TOKEN_QUERY, &token)) return std::nullopt;
  DWORD elevated = 0, size = 0;
  const BOOL known = query(token, static_cast<TOKEN_INFORMATION_CLASS>(20 /* TokenElevation */), &elevated,
                           sizeof elevated, &size);
  CloseHandle(token);
  if (!known) return std::nullopt;
  return elevated != 0;
}

// The run's undo, or the rest of an undo that was cut off, with the journal that records it.
ApplyResult RunRecord(const JournalRecord& record, const std::string& path) {
  if (record.kind == Journal::kUndo && !record.complete) {
    // Finishing an undo: its own journal carries on (so the finished undo can be redone), from the
    // step that was in flight.
    Journal journal(path, Journal::kUndo);
    if (!journal.Resume(record)) {
      ApplyResult refused;
      refused.notStarted = true;
      return refused;
    }
    const auto last = record.LastReached();
    ApplyResult result = ExecuteFrom(record.plan, record.parts, last ? *last : 0, &journal);
    result.undo.plan = record.parts.UndoUpTo(record.plan, record.plan.empty() ? 0 : record.plan.size() - 1);
    journal.Complete();
    return result;
  }
  Journal journal(path, record.kind == Journal::kUndo ? Journal::kApply : Journal::kUndo);
  // Without a journal of its own the undo could not be redone: asked as for Apply.
  journal.goOnWithout = [] { return modMsgbox::JournalUnwritable() == modMsgbox::YesNo::Yes; };
  ApplyResult result = Execute(record.Undo(), &journal);
  if (result.notStarted) return result;
  journal.Complete();
  return result;
}

}  // namespace

const std::string& JournalRefusal() { return LastRefusal(); }

bool RunsAsAdministrator() {
  OSVERSIONINFOA v{};
  v.dwOSVersionInfoSize = sizeof v;
  if (!GetVersionExA(&v) || v.dwPlatformId != VER_PLATFORM_WIN32_NT) return false;
  if (const auto elevated = Elevated()) return *elevated;
  return MembershipOfAdministrators();
}

JournalState LastJournalState() {
  const auto record = ReadJournal(JournalPath());
  if (!record) return JournalState::None;
  if (record->complete) return JournalState::Complete;
  return record->kind == Journal::kUndo ? JournalState::InterruptedUndo : JournalState::InterruptedApply;
}

bool CanUndoLastApply() {
  // A damaged file is offered too: choosing it tells the user why there is no way back.
  return LastJournalState() == JournalState::Complete || !ReadJournalFiles(JournalPath()).damaged.empty();
}

std::optional<JournalRecord> CheckedJournal(const Environment& env) {
  const std::string path = JournalPath();
  JournalRead read = ReadJournalFiles(path);
  std::vector<std::string> rejected = read.damaged;
  LastRefusal() = rejected.empty() ? "" : "damaged: " + rejected.front();
  if (read.record) {
    if (std::string why = CheckJournal(*read.record, BuildJournalAllowList(env)); !why.empty()) {
      LastRefusal() = why;
      rejected.push_back(read.file);
      read.record.reset();
    }
  }
  if (!rejected.empty()) {
    for (const std::string& file : rejected) SetAsideJournalFile(file);
    modMsgbox::JournalRejected(rejected.front() + ".bad");
    return std::nullopt;
  }
  return read.record;
}

std::optional<JournalRecord> LoadJournalToRun(const Environment& env, HWND owner) {
  auto record = CheckedJournal(env);
  if (!record) return std::nullopt;
  const Plan toRun = record->kind == Journal::kUndo && !record->complete ? record->plan : record->Undo();
  // A journal that a run with these rights wrote (its header vouched for where only administrators
  // write) needs no second look.
  if (WritesMachineWide(toRun) && RunsAsAdministrator() && !JournalVouched(*record)) {
    std::vector<ui::ReviewRow> rows;
    for (const PreviewLine& line : Preview(toRun)) rows.push_back({line.change, line.where, line.now, line.after});
    ui::GetSeam().ShowReview(owner, "Putting back your last Apply would make these changes; nothing has been "
                                    "written yet.", rows);
    if (modMsgbox::MachineWideJournal() != modMsgbox::YesNo::Yes) {
      LastRefusal() = "machine-wide writes declined";
      return std::nullopt;
    }
  }
  return record;
}

std::optional<ApplyResult> UndoLastApply(const Environment& env, RunFlags& flags,
                                         const std::function<void()>& refreshFolderTree, bool quiet, HWND owner) {
  const auto record = LoadJournalToRun(env, owner);
  if (!record) return std::nullopt;
  const std::string path = JournalPath();
  ApplyResult result = RunRecord(*record, path);
  if (result.notStarted) return result;
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
  if (LastJournalState() == JournalState::None && ReadJournalFiles(JournalPath()).damaged.empty())
    return kExitNothingToUndo;
  const auto result = UndoLastApply(env, flags, {}, quiet);
  if (!result) return kExitJournalRefused;
  if (result->notStarted) return kExitNoJournal;
  return result->ok() ? kExitOk : kExitWriteFailed;
}

int RecoverBeforeQuietRun(const Environment& env, const std::function<void(const std::string&)>& log) {
  const JournalState state = LastJournalState();
  const bool damaged = !ReadJournalFiles(JournalPath()).damaged.empty();
  if (!damaged && state != JournalState::InterruptedApply && state != JournalState::InterruptedUndo)
    return kExitOk;
  log(state == JournalState::InterruptedUndo ? "an Undo Last Apply was cut off: finishing it first"
      : damaged                              ? "the journal is damaged: checking it"
                                             : "an Apply was cut off: putting back what it wrote first");
  RunFlags flags;
  const auto result = UndoLastApply(env, flags, {}, true);
  if (!result) {
    log("the journal was not run (" + JournalRefusal() + "); exit code " + std::to_string(kExitJournalRefused));
    return kExitJournalRefused;
  }
  for (const StepFailure& f : result->failures) log("failed to put back: " + Describe(f.step));
  if (result->notStarted) log("its own journal could not be written");
  if (!result->ok() || result->notStarted) return kExitJournalRefused;
  log("put back");
  return kExitOk;
}

}  // namespace vx
