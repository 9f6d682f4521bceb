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

// The answers, one set per kind of prompt; each value is its button's slot. A prompt only answers:
// what a button stands for ("&Help", "&Settings...") is done by its caller.
enum class Confirm { Cancel = 0, OK = 1 };  // "Cancel", "OK"
enum class ColourDepthAnswer { Settings = 0, OK = 1 };
enum class HideNetworkAnswer { Help = 0, Cancel = 1, OK = 2 };
enum class SaveAnswer { Cancel = 0, No = 1, Yes = 2 };
enum class OverwriteAnswer { Cancel = 0, OtherName = 1, Overwrite = 2, NotAsked = -1 };
enum class RestartAnswer { No = 0, Yes = 1 };
enum class RebuildAnswer { Help = 0, OK = 1, NotShown = -1 };
enum class ElevateAnswer { NotNow = 0, Continue = 1 };
enum class YesNo { No = 0, Yes = 1 };  // "No", "Yes"

// Notices with one "OK" button answer nothing.
void RestartLater();
ColourDepthAnswer ColourDepth();
Confirm NotepadOnAllFiles();
HideNetworkAnswer HideNetworkNeighborhood();
Confirm DisableDesktop();
Confirm RestoreAllPointers(const std::string& editionName);
Confirm RestoreAllIcons(const std::string& editionName);
Confirm RestoreAllSettings(const std::string& editionName);
SaveAnswer SaveBeforeClosing();
void InvalidTheme(const std::string& fileName);
// A theme named on the command line that lives on the network or a device; `where` says which.
void ThemeNotLocal(const std::string& path, const std::string& where);
OverwriteAnswer OverwriteTheme(const std::string& themeName);  // NotAsked when remembered
RestartAnswer RestartNow();
RebuildAnswer RebuildNotice(const std::string& editionName);  // NotShown when remembered
// The XP family's notice after a rebuild: what to do when an icon still does not change.
RebuildAnswer RebuildNoticeLater();  // NotShown when remembered
// After an Apply without administrator rights that left out the items kept for every user (named):
// Continue starts the program again elevated with them pending.
ElevateAnswer ContinueAsAdministrator(const std::vector<std::string>& items);
void EmptyName();
Confirm RemoveDesktopIni();
Confirm RemoveAutorunInf();
void NothingToRestore();
// After an Apply in which steps failed: names them in the user's words; `stopped` when the run ended
// at the failure; `administrator` when some of them are kept for every user of the computer.
void ApplyFailed(const std::vector<std::string>& failed, bool stopped, bool administrator);
// At start, when an Apply was cut off: 1 ("Yes") puts back everything it had changed.
YesNo InterruptedApply();
// At start, when an Undo Last Apply was cut off: 1 ("Yes") finishes taking the Apply back.
YesNo InterruptedUndo();
// Before Apply writes anything, when its journal cannot be written: 1 ("Yes") applies without a way back.
YesNo JournalUnwritable();
// The journal was damaged or changed by another program and was set aside (`file`) without running.
void JournalRejected(const std::string& file);
// With administrator rights, before a journal writes keys kept for every user (listed before it):
// 1 ("Yes") runs it.
YesNo MachineWideJournal();

}  // namespace modMsgbox
