#include "app/Main.h"

#include <commctrl.h>

#include "app/CommandLine.h"
#include "app/Undo.h"
#include "app/Shell.h"
#include "app/Undo.h"
#include "app/Usage.h"
#include "registry/modCommon.h"
#include "registry/modRegistry.h"
#include "resource.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"

namespace vx {
namespace {
constexpr const char* kClassName = "VexillorMain";
}  // namespace

Main::Main() = default;

Main::BusyScope::BusyScope(Main& main) : main_(main), wasEnabled_(IsWindowEnabled(main.hwnd()) != FALSE) {
  if (main_.busy_++ == 0 && wasEnabled_) EnableWindow(main_.hwnd(), FALSE);
}

Main::BusyScope::~BusyScope() {
  if (--main_.busy_ == 0 && wasEnabled_) EnableWindow(main_.hwnd(), TRUE);
}

Main::~Main() {
  if (hwnd() && modMsgbox::Owner() == hwnd()) {
    modMsgbox::SetOwner(nullptr);
    modRegistry::SetErrorOwner(nullptr);
  }
  Destroy();
  if (font_) DeleteObject(font_);
}

bool Main::Create(const Environment& env, const std::string& commandLine, bool quitOnClose) {
  env_ = env;
  commandLine_ = commandLine;
  reviewOnly_ = ParseCommandLine(commandLine).action == CommandLine::Review;
  quitOnClose_ = quitOnClose;
  RECT r{0, 0, kClientWidth, kClientHeight};
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  const DWORD exStyle = WS_EX_CONTROLPARENT;
  AdjustWindowRectEx(&r, style, TRUE, exStyle);
  HICON icon = LoadIconA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDI_PROGRAM));
  if (!ui::Window::Create(kClassName, exStyle, style, "Vexillor", kDesignLeft, kDesignTop, r.right - r.left,
                          r.bottom - r.top, nullptr, nullptr, CS_DBLCLKS,
                          reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1), icon))
    return false;
  modMsgbox::SetOwner(hwnd());
  modRegistry::SetErrorOwner(hwnd());
  CreateMenus();
  CreateControls();
  Form_Load();
  return true;
}

// --- start-up and shut-down ---------------------------------------------------------------------------

IconLists Main::Lists() const {
  IconLists lists{};
  for (size_t i = 0; i < lists_.size(); ++i) lists[i] = lists_[i].get();
  return lists;
}

void Main::Form_Load() {
  // Every step runs on its own, inside the same catch-all as the window procedures: a failing one
  // leaves the design state and the next goes on.
  ui::Guarded([&] { catalogue_ = Add_Icons(env_, Lists()); });
  // Each list starts with its first row selected, so every tab shows where the keyboard is.
  for (auto& list : lists_)
    if (list && list->Count() > 0) ui::Guarded([&] { list->SelItemIndex(0); });
  ui::Guarded([&] { SetToolbarStyle(false); });
  if (!commandLine_.empty()) {
    ui::Guarded([&] { OpenTheme(commandLine_, true); });
  } else {
    ui::Guarded([&] { RestorePosition(); });
  }
  // A "/n" run writes nothing, and the recent themes are written as they are shown.
  if (!reviewOnly_) ui::Guarded([&] { SetCurrentTheme("load"); });
  // A quiet run, and one that applied a theme from the command line and is closing, never show it.
  if (!quiet_ && !flags.autoApplyMode) ShowWindow(hwnd(), SW_SHOW);
  UpdateWindow(hwnd());
  ui::Guarded([&] {
    const int32_t active = modRegistry::GetDword(kSettingsKey, "Active Tab");
    SelectTab(active == 0 || active == modRegistry::kDwordError || active < 1 || active > kTabCount ? kTabDesktop
                                                                                                       : active);
  });
  // The theme's path, not the command's text: "/a C:\x.vxtheme" is no theme to open again.
  if (!reviewOnly_) ui::Guarded([&] { SetRecentThemes(commandLineTheme_); });
  // An Apply that was cut off (the program killed, the power gone) is offered back first thing.
  if (!flags.autoApplyMode && !reviewOnly_) ui::Guarded([&] { OfferRecovery(); });
}

bool Main::Form_QueryUnload() {
  if (!applyEnabled()) return false;
  switch (modMsgbox::SaveBeforeClosing()) {
    case modMsgbox::SaveAnswer::Cancel:  // stay open, changes still pending
      return true;
    case modMsgbox::SaveAnswer::Yes:  // apply, then close
      cmdApply_Click();
      return false;
    case modMsgbox::SaveAnswer::No:  // close without applying
      break;
  }
  return false;
}

