#include "support/ScreenReader.h"

#include <fstream>
#include <sstream>

#include "ui/win.h"

namespace vxtest {

HeardList ReadAsScreenReader(HWND list) {
  HeardList heard;
  heard.error = "probe did not run";
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string self = ui::ModulePath();
  const std::string probe = self.substr(0, self.rfind('\\') + 1) + "a11yprobe.exe";
  const std::string out = std::string(temp) + "a11yprobe_" + std::to_string(GetCurrentProcessId()) + ".txt";
  DeleteFileA(out.c_str());
  std::string command = "\"" + probe + "\" " + std::to_string(reinterpret_cast<INT_PTR>(list)) + " \"" + out + "\"";
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  if (!CreateProcessA(probe.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi))
    return heard;
  // The probe's calls arrive as messages to this thread: keep them flowing until it ends.
  const DWORD deadline = GetTickCount() + 30000;
  while (MsgWaitForMultipleObjects(1, &pi.hProcess, FALSE, 200, QS_ALLINPUT) != WAIT_OBJECT_0 &&
         GetTickCount() < deadline) {
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageA(&msg);
    }
  }
  if (WaitForSingleObject(pi.hProcess, 0) != WAIT_OBJECT_0) TerminateProcess(pi.hProcess, 9);
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  std::ifstream in(out);
  std::string line;
  while (std::getline(in, line)) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    heard.error.clear();
    if (word == "error") heard.error = line;
    else if (word == "role") words >> heard.role;
    else if (word == "count") words >> heard.count;
    else if (word == "selection") words >> heard.selection;
    else if (word == "item") {
      HeardItem item;
      long id = 0;
      words >> id >> item.role >> item.state;
      std::getline(words >> std::ws, item.name);
      heard.items.push_back(item);
    }
  }
  in.close();
  DeleteFileA(out.c_str());
  return heard;
}

}  // namespace vxtest
