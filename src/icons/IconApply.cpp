#include "icons/IconApply.h"

#include <algorithm>
#include <string_view>

#include "icons/Refresh.h"
#include "registry/modCommon.h"
#include "registry/modRegistry.h"

namespace vx {
namespace {

const std::string kDefaultIcon = "\\DefaultIcon";

// A tab's rows that Apply writes in this environment, each with its place on the tab.
struct Placed {
  const ItemRow* row;
  int pos;
};

std::vector<Placed> AppliedRows(int tab, const Environment& env) {
  std::vector<Placed> rows;
  int position = 0;
  for (const ItemRow& r : ItemTable()) {
    if (r.tab != tab) continue;
    const int listed = position++;
    if (Holds(r.applied, env)) rows.push_back({&r, r.applyPos >= 0 ? r.applyPos : listed});
  }
  return rows;
}

// Builds the plan in order: per tab the shell icon overrides, then the class icons, then the names.
class Builder {
 public:
  Builder(const Environment& env, const std::vector<IconItem>& catalogue, const ListValues& lists,
          const IconApplyOptions& options)
      : env_(env), catalogue_(catalogue), lists_(lists), options_(options) {}

  void Tab(int tab) {
    std::vector<Placed> rows = AppliedRows(tab, env_);
    for (const Placed& p : rows)
      if (p.row->store == Store::Override)
        Push(SetString(kShellIconsKey, std::to_string(p.row->number), Location(*p.row)), *p.row, " icon");
    std::stable_sort(rows.begin(), rows.end(), [](const Placed& a, const Placed& b) { return a.pos < b.pos; });
    for (const Placed& p : rows) Icon(*p.row);
    for (const Placed& p : rows)
      if (p.row->renamable) Name(*p.row);
  }

  Plan plan;

 private:
  // Every step says what it is for, in words the user knows from the lists.
  void Push(Step step, const ItemRow& r, const char* what) {
    step.label = std::string(r.caption) + what;
    plan.push_back(std::move(step));
  }

  std::string Location(const ItemRow& r) const { return lists_.ItemFullPath(r.tab, r.key); }

  void Icon(const ItemRow& r) {
    switch (r.store) {
      case Store::Class:
        if (r.cls == ClassOf::RecycleBin) {
          if (r.key == std::string_view(kRecycleEmptyKey)) RecycleBinIcons(ClassKeyOf(r, env_) + kDefaultIcon);
        } else {
          Push(SetString(ClassKeyOf(r, env_) + kDefaultIcon, "", Location(r)), r, " icon");
        }
        break;
      case Store::Document: {
        // A type without a registered class has nothing to write to.
        const std::string location = Location(r);
        const IconItem* item = FindItem(catalogue_, r.tab, r.key);
        if (location.size() >= 2 && item && !item->className.empty())
          Push(SetString(kClassesRoot + item->className + kDefaultIcon, "", location), r, " icon");
        if (r.where == std::string_view(".bmp"))
          for (Step& s : BitmapThumbnailSteps(options_)) Push(std::move(s), r, " thumbnails");
        break;
      }
      case Store::Override:
      case Store::Pointer:
        break;
    }
  }

  // The default value is the icon the desktop shows now: keep showing the state the bin is in.
  void RecycleBinIcons(const std::string& binIcon) {
    const bool showsEmpty =
        LowerAscii(modRegistry::GetString(binIcon, "")) == LowerAscii(modRegistry::GetString(binIcon, "empty"));
    const std::string empty = lists_.ItemFullPath(kTabDesktop, kRecycleEmptyKey);
    const std::string full = lists_.ItemFullPath(kTabDesktop, kRecycleFullKey);
    const ItemRow& bin = *FindRow(kTabDesktop, kRecycleEmptyKey);
    Push(SetString(binIcon, "", showsEmpty ? empty : full), bin, " icon");
    Push(SetString(binIcon, "Empty", empty), bin, " icon");
    Push(SetString(binIcon, "Full", full), *FindRow(kTabDesktop, kRecycleFullKey), " icon");
  }

