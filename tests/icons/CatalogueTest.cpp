// The catalogue of icon rows per edition, the rows that depend on the registry, and what each row
// shows for a stored location.
#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "IconFixtures.h"
#include "icons/Catalogue.h"
#include "registry/modRegistry.h"
#include "support/RegistryScope.h"
#include "ui/ListBoxIcons.h"

using modRegistry::SaveString;
using vx::BuildCatalogue;
using vx::IconItem;

namespace {

std::string KeysOn(const std::vector<IconItem>& items, int tab) {
  std::string keys;
  for (const auto& i : items)
    if (i.tab == tab) keys += (keys.empty() ? "" : "|") + i.key;
  return keys;
}

std::string DefaultOf(const std::vector<IconItem>& items, int tab, const std::string& key) {
  const IconItem* i = vx::FindItem(items, tab, key);
  return i ? i->defaultFile + "," + std::to_string(i->defaultIndex) : "(not listed)";
}

class Catalogue : public ::testing::Test {
 protected:
  vxtest::SavedValues saved{vxtest::CatalogueValues()};
  vxtest::RegistryScope classes{{"HKEY_CLASSES_ROOT\\vxtest.txt", "HKEY_CLASSES_ROOT\\vxtest.ini",
                                 "HKEY_CLASSES_ROOT\\vxtest.bmp", "HKEY_CLASSES_ROOT\\vxtest.zip"}};
  const std::string sys = vxtest::SystemFolder();
  const std::string win = vxtest::WindowsFolder();
};

TEST_F(Catalogue, RowsAndDefaultsPerEdition) {
  // Classes for two document types whose defaults move with the shell version.
  SaveString("HKEY_CLASSES_ROOT\\.txt", "", "vxtest.txt");
  SaveString("HKEY_CLASSES_ROOT\\.ini", "", "vxtest.ini");

  const std::string desktop =
      "My Computer|Network Neighborhood|The Internet|In Box|My Briefcase|Recycle Bin (empty)|Recycle Bin (full)";
  const std::string desktop98 = "My Computer|My Documents|Network Neighborhood|The Internet|In Box|My Briefcase|"
                                "Recycle Bin (empty)|Recycle Bin (full)";
  const std::string start = "Programs|Documents|Settings|Find|Help|Run...|Suspend|Shut Down...|"
                            "Settings - Control Panel|Settings - Printers";
  const std::string startDU = "Programs|Favorites|Documents|Settings|Find|Help|Run...|Log Off...|Suspend|"
                              "Shut Down...|Settings - Control Panel|Settings - Printers";
  const std::string folders = "Closed Folder|Open Folder|Program Group|Control Panel|Dial-Up Networking|Printers";
  const std::string foldersNT =
      "Closed Folder|Open Folder|Program Group|Users Program Group|Control Panel|Dial-Up Networking|Printers";
  const std::string du = "|Subscriptions|ActiveX Cache";

  struct Case {
    const char* edition;
    const char* ie;
    bool order;
    std::string desktop, start, folders;
    int pointers;
    // Control Panel, Printers, Text Document, MS-DOS Batch File, Configuration Settings, Users Program Group
    std::array<int, 6> numbers;
    const char* internetClass;
    std::string dialUp, mail;
  } cases[] = {
      {"Win95", "Error", false, desktop, start, folders, 14, {46, 47, 59, 60, 58, -1},
       "{FBF23B42-E3F0-101B-8488-00AA003E56F8}", sys + "\\shell32.dll,33", sys + "\\mapi32.dll,3"},
      // 4.72 without the Start menu order value: no desktop update.
      {"Win95", "4.72.3110.0", false, desktop, start, folders, 14, {46, 47, 59, 60, 58, -1},
       "{FBF23B42-E3F0-101B-8488-00AA003E56F8}", sys + "\\shell32.dll,33", sys + "\\mapi32.dll,3"},
      {"Win98", "4.72.3110.0", true, desktop98, startDU, folders + du, 15, {51, 52, 64, 65, 63, -1},
       "{871C5380-42A0-1069-A2EA-08002B30309D}", sys + "\\shell32.dll,33", sys + "\\cool.dll,30"},
      {"Win98", "5.00.2614.3500", true, desktop98, start, folders, 15, {46, 47, 59, 60, 58, -1},
       "{FBF23B42-E3F0-101B-8488-00AA003E56F8}", sys + "\\shell32.dll,33", sys + "\\cool.dll,30"},
      // The Users Program Group number follows the version alone.
      {"WinNT", "4.71.1712.6", false, desktop, start, foldersNT, 14, {46, 47, 59, 60, 58, 42},
       "{FBF23B42-E3F0-101B-8488-00AA003E56F8}", sys + "\\rasshell.dll,0",
       "C:\\Program Files\\Windows NT\\Windows Messaging\\exchng32.exe,0"},
      {"WinNT", "4.71.1712.6", true, desktop, startDU, foldersNT + du, 14, {50, 51, 63, 64, 62, 42},
       "{871C5380-42A0-1069-A2EA-08002B30309D}", sys + "\\rasshell.dll,0",
       "C:\\Program Files\\Windows NT\\Windows Messaging\\exchng32.exe,0"},
      {"WinNT", "5.00.2920.0000", true, desktop, start, foldersNT, 14, {46, 47, 59, 60, 58, 73},
       "{FBF23B42-E3F0-101B-8488-00AA003E56F8}", sys + "\\rasshell.dll,0",
       "C:\\Program Files\\Windows NT\\Windows Messaging\\exchng32.exe,0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.edition) + " IE " + c.ie + (c.order ? " with" : " without") + " order");
    const auto items = BuildCatalogue(vxtest::Env(c.edition, c.ie, c.order));
    EXPECT_EQ(KeysOn(items, vx::kTabDesktop), c.desktop);
    EXPECT_EQ(KeysOn(items, vx::kTabStart), c.start);
    EXPECT_EQ(KeysOn(items, vx::kTabFolders), c.folders);
    EXPECT_EQ(KeysOn(items, vx::kTabDrives),
              "Floppy Drive 5.25|Floppy Drive 3.5|Hard Drive|Network Drive (connected)|Network Drive (offline)|"
              "CD-ROM Drive|Removable Drive|RAM Drive");
    EXPECT_EQ(KeysOn(items, vx::kTabOthers),
              "Shortcut Overlay|Sharing Overlay|Desktop|Entire Network|Workgroup|Computer|Audio CD");
    int pointers = 0;
    for (const auto& i : items) pointers += i.tab == vx::kTabPointers;
    EXPECT_EQ(pointers, c.pointers);

    const std::string shell = sys + "\\shell32.dll,";
    EXPECT_EQ(DefaultOf(items, vx::kTabFolders, "Control Panel"), shell + std::to_string(c.numbers[0]));
    EXPECT_EQ(DefaultOf(items, vx::kTabFolders, "Printers"), shell + std::to_string(c.numbers[1]));
    EXPECT_EQ(DefaultOf(items, vx::kTabSystem, "Text Document"), shell + std::to_string(c.numbers[2]));
    EXPECT_EQ(DefaultOf(items, vx::kTabSystem, "MS-DOS Batch File"), shell + std::to_string(c.numbers[3]));
    EXPECT_EQ(DefaultOf(items, vx::kTabSystem, "Configuration Settings"), shell + std::to_string(c.numbers[4]));
    if (c.numbers[5] >= 0) {
      EXPECT_EQ(DefaultOf(items, vx::kTabFolders, "Users Program Group"), shell + std::to_string(c.numbers[5]));
    }
    EXPECT_EQ(DefaultOf(items, vx::kTabFolders, "Dial-Up Networking"), c.dialUp);
    EXPECT_EQ(DefaultOf(items, vx::kTabDesktop, "In Box"), c.mail);

    const IconItem* internet = vx::FindItem(items, vx::kTabDesktop, "The Internet");
    ASSERT_NE(internet, nullptr);
    EXPECT_EQ(internet->storageKey, std::string("HKEY_CLASSES_ROOT\\CLSID\\") + c.internetClass + "\\DefaultIcon");
  }
}

TEST_F(Catalogue, StorageAndDefaultsOfSampleRows) {
  const auto items = BuildCatalogue(vxtest::Env("Win98", "4.72.3110.0", true));
  struct Row {
    int tab;
    const char* key;
    std::string caption, storageKey, storageValue, classKey, defaultLocation;
  } rows[] = {
      // Windows 98 reads the per-user copies of four desktop classes.
      {vx::kTabDesktop, "My Computer", "My Computer",
       "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\{20D04FE0-3AEA-1069-A2D8-08002B30309D}\\DefaultIcon", "",
       "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\{20D04FE0-3AEA-1069-A2D8-08002B30309D}",
       win + "\\explorer.exe,0"},
      {vx::kTabDesktop, "My Documents", "My Documents",
       "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\{450D8FBA-AD25-11D0-98A8-0800361B1103}\\DefaultIcon", "",
       "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\{450D8FBA-AD25-11D0-98A8-0800361B1103}",
       sys + "\\mydocs.dll,0"},
      {vx::kTabDesktop, "Recycle Bin (full)", "Recycle Bin (full)",
       "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\{645FF040-5081-101B-9F08-00AA002F954E}\\DefaultIcon", "Full",
       "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\{645FF040-5081-101B-9F08-00AA002F954E}",
       sys + "\\shell32.dll,32"},
      {vx::kTabDesktop, "My Briefcase", "My Briefcase",
       "HKEY_CLASSES_ROOT\\CLSID\\{85BBD920-42A0-1069-A2E4-08002B30309D}\\DefaultIcon", "",
       "HKEY_CLASSES_ROOT\\CLSID\\{85BBD920-42A0-1069-A2E4-08002B30309D}", sys + "\\syncui.dll,0"},
      {vx::kTabStart, "Settings - Printers", "Settings - Printers", vx::kShellIconsKey, "37", "",
       sys + "\\shell32.dll,37"},
      {vx::kTabFolders, "Dial-Up Networking", "Dial-Up Networking",
       "HKEY_CLASSES_ROOT\\CLSID\\{992CFFA0-F557-101A-88EC-00DD010CCC48}\\DefaultIcon", "",
       "HKEY_CLASSES_ROOT\\CLSID\\{992CFFA0-F557-101A-88EC-00DD010CCC48}", sys + "\\shell32.dll,33"},
      {vx::kTabFolders, "Subscriptions", "Subscriptions",
       "HKEY_CLASSES_ROOT\\CLSID\\{F5175861-2688-11d0-9C5E-00AA00A45957}\\DefaultIcon", "", "",
       sys + "\\Webcheck.dll,0"},
      {vx::kTabDrives, "Floppy Drive 5.25", "Floppy Drive 5\xBC", vx::kShellIconsKey, "5", "",
       sys + "\\shell32.dll,5"},
      {vx::kTabDrives, "Floppy Drive 3.5", "Floppy Drive 3\xBD", vx::kShellIconsKey, "6", "",
       sys + "\\shell32.dll,6"},
      {vx::kTabDrives, "Removable Drive", "Removable Drive", vx::kShellIconsKey, "7", "", sys + "\\shell32.dll,7"},
      {vx::kTabSystem, "Default Icon", "Default Icon", vx::kShellIconsKey, "0", "", sys + "\\shell32.dll,0"},
      {vx::kTabPointers, "Handwriting", "Handwriting", vx::kCursorsKey, "NWPEN", "", ui::ModulePath() + ",7"},
      {vx::kTabPointers, "Hand", "Hand", vx::kCursorsKey, "Hand", "", ui::ModulePath() + ",15"},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.key);
    const IconItem* i = vx::FindItem(items, r.tab, r.key);
    ASSERT_NE(i, nullptr);
    EXPECT_EQ(i->caption, r.caption);
    EXPECT_EQ(i->storageKey, r.storageKey);
    EXPECT_EQ(i->storageValue, r.storageValue);
    EXPECT_EQ(i->classKey, r.classKey);
    EXPECT_EQ(i->defaultFile + "," + std::to_string(i->defaultIndex), r.defaultLocation);
  }
}

TEST_F(Catalogue, ShellFolderRowsNeedTheirShellFolderKey) {
  const auto env = vxtest::Env("Win95");
  EXPECT_EQ(KeysOn(BuildCatalogue(env), vx::kTabFolders),
            "Closed Folder|Open Folder|Program Group|Control Panel|Dial-Up Networking|Printers");
  // An empty default value still reads without "Error".
  SaveString("HKEY_CLASSES_ROOT\\CLSID\\{FF393560-C2A7-11CF-BFF4-444553540000}\\ShellFolder", "", "");
  SaveString("HKEY_CLASSES_ROOT\\CLSID\\{D6277990-4C6A-11CF-8D87-00AA0060F5BF}\\ShellFolder", "", "x");
  const auto items = BuildCatalogue(env);
  EXPECT_EQ(KeysOn(items, vx::kTabFolders),
            "Closed Folder|Open Folder|Program Group|Control Panel|Dial-Up Networking|Printers|Url History|"
            "Scheduled Tasks");
  EXPECT_EQ(DefaultOf(items, vx::kTabFolders, "Url History"), sys + "\\shdocvw.dll,36");
  EXPECT_EQ(DefaultOf(items, vx::kTabFolders, "Scheduled Tasks"), sys + "\\mstask.dll,0");
  // Favorites on the Start tab is a different row and stays away without the desktop update.
  EXPECT_EQ(vx::FindItem(items, vx::kTabStart, "Favorites"), nullptr);
}

TEST_F(Catalogue, DocumentTypesWithoutAClassAreLeftOut) {
  SaveString("HKEY_CLASSES_ROOT\\.bmp", "", "vxtest.bmp");
  SaveString("HKEY_CLASSES_ROOT\\.txt", "", "vxtest.txt");
  SaveString("HKEY_CLASSES_ROOT\\.zip", "", "vxtest.zip");
  SaveString("HKEY_CLASSES_ROOT\\.gif", "", "");        // empty: no class
  SaveString("HKEY_CLASSES_ROOT\\.html", "", "Error");  // reads like a failure
  const auto env = vxtest::Env("WinNT");
  const auto items = BuildCatalogue(env);
  // The three overrides and ".bat" are always there; ".bat" without a class shows its default.
  EXPECT_EQ(KeysOn(items, vx::kTabSystem),
            "Bitmap Image|Default Icon|Default Document|MS-DOS Application|MS-DOS Batch File|Text Document|"
            "Zip File");
  const IconItem* text = vx::FindItem(items, vx::kTabSystem, "Text Document");
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->className, "vxtest.txt");
  EXPECT_EQ(text->storageKey, "HKEY_CLASSES_ROOT\\vxtest.txt\\DefaultIcon");
  EXPECT_EQ(text->storageValue, "");
  const IconItem* bat = vx::FindItem(items, vx::kTabSystem, "MS-DOS Batch File");
  ASSERT_NE(bat, nullptr);
  EXPECT_EQ(bat->className, "");
  const auto shown = vx::CurrentIcon(*bat, env);
  EXPECT_EQ(shown.file, sys + "\\shell32.dll");
  EXPECT_EQ(shown.index, 60);
  // Defaults from the edition's program files and the intended odd ones.
  EXPECT_EQ(DefaultOf(items, vx::kTabSystem, "Bitmap Image"), sys + "\\Mspaint.exe,1");
  EXPECT_EQ(DefaultOf(items, vx::kTabSystem, "Zip File"), sys + "\\quartz.dll,4");

