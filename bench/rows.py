"""What docs/performance.md shows: which benchmark stands in which table beside which peer, and the
goals. Benchmarks are named as their programs name them; {n} stands for a size."""
from dataclasses import dataclass


@dataclass(frozen=True)
class Row:
    name: str  # as the page has it
    ours: str
    peers: dict  # what it is -> benchmark


@dataclass(frozen=True)
class Table:
    """Of jobs at several sizes, a line for each peer; or of calls, a column for each peer."""
    program: str
    rows: list
    sizes: tuple = ()
    columns: tuple = ()
    of: str = ""  # what the sizes count


@dataclass(frozen=True)
class Goal:
    """Ours over the fastest of the peers is to be at most this, over every row that is named."""
    job: str
    beside: str
    most: float
    table: str
    rows: tuple = ()  # names of the table's rows; all of them where empty
    peers: tuple = ()  # those that count; all where empty
    sizes: tuple = ()
    over: str = ""  # a benchmark of the same program whose time is taken off: a price in nanoseconds
    why: str = ""  # where it is missed


def sized(name, ours, peer):
    return Row(name, ours + "/{n}", {what: bench + "/{n}" for what, bench in peer.items()})


def call(name, where, key, peers):
    label = f"`{name}`, {where}" if where else f"`{name}`"
    return Row(label, f"{key}/ours", {what: f"{key}/{what}" for what in peers})


OWN_TEXTS = "`vqmath63.accumulate`, a text of its own in each row"
LIBC = ("libc",)
ALL = ("libc", "boost", "gsl")
OTHERS = ("boost", "gsl")
# What the steps cost that are promised, written plainly.
PLAINLY = "the same steps, plainly"
STEPS = ("steps",)
GAMMAS = ("steps, libc", "steps, boost")

ELEMENTARY = [
    ("exp", "-20 to 20", "exp"), ("exp", "-700 to 700", "exp_far"), ("log", "0.01 to 100", "log"),
    ("log", "0.99 to 1.01", "log_beside_1"), ("log10", "0.01 to 100", "log10"),
    ("log1p", "-0.5 to 1", "log1p"), ("pow", "0.1 to 10 both", "pow"),
    ("pow", "10 to the -20 to 20", "pow_of_10"), ("sin", "-3 to 3", "sin"),
    ("sin", "to 1e9", "sin_to_1e9"), ("cos", "-3 to 3", "cos"), ("tan", "-3 to 3", "tan"),
    ("atan", "-1 to 1", "atan"), ("atan", "-20 to 20", "atan_to_20"),
    ("atan2", "-3 to 3 both", "atan2"), ("hypot", "-3 to 3 both", "hypot")]

SPECIAL = (
    [call("Gamma", *at, ALL) for at in (
        ("0.001 to 1", "Gamma(0..1)"), ("1 to 12", "Gamma(1..12)"), ("12 to 171.6", "Gamma(12..171)"),
        ("-20 to 0", "Gamma(-20..0)"))] +
    [call("LoGamma", *at, ALL) for at in (
        ("0.001 to 4", "LoGamma(0..4)"), ("4 to 12", "LoGamma(4..12)"), ("12 to 1000", "LoGamma(12..1000)"))] +
    [call("Erf", *at, ALL) for at in (
        ("-0.46 to 0.46", "Erf(-0.4..0.46)"), ("0.5 to 4", "Erf(0.50..4.00)"), ("4 to 8", "Erf(4.00..8.00)"))] +
    [call("beta", "0.25 to 80", "beta(0.25..80)", ALL + GAMMAS)] +
    [call(name, at, f"{name}(..{most})", OTHERS) for name in ("BetaI", "Gamma_P", "Gamma_CF")
     for at, most in (("A 0.05 to 2", 2), ("A 2 to 50", 50))] +
    [call("Factorial", "0 to 170", "Factorial", OTHERS),
     call("Combination", "100 to 170", "Combination", OTHERS)])

BY_STEPS = ("acos", "asin")
CLOSED = [("acos", "-1 to 1"), ("asin", "-1 to 1"), ("cosh", "-5 to 5"), ("sinh", "-5 to 5"),
          ("tanh", "-5 to 5"), ("asinh", "-5 to 5"), ("acosh", "1 to 10"), ("atanh", "-1 to 1")]
