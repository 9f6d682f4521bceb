#pragma once
// The run-wide flags that edits set and Apply reads, in one place.
namespace vx {

struct RunFlags {
  bool rebuildCachePending = false;  // Apply rebuilds the shell's icon cache (icon edits, theme loads, ...)
  bool restartNeeded = false;        // Apply offers to restart Windows (settings that need one)
  bool restartLater = false;         // the restart was declined: the program reminds the user on closing
  bool treeFilled = false;           // the settings tree was filled in this run
  bool autoApplyMode = false;        // started to apply a theme from the command line and end
};

}  // namespace vx
