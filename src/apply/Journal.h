#pragma once
// Apply's journal: a record of a run's plan and of what undoes each of its steps, put on disk before the
// first write, then the steps as they complete and, last, that the run is complete. A journal left
// incomplete means the program was stopped in the middle of a run (killed, the power gone); a complete
// one is the last run, which "Undo Last Apply" takes back. An undo writes a journal of its own, so an
// undo can itself be undone once.
//
// The record lives in two files beside each other ("apply.journal.1" and ".2"). A new journal goes into
// the file that does not hold the newest one, with a higher sequence number, so the old record stays
// whole until the new one is complete on disk; the reader takes the newest file whose header is intact.
// This needs nothing but CreateFile/WriteFile, so it works on every edition. Every record in a file
// carries its own checksum: a tail the power cut left as zeros, or a record cut short, ends the reading
// there and what came before stands. The steps' marks are one byte each in a view of the file, so
// marking a step costs no call and a killed program's marks are still in the file.
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "apply/Step.h"

namespace vx {

// What undoes each step of a plan, read before the first step runs: one fragment per step, and whether
// the step is a notification to repeat once everything else is back.
struct UndoParts {
  std::vector<Plan> fragments;
  std::vector<bool> repeat;
  // The undo of the steps up to and including `last`, newest first, then the repeated notifications.
  Plan UndoUpTo(const Plan& plan, size_t last) const;
  bool operator==(const UndoParts&) const = default;
};

struct JournalRecord {
  enum Kind : char { kApply = 'A', kUndo = 'U' };
  Kind kind = kApply;
  uint32_t sequence = 0;
  Plan plan;
  UndoParts parts;
  Plan undoFirst;            // writes made after the plan (the cache rebuild's), to put back first
  std::vector<bool> done;    // per step: marked done
  bool complete = false;
  std::string header;        // the header's bytes as written (plan and undo parts)

  // The last step that ran or may have been running: the last one marked done, and for an incomplete
  // run the one after it (in flight when the run was stopped). Nothing when no step may have run.
  std::optional<size_t> LastReached() const;
  // What puts back everything the run wrote: the steps it reached, newest first, after undoFirst.
  Plan Undo() const;
};

class Journal {
 public:
  using Kind = JournalRecord::Kind;
  static constexpr Kind kApply = JournalRecord::kApply;
  static constexpr Kind kUndo = JournalRecord::kUndo;

  Journal(std::string path, Kind kind) : path_(std::move(path)), kind_(kind) {}
  ~Journal();
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  // Writes the plan and its undo parts into the next file and flushes it. False when it could not be
  // written; nothing has then been run, and the previous journal is still the newest.
  bool Begin(const Plan& plan, const UndoParts& parts);
  // The same, carrying over a record's steps already marked done (an interrupted undo being finished,
  // or a journal marked complete without running anything).
  bool Resume(const JournalRecord& record);
  void Done(size_t step);
  // Steps that the undo must run before the rest (writes made after the plan), flushed to disk.
  void Extend(const Plan& undoFirst);
  void Complete();
  bool open() const { return file_ != nullptr; }

  // Asked when Begin fails, before anything is written: true goes on without a journal.
  std::function<bool()> goOnWithout;

 private:
  bool Start(const std::string& head, size_t steps, bool vouch);
  void Append(char tag, const std::string& payload, bool flush);
  void Close();
  std::string path_;
  Kind kind_;
  void* file_ = nullptr;     // the open file while a run writes it
  void* mapping_ = nullptr;  // and a view of it, where the steps are marked
  void* view_ = nullptr;
  size_t marksAt_ = 0, steps_ = 0;
};

// Reading the journal: its newest intact file, or nothing. A file whose header is damaged or not ours
// is reported in `damaged` (its path) and not used.
struct JournalRead {
  std::optional<JournalRecord> record;
  std::string file;                  // the file the record came from
  std::vector<std::string> damaged;  // files that could not be read as a journal
};
JournalRead ReadJournalFiles(const std::string& path);
// Where a run with administrator rights keeps a copy of its journal's header: only administrators can
// write there, so a journal whose header matches it was written by such a run, not by anyone else.
inline constexpr const char* kJournalVouchKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Quenby\\Vexillor";
bool JournalVouched(const JournalRecord& record);
// The newest intact record, or nothing.
std::optional<JournalRecord> ReadJournal(const std::string& path);

// Marks the newest journal complete (its undo declined or carried out elsewhere), by writing it anew.
void CompleteJournal(const std::string& path);
// Renames a journal file beside itself ("...bad"), kept for inspection and never read again.
void SetAsideJournalFile(const std::string& file);
// Removes every file of the journal (its two files and any set aside).
void RemoveJournal(const std::string& path);
// The two files of the journal at `path`.
std::string JournalFile(const std::string& path, int slot);

// Where the program keeps its journal: "Vexillor\apply.journal" in the user's application-data folder
// (the folder is made when the first journal is written). The files are this path with ".1" and ".2".
std::string JournalPath();

// Limits that keep a damaged or hostile journal from costing memory: a larger file is not read.
constexpr size_t kMaxJournalBytes = 4u << 20;
constexpr size_t kMaxJournalSteps = 20000;

// A plan and its undo parts as bytes and back, in the journal's versioned form (checked: a damaged
// text gives false, and no count is believed beyond the bytes that remain).
std::string EncodePlan(const Plan& plan);
bool DecodePlan(const std::string& text, Plan& plan);

}  // namespace vx
