# Turns tests/data/calls.tsv into statements that VBScript and JScript both read, one a line; what
# they use (Make, Ref, Array, Table, Unset, DateSerial, Done, Same, LogEnds, Finish) is in calls.vbs
# and calls.js. With -v dates=no, for JScript under Wine, dates are set but not read.
BEGIN {
  FS = "\t"
  date = "^[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]$"
}

function value(cell,   inner, rows, columns, count, i, all, words) {
  if (cell == "[]") return "Unset()"
  if (cell ~ date) {
    return "DateSerial(" substr(cell, 1, 4) + 0 ", " substr(cell, 6, 2) + 0 ", " substr(cell, 9, 2) + 0 ")"
  }
  if (cell !~ /^\[/) return cell
  inner = substr(cell, 2, length(cell) - 2)
  count = split(inner, rows, "; ")
  all = "Array(99"  # element 0, which nobody reads
  for (i = 1; i <= count; ++i) {
    columns = split(rows[i], words, " ")
    gsub(/ /, ", ", rows[i])
    all = all ", " rows[i]
  }
  all = all ")"
  return count == 1 ? all : "Table(" columns ", " all ")"
}

function call(   i, at, cell, names) {
  names = ""
  wants = ""
  for (i = 4; i <= NF; ++i) {
    cell = $i
    at = index(cell, ">")
    if (at > 0) {
      wants = wants "n = Same(a" i ", " value(substr(cell, at + 1)) ")\n"
      cell = value(substr(cell, 1, at - 1))
      if (cell !~ /\(/) cell = "Ref(" cell ")"
    } else {
      cell = value(cell)
    }
    print "a" i " = " cell
    names = names (i > 4 ? ", " : "") "a" i
  }
  if ($1 == "let") {
    print "o." $2 " = a4"
  } else {
    print "r = o." $2 ($1 == "call" || NF > 3 ? "(" names ")" : "")
  }
  print "n = Done()"
  if ($3 != "-") print "n = Same(r, " value($3) ")"
  printf "%s", wants
}

/^#/ || NF == 0 || $1 == "line" || (dates == "no" && $1 == "get" && $2 ~ /^Start/) { next }
{ print "at = " NR }
$1 == "within" { print "within = " $2; next }
$1 == "new" { print "Make(\"" $2 "\")"; next }
$1 == "log" { print "n = LogEnds(\"" $2 "\", " $3 ", \"" $4 "\")"; next }
{ call() }
END { print "n = Finish()" }
