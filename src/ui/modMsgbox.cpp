#include "ui/modMsgbox.h"

#include "registry/modRegistry.h"
#include "system/Keys.h"

namespace modMsgbox {
namespace {

using vx::kSettingsKey;
constexpr const char* kSureContinue = "Are you sure you want to continue?";
constexpr const char* kSureChange = "Are you sure you want to change this setting?";

HWND g_owner = nullptr;

std::string Paragraphs(std::initializer_list<std::string> parts) {
  std::string text;
  for (const auto& p : parts) {
    if (!text.empty()) text += "\n\n";
    text += p;
  }
  return text;
}

ui::PromptRequest Request(std::string message, std::string slot0, std::string slot1, std::string slot2,
                          const char* icon) {
  ui::PromptRequest r;
  r.message = std::move(message);
  r.buttons = {std::move(slot0), std::move(slot1), std::move(slot2)};
  r.icon = icon;
  return r;
}

int Ask(std::string message, std::string slot0, std::string slot1, std::string slot2, const char* icon) {
  return Show(Request(std::move(message), std::move(slot0), std::move(slot1), std::move(slot2), icon)).result;
}

template <class Answer>
Answer As(int slot) {
  return static_cast<Answer>(slot);
}

Confirm AskRestore(const std::string& editionName, const char* what) {
  return As<Confirm>(Ask(Paragraphs({"Restoring all your " + editionName + what +
                             " will return them to Microsoft setup defaults.",
                         kSureContinue}),
             "Cancel", "OK", "", ui::kIconQuestion));
}

}  // namespace

void SetOwner(HWND owner) { g_owner = owner; }
HWND Owner() { return g_owner; }

ui::PromptAnswer Show(const ui::PromptRequest& request) { return ui::GetSeam().ShowPrompt(g_owner, request); }

int ShowRemembered(const ui::PromptRequest& request, const std::string& memoryValue) {
  if (modRegistry::GetDword(kSettingsKey, memoryValue) == 1) return -1;
  ui::PromptAnswer answer = Show(request);
  if (answer.doNotShow) modRegistry::SaveDword(kSettingsKey, memoryValue, 1);
  return answer.result;
}

void RestartLater() {
  Ask("One or more of these changes you have made will only take effect the next time you start Windows.",
             "OK", "", "", ui::kIconInformation);
}

ColourDepthAnswer ColourDepth() {
  return As<ColourDepthAnswer>(Ask(Paragraphs({"Your display is currently configured for 256 colours or less.",
                         "To use high colour icons, your display's colour palette must be set to either High "
                         "Colour or True Colour.",
                         "You can change your colour palette settings by selecting the \"Settings...\" button "
                         "below."}),
             "&Settings...", "OK", "", ui::kIconStop));
}

Confirm NotepadOnAllFiles() {
  return As<Confirm>(Ask(Paragraphs({"Adding Notepad to all files causes conflicts with the Microsoft Office shortcut bar.",
                         kSureChange}),
             "Cancel", "OK", "", ui::kIconQuestion));
}

HideNetworkAnswer HideNetworkNeighborhood() {
  return As<HideNetworkAnswer>(Ask(Paragraphs({"Hiding Network Neighborhood disables shell support for Universal Naming Convention "
                         "(UNC) notation.",
                         kSureChange}),
             "&Help", "Cancel", "OK", ui::kIconExclamation));
}

Confirm DisableDesktop() {
  return As<Confirm>(Ask(Paragraphs({"Disabling the Desktop causes a conflict with Internet Explorer 4.0 which may make this "
                         "change irreversable.",
                         kSureChange}),
             "Cancel", "OK", "", ui::kIconExclamation));
}

Confirm RestoreAllPointers(const std::string& editionName) { return AskRestore(editionName, " pointers"); }
Confirm RestoreAllIcons(const std::string& editionName) { return AskRestore(editionName, " system icons"); }
Confirm RestoreAllSettings(const std::string& editionName) { return AskRestore(editionName, " system settings"); }

SaveAnswer SaveBeforeClosing() {
  return As<SaveAnswer>(Ask("Would you like to save your changes before closing?", "&Cancel", "No", "Yes", ui::kIconQuestion));
}

void InvalidTheme(const std::string& fileName) {
  Ask("The file " + fileName + " does not appear to be a valid theme file.", "OK", "", "", ui::kIconStop);
}

void ThemeNotLocal(const std::string& path, const std::string& where) {
  Ask(Paragraphs({"The theme " + path + " was not opened, because it is on " + where + ".",
                         "Copy it to a folder of this computer and open it from there."}),
             "OK", "", "", ui::kIconStop);
}

OverwriteAnswer OverwriteTheme(const std::string& themeName) {
  ui::PromptRequest r = Request(
      Paragraphs({"Are you sure you want to overwrite the Icon Theme:", themeName,
                  "If you tick the box below, theme files will automatically be overwritten when you click save."}),
      "&Cancel", "No", "Yes", ui::kIconQuestion);
  r.checkBox = "Do not ask me this question next time";
  return As<OverwriteAnswer>(ShowRemembered(r, "Dialog Overwrite"));
}

RestartAnswer RestartNow() {
  return As<RestartAnswer>(Ask(Paragraphs({"You will need to restart your computer for one or more of these changes to take effect.",
                         "Would you like to restart your computer now?"}),
             "No", "Yes", "", ui::kIconQuestion));
}

namespace {
// Both rebuild notices share one memory: a tick on either silences the other.
RebuildAnswer RebuildPrompt(const std::string& what, const char* icon) {
  ui::PromptRequest r = Request(
      Paragraphs({what, "For more information about this problem, please select the \"Help\" button below."}),
      "&Help", "OK", "", icon);
  r.checkBox = "Do not show this dialog again";
  r.helpTopic = 4600;
  return As<RebuildAnswer>(ShowRemembered(r, "Dialog Rebuild"));
}
}  // namespace

RebuildAnswer RebuildNotice(const std::string& editionName) {
  return RebuildPrompt(
      Paragraphs({"Vexillor has notified " + editionName + " of your changes.",
                  "Windows 95 and Windows NT contains flaws that can cause these changes to be ignored under "
                  "certain conditions.",
                  "If your changes are not applied you will need to select the \"Rebuild Icon Cache\" option "
                  "from the File menu."}),
      ui::kIconExclamation);
}

RebuildAnswer RebuildNoticeLater() {
  return RebuildPrompt(
      Paragraphs({"Vexillor has notified Windows of your changes.",
                  "Windows keeps copies of the icons it shows, and may go on showing an old one for a while. If "
                  "an icon does not change, select the \"Rebuild Icon Cache\" option from the File menu, or "
                  "sign out of Windows and sign in again."}),
      ui::kIconInformation);
}

ElevateAnswer ContinueAsAdministrator(const std::vector<std::string>& items) {
  std::string list;
  for (size_t i = 0; i < items.size(); ++i) list += (i ? "\n" : "") + items[i];
  return As<ElevateAnswer>(Ask(Paragraphs({"Your other changes were applied. These are kept for every user of this computer, and "
                         "only an administrator can change them:",
                         list,
                         "Would you like to continue as administrator? Vexillor will start again with these "
                         "changes pending, and nothing is written until you press Apply there."}),
             "Not Now", "&Continue as Administrator", "", ui::kIconQuestion));
}

void EmptyName() {
  Ask("You must provide a name for your system icon.", "OK", "", "", ui::kIconExclamation);
}

Confirm RemoveDesktopIni() {
  return As<Confirm>(Ask(Paragraphs({"Restoring this icon will remove the 'desktop.ini' file from the selected folder.",
                         kSureContinue}),
             "Cancel", "OK", "", ui::kIconQuestion));
}

Confirm RemoveAutorunInf() {
  return As<Confirm>(Ask(Paragraphs({"Restoring this icon will remove the 'autorun.inf' file from the selected hard drive.",
                         kSureContinue}),
             "Cancel", "OK", "", ui::kIconQuestion));
}

void ApplyFailed(const std::vector<std::string>& failed, bool stopped, bool administrator) {
  constexpr size_t kShown = 8;
  std::string list;
  for (size_t i = 0; i < failed.size() && i < kShown; ++i) list += (i ? "\n" : "") + failed[i];
  if (failed.size() > kShown) list += "\n(and " + std::to_string(failed.size() - kShown) + " more)";
  std::string message = Paragraphs(
      {stopped ? "Vexillor could not finish applying your changes. It stopped at:" : "Vexillor could not change:",
       list});
  if (administrator)
    message += "\n\nSome of these are kept for every user of this computer, and only an administrator can "
               "change them. To change them, close Vexillor, start it again with \"Run as administrator\" and "
               "apply your changes again.";
  message += stopped ? "\n\nNothing after it was written, and your changes are still pending: you can press "
                       "Apply again, or take back what was written with \"Undo Last Apply\" on the Tools menu."
                     : "\n\nThe rest of your changes were applied.";
  Ask(message, "OK", "", "", ui::kIconExclamation);
}

YesNo InterruptedApply() {
  return As<YesNo>(Ask(Paragraphs({"Vexillor was stopped before it had finished applying your changes, so some of them "
                         "were written and others were not.",
                         "Would you like to put everything back as it was before that Apply?"}),
             "No", "Yes", "", ui::kIconQuestion));
}

YesNo InterruptedUndo() {
  return As<YesNo>(Ask(Paragraphs({"Vexillor was stopped before it had finished taking back your last Apply, so some of "
                         "your earlier settings were put back and others were not.",
                         "Would you like to finish taking that Apply back?"}),
             "No", "Yes", "", ui::kIconQuestion));
}

YesNo JournalUnwritable() {
  return As<YesNo>(Ask(Paragraphs({"Vexillor cannot write the record it keeps of each Apply, so you would not be able to "
                         "take these changes back with \"Undo Last Apply\".",
                         "Would you like to apply them anyway?"}),
             "No", "Yes", "", ui::kIconExclamation));
}

void JournalRejected(const std::string& file) {
  Ask(Paragraphs({"The record of your last Apply has been damaged or changed by another program, so "
                         "Vexillor did not use it and nothing in it was done.",
                         "It has been kept as \"" + file + "\"."}),
             "OK", "", "", ui::kIconExclamation);
}

YesNo MachineWideJournal() {
  return As<YesNo>(Ask(Paragraphs({"Putting back your last Apply would change settings kept for every user of this "
                         "computer, and Vexillor is running with administrator rights. The changes are the "
                         "ones just listed.",
                         "Would you like to make them?"}),
             "No", "Yes", "", ui::kIconQuestion));
}

void NothingToRestore() {
  Ask("You must select a customised folder or hard drive before it can be restored to the default icon.",
             "OK", "", "", ui::kIconInformation);
}

}  // namespace modMsgbox
