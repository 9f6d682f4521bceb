#pragma once
// Resource identifiers, grouped in ranges:
//   1-16      icons: the program icon, then the fifteen pointer images (ExtractIconA index = id - 1)
//   100-199   main window controls           200-299  main menu commands
//   300-399   toolbar and tree bitmaps       1000-1099 prompt dialog
//   1100-1199 icon picker                    1200-1299 rename box
#define IDI_PROGRAM 1
#define IDI_POINTER_FIRST 2  // pointer n (1 to 15) is IDI_POINTER_FIRST + n - 1

#include "ids_main.h"
#include "ids_dialogs.h"
#include "ids_art.h"