void Main::Form_Unload() {
  if (flags.restartLater) modMsgbox::RestartLater();
  if (modRegistry::GetDword(kSettingsKey, "Active Tab") != 0)
    modRegistry::SaveDword(kSettingsKey, "Active Tab", CurrentTab());
  // The selected node's key, not its text: numeric nodes show "Width" but are keyed "Drag Width".
  if (settings_ && settings_->NodeCount() >= 2) {
    const std::string key = settings_->SelectedKey();
    if (!key.empty()) modRegistry::SaveString(kSettingsKey, "Selected", key);
  }
  RECT r;
  GetWindowRect(hwnd(), &r);
  modRegistry::SaveString(kSettingsKey, "Left", FormatTwips(r.left * ui::TwipsPerPixelX()));
  modRegistry::SaveString(kSettingsKey, "Top", FormatTwips(r.top * ui::TwipsPerPixelY()));
}

// --- messages ---------------------------------------------------------------------------------------

LRESULT Main::OnNotify(const NMHDR* hdr) {
  if (hdr->idFrom == IDC_TABSTRIP && hdr->code == TCN_SELCHANGE) {
    TabStrip_Click();
    return 0;
  }
  if (hdr->code == TTN_GETDISPINFOA) {
    auto* info = reinterpret_cast<NMTTDISPINFOA*>(const_cast<NMHDR*>(hdr));
    for (const auto& b : ToolbarButtons())
      if (b.caption && static_cast<UINT_PTR>(b.command) == hdr->idFrom) info->lpszText = const_cast<char*>(b.caption);
    return 0;
  }
  return 0;
}

LRESULT Main::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_COMMAND:
      if (contextHelp_) {
        EndContextHelp({}, false);
        return 0;
      }
      OnCommand(LOWORD(wp));
      return 0;
    case WM_MOUSEMOVE:
      if (contextHelp_) SetCursor(LoadCursorA(nullptr, IDC_HELP));
      return 0;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
      if (contextHelp_) {
        POINT pt{static_cast<short>(LOWORD(lp)), static_cast<short>(HIWORD(lp))};
        ClientToScreen(hwnd(), &pt);
        EndContextHelp(pt, msg == WM_LBUTTONDOWN);
      }
      return 0;
    case WM_KEYDOWN:
      if (contextHelp_ && wp == VK_ESCAPE) EndContextHelp({}, false);
      return 0;
    case WM_CAPTURECHANGED:
      if (contextHelp_ && reinterpret_cast<HWND>(lp) != hwnd()) contextHelp_ = false;
      return 0;
    case WM_NOTIFY:
      return OnNotify(reinterpret_cast<const NMHDR*>(lp));
    case WM_INITMENUPOPUP:
      // Undo Last Apply is there only when an Apply can be taken back.
      EnableMenuItem(menu_, IDM_TOOLS_UNDO, MF_BYCOMMAND | (CanUndoLastApply() ? MF_ENABLED : MF_GRAYED));
      return 0;
    case WM_QUERYENDSESSION:
      // A run in progress stops at its next step boundary, its journal consistent; the next start
      // offers to put it back.
      if (busy()) endingSession_ = true;
      return TRUE;
    case WM_CLOSE:
      if (closing_ || busy() || Form_QueryUnload()) return 0;
      closing_ = true;
      Form_Unload();
      // DestroyWindow itself (not Destroy, which detaches first) so WM_DESTROY still reaches us.
      DestroyWindow(hwnd());
      return 0;
    case WM_DESTROY:
      if (quitOnClose_) PostQuitMessage(0);
      return 0;
    default:
      return Default(msg, wp, lp);
  }
}

// --- the program ------------------------------------------------------------------------------------

namespace {

constexpr const char* kInstanceName = "Quenby.Vexillor.Running";
constexpr DWORD kQuietWaitMs = 60000;  // a quiet run waits this long for another Vexillor to finish

// One Vexillor at a time: two runs writing the same keys and the same journal would each undo the
// other's work. Held until the process ends.
class SingleInstance {
 public:
  SingleInstance() : mutex_(CreateMutexA(nullptr, TRUE, kInstanceName)) {
    owned_ = mutex_ && GetLastError() != ERROR_ALREADY_EXISTS;
  }
  ~SingleInstance() {
    if (owned_) ReleaseMutex(mutex_);
    if (mutex_) CloseHandle(mutex_);
  }
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;
  bool owned() const { return owned_ || !mutex_; }
  // Waits for the other one to end (or be killed).
  bool Wait(DWORD ms) {
    const DWORD r = WaitForSingleObject(mutex_, ms);
    owned_ = r == WAIT_OBJECT_0 || r == WAIT_ABANDONED;
    return owned_;
  }

 private:
  HANDLE mutex_;
  bool owned_ = false;
};

// A second start with a window brings the running one forward instead.
void ShowOtherInstance() {
  if (HWND other = FindWindowA("VexillorMain", nullptr)) {
    if (IsIconic(other)) ShowWindow(other, SW_RESTORE);
    SetForegroundWindow(GetLastActivePopup(other));
  }
}

}  // namespace

