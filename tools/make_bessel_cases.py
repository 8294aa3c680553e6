#!/usr/bin/env python3
"""Writes tests/data/bessel_cases.tsv: values of the Bessel functions from 50 and more digits.

Columns: functions, order, argument, and for each function its value, what the value rounded to
double lacks, and the scale of errors: the value itself, or, for J at x >= max(order, 1) and for Y
everywhere, sqrt(J^2 + Y^2). Values of orders above 1 come from orders 0 and 1 by recurrence, in the direction in which errors
die out; those of order 2147483647 from expansions (DLMF 10.19.8 at x = n; 10.17.2 far out). Needs
mpmath.

usage: make_bessel_cases.py [OUTPUT]
"""
import math
import pathlib
import sys

import mpmath
from mpmath import mp, mpf

mp.dps = 60
EASY = {"maxprec": 10 ** 6, "maxterms": 10 ** 7}
LARGEST = 2147483647


def low_orders(x):
    """J0, J1, Y0, Y1; the leading terms of J and of the logarithm are all there is at tiny x."""
    mp.dps = 60 + max(0, int(mpmath.log10(x)))
    return ([mpmath.besselj(n, x, **EASY) for n in (0, 1)]
            + [mpmath.bessely(n, x, **EASY) for n in (0, 1)])


def upward(f0, f1, n, x, sign):
    if n == 0:
        return f0
    for k in range(1, n):
        f0, f1 = f1, 2 * k / x * f1 + sign * f0
    return f1


def downward(n, x, sign, f0, f1):
    """f(n) of the falling solution that is f0, f1 at orders 0, 1."""
    start = max(n, int(x) if sign < 0 else 0) + 100 + int(40 * float(x) ** 0.5
                                                          if sign > 0 else 40 * max(n, x) ** 0.34)
    above, at, found = mpf(0), mpf(1), None
    for k in range(start, 0, -1):
        above, at = at, 2 * k / x * at + sign * above
        if k - 1 == n:
            found = at
    return found * (f0 / at if abs(at) > abs(above) else f1 / above)


def circular(n, x):
    if n == LARGEST:
        if x == n:
            v = mpf(n)
            third, p, q = mpmath.cbrt(2), 1 - 1 / (225 * v ** 2), 1 / (70 * mpmath.cbrt(v) ** 2)
            return (third / mpmath.cbrt(v) * mpmath.airyai(0) * p
                    + third ** 2 / v * mpmath.airyai(0, 1) * q,
                    -third / mpmath.cbrt(v) * mpmath.airybi(0) * p
                    - third ** 2 / v * mpmath.airybi(0, 1) * q)
        assert x > mpf(10) ** 50
        mp.dps = 400
        angle = x - (2 * n + 1) * mp.pi / 4 + (4 * mpf(n) ** 2 - 1) / (8 * x)
        size = mpmath.sqrt(2 / (mp.pi * x))
        return size * mpmath.cos(angle), size * mpmath.sin(angle)
    j0, j1, y0, y1 = low_orders(x)
    y = upward(y0, y1, n, x, -1)
    return (upward(j0, j1, n, x, -1) if n <= x else downward(n, x, -1, j0, j1)), y


def values(kinds, n, x):
    """(kind, value, scale) of the functions named."""
    mp.dps = 60
    exact = mpf(x)
    result = []
    if "j" in kinds or "y" in kinds:
        j, y = circular(n, exact)
        size = mpmath.sqrt(j * j + y * y)
        if "j" in kinds:
            result.append(("j", j, size if x >= max(n, 1) else abs(j)))
        if "y" in kinds:
            result.append(("y", y, size))
    if "i" in kinds:
        i0, i1 = (mpmath.besseli(m, exact, **EASY) for m in (0, 1))
        value = (i0, i1)[n] if n < 2 else downward(n, exact, 1, i0, i1)
        result.append(("i", value, abs(value)))
    if "k" in kinds:
        k0, k1 = (mpmath.besselk(m, exact) for m in (0, 1))
        value = upward(k0, k1, n, exact, 1)
        result.append(("k", value, value))
    return result


def ends(x):
    """The last below x, and x: where a fit ends."""
    return [math.nextafter(x, 0), x]


def cases():
    pi = math.pi
    for order in (0, 1):
        points = [5e-324, 1e-9, 0.3]
        for end in [2.0, 2.35] if order == 0 else [2.35, 3.92]:
            points += ends(end)
        for end in (5.49, 7.06, 25.0):
            points += ends(end)
        points += ends(524288.0)
        points += [1.25 * pi, 5.75 * pi]
        points += [float(mpmath.besseljzero(order, m)) for m in (1, 2, 9, 166000)]
        points += [float(mpmath.besselyzero(order, m)) for m in (1, 2, 9)]
        points += [12345.678, 1e15, 1e100, 1.7e308]
        points += [4e5 + 0.4 * k for k in range(3)]
        yield from (("jy", order, x) for x in points)
        points = [5e-324, 1e-9, 0.3]
        for end in (1.0, 2.0, 4.0, 8.0, 16.0):
            points += ends(end)
        points += [55.0, 700.0]
        yield from (("ik", order, x) for x in points)
        yield ("i", order, 713.5)
        yield ("k", order, 740.0)
    for n in (2, 80, 81, 121, 170, 300, 10000):
        root = math.sqrt(n + 1)
        third = n ** (1 / 3)
        points = [0.7 * n, root, math.nextafter(root, math.inf), math.nextafter(n, 0), float(n),
                  n + 9.5 * third, n + 12 * third, 3.0 * n]
        if n >= 80:
            points += [n - 9.5 * third, n - 12 * third]
        if n < 1000:
            points += [1e6]
        # J and Y of 81 go as those of 80; the others part between the two. Left out: what underflows.
        for x in points if n != 81 else []:
            if n * math.log(0.5 * x) - math.lgamma(n + 1) > -600 or x > 0.9 * n:
                yield ("jy", n, x)
        points = [float(n), 4.0 * n, root, math.nextafter(root, math.inf), float(n * n), 70.0 - n,
                  71.0 - n]
        for x in points:
            if 0 < x < 650 and n * math.log(0.5 * x) - math.lgamma(n + 1) > -600:
                yield ("ik", n, x)
    yield ("ik", 10000, 6500.0)
    # The last that do not overflow or underflow, and powers of x that nearly do.
    yield from (("i", 5, 713.5), ("k", 5, 740.0), ("ik", 200, 735.0), ("jy", 300, 21.5))
    yield from (("jy", 3, 2e-100), ("ik", 3, 2e-100))
    yield from (("jy", LARGEST, x) for x in (2147483647.0, 1e100, 1e300))


def main():
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else (
        pathlib.Path(__file__).resolve().parent.parent / "tests/data/bessel_cases.tsv")
    lines = ["functions\torder\targument\tvalues\trests\tscales"]
    for kinds, n, x in cases():
        shown = []
        for kind, value, scale in values(kinds, n, x):
            if abs(value) <= mpf(1.7e308):
                rounded = float(value)
                shown.append((kind, repr(rounded), f"{float(value - rounded):.3g}",
                              f"{float(scale):.3g}"))
        if shown:
            kinds, *columns = zip(*shown)
            lines.append("\t".join(["".join(kinds), str(n), repr(x)] + [" ".join(c) for c in columns]))
    target.write_text("\n".join(lines) + "\n", encoding="utf-8")


main()
