# Installs the Debian packages that a command needs; sourced by ./demo and ./check.
#
# require_packages PACKAGE...   returns 0 when all of them are there (or have been put there), quiet
#                               and without network when nothing is missing; 1 with a message if not.

# Prints those of its arguments that are not installed, one a line.
missing_packages() {
  local package
  for package in "$@"; do
    if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
      printf '%s\n' "$package"
    fi
  done
}

require_packages() {
  local missing=() as_root=()
  if ! command -v dpkg-query >/dev/null 2>&1; then
    echo "This is not a Debian system: please see that these are installed: $*" >&2
    return 0
  fi
  mapfile -t missing < <(missing_packages "$@")
  if [ "${#missing[@]}" -eq 0 ]; then
    return 0
  fi
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
      echo "Missing packages: ${missing[*]}. Install them as root (there is no sudo here):" >&2
      echo "  apt-get install ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "Installing with apt: ${missing[*]}"
  local log
  log=$(mktemp)
  if ! apt_install "${as_root[@]}" >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    rm -f "$log"
    echo "The packages could not be installed: ${missing[*]}" >&2
    return 1
  fi
  rm -f "$log"
}

# Installs ${missing[@]}, with its arguments (nothing, or sudo) before apt; refreshes the package
# lists only when the ones at hand do not do.
apt_install() {
  local apt=("$@" env DEBIAN_FRONTEND=noninteractive apt-get -y -q)
  "${apt[@]}" install --no-install-recommends "${missing[@]}" ||
    { "${apt[@]}" update && "${apt[@]}" install --no-install-recommends "${missing[@]}"; }
}
