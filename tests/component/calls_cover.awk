# Fails when a member has no row in tests/data/calls.tsv: awk -f calls_cover.awk MEMBERS CALLS, where
# MEMBERS is what "vqgenerate reference" writes.
BEGIN { FS = "\t" }
FNR == NR && /^## zt/ { class = substr($0, 4) }
FNR == NR && match($0, /`(Function|Sub|Property Get|Property Let) [A-Za-z0-9_]+\(/) {
  words = split(substr($0, RSTART + 1, RLENGTH - 2), word, " ")
  kind = words == 3 ? tolower(word[2]) : "call"
  members[class " " kind " " word[words]] = 1
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
