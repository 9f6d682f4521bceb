#pragma once
// Registry values the icon tests set on keys that the system itself owns (class keys, the cursor
// scheme): each value is saved and removed when the fixture starts, and put back as it was (or
// removed again, with any key the test created) when it ends.
#include <string>
#include <utility>
#include <vector>

namespace vxtest {

class SavedValues {
 public:
  using Value = std::pair<std::string, std::string>;  // key path, value name ("" = default value)
  explicit SavedValues(std::vector<Value> values);
  ~SavedValues();
  SavedValues(const SavedValues&) = delete;
  SavedValues& operator=(const SavedValues&) = delete;

 private:
  struct Saved {
    Value value;
    bool existed = false;
    unsigned long type = 0;
    std::string bytes;
    std::string createdRoot;  // topmost key of the path that did not exist ("" when all did)
  };
  std::vector<Saved> saved_;
};

}  // namespace vxtest
