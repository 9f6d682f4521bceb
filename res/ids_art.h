#pragma once
// Drawn bitmaps (300-399). Each strip holds square images side by side on the mask colour
// RGB(255, 0, 255); build image lists from them with ILC_COLOR24 | ILC_MASK.
#define IDB_TOOLBAR 300    // toolbar images, 16 x 16
#define IDB_TOOLBAR24 301  // the same images at 24 x 24, for large fonts
#define IDB_TREE 302       // settings tree images, 16 x 16

#define ART_MASK_COLOUR RGB(255, 0, 255)

// Toolbar strip, image by image (the toolbar's buttons in order, separators left out).
#define TB_IMAGE_COUNT 12
#define TBI_OPEN_THEME 0
#define TBI_SAVE_THEME 1
#define TBI_BACK 2
#define TBI_FORWARD 3
#define TBI_REBUILD_CACHE 4
#define TBI_RESTORE_ICONS 5
#define TBI_HOME_PAGE 6
#define TBI_EMAIL_AUTHOR 7
#define TBI_WHATS_THIS 8
#define TBI_CONTENTS 9
#define TBI_ABOUT 10
#define TBI_EXIT 11

// Settings tree strip: image i is the tree's image number i + 1.
#define TREE_IMAGE_COUNT 7
#define TREEI_GROUP_CLOSED 0
#define TREEI_GROUP_OPEN 1
#define TREEI_NUMBER 2
#define TREEI_NUMBER_OVERRIDDEN 3
#define TREEI_SWITCH_OFF 4
#define TREEI_SWITCH_ON 5
#define TREEI_UNAVAILABLE 6
