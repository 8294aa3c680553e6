"""Statistics, fits, derivatives, volume factors and places in cells over frames."""

from __future__ import annotations

from typing import Any, NamedTuple

import numpy as np

from . import _frames
from ._names import listed, nearest

_MEASURES = {"mean": "xBar", "std": "xSigmaN1", "std_n": "xSigmaN", "min": "xMin", "max": "xMax",
             "median": "xMedian", "mode": "xMode", "sum": "SigmaX", "sum_of_squares": "SigmaX2"}


@_frames.spelt
def statistics(frame: Any) -> Any:
    """A frame of measures, a row each, of the columns of a frame, by ztStatistics: count, mean,
    standard deviations with divisors n - 1 and n, extremes, quartiles, median, mode and sums.
    Missing values (NaN) are left out. The sums are Singles, as the component forms them: a spread
    that is a small part of its mean wants the mean taken off first."""
    from . import Statistics
    pd = _frames.pandas()
    frame = _frames.frame_of(frame)
    made = {}
    for name in frame.columns:
        values = _frames.singles(frame[name])
        values = values[~np.isnan(values)]
        measures = {"count": float(len(values))}
        if len(values):
            summary = Statistics()
            summary.Statistics(values)
            measures |= {word: getattr(summary, get) for word, get in _MEASURES.items()}
            measures |= {"quartile_1": summary.Quartile(values, 1),
                         "quartile_3": summary.Quartile(values, 3)}
        made[name] = measures
    order = ["count", *_MEASURES, "quartile_1", "quartile_3"]
    return pd.DataFrame(made, index=order, columns=frame.columns)


class Fit(NamedTuple):
    """A line through samples: f(y) = A + B g(x), where the type tells which of the two is the
    logarithm, with the correlation coefficient R."""

    A: float
    B: float
    R: float
    type: str

    def predict(self, x: Any) -> Any:
        """y of the line at x."""
        log_x, log_y = _FITS[self.type]
        line = self.A + self.B * (np.log(x) if log_x else np.asarray(x, dtype="f8"))
        return np.exp(line) if log_y else line


# Whether x and y are taken by their logarithms.
_FITS = {"linear": (False, False), "logarithmic": (True, False), "exponential": (False, True),
         "power": (True, True)}


@_frames.spelt
def fit(frame: Any, x: Any, y: Any, type: str = "linear") -> Fit:
    """The straight line of y over x, two columns, by ztRegression: "linear" y = A + B x,
    "logarithmic" y = A + B ln x, "exponential" ln y = A + B x, "power" ln y = A + B ln x. Rows with
    a missing value are left out; where a logarithm is taken, numbers have to be above 0. Dates as x
    count in days from the first one on, and the periods of `accumulate` by their middles, in days
    from the beginning of the first; `x=None` takes the index."""
    from . import Regression
    if type not in _FITS:
        raise ValueError(f"'{type}' is no type of fit{nearest(str(type), _FITS)}: {listed(_FITS)}")
    frame = _frames.frame_of(frame)
    log_x, log_y = _FITS[type]
    xs = _abscissae(frame, x)
    ys = _frames.numbers(_frames.column(frame, y), y)
    there = ~(np.isnan(xs) | np.isnan(ys))
    xs, ys = xs[there], ys[there]
    for values, name, logarithm in ((xs, x, log_x), (ys, y, log_y)):
        if logarithm and not (values > 0).all():
            where = "the index" if name is None else f"column {name!r}"
            raise ValueError(f"{where} has {values[~(values > 0)][0]}, which has no logarithm; "
                             "leave such rows out")
    if len(np.unique(xs.astype("f4"))) < 2:
        raise ValueError("a line wants two different abscissae")
    line = Regression(RegressionType="Exponential" if log_y else "Linear")
    line.Regression(np.log(xs).astype("f4") if log_x else xs.astype("f4"), ys.astype("f4"), None)
    return Fit(line.A, line.B, line.R, type)


def _abscissae(frame: Any, x: Any) -> Any:
    """Numbers as they are, dates as days from the first on, and intervals of dates by their middles
    as days from the beginning of the first."""
    pd = _frames.pandas()
    series = frame.index.to_series() if x is None else _frames.column(frame, x)
    first = None
    if isinstance(series.dtype, pd.IntervalDtype):
        intervals = series.array
        series, first = pd.Series(intervals.mid), intervals.left.min()
    if not pd.api.types.is_datetime64_any_dtype(series.dtype):
        return _frames.numbers(series, x)
    dates = series.dt.tz_localize(None) if series.dt.tz is not None else series
    since = dates - (dates.min() if first is None else first)
    return (since / pd.Timedelta(days=1)).to_numpy(dtype="f8")


