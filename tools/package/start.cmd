@rem Starts {program}.k5x with the same arguments; the exit value is the program's.
@setlocal DisableDelayedExpansion
@set MRLR_START_SCRIPT=stays
@rem A double click gives the whole path in quotes, and its window closes after the last line.
@if %0=="%~f0" set MRLR_START_SCRIPT=closes
@"%~dp0{program}.k5x" %*
