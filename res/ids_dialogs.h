#pragma once
// Dialogs: prompt (1000-1099), icon picker and rename box (1100-1299), about box (1300-1399), review (1400-1419).
#include "ids_prompt.h"
#include "ids_picker.h"
#include "ids_review.h"
#include "ids_about.h"
