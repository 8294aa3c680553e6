#!/bin/bash
# Tests the Python package around a built library: its sources, then the wheel in an environment of
# its own, as a user installs it. Needs Debian's python3-pytest, python3-pandas, python3-build,
# python3-venv, python3-setuptools, python3-wheel and mypy; with python3-distributed on a cluster too.
#
# usage: tools/python_check.sh LIBRARY FOLDER [--from-source]
#   LIBRARY        libvqmath63.so
#   FOLDER         for what is made on the way; emptied first
#   --from-source  the wheel is built from the source distribution, the library with it
#
# The last line counts: "python: P tests, F failures".
set -u

root=$(cd "$(dirname "$0")/.." && pwd)
library=$(realpath "$1") || exit 2
folder=$(realpath -m "$2")
from_source=${3:-}
python=/usr/bin/python3
passed=0
failed=0
export PYTHONDONTWRITEBYTECODE=1
unset PYTHONPATH

rm -rf "$folder"
mkdir -p "$folder"

. "$root/tools/step.sh"

# Adds up what pytest counts.
pytest_step() {  # NAME PYTHON
  local name=$1 using=$2 line
  "$using" -m pytest -p no:cacheprovider -q -rN "$folder/source/python/tests" >"$folder/step.log" 2>&1
  line=$(tail -n 1 "$folder/step.log")
  echo "$name: $line"
  if [[ ! $line =~ ^[0-9]+\ passed ]]; then
    tail -n 60 "$folder/step.log"
  fi
  [[ $line =~ ([0-9]+)\ passed ]] && passed=$((passed + BASH_REMATCH[1]))
  [[ $line =~ ([0-9]+)\ (failed|error) ]] && failed=$((failed + BASH_REMATCH[1]))
  [[ $line =~ passed ]] || failed=$((failed + 1))
}

# A tree of its own: what is built here stays out of the sources.
copy_sources() {
  mkdir "$folder/source" &&
    (cd "$root" && git ls-files -z -co --exclude-standard -- CMakeLists.txt cmake docs examples packaging \
      README.md python samples src tests/data | tar -c --null -T -) | tar -x -C "$folder/source"
}

build_wheel() {
  if [ "$from_source" = --from-source ]; then
    (cd "$folder/source/python" &&
      $python -m build --no-isolation --sdist --outdir "$folder/dist" &&
      cd "$folder/dist" && tar -xf vqmath63-*.tar.gz && cd vqmath63-*/ &&
      $python -m build --no-isolation --wheel --outdir "$folder/dist")
  else
    (cd "$folder/source/python" &&
      VQMATH63_LIBRARY=$library $python -m build --no-isolation --wheel --outdir "$folder/dist")
  fi
}

install_wheel() {
  $python -m venv --system-site-packages "$folder/venv" &&
    "$folder/venv/bin/pip" install --no-index --no-deps "$folder"/dist/*.whl
}

# The stubs are right in themselves, and know what a user's program does.
check_types() (
  cat >"$folder/user.py" <<'EOF'
import numpy as np
import vqmath63 as vq

maths = vq.MathLib()
one: float = maths.Erf(0.5)
many = maths.Jbn(2, np.linspace(0, 1, 3))
first: float = float(many[0])
x, y = maths.Polar_to_Rectangular(2.0, 0.5)
total: float = x + y
profile = vq.Accumulate(Period="quarter")
profile.Frequency = 2
vq.Integrate().IntegrationRule = vq.IntegrationRule.Simpson
EOF
  cat >"$folder/mistaken.py" <<'EOF'
import vqmath63 as vq

maths = vq.MathLib()
maths.erf(0.5)
maths.Erf("0.5")
one: int = maths.Erf(0.5)
vq.Accumulate().Frequency = "2"
vq.Accumulate().Perid = "month"
vq.Integrate().IntegrationRule = "Simpson"
EOF
  local check=(mypy --strict --python-executable "$folder/venv/bin/python" --cache-dir mypy_installed)
  cd "$folder" || return 1
  "${check[@]}" -p vqmath63 && "${check[@]}" user.py || return 1
  "${check[@]}" mistaken.py >mistaken.log && return 1
  for line in 4 5 6 7 8 9; do
    grep "^mistaken.py:$line: error" mistaken.log || return 1
  done
)

$python -c "import distributed" 2>/dev/null ||
  echo "python: on a Dask cluster: not run, python3-distributed is not installed"
step "python: copy the sources" copy_sources || exit 1
VQMATH63_LIBRARY=$library pytest_step "python: tests beside the library" $python
step "python: mypy" mypy --strict --cache-dir "$folder/mypy" \
  --config-file "$folder/source/python/pyproject.toml" "$folder/source/python/vqmath63"
if step "python: build the wheel" build_wheel && step "python: install it" install_wheel; then
  basename "$folder"/dist/*.whl
  step "python: types of a user's program" check_types
  export VQMATH63_INSTALLED=1
  pytest_step "python: tests of what is installed" "$folder/venv/bin/python"
fi
echo "python: $((passed + failed)) tests, $failed failures"
[ "$failed" -eq 0 ]
