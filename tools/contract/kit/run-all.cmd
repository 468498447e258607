@rem Runs the test programs, then the checks of the Native Wifi interface with the same arguments
@rem as this script: --scan, --radio. The result is results\contract.jsonl.
@setlocal DisableDelayedExpansion
@set START_SCRIPT=stays
@rem A double click gives the whole path in quotes, and its window closes after the last line.
@if %0=="%~f0" set START_SCRIPT=closes
@cd /d "%~dp0"
@if not exist results mkdir results
@cd results
@for %%t in ({programs}) do @call :test %%t
@echo.
@echo Checks of the Native Wifi interface
@..\contract.exe %* --output contract.jsonl --tests {reports}
@set RESULT=%ERRORLEVEL%
@if %START_SCRIPT%==closes pause
@exit /b %RESULT%

:test
@echo.
@echo %1: windows open and close by themselves; please do not touch the mouse and the keyboard
@..\tests\bin\%1.exe --gtest_brief=1 --gtest_output=json:%1.json
@exit /b 0
