@echo off
rem Registers vqmath63 for every user of this machine; wants an administrator.
call "%~dp0registration.cmd" machine add
exit /b %errorlevel%
