#include "icons/FolderIcons.h"

#include <cstdlib>
#include <utility>

#include "registry/modCommon.h"
#include "system/Location.h"
#include "ui/modMsgbox.h"

namespace vx {
namespace {

constexpr const char* kShellClassInfo = ".ShellClassInfo";
constexpr const char* kAutorun = "AUTORUN";

ShellFileOperation& FileOperation() {
  static ShellFileOperation op = [](SHFILEOPSTRUCTA& s) { return SHFileOperationA(&s); };
  return op;
}

// Results are not checked anywhere here: a write-protected folder or drive simply keeps its icon, and
// the info bar, read back from the shell, shows what took effect.
void ShellRename(HWND owner, const std::string& from, const std::string& to) {
  // Both names are lists ending in an empty entry.
  const std::string fromList = from + '\0' + '\0', toList = to + '\0' + '\0';
  SHFILEOPSTRUCTA op{};
  op.hwnd = owner;
  op.wFunc = FO_RENAME;
  op.pFrom = fromList.c_str();
  op.pTo = toList.c_str();
  op.fFlags = FOF_SILENT | FOF_NOCONFIRMATION;
  FileOperation()(op);
}

}  // namespace

bool IsCustomised(const std::string& infoBar) { return infoBar.size() >= 3 && infoBar.compare(1, 2, ":\\") == 0; }

bool IsDriveRoot(const std::string& path) { return path.size() == 3; }

ShellFileOperation SetShellFileOperation(ShellFileOperation op) {
  return std::exchange(FileOperation(), std::move(op));
}

void ShellFileRefresh(HWND owner, const std::string& folder) {
  const std::string upper = UpperAscii(folder);
  const std::string other = upper == folder ? LowerAscii(folder) : upper;
  ShellRename(owner, folder, other);
  ShellRename(owner, other, folder);
}

void ExplorerChange(EditHost& host, const std::string& file, int16_t index) {
  const std::string path = host.ExplorerPath();
  if (IsDriveRoot(path)) {
    const std::string inf = path + kAutorunInf;
    WritePrivateProfileStringA(kAutorun, "Icon", (file + "," + std::to_string(index)).c_str(), inf.c_str());
    host.RebuildIconCache();
    return;
  }
  // The shell reads desktop.ini only in a folder with the system attribute.
  const std::string ini = path + kDesktopIni;
  WritePrivateProfileStringA(kShellClassInfo, "IconFile", file.c_str(), ini.c_str());
  WritePrivateProfileStringA(kShellClassInfo, "IconIndex", std::to_string(index).c_str(), ini.c_str());
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_SYSTEM);
  SetFileAttributesA(ini.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
  ShellFileRefresh(host.Owner(), path);
  host.lstbxExplorer_Click();
}

void ExplorerDefault(EditHost& host) {
  if (!IsCustomised(host.InfoBar())) {
    modMsgbox::NothingToRestore();
    return;
  }
  const std::string path = host.ExplorerPath();
  if (IsDriveRoot(path)) {
    // The whole file goes, with anything else it held; the prompt says so.
    if (modMsgbox::RemoveAutorunInf() == modMsgbox::Confirm::OK) {
      DeleteFileA((path + kAutorunInf).c_str());
      host.RebuildIconCache();
    }
  } else if (modMsgbox::RemoveDesktopIni() == modMsgbox::Confirm::OK) {
    DeleteFileA((path + kDesktopIni).c_str());
    // Normal drops read-only, hidden and system as well: the folder is plain again.
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    ShellFileRefresh(host.Owner(), path);
  }
  host.lstbxExplorer_Click();
  host.FocusFolderTree();
  host.RefreshFolderTree();
}

namespace {

bool UsablePath(const std::string& file) {
  if (file.size() < 3) return false;
  for (unsigned char c : file)
    if (c < 32) return false;
  return (file[1] == ':' && file[2] == '\\') || file.rfind("\\\\", 0) == 0;
}

std::string Profile(const std::string& file, const char* section, const char* key) {
  char buf[MAX_PATH] = {};
  GetPrivateProfileStringA(section, key, "", buf, sizeof buf, file.c_str());
  return buf;
}

}  // namespace

// The icon a folder or drive root declares for itself: the root's autorun.inf, or the desktop.ini of
// a folder that carries the system attribute (without it the shell does not read the file).
std::string DeclaredIcon(const std::string& path) {
  if (IsDriveRoot(path)) return Profile(path + kAutorunInf, "AUTORUN", "Icon");
  const DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_SYSTEM)) return "";
  const std::string file = Profile(path + kDesktopIni, ".ShellClassInfo", "IconFile");
  if (file.empty()) return "";
  return file + "," + std::to_string(ParseIconIndex(Profile(path + kDesktopIni, ".ShellClassInfo", "IconIndex")));
}

std::string FolderIconInfo(const std::string& path, const std::string& systemFolder) {
  SHFILEINFOA info{};
  {
    QuietDriveErrors noDiskBox;
    SHGetFileInfoA(path.c_str(), 0, &info, sizeof info, SHGFI_ICONLOCATION);
  }
  const std::string file = StripNull(std::string(info.szDisplayName, sizeof info.szDisplayName));
  const bool shellDefault = UpperAscii(file) == UpperAscii(systemFolder + "\\shell32.dll");
  if (UsablePath(file) && !shellDefault) return file + "," + std::to_string(info.iIcon);
  // The shell named its own library or no usable file at all. Some shells (Wine's among them) do not
  // report a folder's or drive's own icon here, so the declaration decides, as it does on Windows.
  const std::string declared = DeclaredIcon(path);
  return declared.empty() ? "Windows Default Icon" : declared;
}

}  // namespace vx
