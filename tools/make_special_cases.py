#!/usr/bin/env python3
"""Writes tests/data/special_cases.tsv: values of ztMathLib's functions, by two other routes.

Special functions ("special" rows): the mathematical value to 50 digits (mpmath), as the nearest
Double and the rest that it leaves. Points are seeded and exact in binary.

Elementary functions ("formula" rows): the function's formula with its own constants, each step rounded
to 53 bits (mpmath). "size" is what the last bit of a platform function can be magnified by on the way:
in a sum, the larger operand over the result, the most of all sums.

usage: make_special_cases.py [OUTPUT [POINTS]]      POINTS per interval, 4 unless given
"""
import math
import pathlib
import random
import sys

from mpmath import mp, mpf

HEADER = "kind\tfunction\tinterval\ta\tb\tx\tvalue\trest_or_size"


def exact(low, high, generator, logarithmic=False):
    """A number in (low, high) of at most 20 binary digits."""
    if logarithmic:
        x = math.exp(generator.uniform(math.log(low), math.log(high)))
    else:
        x = generator.uniform(low, high)
    mantissa, exponent = math.frexp(x)
    return math.ldexp(round(mantissa * 2**20), exponent - 20)


def beta_fraction(a, b, x, pairs):
    """The continued fraction of the incomplete beta function, from the last quotient backwards."""
    value = mpf(1)
    for m in range(pairs, 0, -1):
        even = m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m))
        odd = -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1))
        value = 1 + even / (1 + odd / value)
    return 1 / (1 - (a + b) * x / (a + 1) / value)


def beta_i(a, b, x):
    """By the fraction, of which 50 digits take some 10 sqrt(max(a, b)) pairs of steps."""
    if x > (a + 1) / (a + b + 2):
        return 1 - beta_i(b, a, 1 - x)
    front = mp.exp(mp.loggamma(a + b) - mp.loggamma(a) - mp.loggamma(b)
                   + a * mp.log(x) + b * mp.log(1 - x))
    return front * beta_fraction(a, b, x, 200 + int(20 * mp.sqrt(max(a, b)))) / a


def gamma_p(a, x):
    return mp.gammainc(a, 0, x, regularized=True)


def gamma_q(a, x):
    return mp.gammainc(a, x, mp.inf, regularized=True)


# function, how to work it out, interval's name, low, high, logarithmic spacing
ONE_ARGUMENT = [
    ("Gamma", mp.gamma, "(2.3e-308, 0.001)", 2.3e-308, 0.001, True),
    ("Gamma", mp.gamma, "(0.001, 1)", 0.001, 1, True),
    ("Gamma", mp.gamma, "(1, 2)", 1, 2, False),
    ("Gamma", mp.gamma, "(2, 12)", 2, 12, False),
    ("Gamma", mp.gamma, "(12, 171.6)", 12, 171.6, False),
    ("LoGamma", mp.loggamma, "(5e-324, 0.5)", 5e-324, 0.5, True),
    ("LoGamma", mp.loggamma, "(0.5, 3)", 0.5, 3, False),
    ("LoGamma", mp.loggamma, "(3, 12)", 3, 12, False),
    ("LoGamma", mp.loggamma, "(12, 1e5)", 12, 1e5, True),
    ("LoGamma", mp.loggamma, "(1e5, 2.5e305)", 1e5, 2.5e305, True),
    ("Erf", mp.erf, "(1e-307, 0.46875)", 1e-307, 0.46875, True),
    ("Erf", mp.erf, "(0.46875, 4)", 0.46875, 4, False),
    ("Erf", mp.erf, "(4, 8)", 4, 8, False),
]

# Where a function changes its way of working; each with both its neighbours.
LIMITS = [
    ("Gamma", mp.gamma, (2.22e-16, 1.0, 2.0, 12.0, 170.0)),
    ("LoGamma", mp.loggamma, (2.22e-16, 0.5, 0.6796875, 1.5, 4.0, 12.0, 2.25e76, 2.54e305)),
    ("Erf", mp.erf, (1.5e-16, 0.46875, 4.0, 6.0)),
]


def either_end(low, high, generator):
    """A number of (low, high), in one case of three as near to an end as 2^-40 of the interval."""
    near = (high - low) * 2.0 ** -generator.uniform(0, 40)
    return generator.choice([low + near, high - near, exact(low, high, generator)])


