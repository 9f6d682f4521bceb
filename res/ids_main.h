#pragma once
// Main window: controls, menus, toolbar.
#define IDM_MAIN 200
#define IDA_MAIN 201
