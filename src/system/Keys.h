#pragma once
// Registry paths and shell class identifiers that several parts of the program share: each is written
// here once and named everywhere else.
namespace vx {

// The program's own preferences.
inline constexpr const char* kProgramKey = "HKEY_CURRENT_USER\\Software\\Quenby\\Vexillor";
inline constexpr const char* kSettingsKey = "HKEY_CURRENT_USER\\Software\\Quenby\\Vexillor\\Settings";
inline constexpr const char* kThemesKey = "HKEY_CURRENT_USER\\Software\\Quenby\\Vexillor\\Themes";

// Where the shell keeps what the program changes.
inline constexpr const char* kShellIconsKey =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\explorer\\Shell Icons";
inline constexpr const char* kCursorsKey = "HKEY_CURRENT_USER\\Control Panel\\Cursors";
inline constexpr const char* kWindowMetricsKey = "HKEY_CURRENT_USER\\Control Panel\\desktop\\WindowMetrics";
inline constexpr const char* kClassesRoot = "HKEY_CLASSES_ROOT\\";
inline constexpr const char* kMachineClsid = "HKEY_CLASSES_ROOT\\CLSID\\";
inline constexpr const char* kUserClsid = "HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\";  // Windows 98's copies

// Shell class identifiers.
namespace clsid {
inline constexpr const char* kMyComputer = "{20D04FE0-3AEA-1069-A2D8-08002B30309D}";
inline constexpr const char* kMyDocuments = "{450D8FBA-AD25-11D0-98A8-0800361B1103}";
inline constexpr const char* kNetworkNeighborhood = "{208D2C60-3AEA-1069-A2D7-08002B30309D}";
inline constexpr const char* kRecycleBin = "{645FF040-5081-101B-9F08-00AA002F954E}";
inline constexpr const char* kInternet = "{FBF23B42-E3F0-101B-8488-00AA003E56F8}";
inline constexpr const char* kInternetDesktopUpdate = "{871C5380-42A0-1069-A2EA-08002B30309D}";
inline constexpr const char* kInBox = "{00020D75-0000-0000-C000-000000000046}";
inline constexpr const char* kInBoxSecond = "{00020D76-0000-0000-C000-000000000046}";
inline constexpr const char* kBriefcase = "{85BBD920-42A0-1069-A2E4-08002B30309D}";
inline constexpr const char* kDialUp = "{992CFFA0-F557-101A-88EC-00DD010CCC48}";
inline constexpr const char* kDialUpNT = "{a4d92740-67cd-11cf-96f2-00aa00a11dd9}";
inline constexpr const char* kControlPanel = "{21EC2020-3AEA-1069-A2DD-08002B30309D}";
inline constexpr const char* kPrinters = "{2227A280-3AEA-1069-A2DE-08002B30309D}";
inline constexpr const char* kFavorites = "{1A9BA3A0-143A-11CF-8350-444553540000}";
inline constexpr const char* kUrlHistory = "{FF393560-C2A7-11CF-BFF4-444553540000}";
inline constexpr const char* kSubscriptions = "{F5175861-2688-11d0-9C5E-00AA00A45957}";
inline constexpr const char* kActiveXCache = "{88C6C381-2E85-11D0-94DE-444553540000}";
inline constexpr const char* kScheduledTasks = "{D6277990-4C6A-11CF-8D87-00AA0060F5BF}";
}  // namespace clsid

}  // namespace vx
