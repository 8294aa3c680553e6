#!/bin/bash
# Uses the zip for Windows as somebody does who has nothing else: unpacks it, registers it, runs every
# example, removes it. Under Wine, in a prefix of its own that knows nothing of the component.
#
# usage: package.sh ZIP WORK_FOLDER
#
# What an example prints is told in its comments, by lines "> TEXT"; one without such lines is for a
# host that is not here, and is left to tools/check_examples.py. Closes with
# "package: C checks, F failures"; exit status 1 on any failure.
set -u

here=$(cd "$(dirname "$0")" && pwd)
zip=$(realpath "${1:?usage: package.sh ZIP WORK_FOLDER}")
work=$(realpath -m "${2:?usage: package.sh ZIP WORK_FOLDER}")
rm -rf "$work"
mkdir -p "$work/Größe 1" && cd "$work" || exit 2

export WINEPREFIX=$work/prefix LC_ALL=C.UTF-8
. "$here/wine.sh"

checks=0
failures=0
check() {  # NAME COMMAND...
  local name=$1
  shift
  checks=$((checks + 1))
  if "$@" >output.txt 2>&1; then
    echo "  ok      $name"
  else
    echo "  FAILED  $name"
    head -n 20 output.txt | sed 's/^/    /'
    failures=$((failures + 1))
  fi
}

python3 -m zipfile -e "$zip" "$work/Größe 1"
folder=$(echo "$work/Größe 1"/vqmath63-*-windows)
start_wine

in_folder() { (cd "$folder" && timeout 300 "$wine" "$@"); }
# What the system knows of classes, of the machine's and of the user's.
registry() {  # NAME
  for root in HKLM HKCU; do
    "$wine" reg export "$root\\Software\\Classes" "$1.$root.reg" /y >/dev/null 2>&1 || : >"$1.$root.reg"
  done
}
same_registry() { cmp before.HKLM.reg "$1.HKLM.reg" && cmp before.HKCU.reg "$1.HKCU.reg"; }
other_registry() {  # NAME ROOT
  ! cmp -s "before.$2.reg" "$1.$2.reg" && iconv -f UTF-16 -t UTF-8 "$1.$2.reg" | grep -q vq140Analyse.ztIntegrate
}

# An example prints what its comments say.
prints() {  # EXAMPLE COMMAND...
  local example=$1
  shift
  # As a user would: in the folder of the examples.
  (cd "$(dirname "$example")" && timeout 300 "$wine" "$@" 2>&1) | sed 's/ *\r*$//' >printed.txt
  tr -d '\r' <"$example" | sed -n "s,^ *\(//\|'\|\*\|#\) > ,,p" | diff - printed.txt
}
example_program() {  # EXAMPLE, its compiled form beside it
  local program; program=$(dirname "$1")/$(basename "${1//./_}").exe
  case $1 in
    *.cpp) x86_64-w64-mingw32-g++-posix -std=c++20 -Wall -Wextra -I"$folder/include" "$1" \
      -o "$program" -static -lole32 -loleaut32 -luuid ;;
    *.c) x86_64-w64-mingw32-gcc-posix -Wall -Wextra -I"$folder/include" "$1" \
      -o "$program" -lole32 -loleaut32 -luuid ;;
  esac
}

