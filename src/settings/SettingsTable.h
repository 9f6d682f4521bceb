#pragma once
// THE settings table: one row per node of the Shell tab's tree, in the order the nodes are added. Each
// row carries where the setting lives, how its state is read, what Restore all Settings gives it, how
// Apply writes it, its help number and which run-wide flags a toggle of it sets. Fill, restore and the
// Apply stage are one loop each over this table; the rules that do not fit a column are named
// functions in Settings.cpp.
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "ids_art.h"

namespace vx {

// The tree's seven images, numbered from 1 as the tree's image list (the drawn strip's image i is
// number i + 1); a node's image is also its state.
enum TreeImage : int {
  kImageGroup = TREEI_GROUP_CLOSED + 1,                  // 1: group, collapsed
  kImageGroupOpen = TREEI_GROUP_OPEN + 1,                // 2: group, expanded
  kImageNumber = TREEI_NUMBER + 1,                       // 3: numeric setting
  kImageNumberOverridden = TREEI_NUMBER_OVERRIDDEN + 1,  // 4: "Menu Show Delay" while "Delay Until Clicked" is on
  kImageOff = TREEI_SWITCH_OFF + 1,                      // 5
  kImageOn = TREEI_SWITCH_ON + 1,                        // 6
  kImageUnavailable = TREEI_UNAVAILABLE + 1,             // 7: a Plus! setting on a system without Plus!
};
static_assert(kImageGroup == 1 && kImageUnavailable == 7, "the program numbers its tree images 1 to 7");

enum class NodeKind { Group, Switch, Number };

// When a row is in the tree at all (DesktopUpdate) or readable (Plus: image 7 without Plus!).
enum class Needs { Always, DesktopUpdate, Plus };

// How a switch's current state is read, and when it counts as on.
enum class ReadAs { None, Text, Number, Bytes, Folder };
enum class OnWhen {
  None,
  LowerIsNot,     // the lower-cased text is not `match`
  Is,             // the text is `match` / the number is `number`
  IsNot,          // the text is not `match` / the number is not `number`
  IsOrEmpty,      // the text is `match` or empty
  BytesAreOne,    // the bytes equal binary-one
  BytesNotZero,   // anything but binary-zero (a missing value too)
  Readable,       // the read succeeds, whatever the bytes
  Unreadable,     // the value is absent
  Exists,         // the folder (Start Menu folder + key) exists
  IsProgramPath,  // the lower-cased text is the program's own path, lower-cased
};

// How Apply writes a row.
enum class WriteAs {
  None,
  Text,            // text value: onText / offText
  Number,          // number value: onNumber / offNumber
  Bytes,           // binary-one on, binary-zero off
  BytesInverted,   // binary-zero on, binary-one off
  DeleteOrZero,    // on deletes the value, off writes binary-zero
  Verb,            // a shell verb key with a Command subkey: onText is the command, offText the caption
  KeyDefault,      // on: the key's default value = onText; off: the key goes
  NumberText,      // the numeric value text as it stands
  FontSmoothing,   // "2" on Windows NT, else "1"; "0" off
  MenuShowDelay,   // "65535" while "Delay Until Clicked" is on, else the value text
  Folder,          // create or remove the cascading-menu folder
  ProgramVerb,     // My Computer's "VX" verb: caption onText, command the program's own path
  ActiveTab,       // the tab on show / 0
  Positions,       // 1 / 0
};

// What goes with a write to SystemParametersInfoA.
enum class Notify {
  None,
  OnOff,      // uiParam 1 on, 0 off
  Written,    // uiParam = the number written
  Animation,  // an ANIMATIONINFO record filled from the written "MinAnimate"
  Wallpaper,  // the current wallpaper re-set so the new style shows at once
};

struct SettingRow {
  NodeKind kind = NodeKind::Switch;
  std::string parent;   // the parent node's key; "" for a top-level group
  std::string key;      // unique in the tree
  std::string caption;  // the text shown ("" = the key)
  Needs needs = Needs::Always;

  // Reading.
  ReadAs read = ReadAs::None;
  std::string keyPath, value;  // where it is read ((default) = "")
  OnWhen on = OnWhen::None;
  std::string match;
  int32_t number = 0;
  std::string defaultValue;  // numeric settings: the value text when the stored one is missing
  const char* unit = "";     // numeric settings: "pixels" or "milliseconds"

  // Restore all Settings: the image a switch gets, or the value text a number gets (0 / "": untouched).
  int restoreImage = 0;
  std::string restoreValue;

  // Apply: the position in the settings stage (0 = not written by it) and the write rule. The write
  // goes to writeKey/writeValue, or where the setting is read when those are empty.
  int writePos = 0;
  WriteAs write = WriteAs::None;
  std::string writeKey, writeValue;
  std::string onText, offText;
  int32_t onNumber = 1, offNumber = 0;
  Notify notify = Notify::None;
  UINT action = 0;  // SystemParametersInfoA action

  int help = 0;  // the pop-up help topic of What's This?
  // NT version (major * 256 + minor) from which Windows ignores the setting; its What's This? says so
  // on the XP family. 0: every Windows reads it.
  unsigned noEffectFrom = 0;

  // Run-wide flags a toggle sets: the icon cache rebuild, the restart offer (always, or on NT only).
  bool rebuildCache = false, restart = false, restartOnNT = false;

  const std::string& Caption() const { return caption.empty() ? key : caption; }
  const std::string& WriteKey() const { return writeKey.empty() ? keyPath : writeKey; }
  const std::string& WriteValue() const { return writeKey.empty() && writeValue.empty() ? value : writeValue; }
};

// Every row, in the order the tree is filled.
const std::vector<SettingRow>& SettingsTable();
// The row of a key, or nullptr.
const SettingRow* FindSetting(const std::string& key);

// Keys that other routines name.
inline constexpr const char* kBitmapThumbnailKey = "Bitmap Thumbnail as Default Icon";
inline constexpr const char* kMenuShowDelayKey = "Menu Show Delay";
inline constexpr const char* kDelayUntilClickedKey = "Delay Until Clicked";
inline constexpr const char* kNotepadKey = "Note Pad";
inline constexpr const char* kHideNetworkKey = "Hide Network Neighborhood";
inline constexpr const char* kDisableDesktopKey = "Disable Desktop";
inline constexpr const char* kAllColoursKey = "Show Icons Using All Possible Colours";

// Registry keys of the settings.
inline constexpr const char* kDesktopKey = "HKEY_CURRENT_USER\\Control Panel\\desktop";
inline constexpr const char* kMouseKey = "HKEY_CURRENT_USER\\Control Panel\\Mouse";
inline constexpr const char* kSoundKey = "HKEY_CURRENT_USER\\Control Panel\\Sound";
inline constexpr const char* kPoliciesKey =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer";
inline constexpr const char* kNetworkPoliciesKey =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Network";
inline constexpr const char* kExplorerKey = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer";
inline constexpr const char* kShellFoldersKey =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
inline constexpr const char* kPlusSetupKey = "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Plus!\\Setup";

// Every registry key a settings write can touch (with everything below it): for tests and tools that
// must put the settings back as they found them.
std::vector<std::string> SettingsKeys();

}  // namespace vx
