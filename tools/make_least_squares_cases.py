#!/usr/bin/env python3
"""Writes tests/data/least_squares_cases.tsv: weighted polynomial least squares in exact rational
arithmetic, from the normal equations in powers of x.

Samples i = 1 to n, all exact as Singles: x = offset + step (i + (i * i mod 3) / 8),
y = (i * 37 mod 64) / 4 - 5, weight = 1 + (i mod 4) / 2.
Row: n, offset, step, order, the coefficients from the constant upwards, correctly rounded to Double.

usage: make_least_squares_cases.py [OUTPUT]
"""
import fractions
import pathlib
import sys

Exact = fractions.Fraction


def solve(matrix, right):
    n = len(right)
    rows = [row[:] + [value] for row, value in zip(matrix, right)]
    for k in range(n):
        pivot = next(i for i in range(k, n) if rows[i][k] != 0)
        rows[k], rows[pivot] = rows[pivot], rows[k]
        for i in range(n):
            if i != k:
                m = rows[i][k] / rows[k][k]
                rows[i] = [a - m * b for a, b in zip(rows[i], rows[k])]
    return [rows[k][n] / rows[k][k] for k in range(n)]


def fit(n, offset, step, order):
    samples = [(offset + step * (i + Exact(i * i % 3, 8)), Exact(i * 37 % 64, 4) - 5,
                1 + Exact(i % 4, 2)) for i in range(1, n + 1)]
    moment = [sum(w * x**k for x, _, w in samples) for k in range(2 * order - 1)]
    right = [sum(w * y * x**k for x, y, w in samples) for k in range(order)]
    return solve([moment[k:k + order] for k in range(order)], right)


def main():
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else (
        pathlib.Path(__file__).resolve().parent.parent / "tests/data/least_squares_cases.tsv")
    lines = ["n\toffset\tstep\torder\tcoefficients"]
    for n, offset, step in ((12, Exact(0), Exact(1)), (40, Exact(-20), Exact(1)),
                            (12, Exact(2000), Exact(1)), (25, Exact(-1, 4), Exact(1, 64))):
        for order in (1, 2, 3, 4, 5, 6, 12):
            coefficients = fit(n, offset, step, order)
            numbers = [float(offset), float(step)]
            lines.append("\t".join([str(n), *(f"{v:.9g}" for v in numbers), str(order),
                                    " ".join(f"{float(c):.17g}" for c in coefficients)]))
    target.write_text("\n".join(lines) + "\n", encoding="utf-8")


main()