def negative_gamma(away, generator):
    """An argument in (-170, 0), so far away from every whole number and, if that is close, no farther
    than 1/16."""
    distance = exact(away, 1 - away, generator) if away == 1 / 16 else exact(away, 1 / 16, generator, True)
    return -(generator.randrange(0, 170) + generator.choice([distance, 1 - distance]))


# Of A, or of A and B, and of X, with logarithmic spacing each.
INCOMPLETE_BETA = [
    ("A, B in (0.05, 2)", 0.05, 2), ("A, B in (2, 50)", 2, 50), ("A, B in (50, 1e4)", 50, 1e4),
    ("A, B in (1e-300, 0.05)", 1e-300, 0.05)]
INCOMPLETE_GAMMA = [
    ("A in (0.05, 2), X above 1e-3", 0.05, 2, 1e-3), ("A in (0.05, 2), X to 1e-3", 0.05, 2, 1e-300),
    ("A in (2, 50), X above A / 100", 2, 50, None), ("A in (2, 50), X to A / 100", 2, 50, 1e-100),
    ("A in (50, 1e4)", 50, 1e4, None), ("A in (1e-300, 0.05)", 1e-300, 0.05, 1e-300)]
SMALLEST_VALUE = 1e-290


def incomplete_beta(low, high, k, generator):
    """Shapes, and X around the mean, or anywhere, or close to 0 or 1."""
    a, b = (exact(low, high, generator, high / low > 50) for _ in range(2))
    mean = a / (a + b)
    reach = 3 * math.sqrt(mean * (1 - mean) / (a + b + 1))
    if low == 50 or (k % 3 == 0 and low > 1e-3):
        # Around the mean, where the function is used.
        return a, b, min(max(exact(max(mean - reach, 0), min(mean + reach, 1), generator), 2**-10), 1 - 2**-10)
    if k % 3 == 1:
        return a, b, exact(1e-300, 1, generator, True)
    return a, b, either_end(0, 1, generator)


def incomplete_gamma(low, high, least, k, generator):
    """Shape, and X around it, or in decades below."""
    a = exact(low, high, generator, high / low > 50)
    reach = 3 * math.sqrt(a)
    if least is None or (k % 2 == 0 and least == 1e-3):
        return a, max(exact(a - reach, a + (reach if k % 3 else 3 * reach), generator), a / 100)
    return a, exact(least, {2: 1e-3, 50: a / 100, 0.05: 2.0}[high] if least != 1e-3 else 4 * a, generator, True)


def special(points):
    generator = random.Random(20240607)
    for name, function, interval, low, high, logarithmic in ONE_ARGUMENT:
        for _ in range(points):
            x = exact(low, high, generator, logarithmic)
            yield name, interval, 0, 0, x, function(mpf(x))
    for name, function, limits in LIMITS:
        for limit in limits:
            for x in (math.nextafter(limit, 0), limit, math.nextafter(limit, math.inf)):
                yield name, "limits", 0, 0, x, function(mpf(x))
    for _ in range(points):
        x = negative_gamma(1 / 16, generator)
        yield "Gamma", "(-170, 0), 1/16 from whole numbers", 0, 0, x, mp.gamma(mpf(x))
        x = negative_gamma(2.0**-20, generator)
        yield "Gamma", "(-170, 0), 2^-20 to 1/16 from one", 0, 0, x, mp.gamma(mpf(x))
    for interval, low, high in (("A, B in (0.25, 80)", 0.25, 80), ("A, B in (1e-150, 0.25)", 1e-150, 0.25)):
        for _ in range(points):
            a, b = (exact(low, high, generator, low < 0.25) for _ in range(2))
            yield "beta", interval, a, b, 0, mp.beta(mpf(a), mpf(b))
    # Beyond 1e4 the fraction ends before it converges.
    for interval, low, high in INCOMPLETE_BETA:
        k = found = 0
        while found < points:
            a, b, x = incomplete_beta(low, high, k, generator)
            k += 1
            value = beta_i(mpf(a), mpf(b), mpf(x)) if 0 < x < 1 else 0
            if value > SMALLEST_VALUE:
                found += 1
                yield "BetaI", interval, a, b, x, value
    for interval, low, high, least in INCOMPLETE_GAMMA:
        k = found = 0
        while found < points:
            a, x = incomplete_gamma(low, high, least, k, generator)
            k += 1
            value = gamma_p(mpf(a), mpf(x))
            if value > SMALLEST_VALUE:
                found += 1
                yield "Gamma_P", interval, a, 0, x, value
    for _ in range(points):
        a = exact(0.25, 50, generator)
        x = a + 1 + exact(2**-20, 400, generator, True)
        yield "Gamma_CF", "X in (A + 1, A + 401)", a, 0, x, gamma_q(mpf(a), mpf(x))
    for n in (0, 1, 2, 23, 170):
        yield "Factorial", "0 to 170", n, 0, 0, mpf(math.factorial(n))
    for n, k in ((5, 2), (1, 1), (52, 5), (170, 85), (170, 170)):
        yield "Combination", "totals to 170", n, k, 0, mpf(math.comb(n, k))
        yield "Permutation", "totals to 170", n, k, 0, mpf(math.perm(n, k))

    # Where the recurrences end at their caps, far from the limit.
    yield "Gamma_Series", "capped", 1e6, 0, 1e6, capped_series(mpf(10) ** 6, mpf(10) ** 6)
    yield "Gamma_CF", "capped", 0.5, 0, 2.0**-10, capped_fraction(mpf(0.5), mpf(2) ** -10)
    yield "Beta_CF", "capped", 1e5, 1e5, 0.5, beta_fraction(mpf(10) ** 5, mpf(10) ** 5, mpf(0.5), 100)


