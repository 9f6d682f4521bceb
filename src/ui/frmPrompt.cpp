// Placeholder until the prompt dialog lands.
#include "ui/seam.h"
namespace ui {
PromptAnswer RealSeam::ShowPrompt(HWND, const PromptRequest&) { return {}; }
}
