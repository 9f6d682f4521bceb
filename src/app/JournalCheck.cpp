#include "app/JournalCheck.h"

#include <windows.h>

#include <algorithm>

#include "apply/Executor.h"
#include "icons/Catalogue.h"
#include "icons/IconApply.h"
#include "icons/Items.h"
#include "icons/Refresh.h"
#include "registry/modCommon.h"
#include "registry/modRegistry.h"
#include "settings/Settings.h"
#include "settings/SettingsTable.h"
#include "system/Keys.h"

namespace vx {
namespace {

constexpr size_t kMaxValueBytes = 64 * 1024;  // more than any icon path, caption or setting the program writes
constexpr size_t kMaxTreeBytes = 64 * 1024;

// Lists that answer every item with the same text, so that every item of the table gets its write.
class EveryItem : public ListValues {
 public:
  explicit EveryItem(std::string text) : text_(std::move(text)) {}
  std::string ItemFullPath(int, const std::string&) const override { return text_; }
  std::string ItemCaption(int, const std::string&) const override { return text_; }
  std::string ItemFullPathmouse(int, const std::string&) const override { return text_; }

 private:
  std::string text_;
};

std::string ValueId(const std::string& key, const std::string& value) {
  return LowerAscii(key) + "\n" + LowerAscii(value);
}


void Collect(JournalAllowList& allow, const Plan& plan) {
  for (const Step& s : plan) {
    switch (s.kind) {
      case StepKind::SetString:
      case StepKind::SetDword:
      case StepKind::SetBinary:
      case StepKind::SetRaw:
      case StepKind::DeleteValue:
        allow.values.insert(ValueId(s.key, s.value));
        allow.keys.insert(LowerAscii(s.key));
        break;
      case StepKind::DeleteKey: allow.keys.insert(LowerAscii(s.key + "\\" + s.value)); break;
      case StepKind::CreateKey:
      case StepKind::PutKeyTree: allow.keys.insert(LowerAscii(s.key)); break;
      case StepKind::CreateFolder:
      case StepKind::RemoveFolder: allow.folders.insert(LowerAscii(s.key)); break;
      case StepKind::SystemParameter:
        allow.parameters[s.action] = s.pvData ? s.pvData->size() : 0;
        break;
      case StepKind::Broadcast: allow.broadcasts.insert({s.message, s.wParam, s.lParam}); break;
    }
  }
}

// A key the program may have created on the way to one of its own (and so may remove again): one of
// its keys, or a parent of one below the keys every system has.
bool MayRemoveKey(const std::string& key, const JournalAllowList& allow) {
  const std::string lower = LowerAscii(key);
  if (allow.keys.count(lower)) return true;
  if (modRegistry::IsSharedKey(lower)) return false;
  const std::string prefix = lower + "\\";
  for (const std::string& k : allow.keys)
    if (k.rfind(prefix, 0) == 0) return true;
  return false;
}

std::string Where(const Step& s) { return Describe(s); }

// A key put back whole: one the program may have removed, and every key in it one of the program's
// own or below one of them.
bool UnderAllowedKey(const std::string& key, const JournalAllowList& allow) {
  std::string k = LowerAscii(key);
  for (;;) {
    if (allow.keys.count(k)) return true;
    const auto slash = k.rfind('\\');
    if (slash == std::string::npos) return false;
    k.resize(slash);
  }
}

bool TreeAllowed(const std::string& key, const modRegistry::KeyTree& tree, const JournalAllowList& allow) {
  if (!MayRemoveKey(key, allow) && !UnderAllowedKey(key, allow)) return false;
  for (const auto& [name, child] : tree.subkeys)
    if (!TreeAllowed(key + "\\" + name, child, allow)) return false;
  return true;
}

// Why one step may not run ("" when it may).
std::string CheckStep(const Step& s, const JournalAllowList& allow) {
  switch (s.kind) {
    case StepKind::SetString:
    case StepKind::SetDword:
    case StepKind::SetBinary:
    case StepKind::SetRaw:
    case StepKind::DeleteValue:
      if (!allow.values.count(ValueId(s.key, s.value)) && !allow.anyValue.count(LowerAscii(s.key)))
        return "a value Vexillor does not write: " + Where(s);
      if (s.text.size() > kMaxValueBytes) return "a value too large: " + Where(s);
      return "";
    case StepKind::DeleteKey:
      return MayRemoveKey(s.key + "\\" + s.value, allow) ? "" : "a key Vexillor does not remove: " + Where(s);
    case StepKind::CreateKey:
      return allow.keys.count(LowerAscii(s.key)) ? "" : "a key Vexillor does not make: " + Where(s);
    case StepKind::PutKeyTree: {
      modRegistry::KeyTree tree;
      if (s.text.size() > kMaxTreeBytes || !DecodeKeyTree(s.text, tree)) return "a damaged key: " + s.key;
      if (!TreeAllowed(s.key, tree, allow)) return "a key Vexillor does not put back: " + s.key;
      return "";
    }
    case StepKind::CreateFolder:
    case StepKind::RemoveFolder:
      return allow.folders.count(LowerAscii(s.key)) ? "" : "a folder Vexillor does not manage: " + Where(s);
    case StepKind::SystemParameter: {
      const auto it = allow.parameters.find(s.action);
      if (it == allow.parameters.end()) return "a system parameter Vexillor does not set: " + Where(s);
      if ((s.flags & ~static_cast<UINT>(SPIF_UPDATEINIFILE | SPIF_SENDCHANGE)) != 0)
        return "a system parameter call Vexillor does not make: " + Where(s);
      const size_t size = s.pvData ? s.pvData->size() : 0;
      if (it->second == JournalAllowList::kTextBuffer) {
        // A path with its terminator, never longer than the buffer the call reads.
        if (!s.pvData || size == 0 || size > MAX_PATH + 1 || s.pvData->back() != '\0' || s.uiParam != 0)
          return "a system parameter with a buffer of the wrong size: " + Where(s);
      } else if (it->second == 0 ? s.pvData.has_value() : (!s.pvData || size != it->second || s.uiParam != size)) {
        return "a system parameter with a buffer of the wrong size: " + Where(s);
      }
      return "";
    }
    case StepKind::Broadcast:
      return allow.broadcasts.count({s.message, s.wParam, s.lParam}) ? "" : "a broadcast Vexillor does not make: " + Where(s);
  }
  return "an unknown step";
}

std::string CheckPlan(const Plan& plan, const JournalAllowList& allow) {
  for (const Step& s : plan)
    if (std::string why = CheckStep(s, allow); !why.empty()) return why;
  return "";
}

}  // namespace

JournalAllowList BuildJournalAllowList(const Environment& env) {
  JournalAllowList allow;
  const std::vector<IconItem> catalogue = BuildCatalogue(env);
  for (const std::string& text : {std::string("x.ico,0"), std::string()}) {
    const EveryItem lists(text);
    for (bool thumbnail : {false, true}) {
      IconApplyOptions options;
      options.settingsTreeBuilt = true;
      options.bitmapThumbnail = thumbnail;
      Collect(allow, BuildIconApplyPlan(env, catalogue, lists, options));
    }
  }
  // Every row of the settings table written both ways.
  SettingsModel model;
  model.plusAvailable = true;
  model.startMenuFolder = StartMenuFolder();
  for (const SettingRow& r : SettingsTable()) {
    model.nodes.push_back({r.key, r.Caption(), r.parent, kImageOn, &r});
    if (!r.defaultValue.empty()) model.values[r.key] = r.defaultValue;
  }
  Collect(allow, BuildSettingsPlan(model, env, 1));
  for (SystemSetting& n : model.nodes) n.image = kImageOff;
  Collect(allow, BuildSettingsPlan(model, env, 1));
  // Notifications by the table, whatever the registry holds now (the wallpaper call needs one set).
  for (const SettingRow& r : SettingsTable()) {
    if (r.notify == Notify::Wallpaper) allow.parameters[r.action] = JournalAllowList::kTextBuffer;
    else if (r.notify == Notify::Animation) allow.parameters[r.action] = sizeof(ANIMATIONINFO);
    else if (r.notify != Notify::None) allow.parameters[r.action] = 0;
  }
  Collect(allow, BuildRebuildPlan("32"));
  // The icon cache rebuild's own write, put back first by an undo.
  allow.values.insert(ValueId(kWindowMetricsKey, "Shell Icon Size"));
  allow.keys.insert(LowerAscii(kWindowMetricsKey));
  // The class keys whose icons the program writes (document types, "Paint.Picture"), which a first
  // write may have made; the shell's shared classes are never among them.
  static const char* const kSharedClasses[] = {"*", "clsid", "directory", "folder", "drive"};
  std::set<std::string> classes;
  for (const std::string& k : allow.keys) {
    const std::string root = LowerAscii(kClassesRoot), tail = "\\defaulticon";
    if (k.rfind(root, 0) != 0 || k.size() <= root.size() + tail.size() ||
        k.compare(k.size() - tail.size(), tail.size(), tail) != 0)
      continue;
    const std::string name = k.substr(root.size(), k.size() - root.size() - tail.size());
    if (name.find('\\') != std::string::npos || std::count(std::begin(kSharedClasses), std::end(kSharedClasses), name))
      continue;
    classes.insert(root + name);
  }
  allow.keys.insert(classes.begin(), classes.end());
  for (const IconItem& item : catalogue)
    if (!item.classKey.empty()) allow.keys.insert(LowerAscii(item.classKey));
  // What the item table says each row may write here, named schemes (one value per theme) among them.
  for (const IconItem& item : catalogue) {
    if (!item.row) continue;
    for (const WriteTarget& t : ApplyTargets(*item.row, env, item.className)) {
      allow.keys.insert(LowerAscii(t.key));
      if (t.anyValue)
        allow.anyValue.insert(LowerAscii(t.key));
      else
        allow.values.insert(ValueId(t.key, t.value));
    }
  }
  return allow;
}

std::string CheckJournal(const JournalRecord& record, const JournalAllowList& allow) {
  if (record.parts.fragments.size() != record.plan.size() || record.parts.repeat.size() != record.plan.size())
    return "a damaged record";
  for (size_t i = 0; i < record.plan.size(); ++i)
    if (record.parts.repeat[i] && !IsNotification(record.plan[i])) return "a damaged record";
  if (std::string why = CheckPlan(record.plan, allow); !why.empty()) return why;
  for (const Plan& fragment : record.parts.fragments)
    if (std::string why = CheckPlan(fragment, allow); !why.empty()) return why;
  return CheckPlan(record.undoFirst, allow);
}

bool WritesMachineWide(const Plan& plan) {
  for (const Step& s : plan) {
    const std::string key = LowerAscii(s.key);
    if (key.rfind("hkey_local_machine\\", 0) == 0 || key.rfind("hkey_classes_root\\", 0) == 0) return true;
  }
  return false;
}

}  // namespace vx
