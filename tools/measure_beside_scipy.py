"""Largest errors of special functions of the Python package and of SciPy's, against values of 40
digits by mpmath, as a table of docs/accuracy.md:
VQMATH63_LIBRARY=build/rel/src/libvqmath63.so PYTHONPATH=python python3 tools/measure_beside_scipy.py

Over the ranges of bench/beside_scipy.py. Errors are relative to the value, of the logarithm of the
gamma function to the value or to 1, whichever is larger, and of the Bessel functions that swing to
their amplitude. usage: measure_beside_scipy.py [POINTS]"""

import sys

import mpmath
import numpy as np
import scipy.special as scipy

import vqmath63

mpmath.mp.dps = 40
POINTS = int(sys.argv[1]) if len(sys.argv) > 1 else 1000
maths = vqmath63.MathLib()
random = np.random.default_rng(63)


def between(low, high):
    return random.uniform(low, high, POINTS)


def amplitude(n, x):
    """Of J and Y, whose squares it is the root of the sum of; below the order both run away."""
    if x < n:
        return 0
    return mpmath.sqrt(mpmath.besselj(n, x) ** 2 + mpmath.bessely(n, x) ** 2)


x, wide, shape = between(0.01, 20), between(-3, 3), between(0.1, 20)
part, orders = between(0, 1), random.integers(0, 20, POINTS).astype("i4")

# Name, ours, SciPy's, the value, arguments, and what an error is at least relative to.
ROWS = [
    ("`Erf`, `erf`", maths.Erf, scipy.erf, mpmath.erf, (wide,), None),
    ("`Gamma`, `gamma`", maths.Gamma, scipy.gamma, mpmath.gamma, (x,), None),
    ("`LoGamma`, `gammaln`", maths.LoGamma, scipy.gammaln, mpmath.loggamma, (x,), lambda _: 1),
    ("`Gamma_P`, `gammainc`", maths.Gamma_P, scipy.gammainc,
     lambda a, z: mpmath.gammainc(a, 0, z, regularized=True), (shape, x), None),
    ("`BetaI`, `betainc`", maths.BetaI, scipy.betainc,
     lambda a, b, z: mpmath.betainc(a, b, 0, z, regularized=True), (shape, x, part), None),
    ("`J0`, `j0`", maths.J0, scipy.j0, lambda z: mpmath.besselj(0, z), (x,),
     lambda z: amplitude(0, z)),
    ("`y0`, `y0`", maths.y0, scipy.y0, lambda z: mpmath.bessely(0, z), (x,),
     lambda z: amplitude(0, z)),
    ("`I0`, `i0`", maths.I0, scipy.i0, lambda z: mpmath.besseli(0, z), (x,), None),
    ("`K0`, `k0`", maths.K0, scipy.k0, lambda z: mpmath.besselk(0, z), (x,), None),
    ("`Jbn`, `jv`", maths.Jbn, scipy.jv, mpmath.besselj, (orders, x), amplitude),
    ("`Kbn`, `kn`", maths.Kbn, scipy.kn, mpmath.besselk, (orders, x), None),
]


def number(value):
    return int(value) if isinstance(value, np.integer) else mpmath.mpf(float(value))


print("| Function, SciPy's | Largest | SciPy's | Mean | SciPy's |")
print("| --- | --- | --- | --- | --- |")
for name, ours, theirs, true, arguments, least in ROWS:
    points = [[number(a) for a in point] for point in zip(*arguments)]
    values = [true(*point) for point in points]
    scales = [max(abs(v), least(*point)) if least else abs(v) for v, point in zip(values, points)]
    cells = []
    for made in (ours(*arguments), theirs(*arguments)):
        errors = [float(abs(mpmath.mpf(float(m)) - v) / s) for m, v, s in zip(made, values, scales)]
        cells.append((max(errors), sum(errors) / len(errors)))
    (own, own_mean), (other, other_mean) = cells
    print(f"| {name} | {own:.1e} | {other:.1e} | {own_mean:.1e} | {other_mean:.1e} |", flush=True)
