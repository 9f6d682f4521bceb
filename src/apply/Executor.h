#pragma once
// Carries out plans. The executor never lets a failing step escape: a write that fails is recorded and
// the run goes on (writes are not checked by the program itself); a step that throws is recorded and
// ends the run unless it is marked skipOnError. Whatever ran, the undo record puts back exactly what
// the steps that ran replaced.
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "apply/Step.h"
#include "registry/modRegistry.h"

namespace vx {

// What carrying out a plan replaced. Running `plan` puts back every value, key and folder that the run
// wrote, deleted or created (values with their old type and bytes, deleted keys with everything that was
// in them, keys and folders it created go away), newest first; then it sets the system parameters back
// to the values they had and repeats the reload notifications, so the system reads the old state.
struct UndoRecord {
  Plan plan;
};

struct StepFailure {
  size_t index = 0;    // position of the step in the plan
  Step step;
  std::string reason;  // "the write failed", or what was thrown
};

struct ApplyResult {
  UndoRecord undo;
  std::vector<StepFailure> failures;
  bool stopped = false;      // a step threw, or the run was asked to end, and the steps after it did not run
  bool interrupted = false;  // asked to end (the session ending) between two steps
  bool notStarted = false;   // the journal could not be written and the run was not to go on without it
  bool ok() const { return failures.empty(); }
};

class Journal;
struct UndoParts;
// Asked between two steps: true stops the run there (the session is ending).
using StopCheck = std::function<bool()>;

// What every step is about to replace is read before the first step runs; with a journal, the plan and
// that undo record are on disk before anything is changed and each step is marked when it has run; the
// caller marks the journal complete once everything that belongs to the run is done.
// When the journal cannot be written, its goOnWithout decides whether the run goes on (without it).
ApplyResult Execute(const Plan& plan, Journal* journal = nullptr, const StopCheck& stop = {});
// Carries out the steps from `first` on, with undo parts read earlier (an interrupted run finished).
ApplyResult ExecuteFrom(const Plan& plan, const UndoParts& parts, size_t first, Journal* journal,
                        const StopCheck& stop = {});
// The steps that put one value back as it is now (its type and bytes, or its absence), read now.
Plan PutBackLater(const std::string& key, const std::string& value);

// Carries out every step without recording anything (for writes that put themselves back, and undo
// plans). Throwing steps are passed over like failing ones; returns the failures.
std::vector<StepFailure> Run(const Plan& plan);

// Called before each step is carried out, with the step and its position; what it throws counts as
// the step's own failure. Tests use it to make a real step fail; nullptr removes it.
using StepHook = std::function<void(const Step&, size_t index)>;
void SetStepHook(StepHook hook);

// A key tree as one text (for PutKeyTree steps and anything that stores undo records), and back.
// Decoding is checked: a damaged text gives false.
std::string EncodeKeyTree(const modRegistry::KeyTree& tree);
bool DecodeKeyTree(std::string_view text, modRegistry::KeyTree& tree);

}  // namespace vx
