#!/usr/bin/env python3
"""Makes tests/data/elementary_cases.tsv: arguments of the elementary functions and their correctly
rounded values, from 1300 bits of mpmath.

Ordinary arguments, both sides of every edge (of tables, of reductions, of the range of numbers), those
close to a multiple of pi / 2, exact results and exact middles between two numbers, of many seeded ones
those hardest to round, and the argument of the logarithm that is the hardest of all (V. Lefevre, J.-M.
Muller, Worst cases for correct rounding of the elementary functions in double precision, 2001: 65 equal
bits follow the 53). Special values are those of the C standard, appendix F.

usage: make_elementary_cases.py OUTPUT
"""

import math
import random
import sys

import mpmath
from mpmath import mp, mpf

mp.prec = 1300
INF, NAN = math.inf, math.nan
TINY, SMALLEST = 5e-324, 2.0**-1022
LARGEST = 2.0**1023 * (2 - 2.0**-52)

FUNCTIONS = {
    "exp": lambda x, y: mpmath.exp(x), "log": lambda x, y: mpmath.log(x),
    "log1p": lambda x, y: mpmath.log1p(x), "log10": lambda x, y: mpmath.log(x, 10),
    "pow": lambda x, y: mpmath.exp(y * mpmath.log(x)) if y != int(y) else x ** int(y),
    "sin": lambda x, y: mpmath.sin(x), "cos": lambda x, y: mpmath.cos(x),
    "tan": lambda x, y: mpmath.tan(x), "atan": lambda x, y: mpmath.atan(x),
    # The arc is below its tangent, be it by less than the digits here.
    "atan2": lambda y, x: y / x * (1 - mpf(2)**-1200) if 0 < abs(y / x) < mpf(2)**-640 and x > 0
    else mpmath.atan2(y, x),
    "hypot": lambda x, y: mpmath.sqrt(x * x + y * y)}

PAIRS = ("pow", "atan2", "hypot")

# The Double closest to a multiple of pi / 2 (W. Kahan, Minimizing q m - n, 1983), and others close.
NEAR_HALF_PI = [6381956970095103 * 2.0**797] + [float(mp.pi / 2 * n) for n in (1, 2, 3, 355, 10**9)]

# Of some 10^8 seeded arguments each those that a quick way would round wrongly if its bound of error were
# a half or a fifth of what it is (of the arc tangent a thirtieth); and powers of numbers beside 1 that both
# quick logarithms leave open.
TELLING = {
    "exp": ["-0x1.208f2abcb8b18p+7", "0x1.7a6655a57f761p+8"],
    "log": ["0x1.0d072b28ccb5ep+2", "0x1.ff221e07efa4fp-1"],
    "log1p": ["-0x1.9fbdeb30a5029p-10"], "log10": ["0x1.ff47e60e7cc02p-1"],
    "sin": ["0x1.b1d5d08dd3d94p-8", "0x1.9b2d6016cbc4p-8"],
    "cos": ["0x1.e7edfa5b9b794p+3", "0x1.2114168040c03p+5"],
    "tan": ["0x1.ae8284247b741p-8", "0x1.a331ad6d78222p-8"], "atan": ["0x1.20971b454d227p-8"],
    "pow": ["0x1.29b606da1f3d7p-1 -0x1.9d57795ce57bap+1", "0x1.884636a93e937p+1 0x1.820d520ddbd54p+4",
            "0x1.00a3c8431dbc8p+0 0x1.72d21ecb46f8cp+17", "0x1.ffeafcad30f9p-1 0x1.12a5028d6247p+17"]}

