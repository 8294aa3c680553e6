#!/usr/bin/env python3
"""Writes src/mathlib/exp_of_squares.hpp: exp(-(k/16)^2) for k = 0 to 96, rounded from 50 digits.

usage: make_exp_of_squares.py [OUTPUT]
"""
import pathlib
import sys

from mpmath import mp, mpf

HEAD = """// Values of exp(-h^2) at the sixteenths h = k / 16 from 0 to 6. Made by tools/make_exp_of_squares.py.
#pragma once

namespace vqmath63 {

// clang-format off
inline constexpr double kExpOfMinusSquare[] = {
"""
TAIL = """};
// clang-format on

}  // namespace vqmath63
"""


def main():
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else (
        pathlib.Path(__file__).resolve().parent.parent / "src/mathlib/exp_of_squares.hpp")
    mp.dps = 50
    values = [repr(float(mp.exp(-(mpf(k) / 16) ** 2))) for k in range(97)]
    rows = ("    " + ", ".join(values[i:i + 4]) + ",\n" for i in range(0, len(values), 4))
    target.write_text(HEAD + "".join(rows) + TAIL, encoding="utf-8")


main()
