@echo off
rem registration.cmd machine or user, add or remove: tells Windows of the components in the folders
rem x64 and x86 beside this file, for everybody or for the current user, or makes it forget them.
setlocal
set "words=/s"
if /i "%2"=="remove" set "words=%words% /u"
if /i "%1"=="user" set "words=%words% /n /i:user"

rem Where the programs for each are, whichever kind this prompt is of.
set "system64="
set "system32=%SystemRoot%\System32"
if /i "%PROCESSOR_ARCHITECTURE%"=="AMD64" set "system64=%SystemRoot%\System32"
if defined PROCESSOR_ARCHITEW6432 set "system64=%SystemRoot%\Sysnative"
if defined system64 set "system32=%SystemRoot%\SysWOW64"

set "failed=0"
if defined system64 call :tell "%system64%\regsvr32.exe" x64
if exist "%system32%\regsvr32.exe" call :tell "%system32%\regsvr32.exe" x86
if "%failed%%1"=="1machine" echo For everybody this needs a prompt that was opened as administrator.
exit /b %failed%

:tell
if not exist "%~dp0%2\vqmath63.dll" goto :incomplete
%1 %words% "%~dp0%2\vqmath63.dll"
if errorlevel 1 goto :refused
echo %2: done
exit /b 0
:refused
echo %2: regsvr32 %words% has failed
set "failed=1"
exit /b 0
:incomplete
echo %2: vqmath63.dll is missing; unpack the whole zip, and run this where it was unpacked
set "failed=2"
exit /b 0
