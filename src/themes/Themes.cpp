#include "themes/Themes.h"

#include <windows.h>

#include <algorithm>
#include <string_view>

#include "registry/modCommon.h"
#include "system/Keys.h"
#include "system/Location.h"
#include "system/Product.h"
#include "themes/ThemeFile.h"
#include "ui/ListBoxIcons.h"
#include "ui/win.h"

namespace vx {
namespace {

// The tabs that have a theme section, in file order.
constexpr int kThemeTabs[] = {kTabDesktop, kTabStart, kTabFolders, kTabDrives, kTabOthers, kTabSystem, kTabPointers};

// Foreign theme files name registry keys without their root.
std::string WithoutRoot(std::string_view key) { return std::string(key.substr(key.find('\\') + 1)); }

// Classes the Plus! files name that are no item's own class: the second mail class shows the same
// mailbox as In Box, and the NT class of Dial-Up Networking is that folder under its NT name. Each is
// read right after its item, so where a file names both, the second value wins.
struct ExtraClass {
  int tab;
  const char* listKey;
  const char* id;
};
constexpr ExtraClass kExtraClasses[] = {
    {kTabDesktop, "In Box", clsid::kInBoxSecond},
    {kTabFolders, "Dial-Up Networking", clsid::kDialUpNT},
};

std::string ClassSection(const char* id) { return std::string("CLSID\\") + id + "\\DefaultIcon"; }

// Where a Plus! theme keeps a row: the class's "\DefaultIcon" (the bin's two states by name), the
// shell's override key by number, or the cursor scheme by role.
ThemeEntry ImportEntry(const ItemRow& row) {
  switch (row.store) {
    case Store::Class: {
      std::string key = *row.value ? LowerAscii(row.value) : "DefaultValue";
      return {row.tab, row.key, ClassSection(row.where), key};
    }
    case Store::Override: return {row.tab, row.key, WithoutRoot(kShellIconsKey), std::to_string(row.number)};
    case Store::Pointer: return {row.tab, row.key, WithoutRoot(kCursorsKey), row.where};
    case Store::Document: break;
  }
  return {row.tab, row.key, "", ""};
}

bool Included(const ItemRow& row, ThemeFormat format, const Environment& env, bool writing) {
  switch (format) {
    case ThemeFormat::Own: return row.themeKey && Holds(writing ? row.themeWritten : row.themeRead, env);
    case ThemeFormat::Plus: return row.import != Import::None && row.store != Store::Document;
    case ThemeFormat::Motif: return row.import == Import::PlusAndMotif;
  }
  return false;
}

// The rows of a tab in a format, ordered by their position there (-1: their place in the list).
std::vector<const ItemRow*> RowsInOrder(int tab, ThemeFormat format, const Environment& env, bool writing) {
  std::vector<std::pair<int, const ItemRow*>> rows;
  int place = 0;
  for (const ItemRow& row : ItemTable()) {
    if (row.tab != tab) continue;
    const int pos = format == ThemeFormat::Own ? row.themePos : row.importPos;
    if (Included(row, format, env, writing)) rows.emplace_back(pos >= 0 ? pos : place, &row);
    ++place;
  }
  std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<const ItemRow*> ordered;
  for (const auto& r : rows) ordered.push_back(r.second);
  return ordered;
}

// A foreign file's pointer names its cursor file alone; the list wants a location.
std::string ImportedValue(const ThemeEntry& entry, std::string value) {
  if (entry.tab == kTabPointers && value.find(',') == std::string::npos) value += ",0";
  return value;
}

LoadReport LoadEntries(ThemeFormat format, const std::string& file, const Environment& env, ThemeLists& lists) {
  LoadReport report;
  const std::vector<ThemeEntry> entries = ThemeEntries(format, env);
  const ThemeText text = ThemeText::Read(file);
  const ThemeFolders folders = FoldersFor(env, file);
  DriveTypes drives;
  for (size_t i = 0; i < entries.size(); ++i) {
    const ThemeEntry& e = entries[i];
    const ThemeValue* read = text.Find(e.section, e.key);
    if (read && !read->text.empty()) {
      std::string value = ExpandMacros(read->text, folders);
      if (format != ThemeFormat::Own) value = ImportedValue(e, value);
      const LocationRisk risk = read->foreign ? LocationRisk::None : CheckLocation(value, &drives);
      if (read->foreign)
        report.refused.push_back({e.tab, e.listKey, e.section, e.key, read->text, kForeignText});
      else if (risk != LocationRisk::None)
        report.refused.push_back({e.tab, e.listKey, e.section, e.key, value, RiskText(risk)});
      else if (lists.Change(e.tab, e.listKey, value))
        ++report.changed;
    }
    const bool lastOfTab = i + 1 == entries.size() || entries[i + 1].tab != e.tab;
    if (!lastOfTab) continue;
    // The own format redraws only the pointers (the other lists draw when shown); the imports redraw
    // each list after its category. Between categories the window takes its pending messages.
    if (format != ThemeFormat::Own || e.tab == kTabPointers) lists.ListRefresh(e.tab);
    ui::DoEvents();
  }
  return report;
}

}  // namespace

// --- the lists ------------------------------------------------------------------------------------------

ui::ListBoxIcons* ListBoxThemeLists::Holding(int tab, const std::string& key) const {
  ui::ListBoxIcons* list = tab >= 0 && tab < static_cast<int>(lists_.size()) ? lists_[tab] : nullptr;
  if (!list) return nullptr;
  // The control answers an unknown key from a free slot, so only keys it holds are passed on.
  for (int i = 0; i < list->Count(); ++i)
    if (list->Key(i) == key) return list;
  return nullptr;
}

std::string ListBoxThemeLists::ItemFullPath(int tab, const std::string& key) const {
  ui::ListBoxIcons* list = Holding(tab, key);
  return list ? list->ItemFullPath(key) : "";
}

bool ListBoxThemeLists::Change(int tab, const std::string& key, const std::string& location) {
  ui::ListBoxIcons* list = Holding(tab, key);
  if (!list) return false;
  list->Change(key, location);
  return true;
}

void ListBoxThemeLists::ListRefresh(int tab) {
  if (tab >= 0 && tab < static_cast<int>(lists_.size()) && lists_[tab]) lists_[tab]->ListRefresh();
}

// --- the walks ------------------------------------------------------------------------------------------

std::vector<ThemeEntry> ThemeEntries(ThemeFormat format, const Environment& env, bool writing) {
  std::vector<ThemeEntry> entries;
  for (int tab : kThemeTabs) {
    for (const ItemRow* row : RowsInOrder(tab, format, env, writing)) {
      if (format == ThemeFormat::Own) {
        entries.push_back({tab, row->key, ThemeSection(tab), ThemeKeyOf(*row)});
        continue;
      }
      entries.push_back(ImportEntry(*row));
      if (format != ThemeFormat::Plus) continue;
      for (const ExtraClass& extra : kExtraClasses)
        if (extra.tab == tab && std::string_view(extra.listKey) == row->key)
          entries.push_back({tab, row->key, ClassSection(extra.id), "DefaultValue"});
    }
  }
  return entries;
}

std::vector<Credit> ThemeCredits() {
  const std::string_view mail(kAuthorMail), scheme(kMailScheme);
  return {
      {"Software", std::string(kProductName) + " " + kProductVersion},
      {"Company", kCompanyName},
      {"Author", kAuthorName},
      {"Website", kHomePage},
      {"Email", std::string(mail.substr(mail.compare(0, scheme.size(), scheme) == 0 ? scheme.size() : 0))},
  };
}

int SaveThemeFile(const std::string& file, const Environment& env, const ThemeLists& lists) {
  for (const Credit& c : ThemeCredits())
    WritePrivateProfileStringA("Software Credits", c.key, c.value.c_str(), file.c_str());
  int written = 0;
  for (const ThemeEntry& e : ThemeEntries(ThemeFormat::Own, env, true))
    if (WriteThemeEntry(e.section, e.key, lists.ItemFullPath(e.tab, e.listKey), file, env)) ++written;
  return written;
}

LoadReport LoadTheme(const std::string& file, const Environment& env, ThemeLists& lists) {
  return LoadEntries(ThemeFormat::Own, file, env, lists);
}

LoadReport ImportPlusTheme(const std::string& file, const Environment& env, ThemeLists& lists) {
  return LoadEntries(ThemeFormat::Plus, file, env, lists);
}

LoadReport ImportMotif(const std::string& file, const Environment& env, ThemeLists& lists) {
  return LoadEntries(ThemeFormat::Motif, file, env, lists);
}

}  // namespace vx
