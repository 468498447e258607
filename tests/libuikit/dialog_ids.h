/* Ids of the dialog that the tests use. */
#pragma once

#define IDD_KIT 100
#define IDC_KIT_PICTURE 1001
#define IDC_KIT_LINE 1002
#define IDC_KIT_BLOCK 1003
#define IDC_KIT_TALL 1004
#define IDC_KIT_BUTTON 1005
#define IDC_KIT_COMBO 1006
#define IDC_KIT_NAME 1007