  // Both bin rows share one name: the empty row's caption less " (empty)".
  void Name(const ItemRow& r) {
    if (r.cls != ClassOf::RecycleBin) {
      Push(SetString(ClassKeyOf(r, env_), "", lists_.ItemCaption(r.tab, r.key)), r, " name");
    } else if (r.key == std::string_view(kRecycleEmptyKey)) {
      const std::string caption = lists_.ItemCaption(kTabDesktop, kRecycleEmptyKey);
      Step name = SetString(ClassKeyOf(r, env_), "", caption.substr(0, caption.size() >= 8 ? caption.size() - 8 : 0));
      name.label = "Recycle Bin name";
      plan.push_back(std::move(name));
    }
  }

  const Environment& env_;
  const std::vector<IconItem>& catalogue_;
  const ListValues& lists_;
  const IconApplyOptions& options_;
};

bool Same(const std::string& a, const std::string& b) { return LowerAscii(a) == LowerAscii(b); }
bool Stored(const std::string& key, const std::string& value) {
  const std::string v = modRegistry::GetString(key, value);
  return v != modRegistry::kError;
}

// The XP family: an item's step when its list location differs from what the system shows now, or
// nothing. Going back to what Windows keeps itself removes the override instead of copying it.
// What the list shows is the stored text as the shell reads it: most items are unchanged, and this
// answers them without opening an icon file.
bool ShowsStored(const IconItem& item, const std::string& wanted) {
  const std::string over = modRegistry::GetString(item.overrideKey, item.overrideValue);
  if (over != modRegistry::kError) return Same(wanted, LocationText(ReadLocation(over)));
  const std::string base = item.baseKey.empty() ? modRegistry::kError : modRegistry::GetString(item.baseKey, item.baseValue);
  if (base != modRegistry::kError) return Same(wanted, LocationText(ReadLocation(base)));
  // Nothing stored at all: the shell shows the Windows default.
  return Same(wanted, LocationText({item.defaultFile, static_cast<int16_t>(item.defaultIndex)}));
}

std::optional<Step> UserIconStep(const IconItem& item, const Environment& env, const std::string& wanted) {
  if (wanted.empty() || item.overrideKey.empty()) return {};
  if (ShowsStored(item, wanted)) return {};
  if (Same(wanted, LocationText(CurrentIcon(item, env)))) return {};
  if (Same(wanted, LocationText(BaseIcon(item, env))) && Stored(item.overrideKey, item.overrideValue))
    return DeleteValue(item.overrideKey, item.overrideValue);
  return SetString(item.overrideKey, item.overrideValue, wanted);
}

bool HeldBack(const IconItem& item, const Environment& env) { return item.machineWide && !env.administrator; }

class UserBuilder {
 public:
  UserBuilder(const Environment& env, const std::vector<IconItem>& catalogue, const ListValues& lists)
      : env_(env), catalogue_(catalogue), lists_(lists) {}

  void Tab(int tab) {
    for (const IconItem& item : catalogue_) {
      if (item.tab != tab || !item.row) continue;
      if (item.row->cls == ClassOf::RecycleBin) {
        if (item.key == kRecycleEmptyKey) RecycleBin(item);
        continue;
      }
      if (HeldBack(item, env_)) continue;
      if (auto step = UserIconStep(item, env_, lists_.ItemFullPath(tab, item.key))) Push(std::move(*step), item, " icon");
      Name(item, lists_.ItemCaption(tab, item.key));
    }
  }

  Plan plan;

 private:
  void Push(Step step, const IconItem& item, const char* what) {
    step.label = std::string(item.row->caption) + what;
    plan.push_back(std::move(step));
  }

  void Name(const IconItem& item, const std::string& caption) {
    if (item.nameKey.empty() || caption.empty()) return;
    if (caption == CurrentName(item, item.row->caption)) return;
    Push(SetString(item.nameKey, "", caption), item, " name");
  }

