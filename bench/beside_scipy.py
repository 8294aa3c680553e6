"""Special functions of the Python package beside SciPy's, over arrays of doubles in one run:
VQMATH63_LIBRARY=build/bench/src/libvqmath63.so PYTHONPATH=python python3 bench/beside_scipy.py [OUT.json]

Prints microseconds a call, medians in the processor's time."""

import numpy as np
import rounds
import scipy.special as scipy

import vqmath63

maths = vqmath63.MathLib()
random = np.random.default_rng(63)


def rows(count):
    """Member, SciPy's function, arguments of each; those of orders are integers of either's kind."""
    def between(low, high):
        return random.uniform(low, high, count)
    x, wide, shape, part = between(0.01, 20), between(-3, 3), between(0.1, 20), between(0, 1)
    orders = random.integers(0, 20, count)
    short = orders.astype("i4")
    return [("Erf", "erf", (wide,), (wide,)), ("Gamma", "gamma", (x,), (x,)),
            ("LoGamma", "gammaln", (x,), (x,)), ("Gamma_P", "gammainc", (shape, x), (shape, x)),
            ("BetaI", "betainc", (shape, x, part), (shape, x, part)), ("J0", "j0", (x,), (x,)),
            ("y0", "y0", (x,), (x,)), ("I0", "i0", (x,), (x,)), ("K0", "k0", (x,), (x,)),
            ("Jbn", "jv", (short, x), (orders, x)), ("Kbn", "kn", (short, x), (orders, x))]


def jobs():
    for count in (1_000, 10_000, 100_000, 1_000_000):
        for ours, theirs, given, given_there in rows(count):
            member, function = getattr(maths, ours), getattr(scipy, theirs)
            np.testing.assert_allclose(member(*given), function(*given_there), rtol=1e-8)
            yield f"{ours}/{count}", lambda f=member, a=given: f(*a)
            yield f"scipy {theirs}/{count}", lambda f=function, a=given_there: f(*a)


rounds.write(rounds.measure(dict(jobs())))
