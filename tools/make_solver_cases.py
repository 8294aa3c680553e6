#!/usr/bin/env python3
"""Writes tests/data/solver_cases.tsv: linear systems and their solutions by Gaussian elimination as
the solver defines its rounding (each a - m b in Double, stored as Single), the last of equal
largest pivots taken.

Row: n, the coefficients row by row, the right-hand side, the solution.
Coefficients are small integers, so that equal pivots are frequent.

usage: make_solver_cases.py [OUTPUT]
"""
import pathlib
import random
import struct
import sys


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


def solve(a, b, last_of_equals=True):
    n = len(b)
    a = [row[:] for row in a]
    b = b[:]
    order = list(range(n))
    for k in range(n):
        best, position = 0.0, k
        for i in range(k, n):
            size = abs(a[order[i]][k])
            if size > best or (last_of_equals and size == best):
                best, position = size, i
        order[k], order[position] = order[position], order[k]
        p = order[k]
        for r in order[k + 1:]:
            m = single(a[r][k] / a[p][k])
            a[r] = [single(x - m * y) for x, y in zip(a[r], a[p])]
            b[r] = single(b[r] - m * b[p])
    for i in reversed(range(n)):
        r = order[i]
        for j in range(i + 1, n):
            b[r] = single(b[r] - a[r][j] * b[order[j]])
        b[r] = single(b[r] / a[r][i])
    return [b[r] for r in order]


def main():
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else (
        pathlib.Path(__file__).resolve().parent.parent / "tests/data/solver_cases.tsv")
    random.seed(63)
    lines = ["matrix\tright side\tsolution"]
    told_apart = 0
    for n in (1, 2, 2, 2, 3, 3, 3, 3, 4, 5, 6, 7, 8, 8, 16, 17, 20):
        a = [[float(random.randint(-5, 5)) for _ in range(n)] for _ in range(n)]
        b = [float(random.randint(-50, 50)) for _ in range(n)]
        x = solve(a, b)
        told_apart += x != solve(a, b, last_of_equals=False)
        *matrix, right, solution = (" ".join(f"{v:.9g}" for v in numbers) for numbers in [*a, b, x])
        lines.append("\t".join(["; ".join(matrix), right, solution]))
    assert told_apart >= 3, "the choice among equal pivots must show"
    target.write_text("\n".join(lines) + "\n", encoding="utf-8")


main()