SPECIAL = {
    "exp": [(INF, INF), (-INF, 0.0), (NAN, NAN), (-0.0, 1.0), (709.79, INF), (-746.0, 0.0)],
    "log": [(0.0, -INF), (-0.0, -INF), (-1.0, NAN), (INF, INF), (1.0, 0.0), (NAN, NAN)],
    "log1p": [(-1.0, -INF), (-2.0, NAN), (INF, INF), (-0.0, -0.0), (NAN, NAN)],
    "log10": [(0.0, -INF), (-1.0, NAN), (INF, INF), (NAN, NAN)],
    "pow": [(-2.0, 3.0, -8.0), (-2.0, 2.0, 4.0), (-2.0, 0.5, NAN), (0.0, -1.0, INF), (-0.0, -3.0, -INF),
            (-0.0, 3.0, -0.0), (0.0, -2.5, INF), (0.0, 0.0, 1.0), (NAN, 0.0, 1.0), (1.0, NAN, 1.0),
            (-1.0, INF, 1.0), (0.5, INF, 0.0), (0.5, -INF, INF), (INF, -1.0, 0.0), (-INF, 3.0, -INF),
            (2.0, NAN, NAN), (2.0, 1e300, INF), (0.5, 1e300, 0.0), (10.0, 400.0, INF), (10.0, -400.0, 0.0),
            (-3.0, 2.0**60, INF)],
    "sin": [(0.0, 0.0), (-0.0, -0.0), (INF, NAN), (NAN, NAN)], "cos": [(0.0, 1.0), (-INF, NAN)],
    "tan": [(-0.0, -0.0), (INF, NAN)], "atan": [(-0.0, -0.0), (NAN, NAN)],
    "atan2": [(0.0, 1.0, 0.0), (-0.0, 1.0, -0.0), (NAN, 1.0, NAN), (1.0, NAN, NAN), (1.0, INF, 0.0)],
    "hypot": [(0.0, -0.0, 0.0), (INF, NAN, INF), (NAN, -INF, INF), (NAN, 1.0, NAN),
              (LARGEST, LARGEST, INF)]}


def rounded(value):
    """The nearest Double, of two the even one."""
    if value == 0:
        return 0.0
    size = abs(value)
    last = max(mpmath.frexp(size)[1] - 53, -1074)
    result = mpmath.ldexp(mpmath.nint(mpmath.ldexp(size, -last)), last)
    number = INF if result >= mpf(2)**1024 else float(result)
    return -number if value < 0 else number


def beside(x):
    return [math.nextafter(x, -INF), x, math.nextafter(x, INF)]


