// The main window's commands: the bottom buttons, menus and toolbar, and context help.
#include "app/Main.h"

#include "app/ApplyRun.h"
#include "app/CommandLine.h"
#include "app/Undo.h"
#include "apply/Journal.h"
#include "app/Shell.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "ui/frmPrompt.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"

namespace vx {

// --- commands -------------------------------------------------------------------------------------

bool Main::applyEnabled() const { return IsWindowEnabled(GetDlgItem(hwnd(), IDC_APPLY)) != FALSE; }

void Main::cmdApply_Click() {
  if (busy()) return;
  BusyScope busy(*this);
  ui::MousePointer wait(ui::MousePointer::kHourglass);
  const IconLists lists = Lists();
  const ListBoxValues values(lists);
  ApplyInput input = MakeApplyInput(values);
  Journal journal(JournalPath(), Journal::kApply);
  journal.goOnWithout = [] { return modMsgbox::JournalUnwritable() == modMsgbox::YesNo::Yes; };
  input.journal = &journal;
  input.stop = [this] { return endingSession(); };
  lastApply_ = RunApply(input, flags);
  if (lastApply_.notStarted) {
    if (quiet_) {
      quiet_->Log("the journal could not be written: nothing applied; exit code " + std::to_string(kExitNoJournal));
      Fail(kExitNoJournal);
    }
    return;
  }
  // A run that stopped leaves its changes pending, so Apply can be pressed again.
  if (!lastApply_.stopped) EnableWindow(control(IDC_APPLY), FALSE);
  ReportFailures(lastApply_);
  if (!lastApply_.stopped && !HeldBackItems(env_, catalogue_, values).empty()) {
    // What only an administrator may write is still pending here, unless it goes on elevated.
    EnableApply();
    if (OfferAdministrator(values)) {
      EnableWindow(control(IDC_APPLY), FALSE);
      PostMessageA(hwnd(), WM_CLOSE, 0, 0);
    }
  }
}

ApplyInput Main::MakeApplyInput(const ListValues& values) {
  return ApplyInput{env_,
                    catalogue_,
                    values,
                    currentTheme_,
                    [this] { return SettingsStage(); },
                    [this] { return BitmapThumbnailState(settings_->model()); },
                    [this] { RefreshFolderTree(); }};
}

void Main::cmdOK_Click() {
  if (applyEnabled()) cmdApply_Click();
  cmdCancel_Click();
}

void Main::cmdCancel_Click() { PostMessageA(hwnd(), WM_CLOSE, 0, 0); }

void Main::cmdHelp_Click() { ui::GetSeam().ShellOpen(hwnd(), ui::AppHelpFile()); }

void Main::OnCommand(int id) {
  // A command that reached the window while Apply, an undo or a theme load runs (queued before the
  // window was disabled) is dropped: none of them may start inside another.
  if (busy()) return;
  switch (id) {
    case IDOK: cmdOK_Click(); break;
    case IDCANCEL: cmdCancel_Click(); break;
    case IDC_APPLY: cmdApply_Click(); break;
    case IDC_HELPBTN: case IDM_HELP_CONTENTS: cmdHelp_Click(); break;
    case IDC_CHANGE: cmdChange_Click(*this); break;
    case IDC_DEFAULT: cmdDefault_Click(*this); break;
    case IDC_RENAME: cmdRename_Click(*this); break;
    case IDT_BACK: if (CurrentTab() > 1) SelectTab(CurrentTab() - 1); break;
    case IDT_FORWARD: if (CurrentTab() < kTabCount) SelectTab(CurrentTab() + 1); break;
    case IDM_FILE_OPEN: OpenTheme("", false); break;
    case IDM_FILE_SAVE: SaveTheme(); break;
    case IDM_FILE_SAVEAS: SaveThemeAs(); break;
    case IDM_FILE_REBUILD: {
      ui::MousePointer wait(ui::MousePointer::kHourglass);
      RebuildIconCache();
      break;
    }
    case IDM_FILE_EXIT: PostMessageA(hwnd(), WM_CLOSE, 0, 0); break;
    case IDM_TOOLS_RESTORE_SETTINGS: RestoreAllSettings(); break;
    case IDM_TOOLS_RESTORE_ICONS: RestoreAllIcons(); break;
    case IDM_TOOLS_RESTORE_POINTERS: RestoreAllPointers(); break;
    case IDM_TOOLS_UNDO:
      if (CanUndoLastApply()) UndoLastApply();
      break;
    case IDM_TOOLS_REVIEW: ReviewChanges(); break;
    case IDM_HELP_WHATSTHIS: EnterContextHelp(); break;
    case IDM_HELP_ABOUT: ShowAbout(hwnd()); break;
    case IDT_NEXT_TAB: if (CurrentTab() < kTabCount) SelectTab(CurrentTab() + 1); break;
    case IDT_PREV_TAB: if (CurrentTab() > 1) SelectTab(CurrentTab() - 1); break;
    case IDM_WEB_EMAIL: ui::GetSeam().ShellOpen(hwnd(), kAuthorMail); break;
    case IDM_WEB_HOME: ui::GetSeam().ShellOpen(hwnd(), kHomePage); break;
    case IDM_WEB_THEMES: ui::GetSeam().ShellOpen(hwnd(), std::string(kHomePage) + "/themes.htm"); break;
    default:
      if (id >= IDM_FILE_RECENT1 && id < IDM_FILE_RECENT1 + 4)
        OpenTheme(modRegistry::GetString(kThemesKey, std::to_string(id - IDM_FILE_RECENT1 + 1)), false);
      break;
  }
}

// Context help: the pointer becomes the help pointer until the next click, which shows the help of
// the control under it; Escape, a right click or any command ends the mode without help.
void Main::EnterContextHelp() {
  contextHelp_ = true;
  SetCapture(hwnd());
  SetCursor(LoadCursorA(nullptr, IDC_HELP));
}

void Main::EndContextHelp(POINT pt, bool show) {
  contextHelp_ = false;
  ReleaseCapture();
  SetCursor(LoadCursorA(nullptr, IDC_ARROW));
  if (!show) return;
  // Down to the deepest visible control under the point, disabled ones included (WindowFromPoint
  // would pass over a disabled button, and its help is wanted all the same).
  HWND target = hwnd();
  for (;;) {
    POINT local = pt;
    ScreenToClient(target, &local);
    HWND child = ChildWindowFromPointEx(target, local, CWP_SKIPINVISIBLE | CWP_SKIPTRANSPARENT);
    if (!child || child == target) break;
    target = child;
  }
  for (HWND w = target; w && w != hwnd(); w = GetParent(w)) {
    if (unsigned topic = HelpTopicOf(GetDlgCtrlID(w))) {
      ui::GetSeam().OpenHelp(hwnd(), ui::AppHelpFile(), HELP_CONTEXTPOPUP, std::to_string(topic));
      return;
    }
  }
}

}  // namespace vx
