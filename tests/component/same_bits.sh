#!/bin/sh
# Holds the hashes of seeded calls to those of a file: as the program starts, in time zones, with other
# roundings, with tiny numbers taken for zero, and in locales that write numbers with a comma and letters
# otherwise (where the C library's sources of locales are installed).
#
# usage: same_bits.sh [--short] PROGRAM HASHES
#   --short   as the program starts, with one other rounding, and without tiny numbers, no more
set -eu

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
short=no
if [ "$1" = --short ]; then
  short=yes
  shift
fi
program=$1
hashes=$2

same() {  # SURROUNDINGS, with variables of the environment before it
  "$program" 80 "$@" >"$folder/made"
  if ! diff "$hashes" "$folder/made"; then
    echo "not the same: ${*:-as started} TZ=${TZ-}"
    exit 1
  fi
}

same
same up
same flush
[ $short = no ] || exit 0
TZ=Pacific/Chatham same
TZ='<+2359>-23:59:59' same
for surroundings in down zero; do same $surroundings; done
for locale in de_DE tr_TR; do
  if localedef -i $locale -f UTF-8 "$folder/$locale.UTF-8" >/dev/null 2>&1; then
    LOCPATH=$folder same $locale.UTF-8
  else
    echo "left out: locale $locale"
  fi
done
