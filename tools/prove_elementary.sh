#!/bin/sh
# Holds the elementary functions to the correctly rounded values of MPFR (package libmpfr-dev), ten
# million arguments each where no count is given; takes some minutes a function.
#
# usage: prove_elementary.sh [COUNT [FUNCTION...]]
set -eu

top=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"${CXX:-g++}" -std=c++20 -O2 -ffp-contract=off -I"$top/src" -o "$work/prove" \
  "$top"/tools/prove_elementary.cpp "$top"/src/elementary/*.cpp -lmpfr -lgmp
"$work/prove" "${@:-10000000}"
