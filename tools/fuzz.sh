#!/bin/bash
# Fuzzes a target of fuzz/ from its committed corpus on.
#
# usage: tools/fuzz.sh TARGET SECONDS [--keep] [BUILD]
#   TARGET   component or host
#   --keep   begins with all worked calls too, which alone take an hour, and then puts what was found
#            into the committed corpus, only as much as reaches all that is reached now (component;
#            the host's corpus is text and is added to by hand)
#   BUILD    a build of the preset fuzz, build/fuzz by default; built first
#
# Below BUILD/runs/TARGET stand the inputs, and each input at which the program failed (crash-...,
# timeout-..., oom-...). Exit status 0 when there is none.
set -eu

cd "$(dirname "$0")/.."
. tools/packages.sh
require_packages clang cmake ninja-build libgtest-dev libcli11-dev python3-minimal

target=${1:?"TARGET is missing: component or host"} seconds=${2:?"SECONDS are missing"}
keep=no
[ "${3:-}" != --keep ] || { keep=yes; shift; }
build=$(realpath -m "${3:-build/fuzz}")
run=$build/runs/$target
program=$build/fuzz/fuzz_$target

launcher=()
! command -v ccache >/dev/null || launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake --preset fuzz -B "$build" "${launcher[@]}" >/dev/null
cmake --build "$build" -j "$(nproc)" --target "fuzz_$target"

rm -rf "$run/first"
mkdir -p "$run/inputs" "$run/failed" "$run/first"
options=(-timeout=120 -rss_limit_mb=2000 -print_final_stats=1 -artifact_prefix="$run/failed/")
case $target in
  component)
    options+=(-max_len=4096)
    python3 tools/fuzz_corpus.py unpack fuzz/corpus/component.corpus "$run/first"
    [ "$keep" = no ] || python3 tools/fuzz_corpus.py seeds "$run/first"
    ;;
  host)
    options+=(-max_len=8192 -dict=fuzz/host.dict)
    python3 tools/fuzz_corpus.py lines tests/data/vqhost/*.txt fuzz/corpus/host.txt "$run/first"
    ;;
esac
status=0
"$program" "${options[@]}" -max_total_time="$seconds" "$run/inputs" "$run/first" || status=$?
if [ "$keep" = yes ] && [ "$target" = component ]; then
  # By a program without optimisation, in which every branch of the source has an edge of its own.
  edges=$build-edges
  cmake --preset fuzz -B "$edges" "${launcher[@]}" -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS="-O0 -g0" -DVQ_SANITIZE=fuzzer-no-link >/dev/null
  cmake --build "$edges" -j "$(nproc)" --target fuzz_component
  rm -rf "$run/few" "$run/least"
  mkdir "$run/few" "$run/least"
  "$edges/fuzz/fuzz_component" "${options[@]}" -merge=1 -use_counters=0 "$run/few" \
    "$run/inputs" "$run/first" || status=$?
  "$edges/fuzz/fuzz_component" "${options[@]}" -set_cover_merge=1 -use_counters=0 "$run/least" \
    "$run/few" || status=$?
  python3 tools/fuzz_corpus.py pack "$run/least" fuzz/corpus/component.corpus
fi
exit "$status"