  // The bin's three values go together: its per-user key, once there, is all the desktop reads.
  void RecycleBin(const IconItem& emptyItem) {
    const IconItem* fullItem = FindItem(catalogue_, kTabDesktop, kRecycleFullKey);
    if (!fullItem) return;
    const std::string empty = lists_.ItemFullPath(kTabDesktop, kRecycleEmptyKey);
    const std::string full = lists_.ItemFullPath(kTabDesktop, kRecycleFullKey);
    const bool emptySame = Same(empty, LocationText(CurrentIcon(emptyItem, env_)));
    const bool fullSame = Same(full, LocationText(CurrentIcon(*fullItem, env_)));
    if (!empty.empty() && !full.empty() && !(emptySame && fullSame)) {
      const std::string& key = emptyItem.overrideKey;
      if (Same(empty, LocationText(BaseIcon(emptyItem, env_))) && Same(full, LocationText(BaseIcon(*fullItem, env_)))) {
        for (const char* v : {"", "Empty", "Full"})
          if (Stored(key, v)) Push(DeleteValue(key, v), emptyItem, " icon");
      } else {
        // The default value is the icon the desktop shows now: keep showing the state the bin is in.
        const std::string shownNow = modRegistry::GetString(Stored(key, "") ? key : emptyItem.baseKey, "");
        const std::string emptyNow = modRegistry::GetString(Stored(key, "Empty") ? key : emptyItem.baseKey, "Empty");
        Push(SetString(key, "", LowerAscii(shownNow) == LowerAscii(emptyNow) ? empty : full), emptyItem, " icon");
        Push(SetString(key, "Empty", empty), emptyItem, " icon");
        Push(SetString(key, "Full", full), *fullItem, " icon");
      }
    }
    const std::string caption = lists_.ItemCaption(kTabDesktop, kRecycleEmptyKey);
    if (caption.size() >= 8) {
      const std::string name = caption.substr(0, caption.size() - 8);
      if (!emptyItem.nameKey.empty() && name != CurrentName(emptyItem, "Recycle Bin"))
        Push(SetString(emptyItem.nameKey, "", name), emptyItem, " name");
    }
  }

