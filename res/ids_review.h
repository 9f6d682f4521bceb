#pragma once
// Review Changes (1300-1319).
#define IDD_REVIEW 1300
#define IDC_RV_LABEL 1301
#define IDC_RV_LIST 1302
