#pragma once
// Main: the one window of the program. It owns the run: the environment, the icon lists, the
// run-wide flags and the preferences, and its handlers (named after the control and event they
// serve) stay short, handing the work to the icon, settings and theme routines.
#include <windows.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "app/ApplyRun.h"
#include "app/Preferences.h"
#include "apply/Executor.h"
#include "apply/RunFlags.h"
#include "icons/Catalogue.h"
#include "icons/IconEdits.h"
#include "settings/SettingsTree.h"
#include "system/Environment.h"
#include "ui/FolderTree.h"
#include "ui/ListBoxIcons.h"
#include "ui/Splitter.h"
#include "ui/win.h"

namespace vx {

class QuietRun;
struct OpenOutcome;

class Main : public ui::Window, public EditHost {
 public:
  static constexpr int kTabCount = 9;
  // The design position and size of the window, in pixels.
  static constexpr int kDesignLeft = 120, kDesignTop = 80, kClientWidth = 540, kClientHeight = 456;

  Main();
  ~Main() override;

  // Creates the window and runs Form_Load (which shows it). quitOnClose ends the message loop when
  // the window goes away (the program's own window; tests make several).
  bool Create(const Environment& env, const std::string& commandLine, bool quitOnClose = true);

  // --- handlers -----------------------------------------------------------------------------------
  void Form_Load();
  bool Form_QueryUnload();  // true cancels the closing
  void Form_Unload();
  void TabStrip_Click();
  void cmdApply_Click();
  void cmdOK_Click();
  void cmdCancel_Click();
  void cmdHelp_Click();
  void OnCommand(int id);  // menus, toolbar, buttons
  void SetCurrentTheme(const std::string& pathOrLoad);  // the current-theme routine
  void SetRecentThemes(const std::string& path);        // the recent-themes routine
  void SetToolbarStyle(bool textBeside);                // the toolbar style routine
  void SelectTab(int tab);                              // selects tab 1..9 as a click would

  // The theme commands (MainThemes.cpp). OpenTheme from the command line also handles "/a".
  void OpenTheme(const std::string& path, bool fromCommandLine);
  void SaveTheme();
  void SaveThemeAs();
  // A run started with "/q": set before Create. The window is never shown, and no prompt waits.
  void SetQuietRun(QuietRun* run) { quiet_ = run; }
  // The exit code of a run started with "/a" or "/q" (CommandLine.h); 0 for an ordinary run.
  int exitCode() const { return exitCode_; }
  // Whether the theme named on the command line was dealt with (opened, applied or refused).
  bool commandLineHandled() const { return commandLineHandled_; }
  // Started with "/n": the theme is opened to be looked at, and nothing at all is written.
  bool reviewOnly() const { return reviewOnly_; }

  // The Tools menu: each puts the defaults in as pending edits; nothing is written before Apply.
  void RestoreAllSettings();
  void RestoreAllIcons();
  void RestoreAllPointers();

  // Taking an Apply back and looking at one before it is made (journal, undo, preview).
  void UndoLastApply();
  void ReviewChanges();
  void OfferRecovery();  // at start, when the last Apply was cut off
  void ReloadIcons();    // the lists read again from the system (after an undo)
  // After an Apply without administrator rights that left items kept for every user out: offers to
  // start again elevated with them saved as a theme that opens pending. True when it started.
  bool OfferAdministrator(const ListValues& values);
  // The theme that carries such items over (in the program's own folder of the user's profile).
  static std::string PendingThemePath();
  // What Apply reads and how it runs, for Apply and Review Changes alike.
  ApplyInput MakeApplyInput(const ListValues& values);

  // --- state, read by tests and the other routines --------------------------------------------------
  const Environment& environment() const { return env_; }
  const RecentMenu& recentMenu() const { return recent_; }
  HMENU fileMenu() const;
  HWND toolbar() const { return toolbar_; }
  HWND tabStrip() const { return tab_; }
  HWND control(int id) const { return GetDlgItem(hwnd(), id); }
  const std::string& currentThemePath() const { return currentTheme_; }
  bool applyEnabled() const;
  ui::FolderTree& folderTree() { return folderTree_; }
  SettingsTree& settingsTree() { return *settings_; }
  int treeWidthTwips() const { return treeWidth_; }
  void SetTreeWidthTwips(int twips);
  // What the last Apply replaced, so it can be put back exactly, and which of its steps failed.
  const UndoRecord& lastUndo() const { return lastApply_.undo; }
  const ApplyResult& lastApply() const { return lastApply_; }
  // The icon lists by tab, as Apply and the themes read them.
  IconLists Lists() const;

