#include "settings/Settings.h"

#include <windows.h>

#include <algorithm>

#include "registry/modCommon.h"
#include "registry/modRegistry.h"
#include "system/Keys.h"
#include "system/Location.h"
#include "ui/HelpTopics.h"
#include "ui/frmPrompt.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"

namespace vx {
namespace {

constexpr const char* kError = modRegistry::kError;

bool FolderExists(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && attributes != 0;
}

bool TextRule(const SettingRow& r, const std::string& text, const Environment& env) {
  switch (r.on) {
    case OnWhen::LowerIsNot: return LowerAscii(text) != r.match;
    case OnWhen::Is: return text == r.match;
    case OnWhen::IsNot: return text != r.match;
    case OnWhen::IsOrEmpty: return text == r.match || text.empty();
    case OnWhen::IsProgramPath: return SameFile(text, env.exePath);
    default: return false;
  }
}

bool NumberRule(const SettingRow& r, int32_t n) {
  switch (r.on) {
    case OnWhen::Is: return n == r.number;
    case OnWhen::IsNot: return n != r.number;
    default: return false;
  }
}

bool BytesRule(const SettingRow& r, const std::string& bytes, const Environment& env) {
  switch (r.on) {
    case OnWhen::BytesAreOne: return bytes == env.binaryOne;
    case OnWhen::BytesNotZero: return bytes != env.binaryZero;
    case OnWhen::Readable: return bytes != kError;
    case OnWhen::Unreadable: return bytes == kError;
    default: return false;
  }
}

// Whether a switch is on now, by its read rule.
bool ReadsOn(const SettingRow& r, const Environment& env, const std::string& startMenuFolder) {
  switch (r.read) {
    case ReadAs::Text: return TextRule(r, modRegistry::GetString(r.keyPath, r.value), env);
    case ReadAs::Number: return NumberRule(r, modRegistry::GetDword(r.keyPath, r.value));
    case ReadAs::Bytes: return BytesRule(r, modRegistry::GetBinary(r.keyPath, r.value), env);
    case ReadAs::Folder: return !startMenuFolder.empty() && FolderExists(startMenuFolder + r.key);
    case ReadAs::None: return false;
  }
  return false;
}

// A numeric setting's value text: as stored, or its default when missing, empty or unreadable.
// "Menu Show Delay" stored as "65535" means "Delay Until Clicked", and shows the default.
std::string ReadNumberText(const SettingRow& r) {
  const std::string text = modRegistry::GetString(r.keyPath, r.value);
  if (text == kError || text.empty() || (r.key == kMenuShowDelayKey && text == "65535")) return r.defaultValue;
  return text;
}

std::string ParentOf(const std::string& key) { return key.substr(0, key.rfind('\\')); }
std::string LeafOf(const std::string& key) { return key.substr(key.rfind('\\') + 1); }

// A verb key with a Command subkey goes subkey first: RegDeleteKeyA on NT and under Wine refuses a key
// that still has subkeys, and a verb left behind would stay on the shell's menu.
void DeleteVerb(Plan& plan, const std::string& verbKey) {
  plan.push_back(DeleteKey(verbKey, "Command"));
  plan.push_back(DeleteKey(ParentOf(verbKey), LeafOf(verbKey)));
}

// The system parameter call that goes with a write, when the row has one.
void Tell(Plan& plan, const SettingRow& r, bool on, const std::string& written) {
  switch (r.notify) {
    case Notify::None: break;
    case Notify::OnOff: plan.push_back(SystemParameter(r.action, on ? 1 : 0, 0)); break;
    case Notify::Written: {
      // A hostile value text that is no number is still written, but not passed on as one.
      const std::optional<int> n = TypedNumber(written);
      if (n && *n >= 0) plan.push_back(SystemParameter(r.action, static_cast<UINT>(*n), 0));
      break;
    }
    case Notify::Animation: {
      ANIMATIONINFO info{};
      info.cbSize = sizeof info;
      info.iMinAnimate = written == "1" ? 1 : 0;
      plan.push_back(SystemParameter(r.action, sizeof info, SPIF_UPDATEINIFILE | SPIF_SENDCHANGE,
                                     std::string(reinterpret_cast<const char*>(&info), sizeof info)));
      break;
    }
    case Notify::Wallpaper: {
      // The same wallpaper set again shows the new style at once; without one there is nothing to show.
      const std::string wallpaper = modRegistry::GetString(kDesktopKey, "Wallpaper");
      if (wallpaper != kError)
        plan.push_back(SystemParameter(r.action, 0, SPIF_UPDATEINIFILE | SPIF_SENDCHANGE, wallpaper + '\0'));
      break;
    }
  }
}

// The steps of one row, by its write rule.
Plan RowSteps(const SettingRow& r, const SettingsModel& model, const Environment& env, int currentTab) {
  const bool on = model.IsOn(r.key);
  const std::string& key = r.WriteKey();
  const std::string& value = r.WriteValue();
  Plan plan;
  auto text = [&](const std::string& t) {
    plan.push_back(SetString(key, value, t));
    Tell(plan, r, on, t);
  };
  switch (r.write) {
    case WriteAs::None: break;
    case WriteAs::Text: text(on ? r.onText : r.offText); break;
    case WriteAs::Number: plan.push_back(SetDword(key, value, on ? r.onNumber : r.offNumber)); break;
    case WriteAs::Bytes: plan.push_back(SetBinary(key, value, on ? env.binaryOne : env.binaryZero)); break;
    case WriteAs::BytesInverted: plan.push_back(SetBinary(key, value, on ? env.binaryZero : env.binaryOne)); break;
    case WriteAs::DeleteOrZero:
      plan.push_back(on ? DeleteValue(key, value) : SetBinary(key, value, env.binaryZero));
      break;
    case WriteAs::Verb:  // onText: the command; offText: the verb's caption
      if (on) {
        plan.push_back(SetString(key + "\\Command", "", r.onText));
        plan.push_back(SetString(key, "", r.offText));
      } else {
        DeleteVerb(plan, key);
      }
      break;
    case WriteAs::KeyDefault:
      plan.push_back(on ? SetString(key, "", r.onText) : DeleteKey(ParentOf(key), LeafOf(key)));
      break;
    case WriteAs::NumberText: text(model.Value(r.key)); break;
    case WriteAs::FontSmoothing: text(on ? (env.IsNT() ? "2" : "1") : "0"); break;
    case WriteAs::MenuShowDelay:
      text(model.IsOn(kDelayUntilClickedKey) ? "65535" : model.Value(kMenuShowDelayKey));
      break;
    case WriteAs::Folder:
      // Without a Start Menu folder there is nowhere to put the folder (and a relative path would land
      // in the current directory).
      if (!model.startMenuFolder.empty()) {
        const std::string path = model.startMenuFolder + r.key;
        plan.push_back(on ? CreateFolder(path) : RemoveFolder(path));
      }
      break;
    case WriteAs::ProgramVerb:
      if (on) {
        plan.push_back(SetString(key, "", r.onText));
        plan.push_back(SetString(key + "\\Command", "", env.exePath));
      } else {
        DeleteVerb(plan, key);
      }
      break;
    case WriteAs::ActiveTab: plan.push_back(SetDword(key, value, on ? std::max(currentTab, 1) : 0)); break;
    case WriteAs::Positions: {
      const int32_t now = modRegistry::GetDword(key, value);
      const bool stored = now != 0 && now != modRegistry::kDwordError;
      plan.push_back(SetDword(key, value, on ? (stored ? now : 1) : 0));
      break;
    }
  }
  return plan;
}

}  // namespace

ScreenInfo CurrentScreen() {
  ScreenInfo s;
  HWND desktop = GetDesktopWindow();
  if (HDC dc = GetDC(desktop)) {
    s.bitsPerPixel = GetDeviceCaps(dc, BITSPIXEL);
    s.width = GetDeviceCaps(dc, HORZRES);
    s.height = GetDeviceCaps(dc, VERTRES);
    ReleaseDC(desktop, dc);
  }
  return s;
}

const SystemSetting* SettingsModel::Find(const std::string& key) const {
  for (const SystemSetting& n : nodes)
    if (n.key == key) return &n;
  return nullptr;
}

SystemSetting* SettingsModel::Find(const std::string& key) {
  return const_cast<SystemSetting*>(static_cast<const SettingsModel*>(this)->Find(key));
}

int SettingsModel::Image(const std::string& key) const {
  const SystemSetting* n = Find(key);
  return n ? n->image : 0;
}

void SettingsModel::SetImage(const std::string& key, int image) {
  if (SystemSetting* n = Find(key)) n->image = image;
}

std::string SettingsModel::Value(const std::string& key) const {
  auto it = values.find(key);
  return it == values.end() ? std::string() : it->second;
}

bool PlusAvailable(const Environment& env) {
  return modRegistry::GetString(kPlusSetupKey, "COOL.DLL") != kError || env.IsNT();
}

std::string StartMenuFolder() {
  const std::string folder = modRegistry::GetString(kShellFoldersKey, "Start Menu");
  if (folder == kError || folder.empty()) return "";
  return folder + "\\";
}

SettingsModel ReadSettings(const Environment& env, const ScreenInfo& screen) {
  SettingsModel model;
  model.plusAvailable = PlusAvailable(env);
  model.startMenuFolder = StartMenuFolder();
  model.screen = screen;
  model.nodes.reserve(SettingsTable().size());
  for (const SettingRow& r : SettingsTable()) {
    if (r.needs == Needs::DesktopUpdate && !env.desktopUpdate) continue;
    SystemSetting node{r.key, r.Caption(), r.parent, kImageGroup, &r};
    switch (r.kind) {
      case NodeKind::Group: break;
      case NodeKind::Number:
        node.image = kImageNumber;
        model.values[r.key] = ReadNumberText(r);
        break;
      case NodeKind::Switch:
        if (r.needs == Needs::Plus && !model.plusAvailable)
          node.image = kImageUnavailable;
        else
          node.image = ReadsOn(r, env, model.startMenuFolder) ? kImageOn : kImageOff;
        break;
    }
    model.nodes.push_back(std::move(node));
  }
  if (model.IsOn(kDelayUntilClickedKey)) model.SetImage(kMenuShowDelayKey, kImageNumberOverridden);
  return model;
}

void RestoreSettings(SettingsModel& model) {
  for (SystemSetting& n : model.nodes) {
    const SettingRow& r = *n.row;
    if (r.kind == NodeKind::Switch && r.restoreImage && n.image != kImageUnavailable) n.image = r.restoreImage;
    if (r.kind == NodeKind::Number) model.values[r.key] = r.restoreValue;
  }
  // The delay's node takes the off picture (and with it no editor), whatever "Delay Until Clicked" says:
  // that is how Restore all Settings has always left it.
  model.SetImage(kMenuShowDelayKey, kImageOff);
}

Plan BuildSettingsPlan(const SettingsModel& model, const Environment& env, int currentTab) {
  std::vector<const SettingRow*> rows;
  for (const SettingRow& r : SettingsTable())
    if (r.writePos > 0 && model.Find(r.key)) rows.push_back(&r);
  std::stable_sort(rows.begin(), rows.end(),
                   [](const SettingRow* a, const SettingRow* b) { return a->writePos < b->writePos; });
  Plan plan;
  for (const SettingRow* r : rows) {
    // From "MenuShowDelay" on, a step that fails is passed over (a folder that is already there, ...).
    constexpr int kSkippableFrom = 29;
    Plan steps = RowSteps(*r, model, env, currentTab);
    for (Step& step : steps) step.label = "the setting \"" + r->key + "\"";  // for reports of failed writes
    Append(plan, r->writePos >= kSkippableFrom ? Skippable(std::move(steps)) : steps);
  }
  return plan;
}

std::optional<bool> BitmapThumbnailState(const SettingsModel& model) {
  const SystemSetting* n = model.Find(kBitmapThumbnailKey);
  if (!n) return std::nullopt;
  return n->image == kImageOn;
}

bool ToggleSetting(SettingsModel& model, const std::string& key, const Environment& env, RunFlags& flags) {
  SystemSetting* node = model.Find(key);
  if (!node || !node->row) return false;
  if (node->image == kImageOff) {
    using namespace modMsgbox;
    if (key == kNotepadKey && NotepadOnAllFiles() != Confirm::OK) return false;
    if (key == kHideNetworkKey) {
      const HideNetworkAnswer answer = HideNetworkNeighborhood();
      if (answer == HideNetworkAnswer::Cancel) return false;
      if (answer == HideNetworkAnswer::Help)  // the setting's own help, then go ahead
        ui::GetSeam().OpenHelp(modMsgbox::Owner(), ui::AppHelpFile(), HELP_CONTEXTPOPUP,
                               std::to_string(HelpNumber(key)));
    }
    if (key == kDisableDesktopKey && DisableDesktop() != Confirm::OK) return false;
    if (key == kAllColoursKey && model.screen.bitsPerPixel == 8 && ColourDepth() == ColourDepthAnswer::Settings)
      ui::GetSeam().RunCommand("rundll32.exe shell32.dll,Control_RunDLL desk.cpl,,3");
    if (key == kDelayUntilClickedKey) model.SetImage(kMenuShowDelayKey, kImageNumberOverridden);
    node->image = kImageOn;
  } else if (node->image == kImageOn) {
    if (key == kDelayUntilClickedKey) model.SetImage(kMenuShowDelayKey, kImageNumber);
    node->image = kImageOff;
  } else {
    return false;
  }
  const SettingRow& r = *node->row;
  if (r.rebuildCache) flags.rebuildCachePending = true;
  if (r.restart || (r.restartOnNT && env.IsNT())) flags.restartNeeded = true;
  return true;
}

Bounded BoundValue(const SettingsModel& model, const std::string& key, int value) {
  auto atMost = [&](int bound) { return value > bound ? Bounded{bound, true} : Bounded{value, false}; };
  if (key == "Wallpaper Horizontal Origin") return atMost(model.screen.width);
  if (key == "Wallpaper Vertical Origin") return atMost(model.screen.height);
  if (key == "Double Click Width" || key == "Double Click Height" || key == "Drag Width" || key == "Drag Height")
    return value == 0 ? Bounded{1, false} : atMost(32);
  if (key == "Double Click Speed") return atMost(900);
  if (key == kMenuShowDelayKey) return atMost(9999);
  return {value, false};
}

std::optional<int> TypedNumber(const std::string& text) {
  const std::string t = TrimSpaces(text);
  size_t i = (!t.empty() && (t[0] == '-' || t[0] == '+')) ? 1 : 0;
  if (i == t.size()) return std::nullopt;
  for (size_t j = i; j < t.size(); ++j)
    if (t[j] < '0' || t[j] > '9') return std::nullopt;
  const std::optional<int32_t> n = ParseInt32(t);
  if (!n) return std::nullopt;
  return static_cast<int>(*n);
}

int HelpNumber(const std::string& key, const Environment& env) {
  const int n = HelpNumber(key);
  const SettingRow* r = FindSetting(key);
  if (n > 0 && r && env.perUser && r->noEffectFrom != 0 && env.ntVersion >= r->noEffectFrom)
    return static_cast<int>(ui::NoEffectTopic(static_cast<unsigned>(n)));
  return n;
}

int HelpNumber(const std::string& key) {
  if (key == "Display Splash Screen") return 60;  // a topic of the help file without a node
  const SettingRow* r = FindSetting(key);
  return r ? r->help : 0;
}

}  // namespace vx
