# Fails when a member has no row in tests/data/calls.tsv: awk -f calls_cover.awk MEMBERS CALLS, where
# MEMBERS is what "vqgenerate reference" writes.
BEGIN { FS = "\t" }
FNR == NR && $1 == "class" { class = $2 }
FNR == NR && $1 ~ /^(method|get|let)$/ {
  members[class " " ($1 == "method" ? "call" : $1) " " $2] = 1
  ++count
}
FNR != NR && $1 == "new" { class = $2 }
FNR != NR && NF > 2 { delete members[class " " $1 " " $2] }
END {
  if (count == 0) print "no members"
  missing = count == 0
  for (member in members) {
    print "tests/data/calls.tsv has no row for " member
    missing = 1
  }
  exit missing
}
