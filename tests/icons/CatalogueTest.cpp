// The catalogue per edition, the rows that depend on the registry, and what a row shows for a
// stored location.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "IconFixtures.h"
#include "registry/modRegistry.h"
#include "support/RegistryScope.h"

using modRegistry::SaveString;
using vx::IconItem;

namespace {

std::string KeysOn(const std::vector<IconItem>& items, int tab) {
  std::string keys;
  for (const auto& i : items)
    if (i.tab == tab) keys += (keys.empty() ? "" : "|") + i.key;
  return keys;
}

int CountOn(const std::vector<IconItem>& items, int tab) {
  return static_cast<int>(std::count_if(items.begin(), items.end(), [&](auto& i) { return i.tab == tab; }));
}

std::string DefaultOf(const std::vector<IconItem>& items, int tab, const std::string& key) {
  const IconItem* i = vx::FindItem(items, tab, key);
  return i ? i->defaultFile + "," + std::to_string(i->defaultIndex) : "(not listed)";
}

class Catalogue : public ::testing::Test {
 protected:
  vxtest::SavedValues saved{vxtest::CatalogueValues()};
  vxtest::RegistryScope classes{{"HKEY_CLASSES_ROOT\\vxtest.txt"}};
  const std::string sys = vxtest::SystemFolder(), win = vxtest::WindowsFolder();
  const std::string shell = sys + "\\shell32.dll";
};

TEST_F(Catalogue, RowsAndDefaultsPerEdition) {
  SaveString("HKEY_CLASSES_ROOT\\.txt", "", "vxtest.txt");
  SaveString("HKEY_CLASSES_ROOT\\.ini", "", "vxtest.ini");
  const std::string nt = "C:\\Program Files\\Windows NT\\Windows Messaging\\exchng32.exe,0";
  struct Case {
    const char *edition, *ie;
    bool order;
    int desktop, start, folders, pointers;
    // Control Panel, Printers, Text Document, MS-DOS Batch File, Configuration Settings, Users Program Group
    std::array<int, 6> numbers;
    bool newInternetClass;
    std::string dialUp, mail;
  } cases[] = {
      {"Win95", "Error", false, 7, 10, 6, 14, {46, 47, 59, 60, 58, 0}, false, ",33", "\\mapi32.dll,3"},
      {"Win95", "4.72.3110.0", false, 7, 10, 6, 14, {46, 47, 59, 60, 58, 0}, false, ",33", "\\mapi32.dll,3"},
      {"Win98", "4.72.3110.0", true, 8, 12, 8, 15, {51, 52, 64, 65, 63, 0}, true, ",33", "\\cool.dll,30"},
      {"WinNT", "4.71.1712.6", false, 7, 10, 7, 14, {46, 47, 59, 60, 58, 42}, false, "rasshell", nt},
      {"WinNT", "4.71.1712.6", true, 7, 12, 9, 14, {50, 51, 63, 64, 62, 42}, true, "rasshell", nt},
      {"WinNT", "5.00.2920.0000", true, 7, 10, 7, 14, {46, 47, 59, 60, 58, 73}, false, "rasshell", nt},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.edition) + " " + c.ie + (c.order ? " with" : " without") + " order");
    const auto env = vxtest::Env(c.edition, c.ie, c.order);
    const auto items = vx::BuildCatalogue(env);
    EXPECT_EQ(CountOn(items, vx::kTabDesktop), c.desktop);
    EXPECT_EQ(CountOn(items, vx::kTabStart), c.start);
    EXPECT_EQ(CountOn(items, vx::kTabFolders), c.folders);
    EXPECT_EQ(CountOn(items, vx::kTabDrives), 8);
    EXPECT_EQ(CountOn(items, vx::kTabOthers), 7);
    EXPECT_EQ(CountOn(items, vx::kTabPointers), c.pointers);
    EXPECT_EQ(vx::FindItem(items, vx::kTabDesktop, "My Documents") != nullptr, env.IsWin98());
    EXPECT_EQ(vx::FindItem(items, vx::kTabPointers, "Hand") != nullptr, env.IsWin98());
    EXPECT_EQ(vx::FindItem(items, vx::kTabFolders, "Users Program Group") != nullptr, env.IsNT());
    EXPECT_EQ(vx::FindItem(items, vx::kTabFolders, "ActiveX Cache") != nullptr, env.desktopUpdate);

