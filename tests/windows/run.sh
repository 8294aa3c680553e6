#!/bin/bash
# Runs the Windows tests under Wine: registers the component, calls it from VBScript, JScript and
# C++ in every way that the system has, runs the transcripts of vqhost.exe, and looks at what
# registration leaves behind.
#
# usage: run.sh [--can-run] BUILD_DIR [HOST_TESTS]
#   --can-run   says whether this Wine runs the programs of the build, no more
#   BUILD_DIR   the folder of a Windows build with its tests; of a 32-bit one where Wine has its part
#               for 32-bit programs
#   HOST_TESTS  the native program that runs the transcripts; by default that of the build "release"
#               beside BUILD_DIR
#
# Prints one line per program, what failed in it, how many calls each host made, and a closing line;
# exit status 1 on any failure.
set -u

only_ask=no
if [ "${1:-}" = --can-run ]; then
  only_ask=yes
  shift
fi
build=$(cd "${1:?usage: run.sh BUILD_DIR}" && pwd) || exit 2
here=$(cd "$(dirname "$0")" && pwd)
component=$build/src/vqmath63.dll
clients=$build/tests/windows
work=$build/wine
data=$(realpath "$here/../data")
host_tests=${2:-$build/../release/tests/test_host}

export WINEPREFIX=$work/prefix LC_ALL=C
. "$here/wine.sh"
# Where Wine for 32-bit programs is installed too, the plain name starts 32-bit script hosts; those
# of each kind have a folder of their own.
system='C:\windows\system32'
if head -c 1024 "$component" | grep -aqP 'PE\x00\x00\x4C\x01'; then
  system='C:\windows\syswow64'
  if ! ls /usr/lib/i386-linux-gnu/wine/*/ntdll.so >/dev/null 2>&1; then
    echo "not under Wine: it has no part for 32-bit programs here (package wine32)"
    exit 3
  fi
fi
[ "$only_ask" = no ] || exit 0

mkdir -p "$work/run"
cd "$work/run" || exit 2

hosts=()  # that made calls, and how many
programs=0
checks=0
failures=0

# A path as programs under Wine see it: every file of this machine is below drive Z.
windows_path() {
  printf 'Z:%s' "${1//\//\\}"
}

report() {  # NAME CHECKS FAILURES [MORE]
  printf '  %-30s %4d checks, %d failures%s\n' "$1" "$2" "$3" "${4:-}"
  programs=$((programs + 1))
  checks=$((checks + $2))
  failures=$((failures + $3))
}

# Runs a program, with the system's own ones those of the component's kind.
under_wine() {  # PROGRAM WORDS...
  local program=$1
  shift
  case $program in
    regsvr32 | cscript) program=$system\\$program.exe ;;
  esac
  timeout 300 "$wine" "$program" "$@"
}

# Runs a program that closes with "checks N" and "failures N". A script that stops half way leaves
# no such lines, whatever its exit status says.
run() {  # NAME COMMAND...
  local name=$1 output status said failed
  shift
  output=$(under_wine "$@" 2>errors.txt | tr -d '\r'; exit "${PIPESTATUS[0]}")
  status=$?
  said=$(sed -n 's/^checks \([1-9][0-9]*\)$/\1/p' <<<"$output" | tail -n 1)
  failed=$(tail -n 1 <<<"$output" | sed -n 's/^failures \([0-9][0-9]*\)$/\1/p')
  if [ -z "$said" ] || [ -z "$failed" ]; then
    output+=$'\n'"stopped before its end (exit status $status)"
    said=${said:-0} failed=1
  elif [ "$status" -ne 0 ] && [ "$failed" -eq 0 ]; then
    output+=$'\n'"exit status $status"
    failed=1
  fi
  local made
  made=$(sed -n 's/^calls \([0-9]*\)$/, \1 calls/p; s/^left out \([0-9]*\)$/, \1 with tables left out/p' \
    <<<"$output" | tr -d '\n')
  [ -z "$made" ] || hosts+=("$name$made")
  report "$name" "$said" "$failed" "$made"
  if [ "$failed" -ne 0 ]; then
    printf '%s\n' "$output" | grep -v -e '^checks ' -e '^failures ' | sed 's/^/    /'
    tail -n 5 errors.txt | sed 's/^/    /'
  fi
}

# Runs a host that makes the worked calls, without the logs of the one before.
run_calls() {  # NAME COMMAND...
  rm -f calls.log vqmath63.txt
  run "$@"
}

# Holds vqhost.exe, in the folder DIRECTORY, to transcripts.
transcripts() {  # NAME DIRECTORY FILTER
  local lines=$work/transcripts.txt output passed failed
  cat >"$work/vqhost" <<END
#!/bin/sh
echo >>'$lines'
exec '$wine' '$2/vqhost.exe' "\$@"
END
  chmod +x "$work/vqhost"
  rm -f "$lines"
  # The C library's usual locale has no letters but English ones to hand over.
  output=$(LC_ALL=C.UTF-8 VQHOST=$work/vqhost timeout 400 "$host_tests" --gtest_filter="$3" 2>&1)
  passed=$(grep -c '^\[       OK \]' <<<"$output")
  failed=$(grep -c '^\[  FAILED  \] .* ms)$' <<<"$output")
  [ "$passed" -gt 0 ] || failed=$((failed + 1))
  report "$1" $((passed + failed)) "$failed" ", $(wc -l 2>/dev/null <"$lines") calls"
  [ "$failed" -eq 0 ] || printf '%s\n' "$output" | head -n 60 | sed 's/^/    /'
}

# Runs a command that has to end with success ("ok") or without it ("refused").
expect() {  # ok|refused NAME COMMAND...
  local wanted=$1 name=$2 status outcome=ok
  shift 2
  under_wine "$@" >output.txt 2>&1
  status=$?
  [ "$status" -eq 0 ] || outcome=refused
  if [ "$outcome" = "$wanted" ]; then
    report "$name" 1 0
  else
    report "$name" 1 1
    echo "    exit status $status, wanted: $wanted"
  fi
}

start_wine

dll=$(windows_path "$component")
calls=$(windows_path "$data/calls.tsv")
interfaces=$(windows_path "$data/interface.tsv")
scripts=$(windows_path "$here")

# The worked calls as scripts; JScript under Wine cannot read a date.
awk -f "$here/calls_as_script.awk" "$data/calls.tsv" | cat "$here/calls.vbs" - >calls.vbs
awk -v dates=no -f "$here/calls_as_script.awk" "$data/calls.tsv" >calls.txt

# All entries of classes, of the machine and of the user.
entries() {  # FILE
  local root
  for root in HKCU HKLM; do
    "$wine" reg export "$root\\Software\\Classes" "$1.$root" /y >output.txt 2>&1
  done
  cat "$1.HKCU" "$1.HKLM" >"$1"
}

# What a run that was stopped has left.
under_wine regsvr32 /s /u "$dll" >/dev/null 2>&1
under_wine regsvr32 /s /u /n /i:user "$dll" >/dev/null 2>&1
"$wine" reg add 'HKCU\Software\Classes' /f >output.txt 2>&1
# The script hosts register a library of their own when they first run.
for language in vbs js; do
  : >"nothing.$language"
  under_wine cscript //nologo "nothing.$language" >output.txt 2>&1
done
entries before.reg
run "early_bound, unregistered" "$clients/early_bound.exe" \
  "$(windows_path "$build/src/vqmath63.manifest")"
run "type library" "$clients/type_library.exe" "$dll"
mkdir -p "$work/alone" "$work/beside"
cp "$build/src/host/vqhost.exe" "$work/alone"
cp "$build/src/host/vqhost.exe" "$component" "$work/beside"
expect refused "vqhost.exe, no component" "$work/alone/vqhost.exe" classes
transcripts "vqhost.exe, library beside it" "$work/beside" 'Vqhost/*'
expect ok "register" regsvr32 /s "$dll"
run "registry: machine" "$clients/registry.exe" machine "$dll"
run_calls "calls.vbs" cscript //nologo calls.vbs
run_calls "calls.js" cscript //nologo "$scripts\\calls.js" calls.txt
# The examples of the reference, as they stand there.
check_reference=$(realpath "$here/../../tools/check_reference.py")
python3 -B "$check_reference" write vb examples.vbs
under_wine cscript //nologo examples.vbs >examples.txt 2>errors.txt
said=$(python3 -B "$check_reference" vb examples.txt)
report "examples of the reference" $(sed -n '$s/.*: \([0-9]*\) checks, \([0-9]*\) failures$/\1 \2/p' <<<"$said")
sed '$d; s/^/    /' <<<"$said"
# By name first: what came back there is what the others are held to.
for way in by_name vtable type_info apartment_vtable apartment_by_name; do
  run_calls "generic host: $way" "$clients/generic_hosts.exe" "$way" "$calls" "$interfaces" calls.record
done
# The same bits as everywhere, whatever rounding the host has set.
for surroundings in '' up flush; do
  under_wine "$clients/hostile_calls.exe" 80 $surroundings 2>errors.txt | tr -d '\r' >same_bits.txt
  differ=$(diff "$data/same_bits.txt" same_bits.txt | grep -c '^[<>]')
  report "the same bits${surroundings:+, host rounds $surroundings}" "$(wc -l <"$data/same_bits.txt")" "$differ"
  [ "$differ" -eq 0 ] || diff "$data/same_bits.txt" same_bits.txt | head -n 10 | sed 's/^/    /'
done
run "odd arguments" "$clients/odd_arguments.exe" "$interfaces"
run "by_name.vbs" cscript //nologo "$scripts\\by_name.vbs"
run "by_name.js" cscript //nologo "$scripts\\by_name.js"
run "early_bound" "$clients/early_bound.exe"
transcripts "vqhost.exe, registered" "$work/alone" '*/program:*/call'
run "lifetime" "$clients/lifetime.exe" "$dll"
run "reloads" "$clients/reloads.exe" "$dll"
# The name of its log has letters that the plain locale has not.
LC_ALL=C.UTF-8 run "message lines" "$clients/message_lines.exe"
expect ok "unregister" regsvr32 /s /u "$dll"
run "registry: gone" "$clients/registry.exe" gone "$dll"
expect ok "unregister once more" regsvr32 /s /u "$dll"
expect ok "register for the user" regsvr32 /s /n /i:user "$dll"
run "registry: user" "$clients/registry.exe" user "$dll"
expect ok "unregister for the user" regsvr32 /s /u /n /i:user "$dll"
run "registry: gone again" "$clients/registry.exe" gone "$dll"
expect refused "register for an unknown scope" regsvr32 /s /n /i:bogus "$dll"

entries after.reg
if [ -s before.reg.HKLM ] && [ -s before.reg.HKCU ] && cmp before.reg after.reg >output.txt 2>&1; then
  report "registry as it was before" 1 0
else
  report "registry as it was before" 1 1
  diff before.reg after.reg | tr -d '\0' | sed 's/^/    /' | head -n 20
fi

if cmake --build "$build" --target vq_type_library_again >output.txt 2>&1; then
  report "type library, compiled again" 1 0
else
  report "type library, compiled again" 1 1
  sed 's/^/    /' output.txt
fi

printf 'host: %s\n' "${hosts[@]}"
echo "windows: $programs programs, $checks checks, $failures failures"
[ "$failures" -eq 0 ]
