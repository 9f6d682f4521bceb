#pragma once
// Whether a location that came from outside (a theme, an import, the command line) may reach the
// system. Showing or writing an icon hands its file name to the shell, which will connect to a share
// with the user's credentials, open a device (and wait on it for ever) or follow an address. The test
// is made on the text as the shell will use it: the quotes it strips taken away and the environment
// variables it expands expanded.
#include <windows.h>

#include <string>

namespace vx {

enum class LocationRisk {
  None,
  Share,          // \\host\share, //host/share
  RawPath,        // \\?\, \??\, \\.\ (devices and raw NT paths)
  Address,        // a scheme before a colon: http:, file:, shell:, ...
  DeviceName,     // CON, NUL, COM1, LPT1, CONIN$, ... as any part of the path, with any extension
  Stream,         // a colon after the drive: an alternate data stream
  NetworkDrive,   // a drive letter that is a network drive on this machine
  UnsetVariable,  // %NAME% with NAME not set: the shell would keep it, or another user's would expand it
};

// Words for a report: "a network share", "a device name", ...
const char* RiskText(LocationRisk risk);

// The location ("file,index" or a bare file) with every double quote removed and its environment
// variables expanded; unset variables stay as they are. "%SystemRoot%" stands for the Windows folder
// even where the environment does not have it (Windows 95 and 98), as the icon lists read it.
std::string ShellForm(const std::string& location);

// The type of each drive letter, asked of the system once for as long as it lives (one theme load):
// the question can take milliseconds, and a theme names the same drive in nearly every value.
class DriveTypes {
 public:
  UINT Of(char letter);

 private:
  UINT types_[26] = {};
  bool known_[26] = {};
};

// None when the location may be shown and written. `drives` shares the drive types between calls.
LocationRisk CheckLocation(const std::string& location, DriveTypes* drives = nullptr);

// The same file, by full path (".", ".." and "/" resolved, letter case ignored), not by text.
bool SameFile(const std::string& a, const std::string& b);

// While it lives, a missing disk (an empty floppy or CD drive) fails the call quietly instead of
// raising the system's "There is no disk in the drive" box. The old mode comes back at the end.
class QuietDriveErrors {
 public:
  QuietDriveErrors();
  ~QuietDriveErrors();
  QuietDriveErrors(const QuietDriveErrors&) = delete;
  QuietDriveErrors& operator=(const QuietDriveErrors&) = delete;

 private:
  UINT old_;
};

}  // namespace vx
