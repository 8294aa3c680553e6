#!/bin/bash
# Tests the component as WebAssembly: the hashes of its hostile calls in Node, and the npm package, made,
# installed from its file and used.
#
# usage: tests/javascript/run.sh BUILD LIBRARY FOLDER
#   BUILD    of the preset "wasm"
#   LIBRARY  libvqmath63.so of this system
#   FOLDER   for what is made on the way; emptied first; the results of the calls are left in digits.tsv
# The last line counts: "javascript: C checks, F failures".
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
build=$(realpath "$1")
library=$(realpath "$2")
folder=$(realpath -m "$3")
passed=0
failed=0

. "$root/tools/step.sh"

same_bits() { node --no-experimental-fetch "$build/javascript/hostile_calls.js" 80 | diff "$root/tests/data/same_bits.txt" -; }
small() { [ "$(stat -c %s "$build/javascript/vqmath63.wasm")" -le 614400 ]; }
install() { "$root/javascript/package.sh" "$build" "$library" "$folder" &&
  (cd "$folder/user" && npm install --silent --offline --no-audit --no-fund "$folder"/vqmath63-*.tgz); }
types() (
  cd "$folder/user" || return 1
  cat >user.mts <<'EOF'
import vq, { VqError } from 'vqmath63';
const one: number = new vq.MathLib().Erf(0.5);
const many: Float64Array = new vq.MathLib().Jbn(2, [0, 1]);
const profile = new vq.Accumulate({ Period: 'quarter' });
profile.Frequency = 2;
const left: number = new vq.Statistics().RemoveNulls(9, [1, 9]).nANew;
export { one, many, left, VqError };
EOF
  cat >mistaken.mts <<'EOF'
import vq from 'vqmath63';
new vq.MathLib().erf(0.5);
new vq.MathLib().Erf('0.5');
const one: string = new vq.MathLib().Erf(0.5);
new vq.Accumulate().Frequency = '2';
new vq.Accumulate({ Perid: 'month' });
export { one };
EOF
  tsc=(tsc --noEmit --strict --target es2022 --module nodenext --moduleResolution nodenext)
  "${tsc[@]}" user.mts || return 1
  "${tsc[@]}" mistaken.mts >mistaken.log && return 1
  for line in 2 3 4 5 6; do
    grep "^mistaken.mts($line," mistaken.log || return 1
  done
)

rm -rf "$folder"
mkdir -p "$folder/user"
echo '{"private": true}' >"$folder/user/package.json"
step "javascript: the same bits in Node" same_bits
step "javascript: at most 600 KB" small
step "javascript: the package, installed from its file" install
if command -v tsc >/dev/null; then
  step "javascript: types of a user's program" types
else
  echo "javascript: types: not run, node-typescript is not installed"
fi
calls=$(cd "$folder/user" && node "$root/tests/javascript/worked_calls.mjs" "$root/tests/data/calls.tsv" "$folder/digits.tsv")
echo "$calls"
if [[ ${calls##*$'\n'} =~ ([0-9]+)\ checks,\ ([0-9]+)\ failures$ ]]; then
  passed=$((passed + BASH_REMATCH[1] - BASH_REMATCH[2]))
  failed=$((failed + BASH_REMATCH[2]))
else
  failed=$((failed + 1))
fi
echo "javascript: $((passed + failed)) checks, $failed failures"
[ "$failed" -eq 0 ]
