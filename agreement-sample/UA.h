#pragma once

// Numbers of the resources, for the resource script and the code.

#define IDD_AGREEMENT 100

// Strings, one set per language. IDS_TITLE is the window's title; every other one is the text of the control of the
// same number.
#define IDS_TITLE 1000
#define IDC_PRINTER 1001  // "%s" stands for the queue
#define IDC_QUESTION 1002
#define IDC_AGREE 1003
#define IDC_DISAGREE 1004
#define IDC_DONT_REPORT IDCANCEL  // so that Esc and the cross of the window give the same answer

// The agreement, one text per language, and the control that shows it.
#define IDR_AGREEMENT 1100
#define IDC_AGREEMENT 1100
