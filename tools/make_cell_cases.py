#!/usr/bin/env python3
"""Writes tests/data/cell_cases.tsv: points and segments against a zoo of grid cells.

The answers come from a model of the ray test, one rounding to Single for each stored value
(struct's "f"), and, where a point is well away from every face, edge and diagonal, from exact
rational arithmetic as well: a vertical ray and the triangles of the same split.

Rows, fields separated by tabs, coordinates by blanks:
  cell     name  corners (top 1 to 4, bottom 1 to 4)
  points   x y z ...    for each whether it is inside (0, 1), and exactly inside (- when too near to
                        something to say)
  segment  x y z x y z  crossing points, in the order of the planes
Points and segments belong to the cell above them.

usage: make_cell_cases.py [OUTPUT]
"""
import pathlib
import random
import struct
import sys
from fractions import Fraction

TOLERANCE = struct.unpack("f", struct.pack("f", 1e-6))[0]


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]  # OverflowError where it does not fit


# The ray test, step by step. Python's floats are Doubles.

def tolerant(result, a, b):
    larger = max(abs(a), abs(b))
    if larger != 0 and single(abs(result / larger)) < TOLERANCE:
        return 0.0
    return result


def minus(a, b):
    return tolerant(single(a - b), a, b)


def plus(a, b):
    return tolerant(single(a + b), a, b)


def point_in_polygon(p, polygon):
    first, last = polygon[0], polygon[-1]
    ring = list(polygon)
    if not (minus(first[0], last[0]) == 0 and minus(first[1], last[1]) == 0):
        ring.append(first)
    inside = False
    for (xa, ya), (xb, yb) in zip(ring, ring[1:]):
        dy = minus(yb, ya)
        if dy == 0:
            continue
        dx, ty, tx = minus(xb, xa), minus(p[1], ya), minus(p[0], xa)
        u = single(dx * ty / dy)
        if minus(tx, u) < 0 and (p[1] <= ya) != (p[1] <= yb):
            inside = not inside
    return inside


def in_range(a, v, b):
    return a <= v <= b or b <= v <= a


def point_on_line(p, a, b):
    dx = minus(a[0], b[0])
    m = single(minus(a[1], b[1]) / dx) if dx != 0 else 0.0
    c = minus(a[1], single(m * a[0]))
    if m == 0 and minus(a[1], b[1]) != 0:
        p, a, b = p[::-1], a[::-1], b[::-1]
        dx = minus(a[0], b[0])
        m = single(minus(a[1], b[1]) / dx) if dx > 0 else 0.0
        c = minus(a[1], single(m * a[0]))
    if minus(p[1], single(p[0] * m + c)) != 0:
        return False
    return in_range(a[1], p[1], b[1]) and in_range(a[0], p[0], b[0])


def point_on_polygon(p, polygon):
    if point_in_polygon(p, polygon):
        return True
    edges = list(zip(polygon, polygon[1:])) + [(polygon[0], polygon[-1])]
    return any(point_on_line(p, a, b) for a, b in edges)


def from_to(a, b):
    return tuple(minus(q, p) for p, q in zip(a, b))


def cross(u, v):
    return tuple(single(u[i] * v[j] - u[j] * v[i]) for i, j in ((1, 2), (2, 0), (0, 1)))


def dot(a, b):
    return single((a[1] * b[1] + a[0] * b[0]) + a[2] * b[2])


def crossing_of(p, q, plane):
    """The crossing of the segment p, q with the triangle, if it counts."""
    normal = cross(from_to(plane[0], plane[1]), from_to(plane[0], plane[2]))
    w, d = from_to(p, plane[0]), from_to(p, q)
    denominator = dot(d, normal)
    if denominator == 0:
        return None
    t = single(dot(w, normal) / denominator)
    c = tuple(plus(a, single(b * t)) for a, b in zip(p, d))
    if not all(in_range(a, v, b) for a, v, b in zip(p, c, q)):
        return None
    for i, j in ((0, 1), (0, 2), (2, 1)):
        if not point_on_polygon((c[i], c[j]), [(v[i], v[j]) for v in plane]):
            return None
    return c


def planes_of(top, bottom):
    sides = [(bottom[i], top[i], top[(i + 1) % 4], bottom[(i + 1) % 4]) for i in range(4)]
    return [t for a, b, c, d in [top, bottom, *sides] for t in ((a, b, c), (c, d, a))]


def is_inside(p, planes):
    end = (p[0], p[1], single(max(v[2] for plane in planes for v in plane) + 1000))
    return sum(crossing_of(p, end, plane) is not None for plane in planes) % 2 == 1


# Exact answers.

def side(a, b, p):
    return (b[0] - a[0]) * (p[1] - a[1]) - (b[1] - a[1]) * (p[0] - a[0])