OF_CLASS = [("aLog", "-700 to 700"), ("Ln", "0.001 to 1000"), ("Log10", "0.001 to 1000"),
            ("sine", "-10 to 10"), ("cosine", "-10 to 10"), ("x_to_Power_y", "0.01 to 100, -20 to 20"),
            ("Cube_Root", "-1000 to 1000"), ("Square_Root", "0 to 1000")]

BESSEL_CASES = [
    (0, "0..2"), (0, "2..8"), (0, "8..25"), (0, "25..600"), (0, "100000000..1000000000"),
    (1, "0..2"), (1, "2..8"), (1, "8..25"), (1, "25..600"), (2, "2..20"), (10, "3..10"), (10, "10..30"),
    (10, "100..600"), (100, "11..100"), (100, "150..600"), (1000, "1000..1100"), (1000, "2000..10000"),
    (10000, "9500..9900"), (10000, "20000..50000")]


def bessel():
    for kind in "JYIK":
        for order, at in BESSEL_CASES:
            if kind in "IK" and order > 100 or kind in "IK" and at.startswith("1000000"):
                continue
            peers = ("libm", "boost", "gsl") if kind in "JY" else ("boost", "gsl")
            yield Row(f"{kind}, order {order}, {at.replace('..', ' to ').replace('00000000', 'e8')}",
                      f"{kind} ours n={order} {at}", {p: f"{kind} {p} n={order} {at}" for p in peers})


SCIPY = [("Erf", "erf"), ("Gamma", "gamma"), ("LoGamma", "gammaln"), ("Gamma_P", "gammainc"),
         ("BetaI", "betainc"), ("J0", "j0"), ("y0", "y0"), ("I0", "i0"), ("K0", "k0"), ("Jbn", "jv"),
         ("Kbn", "kn")]

OPM = "OPM's `LiveOilPvt<float>`"
TETRAHEDRA = "six tetrahedra behind a box"

LONG = (10_000, 1_000_000, 10_000_000)