  // The current icon comes from the class's own DefaultIcon.
  SaveString("HKEY_CLASSES_ROOT\\vxtest.txt\\DefaultIcon", "", sys + "\\shell32.dll,7");
  const auto txt = vx::CurrentIcon(*text, env);
  EXPECT_EQ(txt.file, sys + "\\shell32.dll");
  EXPECT_EQ(txt.index, 7);
}

TEST_F(Catalogue, DisplayNamesComeFromTheClassKeys) {
  const auto env = vxtest::Env("Win95");
  SaveString(env.recycleBinKey, "", "Waste Basket");
  SaveString(env.networkNeighborhoodKey, "", "Nachbarschaft");
  SaveString(env.myComputerKey, "", "");  // empty: the default caption
  const auto items = BuildCatalogue(env);
  struct { const char* key; const char* caption; } expected[] = {
      {"My Computer", "My Computer"},
      {"Network Neighborhood", "Nachbarschaft"},
      {"The Internet", "The Internet"},
      {"Recycle Bin (empty)", "Waste Basket (empty)"},
      {"Recycle Bin (full)", "Waste Basket (full)"},
  };
  for (const auto& e : expected) {
    const IconItem* i = vx::FindItem(items, vx::kTabDesktop, e.key);
    ASSERT_NE(i, nullptr) << e.key;
    EXPECT_EQ(i->caption, e.caption) << e.key;
  }
}

