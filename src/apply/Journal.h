#pragma once
// Apply's journal: a file that holds a run's plan and the undo record of everything the plan touches,
// put on disk before the first write, then the steps as they complete and, last, that the run is
// complete. A journal left incomplete means the program was stopped in the middle of an Apply (killed,
// or the power failed), and its undo record puts everything back; a complete one is the last Apply,
// which "Undo Last Apply" takes back. Carrying out an undo writes a journal of its own, so an undo can
// itself be undone once.
#include <optional>
#include <string>
#include <vector>

#include "apply/Step.h"

namespace vx {

class Journal {
 public:
  enum Kind : char { kApply = 'A', kUndo = 'U' };

  Journal(std::string path, Kind kind) : path_(std::move(path)), kind_(kind) {}
  ~Journal();
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  // Replaces the file with the plan and its undo record and flushes it to disk. False when it could
  // not be written (the run goes on without a journal).
  bool Begin(const Plan& plan, const Plan& undo);
  void Done(size_t step);
  // Steps that the undo must run before the rest (for writes made after the run, such as the cache
  // rebuild's), flushed to disk.
  void Extend(const Plan& undoFirst);
  void Complete();

 private:
  void Append(const std::string& bytes, bool flush);
  std::string path_;
  Kind kind_;
  void* file_ = nullptr;  // the open file while a run writes it
};

struct JournalRecord {
  Journal::Kind kind = Journal::kApply;
  Plan plan;
  Plan undo;
  std::vector<bool> done;
  bool complete = false;
};

// The journal of the last run, or nothing when there is none or it is damaged.
std::optional<JournalRecord> ReadJournal(const std::string& path);
// Marks a journal complete (after its undo was declined or carried out elsewhere).
void CompleteJournal(const std::string& path);

// Where the program keeps its journal: "Vexillor\apply.journal" in the user's application-data folder
// (the folder is made when the first journal is written).
std::string JournalPath();

// A plan as bytes and back (checked: a damaged text gives false).
std::string EncodePlan(const Plan& plan);
bool DecodePlan(const std::string& text, Plan& plan);

}  // namespace vx
