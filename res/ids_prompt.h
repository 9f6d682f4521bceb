#pragma once
// The prompt dialog (frmPrompt).
#define IDD_PROMPT 1000
#define IDC_PROMPT_ICON 1001
#define IDC_PROMPT_TEXT 1002
#define IDC_PROMPT_CHECK 1003
// The button of slot n is IDC_PROMPT_BUTTON0 + n (slot 0 is the rightmost).
#define IDC_PROMPT_BUTTON0 1010
#define IDC_PROMPT_BUTTON1 1011
#define IDC_PROMPT_BUTTON2 1012
