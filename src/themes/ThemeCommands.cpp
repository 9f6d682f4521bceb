#include "themes/ThemeCommands.h"

#include "registry/modCommon.h"
#include "ui/modMsgbox.h"
#include "ui/seam.h"

namespace vx {
namespace {

constexpr const char* kOwnExtension = ".vxtheme";

// A filter text with its inner NULs (the literal's own terminator left out).
template <size_t N>
std::string Filter(const char (&text)[N]) {
  return std::string(text, N - 1);
}

bool EndsWith(const std::string& text, std::string_view end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string NameOf(const std::string& path) {
  const size_t slash = path.rfind('\\');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The open-file dialog; "" when cancelled.
std::string AskThemeToOpen(HWND owner) {
  ui::FileDialog d;
  d.title = "Open Theme";
  d.filter = Filter("All Theme Files\0*.vxtheme;*.motif;*.theme\0Icon Theme (*.vxtheme)\0*.vxtheme\0"
                    "Microangelo Motif (*.motif)\0*.motif\0Microsoft Theme (*.theme)\0*.theme\0");
  return ui::GetSeam().ShowFileDialog(owner, d) ? d.initialFile : "";
}

}  // namespace

ThemeKind KindOf(const std::string& path) {
  const std::string lower = LowerAscii(path);
  if (EndsWith(lower, kOwnExtension)) return ThemeKind::Own;
  if (EndsWith(lower, ".motif")) return ThemeKind::Motif;
  if (EndsWith(lower, ".theme")) return ThemeKind::Plus;
  return ThemeKind::Unknown;
}

modMsgbox::OverwriteAnswer ConfirmOverwrite(const std::string& themePath) {
  const modMsgbox::OverwriteAnswer answer = modMsgbox::OverwriteTheme(NameOf(themePath));
  // Not asked: the user asked never to be asked again, which means overwrite.
  return answer == modMsgbox::OverwriteAnswer::NotAsked ? modMsgbox::OverwriteAnswer::Overwrite : answer;
}

void NotThemeMessage(const std::string& file) { modMsgbox::InvalidTheme(NameOf(file)); }

void ReportRefused(const std::string& file, const std::vector<Refusal>& refused) {
  if (refused.empty()) return;
  // Every item by name with why, one line per category (a hostile file may name every item).
  std::string list;
  int tab = 0;
  for (const Refusal& r : refused) {
    if (r.tab != tab) list.append(list.empty() ? "" : "\n").append(ThemeSection(r.tab)).append(": ");
    else list.append(", ");
    list.append(r.item).append(" (").append(r.reason).append(")");
    tab = r.tab;
  }
  ui::PromptRequest r;
  r.message = "The theme " + NameOf(file) +
              " names icons that were not loaded, because showing them would reach past this computer's own "
              "files (for example " + refused.front().value + ") or their names cannot be read:\n\n" + list +
              "\n\nEvery other icon of the theme was loaded.";
  r.buttons = {"OK", "", ""};
  r.icon = ui::kIconExclamation;
  modMsgbox::Show(r);
}

bool ThemeFileReadable(const std::string& path) {
  HANDLE h = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) return false;
  CloseHandle(h);
  return true;
}

OpenOutcome OpenThemeFile(std::string path, const Environment& env, ThemeLists& lists, HWND owner) {
  OpenOutcome outcome;
  for (;;) {
    if (path.empty()) path = AskThemeToOpen(owner);
    if (path.empty()) return outcome;  // cancelled (after whatever was refused before)
    outcome.path = path;
    const ThemeKind kind = KindOf(path);
    if (kind == ThemeKind::Unknown) {
      outcome.status = OpenOutcome::NotTheme;
      NotThemeMessage(path);
      path.clear();
      continue;
    }
    if (!ThemeFileReadable(path)) {
      outcome.status = OpenOutcome::Unreadable;
      NotThemeMessage(path);
      return outcome;
    }
    switch (kind) {
      case ThemeKind::Own: outcome.report = LoadTheme(path, env, lists); break;
      case ThemeKind::Motif: outcome.report = ImportMotif(path, env, lists); break;
      default: outcome.report = ImportPlusTheme(path, env, lists); break;
    }
    outcome.status = OpenOutcome::Loaded;
    ReportRefused(path, outcome.report.refused);
    return outcome;
  }
}

std::string ChooseSavePath(const std::string& currentTheme, bool saveAs, HWND owner) {
  std::string path;
  if (!saveAs && !currentTheme.empty()) {
    switch (ConfirmOverwrite(currentTheme)) {
      case modMsgbox::OverwriteAnswer::Cancel: return "";
      case modMsgbox::OverwriteAnswer::Overwrite: path = currentTheme; break;
      default: break;  // another name
    }
  }
  if (path.empty()) {
    ui::FileDialog d;
    d.title = "Save Theme";
    d.filter = Filter("Icon Theme\0*.vxtheme\0");
    d.save = true;
    if (!ui::GetSeam().ShowFileDialog(owner, d) || d.initialFile.empty()) return "";
    path = d.initialFile;
  }
  if (!EndsWith(LowerAscii(path), kOwnExtension)) path += kOwnExtension;
  return path;
}

}  // namespace vx
