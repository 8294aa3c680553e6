"""Statistics, fits, derivatives, volume factors and places in cells over frames."""

from __future__ import annotations

import datetime
from typing import Any, NamedTuple

import numpy as np

from . import _frames
from ._arrays import converted
from ._names import listed, nearest
from ._values import kind_of

_SPREADS = {"std": "xSigmaN1", "std_n": "xSigmaN"}
_MEASURES = {"mean": "xBar", **_SPREADS, "min": "xMin", "max": "xMax", "median": "xMedian",
             "mode": "xMode", "sum": "SigmaX", "sum_of_squares": "SigmaX2"}


@_frames.spelt
def statistics(frame: Any) -> Any:
    """A frame of measures, a row each, of the columns of a frame, by ztStatistics: count, mean,
    standard deviations with divisors n - 1 and n, extremes, quartiles, median, mode and sums.
    Missing values (NaN) are left out. The sums are Singles, as the component forms them; the
    deviations are formed with the mean taken off first."""
    from . import Statistics
    pd = _frames.pandas()
    frame = _frames.frame_of(frame)
    made = {}
    for name in _frames.number_columns(frame, set()):
        wide = _frames.numbers(frame[name], name)
        wide = wide[~np.isnan(wide)]
        values = _frames.narrowed(wide, name)
        measures = {"count": float(len(values))}
        if len(values):
            summary = Statistics()
            summary.Statistics(values)
            measures |= {word: getattr(summary, get) for word, get in _MEASURES.items()}
            summary.Statistics(_frames.narrowed(wide - wide.mean(), name))
            measures |= {word: getattr(summary, get) for word, get in _SPREADS.items()}
            measures |= {"quartile_1": summary.Quartile(values, 1),
                         "quartile_3": summary.Quartile(values, 3)}
        made[name] = measures
    order = ["count", *_MEASURES, "quartile_1", "quartile_3"]
    return pd.DataFrame(made, index=order, columns=frame.columns)


