// The main window's theme commands: Open Theme (also from the command line, with "/a" to apply and
// end), Save Theme and Save Theme As, and what a run started from the command line reports.
#include "app/Main.h"

#include "app/CommandLine.h"
#include "registry/modCommon.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "themes/ThemeCommands.h"

namespace vx {
namespace {

// The path as a shell passes it: blanks around it and the quotes of a path with blanks taken off.
std::string PlainPath(const std::string& text) {
  std::string path = TrimSpaces(text);
  if (path.size() >= 2 && path.front() == '"' && path.back() == '"') path = path.substr(1, path.size() - 2);
  return path;
}

const char* Why(OpenOutcome::Status status) {
  switch (status) {
    case OpenOutcome::NotTheme: return "not a theme file";
    case OpenOutcome::Unreadable: return "the file cannot be read";
    case OpenOutcome::Cancelled: return "no file chosen";
    case OpenOutcome::Loaded: break;
  }
  return "";
}

}  // namespace

void Main::OpenTheme(const std::string& text, bool fromCommandLine) {
  std::string path = text;
  if (fromCommandLine) {
    // Only a lower-case "/a" applies. "/A" is not the switch; but as no file's name begins with a
    // slash, a file after it is still opened (pending, the window stays open).
    if (text.compare(0, 2, "/a") == 0) {
      flags.autoApplyMode = true;
      path = text.size() > 3 ? text.substr(3) : "";
    } else if (text.compare(0, 3, "/A ") == 0 && !ThemeFileReadable(text)) {
      path = text.substr(3);
    }
    path = PlainPath(path);
  }
  ListBoxThemeLists lists(Lists());
  const OpenOutcome outcome = OpenThemeFile(path, env_, lists, hwnd());
  if (outcome.status == OpenOutcome::Loaded) {
    flags.rebuildCachePending = true;
    SetCurrentTheme(outcome.path);
    modRegistry::SaveString(kSettingsKey, "Current Theme", outcome.path);
    EnableApply();
  }
  if (fromCommandLine) FinishCommandLine(outcome);
}

void Main::FinishCommandLine(const OpenOutcome& outcome) {
  commandLineHandled_ = true;
  if (!quiet_ && !flags.autoApplyMode) return;
  if (outcome.status != OpenOutcome::Loaded) {
    if (quiet_) quiet_->Log("theme not opened: " + outcome.path + " (" + Why(outcome.status) + ")");
    Fail(kExitThemeNotOpened);
    PostMessageA(hwnd(), WM_CLOSE, 0, 0);
    return;
  }
  if (quiet_) {
    quiet_->Log("opened: " + outcome.path + " (" + std::to_string(outcome.report.changed) + " items)");
    for (const Refusal& r : outcome.report.refused)
      quiet_->Log("refused: [" + r.section + "] " + r.key + "=" + r.value + " (" + r.item +
                  ": network or device location)");
  }
  if (!outcome.report.refused.empty()) Fail(kExitEntryRefused);
  if (!flags.autoApplyMode) {
    Fail(kExitNotApplied);  // quiet without "/a": nobody is there to press Apply
    PostMessageA(hwnd(), WM_CLOSE, 0, 0);
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