def arguments(function):
    """The pairs of arguments of a function; the second is 0 where it takes one."""
    draw = random.Random(function)
    singles = {
        "exp": [1e-300, 2.0**-53, -2.0**-54, 3e-10, 0.34657359027997264, -708.0, -708.39641853226408,
                -745.13321910194122, -744.5, *beside(709.78271289338397)[:2], 1.0, -1.0]
        + [draw.uniform(-700, 700) for _ in range(3)],
        "log": [float.fromhex("0x1.62a88613629b6p+678"), TINY, LARGEST, SMALLEST, 10.0, 0.5,
                *beside(1.0)[::2], *beside(11 / 16), *beside(11 / 8), 1 - 2.0**-9, 1 + 2.0**-8,
                1.0009765625] + [draw.uniform(0, 9) for _ in range(3)],
        "log1p": [TINY, 1e-20, 2.0**-54, -2.0**-53, 1e-9, 2.0**-8, 0.375, -0.5, LARGEST, -1 + 2.0**-53],
        "log10": [10.0**n for n in (0, 1, 2, 15, 22)] + [1e23, 1e-5, TINY, LARGEST, *beside(1000.0)[::2]],
        "sin": [TINY, SMALLEST, 2.0**-27, 1e-5, 2.0**13, 1e22, LARGEST, -2.5, *NEAR_HALF_PI,
                *beside(float(mp.pi / 512)), *beside(float(mp.pi * 3 / 512))],
        "cos": [TINY, 2.0**-27, 1e-5, 8191.9, 1e22, LARGEST, *NEAR_HALF_PI, *beside(float(mp.pi / 512))],
        "tan": [TINY, 2.0**-28, 1e-5, -1.25, 1e22, LARGEST, *NEAR_HALF_PI, float(mp.pi / 4)],
        "atan": [TINY, 2.0**-27, 1e-5, *beside(1.0), *beside(1 / 256), *beside(3 / 256), 128.0, -5.5,
                 2.0**59, 2.0**60, LARGEST, INF]}
    if function in singles:
        return [(x, 0.0) for x in singles[function]]
    return {
        "pow": [(10.0, float(n)) for n in (22, 23, 308, -308, -323)] + [(10.0, 0.3), (10.0, -7.75)]
        + [(3.0, 34.0), (5.0, 22.0), (0.5, 1074.0), (0.5, 1075.0), (4.0, 511.5), (2.25, -1.5),
           (1 + 2.0**-52, 3e18), (1 - 2.0**-53, -6e18), (LARGEST, 1.0), (TINY, -0.9), (TINY, 0.25),
           (2.0**27 + 1, 2.0), (9007199254740991.0, 0.5), (7.0, 1e-20)]
        + [(draw.uniform(0, 9), draw.uniform(-9, 9)) for _ in range(4)],
        "atan2": [(1.0, 1.0), (-3.0, -4.0), (3.0, -4.0), (2.0, 0.5), (TINY, 1.0), (3 * TINY, 2.0),
                  (TINY, -1.0), (1.0, TINY), (LARGEST, TINY), (TINY, LARGEST), (3 * TINY, 7 * TINY),
                  (LARGEST, LARGEST / 3), (1e-200, -1e-190), (2.0**-40, 1.0), (255.0, 256.0)]
        + [(draw.uniform(-1, 1), draw.uniform(-1, 1)) for _ in range(4)],
        "hypot": [(3.0, -4.0), (2.0**53, 1.0), (2.0**27 + 1, 2.0**13 * 3), (94906266.0, 13777.0),
                  (TINY, TINY), (3 * TINY, 4 * TINY), (SMALLEST, SMALLEST), (LARGEST, 1.0), (1e300, 1e299),
                  (1e-200, 1e-210), (1e-5, 1e-310), (1.0, 2.0**-27), (LARGEST / 2, LARGEST / 2)]
        + [(draw.uniform(0, 9), draw.uniform(0, 9)) for _ in range(4)]}[function]


def hard(function, exact):
    """Of 30 000 seeded arguments the five whose values lie closest to the middle of two Doubles."""
    draw = random.Random(function + " hard")
    found = []
    with mpmath.workprec(140):
        for _ in range(30_000):
            x, y = draw.uniform(0.1, 9), draw.uniform(0.1, 3) if function in PAIRS else 0.0
            digits = mpmath.ldexp(mpmath.frexp(exact(mpf(x), mpf(y)))[0], 53)
            found.append((abs(abs(digits - mpmath.floor(digits)) - mpf(1) / 2), x, y))
    return [(x, y) for _, x, y in sorted(found)[:5]]


def spelt(x):
    return repr(x) if math.isnan(x) or math.isinf(x) else x.hex().replace("0x1.0000000000000p", "0x1p")


def main():
    rows = []
    for function, exact in FUNCTIONS.items():
        for row in SPECIAL[function]:
            rows.append((function, row[0], row[1] if len(row) == 3 else 0.0, row[-1]))
        telling = [tuple(map(float.fromhex, f"{words} 0".split()[:2])) for words in TELLING.get(function, [])]
        for x, y in arguments(function) + telling + hard(function, exact):
            rows.append((function, x, y, rounded(exact(mpf(x), mpf(y)))))
    axes = ((0.0, -1.0, 4), (-0.0, -1.0, -4), (1.0, 0.0, 2), (-1.0, -0.0, -2), (INF, INF, 1),
            (-INF, -INF, -3), (INF, -1.0, 2), (-1.0, -INF, -4))
    rows += [("atan2", y, x, rounded(mp.pi * n / 4)) for y, x, n in axes]
    with open(sys.argv[1], "w", encoding="utf-8") as out:
        print("function", "x", "y", "value", sep="\t", file=out)
        for function, x, y, value in rows:
            print(function, spelt(x), spelt(y), spelt(value), sep="\t", file=out)


main()