class Fit(NamedTuple):
    """A line through samples: f(y) = A + B g(x), where the type tells which of the two is the
    logarithm, with the correlation coefficient R. Where x was dates, it counts in days from
    `origin`."""

    A: float
    B: float
    R: float
    type: str
    origin: Any = None

    def predict(self, x: Any) -> Any:
        """y of the line at x: numbers, or dates where the line is over dates, the periods of
        `accumulate` by their middles."""
        log_x, log_y = _FITS[self.type]
        places = _places(x, self.origin)
        if log_x and not (places > 0).all():
            raise ValueError(f"x has {places[~(places > 0)][0]}, which has no logarithm")
        line = self.A + self.B * (np.log(places) if log_x else places)
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
    from the beginning of the first; `x=None` takes the index. The component, whose sums are
    Singles, fits the samples with their means taken off."""
    from . import Regression
    if not isinstance(type, str) or type not in _FITS:
        raise ValueError(f"{type!r} is no type of fit{nearest(str(type), _FITS)}: {listed(_FITS)}")
    frame = _frames.frame_of(frame)
    log_x, log_y = _FITS[type]
    xs, origin = _abscissae(frame, x)
    ys = _frames.numbers(_frames.column(frame, y), y)
    there = ~(np.isnan(xs) | np.isnan(ys))
    sides = []
    for values, name, logarithm in ((xs[there], x, log_x), (ys[there], y, log_y)):
        if np.isinf(values).any():
            raise ValueError(f"{_frames.named(name)} has an infinite value")
        if logarithm and not (values > 0).all():
            raise ValueError(f"{_frames.named(name)} has {values[~(values > 0)][0]}, which has no "
                             "logarithm; leave such rows out")
        wide = np.log(values) if logarithm else values
        _frames.narrowed(wide, name)
        mean = wide.mean() if len(wide) else 0.0
        sides.append((mean, _frames.narrowed(wide - mean, name)))
    (x_mean, from_x), (y_mean, from_y) = sides
    if len(np.unique(from_x)) < 2:
        raise ValueError("a line wants two different abscissae")
    line = Regression(RegressionType="Linear")
    line.Regression(from_x, from_y, None)
    return Fit(float(y_mean + (line.A - line.B * x_mean)), line.B, line.R, type, origin)


def _abscissae(frame: Any, x: Any) -> tuple[Any, Any]:
    return _days(frame.index.to_series() if x is None else _frames.column(frame, x), x, None)


def _days(series: Any, name: Any, origin: Any) -> tuple[Any, Any]:
    """Numbers as they are; or dates as days from the origin on, else from the first, and intervals
    of dates by their middles and from the beginning of the first, with that origin."""
    pd = _frames.pandas()
    if name is None and isinstance(series.index, pd.MultiIndex):
        raise TypeError("the index has levels; .loc[...] takes the rows of one well")
    if isinstance(series.dtype, pd.IntervalDtype):
        intervals = series.array
        if origin is None:
            origin = intervals.left.min()
        series = pd.Series(intervals.mid)
    if not pd.api.types.is_datetime64_any_dtype(series.dtype):
        return _frames.numbers(series, name), None
    _frames.refuse_zone(series.dt, _frames.named(name))
    if origin is None:
        origin = series.min()
    return ((series - origin) / pd.Timedelta(days=1)).to_numpy(dtype="f8"), origin


def _places(x: Any, origin: Any) -> Any:
    """Places on a line as Doubles, dates as days from the origin."""
    pd = _frames.pandas()
    single = isinstance(x, (datetime.date, np.datetime64))
    if single:
        x = np.asarray(_frames.moment(x, "x"))
    if isinstance(x, np.ndarray) and x.dtype.kind == "M":
        series = pd.Series(x.ravel())
    elif isinstance(x, (pd.Series, pd.Index)):
        series = pd.Series(x)
    else:
        return _doubles(x, "x")
    days, counted_from = _days(series, "x", origin)
    if origin is None and counted_from is not None:
        raise TypeError("x has dates; the line is over numbers")
    return days[0] if single else days.reshape(np.shape(x))


@_frames.spelt
def derivative(series: Any, order: int = 1) -> Any:
    """The derivative of a series over its index, by ztDifferentiate, as a series; dates count in
    days. `order` is 1 or 2. Missing values are refused: a derivative looks at neighbours."""
    from . import Differentiate
    pd = _frames.pandas()
    if not isinstance(series, pd.Series):
        raise TypeError(f"a derivative wants a Series, not {kind_of(series)}")
    if not isinstance(order, int) or order not in (1, 2):
        raise ValueError(f"order has to be 1 or 2, not {order!r}")
    frame = _frames.frame_of(series)
    if isinstance(frame.index, pd.IntervalIndex):
        raise TypeError("the index has intervals; a derivative wants places, such as their ends: "
                        "series.set_axis(series.index.right)")
    (xs, _), ys = _abscissae(frame, None), _frames.numbers(series, series.name)
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
    if not isinstance(type, str) or type not in columns:
        raise ValueError(f"{type!r} is no type of fluid{nearest(str(type), columns)}: "
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
    pressures = points
    if isinstance(points, pd.DataFrame):
        if points.shape[1] != 1:
            raise ValueError(f"points have one column, of pressures, not {points.shape[1]}")
        pressures = points.iloc[:, 0]
    given = np.atleast_1d(_doubles(pressures, "points"))
    if type == "dead":
        if not (np.diff(first) > 0).all():
            raise ValueError("the pressures of the table are not in ascending order")
        made = fluid.GetVolumeCorrectionDead(first, second, len(first), given)
    else:
        made = fluid.GetWaterVolumeCorrection(first, second, third[0], len(first), given)
    return _answer(made, pressures.index if isinstance(pressures, pd.Series) else None)


def _doubles(value: Any, what: str) -> Any:
    """An array of Doubles of any array-like of numbers; a missing value is NaN."""
    pd = _frames.pandas()
    if isinstance(value, pd.DataFrame):
        return np.column_stack([_frames.numbers(value[name], name)
                                for name in _frames.frame_of(value, what).columns])
    try:
        return converted(value, "Double", what)
    except TypeError as error:
        raise TypeError(f"{what}: {error}") from None


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
    if polygon and len(corners) < 3:
        raise ValueError(f"a polygon has three corners or more, not {len(corners)}")
    x, y, *z = (_frames.singles(points.iloc[:, k]) for k in range(wanted))
    if np.isnan(corners).any():
        raise ValueError("the cell has missing coordinates")
    if polygon:
        found = MathLib().Point_In_Polygon(x, y, corners[:, 0], corners[:, 1])
    else:
        found = MathLib().Points_In_Cube(x, y, z[0], corners[0].T, corners[1].T).qInCube
    missing = np.isnan(np.column_stack([x, y, *z])).any(axis=1)
    return pd.Series(found & ~missing, index=points.index, name="inside")
