#pragma once
// Review Changes (1400-1419).
#define IDD_REVIEW 1400
#define IDC_RV_LABEL 1401
#define IDC_RV_LIST 1402
