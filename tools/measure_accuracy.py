#!/usr/bin/env python3
"""The largest error of the gamma, beta and error functions in each interval of
tools/make_special_cases.py, against values of 50 digits, and where it is: the table of docs/accuracy.md.

VQMATH63_LIBRARY=build/release/src/libvqmath63.so PYTHONPATH=python python3 tools/measure_accuracy.py

Errors are relative to the value, of LoGamma and where the table of the tests says so to the value or
to 1, whichever is larger. usage: measure_accuracy.py [POINTS [FUNCTION]]"""

import pathlib
import sys

import vqmath63
from make_special_cases import mpf, special, mp

mp.dps = 50
POINTS = int(sys.argv[1]) if len(sys.argv) > 1 else 1000
ONLY = sys.argv[2] if len(sys.argv) > 2 else ""
TABLE = pathlib.Path(__file__).resolve().parent.parent / "tests/data/mathlib.tsv"


def bounds():
    """Bound and least scale of each function and interval."""
    lines = TABLE.read_text(encoding="utf-8").split("[bounds]")[1].split("\n\n")[0].splitlines()[1:]
    names, *rows = [line.split("\t") for line in lines if not line.startswith("#")]
    rows = [dict(zip(names, row)) for row in rows]
    return {(r["function"], r["interval"]): (float(r["bound"]), float(r["least"])) for r in rows}


def main():
    maths, known, worst = vqmath63.MathLib(), bounds(), {}
    for name, interval, a, b, x, value in special(POINTS):
        if ONLY not in ("", name) or interval == "capped" or name not in (
                "Gamma", "LoGamma", "Erf", "beta", "BetaI", "Gamma_P", "Gamma_CF"):
            continue
        words = {"beta": (a, b), "BetaI": (a, b, x), "Gamma_P": (a, x), "Gamma_CF": (a, x)}.get(name, (x,))
        _, least = known.get((name, interval), (0.0, 0.0))
        made = getattr(maths, name)(*words)
        error = float(abs(mpf(made) - value) / max(abs(value), mpf(least)))
        if error >= worst.get((name, interval), (-1.0,))[0]:
            worst[name, interval] = error, words
    for (name, interval), (error, words) in worst.items():
        bound, _ = known.get((name, interval), (float("nan"), 0.0))
        print(f"| `{name}` | {interval} | {error:.1e} | {bound:.1e} |{'' if error < bound else ' TOO MUCH'} {words}")


main()
