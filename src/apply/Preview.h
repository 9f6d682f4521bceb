#pragma once
// What Apply would do, for a person to read before anything is written: one line per step that
// changes something, with where it goes, what is there now and what Apply would put there.
#include <string>
#include <vector>

#include "apply/Step.h"

namespace vx {

struct PreviewLine {
  std::string change;  // the step's label ("Closed Folder icon")
  std::string where;   // key and value name, folder, or system parameter
  std::string now;     // what is there now, read from the system
  std::string after;   // what Apply would leave there
  bool operator==(const PreviewLine&) const = default;
};

// The lines of a plan, read from the system as it is now. Broadcasts and the cursor reloads, which
// change nothing themselves, are left out.
std::vector<PreviewLine> Preview(const Plan& plan);
// One step's line, without reading what is there now (its `now` stays empty).
PreviewLine PreviewOf(const Step& step);

}  // namespace vx