namespace {

// Switches that make no sense together: said where the caller will see it, and nothing is done.
int UsageError(const CommandLine& line, QuietRun* quiet) {
  if (quiet)
    quiet->Log("usage error: " + line.error + "; exit code " + std::to_string(kExitThemeNotOpened));
  else
    ShowUsageError(line.error);
  return kExitThemeNotOpened;
}

// "/n THEME": the theme opened as at any start, then what Apply would change listed (in the log when
// quiet). Nothing is written; the exit code says whether Apply would refuse entries or have nothing.
int FinishReview(Main& main, QuietRun* quiet) {
  if (main.applyEnabled()) ui::Guarded([&] { main.ReviewChanges(); });
  const int code = main.commandLineHandled() ? main.exitCode() : kExitThemeNotOpened;
  main.Destroy();
  if (quiet) quiet->Log("review finished; exit code " + std::to_string(code));
  return code;
}

}  // namespace

int RunMain(const std::string& text, int show) {
  (void)show;
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES | ICC_BAR_CLASSES | ICC_TAB_CLASSES | ICC_TREEVIEW_CLASSES};
  InitCommonControlsEx(&icc);
  const CommandLine commandLine = ParseCommandLine(text);
  // A quiet run answers every question itself and says what happened in its log and exit code.
  std::unique_ptr<QuietRun> quiet;
  if (commandLine.quiet) {
    quiet = std::make_unique<QuietRun>(DefaultLogPath());
    quiet->Log("started: " + text);
  }
  if (!commandLine.error.empty()) return UsageError(commandLine, quiet.get());
  if (commandLine.usage) return ShowUsage();
  if (quiet) {
    if (commandLine.theme.empty() && commandLine.action != CommandLine::Undo) {
      quiet->Log("no theme given; exit code " + std::to_string(kExitThemeNotOpened));
      return kExitThemeNotOpened;
    }
    ui::SetSeam(&quiet->seam());
    modRegistry::SetErrorReporter([&quiet](const std::string& message) { quiet->Log("error: " + message); });
  }
  SingleInstance instance;
  if (!instance.owned()) {
    if (!quiet) {
      // A plain start is answered by the window; "/a", "/n" or "/undo" did not run, and says so.
      ShowOtherInstance();
      return commandLine.action == CommandLine::Open && commandLine.theme.empty() ? kExitOk : kExitAlreadyRunning;
    }
    quiet->Log("another Vexillor is running: waiting for it to finish");
    if (!instance.Wait(kQuietWaitMs)) {
      quiet->Log("it did not finish; exit code " + std::to_string(kExitAlreadyRunning));
      ui::SetSeam(nullptr);
      return kExitAlreadyRunning;
    }
  }
  // A quiet run that finds an Apply or an Undo cut off puts it back before anything else, so that a
  // logon script never writes over the only record of what to put back. A review writes nothing.
  if (quiet && commandLine.action != CommandLine::Review && commandLine.action != CommandLine::Undo) {
    int code = kExitOk;
    ui::Guarded([&] {
      code = RecoverBeforeQuietRun(DetectEnvironment(), [&quiet](const std::string& line) { quiet->Log(line); });
    });
    if (code != kExitOk) {
      quiet->Log("finished; exit code " + std::to_string(code));
      ui::SetSeam(nullptr);
      return code;
    }
  }
  // "/undo": the last Apply taken back, without a window.
  if (commandLine.action == CommandLine::Undo) {
    int code = kExitNoWindow;
    ui::Guarded([&] { code = UndoFromCommandLine(DetectEnvironment(), quiet != nullptr); });
    if (quiet) {
      if (!JournalRefusal().empty()) quiet->Log("journal not run: " + JournalRefusal());
      quiet->Log("undo finished; exit code " + std::to_string(code));
      ui::SetSeam(nullptr);
    }
    return code;
  }
  Main main;
  main.SetQuietRun(quiet.get());
  bool created = false;
  ui::Guarded([&] { created = main.Create(DetectEnvironment(), text); });
  if (created && commandLine.action == CommandLine::Review) {
    const int code = FinishReview(main, quiet.get());
    if (quiet) ui::SetSeam(nullptr);
    return code;
  }
  if (!created) {
    if (quiet) quiet->Log("the window could not be created; exit code " + std::to_string(kExitNoWindow));
    return kExitNoWindow;
  }
  // Whatever went wrong while the theme was opened, a quiet run still ends on its own.
  if (quiet && !main.commandLineHandled()) {
    quiet->Log("the theme could not be opened; exit code " + std::to_string(kExitThemeNotOpened));
    PostMessageA(main.hwnd(), WM_CLOSE, 0, 0);
  }
  HACCEL accel = CreateMainAccelerators();
  MSG msg;
  while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
    if (main.hwnd() && TranslateAcceleratorA(main.hwnd(), accel, &msg)) continue;
    if (main.hwnd() && IsDialogMessageA(main.hwnd(), &msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  DestroyAcceleratorTable(accel);
  const int code = quiet && !main.commandLineHandled() ? kExitThemeNotOpened
                   : main.exitCode()                    ? main.exitCode()
                                                        : static_cast<int>(msg.wParam);
  if (quiet) {
    quiet->Log("finished; exit code " + std::to_string(code));
    ui::SetSeam(nullptr);
  }
  return code;
}

}  // namespace vx
