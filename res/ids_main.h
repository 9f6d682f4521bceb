#pragma once
// Main window controls (100-199).
#define IDC_TOOLBAR_HOST 100
#define IDC_TOOLBAR 101
#define IDC_TABSTRIP 102
#define IDC_PANE 103
#define IDC_INFOBAR 104
#define IDC_CHANGE 105
#define IDC_DEFAULT 106
#define IDC_RENAME 107
#define IDC_APPLY 108
#define IDC_HELPBTN 109
#define IDC_SETTINGS_TREE 110
#define IDC_FOLDER_TREE 111
#define IDC_SPLITTER 112
// The Shell tab's page: the settings tree and its numeric editor.
#define IDC_SETTINGS_PAGE 113
#define IDC_SETTINGS_FRAME 114
#define IDC_SETTINGS_SCROLL 115
#define IDC_SETTINGS_TEXT 116
#define IDC_SETTINGS_UNIT 117
#define IDC_LIST_FIRST 120  // icon list of tab n is IDC_LIST_FIRST + n

// Main menu commands (200-299).
#define IDM_FILE_OPEN 200
#define IDM_FILE_SAVE 202
#define IDM_FILE_SAVEAS 203
#define IDM_FILE_REBUILD 205
#define IDM_FILE_RECENT1 207  // to IDM_FILE_RECENT1 + 3
#define IDM_FILE_EXIT 212
#define IDM_TOOLS_RESTORE_SETTINGS 220
#define IDM_TOOLS_RESTORE_ICONS 221
#define IDM_TOOLS_RESTORE_POINTERS 222
#define IDM_TOOLS_UNDO 224
#define IDM_TOOLS_REVIEW 225
#define IDM_HELP_CONTENTS 230
#define IDM_HELP_WHATSTHIS 231
#define IDM_HELP_ABOUT 234
#define IDM_WEB_EMAIL 240
#define IDM_WEB_HOME 241
#define IDM_WEB_THEMES 243

// Toolbar-only commands and accelerators (250-259).
#define IDT_BACK 250
#define IDT_FORWARD 251
#define IDT_NEXT_TAB 252
#define IDT_PREV_TAB 253

// The settings tree's right-click menu (260-265): item n of the menu is IDM_TREE_MENU + n.
#define IDM_TREE_MENU 260