TABLES = {
    "boundary": Table("boundary_bench", columns=("an empty virtual call", "new and delete", "native"), rows=[
        Row("property by the vtable", "PropertyByVtable", {"an empty virtual call": "EmptyVirtualCall"}),
        Row("`Erf` by the vtable", "ErfByVtable",
            {"an empty virtual call": "EmptyVirtualCall", "native": "ErfNative"}),
        Row("property by name", "PropertyByName", {"an empty virtual call": "EmptyVirtualCall"}),
        Row("name to id, last of 16 rows", "NameToId", {"an empty virtual call": "EmptyVirtualCall"}),
        Row("create and release an object", "CreateAndRelease", {"new and delete": "NewAndDelete"})]),
    "arrays": Table("boundary_bench", sizes=(4, 100, 1_000, 10_000), of="samples", rows=[
        sized("`Integral` by the vtable", "IntegralByVtable", {"native": "IntegralNative"}),
        sized("`Integral` by name", "IntegralByName", {"native": "IntegralNative"}),
        sized("`Integral` by name, variants", "IntegralByNameVariants",
              {"by name, Singles": "IntegralByName"}),
        sized("`Squared` by `VqCallMany`", "SquaredMany", {"native loop": "SquaredNative"})]),
    "elementary": Table("elementary_bench", columns=("libm", "without fused steps", "libm without them"), rows=[
        Row(f"`{name}`, {at}", f"{key}/ours",
            {"libm": f"{key}/libm", "without fused steps": f"{key}/portable",
             "libm without them": f"plain:{key}/libm"}) for name, at, key in ELEMENTARY]),
    "special": Table("mathlib_bench", columns=ALL + GAMMAS, rows=SPECIAL),
    "closed": Table("mathlib_bench", columns=LIBC + STEPS, rows=[
        call(name, at, name, LIBC + STEPS if name in BY_STEPS else LIBC) for name, at in CLOSED + OF_CLASS]),
    "bessel": Table("bessel_bench", columns=("libm", "boost", "gsl"), rows=list(bessel())),
    "scipy": Table("beside_scipy.py", sizes=(1_000, 10_000, 100_000, 1_000_000), of="elements", rows=[
        sized(f"`{ours}`", ours, {f"SciPy's `{theirs}`": f"scipy {theirs}"}) for ours, theirs in SCIPY]),
    "numpy": Table("beside_numpy.py", sizes=(1_000, 100_000, 1_000_000, 10_000_000), of="elements", rows=[
        sized("`SumOfX`", "SumOfX", {"NumPy": "numpy sum"}),
        sized("`BasicStatistics`", "BasicStatistics", {"NumPy": "numpy summary"}),
        sized("`Statistics`", "Statistics", {"NumPy": "numpy median and mode"}),
        sized("`RemoveNullsXYZ`", "RemoveNullsXYZ", {"NumPy": "numpy mask and take"})]),
    "statistics": Table("statistics_bench", sizes=(100, *LONG), of="samples", rows=[
        sized("`SumOfX`", "SumOfX", {"the plain loop": "PlainSum", "GSL": "GslMean"}),
        sized("`SumOfXY`", "SumOfXY", {"the plain loop": "PlainSumOfXY"}),
        sized("`BasicStatistics`", "BasicStatistics", {"the plain loop": "PlainStatistics", "GSL": "GslSummary"}),
        sized("`BasicStatisticsPairs`", "BasicStatisticsPairs", {"the plain loop": "PlainPairs"}),
        sized("`Maximum`", "Maximum", {}),
        sized("`RemoveNullsXYZ`", "RemoveNullsXYZ", {}),
        sized("`BinVector`", "BinVector", {"GSL": "GslHistogram"})]),
    "order": Table("statistics_bench", sizes=(100, 1_000, 10_000, 1_000_000), of="samples", rows=[
        sized("`Statistics`", "Statistics", {
            "`std::nth_element`, `std::sort`": "StdMedianAndMode", "GSL's sort": "GslSortedMedian"}),
        sized("`Median`", "Median", {"`std::nth_element`": "NthElementMedian"}),
        sized("`Mode`", "Mode", {"`std::sort`": "StdSortedMode"}), sized("`Quartile`", "Quartile", {})]),
    "sort": Table("sort_bench", sizes=(10, 100, 10_000, 1_000_000), of="Singles", rows=[
        Row(f"the sort companion, {order}", "sort_companion/order:%d/n:{n}" % k,
            {"`std::sort`": "std_sort/order:%d/n:{n}" % k})
        for k, order in enumerate(("random", "sorted", "reversed", "constant", "nearly sorted"))]),
    "integration": Table("integration_bench", sizes=(101, 10_001, 100_001, 1_000_001), of="points", rows=[
        sized("`Trapezoidal`", "Trapezoidal", {"the plain loop": "PlainTrapezoidal"}),
        sized("`Backward`", "Backward", {"the plain loop": "PlainBackward"}),
        sized("`Simpson`", "Simpson", {"the plain loop": "PlainSimpson"})]),
    "derivatives": Table("differentiation_bench", sizes=(1_000, 10_000, 100_000, 1_000_000), of="points", rows=[
        sized("`FirstDerivative`", "FirstDerivative", {"the plain loop": "PlainCentred"}),
        sized("`FirstDerivativeForwards`", "FirstDerivativeForwards", {"the plain loop": "PlainForwards"}),
        sized("`SecondDerivative`", "SecondDerivative", {"the plain loop": "PlainCentredSecond"})]),
    "accumulation": Table("accumulate_bench", sizes=(1_000, 10_000, 100_000, 1_000_000), of="rows", rows=[
        sized("`Accumulate`", "Accumulate", {})]),
    "wells": Table("beside_wells.py", sizes=(1, 10, 100, 1_000), of="wells", rows=[
        sized("`vqmath63.accumulate`", "frames vqmath63", {"pandas": "frames pandas"}),
        sized(OWN_TEXTS, "own texts vqmath63", {"pandas": "own texts pandas"}),
        sized("`vqhost accumulate`", "files vqhost", {
            "pandas": "files pandas", "DuckDB": "files duckdb", "Polars": "files polars"})]),
    "cells": Table("geometry_bench", sizes=(1_000, 10_000, 100_000, 1_000_000), of="points", rows=[
        sized("`Points_In_CubeIndex`, 1 % inside", "PointsOfWhichHundredthInside",
              {TETRAHEDRA: "TetrahedraHundredthInside"}),
        sized("`Points_In_CubeIndex`, all inside", "PointsAllInside",
              {TETRAHEDRA: "TetrahedraAllInside", PLAINLY: "PlainPointsAllInside"}),
        sized("`Points_In_CubeIndex`, field, 1 % inside", "FieldPointsOfWhichHundredthInside", {}),
        sized("`Points_In_CubeIndex`, field, all inside", "FieldPointsAllInside",
              {PLAINLY: "PlainFieldPointsAllInside"})]),
    "polygons": Table("geometry_bench", sizes=(100, 1_000, 10_000, 100_000), of="vertices", rows=[
        sized("`Point_In_Polygon`, circle", "PointInCircle", {"GEOS": "GeosPointInCircle"}),
        sized("`Point_In_Polygon`, rough ring", "PointInRoughRing", {"GEOS": "GeosPointInRoughRing"}),
        sized("`PointInPolygon`, the same steps one by one", "StepByStepPointInPolygon", {})]),
    "live_oil": Table("petroleum_bench", sizes=(5, 10, 20, 40), of="curves of as many points", rows=[
        sized("`GetVolumeCorrectionLive`, in no order", "LiveUndersaturated",
              {OPM: "OpmUndersaturated", PLAINLY: "PlainUndersaturated"}),
        sized("`GetVolumeCorrectionLive`, pressure falling", "LiveUndersaturatedPath",
              {OPM: "OpmUndersaturatedPath", PLAINLY: "PlainUndersaturatedPath"}),
        sized("`GetVolumeCorrectionLive`, saturated", "LiveSaturated", {PLAINLY: "PlainSaturated"})]),
    "systems": Table("regression_bench", sizes=(2, 3, 4, 8, 16, 32, 64), of="unknowns", rows=[
        sized("`MatrixEquation`", "MatrixEquation", {
            "Eigen's `partialPivLu`": "EigenDynamic", PLAINLY: "PlainSteps"})]),
}

