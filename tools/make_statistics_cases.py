#!/usr/bin/env python3
"""Writes tests/data/statistics_cases.tsv: sums, spreads and order measures of long columns.

Running sums are rounded to Single after every term and every addition, as the library keeps them; all
else is exact rational arithmetic (roots at 60 digits) from those sums, rounded once at the end.

Samples i = 1 to n: x = Single(((37 i) mod 101 - 40) / 7), y = Single(i / 10).

usage: make_statistics_cases.py [OUTPUT]
"""
import decimal
import pathlib
import struct
import sys
from fractions import Fraction as F

decimal.getcontext().prec = 60


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


def running(terms):
    """Terms are products and sums of two Singles at most, which a Double holds or rounds alike."""
    total = None
    for term in terms:
        term = single(term)
        total = term if total is None else single(total + term)
    return total


def root(value):
    value = abs(value)
    return float((decimal.Decimal(value.numerator) / decimal.Decimal(value.denominator)).sqrt())


def cleared(s, squares):
    return F(0) if single(float(F(squares) * F(1, 10**15))) > single(abs(float(s))) else s


def middle(ordered):
    n = len(ordered)
    return (F(ordered[(n - 1) // 2]) + F(ordered[n // 2])) / 2


def column(name, v):
    n = len(v)
    total, squares = running(v), running(a * a for a in v)
    s = F(squares) - F(total) ** 2 / n
    ordered = sorted(v)
    half = (n + 1) // 2
    r = F(single(1 / n))
    # The mean's and the spread's pair forms multiply by the rounded reciprocal.
    pair = F(squares) - F(total) ** 2 * r
    pair_cleared = cleared(pair, squares)
    figures = {
        "SumOfX": total, "SumOfX2": squares, "SumofAbsX": running(abs(a) for a in v),
        "average": F(total) / n, "Variance": pair * r,
        "SigmaN": root(s / n), "SigmaN1": root(s / (n - 1)) if n > 1 else 0,
        "Median": middle(ordered), "lower quartile": middle(ordered[:half]),
        "upper quartile": middle(ordered[half - 1:]),
        "xSigmaN": root(cleared(s, squares) / n),
        "xSigmaN1": root(cleared(s, squares) / (n - 1)) if n > 1 else 0,
        "pair mean": F(total) * r, "pair xSigmaN1": root(pair / (n - 1)) if n > 1 else 0,
        "pair ySigmaN": root(pair_cleared * r),
        "pair ySigmaN1": root(pair_cleared / (n - 1)) if n > 1 else 0,
    }
    return [(f"{name} {key}", value) for key, value in figures.items()]


def both(x, y):
    n = len(x)
    mx, my = single(F(running(x)) / n), single(F(running(y)) / n)
    return [
        ("SumOfXY", running(a * b for a, b in zip(x, y))),
        ("Cov", F(running((a - mx) * (b - my) for a, b in zip(x, y))) / n),
        ("SumOfSquareDifferences", running((a - b) ** 2 for a, b in zip(x, y))),
    ]


def main():
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else (
        pathlib.Path(__file__).resolve().parent.parent / "tests/data/statistics_cases.tsv")
    table = []
    counts = (1, 2, 3, 4, 5, 6, 1000, 100001)
    for n in counts:
        x = [single((37 * i % 101 - 40) / 7) for i in range(1, n + 1)]
        y = [single(i / 10) for i in range(1, n + 1)]
        table.append(column("x", x) + column("y", y) + both(x, y))
    lines = ["\t".join(["measure", *map(str, counts)])]
    for row in zip(*table):
        lines.append("\t".join([row[0][0], *(f"{single(float(value)):.9g}" for _, value in row)]))
    target.write_text("\n".join(lines) + "\n", encoding="utf-8")


main()
