#!/usr/bin/env python3
"""Writes tests/data/integration_cases.tsv: areas by each quadrature rule, step by step as the
rules define their rounding (every running Single rounded to 24 bits, all else in Double).

Samples i = 1 to n: x = Single(i / 10), y = Single(((37 i) mod 101 - 40) / 7).

usage: make_integration_cases.py [OUTPUT]
"""
import pathlib
import struct
import sys


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


def trapezoidal(x, y):
    total = 0.0
    for i in range(len(x) - 1):
        total += (y[i] + y[i + 1]) * (x[i + 1] - x[i])
    return single(total * 0.5)


def rectangles(x, y, side):
    total = 0.0
    for i in range(len(x) - 1):
        total = single(total + (x[i + 1] - x[i]) * y[i + side])
    return total


def simpson(x, y):
    if len(x) % 2 == 0:
        return trapezoidal(x, y)
    total = single(y[0] + y[-1])
    for weight, first in ((4.0, 1), (2.0, 2)):
        for i in range(first, len(x) - 1, 2):
            total = single(total + weight * y[i])
    return single(single(x[1] - x[0]) * 0.333333333333333 * total)


def main():
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else (
        pathlib.Path(__file__).resolve().parent.parent / "tests/data/integration_cases.tsv")
    lines = ["n\ttrapezoidal\tsimpson\tforward\tbackward"]
    for n in (2, 3, 4, 5, 1000, 100001, 300000):
        x = [single(i / 10) for i in range(1, n + 1)]
        y = [single((37 * i % 101 - 40) / 7) for i in range(1, n + 1)]
        areas = (trapezoidal(x, y), simpson(x, y), rectangles(x, y, 0), rectangles(x, y, 1))
        lines.append("\t".join([str(n), *(f"{a:.9g}" for a in areas)]))
    target.write_text("\n".join(lines) + "\n", encoding="utf-8")


main()
