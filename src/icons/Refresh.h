#pragma once
// Making the shell reload after Apply: the icon-cache rebuild (also the File menu's and the toolbar's
// Rebuild Icon Cache command), its notice, and the offer to restart Windows.
#include <functional>
#include <string>

#include "apply/Executor.h"
#include "apply/RunFlags.h"
#include "system/Environment.h"
#include "system/Keys.h"

namespace vx {


// The rebuild's writes and broadcasts for a "Shell Icon Size" read as `storedSize` (GetString's
// result): the size plus one, a broadcast, the size itself, another broadcast. The shell drops its
// cached icons when the size changes, and the second round puts the size back.
Plan BuildRebuildPlan(const std::string& storedSize);

// Rebuilds the shell's icon cache, refreshes the Explorer tab's folder tree, then shows the notice.
void RebuildIconCache(const Environment& env, RunFlags& flags, const std::function<void()>& refreshFolderTree);

// The notice after a rebuild, unless the user asked not to see it again; clears the pending flag
// either way.
void ShowRebuildNotice(const Environment& env, RunFlags& flags);

// Offers to restart Windows now. Yes restarts (through the seam); No sets restartLater. Always clears
// restartNeeded.
void PromptRestart(const Environment& env, RunFlags& flags);

}  // namespace vx
