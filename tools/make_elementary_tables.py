#!/usr/bin/env python3
"""Makes the constants of src/elementary: the tables of the quick ways, and those of 256 bits.

All values are computed by mpmath at 400 digits and cut into doubles, or into words of 64 bits.

usage: make_elementary_tables.py [FOLDER]     writes src/elementary, or the given folder
"""

import pathlib
import sys

import mpmath
from mpmath import mp, mpf

mp.dps = 400

HEAD = """// {what} Made by
// tools/make_elementary_tables.py.
#pragma once

{body}
"""


def rounded(value, bits):
    """The nearest number of so many bits."""
    with mpmath.workprec(bits):
        return +value


def on_grid(value, place):
    """The nearest multiple of 2^place."""
    return mpmath.ldexp(mpmath.nint(mpmath.ldexp(value, -place)), place)


def pieces(value, *bits):
    """Parts of so many bits each, that add up to the value."""
    parts = []
    for count in bits:
        parts.append(rounded(value, count))
        value -= parts[-1]
    return parts


def spelt(value):
    """A number as a literal without rounding."""
    number = float(value)
    assert mpf(number) == value, value
    if number == int(number) and abs(number) < 1000:
        return f"{int(number)}.0"
    sign, rest = ("-", number.hex()[1:]) if number < 0 else ("", number.hex())
    digits, power = rest.split("p")
    digits = digits.rstrip("0").rstrip(".") if "." in digits else digits
    return f"{sign}{digits}p{int(power)}"


def filled(words, width=100):
    """The words in lines, a comma after each."""
    lines, line = [], "   "
    for word in words:
        if len(line) + len(word) + 2 > width:
            lines.append(line)
            line = "   "
        line += f" {word},"
    return "\n".join(lines + [line])


def array(name, values, comment, kind="double", to_text=lambda v: spelt(rounded(v, 53))):
    values = list(values)
    return (f"/// {comment}\ninline constexpr {kind} {name}[] = {{\n"
            f"{filled([to_text(v) for v in values])}\n}};\n")


def wide(value):
    """The initializer of a Wide: its four words, lowest first, and its exponent."""
    exponent = int(mpmath.floor(mpmath.log(value, 2))) + 1
    integer = int(mpmath.nint(mpmath.ldexp(value, 256 - exponent)))
    words = [f"0x{integer >> (64 * i) & 0xFFFFFFFFFFFFFFFF:016x}" for i in range(4)]
    return f"{{{{{', '.join(words[:2])},\n      {', '.join(words[2:])}}},\n     {exponent}}}"


def powers(steps):
    """2^(j / steps) in 26 bits, and the logarithm of the factor that makes it whole, j below 64."""
    values = [mpf(2) ** (mpf(j) / steps) for j in range(64)]
    return [v for p in values for v in (rounded(p, 26), mpmath.log(p / rounded(p, 26)))]


def log_series(count, largest):
    """So many coefficients of (ln(1 + r) - r) / r^2 by its values at Chebyshev's nodes, |r| <= largest."""
    nodes = [mpmath.cos(mp.pi * (2 * i + 1) / (2 * count)) * largest for i in range(count)]
    values = mpmath.matrix([(mpmath.log(1 + r) - r) / r**2 if abs(r) > 1e-100 else -mpf(1) / 2 for r in nodes])
    return list(mpmath.lu_solve(mpmath.matrix([[r**k for k in range(count)] for r in nodes]), values))




def tangent_series():
    """The three coefficients of (tan(b) - b) / b^3 in powers of b^2, by its values at Chebyshev's nodes,
    |b| <= pi / 512."""
    longest = (mp.pi / 512) ** 2
    nodes = [longest * (1 + mpmath.cos(mp.pi * (2 * i + 1) / 6)) / 2 for i in range(3)]
    values = mpmath.matrix([(mpmath.tan(mpmath.sqrt(u)) - mpmath.sqrt(u)) / mpmath.sqrt(u) ** 3 for u in nodes])
    return list(mpmath.lu_solve(mpmath.matrix([[u**k for k in range(3)] for u in nodes]), values))


def log_rows():
    """For each interval of mantissas a short factor, and minus its logarithm in two parts."""
    for i in range(256):
        low = mpf(11) / 16 + mpf(i) / 512 if i < 160 else 1 + mpf(i - 160) / 256
        width = mpf(1) / 512 if i < 160 else mpf(1) / 256
        beside_one = i in (159, 160)
        factor = mpf(1) if beside_one else on_grid(1 / (low + width / 2), -11)
        value = -mpmath.log(factor)
        high = on_grid(value, -42)
        yield factor, high, rounded(value - high, 53)


