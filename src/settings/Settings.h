#pragma once
// The settings model: the nodes of the Shell tab's tree with their images (a node's image is its
// pending state) and the eight numeric value texts, filled once from the registry, restored to the
// Microsoft setup defaults, edited, and turned into the settings stage of Apply. No window is needed
// for any of it; the tree control on the page only shows what the model holds.
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "apply/RunFlags.h"
#include "apply/Step.h"
#include "settings/SettingsTable.h"
#include "system/Environment.h"

namespace vx {

// A node of the tree.
struct SystemSetting {
  std::string key, text, parent;
  int image = 0;                   // TreeImage; the state of a switch
  const SettingRow* row = nullptr;
};

// The three properties of the screen the editing rules use.
struct ScreenInfo {
  int bitsPerPixel = 0;
  int width = 0;   // horizontal resolution, pixels
  int height = 0;  // vertical resolution
};
// From the desktop window's device context, released at once.
ScreenInfo CurrentScreen();

class SettingsModel {
 public:
  std::vector<SystemSetting> nodes;           // in the order they were added
  std::map<std::string, std::string> values;  // the numeric settings' value texts, by key
  bool plusAvailable = false;
  std::string startMenuFolder;  // with a trailing backslash; "" when it cannot be read
  ScreenInfo screen;

  const SystemSetting* Find(const std::string& key) const;
  SystemSetting* Find(const std::string& key);
  int Image(const std::string& key) const;  // 0 when there is no such node
  bool IsOn(const std::string& key) const { return Image(key) == kImageOn; }
  void SetImage(const std::string& key, int image);
  std::string Value(const std::string& key) const;  // "" when not numeric
  bool IsNumeric(const std::string& key) const { return values.count(key) != 0; }
};

// The Plus!-available flag: Plus! is set up, or the system is Windows NT.
bool PlusAvailable(const Environment& env);
// The Start Menu folder with "\" appended, or "" when it cannot be read.
std::string StartMenuFolder();

// Reads every setting of the table, in its order, into a new model (the fill of the tree, without the
// tree). Rows of the desktop update are left out without it; the Plus! rows get image 7 and are not
// read without Plus!.
SettingsModel ReadSettings(const Environment& env, const ScreenInfo& screen);

// Restore all Settings' step on the model: every switch gets its restore image, the numbers their
// restore values ("Delay Until Clicked" and the cascading menus stay as they are).
void RestoreSettings(SettingsModel& model);

// The settings stage of Apply, in its order. currentTab is written for "Restore Active Tab" when on.
Plan BuildSettingsPlan(const SettingsModel& model, const Environment& env, int currentTab);

// The tree's "Bitmap Thumbnail as Default Icon" state, for the icon stage; nothing when it has no node.
std::optional<bool> BitmapThumbnailState(const SettingsModel& model);

// --- editing -------------------------------------------------------------------------------------------

// Toggles a switch: warns before the four risky ones (through the prompt dialog), swaps its image and
// sets the run-wide flags of the row. True when the image changed (the caller enables Apply); a
// declined warning, a group, a number or an unavailable setting change nothing.
bool ToggleSetting(SettingsModel& model, const std::string& key, const Environment& env, RunFlags& flags);

// The bounds of a numeric setting: the value a scroll bar value becomes, and whether that deserves a
// beep (0 to 1 is silent).
struct Bounded {
  int value = 0;
  bool beep = false;
};
Bounded BoundValue(const SettingsModel& model, const std::string& key, int value);

// A typed text: its number when it is a whole number (blanks, an optional sign, digits), else nothing.
std::optional<int> TypedNumber(const std::string& text);

// The help topic of a key's What's This? (0 for keys without one).
int HelpNumber(const std::string& key);
// The same, with the note that this Windows ignores the setting where it does (the XP family).
int HelpNumber(const std::string& key, const Environment& env);

}  // namespace vx