def capped_series(a, x):
    """1000 terms after the first."""
    term = total = 1 / a
    for n in range(1, 1001):
        term = term * x / (a + n)
        total += term
    return total * mp.exp(a * mp.log(x) - x - mp.loggamma(a))


def capped_fraction(a, x):
    """1000 pairs of steps, as one exact-as-can-be recurrence without renormalising."""
    a0, a1, b0, b1 = mpf(1), x, mpf(0), mpf(1)
    for n in range(1, 1001):
        a0, b0 = a1 + a0 * (n - a), b1 + b0 * (n - a)
        a1, b1 = x * a0 + n * a1, x * b0 + n * b1
    return mp.exp(a * mp.log(x) - x - mp.loggamma(a)) * b1 / a1


class Sized:
    """Adds, and remembers by how much a rounding of an operand shows in the sum."""

    def __init__(self):
        self.size = mpf(1)

    def add(self, a, b):
        self.size = max(self.size, abs(a / (a + b)), abs(b / (a + b)))
        return a + b


HALF_PI, PI, E = mpf("1.5707963267949"), mpf("3.14159265358979"), mpf("2.71828182845905")
LOG10_OF_E = mpf("0.434294481903252")
DEGREES, RADIANS = mpf("57.2957795130823"), mpf("0.017453292519943")
THIRD = mpf("0.333333333333333")