def tables():
    pi, ln2 = +mp.pi, mpmath.log(2)
    step = ln2 / 4096
    body = [
        "#include <cstdint>\n\nnamespace vqmath63::elementary {\n\n// clang-format off",
        array("kCoarsePowers", powers(64), "2^(j / 64) in 26 bits, and the logarithm of what these lack"),
        array("kFinePowers", powers(4096), "The same of 2^(j / 4096)"),
        array("kLn2By4096", pieces(step, 30, 53), "ln 2 / 4096: 30 bits, and the rest"),
        array("k4096ByLn2", [1 / step], "4096 / ln 2"),
        array("kLn2", [on_grid(ln2, -42), ln2 - on_grid(ln2, -42)],
              "ln 2: a multiple of 2^-42, and the rest"),
        array("kLogRows", [v for row in log_rows() for v in row],
              "For the i-th of 256 intervals of mantissas from 11/16 to 11/8 a factor f of at most 12 bits"
              "\n/// near the mantissa's reciprocal, and -ln f: a multiple of 2^-42, and the rest"),
        array("kLogSeries", log_series(6, mpf(1) / 256), "ln(1 + r) = r + r^2 times this in powers of r, |r| <= 2^-8, to 2^-71"),
        array("kShortLogSeries", log_series(5, mpf(1) / 256), "The same to 2^-62"),
        array("kLog10OfE", pieces(1 / mpmath.log(10), 53, 53), "log10 e in two parts"),
        array("kQuarterSines", [p for j in range(129) for p in pieces(mpmath.sin(pi * j / 256), 26, 53)],
              "sin(j pi / 256) to the quarter of the circle: 26 bits, and the rest"),
        array("kEighthTangents", [p for j in range(65) for p in pieces(mpmath.tan(pi * j / 256), 26, 53)],
              "tan(j pi / 256) to the eighth of the circle: 26 bits, and the rest"),
        array("kTangentSeries", tangent_series(), "tan(b) = b + b^3 times this in powers of b^2, |b| <= pi / 512, to 2^-69"),
        array("kPiBy256", pieces(pi / 256, 33, 33, 53), "pi / 256: 33 bits, 33 bits, and the rest"),
        array("k256ByPi", [256 / pi], "256 / pi"),
        array("kHalfPi", pieces(pi / 2, 53, 53), "pi / 2 in two parts"),
        array("kArcs", [p for j in range(129) for p in pieces(mpmath.atan(mpf(j) / 128), 53, 53)],
              "atan(j / 128) in two parts"),
    ]
    words = int(mpmath.floor(mpmath.ldexp(2 / pi, 32 * 44)))
    body.append(array("kTwoByPi", [words >> (32 * (43 - i)) & 0xFFFFFFFF for i in range(44)],
                      "2 / pi: the 1408 bits after the point", "std::uint32_t",
                      lambda v: f"0x{v:08x}"))
    body.append("// clang-format on\n\n}  // namespace vqmath63::elementary")
    return "\n".join(body)


def wide_constants():
    body = ['#include "elementary/wide.hpp"\n\nnamespace vqmath63::elementary {\n\n// clang-format off']
    for name, value, comment in (("kWideLn2", mpmath.log(2), "ln 2"), ("kWideLn10", mpmath.log(10), "ln 10"),
                                 ("kWideHalfPi", mp.pi / 2, "pi / 2")):
        body.append(f"/// {comment}\ninline constexpr Wide {name}\n    {wide(value)};\n")
    rows = ",\n".join(f"    {wide(1 / mpmath.factorial(n))}" for n in range(46))
    body.append(f"/// 1 / n!\ninline constexpr Wide kInverseFactorials[] = {{\n{rows}}};\n")
    rows = ",\n".join(f"    {wide(mpf(1) / n)}" for n in range(1, 28, 2))
    body.append(f"/// 1 / (2 n + 1)\ninline constexpr Wide kOddReciprocals[] = {{\n{rows}}};\n")
    body.append("// clang-format on\n\n}  // namespace vqmath63::elementary")
    return "\n".join(body)


def main():
    here = pathlib.Path(__file__).resolve().parent.parent / "src/elementary"
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else here
    for name, what, body in (
            ("tables.hpp", "Tables and constants of the quick ways.", tables()),
            ("wide_constants.hpp", "Constants of 256 bits.", wide_constants())):
        (target / name).write_text(HEAD.format(what=what, body=body), encoding="utf-8")


main()
