"""What the functions over frames share: columns and dates looked at before anything is called."""

from __future__ import annotations

from typing import Any

import numpy as np

from ._names import listed, nearest


def pandas() -> Any:
    try:
        import pandas as pd
    except ImportError:
        raise ImportError("functions over frames need pandas, which is not installed") from None
    return pd


def frame_of(frame: Any, what: str = "frame") -> Any:
    """The frame itself, or that of a series, if its columns can be told apart."""
    pd = pandas()
    if isinstance(frame, pd.Series):
        frame = frame.to_frame(frame.name if frame.name is not None else "value")
    if not isinstance(frame, pd.DataFrame):
        raise TypeError(f"{what} has to be a DataFrame, not a {type(frame).__qualname__}")
    if not frame.columns.is_unique:
        doubled = frame.columns[frame.columns.duplicated()].unique()
        raise ValueError(f"{what} has columns of one name: {listed(map(repr, doubled))}")
    if len(frame) == 0:
        raise ValueError(f"{what} has no rows")
    return frame


def column(frame: Any, name: Any) -> Any:
    if name not in frame.columns:
        raise KeyError(f"there is no column {name!r}{nearest(str(name), map(str, frame.columns))}")
    return frame[name]


def numbers(series: Any, name: Any = None) -> Any:
    """A column as Doubles, missing values as NaN."""
    name = series.name if name is None else name
    pd = pandas()
    if pd.api.types.is_bool_dtype(series.dtype) or not pd.api.types.is_numeric_dtype(series.dtype) \
            or pd.api.types.is_complex_dtype(series.dtype):
        raise TypeError(f"column {name!r} has elements of type {series.dtype}, not numbers")
    return series.to_numpy(dtype="f8", na_value=np.nan)


def singles(series: Any, name: Any = None) -> Any:
    """The same as Singles, for which the numbers must not be too large."""
    wide = numbers(series, name)
    with np.errstate(over="ignore"):
        narrow = wide.astype("f4")
    lost = np.isinf(narrow) & ~np.isinf(wide)
    if lost.any():
        raise OverflowError(f"column {series.name if name is None else name!r} has "
                            f"{wide[lost][0]}, beyond the range of a Single")
    return narrow


def number_columns(frame: Any, leave_out: set[Any]) -> list[Any]:
    chosen = [name for name in frame.columns if name not in leave_out]
    if not chosen:
        raise ValueError("there is no column of numbers")
    return chosen


def dates_of(frame: Any, date: Any) -> Any:
    """The dates of the rows as datetime64[ns], whole and without a time zone."""
    pd = pandas()
    if date is None:
        given, what = frame.index, "the index"
        if isinstance(given, pd.PeriodIndex):
            raise TypeError("the index has periods, not dates; "
                            '.to_timestamp(how="end") makes dates')
    else:
        given, what = pd.DatetimeIndex(column(frame, date)) if pd.api.types.is_datetime64_any_dtype(
            column(frame, date)) else column(frame, date), f"column {date!r}"
    if not isinstance(given, pd.DatetimeIndex):
        raise TypeError(f"{what} has to have dates; pandas.to_datetime makes them, and `date=` "
                        "names the column that has them")
    if given.tz is not None:
        raise ValueError(f"{what} has a time zone; dates here are local ones: .tz_localize(None)")
    if given.hasnans:
        raise ValueError(f"{what} has missing dates (NaT)")
    return given.to_numpy().astype("datetime64[ns]")


def ascending(dates: Any, whose: str = "") -> None:
    back = np.flatnonzero(dates[1:] < dates[:-1])
    if len(back):
        k = int(back[0])
        early, late = map(np.datetime_as_string, (dates[k + 1], dates[k]))
        raise ValueError(f"the dates{whose} are not in order: {early} stands after {late}; "
                         ".sort_index() orders them")
