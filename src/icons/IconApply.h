#pragma once
// The icon half of Apply: every item of every icon list is written, changed or not (the lists hold the
// whole intended state), in a fixed order: desktop icons and names, Start, Folders, Drives, Others,
// document types, pointers, then the current theme path. Built as a plan (ApplyPlan.h) and executed.
#include <optional>
#include <string>
#include <vector>

#include "apply/Executor.h"
#include "icons/Catalogue.h"
#include "system/Environment.h"

namespace vx {


// What Apply reads from the icon lists, by tab and item key. An item that is not in the list (or a
// list that does not exist) reads as an empty text, as the list control itself answers.
class ListValues {
 public:
  virtual ~ListValues() = default;
  virtual std::string ItemFullPath(int tab, const std::string& key) const = 0;
  virtual std::string ItemCaption(int tab, const std::string& key) const = 0;
  virtual std::string ItemFullPathmouse(int tab, const std::string& key) const = 0;
};

// ListValues read from the main window's icon list controls.
class ListBoxValues : public ListValues {
 public:
  explicit ListBoxValues(const IconLists& lists) : lists_(lists) {}
  std::string ItemFullPath(int tab, const std::string& key) const override;
  std::string ItemCaption(int tab, const std::string& key) const override;
  std::string ItemFullPathmouse(int tab, const std::string& key) const override;

 private:
  const IconLists& lists_;
};

struct IconApplyOptions {
  bool settingsTreeBuilt = false;  // the settings tree was filled in this run
  bool autoApplyMode = false;      // started with "/a"
  // The tree's "Bitmap Thumbnail as Default Icon" node: on, off, or not in the tree.
  std::optional<bool> bitmapThumbnail;
  std::string currentThemePath;    // saved as "Current Theme"
};

// Steps 1 to 8 of the icon half, in their order. Reads the registry once, for the Recycle Bin's
// current default icon (whether the bin shows empty now).
Plan BuildIconApplyPlan(const Environment& env, const std::vector<IconItem>& catalogue,
                        const ListValues& lists, const IconApplyOptions& options);
Plan BuildIconApplyPlan(const Environment& env, const std::vector<IconItem>& catalogue,
                        const IconLists& lists, const IconApplyOptions& options);

// On the XP family the plan holds only what differs from what the system shows now, written to the
// per-user stores; an item set back to what Windows itself keeps has its override removed. Items kept
// for every user are left out when the program runs without administrator rights: these are the
// items that differ and were left out.
std::vector<const IconItem*> HeldBackItems(const Environment& env, const std::vector<IconItem>& catalogue,
                                           const ListValues& lists);

// The XP family's pointer step: the roles that changed, the named scheme that holds them all (named
// after the theme, or "Vexillor"), one SPI_SETCURSORS; nothing when no role changed.
Plan UserPointerSteps(const Environment& env, const std::vector<IconItem>& catalogue, const ListValues& lists,
                      const std::string& currentThemePath);

// The writes that follow "Bitmap Image" when the settings tree decides them (empty otherwise).
Plan BitmapThumbnailSteps(const IconApplyOptions& options);

// The pointer step: fifteen Cursors values, then fifteen SPI_SETCURSORS calls.
Plan PointerSteps(const ListValues& lists);

}  // namespace vx
