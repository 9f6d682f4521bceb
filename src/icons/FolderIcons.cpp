#include "icons/FolderIcons.h"

namespace vx {

// Placeholders only: writing desktop.ini and autorun.inf for the folder tree's selection comes with
// the Explorer tab's own work. Until then Change and Default Icon there write nothing.
void ExplorerChange(EditHost&, const std::string&, int16_t) {}

void ExplorerDefault(EditHost&) {}

}  // namespace vx