    const auto number = [&](int tab, const char* key, int n) {
      if (n) {
        EXPECT_EQ(DefaultOf(items, tab, key), shell + "," + std::to_string(n)) << key;
      }
    };
    number(vx::kTabFolders, "Control Panel", c.numbers[0]);
    number(vx::kTabFolders, "Printers", c.numbers[1]);
    number(vx::kTabSystem, "Text Document", c.numbers[2]);
    number(vx::kTabSystem, "MS-DOS Batch File", c.numbers[3]);
    number(vx::kTabSystem, "Configuration Settings", c.numbers[4]);
    number(vx::kTabFolders, "Users Program Group", c.numbers[5]);
    const std::string dialUp = DefaultOf(items, vx::kTabFolders, "Dial-Up Networking");
    EXPECT_EQ(dialUp, c.dialUp == "rasshell" ? sys + "\\rasshell.dll,0" : shell + c.dialUp);
    EXPECT_EQ(DefaultOf(items, vx::kTabDesktop, "In Box"), c.mail == nt ? nt : sys + c.mail);
    EXPECT_EQ(vx::FindItem(items, vx::kTabDesktop, "The Internet")->storageKey,
              std::string("HKEY_CLASSES_ROOT\\CLSID\\") +
                  (c.newInternetClass ? "{871C5380-42A0-1069-A2EA-08002B30309D}"
                                      : "{FBF23B42-E3F0-101B-8488-00AA003E56F8}") +
                  "\\DefaultIcon");
  }
  EXPECT_EQ(KeysOn(vx::BuildCatalogue(vxtest::Env("Win95")), vx::kTabStart),
            "Programs|Documents|Settings|Find|Help|Run...|Suspend|Shut Down...|Settings - Control Panel|"
            "Settings - Printers");
}

TEST_F(Catalogue, ClassKeysAndDisplayNames) {
  SaveString("HKEY_CLASSES_ROOT\\CLSID\\{645FF040-5081-101B-9F08-00AA002F954E}", "", "Machine Bin");
  EXPECT_EQ(vx::FindItem(vx::BuildCatalogue(vxtest::Env("WinNT")), vx::kTabDesktop, "Recycle Bin (full)")->caption,
            "Machine Bin (full)");
  // Windows 98 names and stores four desktop items under the per-user class copies.
  const auto env98 = vxtest::Env("Win98");
  const std::string user = "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\";
  SaveString(user + "{645FF040-5081-101B-9F08-00AA002F954E}", "", "Waste Basket");
  SaveString(user + "{208D2C60-3AEA-1069-A2D7-08002B30309D}", "", "Nachbarschaft");
  SaveString(user + "{20D04FE0-3AEA-1069-A2D8-08002B30309D}", "", "");  // empty: the default caption
  const auto items = vx::BuildCatalogue(env98);
  struct { const char *key, *caption; std::string storage, value; } rows[] = {
      {"My Computer", "My Computer", user + "{20D04FE0-3AEA-1069-A2D8-08002B30309D}\\DefaultIcon", ""},
      {"Network Neighborhood", "Nachbarschaft", user + "{208D2C60-3AEA-1069-A2D7-08002B30309D}\\DefaultIcon", ""},
      {"Recycle Bin (empty)", "Waste Basket (empty)", user + "{645FF040-5081-101B-9F08-00AA002F954E}\\DefaultIcon",
       "Empty"},
      {"Recycle Bin (full)", "Waste Basket (full)", user + "{645FF040-5081-101B-9F08-00AA002F954E}\\DefaultIcon",
       "Full"},
  };
  for (const auto& r : rows) {
    const IconItem* i = vx::FindItem(items, vx::kTabDesktop, r.key);
    ASSERT_NE(i, nullptr) << r.key;
    EXPECT_EQ(i->caption, r.caption);
    EXPECT_EQ(i->storageKey, r.storage);
    EXPECT_EQ(i->storageValue, r.value);
  }
  // Floppy captions carry the ANSI fraction characters; their keys stay plain.
  EXPECT_EQ(vx::FindItem(items, vx::kTabDrives, "Floppy Drive 5.25")->caption, "Floppy Drive 5\xBC");
  EXPECT_EQ(vx::FindItem(items, vx::kTabDrives, "Floppy Drive 3.5")->caption, "Floppy Drive 3\xBD");
}

