#include "settings/SettingsTable.h"

#include <algorithm>

#include "system/Keys.h"

namespace vx {
namespace {

constexpr auto Text = ReadAs::Text, Number = ReadAs::Number, Bytes = ReadAs::Bytes, Folder = ReadAs::Folder;
constexpr auto LowerIsNot = OnWhen::LowerIsNot, Is = OnWhen::Is, IsNot = OnWhen::IsNot, IsOrEmpty = OnWhen::IsOrEmpty,
               BytesAreOne = OnWhen::BytesAreOne, BytesNotZero = OnWhen::BytesNotZero, Readable = OnWhen::Readable,
               Unreadable = OnWhen::Unreadable, Exists = OnWhen::Exists, IsProgramPath = OnWhen::IsProgramPath;

constexpr const char* kClasses = "HKEY_CLASSES_ROOT\\";

// A row under construction: the named functions below fill the reading columns, the chained calls
// the rest.
struct Row : SettingRow {
  Row& Writes(int pos, WriteAs how, std::string on = "", std::string off = "") {
    writePos = pos;
    write = how;
    onText = std::move(on);
    offText = std::move(off);
    return *this;
  }
  Row& Numbers(int32_t on, int32_t off = 0) {
    onNumber = on;
    offNumber = off;
    return *this;
  }
  Row& To(std::string key, std::string val = "") {
    writeKey = std::move(key);
    writeValue = std::move(val);
    return *this;
  }
  Row& ValueName(std::string val) {
    writeValue = std::move(val);
    return *this;
  }
  Row& Tells(Notify how, UINT spi) {
    notify = how;
    action = spi;
    return *this;
  }
  Row& Help(int n) {
    help = n;
    return *this;
  }
  Row& NoEffectFrom(unsigned ntVersion) {
    noEffectFrom = ntVersion;
    return *this;
  }
  Row& Only(Needs n) {
    needs = n;
    return *this;
  }
  Row& Rebuilds() {
    rebuildCache = true;
    return *this;
  }
  Row& Restarts() {
    restart = true;
    return *this;
  }
  // The policies that change what the shell lists: a cache rebuild, and on NT a restart as well.
  Row& ShellPolicy() {
    rebuildCache = true;
    restartOnNT = true;
    return *this;
  }
};

Row Group(std::string parent, std::string key, std::string caption = "") {
  Row r;
  r.kind = NodeKind::Group;
  r.parent = std::move(parent);
  r.key = std::move(key);
  r.caption = std::move(caption);
  return r;
}

// An on/off setting: where it is read, when it is on, and the image Restore all Settings gives it.
Row Switch(std::string parent, std::string key, ReadAs read, std::string keyPath, std::string value, OnWhen on,
           std::string match, bool restoreOn) {
  Row r;
  r.kind = NodeKind::Switch;
  r.parent = std::move(parent);
  r.key = std::move(key);
  r.read = read;
  r.keyPath = std::move(keyPath);
  r.value = std::move(value);
  r.on = on;
  r.match = std::move(match);
  r.restoreImage = restoreOn ? kImageOn : kImageOff;
  return r;
}

Row TextIs(std::string parent, std::string key, std::string keyPath, std::string value, std::string match,
           bool restoreOn = false) {
  return Switch(std::move(parent), std::move(key), Text, std::move(keyPath), std::move(value), Is, std::move(match),
                restoreOn);
}

Row NumberIs(std::string parent, std::string key, std::string keyPath, std::string value, int32_t number) {
  Row r = Switch(std::move(parent), std::move(key), Number, std::move(keyPath), std::move(value), Is, "", false);
  r.number = number;
  return r;
}

// A policy flag in the policies key: on when the number is n, written as n or 0.
Row Policy(std::string key, const char* keyPath, std::string value, int32_t n, int pos) {
  Row r = NumberIs("Restrictions", std::move(key), keyPath, std::move(value), n);
  r.Writes(pos, WriteAs::Number).Numbers(n);
  return r;
}

// A policy of the desktop update kept as four bytes: on when they are binary-one.
Row BytesPolicy(std::string parent, std::string key, std::string value, int pos) {
  Row r = Switch(std::move(parent), std::move(key), Bytes, kPoliciesKey, std::move(value), BytesAreOne, "", false);
  r.Writes(pos, WriteAs::Bytes).Only(Needs::DesktopUpdate);
  return r;
}

// A numeric setting: its value text, default and unit, the text Restore all Settings gives it.
Row Numeric(std::string parent, std::string key, std::string caption, std::string keyPath, std::string value,
            std::string defaultValue, const char* unit, int pos) {
  Row r;
  r.kind = NodeKind::Number;
  r.parent = std::move(parent);
  r.key = std::move(key);
  r.caption = std::move(caption);
  r.read = Text;
  r.keyPath = std::move(keyPath);
  r.value = std::move(value);
  r.defaultValue = defaultValue;
  r.unit = unit;
  r.restoreValue = std::move(defaultValue);
  r.Writes(pos, WriteAs::NumberText);
  return r;
}

// A cascading-menu folder in the Start Menu folder: display name, a dot, the class identifier.
Row Cascade(const std::string& caption, const char* cls, int pos) {
  Row r = Switch("Cascading Menus", caption + "." + cls, Folder, "", "", Exists, "", false);
  r.caption = caption;
  r.restoreImage = 0;  // Restore all Settings leaves the folders alone
  r.Writes(pos, WriteAs::Folder);
  return r;
}

std::vector<SettingRow> Build() {
  constexpr const char* pixels = "pixels";
  constexpr const char* ms = "milliseconds";
  const std::string myComputer = std::string(kMachineClsid) + clsid::kMyComputer;
  const std::string paintIcon = std::string(kClasses) + "Paint.Picture\\DefaultIcon";
  const std::string explore = "EXPLORER.EXE /E,/Root,/IDList,%I", dosHere = "COMMAND.COM /K CD \"%1\"",
                    notepad = "NOTEPAD.EXE \"%1\"";
  const std::vector<Row> rows = {
      Group("", "General"),
      Switch("General", "Beep On Errors", Text, kSoundKey, "Beep", LowerIsNot, "no", true)
          .Writes(1, WriteAs::Text, "Yes", "No").Tells(Notify::OnOff, SPI_SETBEEP).Help(23),
      // XP's shell draws picture thumbnails itself and no longer reads a bitmap's class icon.
      TextIs("General", kBitmapThumbnailKey, paintIcon, "", "%1").Help(25).Rebuilds().NoEffectFrom(0x0501),
      TextIs("General", "Non-blinking Cursor", kDesktopKey, "CursorBlinkRate", "65535")
          .Writes(2, WriteAs::Text, "65535", "500").Help(26),
      NumberIs("General", "Smooth Scrolling", kDesktopKey, "SmoothScroll", 1).Writes(3, WriteAs::Number).Help(27),
      Switch("General", "Window Animation", Text, kWindowMetricsKey, "MinAnimate", IsNot, "0", true)
          .Writes(4, WriteAs::Text, "1", "0").Tells(Notify::Animation, SPI_SETANIMATION).Help(28),

      Group("", "Active Desktop").Only(Needs::DesktopUpdate),
      BytesPolicy("Active Desktop", "Remove 'Favorites' from Start Menu", "NoFavoritesMenu", 5),
      BytesPolicy("Active Desktop", "Remove 'Documents' from Start Menu", "NoRecentDocsMenu", 6),
      BytesPolicy("Active Desktop", "Hide 'Internet Explorer' Desktop Icon", "NoInternetIcon", 7),
      BytesPolicy("Active Desktop", "Remove 'Log Off' Command", "NoLogOff", 8).ValueName("NoLogoff"),
      BytesPolicy("Active Desktop", "No Active Desktop", "NoActiveDesktop", 9),
      Switch("Active Desktop", "Allow changes to Active Desktop", Bytes, kPoliciesKey, "NoActiveDesktopChanges",
             BytesNotZero, "", true)
          .Writes(10, WriteAs::BytesInverted).Only(Needs::DesktopUpdate),

      Group("", "Explorer"),
      Switch("Explorer", "Save Settings on Exit", Bytes, kPoliciesKey, "NoSaveSettings", Readable, "", true)
          .Writes(11, WriteAs::BytesInverted).Help(29),
      Switch("Explorer", "\"Shortcut to\" Prefix on New Shortcuts", Bytes, kExplorerKey, "link", Unreadable, "", true)
          .Writes(12, WriteAs::DeleteOrZero).Help(30).Restarts(),

      Group("", "Menu Items"),
      Group("Menu Items", "Folder"),
      Group("Menu Items", "Directory"),
      Group("Menu Items", "All Files"),
      Switch("Folder", "Explore From Here", Text, std::string(kClasses) + "Folder\\Shell\\RootExplore\\Command", "",
             IsOrEmpty, explore, false)
          .Writes(13, WriteAs::Verb, explore, "E&xplore From Here")
          .To(std::string(kClasses) + "Folder\\Shell\\RootExplore").Help(31),
      Switch("Directory", "Command Prompt From Here", Text, std::string(kClasses) + "Directory\\Shell\\DosHere\\Command",
             "", IsOrEmpty, dosHere, false)
          .Writes(14, WriteAs::Verb, dosHere, "Command &Prompt From Here")
          .To(std::string(kClasses) + "Directory\\Shell\\DosHere").Help(33),
      TextIs("All Files", "Quick View", std::string(kClasses) + "*\\QuickView", "", "*")
          .Writes(15, WriteAs::KeyDefault, "*").Help(34).NoEffectFrom(0x0501),  // Quick View left with 2000
      TextIs("All Files", kNotepadKey, std::string(kClasses) + "*\\Shell\\Notepad\\Command", "", notepad)
          .Writes(16, WriteAs::Verb, notepad, "&Notepad").To(std::string(kClasses) + "*\\Shell\\Notepad").Help(35),

      Group("", "Icons"),
      TextIs("Icons", "Large Icons", kWindowMetricsKey, "Shell Icon Size", "48")
          .Writes(17, WriteAs::Text, "48", "32").Help(36).Rebuilds(),
      TextIs("Icons", kAllColoursKey, kWindowMetricsKey, "Shell Icon BPP", "16")
          .Writes(18, WriteAs::Text, "16", "4").Help(37).Restarts().NoEffectFrom(0x0501),  // always full colour
      Switch("Icons", "Wrap Icon Titles", Text, kWindowMetricsKey, "IconTitleWrap", IsNot, "0", true)
          .Writes(19, WriteAs::Text, "1", "0").Tells(Notify::Written, SPI_SETICONTITLEWRAP).Help(38),

      // The two sub-groups are added before "Swap Mouse Buttons", so they come first under "Mouse".
      Group("", "Mouse"),
      Group("Mouse", "Double Click"),
      Group("Mouse", "Drag").Help(42),
      TextIs("Mouse", "Swap Mouse Buttons", kMouseKey, "SwapMouseButtons", "1")
          .Writes(20, WriteAs::Text, "1", "0").Tells(Notify::Written, SPI_SETMOUSEBUTTONSWAP).Help(39),
      Numeric("Double Click", "Double Click Width", "Width", kDesktopKey, "DoubleClickWidth", "4", pixels, 22)
          .Tells(Notify::Written, SPI_SETDOUBLECLKWIDTH).Help(40),
      Numeric("Double Click", "Double Click Height", "Height", kDesktopKey, "DoubleClickHeight", "4", pixels, 21)
          .Tells(Notify::Written, SPI_SETDOUBLECLKHEIGHT).Help(40),
      Numeric("Double Click", "Double Click Speed", "Speed", kMouseKey, "DoubleClickSpeed", "500", ms, 23)
          .Tells(Notify::Written, SPI_SETDOUBLECLICKTIME).Help(41),
      Numeric("Drag", "Drag Width", "Width", kDesktopKey, "DragWidth", "2", pixels, 25)
          .Tells(Notify::Written, SPI_SETDRAGWIDTH).Help(42),
      Numeric("Drag", "Drag Height", "Height", kDesktopKey, "DragHeight", "2", pixels, 24)
          .Tells(Notify::Written, SPI_SETDRAGHEIGHT).Help(42),

      Group("", "Plus", "Plus!"),
      TextIs("Plus", "Font Smoothing", kDesktopKey, "FontSmoothing", "1")
          .Writes(26, WriteAs::FontSmoothing, "1", "0").Tells(Notify::Written, SPI_SETFONTSMOOTHING)
          .Only(Needs::Plus).Help(43),
      TextIs("Plus", "Full Window Dragging", kDesktopKey, "DragFullWindows", "1", true)
          .Writes(27, WriteAs::Text, "1", "0").Tells(Notify::Written, SPI_SETDRAGFULLWINDOWS)
          .Only(Needs::Plus).Help(44),
      TextIs("Plus", "Stretch Desktop Wallpaper", kDesktopKey, "WallpaperStyle", "2")
          .Writes(28, WriteAs::Text, "2", "0").Tells(Notify::Wallpaper, SPI_SETDESKWALLPAPER)
          .Only(Needs::Plus).Help(45),

      Group("", "Restrictions"),
      // The program writes 999, not 1, for this policy, and reads only 999 as on.
      Policy(kHideNetworkKey, kPoliciesKey, "NoNetHood", 999, 34).Help(46).Restarts(),
      Policy("Hide 'Entire Network' in Network Neighborhood", kNetworkPoliciesKey, "NoEntireNetwork", 1, 35)
          .Help(47).ShellPolicy(),
      Policy("Hide workgroup contents in Network Neighborhood", kNetworkPoliciesKey, "NoWorkgroupContents", 1, 36)
          .Help(48).ShellPolicy(),
      Policy(kDisableDesktopKey, kPoliciesKey, "NoDesktop", 1, 37).Help(49).Restarts(),
      Policy("Hide Drives in 'My Computer'", kPoliciesKey, "NoDrives", 0x3FFFFFF, 38).Help(50).ShellPolicy(),
      Policy("Remove folders from 'Settings' on Start Menu", kPoliciesKey, "NoSetFolders", 1, 39).Help(51)
          .ShellPolicy().NoEffectFrom(0x0600),  // Vista's Start menu has no "Settings"
      Policy("Remove Taskbar from 'Settings' on Start Menu", kPoliciesKey, "NoSetTaskbar", 1, 40).Help(52)
          .ShellPolicy(),
      Policy("Remove 'Find' Command", kPoliciesKey, "NoFind", 1, 41).Help(53).ShellPolicy(),
      Policy("Remove 'Run' Command", kPoliciesKey, "NoRun", 1, 42).Help(54).ShellPolicy(),
      Policy("Disable Shut Down Command", kPoliciesKey, "NoClose", 1, 43).Help(55).ShellPolicy(),
      BytesPolicy("Restrictions", "Clear Recent Documents on Exit", "ClearRecentDocsOnExit", 44),

      Group("", "Start Menu"),
      Numeric("Start Menu", kMenuShowDelayKey, "", kDesktopKey, "MenuShowDelay", "400", ms, 29)
          .Writes(29, WriteAs::MenuShowDelay).Help(56),
      [&] {
        Row r = TextIs(kMenuShowDelayKey, kDelayUntilClickedKey, kDesktopKey, "MenuShowDelay", "65535");
        r.restoreImage = 0;  // Restore all Settings leaves it as it is
        return r.Help(57);
      }(),

      Group("", "Cascading Menus"),
      Cascade("Control Panel", clsid::kControlPanel, 30),
      Cascade("Printers", clsid::kPrinters, 31),
      Cascade("Recycle Bin", clsid::kRecycleBin, 32),
      Cascade("Url History", clsid::kUrlHistory, 33),

      Group("", "Wallpaper").Help(58),
      Numeric("Wallpaper", "Wallpaper Horizontal Origin", "Horizontal Origin", kDesktopKey, "WallpaperOriginX", "0",
              pixels, 45).Help(58),
      Numeric("Wallpaper", "Wallpaper Vertical Origin", "Vertical Origin", kDesktopKey, "WallpaperOriginY", "0",
              pixels, 46).Help(58),

      Group("", "Options"),
      Switch("Options", "Add Vexillor to My Computer context menu", Text, myComputer + "\\shell\\VX\\Command", "",
             IsProgramPath, "", false)
          .Writes(47, WriteAs::ProgramVerb, "&Vexillor...").To(myComputer + "\\Shell\\VX").Help(59),
      Switch("Options", "Restore Active Tab", Number, kSettingsKey, "Active Tab", IsNot, "", true)
          .Writes(48, WriteAs::ActiveTab).Help(61),
      Switch("Options", "Restore Window Position", Number, kSettingsKey, "Positions", IsNot, "", true)
          .Writes(49, WriteAs::Positions).Help(62),
  };
  return {rows.begin(), rows.end()};
}

}  // namespace

const std::vector<SettingRow>& SettingsTable() {
  static const std::vector<SettingRow> table = Build();
  return table;
}

const SettingRow* FindSetting(const std::string& key) {
  for (const SettingRow& r : SettingsTable())
    if (r.key == key) return &r;
  return nullptr;
}

std::vector<std::string> SettingsKeys() {
  std::vector<std::string> keys;
  for (const SettingRow& r : SettingsTable()) {
    if (r.read == ReadAs::Folder || r.keyPath.empty()) continue;
    keys.push_back(r.keyPath);
    if (r.writePos) keys.push_back(r.WriteKey());
  }
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  // A key below another listed key is covered by it.
  std::vector<std::string> top;
  for (const std::string& k : keys) {
    const bool covered = std::any_of(top.begin(), top.end(), [&](const std::string& t) {
      return k.size() > t.size() && k.compare(0, t.size(), t) == 0 && k[t.size()] == '\\';
    });
    if (!covered) top.push_back(k);
  }
  return top;
}

}  // namespace vx
