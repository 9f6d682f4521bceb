#pragma once
// The edit commands under the icon lists: Change, Default Icon and Rename, and the list events that
// drive the button states. Except on the Explorer tab they never touch the system: an edit changes
// the item inside its list, and Apply later writes every item as it stands.
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "icons/Catalogue.h"
#include "system/Environment.h"

namespace ui {
class ListBoxIcons;
}

namespace vx {

// What the edit commands need from the main window.
class EditHost {
 public:
  virtual ~EditHost() = default;
  virtual HWND Owner() = 0;
  virtual const Environment& Env() = 0;
  virtual const std::vector<IconItem>& Catalogue() = 0;
  virtual int CurrentTab() = 0;
  virtual ui::ListBoxIcons* List(int tab) = 0;  // nullptr for tabs 1 and 8
  virtual std::string InfoBar() = 0;
  virtual void SetInfoBar(const std::string& text) = 0;
  virtual void EnableDefault(bool on) = 0;
  virtual void EnableRename(bool on) = 0;
  virtual void EnableApply() = 0;
  virtual void SetRebuildCachePending() = 0;
  virtual std::string ExplorerPath() = 0;  // the folder tree's selected path
  virtual void RefreshFolderTree() = 0;
  virtual void FocusFolderTree() = 0;
  virtual void lstbxExplorer_Click() = 0;  // shows the folder tree selection's icon in the info bar
  virtual void RebuildIconCache() = 0;     // at once, with its notice
};

inline constexpr const char* kDefaultCursorText = "Windows Default Cursor";

void lstbxIcons_Click(EditHost& host, int tab);
void lstbxIcons_KeyDown(EditHost& host, int tab, int keyCode, int shift);
void lstbxIcons_DblClick(EditHost& host, int tab);  // Pause(0.1f), then cmdChange_Click
void cmdChange_Click(EditHost& host);
void cmdDefault_Click(EditHost& host);
void cmdRename_Click(EditHost& host);

// Waits the given number of seconds on the seconds-since-midnight timer, yielding to the message loop.
void Pause(float seconds);

// The key table: Change acts only on keys in the current tab's row, Default Icon only on keys of its
// own rows (the same but for "Zip File", which has no default).
bool ChangeableOn(int tab, const std::string& key);
bool RestorableOn(int tab, const std::string& key);

// The location being edited, split from the info bar by the last Change (file left of the last
// comma, index right of it; a text without a comma empties the file and keeps the index).
const std::string& CurrentIconFile();
int16_t CurrentIconIndex();

}  // namespace vx
