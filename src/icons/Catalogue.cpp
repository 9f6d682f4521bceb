#include "icons/Catalogue.h"

#include <windows.h>
#include <shellapi.h>

#include "registry/modCommon.h"
#include "registry/modRegistry.h"
#include "system/LaterWindows.h"
#include "system/Location.h"
#include "ui/ListBoxIcons.h"

namespace vx {
namespace {

using enum DefFile;

bool Missing(const std::string& text) { return text.empty() || text == modRegistry::kError; }

int NumberOf(Num num, int fixed, const Environment& env) {
  switch (num) {
    case Num::Fixed: return fixed;
    case Num::TextDocument: return env.textDocumentIcon;
    case Num::BatchFile: return env.batchFileIcon;
    case Num::ConfigSettings: return env.configSettingsIcon;
    case Num::UsersProgramGroup: return env.usersProgramGroupIcon;
    case Num::ControlPanel: return env.controlPanelIcon;
    case Num::Printers: return env.printersIcon;
  }
  return fixed;
}

void SetDefault(const ItemRow& r, const Environment& env, IconItem& item) {
  item.defaultIndex = NumberOf(r.num, r.index, env);
  switch (r.file) {
    case System: item.defaultFile = env.systemFolder + "\\" + r.fileName; break;
    case Windows: item.defaultFile = env.windowsFolder + "\\" + r.fileName; break;
    case Paint: item.defaultFile = env.paint; break;
    case MediaPlayer: item.defaultFile = env.mediaPlayer; break;
    case WordPad: item.defaultFile = env.wordPad; break;
    case Mail:
      item.defaultFile = env.mailDefaultFile;
      item.defaultIndex = env.mailDefaultIndex;
      break;
    case DialUp:
      item.defaultFile = env.dialUpDefaultFile;
      item.defaultIndex = env.dialUpDefaultIndex;
      break;
    case OwnExe: item.defaultFile = env.exePath; break;
  }
}

// Reads the conditions and names of the registry once per catalogue build.
class Builder {
 public:
  explicit Builder(const Environment& env) : env_(env) {}

  bool Listed(const ItemRow& r, const std::string& classKey, const std::string& className) const {
    switch (r.listed) {
      case When::ShellFolder: return modRegistry::GetString(classKey + "\\ShellFolder", "") != modRegistry::kError;
      case When::DocClass: return !className.empty();
      default: return Holds(r.listed, env_);
    }
  }

  std::string CaptionOf(const ItemRow& r, const std::string& classKey, const std::string& nameKey) {
    switch (r.shown) {
      // The XP family shows every renamable item under the name the shell gives it now.
      case Caption::Plain: return env_.perUser && r.renamable ? DisplayName(r.caption, classKey, nameKey) : r.caption;
      case Caption::DisplayName: return DisplayName(r.caption, classKey, nameKey);
      case Caption::RecycleEmpty: return RecycleName(classKey, nameKey) + " (empty)";
      case Caption::RecycleFull: return RecycleName(classKey, nameKey) + " (full)";
    }
    return r.caption;
  }

 private:
  // Both Recycle Bin rows share one name, read once.
  const std::string& RecycleName(const std::string& classKey, const std::string& nameKey) {
    if (recycleName_.empty()) recycleName_ = DisplayName("Recycle Bin", classKey, nameKey);
    return recycleName_;
  }