SUMS = ("`SumOfX`", "`SumOfXY`", "`BasicStatistics`", "`BasicStatisticsPairs`")
VARIANTS = "`Integral` by name, variants"
BETA = "`beta`, 0.25 to 80"
ALL_INSIDE = "`Points_In_CubeIndex`, all inside"
CLOSED_FORMS = tuple(f"`{name}`, {at}" for name, at in CLOSED if name not in ("sinh", "tanh"))
ARCS = CLOSED_FORMS[:len(BY_STEPS)]
NO_ORDER = "`GetVolumeCorrectionLive`, in no order"

GOALS = [
    Goal("elementary functions, a call", "C library", 1.2, "elementary", peers=("libm",),
         why="a tangent is a quotient of sums in two Doubles, which round correctly"),
    Goal("closed forms, a call", "C library", 1.5, "closed", CLOSED_FORMS, LIBC,
         why="an arc sine is the arc tangent of a root and a quotient, each step rounded as promised"),
    Goal("the same, `acos` and `asin`", PLAINLY, 1.1, "closed", ARCS, STEPS,
         why="our arc tangent rounds correctly by a quotient in two Doubles, and waits for a root and a quotient before it"),
    Goal("gamma family and error function, a call", "C library, Boost.Math, GSL", 1.0, "special", peers=ALL,
         why="`beta` is a quotient of three gamma functions, side by side, whose exponentials and logarithms round correctly"),
    Goal("the same, `beta`", PLAINLY, 1.1, "special", (BETA,), GAMMAS),
    Goal("Bessel functions, a call", "C library, Boost.Math, GSL", 1.0, "bessel", why="where GSL is quicker it gives less: see below"),
    Goal("special functions over a million, from Python", "SciPy", 0.7, "scipy", sizes=(1_000_000,)),
    Goal("sums and summaries, 1e4 to 1e7", "bare dependent additions", 1.05, "statistics", SUMS,
         ("the plain loop",), LONG),
    Goal("the same", "GSL", 0.5, "statistics", SUMS, ("GSL",), LONG),
    Goal("the same at 100 elements", "the plain loop", 1.1, "statistics", SUMS, ("the plain loop",), (100,),
         why="the fixed cost of a call, less than 10 ns"),
    Goal("`Statistics` of 1e6, median and mode", "`std::nth_element` and a sort", 0.5, "order",
         ("`Statistics`",), ("`std::nth_element`, `std::sort`",), (1_000_000,)),
    Goal("the same", "GSL's sort", 0.5, "order", ("`Statistics`",), ("GSL's sort",), (1_000_000,)),
    Goal("the same, from Python", "NumPy", 0.5, "numpy", ("`Statistics`",), sizes=(1_000_000,)),
    Goal("`Points_In_CubeIndex` 1e6, 1 % inside", TETRAHEDRA, 0.5, "cells",
         ("`Points_In_CubeIndex`, 1 % inside",), sizes=(1_000_000,)),
    Goal("`Points_In_CubeIndex` 1e6, all inside", TETRAHEDRA, 1.0, "cells",
         (ALL_INSIDE,), (TETRAHEDRA,), (1_000_000,),
         why="a tolerance, three projections and roundings to Single in between; wider registers, a triangle at a time, were slower"),
    Goal("the same, all inside", PLAINLY, 1.1, "cells", (ALL_INSIDE,), (PLAINLY,), (1_000_000,)),
    Goal("`Point_In_Polygon`, 1e5 vertices", "GEOS", 0.1, "polygons",
         ("`Point_In_Polygon`, circle", "`Point_In_Polygon`, rough ring"), sizes=(100_000,)),
    Goal("daily to monthly, 30 years of 1000 wells, in memory", "pandas", 0.05, "wells",
         ("`vqmath63.accumulate`",), sizes=(1_000,),
         why="two thirds are the component's own work on 33 million numbers, and their rounding to Single"),
    Goal("the same, each row with a text of its own", "pandas", 0.05, "wells", (OWN_TEXTS,), sizes=(1_000,),
         why="more than half of the time is one look at each of 11 million texts, which lie far apart in memory"),
    Goal("the same, whole process from CSV to CSV", "DuckDB, Polars", 0.5, "wells", ("`vqhost accumulate`",),
         ("DuckDB", "Polars"), (1_000,)),
    Goal("live-oil factor, points in no order", "OPM", 1.0, "live_oil", (NO_ORDER,), (OPM,),
         why="a saturation pressure, the choice of curves and looks at bounds beside the two searches; searches without branches were no faster"),
    Goal("the same, in no order", PLAINLY, 1.1, "live_oil", (NO_ORDER,), (PLAINLY,),
         why="the fixed cost of a call, on tables of a few points"),
    Goal("`MatrixEquation`, order 2 to 64", "Eigen", 1.0, "systems", peers=("Eigen's `partialPivLu`",),
         why="each step is rounded by way of a Double, half as many of which go into a register"),
    Goal("the same, order 16 to 64", PLAINLY, 1.1, "systems", peers=(PLAINLY,), sizes=(16, 32, 64), why="the look for overflow at order 16, and its groups of eight columns"),
    Goal("derivatives, 1e6 points", "the plain loop", 1.1, "derivatives", sizes=(1_000_000,)),
    Goal("`RemoveNullsXYZ`, 1e7 rows", "NumPy", 0.5, "numpy", ("`RemoveNullsXYZ`",), sizes=(10_000_000,)),
    Goal("a call through the vtable", "an empty call: ns over it", 5.0, "boundary", ("property by the vtable",),
         over="EmptyVirtualCall"),
    Goal("`Erf` through the vtable", "native: ns over it", 5.0, "boundary", ("`Erf` by the vtable",),
         over="ErfNative", why="to look at the host's floating-point state"),
    Goal("a call by name", "an empty call: ns over it", 30.0, "boundary", ("property by name",),
         over="EmptyVirtualCall"),
    Goal("arrays of variants, 10 000 samples", "the call on Singles", 6.0, "arrays", (VARIANTS,), sizes=(10_000,)),
    Goal("create and release", "new and delete", 3.0, "boundary", ("create and release an object",),
         why="two locked counts of what lives"),
]
