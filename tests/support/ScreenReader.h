// What a screen reader in another process hears from a list window: a11yprobe run beside the tests
// while this thread keeps answering its calls.
#pragma once
#include <windows.h>

#include <string>
#include <vector>

namespace vxtest {

struct HeardItem {
  long role = -1, state = -1;
  std::string name;
};
struct HeardList {
  long role = -1, count = -1, selection = -1;  // selection: the child id (1 for the first item), 0 for none
  std::vector<HeardItem> items;
  std::string error;  // the probe's failure, or "probe did not run"
};
HeardList ReadAsScreenReader(HWND list);

}  // namespace vxtest