  const Environment& env_;
  std::string recycleName_;
};

// The XP family's two layers. Windows' own class data is read from the machine's half of the classes:
// the merged view would show the per-user override there too.
void Layers(const ItemRow& r, const Environment& env, IconItem& item) {
  item.overrideKey = UserIconKey(r, env, item.className);
  item.overrideValue = r.store == Store::Pointer ? r.where : r.value;
  if (r.user == UserStore::None) {
    item.overrideKey = item.storageKey;
    item.overrideValue = item.storageValue;
  }
  const std::string hkcr = "HKEY_CLASSES_ROOT\\";
  if ((r.store == Store::Class || r.store == Store::Document) && item.storageKey.rfind(hkcr, 0) == 0) {
    item.baseKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\" + item.storageKey.substr(hkcr.size());
    item.baseValue = item.storageValue;
  }
  item.nameKey = UserNameKey(r, env);
  item.machineWide = IsMachineWide(r, env);
  item.retired = IsRetired(r, env);
}

// A location the XP family's shell can draw: a file with icons, and an index into them or the
// identifier of one of its icon resources.
bool Drawable(const ShownIcon& s) {
  const int count = IconCount(s.file);
  if (count == 0) return false;
  if (s.index >= 0) return s.index <= count;
  HICON icon = ExtractIconA(GetModuleHandleA(nullptr), s.file.c_str(), static_cast<UINT>(static_cast<int>(s.index)));
  if (reinterpret_cast<UINT_PTR>(icon) <= 1) return false;
  DestroyIcon(icon);
  return true;
}

std::string Expanded(const std::string& text) {
  char buf[1024];
  const DWORD n = ExpandEnvironmentStringsA(text.c_str(), buf, sizeof buf);
  return n == 0 || n > sizeof buf ? text : std::string(buf);
}

}  // namespace

ShownIcon ReadLocation(const std::string& stored) {
  std::string text = Expanded(stored);
  int16_t index = 0;
  std::string location = text;
  std::string file = ui::SplitIconLocation(location, index);
  if (text.find(',') == std::string::npos) file = text;
  while (!file.empty() && file.back() == ' ') file.pop_back();
  while (!file.empty() && file.front() == ' ') file.erase(0, 1);
  if (file.size() >= 2 && file.front() == '"' && file.back() == '"') file = file.substr(1, file.size() - 2);
  return {file, index};
}

SchemeEntry WindowsPointer(int n) {
  DWORD type = REG_NONE;
  std::string bytes;
  if (n < 1 || !modRegistry::ReadValue(kWindowsSchemeKey, kWindowsScheme, type, bytes)) return {};
  if (type != REG_SZ && type != REG_EXPAND_SZ) return {};
  bytes = bytes.substr(0, bytes.find('\0'));
  size_t start = 0;
  for (int i = 1; i < n; ++i) {
    start = bytes.find(',', start);
    if (start == std::string::npos) return {};
    ++start;
  }
  std::string raw = bytes.substr(start, bytes.find(',', start) - start);
  while (!raw.empty() && raw.back() == ' ') raw.pop_back();
  while (!raw.empty() && raw.front() == ' ') raw.erase(0, 1);
  return {raw, raw.empty() ? std::string() : Expanded(raw)};
}

std::string LocationText(const ShownIcon& shown) { return shown.file + "," + std::to_string(shown.index); }

ShownIcon BaseIcon(const IconItem& item, const Environment& /*env*/) {
  const ShownIcon fallback{item.defaultFile, static_cast<int16_t>(item.defaultIndex)};
  if (item.baseKey.empty()) return fallback;
  const std::string stored = modRegistry::GetString(item.baseKey, item.baseValue);
  if (Missing(stored)) return fallback;
  const ShownIcon s = ReadLocation(stored);
  return Drawable(s) ? s : fallback;
}

std::string DisplayName(const std::string& defaultCaption, const std::string& classKey) {
  const std::string name = modRegistry::GetString(classKey, "");
  return Missing(name) ? defaultCaption : name;
}

std::string DisplayName(const std::string& defaultCaption, const std::string& classKey, const std::string& nameKey) {
  if (!nameKey.empty()) {
    // The XP family's order: the user's own name, then the class's localized name (Vista on), then
    // the class key's default value.
    const std::string own = modRegistry::GetString(nameKey, "");
    if (!Missing(own)) return own;
    const std::string localized = modRegistry::GetString(classKey, "LocalizedString");
    if (!Missing(localized)) {
      const std::string name = later::IndirectString(localized);
      if (!name.empty()) return name;
    }
  }
  return DisplayName(defaultCaption, classKey);
}

std::string CurrentName(const IconItem& item, const std::string& defaultCaption) {
  return DisplayName(defaultCaption, item.classKey, item.nameKey);
}

std::vector<IconItem> BuildCatalogue(const Environment& env) {
  std::vector<IconItem> items;
  Builder builder(env);
  for (const ItemRow& r : ItemTable()) {
    IconItem item;
    item.tab = r.tab;
    item.key = r.key;
    std::string classKey;
    switch (r.store) {
      case Store::Class:
        classKey = ClassKeyOf(r, env);
        item.storageKey = classKey + "\\DefaultIcon";
        item.storageValue = r.value;
        break;
      case Store::Override:
        item.storageKey = kShellIconsKey;
        item.storageValue = std::to_string(r.number);
        break;
      case Store::Document: {
        const std::string cls = modRegistry::GetString(kClassesRoot + std::string(r.where), "");
        if (!Missing(cls)) {
          item.className = cls;
          item.storageKey = kClassesRoot + cls + "\\DefaultIcon";
        }
        break;
      }
      case Store::Pointer:
        item.storageKey = kCursorsKey;
        item.storageValue = r.where;
        break;
    }
    if (!builder.Listed(r, classKey, item.className)) continue;
    if (r.renamable) item.classKey = classKey;
    item.row = &r;
    if (env.perUser) Layers(r, env, item);
    item.caption = builder.CaptionOf(r, classKey, item.nameKey);
    SetDefault(r, env, item);
    items.push_back(std::move(item));
  }
  return items;
}

int IconCount(const std::string& file) {
  // With index -1 the shell returns the number of icons in the file instead of an icon.
  QuietDriveErrors noDiskBox;
  HICON n = ExtractIconA(GetModuleHandleA(nullptr), file.c_str(), static_cast<UINT>(-1));
  return static_cast<int>(reinterpret_cast<UINT_PTR>(n));
}

ShownIcon CurrentIcon(const IconItem& item, const Environment& env) {
  const ShownIcon fallback{item.defaultFile, static_cast<int16_t>(item.defaultIndex)};
  if (env.perUser && !item.overrideKey.empty()) {
    const std::string stored = modRegistry::GetString(item.overrideKey, item.overrideValue);
    if (item.tab == kTabPointers) return Missing(stored) ? fallback : ShownIcon{Expanded(stored), 0};
    if (!Missing(stored)) {
      const ShownIcon s = ReadLocation(stored);
      if (Drawable(s)) return s;
    }
    return BaseIcon(item, env);
  }
  if (item.storageKey.empty()) return fallback;
  std::string stored = modRegistry::GetString(item.storageKey, item.storageValue);
  if (Missing(stored)) return fallback;
  if (LowerAscii(stored.substr(0, 12)) == "%systemroot%") stored = env.windowsFolder + stored.substr(12);
  // A pointer value is a cursor file, commas and all: shown as it stands.
  if (item.tab == kTabPointers) return {stored, 0};
  int16_t index = 0;
  const std::string file = ui::SplitIconLocation(stored, index);
  const int count = IconCount(file);
  // An index equal to the count passes this bound as well; kept so, as rows always did.
  if (count != 0 && index >= 0 && index <= count) return {file, index};
  return fallback;
}

std::vector<IconItem> Add_Icons(const Environment& env, const IconLists& lists) {
  std::vector<IconItem> items = BuildCatalogue(env);
  std::vector<ui::ListBoxIcons::Filling> filling;
  filling.reserve(lists.size());
  for (ui::ListBoxIcons* list : lists)
    if (list) filling.emplace_back(*list);
  for (const IconItem& item : items) {
    ui::ListBoxIcons* list = lists[item.tab];
    if (!list) continue;
    const ShownIcon shown = CurrentIcon(item, env);
    list->AddItem(item.caption, shown.file, shown.index, item.key);
    if (item.retired)
      list->SetNote(item.key, kRetiredMark, kRetiredTip);
    else if (item.machineWide)
      list->SetNote(item.key, kAllUsersMark, kAllUsersTip);
  }
  return items;
}

const IconItem* FindItem(const std::vector<IconItem>& catalogue, int tab, const std::string& key) {
  for (const IconItem& item : catalogue)
    if (item.tab == tab && item.key == key) return &item;
  return nullptr;
}

}  // namespace vx
