#!/bin/bash
# Uses the library as somebody else's project would, and looks at the numbers that come out.
#
# usage: run.sh install BUILD                   installs the build BUILD below BUILD/consumer/prefix
#        run.sh find_package|pkg_config BUILD   builds programs against what is installed there
#        run.sh subproject BUILD                builds programs with the sources taken in
#        run.sh package BUILD                   unpacks the Debian package into an empty folder
#
# CXX is the compiler, CXX_LAUNCHER what is called before it (ccache, or nothing).
set -eu

mode=$1 build=$(cd "$2" && pwd)
source=$(cd "$(dirname "$0")/../.." && pwd)
prefix=$build/consumer/prefix programs=$build/consumer/programs work=$build/consumer/$mode
compiler=(-DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_COMPILER_LAUNCHER="${CXX_LAUNCHER:-}")

# The whole program in C++ that a document shows.
program_of() {  # DOCUMENT
  awk '/^```cpp$/ { text = ""; inside = 1; next }
       /^```$/ { if (inside && text ~ /int main\(/) { print text; found = 1; exit } inside = 0 }
       inside { text = text $0 "\n" }
       END { exit !found }' "$1"
}

fail() {  # WORDS
  echo "$*"
  exit 1
}

expect() {  # PROGRAM WORDS: what it prints
  local printed
  printed=$("$1")
  [ "$printed" = "$2" ] || fail "$1 printed: $printed, wanted: $2"
  echo "$(basename "$1"): $printed"
}

# Two quarters of three months each, at one rate.
hosts=$'to day 90: 5\nto day 181: 4'

case $mode in
  install)
    rm -rf "$prefix" "$programs"
    mkdir -p "$programs"
    cmake --install "$build" --prefix "$prefix" >"$build/consumer/install.log"
    [ "$(ls "$prefix/include")" = vqmath63 ] || fail "headers outside the library's folder"
    program_of "$source/README.md" >"$programs/readme.cpp"
    program_of "$source/docs/hosts.md" >"$programs/hosts.cpp"
    cp "$source/examples/early_bound.cpp" "$programs"
    # The installed host finds the installed library, wherever the tree was moved.
    rm -rf "$prefix.moved"
    cp -a "$prefix" "$prefix.moved"
    said=$(env -u LD_LIBRARY_PATH "$prefix.moved/bin/vqhost" call ztIntegrate Integral [0,1,2] [0,1,4])
    rm -rf "$prefix.moved"
    [[ $said == 3* ]] || fail "the installed vqhost printed: $said"
    # The version text has its file's date only where the library has the name it knows.
    said=$("$prefix/bin/vqhost" --version)
    [[ $said != *Unknown* ]] || fail "the installed vqhost says: $said"
    ;;
  find_package)
    rm -rf "$work"
    cmake -S "$source/tests/consumer" -B "$work" -G Ninja "${compiler[@]}" \
      -DCMAKE_PREFIX_PATH="$prefix" -DVQ_PROGRAMS="$programs"
    cmake --build "$work"
    expect "$work/readme" 3
    expect "$work/hosts" "$hosts"
    "$work/early_bound" | grep -x 'Simpson *2.666667'
    ;;
  pkg_config)
    mkdir -p "$work"
    pc=("$prefix"/lib*/pkgconfig "$prefix"/lib*/*/pkgconfig)
    PKG_CONFIG_PATH=$(IFS=:; echo "${pc[*]}")
    export PKG_CONFIG_PATH
    # shellcheck disable=SC2046  # the words are wanted one by one
    "$CXX" "$programs/readme.cpp" -o "$work/readme" $(pkg-config --cflags --libs 'vqmath63 >= 6.3')
    expect "$work/readme" 3
    folder=$(pkg-config --variable=libdir vqmath63-component)
    # shellcheck disable=SC2046
    "$CXX" "$programs/early_bound.cpp" -o "$work/early_bound" \
      $(pkg-config --cflags --libs vqmath63-component) "-Wl,-rpath,$folder"
    "$work/early_bound" | grep -x 'Simpson *2.666667'
    ;;
  subproject)
    cmake -S "$source/tests/consumer" -B "$work" -G Ninja "${compiler[@]}" \
      -DVQ_SOURCES="$source" -DVQ_PROGRAMS="$programs"
    cmake --build "$work" --target readme hosts
    expect "$work/readme" 3
    expect "$work/hosts" "$hosts"
    ;;
  package)
    rm -rf "$work"
    mkdir -p "$work/root"
    cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work" >"$work/cpack.log" ||
      { cat "$work/cpack.log"; exit 1; }
    package=$(echo "$work"/vqmath63_*.deb)
    dpkg-deb -x "$package" "$work/root"
    usr=$work/root/usr
    said=$(env -i "$usr/bin/vqhost" --version)
    version=$(dpkg-deb -f "$package" Version)
    [[ $said == "vqmath63 v$version "* && $said != *Unknown* ]] || fail "the packaged vqhost says: $said"
    [[ $(dpkg-deb -f "$package" Depends) == *libc6* ]] || fail "it depends on no library"
    # Every command that the program lists has its page and its completion.
    commands=$(env -i "$usr/bin/vqhost" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]\S*\) .*/\1/p')
    page=$(gzip -dc "$usr/share/man/man1/vqhost.1.gz")
    # shellcheck source=/dev/null
    . "$usr/share/bash-completion/completions/vqhost"
    COMP_WORDS=(vqhost "") COMP_CWORD=1
    _vqhost
    found=0
    for command in $commands; do
      found=$((found + 1))
      grep -q "^\.SS vqhost ${command//-/\\\\-} " <<<"$page" || fail "no page of $command"
      [[ " ${COMPREPLY[*]} " == *" $command "* ]] || fail "no completion of $command"
    done
    [ "$found" -ge 11 ] || fail "only $found commands"
    COMP_WORDS=(vqhost call --set IntegrationRule = 2 ztIntegrate Integr)
    COMP_CWORD=7
    _vqhost
    [ "${COMPREPLY[*]}" = "IntegrationRule Integral" ] || fail "completion of Integr: ${COMPREPLY[*]}"
    echo "$(basename "$package"): $said"
    ;;
  *)
    sed -n '2,/^set/s/^# \{0,1\}//p' "$0"
    exit 2
    ;;
esac
