#!/bin/bash
# Makes the add-in around a built library and tests it in a headless LibreOffice Calc.
#
# usage: tests/spreadsheet/run.sh LIBRARY FOLDER [--speed]
#   LIBRARY  libvqmath63.so
#   FOLDER   for what is made on the way; emptied first
#   --speed  tells what ten thousand formulas take too
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
library=$(realpath "$1")
folder=$(realpath -m "$2")
shift 2
rm -rf "$folder"
mkdir -p "$folder"
export VQMATH63_LIBRARY=$library PYTHONPATH=$root/spreadsheet PYTHONDONTWRITEBYTECODE=1
python=/usr/bin/python3
$python "$root/spreadsheet/make_oxt.py" "$folder/vqmath63.oxt" 0 "$library"
exec $python "$root/tests/spreadsheet/check_calc.py" "$folder/vqmath63.oxt" "$folder/made" \
  "$root/samples/field_production.ods" "$@"
