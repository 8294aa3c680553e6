#!/bin/bash
# Runs examples/by_name.* in the languages that this machine has, over a built library, and looks at
# what they print. The C example is compiled as C and as C++, by each compiler that is here, and with
# its memory watched.
#
# usage: languages_check.sh LIBRARY INCLUDE FOLDER
#   LIBRARY  libvqmath63.so
#   INCLUDE  the folder of <vqmath63/...>
#   FOLDER   where programs and koffi, Node's package, are put
#
# Prints a line "host: LANGUAGE, ..." for each, and at last "C checks, F failures".
set -u

library=$(realpath "$1") include=$(realpath "$2")
examples=$(cd "$(dirname "$0")/../examples" && pwd)
mkdir -p "$3" && cd "$3" || exit 2
checks=0 failures=0

# Days and rates are exact; erf is a published table's (Abramowitz and Stegun, 7.1), carried on with
# 50 digits; the area is 8/3 as a Single.
wanted='by Month, ok: True
day  28  rate 20.00
day  59  rate 30.00
day  89  rate 40.00
Erf(0.5) = 0.52049987781305
Erf(1.0) = 0.84270079294971
Erf(2.0) = 0.99532226501895
area 2.66666675
Error:Subscript out of range (No.9) In [ztAnalyse - Integration (Code) (Simpson)] '

check() {  # LANGUAGE FURTHER_LINES COMMAND...
  local language=$1 want=$wanted$2 printed
  shift 2
  checks=$((checks + 1))
  if printed=$("$@" 2>&1) && [ "$printed" = "$want" ]; then
    echo "host: $language, $(wc -l <<<"$want") lines as they have to be"
  else
    failures=$((failures + 1))
    printf 'host: %s, FAILED: it printed\n%s\n' "$language" "$printed"
  fi
}

compiled() {  # LANGUAGE COMPILER WORDS...
  local language=$1
  shift
  "$@" -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wcast-qual -Werror -g \
    -I "$include" "$examples/by_name.c" -o by_name -ldl || : >by_name
  check "$language" $'\nyVals has to be an array' ./by_name "$library"
}

for compiler in gcc clang; do
  command -v $compiler >/dev/null || { echo "host: C by $compiler, not run: it is not here"; continue; }
  compiled "C99 by $compiler" $compiler -std=c99 -Wstrict-prototypes
  compiled "C++11 by $compiler" $compiler -x c++ -std=c++11
done
compiled "C, its memory watched" gcc -std=c17 -fsanitize=address,undefined -fno-sanitize-recover

if command -v luajit >/dev/null; then
  check "LuaJIT" "" luajit "$examples/by_name.lua" "$library"
else
  echo "host: LuaJIT, not run: it is not here (package luajit)"
fi

if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
  echo "host: JavaScript, not run: node or npm is not here"
elif [ ! -d node_modules/koffi ] && ! npm install --no-audit --no-fund koffi@3 >npm.log 2>&1; then
  echo "host: JavaScript, not run: the registry of npm does not give koffi ($(tail -n 1 npm.log))"
else
  NODE_PATH=$PWD/node_modules check "JavaScript in Node" "" node "$examples/by_name.js" "$library"
fi

echo "$checks checks, $failures failures"
[ $failures -eq 0 ]