@_frames.spelt
def derivative(series: Any, order: int = 1) -> Any:
    """The derivative of a series over its index, by ztDifferentiate, as a series; dates count in
    days. `order` is 1 or 2. Missing values are refused: a derivative looks at neighbours."""
    from . import Differentiate
    pd = _frames.pandas()
    if not isinstance(series, pd.Series):
        raise TypeError(f"a derivative wants a Series, not a {type(series).__qualname__}")
    if order not in (1, 2):
        raise ValueError(f"order has to be 1 or 2, not {order!r}")
    frame = _frames.frame_of(series)
    if isinstance(frame.index, pd.IntervalIndex):
        raise TypeError("the index has intervals; a derivative wants places, such as their ends: "
                        "series.set_axis(series.index.right)")
    xs, ys = _abscissae(frame, None), _frames.numbers(series, series.name)
    if len(xs) <= order:
        raise ValueError(f"a derivative of order {order} wants {order + 1} samples, not {len(xs)}")
    if np.isnan(xs).any() or np.isnan(ys).any():
        raise ValueError("the series has missing values; .dropna() leaves them out")
    if not (np.diff(xs) > 0).all():
        raise ValueError("the index is not in ascending order, or has a value twice")
    curve = Differentiate()
    if order == 1:
        slope = curve.FirstDerivative(xs, ys, np.zeros(len(xs))).dydx
    else:
        slope = curve.SecondDerivative(xs, ys).d2ydx2
    return pd.Series(slope, index=series.index, name=series.name)


@_frames.spelt
def volume_factor(table: Any, points: Any, type: str = "dead") -> Any:
    """Volume factors at points, by ztPetroleum, from a table whose columns count by their order:

    "dead": pressure and factor, pressures ascending; points are pressures.
    "water": reference pressure, factor there and compressibility, one row; points are pressures.
    "live": dissolved gas (or another primary value), pressure and factor, curve after curve, the
    saturation point first; points are a frame of primary value and pressure.

    Pressures may be an array or a series, which then gives its index to the result."""
    from . import Petroleum
    pd = _frames.pandas()
    columns = {"dead": 2, "water": 3, "live": 3}
    if type not in columns:
        raise ValueError(f"'{type}' is no type of fluid{nearest(str(type), columns)}: "
                         f"{listed(columns)}")
    table = _frames.frame_of(table, "the table")
    if table.shape[1] < columns[type]:
        raise ValueError(f"a table of {type} fluid has {columns[type]} columns, not "
                         f"{table.shape[1]}")
    first, second, *third = (_frames.singles(table.iloc[:, k]) for k in range(columns[type]))
    if any(np.isnan(c).any() for c in (first, second, *third)):
        raise ValueError("the table has missing values")
    fluid = Petroleum()
    if type == "live":
        places = _frames.frame_of(points, "points")
        if places.shape[1] < 2:
            raise ValueError("points in live oil have a primary value and a pressure")
        starts = np.flatnonzero(np.r_[True, first[1:] != first[:-1]])
        if not (np.diff(first[starts]) > 0).all():
            raise ValueError("the curves of the table are not in ascending order")
        made = fluid.GetVolumeCorrectionLive(
            first[starts], starts + 1, len(starts), second, third[0], len(second),
            _frames.singles(places.iloc[:, 0]), _frames.singles(places.iloc[:, 1]), 0.0)
        return _answer(made, places.index)
    pressures = points.iloc[:, 0] if isinstance(points, pd.DataFrame) else points
    given = np.atleast_1d(_doubles(pressures, "points"))
    if type == "dead":
        if not (np.diff(first) > 0).all():
            raise ValueError("the pressures of the table are not in ascending order")
        made = fluid.GetVolumeCorrectionDead(first, second, len(first), given)
    else:
        made = fluid.GetWaterVolumeCorrection(first, second, third[0], len(first), given)
    return _answer(made, pressures.index if isinstance(pressures, pd.Series) else None)


def _doubles(value: Any, what: str) -> Any:
    """An array of Doubles of any array-like."""
    try:
        return np.asarray(value, dtype="f8")
    except (TypeError, ValueError):
        have = "have" if what == "points" else "has"
        raise TypeError(f"{what} {have} to be numbers, in rows of one length") from None


def _answer(made: Any, index: Any) -> Any:
    factor = np.where(made.qOK, made.dB, np.float32(np.nan))
    return factor if index is None else _frames.pandas().Series(factor, index=index, name="factor")


@_frames.spelt
def inside(points: Any, cell: Any) -> Any:
    """Which points are inside, as a series of truths, by ztMathLib.

    `cell` is a frame of two columns, the corners of a polygon, with points as a frame of x and y;
    or an array of shape (2, 4, 3), the four corners of a grid cell's top and those of its bottom,
    each as x, y, z, with points as a frame of x, y and z. A point with a missing coordinate is
    outside."""
    from . import MathLib
    pd = _frames.pandas()
    points = _frames.frame_of(points, "points")
    corners = _doubles(cell, "the cell")
    shape = corners.shape
    polygon = len(shape) == 2 and shape[1] == 2
    if not polygon and shape != (2, 4, 3):
        raise ValueError("a cell has the shape (2, 4, 3), a polygon two columns; this has the "
                         f"shape {shape}")
    wanted = 2 if polygon else 3
    if points.shape[1] < wanted:
        raise ValueError(f"points have {wanted} coordinates, not {points.shape[1]}")
    x, y, *z = (_frames.singles(points.iloc[:, k]) for k in range(wanted))
    if np.isnan(corners).any():
        raise ValueError("the cell has missing coordinates")
    if polygon:
        found = MathLib().Point_In_Polygon(x, y, corners[:, 0], corners[:, 1])
    else:
        found = MathLib().Points_In_Cube(x, y, z[0], corners[0].T, corners[1].T).qInCube
    missing = np.isnan(np.column_stack([x, y, *z])).any(axis=1)
    return pd.Series(found & ~missing, index=points.index, name="inside")