echo "" >empty.vbs
# The script host registers itself when it is first used; a user's entries have a place.
"$wine" cscript //nologo empty.vbs
"$wine" reg add 'HKCU\Software\Classes' /f >/dev/null 2>&1
registry before
check "the README names the version" grep -q "vqmath63 [0-9.]* for" "$folder/README.txt"
host_says_three() { in_folder "$1" call ztIntegrate Integral [0,1,2] [0,1,4] | head -n 1 | grep -x 3; }
check "vqhost.exe, the library beside it" host_says_three 'x64\vqhost.exe'
links_lead_somewhere() {
  grep -ohP '\]\(\K[^)#:]+(?=[)#])' "$folder"/docs/*.md | sort -u |
    while read -r link; do ls -d "$folder/docs/$link" >/dev/null || echo "$link"; done | grep . && return 1
  true
}
check "the guide's links lead into the folder" links_lead_somewhere
tells_of_files() {  # as the command line of the guide does
  (cd "$folder/x64" && "$wine" cmd /c "$(grep -m 1 '^\.\\vqhost accumulate' ../docs/windows.md)") |
    tr -d '\r' | grep -x 'quarters.csv: 32 periods of 8 series'
}
check "the guide's command line" tells_of_files
mkdir -p "$work/part" && cp "$folder"/*.cmd "$work/part"
half_unpacked() { (cd "$work/part" && "$wine" cmd /c register-user.cmd) | grep "unpack the whole zip"; }
check "scripts alone ask for the rest" half_unpacked
check "early_bound.cpp compiles" example_program "$folder/examples/windows/early_bound.cpp"
check "early_bound.cpp, without registration" prints "$folder/examples/windows/early_bound.cpp" \
  early_bound_cpp.exe '..\..\x64\vqmath63.manifest'
# A program of its own folder, with the library and the guide's manifest for it.
mkdir -p "$work/beside"
cp "$folder/x64/vqmath63.dll" "$folder/examples/windows/early_bound_cpp.exe" "$work/beside"
sed -n '/<?xml/,/<\/assembly>/p' "$folder/docs/windows.md" >"$work/beside/early_bound_cpp.exe.manifest"
check "early_bound.cpp, by a manifest of its own" prints "$folder/examples/windows/early_bound.cpp" \
  "$work/beside/early_bound_cpp.exe"
check "nothing is registered by use" eval 'registry used; same_registry used'

check "register-machine.cmd" in_folder cmd /c register-machine.cmd
registry machine
check "the machine knows the classes" other_registry machine HKLM
run=0
for example in "$folder"/examples/windows/*; do
  name=$(basename "$example")
  grep -q '> ' <(grep -E "^ *(//|'|\*|#) > " "$example") || continue
  run=$((run + 1))
  case $name in
    *.vbs | *.js) check "$name" prints "$example" cscript //nologo "$name" ;;
    *) check "$name compiles" example_program "$example"
      check "$name" prints "$example" "${name//./_}.exe" ;;
  esac
done
# What the guide itself shows of a script language.
guide_prints() {  # LANGUAGE SCRIPT WORDS
  python3 -c 'import re, sys
text = open(sys.argv[2], encoding="utf-8").read()
blocks = re.findall("```" + sys.argv[1] + "\n(.*?)```", text, re.S)
print(next(block for block in blocks if "WScript" in block))' "$1" "$folder/docs/windows.md" >"$2"
  timeout 300 "$wine" cscript //nologo "$2" | tr -d '\r' | grep -x "$3"
}
check "the guide's VBScript" guide_prints vb guide.vbs "3 values, mean 20"
check "the guide's JScript" guide_prints js guide.js "3 values, mean 20"
check "there are examples" test "$run" -ge 4
mkdir -p "$work/alone" && cp "$folder/x64/vqhost.exe" "$work/alone"
check "vqhost.exe, the registered component" host_says_three "$work/alone/vqhost.exe"
check "unregister-machine.cmd" in_folder cmd /c unregister-machine.cmd
check "the machine knows no more than before" eval 'registry removed; same_registry removed'

check "register-user.cmd" in_folder cmd /c register-user.cmd
registry user
check "the user has the classes" other_registry user HKCU
check "the machine has not" cmp before.HKLM.reg user.HKLM.reg
check "unregister-user.cmd" in_folder cmd /c unregister-user.cmd
check "the user has no more than before" eval 'registry gone; same_registry gone'

echo "package: $checks checks, $failures failures"
[ "$failures" -eq 0 ]