  // Run-wide flags.
  RunFlags flags;

  // --- EditHost ----------------------------------------------------------------------------------------
  HWND Owner() override { return hwnd(); }
  const Environment& Env() override { return env_; }
  const std::vector<IconItem>& Catalogue() override { return catalogue_; }
  int CurrentTab() override;
  ui::ListBoxIcons* List(int tab) override;
  std::string InfoBar() override;
  void SetInfoBar(const std::string& text) override;
  void EnableDefault(bool on) override;
  void EnableRename(bool on) override;
  void EnableApply() override;
  void SetRebuildCachePending() override { flags.rebuildCachePending = true; }
  std::string ExplorerPath() override;
  void RefreshFolderTree() override;
  void FocusFolderTree() override;
  void lstbxExplorer_Click() override;  // selection changed in the folder tree
  void RebuildIconCache() override;     // also the File menu's and the toolbar's command

 // While Apply, an undo or a theme load runs, the window takes no input (no second Apply inside the
  // first, no closing under it); prompts raised meanwhile are owned by it.
  class BusyScope {
   public:
    explicit BusyScope(Main& main);
    ~BusyScope();
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

   private:
    Main& main_;
    bool wasEnabled_;
  };
  bool busy() const { return busy_ > 0; }
  // The session is ending: a run in progress stops at the next step boundary.
  bool endingSession() const { return endingSession_; }

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;

 private:
  void CreateControls();
  void CreateMenus();
  void CreateToolbar();
  void LayoutPanes();
  void ShowPaneOf(int tab);
  void RebuildRecentMenu();
  void RestorePosition();
  void CreateSettingsPage();
  void FillSettingsTree();
  Plan SettingsStage();
  void RestoreTab(int tab);  // Default Icon over every item of a tab, its selection kept
  void EnsureFolderTree();
  LRESULT OnNotify(const NMHDR* hdr);
  void OnSplitterMove(int x);
  void EnterContextHelp();
  void EndContextHelp(POINT screenPoint, bool show);
  void SaveThemeFile(bool saveAs);
  void FinishCommandLine(const OpenOutcome& outcome);
  bool RefuseRemoteTheme(const std::string& path);
  void Fail(int exitCode);

  Environment env_;
  std::string commandLine_;
  bool quitOnClose_ = true;
  std::vector<IconItem> catalogue_;
  std::array<std::unique_ptr<ui::ListBoxIcons>, 10> lists_{};
  std::unique_ptr<ui::Window> paneWindow_, toolbarHostWindow_;
  ui::FolderTree folderTree_;
  ui::Splitter splitter_;
  std::unique_ptr<SettingsTree> settings_;
  HWND toolbarHost_ = nullptr, toolbar_ = nullptr, tab_ = nullptr, pane_ = nullptr, settingsTree_ = nullptr;
  HMENU menu_ = nullptr;
  HFONT font_ = nullptr;
  ui::ImageListHandle toolbarImages_;
  RecentMenu recent_;
  std::string currentTheme_;
  int treeWidth_ = 3375;  // folder tree width in twips
  bool closing_ = false;
  bool contextHelp_ = false;
  ApplyResult lastApply_;
  QuietRun* quiet_ = nullptr;
  int exitCode_ = 0;
  bool commandLineHandled_ = false;
  bool reviewOnly_ = false;
  std::string commandLineTheme_;  // the theme the command line opened, "" when none was
  int busy_ = 0;
  bool endingSession_ = false;
};

// After an Apply or an undo in which steps failed: one prompt that names them in the user's words.
void ReportFailures(const ApplyResult& result);

// Creates the main window, runs the message loop and returns the exit code.
int RunMain(const std::string& commandLine, int show);

}  // namespace vx
