@echo off
rem Registers vqmath63 for the current user; needs no administrator.
call "%~dp0registration.cmd" user add
exit /b %errorlevel%