TEST_F(Catalogue, RowsThatDependOnTheRegistry) {
  const std::string clsid = "HKEY_CLASSES_ROOT\\CLSID\\";
  SaveString(clsid + "{FF393560-C2A7-11CF-BFF4-444553540000}\\ShellFolder", "", "");  // empty still reads
  SaveString(clsid + "{D6277990-4C6A-11CF-8D87-00AA0060F5BF}\\ShellFolder", "", "x");
  SaveString("HKEY_CLASSES_ROOT\\.txt", "", "vxtest.txt");
  SaveString("HKEY_CLASSES_ROOT\\.zip", "", "vxtest.zip");
  SaveString("HKEY_CLASSES_ROOT\\.gif", "", "");
  SaveString("HKEY_CLASSES_ROOT\\.html", "", "Error");
  const auto env = vxtest::Env("Win95");
  const auto items = vx::BuildCatalogue(env);
  EXPECT_EQ(KeysOn(items, vx::kTabFolders), "Closed Folder|Open Folder|Program Group|Control Panel|"
                                            "Dial-Up Networking|Printers|Url History|Scheduled Tasks");
  // The overrides and ".bat" are always listed; other document types need a class.
  EXPECT_EQ(KeysOn(items, vx::kTabSystem),
            "Default Icon|Default Document|MS-DOS Application|MS-DOS Batch File|Text Document|Zip File");
  const IconItem* text = vx::FindItem(items, vx::kTabSystem, "Text Document");
  EXPECT_EQ(text->className, "vxtest.txt");
  EXPECT_EQ(text->storageKey, "HKEY_CLASSES_ROOT\\vxtest.txt\\DefaultIcon");
  SaveString("HKEY_CLASSES_ROOT\\vxtest.txt\\DefaultIcon", "", shell + ",7");
  EXPECT_EQ(vx::CurrentIcon(*text, env).index, 7);
  const IconItem* bat = vx::FindItem(items, vx::kTabSystem, "MS-DOS Batch File");
  EXPECT_EQ(bat->className, "");
  EXPECT_EQ(vx::CurrentIcon(*bat, env).file + "," + std::to_string(vx::CurrentIcon(*bat, env).index), shell + ",60");
}

TEST_F(Catalogue, StoredLocationOrWindowsDefault) {
  const auto env = vxtest::Env("Win98");
  const auto items = vx::BuildCatalogue(env);
  const int count = vx::IconCount(shell);
  ASSERT_GT(count, 40);
  ASSERT_EQ(sys.compare(0, win.size(), win), 0);
  const std::string below = sys.substr(win.size());  // the system folder under %SystemRoot%
  const std::string exe = env.exePath;
  struct Case {
    int tab;
    const char *key, *valueName;
    std::string stored, shown;  // stored "-" leaves the value out
  } cases[] = {
      {vx::kTabFolders, "Closed Folder", "3", "-", shell + ",3"},
      {vx::kTabFolders, "Closed Folder", "3", "", shell + ",3"},
      {vx::kTabFolders, "Closed Folder", "3", "Error", shell + ",3"},
      {vx::kTabFolders, "Closed Folder", "3", shell + ",12", shell + ",12"},
      {vx::kTabFolders, "Closed Folder", "3", "%SystemRoot%" + below + "\\shell32.dll,5", shell + ",5"},
      {vx::kTabFolders, "Closed Folder", "3", "%SYSTEMROOT%" + below + "\\shell32.dll,6", shell + ",6"},
      {vx::kTabFolders, "Closed Folder", "3", "%systemRoot%" + below + "\\shell32.dll,0", shell + ",0"},
      {vx::kTabFolders, "Closed Folder", "3", shell + ",-154", shell + ",3"},  // a resource id
      {vx::kTabFolders, "Closed Folder", "3", shell + "," + std::to_string(count), shell + "," + std::to_string(count)},
      {vx::kTabFolders, "Closed Folder", "3", shell + "," + std::to_string(count + 1), shell + ",3"},
      {vx::kTabFolders, "Closed Folder", "3", "C:\\vxtest\\missing.dll,0", shell + ",3"},
      {vx::kTabFolders, "Closed Folder", "3", win + "\\win.ini,0", shell + ",3"},  // no icons in it
      {vx::kTabFolders, "Closed Folder", "3", shell, shell + ",3"},                // no comma
      // A cursor file is shown as it stands, commas and all.
      {vx::kTabPointers, "Normal Select", "Arrow", "-", exe + ",1"},
      {vx::kTabPointers, "Normal Select", "Arrow", "", exe + ",1"},
      {vx::kTabPointers, "Normal Select", "Arrow", "C:\\Cur,sors\\arrow,2.cur", "C:\\Cur,sors\\arrow,2.cur,0"},
      {vx::kTabPointers, "Hand", "Hand", "%SystemRoot%\\Cursors\\hand.ani", win + "\\Cursors\\hand.ani,0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.key) + " <- " + c.stored);
    const std::string key = c.tab == vx::kTabPointers ? vx::kCursorsKey : vx::kShellIconsKey;
    if (c.stored == "-")
      modRegistry::DeleteValue(key, c.valueName);
    else
      SaveString(key, c.valueName, c.stored);
    const auto shown = vx::CurrentIcon(*vx::FindItem(items, c.tab, c.key), env);
    EXPECT_EQ(shown.file + "," + std::to_string(shown.index), c.shown);
  }
}

}  // namespace
