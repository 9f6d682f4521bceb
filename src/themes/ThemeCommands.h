#pragma once
// The theme commands of the File menu and the toolbar around the file work of Themes.h: the open and
// save dialogs, the dispatch on the file's extension, the overwrite question and the messages.
#include <windows.h>

#include <string>
#include <vector>

#include "system/Environment.h"
#include "themes/Themes.h"
#include "ui/modMsgbox.h"

namespace vx {

enum class ThemeKind { Own, Plus, Motif, Unknown };

// By the end of the lower-cased name: ".vxtheme", ".motif", ".theme".
ThemeKind KindOf(const std::string& path);

// The overwrite question for a theme: Cancel, OtherName or Overwrite (also when the user asked not to
// be asked again).
modMsgbox::OverwriteAnswer ConfirmOverwrite(const std::string& themePath);

// "The file ... does not appear to be a valid theme file."
void NotThemeMessage(const std::string& file);

// One prompt naming every value a load refused.
void ReportRefused(const std::string& file, const std::vector<Refusal>& refused);

// Whether the file can be opened for reading (a removed theme cannot).
bool ThemeFileReadable(const std::string& path);

struct OpenOutcome {
  enum Status { Loaded, Cancelled, NotTheme, Unreadable, NotLocal } status = Cancelled;
  std::string path;  // the file loaded or refused
  LoadReport report;
};

// Steps 1 and 2 of Open Theme: with an empty path the open dialog asks for one; the file is loaded or
// imported by its extension. A file of another kind is refused with NotThemeMessage and the dialog comes
// back; a file that cannot be read is reported and ends the command. Refused values are reported once.
// The status is that of the last file tried when the user then cancels.
OpenOutcome OpenThemeFile(std::string path, const Environment& env, ThemeLists& lists, HWND owner);

// Steps 1 to 3 of Save Theme / Save Theme As: the path to write, with ".vxtheme" appended where it is
// missing, or "" when the user stopped.
std::string ChooseSavePath(const std::string& currentTheme, bool saveAs, HWND owner);

}  // namespace vx
