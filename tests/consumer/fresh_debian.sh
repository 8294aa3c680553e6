#!/bin/bash
# Installs the Debian package into a fresh Debian and uses it there: the host, and programs built
# against what was installed. As root, with a network.
#
# usage: fresh_debian.sh BUILD    whose test install.package has made the package
set -eu

build=$(cd "$1" && pwd)
programs=$build/consumer/programs
here=$(cd "$(dirname "$0")" && pwd)
package=$(echo "$build"/consumer/package/vqmath63_*.deb)
root=$build/consumer/fresh

rm -rf "$root"
trap 'rm -rf "$root"' EXIT
debootstrap --variant=minbase bookworm "$root"
cp -r "$package" "$programs" "$here" "$root/tmp/"

inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C DEBIAN_FRONTEND=noninteractive "$@"; }

# The package first, with what it depends on and nothing else.
inside apt-get install -y -q --no-install-recommends "/tmp/$(basename "$package")"
[[ $(inside vqhost call ztIntegrate Integral [0,1,2] [0,1,4]) == 3* ]]
[[ $(inside vqhost --version) != *Unknown* ]]
inside apt-get install -y -q --no-install-recommends g++ cmake ninja-build pkgconf
inside cmake -S /tmp/consumer -B /tmp/build -G Ninja -DVQ_PROGRAMS=/tmp/programs
inside cmake --build /tmp/build
[ "$(inside /tmp/build/readme)" = 3 ]
inside /tmp/build/early_bound | grep -x 'Simpson *2.666667'
inside sh -c 'g++ /tmp/programs/readme.cpp -o /tmp/readme $(pkg-config --cflags --libs vqmath63)'
[ "$(inside /tmp/readme)" = 3 ]
inside dpkg --purge vqmath63
if inside sh -c 'find /usr -name "*vq*" | grep .'; then
  echo "these stay behind when the package is purged"
  exit 1
fi
echo "installed, used and purged"