TEST_F(Catalogue, StoredLocationOrWindowsDefault) {
  const auto env = vxtest::Env("Win95");
  const auto items = BuildCatalogue(env);
  const IconItem* folder = vx::FindItem(items, vx::kTabFolders, "Closed Folder");
  ASSERT_NE(folder, nullptr);
  const std::string shell = sys + "\\shell32.dll";
  const int count = vx::IconCount(shell);
  ASSERT_GT(count, 40);
  // The system folder's path below the Windows folder, to build %SystemRoot% paths.
  ASSERT_EQ(sys.compare(0, win.size(), win), 0);
  const std::string below = sys.substr(win.size());

  struct Case {
    std::string stored;  // "(missing)" leaves the value out
    std::string file;
    int index;
  } cases[] = {
      {"(missing)", shell, 3},
      {"", shell, 3},
      {"Error", shell, 3},
      {shell + ",12", shell, 12},
      {"%SystemRoot%" + below + "\\shell32.dll,5", win + below + "\\shell32.dll", 5},
      {"%SYSTEMROOT%" + below + "\\shell32.dll,6", win + below + "\\shell32.dll", 6},
      {"%systemRoot%" + below + "\\shell32.dll,0", win + below + "\\shell32.dll", 0},
      {shell + ",-154", shell, 3},                            // a resource id, not an index
      {shell + "," + std::to_string(count), shell, count},    // equal to the count: accepted
      {shell + "," + std::to_string(count + 1), shell, 3},
      {"C:\\vxtest\\nowhere\\missing.dll,0", shell, 3},
      {win + "\\win.ini,0", shell, 3},                         // a file without icons
      {shell, shell, 3},                                       // no comma: no file
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored);
    if (c.stored == "(missing)")
      modRegistry::DeleteValue(vx::kShellIconsKey, "3");
    else
      SaveString(vx::kShellIconsKey, "3", c.stored);
    const auto shown = vx::CurrentIcon(*folder, env);
    EXPECT_EQ(shown.file, c.file);
    EXPECT_EQ(shown.index, c.index);
  }
}

