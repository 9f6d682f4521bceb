#pragma once
// What Apply does, as data: an ordered list of steps (registry writes and deletions, folders, system
// parameter calls, broadcasts) built first and then carried out by one executor (Executor.h). Because a
// plan is data, its order can be checked without touching the system, it can be described line by line
// (a dry run or a log), and carrying it out can record what each step replaced, giving an exact undo.
#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vx {

enum class StepKind {
  SetString,        // SaveString(key, value, text)
  SetDword,         // SaveDword(key, value, number)
  SetBinary,        // SaveBinary(key, value, text as bytes)
  SetRaw,           // a value of any type put back exactly (undo plans): type + bytes in text
  DeleteValue,      // DeleteValue(key, value)
  DeleteKey,        // DeleteKey(key = parent path, value = subkey name)
  CreateKey,        // CreateKey(key)
  PutKeyTree,       // a deleted key put back whole (undo plans): the key tree, encoded, in text
  CreateFolder,     // a folder (key = its path); one that is there already counts as done
  RemoveFolder,     // an empty folder (key = its path); one that is not there counts as done
  SystemParameter,  // SystemParametersInfoA(action, uiParam, pvParam, flags)
  Broadcast,        // SendMessageTimeoutA(HWND_BROADCAST, message, wParam, lParam), a hung window passed over
};

struct Step {
  StepKind kind = StepKind::SetString;
  std::string key;    // full key path ("HKEY_CURRENT_USER\..."); DeleteKey: the parent's path; folders: the path
  std::string value;  // value name ("" = the key's default value); DeleteKey: the subkey's name
  std::string text;   // SetString / SetBinary / SetRaw / PutKeyTree data
  int32_t number = 0; // SetDword data
  DWORD rawType = REG_NONE;  // SetRaw

  // SystemParameter. pvParam is null unless pvData holds a buffer (a text with its terminator, or a
  // record), which the executor passes by address.
  UINT action = 0;
  UINT uiParam = 0;
  std::optional<std::string> pvData;
  UINT flags = 0;

  // Broadcast.
  UINT message = WM_SETTINGCHANGE;
  WPARAM wParam = 0;
  LPARAM lParam = 0;

  // A step whose failure is passed over: the run goes on with the next step even when it throws.
  bool skipOnError = false;

  // What the step is for, in the user's words ("the Closed Folder icon"), for reports of failed writes.
  std::string label;

  bool operator==(const Step&) const = default;
};

using Plan = std::vector<Step>;

Step SetString(const std::string& key, const std::string& value, const std::string& text);
Step SetDword(const std::string& key, const std::string& value, int32_t number);
Step SetBinary(const std::string& key, const std::string& value, const std::string& bytes);
Step SetRaw(const std::string& key, const std::string& value, DWORD type, const std::string& bytes);
Step DeleteValue(const std::string& key, const std::string& value);
Step DeleteKey(const std::string& parentKey, const std::string& subkey);
Step CreateKey(const std::string& key);
Step PutKeyTree(const std::string& key, const std::string& encodedTree);
Step CreateFolder(const std::string& path);
Step RemoveFolder(const std::string& path);
Step SystemParameter(UINT action, UINT uiParam, UINT flags, std::optional<std::string> pvData = {});
Step Broadcast(WPARAM wParam, LPARAM lParam, UINT message = WM_SETTINGCHANGE);

// Appends `more` to `plan`.
void Append(Plan& plan, const Plan& more);
// The steps with skipOnError set.
Plan Skippable(Plan plan);

// True for steps that only tell the system to reload (system parameter calls, broadcasts).
bool IsNotification(const Step& step);

// One line per step, for tests, logs and a dry run. Texts are quoted, so an empty value name or an
// empty text stays visible: set string "HKEY_CURRENT_USER\Control Panel\Cursors" "Arrow" = "".
std::string Describe(const Step& step);
std::vector<std::string> Describe(const Plan& plan);

}  // namespace vx
