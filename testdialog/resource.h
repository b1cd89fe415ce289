#pragma once

// Numbers of the test dialog's resources, for the resource script and the code. They stay as they are: whoever drives
// the dialog from outside knows the controls by them.

#define IDM_COMMON_CONTROLS 2

#ifndef IDC_STATIC
#define IDC_STATIC -1
#endif

#define IDD_MAIN 100
#define IDD_IDENTITY 101
#define IDD_SUPPLIES 102
#define IDD_REPORT 103
#define IDD_SERVER 104
#define IDD_PROTECTION 105
#define IDD_HISTORY 106
#define IDD_TRACE 107

// The main window. Its button "Close" is IDCANCEL.
#define IDC_PRINTERS 1001
#define IDC_ADDRESS 1002
#define IDC_ADD 1003
#define IDC_SEARCH 1004
#define IDC_READ_AGAIN 1005
#define IDC_PAGES 1006
#define IDC_STATUS 1007
#define IDC_RUN_AT_WORK 1008
#define IDC_PROGRESS 1009
#define IDC_ELAPSED 1010
#define IDC_CANCEL_WORK 1011
#define IDC_COPY_DIAGNOSIS 1012

#define IDC_IDENTITY_ROWS 1101
#define IDC_IDENTITY_DETAILS 1102

#define IDC_GAUGES 1201  // the place of the gauges, which are numbered on from here
#define IDC_SUPPLY_ROWS 1251
#define IDC_SUPPLY_DETAILS 1252

#define IDC_PRINT_VOLUME 1301
#define IDC_PRODUCT_PROTECTION 1302
#define IDC_COLLECT 1303
#define IDC_COPY_REPORT 1304
#define IDC_SAVE_REPORT 1305
#define IDC_REPORT 1306
#define IDC_FINDINGS 1307

#define IDC_BASE_URL 1401
#define IDC_CHECK_DATE 1402
#define IDC_CHECK_SBX 1403
#define IDC_POST_REPORT 1404
#define IDC_POST_HINT 1405
#define IDC_EXCHANGE_ROWS 1406
#define IDC_EXCHANGE_DETAILS 1407

#define IDC_PROTECTION_ROWS 1501
#define IDC_VERDICT 1502
#define IDC_SWITCH_ON 1503
#define IDC_SWITCH_OFF 1504
#define IDC_VERDICT_LABEL 1505

#define IDC_HISTORY_ROWS 1601
#define IDC_RULES 1602
#define IDC_RULE_DETAILS 1603
#define IDC_CLEAR_HISTORY 1604

#define IDC_TRACE_LEVEL 1701
#define IDC_TRACE_LINES 1702
#define IDC_CLEAR_TRACE 1703
#define IDC_SAVE_TRACE 1704

// Labels that move with what stands below them.
#define IDC_ADDRESS_LABEL 1801
#define IDC_DETAILS_LABEL 1802
#define IDC_SECOND_LABEL 1803
