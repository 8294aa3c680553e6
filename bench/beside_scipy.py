"""Special functions of the Python package beside SciPy's, over a million doubles in one run:
VQMATH63_LIBRARY=build/rel/src/libvqmath63.so PYTHONPATH=python python3 bench/beside_scipy.py

Prints nanoseconds an element (the best of some runs, in the processor's time), and their ratio."""

import time

import numpy as np
import scipy.special as scipy

import vqmath63

COUNT = 1_000_000
RUNS = 5
maths = vqmath63.MathLib()
random = np.random.default_rng(63)


def between(low, high):
    return random.uniform(low, high, COUNT)


x, wide, shape = between(0.01, 20), between(-3, 3), between(0.1, 20)
part, orders = between(0, 1), random.integers(0, 20, COUNT)
orders_32 = orders.astype("i4")

ROWS = [
    ("erf", lambda: maths.Erf(wide), lambda: scipy.erf(wide)),
    ("gamma", lambda: maths.Gamma(x), lambda: scipy.gamma(x)),
    ("gammaln", lambda: maths.LoGamma(x), lambda: scipy.gammaln(x)),
    ("gammainc", lambda: maths.Gamma_P(shape, x), lambda: scipy.gammainc(shape, x)),
    ("betainc", lambda: maths.BetaI(shape, x, part), lambda: scipy.betainc(shape, x, part)),
    ("j0", lambda: maths.J0(x), lambda: scipy.j0(x)),
    ("y0", lambda: maths.y0(x), lambda: scipy.y0(x)),
    ("i0", lambda: maths.I0(x), lambda: scipy.i0(x)),
    ("k0", lambda: maths.K0(x), lambda: scipy.k0(x)),
    ("jn", lambda: maths.Jbn(orders_32, x), lambda: scipy.jv(orders, x)),
    ("kn", lambda: maths.Kbn(orders_32, x), lambda: scipy.kn(orders, x)),
]


def nanoseconds(work):
    times = []
    for _ in range(RUNS):
        begun = time.process_time()
        work()
        times.append(time.process_time() - begun)
    return min(times) / COUNT * 1e9


print(f"{'':10}{'vqmath63':>10}{'SciPy':>10}{'ratio':>8}")
for name, ours, theirs in ROWS:
    np.testing.assert_allclose(ours(), theirs(), rtol=1e-8)
    own, other = nanoseconds(ours), nanoseconds(theirs)
    print(f"{name:10}{own:10.1f}{other:10.1f}{own / other:8.2f}")
