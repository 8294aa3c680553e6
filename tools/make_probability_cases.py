#!/usr/bin/env python3
"""Writes tests/data/probability_cases.tsv: tail probabilities at 50 digits (python3-mpmath), as the
nearest Doubles.

One and two degrees of freedom have closed forms, which the test itself has.

  chi       chi squared, degrees of freedom: chance of a larger chi squared
  student   t, degrees of freedom: chance of a smaller |t|, chance of a larger one
  quantile  level, degrees of freedom: the |t| that stays unexceeded with that chance

usage: make_probability_cases.py [OUTPUT]
"""
import pathlib
import sys

from mpmath import betainc, findroot, gammainc, log, mp, mpf, sqrt

mp.dps = 50


def chi(chi_squared, freedom):
    return (gammainc(mpf(freedom) / 2, mpf(chi_squared) / 2, regularized=True),)


def student(t, freedom):
    t, v = mpf(t), mpf(freedom)
    below = betainc(0.5, v / 2, 0, t * t / (v + t * t), regularized=True)
    if below < 0.999:
        return below, 1 - below
    above = betainc(v / 2, 0.5, 0, v / (v + t * t), regularized=True)
    return 1 - above, above


def quantile(level, freedom, start):
    level = mpf(level)
    side, wanted = (1, 1 - level) if level > 0.5 else (0, level)
    root = findroot(lambda u: log(student(mp.exp(u), freedom)[side] / wanted), log(mpf(start)),
                    tol=1e-40)
    return (mp.exp(root),)


def cases():
    for freedom in (3, 7, 30, 31, 1000, 100001, 10000000):
        root = sqrt(mpf(2 * freedom))
        points = {max(freedom + float(k * root), freedom * 0.0625)
                  for k in (-2, 0, 3, 12)}
        for point in sorted({round(p * 16) / 16 for p in points} - {0.0}):
            yield "chi", point, freedom, chi(point, freedom)
    yield "chi", 1e-20, 1, chi(1e-20, 1)
    yield "chi", 1400.0, 5, chi(1400.0, 5)
    for freedom in (3, 4, 10, 29, 1000, 1000001):
        for t in (2.0**-40, 0.75, 1.5, 6.0, 30.0):
            yield "student", t, freedom, student(t, freedom)
    yield "student", 2.0**80, 3, student(2.0**80, 3)
    starts = {2.0**-30: (1e-9,) * 4, 0.125: (0.16,) * 4, 0.5: (0.75, 0.7, 0.68, 0.67),
              0.75: (1.3, 1.2, 1.16, 1.15), 0.9375: (2.2, 2, 1.9, 1.87),
              0.9990234375: (6.8, 4.1, 3.35, 3.3),
              1 - 2.0**-40: (560, 23, 8.5, 7)}
    for level, guesses in starts.items():
        for freedom, start in zip((5, 14, 120, 100000), guesses):
            yield "quantile", level, freedom, quantile(level, freedom, start)


def main():
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else (
        pathlib.Path(__file__).resolve().parent.parent / "tests/data/probability_cases.tsv")
    lines = ["kind\tat\tfreedom\tresults"]
    for kind, at, freedom, results in cases():
        assert at == float(at)
        figures = (repr(float(r)) for r in results)
        lines.append("\t".join([kind, repr(float(at)), str(freedom), " ".join(figures)]))
    target.write_text("\n".join(lines) + "\n", encoding="utf-8")


main()