def exactly_inside(p, planes):
    """None when the ray comes near an edge, or a crossing near the point or the exact ranges."""
    p = [Fraction(v) for v in p]
    inside = False
    for plane in planes:
        plane = [[Fraction(v) for v in vertex] for vertex in plane]
        # What the tolerance can move in each direction, several times over.
        near = [3 * Fraction(1, 10**6) * max(abs(v[k]) for v in plane) for k in range(3)]
        a, b, c = plane
        sides = [side(a, b, p), side(b, c, p), side(c, a, p)]
        for (e, f), s in zip(((a, b), (b, c), (c, a)), sides):
            reach = sum(abs(f[k] - e[k]) * near[1 - k] for k in (0, 1))
            if all(min(e[k], f[k]) - near[k] <= p[k] <= max(e[k], f[k]) + near[k] for k in (0, 1)):
                if abs(s) <= reach:
                    return None
        if not (all(s > 0 for s in sides) or all(s < 0 for s in sides)):
            continue
        area = sum(sides)
        z = (sides[1] * a[2] + sides[2] * b[2] + sides[0] * c[2]) / area
        if abs(z - p[2]) <= near[2] + Fraction(1, 100):
            return None
        if z > p[2]:
            low, high = min(v[2] for v in plane), max(v[2] for v in plane)
            # A level face is met only by the luck of the rounding.
            if z - low <= Fraction(1, 1000) or high - z <= Fraction(1, 1000):
                return None
            inside = not inside
    return inside


# The zoo.

def zoo():
    base = [(0, 0), (50, 0), (50, 40), (0, 40)]
    top = [(x, y, 8) for x, y in base]
    bottom = [(x, y, 0) for x, y in base]
    tilted = [(0, 0, 8), (50, 0, 10), (50, 40, 13), (0, 40, 10)]
    return {
        "box": (top, bottom),
        "sheared": ([(x + 9, y + 8, z) for x, y, z in tilted], bottom),
        "faulted": ([(0, 0, 9), (50, 1, 15), (50, 41, 16), (0, 40, 8)],
                    [(0, 0, 1), (50, 1, 7), (50, 41, 9), (0, 40, 2)]),
        "collapsed": ([(0, 0, 0), (50, 0, 9), (50, 40, 12), (0, 40, 0)],
                      [(0, 0, 0), (50, 0, 1), (50, 40, -1), (0, 40, 0)]),
        "twisted": ([(5, -6, 8), (56, 5, 14), (45, 46, 7), (-6, 35, 13)],
                    [(0, 0, 0), (50, 0, 2), (50, 40, -1), (0, 40, 1)]),
        "concave": ([(0, 0, 9), (50, 3, 11), (20, 15, 10), (3, 40, 8)],
                    [(0, 0, 0), (50, 3, 1), (20, 15, 2), (3, 40, 0)]),
        "pinched": (bottom, bottom),
    }


FIELD = (490000, 6700000, 2500)


def main():
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else (
        pathlib.Path(__file__).resolve().parent.parent / "tests/data/cell_cases.tsv")
    rng = random.Random(63)
    lines = []

    def text(*points):
        return " ".join(f"{v:.9g}" for point in points for v in point)

    for name, shape in zoo().items():
        middle = tuple(sum(v[k] for face in shape for v in face) / 8 for k in range(3))
        diagonal = tuple((shape[0][0][k] + shape[0][2][k]) / 2 for k in range(3))
        points = [middle, diagonal, shape[0][1], tuple((a + b) / 2 for a, b in zip(*shape[1][1:3]))]
        for _ in range(2):
            points.append((rng.uniform(8, 42), rng.uniform(8, 32), rng.uniform(2, 7)))
        for _ in range(2):
            points.append((rng.uniform(-20, 70), rng.uniform(-20, 60), rng.uniform(-8, 18)))
        segments = [((14.0, 22.0, 40.0), (31.0, 60.0, -3.0)),
                    (diagonal, (diagonal[0], diagonal[1], -30.0))]
        for place, at, size in (("", (0, 0, 0), 1), (" at field coordinates", FIELD, 1),
                                (" of twenty times the width at field coordinates", FIELD, 20)):
            def moved(p, at=at, size=size):
                return tuple(single(a * k + b) for a, b, k in zip(p, at, (size, size, 1)))
            top, bottom = ([moved(p) for p in face] for face in shape)
            planes = planes_of(top, bottom)
            lines.append(f"cell\t{name}{place}\t{text(*top, *bottom)}")
            placed = [moved(p) for p in points]
            exact = [exactly_inside(p, planes) for p in placed]
            lines.append(f"points\t{text(*placed)}\t"
                         + "".join(f"{is_inside(p, planes):d}" for p in placed) + "\t"
                         + "".join("-" if e is None else str(int(e)) for e in exact))
            for p, q in segments:
                p, q = moved(p), moved(q)
                met = [c for c in (crossing_of(p, q, plane) for plane in planes) if c]
                lines.append(f"segment\t{text(p, q)}\t{text(*met)}")
    target.write_text("\n".join(lines) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
