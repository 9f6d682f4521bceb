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

}  // namespace

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
    if (r.tab == kTabPointers) {
      plan.push_back(SetString(kCursorsKey, r.where, lists.ItemFullPathmouse(r.tab, r.key)));
      plan.back().label = std::string(r.caption) + " pointer";
    }
  // Each call reloads the whole scheme; the fifteen calls are long-standing behaviour, kept as is.
  for (UINT i = 0; i < 15; ++i) plan.push_back(SystemParameter(SPI_SETCURSORS, i, 0));
  return plan;
}

Plan BuildIconApplyPlan(const Environment& env, const std::vector<IconItem>& catalogue,
                        const ListValues& lists, const IconApplyOptions& options) {
  Builder b(env, catalogue, lists, options);
  for (int tab : {kTabDesktop, kTabStart, kTabFolders, kTabDrives, kTabOthers, kTabSystem}) b.Tab(tab);
  Append(b.plan, PointerSteps(lists));
  // The theme the lists came from, for the next start.
  b.plan.push_back(SetString(kSettingsKey, "Current Theme", options.currentThemePath));
  b.plan.back().label = "the current theme";
  return std::move(b.plan);
}

}  // namespace vx
