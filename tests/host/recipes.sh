#!/bin/bash
# Records from a spreadsheet and from a database, as docs/records.md pipes them: the same months as
# from the file. Exit status 77 where a program is missing.
#
# usage: recipes.sh VQHOST SAMPLES
set -euo pipefail

for program in sqlite3 xlsx2csv; do
  command -v $program >/dev/null || { echo "recipes: there is no $program"; exit 77; }
done
/usr/bin/python3 -c 'import openpyxl' 2>/dev/null || { echo "recipes: there is no openpyxl"; exit 77; }

vqhost=$1
days=$2/daily_records.csv
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

months() {
  "$vqhost" accumulate "$1" --by well --volumes oil_vol --stamp begin -o - 2>/dev/null
}

months "$days" >"$folder/wanted"
[ "$(wc -l <"$folder/wanted")" = 22 ]

sqlite3 "$folder/field.db" ".import --csv $days daily"
sqlite3 -csv -header "$folder/field.db" 'SELECT date, well, oil_vol FROM daily ORDER BY date, well' |
  months - | cmp - "$folder/wanted"

/usr/bin/python3 - "$days" "$folder/wells.xlsx" <<'END'
import csv, datetime, sys
import openpyxl

book = openpyxl.Workbook()
for row in csv.reader(open(sys.argv[1], encoding="utf-8")):
    if row[0] != "date":
        row[0] = datetime.date.fromisoformat(row[0])
        row[7] = float(row[7])
    book.active.append(row)
book.save(sys.argv[2])
END
xlsx2csv -d ';' -f %Y-%m-%d "$folder/wells.xlsx" | months - | cmp - "$folder/wanted"
echo "recipes: 3 checks, 0 failures"
