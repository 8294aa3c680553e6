#!/bin/bash
# Which lines and branches of the library the tests reach, by clang's coverage: those of src/ without
# the command-line host and what only the build's own program runs (texts of the type library). The
# corpus is replayed on an emulated old processor too, where the ways without wide registers and fused
# steps serve.
#
# usage: tools/coverage.sh [--replay] [--show FILE]
#   --replay     by the corpora of fuzz/ alone; without it by all tests of ctest, the corpora among them
#   --show FILE  then prints a source with its counts, lines that nothing reaches first
#
# Everything is built below build/coverage.
set -eu

cd "$(dirname "$0")/.."
. tools/packages.sh
require_packages clang llvm cmake ninja-build libgtest-dev libcli11-dev qemu-user-static

root=$PWD/build/coverage
mkdir -p "$root"
tests=(-LE install)
targets=()
programs=("$root"/fuzz/replay_component "$root"/src/libvqmath63.so)
show=
while [ $# -gt 0 ]; do
  case $1 in
    --replay)
      tests=(-R fuzz.the_corpus_of_component) targets=(--target replay_component)
      programs=("$root"/fuzz/replay_component)
      ;;
    --show) show=$2; shift ;;
    *) sed -n '2,/^$/s/^# \{0,1\}//p' "$0"; exit 2 ;;
  esac
  shift
done

launcher=()
! command -v ccache >/dev/null || launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
flags="-O1 -fprofile-instr-generate -fcoverage-mapping"
cmake --preset clang -B "$root" "${launcher[@]}" -DCMAKE_CXX_FLAGS="$flags" -DVQ_TEST_CORPORA=ON \
  >"$root.log"
cmake --build "$root" -j "$(nproc)" "${targets[@]}" >>"$root.log"

rm -rf "$root/profiles"
LLVM_PROFILE_FILE="$root/profiles/%4m.profraw" TZ=Asia/Kathmandu LC_ALL=C \
  ctest --test-dir "$root" -j "$(nproc)" "${tests[@]}" --no-tests=error >>"$root.log" ||
  echo "coverage: a test has failed; see $root.log" >&2
if [ "$(uname -m)" = x86_64 ]; then
  LLVM_PROFILE_FILE="$root/profiles/old.profraw" TZ=Asia/Kathmandu LC_ALL=C qemu-x86_64-static \
    -cpu Nehalem "$root"/fuzz/replay_component fuzz/corpus/component.corpus >>"$root.log"
fi
llvm-profdata merge -sparse "$root"/profiles/*.profraw -o "$root/all.profdata"

objects=()
[ ${#targets[@]} -gt 0 ] || programs+=("$root"/tests/test_*)
for program in "${programs[@]}"; do
  if [ -x "$program" ] && [ -f "$program" ]; then objects+=(-object "$program"); fi
done
report=("${objects[@]:1}" -instr-profile "$root/all.profdata" -ignore-filename-regex
  "^($PWD/(build/coverage/../../)?(tests|fuzz|src/host|src/component/(generate|[a-z]+_text))|/usr)")
llvm-cov report "${report[@]}" | awk '
  /^Filename/ || /^-/ { next }
  { printf "%-46s lines %6s of %5d %8s   branches %6s of %5d %8s\n", $1, $8 - $9, $8, $10, $11 - $12, $11, $13 }'
if [ -n "$show" ]; then
  llvm-cov show "${report[@]}" -show-branches=count "$show"
fi
