#!/bin/bash
# Makes the npm package around a build of the component as WebAssembly.
#
# usage: javascript/package.sh BUILD LIBRARY FOLDER
#   BUILD    of the preset "wasm"
#   LIBRARY  libvqmath63.so, which tells of its types
#   FOLDER   for what is made; the last line names the package
set -eu
here=$(cd "$(dirname "$0")" && pwd)
build=$(realpath "$1")
library=$(realpath "$2")
folder=$(realpath -m "$3")
stage=$folder/stage
rm -rf "$stage"
mkdir -p "$stage"
version=$(sed -n 's/^project(vqmath63 VERSION \([0-9.]*\).*/\1/p' "$here/../CMakeLists.txt")
cp "$here"/{index,component}.mjs "$here/README.md" "$build/javascript/vqmath63.wasm" "$stage"
sed "s/@VERSION@/$version/" "$here/package.json" >"$stage/package.json"
VQMATH63_LIBRARY=$library python3 -B "$here/make_types.py" "$stage/index.d.ts"
(cd "$stage" && npm pack --silent --pack-destination "$folder" >/dev/null)
ls "$folder"/vqmath63-*.tgz
