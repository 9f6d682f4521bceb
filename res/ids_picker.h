#pragma once
// Icon picker (1100-1199) and rename box (1200-1299).
#define IDD_CHANGEICON 1100
#define IDC_CI_FILELABEL 1101
#define IDC_CI_FILENAME 1102   // txtFilename
#define IDC_CI_BROWSE 1103     // cmdBrowse
#define IDC_CI_ICONLABEL 1104
#define IDC_CI_CONTAINER 1105  // Container: the clipping frame of the grid
#define IDC_CI_LIST 1106       // lstMain: the grid itself, a child of Container
#define IDC_CI_SCROLL 1107     // Scroll

#define IDD_RENAME 1200
#define IDC_RN_LABEL 1201      // label
#define IDC_RN_TEXT 1202       // textbox