TEST_F(Catalogue, PointersShowTheirCursorFileAsItStands) {
  const auto env = vxtest::Env("Win98");
  const auto items = BuildCatalogue(env);
  const IconItem* arrow = vx::FindItem(items, vx::kTabPointers, "Normal Select");
  ASSERT_NE(arrow, nullptr);
  struct { std::string stored, file; int index; } cases[] = {
      {"(missing)", env.exePath, 1},
      {"", env.exePath, 1},
      {"C:\\Cursors,old\\arrow,2.cur", "C:\\Cursors,old\\arrow,2.cur", 0},
      {"C:\\vxtest\\missing.ani", "C:\\vxtest\\missing.ani", 0},
      {"%SystemRoot%\\Cursors\\arrow_m.cur", win + "\\Cursors\\arrow_m.cur", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored);
    if (c.stored == "(missing)")
      modRegistry::DeleteValue(vx::kCursorsKey, "Arrow");
    else
      SaveString(vx::kCursorsKey, "Arrow", c.stored);
    const auto shown = vx::CurrentIcon(*arrow, env);
    EXPECT_EQ(shown.file, c.file);
    EXPECT_EQ(shown.index, c.index);
  }
}

// Add_Icons fills real lists, one per icon tab.
class CatalogueLists : public Catalogue {
 protected:
  void SetUp() override {
    parent = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 400, 600, nullptr, nullptr,
                             GetModuleHandleA(nullptr), nullptr);
    ASSERT_NE(parent, nullptr);
    for (int tab : {2, 3, 4, 5, 6, 7, 9}) {
      owned[tab] = std::make_unique<ui::ListBoxIcons>();
      ASSERT_TRUE(owned[tab]->Create(parent, 100 + tab, 0, 0, 300, 500));
      lists[tab] = owned[tab].get();
    }
  }
  void TearDown() override {
    for (auto& l : owned) l.reset();
    DestroyWindow(parent);
  }
  HWND parent = nullptr;
  std::array<std::unique_ptr<ui::ListBoxIcons>, 10> owned;
  vx::IconLists lists{};
};