FORMULAS = {
    "aLog": (lambda s, x: mp.exp(x), (1.5, -700.25, 707.4375)),
    "aLog10": (lambda s, x: mp.power(10, x), (2.5, -260.125, 260.125)),
    "Ln": (lambda s, x: mp.log(x), (0.375, 1e300, 5e-324)),
    "Log10": (lambda s, x: mp.log(x) * LOG10_OF_E, (1000.0, 0.375, 1e-300)),
    "sine": (lambda s, x: mp.sin(x), (0.5, -2.0, 1000.25)),
    "cosine": (lambda s, x: mp.cos(x), (0.5, -2.0, 1000.25)),
    "cot": (lambda s, x: 1 / mp.tan(x), (0.5, -2.0)),
    "csc": (lambda s, x: 1 / mp.sin(x), (0.5, -2.0)),
    "Sec": (lambda s, x: 1 / mp.cos(x), (0.5, -2.0)),
    "acos": (lambda s, x: mp.atan(mp.sqrt(s.add(1, -(x * x))) / x) + (PI if x < 0 else 0),
             (0.25, -0.5, 0.875)),
    "asin": (lambda s, x: mp.atan(x / mp.sqrt(abs(s.add(1, -(x * x))))), (0.25, -0.5, 0.875)),
    "acot": (lambda s, x: mp.atan(1 / x), (0.25, -3.0)),
    "acsc": (lambda s, x: (s.add(HALF_PI, -mp.atan(mp.sqrt(abs(x * x - 1)))) if x > 1 else
                           s.add(mp.atan(mp.sqrt(abs(x * x - 1))), -HALF_PI)), (1.5, -3.0)),
    "asec": (lambda s, x: (mp.atan(mp.sqrt(abs(x * x - 1))) if x > 1 else
                           s.add(PI, -mp.atan(mp.sqrt(abs(x * x - 1))))), (1.5, -3.0)),
    "sinh": (lambda s, x: s.add(mp.exp(x), -mp.exp(-x)) * mpf(0.5), (0.0625, -3.0, 707.4375)),
    "cosh": (lambda s, x: s.add(mp.exp(x), mp.exp(-x)) * mpf(0.5), (0.0625, -3.0, 707.4375)),
    "tanh": (lambda s, x: s.add(mp.exp(x), -mp.exp(-x)) / (mp.exp(x) + mp.exp(-x)),
             (0.0625, -3.0, 36.75)),
    "coth": (lambda s, x: (mp.exp(x) + mp.exp(-x)) / s.add(mp.exp(x), -mp.exp(-x)),
             (0.0625, -3.0, 707.4375)),
    "csch": (lambda s, x: 2 / s.add(mp.exp(x), -mp.exp(-x)), (0.0625, -3.0, 707.4375)),
    "sech": (lambda s, x: 2 / s.add(mp.exp(x), mp.exp(-x)), (0.0625, -3.0, 707.4375)),
    "asinh": (lambda s, x: mp.log(s.add(mp.sqrt(x * x + 1), x)), (0.5, -2.0, 1e100)),
    "acosh": (lambda s, x: mp.log(s.add(mp.sqrt(x * x - 1), x)), (1.5, 1e100)),
    "atanh": (lambda s, x: mpf(0.5) * mp.log((x + 1) / (1 - x)), (0.5, -0.875)),
    "acoth": (lambda s, x: mpf(0.5) * mp.log((x + 1) / (x - 1)), (1.5, -3.0)),
    "acsch": (lambda s, x: mp.log(s.add(mp.sqrt((1 / x) * (1 / x) + 1), 1 / x)), (0.5, -2.0)),
    "asech": (lambda s, x: mp.log(s.add(mp.sqrt((1 / x) * (1 / x) - 1), 1 / x)), (0.5, 1e-100)),
    "Cube_Root": (lambda s, x: mp.sign(x) * mp.exp(mp.log(abs(x)) * THIRD), (8.0, -27.0, 0.001953125)),
    "RTD": (lambda s, x: x * DEGREES, (1.0, -3.25)),
    "DTR": (lambda s, x: x * RADIANS, (1.0, 180.0)),
}
POWERS = {
    "x_to_Power_y": (lambda x, p: mp.exp(mp.log(abs(x)) * p), ((2.0, 0.5), (-2.0, 3.0), (0.375, -3.25))),
    "y_Root_of_X": (lambda x, r: mp.exp(mp.log(abs(x)) / r), ((-8.0, 3.0), (2.0, 2.0), (5.0, -1.5))),
}


def formulas():
    mp.prec = 53
    for name, (formula, arguments) in FORMULAS.items():
        for x in arguments:
            sized = Sized()
            value = formula(sized, mpf(x))
            yield name, 0, 0, x, value, sized.size
    for name, (formula, arguments) in POWERS.items():
        for x, power in arguments:
            value = formula(mpf(x), mpf(power))
            # The rounding of the exponent is what counts.
            yield name, x, power, 0, value if x > 0 else -value, max(mpf(1), abs(mp.log(abs(value))))


def main():
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else (
        pathlib.Path(__file__).resolve().parent.parent / "tests/data/special_cases.tsv")
    points = int(sys.argv[2]) if len(sys.argv) > 2 else 4
    mp.dps = 50
    lines = [HEADER]
    for name, interval, a, b, x, value in special(points):
        nearest = float(value)
        lines.append("\t".join(["special", name, interval, repr(a), repr(b), repr(x), repr(nearest),
                                f"{float(value - mpf(nearest)):.3g}"]))
    for name, a, b, x, value, size in formulas():
        lines.append("\t".join(["formula", name, "-", repr(a), repr(b), repr(x), repr(float(value)),
                                f"{float(size):.3g}"]))
    target.write_text("\n".join(lines) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
