#!/usr/bin/env python3
"""Writes the constants of the Bessel functions, fitted and rounded from 60 digits:
src/mathlib/bessel_fits.hpp (polynomials of orders 0 and 1) and src/mathlib/bessel_constants.hpp
(elementary functions, argument reduction, the expansions in large orders).

A fit is the Chebyshev interpolant at the nodes of degree d, with d the smallest that leaves less
than TARGET of the function's smallest (relative fits) or largest (amplitude fits) value, rewritten
in powers and rounded to double. Needs mpmath.

usage: make_bessel_tables.py [DIRECTORY]
"""
import fractions
import pathlib
import sys

import mpmath
from mpmath import mp, mpf

mp.dps = 60
TARGET = mpf("1.5e-17")
NODES = 40
FAR = 25  # from here on modulus and phase
HEAD = """// {what}
// Written by tools/make_bessel_tables.py; do not edit.
// The generator has its own form.
// clang-format off
#pragma once

#include <cstdint>

namespace vqmath63::bessel {{

{body}
}}  // namespace vqmath63::bessel
"""


def number(value):
    return float(mpf(value)).hex().replace("0x1.0000000000000p", "0x1p")


def array(name, values, comment, kind="double", form=number):
    words = [form(v) for v in values]
    lines, line = [], "   "
    for word in words:
        if len(line) + len(word) + 2 > 99:
            lines.append(line)
            line = "   "
        line += " " + word + ","
    lines.append(line)
    return (f"// {comment}\ninline constexpr {kind} {name}[] = {{\n" + "\n".join(lines)
            + "\n};\n")


def rows(name, table, comment):
    width = max(len(r) for r in table)
    text = f"// {comment}\ninline constexpr double {name}[][{width}] = {{\n"
    for row in table:
        words = [number(v) for v in row]
        lines, line = [], "    {"
        for i, word in enumerate(words):
            word += "," if i + 1 < len(words) else "},"
            if len(line) + len(word) + 1 > 99:
                lines.append(line)
                line = "    "
            line += (" " if line[-1] == "," else "" if line[-1] == "{" else " ") + word
        lines.append(line)
        text += "\n".join(lines) + "\n"
    return text + "};\n"


def chebyshev(function, low, high):
    """Chebyshev coefficients of the function on [low, high]."""
    low, high = mpf(low), mpf(high)
    nodes = [mpmath.cos(mp.pi * (2 * k + 1) / (2 * NODES)) for k in range(NODES)]
    values = [function((low + high) / 2 + (high - low) / 2 * x) for x in nodes]
    series = []
    for j in range(NODES):
        terms = [values[k] * mpmath.cos(j * mp.pi * (2 * k + 1) / (2 * NODES))
                 for k in range(NODES)]
        series.append(2 * mpmath.fsum(terms) / NODES)
    series[0] /= 2
    return series, [abs(v) for v in values]


def powers(series):
    """Coefficients in powers of u for a Chebyshev series in u."""
    before, now = [mpf(1)], [mpf(0), mpf(1)]
    total = [mpf(0)] * len(series)
    for j, c in enumerate(series):
        basis = before if j == 0 else now
        if j > 1:
            basis = [mpf(0)] + [2 * b for b in now]
            for i, b in enumerate(before):
                basis[i] -= b
            before, now = now, basis
        for i, b in enumerate(basis):
            total[i] += c * b
    return total


def shifted(coefficients, scale, offset):
    """p(scale * v + offset) in powers of v."""
    result = [mpf(0)]
    for c in reversed(coefficients):
        grown = [mpf(0)] * (len(result) + 1)
        for i, r in enumerate(result):
            grown[i] += r * offset
            grown[i + 1] += r * scale
        grown[0] += c
        result = grown[:-1] if len(grown) > len(coefficients) else grown
    return result


