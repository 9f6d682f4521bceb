// The catalogue per edition, rows that depend on the registry, and what a row shows for a stored location.
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "IconFixtures.h"

using modRegistry::SaveString;
using vx::FindItem;
using vx::IconItem;

namespace {

std::string KeysOn(const std::vector<IconItem>& items, int tab) {
  std::string keys;
  for (const auto& i : items)
    if (i.tab == tab) keys += (keys.empty() ? "" : "|") + i.key;
  return keys;
}

class Catalogue : public ::testing::Test {
 protected:
  vxtest::CatalogueRegistry saved;
  vxtest::RegistryScope classes{{"HKEY_CLASSES_ROOT\\vxtest.txt"}};
  const std::string sys = vxtest::SystemFolder(), shell = vxtest::Shell32();
  const std::string user = "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\";
};

TEST_F(Catalogue, RowsAndDefaultsPerEdition) {
  SaveString("HKEY_CLASSES_ROOT\\.txt", "", "vxtest.txt");
  SaveString("HKEY_CLASSES_ROOT\\.ini", "", "vxtest.ini");
  const std::string nt = "C:\\Program Files\\Windows NT\\Windows Messaging\\exchng32.exe,0";
  const std::string dialUp95 = "33", rasshell = sys + "\\rasshell.dll,0";
  // Rows on Desktop, Start, Folders, Drives, Others, Pointers; then the defaults of the items named below, in
  // order (shell32's by number; "-": not listed).
  struct { const char *edition, *ie; bool order; const char* rowsAndNumbers; std::string dialUp, inBox; } cases[] = {
      {"Win95", "Error", false, "7 10 6 8 7 14 | 46 47 59 60 58 -", dialUp95, sys + "\\mapi32.dll,3"},
      {"Win98", "4.72.3110.0", true, "8 12 8 8 7 15 | 51 52 64 65 63 -", dialUp95, sys + "\\cool.dll,30"},
      {"WinNT", "4.71.1712.6", true, "7 12 9 8 7 14 | 50 51 63 64 62 42", rasshell, nt},
      {"WinNT", "5.00.2920.0000", true, "7 10 7 8 7 14 | 46 47 59 60 58 73", rasshell, nt},
  };
  for (const auto& c : cases) {
    const auto env = vxtest::Env(c.edition, c.ie, c.order);
    const auto items = vx::BuildCatalogue(env);
    std::string got;
    for (int tab : {2, 3, 4, 5, 6, 9})
      got += std::to_string(std::count_if(items.begin(), items.end(), [&](auto& i) { return i.tab == tab; })) + " ";
    got += "|";
    for (auto [tab, key] : {std::pair{4, "Control Panel"}, {4, "Printers"}, {7, "Text Document"},
                            {7, "MS-DOS Batch File"}, {7, "Configuration Settings"}, {4, "Users Program Group"},
                            {4, "Dial-Up Networking"}, {2, "In Box"}}) {
      const IconItem* i = FindItem(items, tab, key);
      const std::string index = i ? std::to_string(i->defaultIndex) : "";
      got += !i ? " -" : i->defaultFile == shell ? " " + index : " " + i->defaultFile + "," + index;
    }
    EXPECT_EQ(got, std::string(c.rowsAndNumbers) + " " + c.dialUp + " " + c.inBox) << c.edition << " " << c.ie;
  }
}

TEST_F(Catalogue, Win98PerUserKeysAndRenamedRecycleBin) {
  SaveString(user + "{645FF040-5081-101B-9F08-00AA002F954E}", "", "Waste Basket");
  SaveString(user + "{208D2C60-3AEA-1069-A2D7-08002B30309D}", "", "Nachbarschaft");
  const auto items = vx::BuildCatalogue(vxtest::Env("Win98"));
  const std::string bin = user + "{645FF040-5081-101B-9F08-00AA002F954E}\\DefaultIcon";
  struct { const char *key, *caption; std::string storage; const char* value; } rows[] = {
      {"Network Neighborhood", "Nachbarschaft", user + "{208D2C60-3AEA-1069-A2D7-08002B30309D}\\DefaultIcon", ""},
      {"Recycle Bin (empty)", "Waste Basket (empty)", bin, "Empty"},
      {"Recycle Bin (full)", "Waste Basket (full)", bin, "Full"},
  };
  for (const auto& r : rows) {
    const IconItem* i = FindItem(items, vx::kTabDesktop, r.key);
    EXPECT_EQ(i ? i->caption + "|" + i->storageKey + "|" + i->storageValue : "(not listed)",
              std::string(r.caption) + "|" + r.storage + "|" + r.value);
  }
}

TEST_F(Catalogue, ShellFolderRowsAndDocumentTypesNeedTheRegistry) {
  const std::string clsid = "HKEY_CLASSES_ROOT\\CLSID\\";
  SaveString(clsid + "{FF393560-C2A7-11CF-BFF4-444553540000}\\ShellFolder", "", "");  // empty still counts
  SaveString(clsid + "{D6277990-4C6A-11CF-8D87-00AA0060F5BF}\\ShellFolder", "", "x");
  SaveString("HKEY_CLASSES_ROOT\\.txt", "", "vxtest.txt");
  SaveString("HKEY_CLASSES_ROOT\\.zip", "", "vxtest.zip");
  SaveString("HKEY_CLASSES_ROOT\\.gif", "", "");
  const auto env = vxtest::Env("Win95");
  const auto items = vx::BuildCatalogue(env);
  EXPECT_EQ(KeysOn(items, vx::kTabFolders), "Closed Folder|Open Folder|Program Group|Control Panel|"
                                            "Dial-Up Networking|Printers|Url History|Scheduled Tasks");
  EXPECT_EQ(KeysOn(items, vx::kTabSystem),
            "Default Icon|Default Document|MS-DOS Application|MS-DOS Batch File|Text Document|Zip File");
  const IconItem* text = FindItem(items, vx::kTabSystem, "Text Document");
  SaveString("HKEY_CLASSES_ROOT\\vxtest.txt\\DefaultIcon", "", shell + ",7");
  EXPECT_EQ(vx::CurrentIcon(*text, env).index, 7);
  const auto bat = vx::CurrentIcon(*FindItem(items, vx::kTabSystem, "MS-DOS Batch File"), env);
  EXPECT_EQ(bat.file + "," + std::to_string(bat.index), shell + ",60");  // no class: its default
}

TEST_F(Catalogue, StoredLocationOrWindowsDefault) {
  const auto env = vxtest::Env("Win98");
  const auto items = vx::BuildCatalogue(env);
  const std::string win = vxtest::WindowsFolder(), below = sys.substr(win.size());
  const int count = vx::IconCount(shell);
  ASSERT_GT(count, 40);
  const std::string dflt = shell + ",3", last = shell + "," + std::to_string(count);
  struct { bool pointer; std::string stored, shown; } cases[] = {  // stored "-": no value
      {false, "-", dflt}, {false, "", dflt}, {false, "%systemROOT%" + below + "\\shell32.dll,6", shell + ",6"},
      {false, shell + ",-154", dflt},  // a resource id
      {false, last, last}, {false, shell + "," + std::to_string(count + 1), dflt},
      {false, win + "\\win.ini,0", dflt},  // a file without icons
      {true, "", env.exePath + ",1"},
      {true, "C:\\Cur,sors\\arrow,2.cur", "C:\\Cur,sors\\arrow,2.cur,0"},  // a cursor file stands as it is
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored);
    const auto [key, value, tab, item] = c.pointer ? std::tuple{vx::kCursorsKey, "Arrow", 9, "Normal Select"}
                                                   : std::tuple{vx::kShellIconsKey, "3", 4, "Closed Folder"};
    if (c.stored == "-") modRegistry::DeleteValue(key, value);
    else SaveString(key, value, c.stored);
    const auto shown = vx::CurrentIcon(*FindItem(items, tab, item), env);
    EXPECT_EQ(shown.file + "," + std::to_string(shown.index), c.shown);
  }
}

}  // namespace
