# Wine without Mono, browser, menus, crash dialogs and display; sourced by the scripts beside it, which
# set WINEPREFIX first.
export WINEARCH=win64 WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe,winedbg.exe="
unset DISPLAY WAYLAND_DISPLAY
wine=/usr/lib/wine/wine64
[ -x "$wine" ] || wine=$(command -v wine64 || command -v wine) || wine=wine
export WINELOADER=$wine

# Makes the prefix unless it stands, and starts one server for all programs, which ends with the
# script. Writes output.txt into the current folder.
start_wine() {
  local attempt
  for attempt in 1 2 3; do
    [ ! -e "$WINEPREFIX/made" ] || break
    rm -rf "$WINEPREFIX"  # a busy machine's Wine at times leaves one half made
    "$wine" wineboot -i >output.txt 2>&1
    timeout 60 wineserver -w 2>/dev/null  # the server that lasts starts when this one has ended
    [ ! -e "$WINEPREFIX/drive_c/windows/system32/kernel32.dll" ] || touch "$WINEPREFIX/made"
  done
  if [ ! -e "$WINEPREFIX/made" ]; then
    cat output.txt
    echo "Wine cannot make its prefix"
    exit 1
  fi
  wineserver -p60 2>/dev/null
  trap 'wineserver -k 2>/dev/null' EXIT
}