def fit(function, low, high, centre=None, degree=None, relative=True, unit=False):
    """Powers of (v - centre) on [low, high]; of the unit variable u in [-1, 1] if unit."""
    low, high = mpf(low), mpf(high)
    series, sizes = chebyshev(function, low, high)
    limit = TARGET * (min(sizes) if relative else max(sizes))
    if degree is None:
        degree = next(d for d in range(NODES)
                      if mpmath.fsum(abs(c) for c in series[d + 1:]) < limit)
    left = mpmath.fsum(abs(c) for c in series[degree + 1:])
    assert left < limit, (function, low, high, degree, left / limit)
    p = powers(series[:degree + 1])
    if unit:
        return p
    scale = 2 / (high - low)
    offset = ((centre or 0) - (low + high) / 2) * scale
    return shifted(p, scale, offset)


def zero_of(kind, index):
    find = mpmath.besseljzero if kind[0] == "j" else mpmath.besselyzero
    return find(int(kind[1]), index)


def value(kind, x):
    return (mpmath.besselj if kind[0] == "j" else mpmath.bessely)(int(kind[1]), x)


def about_zero(kind, index, low, high, degree):
    """{zero, its tail, c1, c2, ...}: value = t (c1 + c2 t + ...), t = x - zero."""
    zero = zero_of(kind, index)
    head = mpf(float(zero))

    def ratio(x):
        t = x - zero
        if abs(t) < mpf(10) ** -25:
            return mpmath.diff(lambda v: value(kind, v), zero)
        return value(kind, x) / t
    return [zero, zero - head] + fit(ratio, low, high, zero, degree, relative=False)


def phase(order, z):
    """(theta - (x - order pi / 2 - pi / 4)) x at z = 1 / x^2."""
    x = 1 / mpmath.sqrt(z)
    with mpmath.workdps(100):
        t = x - mp.pi / 4 - order * mp.pi / 2
        j, y = mpmath.besselj(order, x), mpmath.bessely(order, x)
        c, s = mpmath.cos(t), mpmath.sin(t)
        return mpmath.atan2(y * c - j * s, j * c + y * s) * x


def modulus(order, z):
    x = 1 / mpmath.sqrt(z)
    return mpmath.sqrt(x * (mpmath.besselj(order, x) ** 2 + mpmath.bessely(order, x) ** 2))


def first_part(kind):
    """The function without its logarithm and pole, over x^order, in t = x^2."""

    def entire(t):
        x = mpmath.sqrt(t)
        if kind == "y0":
            v = mpmath.bessely(0, x) - 2 / mp.pi * mpmath.log(x) * mpmath.besselj(0, x)
        elif kind == "y1":
            v = (mpmath.bessely(1, x) + 2 / mp.pi / x
                 - 2 / mp.pi * mpmath.log(x) * mpmath.besselj(1, x)) / x
        elif kind == "k0":
            v = mpmath.besselk(0, x) + mpmath.log(x) * mpmath.besseli(0, x)
        else:
            v = (mpmath.besselk(1, x) - 1 / x - mpmath.log(x) * mpmath.besseli(1, x)) / x
        return v
    return entire


