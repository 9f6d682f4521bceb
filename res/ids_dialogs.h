#pragma once
// Dialogs: prompt (1000-1099), icon picker (1100-1199), rename box (1200-1299).
