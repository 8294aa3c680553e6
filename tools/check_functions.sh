#!/bin/sh
# Finds calls of the platform's functions in the library that can fail or differ in their last
# digits: the library has its own (elementary/), and its bits are to be the same everywhere. Members
# take them by frame/checked_functions.hpp, since a bare call over a checked number's value compiles,
# and its fault is lost.
#
# What is exact may stand anywhere: abs, fabs, ceil, floor, trunc, copysign,
# nextafter, ldexp, fmin, fmax, isfinite, isnan, signbit and their like; not rint and nearbyint, which
# round on Windows as the host has set the x87 registers. Another call stays with "// platform: " and
# its reason behind it on the line.
#
# usage: check_functions.sh SOURCE_FOLDER     prints file:line of each call; fails if there is one
set -eu

names='a?(sin|cos|tan)h?|atan2|exp2?|expm1|log|log10|log1p|log2|pow|sqrt|cbrt|hypot'
names="($names|[lt]gamma|erfc?|beta|cyl_[a-z_]+|fmod|remainder|fma|(ll?)?rint|nearbyint|ll?round|round)[fl]?"

# The calls in the source text that comes in, as line:text. Comments and texts are blanked. A bare
# name is a call only where no type stands before it, as in a declaration, and no object or scope.
calls() {
  sed -E -e 's/.*\/\/ platform: .+//' -e 's://.*::' -e 's/"[^"]*"//g' -e '/^ *#/s/.*//' \
    -e 's/\b(bool|float|double|Double|int|Four|FourResults|std::ofstream) [a-z0-9]+\(//g' |
    grep -nE -e "std::$names([^a-z0-9_]|\$)" -e "(^|[^A-Za-z0-9_:.>])(::)?$names\(" || true
}

# What it must find, and what not: a check that finds nothing looks like clean sources.
planted='r = std::exp(x.value());
return log(x);
f(::sqrtf(x));
auto f = std::pow;
using std::lgamma;'
clean='r = Exp(x); y = unchecked::exp(x);  // not std::exp
double exp(double x) const;
double ztMathLib::sinh(double dX) const { return lib.cosh(dX) + lib->tanh(dX); }
r = std::fabs(x) + std::floor(x); logarithm(x); {kLog, "log("}'
if [ "$(printf '%s\n' "$planted" | calls | wc -l)" -ne 5 ] ||
  [ -n "$(printf '%s\n' "$clean" | calls)" ]; then
  echo "check_functions.sh: does not tell calls from what is none" >&2
  exit 2
fi

found=$(
  for file in $(find "$1" -name '*.[ch]pp' | sort); do
    case ${file#"$1"/} in
    host/*) ;;  # a program of its own, above the library
    *) calls <"$file" | sed "s|^\([0-9]*\): *|$file:\1: |" ;;
    esac
  done
)
if [ -n "$found" ]; then
  printf '%s\n' "$found"
  echo "Use Exp, Log, Sqr, ... of frame/checked_functions.hpp, or unchecked:: where none can fail."
  exit 1
fi
