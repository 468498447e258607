/* Ids of the dialog that the tests use. */
#pragma once

#define IDD_TEST 100
#define IDC_TEST_COMBO 1001
#define IDC_TEST_PROGRESS 1002
#define IDC_TEST_STATIC 1003
#define IDC_TEST_BUTTON 1004
