#include "ui/seam.h"

#include "system/LaterWindows.h"

#include <commdlg.h>
#include <shellapi.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "registry/LaterApi.h"
#include "ui/HelpPopup.h"
#include "ui/HelpTopics.h"

namespace ui {
namespace {
Seam* g_seam = nullptr;
}

Seam& GetSeam() {
  static RealSeam real;
  return g_seam ? *g_seam : real;
}

void SetSeam(Seam* seam) { g_seam = seam; }

namespace {
// The common dialogs' library is loaded the first time a file dialog opens, not with the program:
// under Wine loading it costs a start about 20 ms, and most runs never open a file. Taken from the
// system folder by full path, so that a file of the same name beside a theme is never loaded.
using FileDialogProc = BOOL(WINAPI*)(OPENFILENAMEA*);
FileDialogProc CommonDialog(const char* name) {
  static HMODULE module = [] {
    char folder[MAX_PATH] = {};
    const UINT n = GetSystemDirectoryA(folder, MAX_PATH);
    if (n == 0 || n >= MAX_PATH) return HMODULE{};
    return LoadLibraryA((std::string(folder) + "\\comdlg32.dll").c_str());
  }();
  return module ? reinterpret_cast<FileDialogProc>(reinterpret_cast<void*>(GetProcAddress(module, name))) : nullptr;
}
}  // namespace

bool RealSeam::ShowFileDialog(HWND owner, FileDialog& dialog) {
  const FileDialogProc show = CommonDialog(dialog.save ? "GetSaveFileNameA" : "GetOpenFileNameA");
  if (!show) return false;
  char file[MAX_PATH] = {};
  lstrcpynA(file, dialog.initialFile.c_str(), MAX_PATH);
  std::string filter = dialog.filter;
  filter.push_back('\0');
  OPENFILENAMEA ofn{};
  ofn.lStructSize = sizeof ofn;
  ofn.hwndOwner = owner;
  ofn.lpstrFilter = filter.c_str();
  ofn.nFilterIndex = 1;
  ofn.lpstrFile = file;
  ofn.nMaxFile = MAX_PATH;
  ofn.lpstrTitle = dialog.title.empty() ? nullptr : dialog.title.c_str();
  ofn.lpstrDefExt = dialog.defaultExt.empty() ? nullptr : dialog.defaultExt.c_str();
  ofn.Flags = OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_EXPLORER;
  if (dialog.save) {
    if (dialog.overwritePrompt) ofn.Flags |= OFN_OVERWRITEPROMPT;
    if (!show(&ofn)) return false;
  } else {
    ofn.Flags |= OFN_FILEMUSTEXIST;
    if (!show(&ofn)) return false;
  }
  dialog.initialFile = dialog.save ? std::string(file) : later::SystemFolderPath(file);
  return true;
}

int RealSeam::ShowMessage(HWND owner, const std::string& text, const std::string& title, unsigned flags) {
  return MessageBoxA(owner, text.c_str(), title.c_str(), flags);
}

void RealSeam::ShellOpen(HWND owner, const std::string& target) {
  ShellExecuteA(owner, "Open", target.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

void RealSeam::RunCommand(const std::string& commandLine) {
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  std::vector<char> line(commandLine.begin(), commandLine.end());
  line.push_back('\0');
  if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) {
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
  }
}

void RealSeam::OpenHelp(HWND owner, const std::string& helpFile, unsigned command,
                        const std::string& keyword) {
  // The help is a folder of web pages beside the program: a context number asked for as a pop-up
  // shows its short text here, in the program; everything else opens a page in the browser.
  if (command == HELP_CONTEXTPOPUP) {
    char* end = nullptr;
    unsigned long n = std::strtoul(keyword.c_str(), &end, 10);
    const HelpTopic* topic =
        (!keyword.empty() && end && *end == '\0') ? FindHelpTopic(static_cast<unsigned>(n)) : nullptr;
    POINT at{};
    GetCursorPos(&at);
    ShowHelpPopup(owner, at, topic ? topic->popup : kNoHelpText, topic ? HelpTarget(helpFile, topic->page) : "");
    return;
  }
  GetSeam().ShellOpen(owner, HelpRequestTarget(helpFile, command, keyword));
}

void EnableShutdownPrivilege() { later::EnableShutdownPrivilege(); }

bool RealSeam::RunAsAdministrator(HWND owner, const std::string& exe, const std::string& parameters) {
  return later::RunAsAdministrator(owner, exe, parameters);
}

void RealSeam::RestartWindows(bool enableShutdownPrivilege) {
  if (enableShutdownPrivilege) EnableShutdownPrivilege();
  ExitWindowsEx(EWX_REBOOT, 0xFFFFFFFF);
}

}  // namespace ui