TEST_F(CatalogueLists, AddIconsFillsEveryList) {
  SaveString(vx::kShellIconsKey, "8", sys + "\\shell32.dll,9");
  SaveString(vx::kCursorsKey, "Wait", "C:\\vxtest\\busy.ani");
  const auto env = vxtest::Env("Win98", "4.72.3110.0", true);
  const auto items = vx::Add_Icons(env, lists);
  for (int tab : {2, 3, 4, 5, 6, 7, 9}) {
    SCOPED_TRACE(tab);
    const ui::ListBoxIcons& list = *lists[tab];
    int n = 0;
    for (const auto& i : items) {
      if (i.tab != tab) continue;
      EXPECT_EQ(list.Key(n), i.key);
      EXPECT_EQ(list.ItemCaption(i.key), i.caption);
      ++n;
    }
    EXPECT_EQ(list.Count(), n);
  }
  EXPECT_EQ(lists[5]->ItemFullPath("Hard Drive"), sys + "\\shell32.dll,9");
  EXPECT_EQ(lists[5]->ItemFullPath("RAM Drive"), sys + "\\shell32.dll,12");
  EXPECT_EQ(lists[9]->ItemFullPath("Busy"), "C:\\vxtest\\busy.ani,0");
  EXPECT_EQ(lists[9]->ItemFullPath("Hand"), env.exePath + ",15");

  // Tabs without a list are passed over.
  ui::ListBoxIcons alone;
  ASSERT_TRUE(alone.Create(parent, 200, 0, 0, 300, 500));
  vx::IconLists some{};
  some[vx::kTabDrives] = &alone;
  vx::Add_Icons(env, some);
  EXPECT_EQ(alone.Count(), 8);
}

}  // namespace
