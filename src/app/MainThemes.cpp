// The main window's theme commands: Open Theme (also from the command line, with "/a" to apply and
// end), Save Theme and Save Theme As, and what a run started from the command line reports.
#include "app/Main.h"

#include "app/CommandLine.h"
#include "registry/modCommon.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "system/Location.h"
#include "themes/ThemeCommands.h"
#include "ui/modMsgbox.h"

namespace vx {
namespace {

const char* Why(OpenOutcome::Status status) {
  switch (status) {
    case OpenOutcome::NotTheme: return "not a theme file";
    case OpenOutcome::Unreadable: return "the file cannot be read";
    case OpenOutcome::Cancelled: return "no file chosen";
    case OpenOutcome::Loaded:
    case OpenOutcome::NotLocal: break;
  }
  return "";
}

}  // namespace

// A theme named on the command line on a share, a network drive or a device is not opened: a logon
// script would otherwise hand every user's credentials to whoever named it.
bool Main::RefuseRemoteTheme(const std::string& path) {
  const LocationRisk risk = CheckLocation(path);
  if (risk == LocationRisk::None) return false;
  if (quiet_) quiet_->Log("theme not opened: " + path + " (" + RiskText(risk) + ")");
  modMsgbox::ThemeNotLocal(path, RiskText(risk));
  return true;
}

void Main::OpenTheme(const std::string& text, bool fromCommandLine) {
  std::string path = text;
  if (fromCommandLine) {
    const CommandLine line = ParseCommandLine(text);
    flags.autoApplyMode = line.action == CommandLine::Apply;
    // A bare name is the file in the current folder (the profile calls would look in the Windows one).
    path = FullThemePath(line.theme);
    if (!path.empty() && RefuseRemoteTheme(path)) {
      OpenOutcome refused;
      refused.status = OpenOutcome::NotLocal;
      refused.path = path;
      FinishCommandLine(refused);
      return;
    }
  }
  ListBoxThemeLists lists(Lists());
  const OpenOutcome outcome = [&] {
    BusyScope busy(*this);  // the load yields to the message loop
    return OpenThemeFile(path, env_, lists, hwnd());
  }();
  // From the command line, a theme of which nothing could be taken is no theme to apply or record.
  const bool took = outcome.status == OpenOutcome::Loaded && (!fromCommandLine || outcome.report.changed > 0);
  if (took) {
    flags.rebuildCachePending = true;
    if (reviewOnly_) {
      currentTheme_ = outcome.path;  // looked at, not recorded
    } else {
      SetCurrentTheme(outcome.path);
      modRegistry::SaveString(kSettingsKey, "Current Theme", outcome.path);
    }
    EnableApply();
  }
  if (fromCommandLine) {
    if (took) commandLineTheme_ = outcome.path;
    FinishCommandLine(outcome);
  }
}

void Main::FinishCommandLine(const OpenOutcome& outcome) {
  commandLineHandled_ = true;
  if (!quiet_ && !flags.autoApplyMode && !reviewOnly_) return;
  // A "/n" run ends where its caller looks at the result; any other run closes the window itself.
  auto end = [this](int code) {
    Fail(code);
    if (!reviewOnly_) PostMessageA(hwnd(), WM_CLOSE, 0, 0);
  };
  if (outcome.status != OpenOutcome::Loaded) {
    if (quiet_ && outcome.status != OpenOutcome::NotLocal)  // that one said why itself
      quiet_->Log("theme not opened: " + outcome.path + " (" + Why(outcome.status) + ")");
    end(kExitThemeNotOpened);
    return;
  }
  if (quiet_) {
    quiet_->Log("opened: " + outcome.path + " (" + std::to_string(outcome.report.changed) + " items)");
    for (const Refusal& r : outcome.report.refused)
      quiet_->Log(std::string(reviewOnly_ ? "would refuse" : "refused") + ": [" + r.section + "] " + r.key + "=" +
                  r.value + " (" + r.item + ": " + r.reason + ")");
  }
  if (!outcome.report.refused.empty()) Fail(kExitEntryRefused);
  if (outcome.report.changed == 0) {
    if (quiet_) quiet_->Log("nothing in the theme could be loaded; nothing applied");
    end(kExitNothingLoaded);
    return;
  }
  if (reviewOnly_) return;
  if (!flags.autoApplyMode) {
    end(kExitNotApplied);  // quiet without "/a": nobody is there to press Apply
    return;
  }
  if (quiet_)
    SetStepHook([this](const Step& step, size_t) {
      if (!IsNotification(step)) quiet_->Log("write: " + Describe(step));
    });
  cmdApply_Click();
  SetStepHook(nullptr);
  for (const StepFailure& f : lastApply_.failures) {
    if (quiet_) quiet_->Log("failed: " + Describe(f.step) + " (" + f.reason + ")");
    Fail(kExitWriteFailed);
  }
  // Items kept for every user that this run, without administrator rights, left unwritten.
  const IconLists lists = Lists();
  for (const IconItem* item : HeldBackItems(env_, catalogue_, ListBoxValues(lists))) {
    if (quiet_) quiet_->Log("not written: " + item->caption + " (kept for every user: needs an administrator)");
    Fail(kExitWriteFailed);
  }
  PostMessageA(hwnd(), WM_CLOSE, 0, 0);
}

void Main::Fail(int code) {
  if (code > exitCode_) exitCode_ = code;
}

void Main::SaveTheme() { SaveThemeFile(false); }
void Main::SaveThemeAs() { SaveThemeFile(true); }

void Main::SaveThemeFile(bool saveAs) {
  const std::string path = ChooseSavePath(currentTheme_, saveAs, hwnd());
  if (path.empty()) return;
  ui::MousePointer wait(ui::MousePointer::kHourglass);
  SetCurrentTheme(path);
  ListBoxThemeLists lists(Lists());
  vx::SaveThemeFile(path, env_, lists);
  modRegistry::SaveString(kSettingsKey, "Current Theme", path);
}

}  // namespace vx
