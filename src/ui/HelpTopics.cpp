#include "ui/HelpTopics.h"

#include <windows.h>

#include <cctype>
#include <cstdlib>
#include <map>

namespace ui {

const std::vector<HelpTopic>& HelpTopics() {
  // One row per number. Controls of the main window (1000-1110, 1200 + tab for the icon lists), the
  // settings of the Shell tab (23-62, 74 for the tree itself) and the rebuild notice (4600).
  static const std::vector<HelpTopic> topics = {
      // The main window.
      {1000, "window.html#tabs",
       "The tabs. Each one shows a kind of thing you can change: the Shell settings, the icons of the "
       "Desktop, the Start menu, Folders, Drives, Others and System, single folders and drives (Explorer) "
       "and the mouse Pointers. Ctrl+Tab moves to the next tab."},
      {1010, "window.html#info-bar",
       "Where the selected icon comes from: the file that holds it and, after the comma, its number in "
       "that file."},
      {1020, "window.html#change",
       "Chooses a new icon (on the Pointers tab, a pointer file) for the selected item. Nothing reaches "
       "Windows until you press Apply or OK, except on the Explorer tab, where a folder's or drive's icon "
       "is written at once."},
      {1030, "window.html#default-icon",
       "Puts the selected item back to the icon Windows came with. Like Change it waits for Apply; on the "
       "Explorer tab it removes the folder's or drive's own icon at once."},
      {1040, "window.html#rename",
       "Gives the selected item a new name, for example \"Recycle Bin\" or \"My Computer\". Only the items "
       "that Windows lets you rename can be renamed; the new name is written on Apply."},
      {1050, "window.html#ok", "Applies the changes that are still pending, then closes Vexillor."},
      {1060, "window.html#cancel",
       "Closes Vexillor without writing the changes that are still pending. Changes you have already "
       "applied stay."},
      {1070, "window.html#apply",
       "Writes every pending change to Windows and asks the shell to show it. It is available only while "
       "something is pending."},
      {1080, "window.html#help", "Opens the help: this program's contents page in your web browser."},
      {1090, "shell.html",
       "The Shell settings. Double-click a setting, or select it and press the space bar, to switch it on "
       "or off; click a number setting to change its value. Right-click a setting and choose What's This? "
       "for its own help."},
      {1100, "explorer.html",
       "Your folders and drives. Select one and press Change to give it an icon of its own; Default Icon "
       "takes it away again. These changes are written at once, without Apply."},
      {1110, "window.html#toolbar",
       "Shortcuts to menu commands: open and save a theme, the previous and next tab, rebuild the icon "
       "cache, restore all icons, the web pages, help and Exit. Point at a button to see its name."},
      {1202, "desktop.html",
       "The icons of the desktop items: My Computer, the Recycle Bin (empty and full), Network "
       "Neighborhood and the others. Double-click an item to change its icon."},
      {1203, "start.html",
       "The icons of the Start menu's own entries: Programs, Documents, Settings, Find, Help, Run, Shut "
       "Down and the others. Double-click an item to change its icon."},
      {1204, "folders.html",
       "The icons of every folder (closed and open), of program groups and of the special folders such as "
       "Control Panel and Printers. Double-click an item to change its icon."},
      {1205, "drives.html",
       "The icons of each kind of drive: floppy, hard, network, CD-ROM, removable and RAM drives. "
       "Double-click an item to change its icon."},
      {1206, "others.html",
       "The shortcut arrow and sharing hand drawn over icons, and the icons of the desktop, the network, "
       "workgroups, computers and audio CDs. Double-click an item to change its icon."},
      {1207, "system.html",
       "The icons of document types (text, pictures, sound, video and others) and of files that have no "
       "type of their own. Double-click an item to change its icon."},
      {1209, "pointers.html",
       "The fifteen mouse pointers of Windows. Double-click a pointer to choose a cursor file (.cur or .ani) "
       "for it."},
      // The settings of the Shell tab.
      {23, "shell.html#beep-on-errors",
       "On: Windows beeps when a program reports an error or you click outside a message box. Off: the "
       "default beep is silent. Takes effect at once."},
      {25, "shell.html#bitmap-thumbnail",
       "On: bitmap (.bmp) files show a small copy of their own picture as their icon, instead of the Paint "
       "icon. The icon cache is rebuilt when you apply it."},
      {26, "shell.html#non-blinking-cursor",
       "On: the text cursor stops blinking. Programs started afterwards use the new rate."},
      {27, "shell.html#smooth-scrolling", "On: list boxes and Explorer windows slide smoothly when they scroll."},
      {28, "shell.html#window-animation",
       "On: windows zoom to and from the taskbar when they are minimised and restored. Takes effect at once."},
      {29, "shell.html#save-settings-on-exit",
       "On: Windows remembers open folder windows and desktop icon positions when you shut down. Off sets "
       "the policy that stops it."},
      {30, "shell.html#shortcut-to-prefix",
       "On: new shortcuts are named \"Shortcut to ...\". Off: they carry just the name of what they point "
       "to. Takes effect after Windows restarts."},
      {31, "shell.html#explore-from-here",
       "On: folders get an \"Explore From Here\" command on their right-click menu, which opens Explorer "
       "with that folder as the top of its tree."},
      {33, "shell.html#command-prompt-from-here",
       "On: folders get a \"Command Prompt From Here\" command on their right-click menu, which opens an "
       "MS-DOS prompt in that folder."},
      {34, "shell.html#quick-view",
       "On: every file gets the Quick View command on its right-click menu (where Quick View is installed)."},
      {35, "shell.html#note-pad",
       "On: every file gets a \"Notepad\" command on its right-click menu, which opens it in Notepad."},
      {36, "shell.html#large-icons",
       "On: the shell draws its icons at 48 by 48 pixels instead of 32. The icon cache is rebuilt when you "
       "apply it."},
      {37, "shell.html#all-colours",
       "On: the shell shows icons with all their colours instead of 16. Needs a display of more than 256 "
       "colours, and takes effect after Windows restarts."},
      {38, "shell.html#wrap-icon-titles",
       "On: long icon names wrap onto more lines instead of being cut short. Takes effect at once."},
      {39, "shell.html#swap-mouse-buttons",
       "On: the right mouse button becomes the main button, for left-handed use. Takes effect at once."},
      {40, "shell.html#double-click-area",
       "How far, in pixels, the mouse may move between the two clicks of a double-click (1 to 32)."},
      {41, "shell.html#double-click-speed",
       "The longest time, in milliseconds, between the two clicks of a double-click (up to 900)."},
      {42, "shell.html#drag",
       "How far, in pixels, the mouse must move with a button held down before a drag begins (1 to 32)."},
      {43, "shell.html#font-smoothing",
       "On: the edges of screen fonts are smoothed. One of the Plus! settings: available with Microsoft "
       "Plus! or on Windows NT."},
      {44, "shell.html#full-window-dragging",
       "On: a window's contents move with it while you drag it, instead of an outline. A Plus! setting."},
      {45, "shell.html#stretch-wallpaper",
       "On: the desktop wallpaper is stretched to fill the screen. A Plus! setting; the desktop is redrawn "
       "at once."},
      {46, "network.html#hide-network-neighborhood",
       "On: the Network Neighborhood icon leaves the desktop, and with it the shell's support for network "
       "paths such as \\\\server\\share. Takes effect after Windows restarts."},
      {47, "network.html#entire-network",
       "On: Network Neighborhood no longer shows the \"Entire Network\" item, so only your own workgroup "
       "can be browsed."},
      {48, "network.html#workgroup-contents",
       "On: Network Neighborhood no longer lists the computers of your workgroup."},
      {49, "shell.html#disable-desktop",
       "On: the desktop shows no icons at all. Read the warning first: with Internet Explorer 4 this can be "
       "hard to undo. Takes effect after Windows restarts."},
      {50, "shell.html#hide-drives",
       "On: My Computer and Explorer show none of the drives A to Z. The drives still work from programs and "
       "the Run command."},
      {51, "shell.html#remove-settings-folders",
       "On: the Start menu's Settings entry no longer shows Control Panel and Printers."},
      {52, "shell.html#remove-settings-taskbar",
       "On: the Start menu's Settings entry no longer shows Taskbar, so the taskbar's properties cannot be "
       "opened from there."},
      {53, "shell.html#remove-find", "On: the Find command leaves the Start menu, and F3 no longer opens it."},
      {54, "shell.html#remove-run", "On: the Run command leaves the Start menu."},
      {55, "shell.html#disable-shut-down",
       "On: the Shut Down command leaves the Start menu and cannot be used. Turn it off again in Vexillor "
       "before you need it."},
      {56, "shell.html#menu-show-delay",
       "How long, in milliseconds, a cascading menu waits before it opens under the pointer (up to 9999). "
       "Takes effect after Windows restarts."},
      {57, "shell.html#delay-until-clicked",
       "On: cascading menus open only when you click them, not when the pointer rests on them."},
      {58, "shell.html#wallpaper-origin",
       "Where, in pixels from the top left of the screen, the first tile of the desktop wallpaper starts."},
      {59, "shell.html#my-computer-menu",
       "On: My Computer's right-click menu gets a \"Vexillor...\" command that starts this program."},
      {60, "shell.html#splash-screen",
       "This version starts straight into its window and shows no splash screen, so there is nothing to "
       "switch."},
      {61, "shell.html#restore-active-tab",
       "On: Vexillor opens at the tab you were on when you last closed it."},
      {62, "shell.html#restore-window-position",
       "On: Vexillor opens where you left its window last time."},
      {74, "shell.html",
       "The Shell settings. Double-click a setting, or select it and press the space bar, to switch it on "
       "or off. Right-click a setting and choose What's This? for its own help."},
      // Prompts.
      {4600, "icon-cache.html",
       "Windows keeps the icons it has drawn in a cache and sometimes goes on showing the old ones. "
       "Rebuild Icon Cache on the File menu makes it draw them again."},
  };
  return topics;
}

const std::vector<HelpKeyword>& HelpKeywords() {
  static const std::vector<HelpKeyword> keywords = {
      {"Icon Cache", "icon-cache.html"},
      {"Hide, Network Neighborhood", "network.html"},
      {"Introduction, Explorer", "explorer.html"},
      {"Themes", "themes.html"},
      {"Command Line", "command-line.html"},
      {"Undo", "undo.html"},
  };
  return keywords;
}

const HelpTopic* FindHelpTopic(unsigned number) {
  if (number > kNoEffectTopics) {
    // Made once per topic and kept for the run, so the pointer stays good.
    static std::map<unsigned, std::pair<HelpTopic, std::string>> noted;
    auto found = noted.find(number);
    if (found == noted.end()) {
      const HelpTopic* base = FindHelpTopic(number - kNoEffectTopics);
      if (!base) return nullptr;
      found = noted.emplace(number, std::pair{*base, std::string(base->popup) + "\n\n" + kNoEffectNote}).first;
      found->second.first.number = number;
      found->second.first.popup = found->second.second.c_str();
    }
    return &found->second.first;
  }
  for (const auto& t : HelpTopics())
    if (t.number == number) return &t;
  return nullptr;
}

namespace {

bool StartsWithNoCase(const std::string& text, const std::string& start) {
  if (start.size() > text.size()) return false;
  for (size_t i = 0; i < start.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(start[i])))
      return false;
  return true;
}

std::string FolderOf(const std::string& path) {
  size_t slash = path.find_last_of("\\/");
  return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

// A path as a file: address. Only what an address cannot carry is escaped; bytes above 127 are
// escaped as they are, which is how the shell reads an ANSI path back.
std::string FileUrl(const std::string& path) {
  static const char hex[] = "0123456789ABCDEF";
  std::string url = "file:///";
  for (unsigned char c : path) {
    if (c == '\\') {
      url += '/';
    } else if (c <= ' ' || c >= 127 || c == '%' || c == '#' || c == '?' || c == '"' || c == '<' || c == '>') {
      url += '%';
      url += hex[c >> 4];
      url += hex[c & 15];
    } else {
      url += static_cast<char>(c);
    }
  }
  return url;
}

}  // namespace

std::string HelpPageOfKeyword(const std::string& keyword) {
  if (!keyword.empty())
    for (const auto& k : HelpKeywords())
      if (StartsWithNoCase(k.keyword, keyword)) return k.page;
  return kHelpContentsPage;
}

std::string HelpTarget(const std::string& helpFile, const std::string& page) {
  const size_t hash = page.find('#');
  const std::string path = FolderOf(helpFile) + page.substr(0, hash);
  if (hash == std::string::npos) return path;
  return FileUrl(path) + page.substr(hash);
}

std::string HelpRequestTarget(const std::string& helpFile, unsigned command, const std::string& keyword) {
  switch (command) {
    case HELP_CONTEXT:
    case HELP_CONTEXTPOPUP: {
      char* end = nullptr;
      unsigned long n = std::strtoul(keyword.c_str(), &end, 10);
      const HelpTopic* t = (end && *end == '\0' && !keyword.empty()) ? FindHelpTopic(static_cast<unsigned>(n)) : nullptr;
      return HelpTarget(helpFile, t ? t->page : kHelpContentsPage);
    }
    case HELP_KEY:
    case HELP_PARTIALKEY:
      return HelpTarget(helpFile, HelpPageOfKeyword(keyword));
    default:
      return HelpTarget(helpFile, kHelpContentsPage);
  }
}

}  // namespace ui
