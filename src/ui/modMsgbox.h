#pragma once
// Every question, warning and notice of the program, one routine each, so the texts live in one
// place. Each fills a prompt request and shows it through the seam (the frmPrompt dialog); the result
// is the slot of the pressed button (slot 0 is the rightmost button).
#include <windows.h>

#include <string>
#include <vector>

#include "ui/seam.h"

namespace modMsgbox {

// Window that owns the prompts (the main window once it exists).
void SetOwner(HWND owner);
HWND Owner();

// Shows any request; remembered prompts use ShowRemembered.
ui::PromptAnswer Show(const ui::PromptRequest& request);
// Shows the request unless the memory value under the program's Settings key reads 1 (then returns
// -1); writes 1 there when the check box was ticked.
int ShowRemembered(const ui::PromptRequest& request, const std::string& memoryValue);

int RestartLater();
int ColourDepth();
int NotepadOnAllFiles();
int HideNetworkNeighborhood();
int DisableDesktop();
int RestoreAllPointers(const std::string& editionName);
int RestoreAllIcons(const std::string& editionName);
int RestoreAllSettings(const std::string& editionName);
int SaveBeforeClosing();
int InvalidTheme(const std::string& fileName);
int OverwriteTheme(const std::string& themeName);  // -1 when remembered
int RestartNow();
int RebuildNotice(const std::string& editionName);  // -1 when remembered
// The XP family's notice after a rebuild: what to do when an icon still does not change.
int RebuildNoticeLater();  // -1 when remembered
// After an Apply without administrator rights that left out the items kept for every user (named):
// 1 ("&Continue as Administrator") starts the program again elevated with them pending.
int ContinueAsAdministrator(const std::vector<std::string>& items);
int EmptyName();
int RemoveDesktopIni();
int RemoveAutorunInf();
int NothingToRestore();
// After an Apply in which steps failed: names them in the user's words; `stopped` when the run ended
// at the failure; `administrator` when some of them are kept for every user of the computer.
int ApplyFailed(const std::vector<std::string>& failed, bool stopped, bool administrator);
// At start, when an Apply was cut off: 1 ("Yes") puts back everything it had changed.
int InterruptedApply();

}  // namespace modMsgbox
