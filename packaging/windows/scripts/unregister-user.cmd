@echo off
rem Takes back what register-user.cmd did.
call "%~dp0registration.cmd" user remove
exit /b %errorlevel%