  const Environment& env_;
  const std::vector<IconItem>& catalogue_;
  const ListValues& lists_;
};

// The scheme's name in the Mouse settings: the theme's file title, or the program's name.
std::string SchemeName(const std::string& themePath) {
  std::string name = themePath.substr(themePath.find_last_of('\\') == std::string::npos ? 0 : themePath.find_last_of('\\') + 1);
  name = name.substr(0, name.find('.'));
  return name.empty() ? "Vexillor" : name;
}

}  // namespace

std::vector<const IconItem*> HeldBackItems(const Environment& env, const std::vector<IconItem>& catalogue,
                                           const ListValues& lists) {
  std::vector<const IconItem*> held;
  if (!env.perUser || env.administrator) return held;
  for (const IconItem& item : catalogue) {
    if (!item.machineWide) continue;
    const std::string wanted = lists.ItemFullPath(item.tab, item.key);
    if (!wanted.empty() && !Same(wanted, LocationText(CurrentIcon(item, env)))) held.push_back(&item);
  }
  return held;
}

Plan UserPointerSteps(const Environment& /*env*/, const std::vector<IconItem>& catalogue, const ListValues& lists,
                      const std::string& currentThemePath) {
  Plan plan;
  std::vector<std::string> scheme;
  bool any = false, windows = true;  // windows: every pointer is Windows' own scheme's
  for (const IconItem& item : catalogue) {
    if (item.tab != kTabPointers || !item.row) continue;
    const std::string wanted = lists.ItemFullPathmouse(item.tab, item.key);
    const SchemeEntry own = WindowsPointer(item.row->index);
    windows = windows && !own.file.empty() && Same(wanted, own.file);
    const std::string raw = modRegistry::GetString(kCursorsKey, item.row->where);
    const std::string now = raw == modRegistry::kError ? "" : raw;
    char buf[1024];
    const DWORD n = ExpandEnvironmentStringsA(now.c_str(), buf, sizeof buf);
    const std::string shown = n == 0 || n > sizeof buf ? now : std::string(buf);
    if (Same(wanted, shown)) {
      scheme.push_back(now);  // kept as Windows wrote it
      continue;
    }
    if (!own.file.empty() && Same(wanted, own.file))  // as Windows writes it, environment strings and all
      plan.push_back(SetRaw(kCursorsKey, item.row->where, REG_EXPAND_SZ, own.raw + std::string(1, '\0')));
    else
      plan.push_back(SetString(kCursorsKey, item.row->where, wanted));
    plan.back().label = std::string(item.row->caption) + " pointer";
    scheme.push_back(wanted);
    any = true;
  }
  if (!any) return plan;
  std::string joined;
  bool named = false;
  for (size_t i = 0; i < scheme.size(); ++i) {
    if (i > 0) joined += ",";
    joined += scheme[i];
    named = named || !scheme[i].empty();
  }
  if (windows) {
    // Windows' own scheme, which the Mouse settings name as theirs.
    plan.push_back(SetString(kCursorsKey, "", kWindowsScheme));
    plan.push_back(SetDword(kCursorsKey, "Scheme Source", 2));
    named = false;
  } else if (named) {
    const std::string name = SchemeName(currentThemePath);
    plan.push_back(SetString(std::string(kCursorsKey) + "\\Schemes", name, joined));
    plan.push_back(SetString(kCursorsKey, "", name));
    plan.push_back(SetDword(kCursorsKey, "Scheme Source", 1));
  } else {
    // Every pointer the system's own: no scheme to name.
    plan.push_back(SetString(kCursorsKey, "", ""));
    plan.push_back(SetDword(kCursorsKey, "Scheme Source", 0));
  }
  for (size_t i = plan.size() - (named ? 3 : 2); i < plan.size(); ++i) plan[i].label = "the pointer scheme";
  plan.push_back(SystemParameter(SPI_SETCURSORS, 0, 0));
  return plan;
}

Plan BitmapThumbnailSteps(const IconApplyOptions& options) {
  if (!options.settingsTreeBuilt || options.autoApplyMode || !options.bitmapThumbnail) return {};
  const std::string pictureIcon = "HKEY_CLASSES_ROOT\\Paint.Picture\\DefaultIcon";
  if (*options.bitmapThumbnail)
    return {SetString("HKEY_CLASSES_ROOT\\.bmp", "", "Paint.Picture"),
            SetString("HKEY_CLASSES_ROOT\\.bmp\\ShellNew", "Command", ""),
            SetString(pictureIcon, "", "%1")};
  return {SetString(pictureIcon, "", "C:\\Program Files\\Accessories\\mspaint.exe,1")};
}

Plan PointerSteps(const ListValues& lists) {
  Plan plan;
  for (const ItemRow& r : ItemTable())
    if (r.tab == kTabPointers && r.applied != When::Win10) {  // Windows 10's roles are the XP family's
      plan.push_back(SetString(kCursorsKey, r.where, lists.ItemFullPathmouse(r.tab, r.key)));
      plan.back().label = std::string(r.caption) + " pointer";
    }
  // Each call reloads the whole scheme; the fifteen calls are long-standing behaviour, kept as is.
  for (UINT i = 0; i < 15; ++i) plan.push_back(SystemParameter(SPI_SETCURSORS, i, 0));
  return plan;
}

Plan BuildIconApplyPlan(const Environment& env, const std::vector<IconItem>& catalogue,
                        const ListValues& lists, const IconApplyOptions& options) {
  if (env.perUser) {
    UserBuilder u(env, catalogue, lists);
    for (int tab : {kTabDesktop, kTabStart, kTabFolders, kTabDrives, kTabOthers, kTabSystem}) u.Tab(tab);
    Append(u.plan, UserPointerSteps(env, catalogue, lists, options.currentThemePath));
    u.plan.push_back(SetString(kSettingsKey, "Current Theme", options.currentThemePath));
    u.plan.back().label = "the current theme";
    return std::move(u.plan);
  }
  Builder b(env, catalogue, lists, options);
  for (int tab : {kTabDesktop, kTabStart, kTabFolders, kTabDrives, kTabOthers, kTabSystem}) b.Tab(tab);
  Append(b.plan, PointerSteps(lists));
  // The theme the lists came from, for the next start.
  b.plan.push_back(SetString(kSettingsKey, "Current Theme", options.currentThemePath));
  b.plan.back().label = "the current theme";
  return std::move(b.plan);
}

}  // namespace vx