def fits():
    pi = mp.pi
    body = []

    def even(kind, scale=1):
        function = {"j": mpmath.besselj, "i": mpmath.besseli}[kind[0]]
        order = int(kind[1])
        return lambda t: scale * function(order, mpmath.sqrt(t)) / mpmath.sqrt(t) ** order

    body.append(f"inline constexpr double kFar = {FAR};\n")
    body.append(array("kJ0Near", fit(even("j0"), 0, 4), "J0 in powers of x^2, x <= 2"))
    end = (pi * 3 / 4) ** 2
    body.append(array("kJ1Near", fit(even("j1"), 0, end),
                      "J1 / x in powers of x^2, x <= 3 pi / 4"))
    slack = mpf("0.01")  # the intervals overlap
    ranges = {  # first interval's index, left end of interval k as (k + shift) pi
        "j0": (0, mpf(1) / 4, 8), "j1": (1, -mpf(1) / 4, 8),
        "y0": (2, -mpf(1) / 4, 7), "y1": (2, mpf(1) / 4, 6)}
    for kind, (first, shift, count) in ranges.items():
        table = []
        for k in range(first, first + count):
            low, high = (k + shift) * pi - slack, (k + 1 + shift) * pi + slack
            if kind == "j0" and k == 0:
                low = 2
            index = k if kind == "j1" else k + 1
            zero = zero_of(kind, index)
            assert low < zero < high, (kind, k, low, zero, high)
            degree = 19 if kind[0] == "y" else 17
            table.append(about_zero(kind, index, low, high, degree))
        name = f"k{kind.upper()}Zeros"
        body.append(rows(name, table, f"{kind.upper()} about a zero on [k + {float(shift)}, k + "
                         f"{float(shift) + 1}) pi, k from {first}: zero, its tail, c1, c2, ..."))
    body.append(array("kY0SecondZero", about_zero("y0", 2, pi * 3 / 4 - slack,
                                                  pi * 7 / 4 + slack, 25),
                      "Y0 on [3 pi / 4, 7 pi / 4) in the same form"))
    body.append(array("kY1SecondZero", about_zero("y1", 2, pi * 5 / 4 - slack,
                                                  pi * 9 / 4 + slack, 22),
                      "Y1 on [5 pi / 4, 9 pi / 4) in the same form"))
    for kind, end, centre, partner in (("y0", pi * 3 / 4, 0, "j0"), ("y1", pi * 5 / 4, 8, "j1")):
        top = (end + slack) ** 2
        about = "x^2 - 8" if centre else "x^2"
        body.append(array(f"k{kind.upper()}Near",
                          fit(first_part(kind), 0, top, centre, relative=False),
                          f"{kind.upper()} less its logarithm"
                          + (" and pole, over x" if centre else "") + f", in powers of {about}"))
        body.append(array(f"k{kind.upper()}Log",
                          fit(even(partner, 2 / pi), 0, top, centre, relative=False),
                          "what multiplies ln x" + (", over x" if centre else "")))
    top = mpf(1) / FAR ** 2
    for order in (0, 1):
        body.append(array(f"kModulus{order}", fit(lambda z: modulus(order, z), 0, top),
                          f"sqrt(x (J{order}^2 + Y{order}^2)) in powers of 1 / x^2, x >= kFar"))
        body.append(array(f"kPhase{order}", fit(lambda z: phase(order, z), 0, top),
                          "x times what its angle exceeds x - (2 n + 1) pi / 4 by"))
    body.append(array("kI0Near", fit(even("i0"), 0, 64), "I0 in powers of x^2, x <= 8"))
    body.append(array("kI1Near", fit(even("i1"), 0, 64), "I1 / x"))

    def scaled(kind):
        function = mpmath.besseli if kind[0] == "i" else mpmath.besselk
        sign = -1 if kind[0] == "i" else 1
        return lambda w: (mpmath.exp(sign / w) / mpmath.sqrt(w) * function(int(kind[1]), 1 / w))
    for kind, ends in (("i0", (8, 16)), ("i1", (8, 16)), ("k0", (1, 2, 4, 8)),
                       ("k1", (1, 2, 4, 8))):
        parts = []
        for i, low in enumerate(ends):
            right = mpf(1) / low
            left = mpf(1) / ends[i + 1] if i + 1 < len(ends) else mpf(0)
            parts.append((left, right))
        degree = 13
        while True:
            try:
                table = [fit(scaled(kind), a, b, degree=degree, unit=True) for a, b in parts]
                break
            except AssertionError:
                degree += 1
        table = [[2 / (b - a), (a + b) / (b - a)] + row for (a, b), row in zip(parts, table)]
        sign = "-" if kind[0] == "i" else ""
        body.append(rows(f"k{kind.upper()}Far", table, f"e^({sign}x) sqrt(x) {kind.upper()} from x "
                         f"= {', '.join(map(str, ends))} on: a, b, then powers of a / x - b"))
    for kind, partner in (("k0", "i0"), ("k1", "i1")):
        order = int(kind[1])
        body.append(array(f"k{kind.upper()}Near", fit(first_part(kind), 0, 1),
                          f"{kind.upper()} less its logarithm"
                          + (" and pole, over x" if order else "") + ", in powers of x^2, x <= 1"))
        body.append(array(f"k{kind.upper()}Log", fit(even(partner), 0, 1),
                          "what multiplies ln x" + (", over x" if order else "")))
    return "\n".join(body)


def cut(x, bits):
    """x rounded to the given number of significant bits."""
    exponent = mpmath.frexp(x)[1] - bits
    return mpmath.nint(mpmath.ldexp(x, -exponent)) * mpf(2) ** exponent


