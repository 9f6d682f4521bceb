#pragma once
// What Apply does, as data: an ordered list of steps (registry writes and deletions, system parameter
// calls, broadcasts) built first and then executed in order by one routine. Because the plan is data,
// its order can be checked without touching the system, it can be described line by line (a dry run
// or a log), and executing it can record what each write replaced, giving an undo plan.
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
  SetRaw,           // a value of any type put back exactly (undo plans only): type + bytes in text
  DeleteValue,      // DeleteValue(key, value)
  DeleteKey,        // DeleteKey(key = parent path, value = subkey name)
  CreateKey,        // CreateKey(key)
  SystemParameter,  // SystemParametersInfoA(action, uiParam, pvParam, flags)
  Broadcast,        // SendMessageA(HWND_BROADCAST, message, wParam, lParam)
};

struct Step {
  StepKind kind = StepKind::SetString;
  std::string key;    // full key path ("HKEY_CURRENT_USER\..."); DeleteKey: the parent's path
  std::string value;  // value name ("" = the key's default value); DeleteKey: the subkey's name
  std::string text;   // SetString / SetBinary / SetRaw data
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
Step SystemParameter(UINT action, UINT uiParam, UINT flags, std::optional<std::string> pvData = {});
Step Broadcast(WPARAM wParam, LPARAM lParam, UINT message = WM_SETTINGCHANGE);

// True for steps that only tell the system to reload (system parameter calls, broadcasts).
bool IsNotification(const Step& step);

// One line per step, for tests, logs and a dry run. Texts are quoted, so an empty value name or an
// empty text stays visible: set string "HKEY_CURRENT_USER\Control Panel\Cursors" "Arrow" = "".
std::string Describe(const Step& step);
std::vector<std::string> Describe(const Plan& plan);

// What executing a plan replaced. Running `plan` puts back every value and key the executed plan
// wrote or deleted (values with their old type and bytes, removed values, keys that it created),
// newest first, then repeats the executed plan's notifications so the system reloads the old state.
// `exact` is false when the executed plan deleted a key that existed: a key's contents are not
// recorded, so such an undo recreates the key empty.
struct UndoRecord {
  Plan plan;
  bool exact = true;
};

// Performs every step in order. Registry failures are not checked (writes create missing keys);
// the return value is the undo record built from what each step replaced.
UndoRecord Execute(const Plan& plan);
// Performs every step in order without recording anything (for writes that put themselves back).
void Run(const Plan& plan);

}  // namespace vx
