#pragma once
// Icons of single folders and drives (the Explorer tab), written at once rather than on Apply.
#include <cstdint>
#include <string>

#include "icons/IconEdits.h"

namespace vx {

// Change and Default Icon on the Explorer tab: the chosen location for the folder tree's selection.
void ExplorerChange(EditHost& host, const std::string& file, int16_t index);
void ExplorerDefault(EditHost& host);

}  // namespace vx
