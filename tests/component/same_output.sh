#!/bin/sh
# Runs programs and fails unless all succeed and print what the first one does, and something.
#
# usage: same_output.sh PROGRAM PROGRAM...
set -eu

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" >"$folder/first"
[ -s "$folder/first" ]
shift
for program in "$@"; do
  "$program" >"$folder/other"
  diff "$folder/first" "$folder/other"
done
