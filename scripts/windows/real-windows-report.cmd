@echo off
rem Runs all tests of the folder that this file lies in, and writes report.txt beside it: the system, what each test
rem printed, and which did not pass. Made for a double-click on a real Windows, by an administrator: some tests write
rem below HKEY_LOCAL_MACHINE\Software, and take away what they wrote. Exit code 1: a test did not pass.
setlocal
cd /d "%~dp0"
set report=%~dp0report.txt
set output=%~dp0output.txt
set failures=0
set count=0

call :describe >"%report%" 2>&1
for /f "usebackq tokens=1* delims=|" %%a in ("tests.txt") do call :run "%%a" "%%b"
echo.>>"%report%"
echo %count% tests, %failures% did not pass>>"%report%"
del "%output%"
echo %count% tests, %failures% did not pass. See %report%
if not "%~1"=="--no-pause" pause
if not %failures%==0 exit /b 1
exit /b 0

:describe
echo Wren Gate, tests on Windows
type version.txt
ver
echo processor %PROCESSOR_ARCHITECTURE% %PROCESSOR_ARCHITEW6432%
reg query "HKLM\Software\Microsoft\Windows NT\CurrentVersion" /v ProductName
reg query "HKLM\Software\Microsoft\Windows NT\CurrentVersion" /v CurrentBuildNumber
reg query "HKLM\Software\Microsoft\Windows NT\CurrentVersion" /v DisplayVersion
reg query "HKLM\System\CurrentControlSet\Control\Nls\CodePage" /v ACP
exit /b 0

rem NAME COMMAND
:run
set /a count+=1
echo %~1
echo.>>"%report%"
echo ==== %~1: %~2>>"%report%"
%~2 >"%output%" 2>&1 <nul
set code=%errorlevel%
type "%output%" >>"%report%"
if %code%==0 (
  echo ---- passed: %~1>>"%report%"
) else (
  set /a failures+=1
  echo ---- FAILED with exit code %code%: %~1>>"%report%"
  echo   FAILED with exit code %code%
)
exit /b 0