def pieces(x, bits, count):
    """x as a sum of count doubles, all but the last of so many bits."""
    parts = []
    for i in range(count):
        part = cut(x, bits) if i + 1 < count else mpf(float(x))
        parts.append(part)
        x -= part
    return parts


def debye(last):
    """Rows of c_kj: u_k(p) = p^k (c_k0 + c_k1 p^2 + ... + c_kk p^2k)."""
    half, eighth = fractions.Fraction(1, 2), fractions.Fraction(1, 8)
    u = {0: fractions.Fraction(1)}
    result = []
    for k in range(last + 1):
        result.append([u.get(k + 2 * j, fractions.Fraction(0)) for j in range(k + 1)])
        following = {}

        def add(power, amount):
            following[power] = following.get(power, fractions.Fraction(0)) + amount
        for power, c in u.items():
            add(power + 1, half * power * c)
            add(power + 3, -half * power * c)
            add(power + 1, eighth * c / (power + 1))
            add(power + 3, -5 * eighth * c / (power + 3))
        u = following
    return result


def constants():
    pi = mp.pi
    body = []
    body.append(array("kPowersOfTwo", [v for j in range(64) for v in pieces(mpf(2) ** (mpf(j) / 64),
                                                                           53, 2)],
                      "2^(j / 64) and its tail"))
    step = mpmath.log(2) / 64
    body.append(array("kLn2By64", pieces(step, 34, 2), "ln 2 / 64, the first part of 34 bits"))
    body.append(array("kLn2", pieces(mpmath.log(2), 40, 2), "ln 2, the first part of 40 bits"))
    body.append(array("kLogs", [v for j in range(32)
                                for v in pieces(mpmath.log(1 + mpf(2 * j + 1) / 64), 53, 2)],
                      "ln(1 + (2 j + 1) / 64) and its tail"))
    body.append(array("kLogFactors", [64 / mpf(64 + 2 * j + 1) for j in range(32)],
                      "1 / (1 + (2 j + 1) / 64)"))
    body.append(array("kLogSeries", [mpf((-1) ** (k + 1)) / k for k in range(2, 9)],
                      "ln(1 + x) = x + x^2 times this in powers of x"))
    body.append(array("kHalfPi", pieces(pi / 2, 33, 4), "pi / 2, parts of 33 bits"))
    top = (pi / 4 + mpf("0.01")) ** 2

    def sinc(t):
        return mpmath.sin(mpmath.sqrt(t)) / mpmath.sqrt(t)
    s = fit(sinc, 0, top)
    c = fit(lambda t: mpmath.cos(mpmath.sqrt(t)), 0, top)
    width = max(len(s), len(c))
    body.append(rows("kCosSin", [c + [mpf(0)] * (width - len(c)), s + [mpf(0)] * (width - len(s))],
                     "cos x, and sin x over x, in powers of x^2, |x| <= pi / 4"))
    body.append(array("kInverseFactorials", [1 / mpmath.factorial(n) for n in range(171)],
                      "1 / n!"))
    table = []
    for j in range(27):
        angle = mpf(j) / 16
        table.append(pieces(mpmath.cos(angle), 53, 2) + pieces(mpmath.sin(angle), 53, 2))
    body.append(rows("kAngles", table, "cos and sin of j / 16 with their tails"))
    flat = [mpf(c.numerator) / c.denominator for row in debye(16) for c in row]
    body.append(array("kDebye", flat, "The polynomials u_k of the expansions in large orders, row k "
                      "after\n// row k - 1: u_k(p) = p^k times the sum of c_j p^2j, j = 0 to k"))
    return "\n".join(body)


def main():
    here = pathlib.Path(__file__).resolve().parent.parent / "src/mathlib"
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else here
    for name, what, body in (
            ("bessel_fits.hpp", "Polynomials for the Bessel functions of orders 0 and 1.", fits()),
            ("bessel_constants.hpp", "Constants under the Bessel functions: elementary functions, "
             "argument reduction, large orders.", constants())):
        (target / name).write_text(HEAD.format(what=what, body=body), encoding="utf-8")


main()
