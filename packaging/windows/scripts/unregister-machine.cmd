@echo off
rem Takes back what register-machine.cmd did; wants an administrator.
call "%~dp0registration.cmd" machine remove
exit /b %errorlevel%
