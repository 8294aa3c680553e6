"""What the functions over frames share: columns and dates looked at before anything is called."""

from __future__ import annotations

import datetime
import functools
import inspect
from collections.abc import Callable
from typing import Any, TypeVar, cast

import numpy as np

from ._names import listed, nearest


Function = TypeVar("Function", bound=Callable[..., Any])


def spelt(function: Function) -> Function:
    """The function, which tells of an argument that is misspelt with the nearest right one."""
    names = list(inspect.signature(function).parameters)

    @functools.wraps(function)
    def checked(*given: Any, **named: Any) -> Any:
        for name in named:
            if name not in names:
                raise TypeError(f"{function.__name__} has no argument '{name}'"
                                + nearest(name, names))
        return function(*given, **named)
    return cast(Function, checked)


def pandas() -> Any:
    try:
        import pandas as pd
    except ImportError:
        raise ImportError("functions over frames need pandas, which is not "
                          "installed: pip install pandas") from None
    return pd


def frame_of(frame: Any, what: str = "frame") -> Any:
    """The frame itself, or that of a series, if its columns can be told apart."""
    pd = pandas()
    if isinstance(frame, pd.Series):
        frame = frame.to_frame(frame.name if frame.name is not None else "value")
    if not isinstance(frame, pd.DataFrame):
        has = "have" if what == "points" else "has"
        raise TypeError(f"{what} {has} to be a DataFrame, not a {type(frame).__qualname__}")
    if not frame.columns.is_unique:
        doubled = frame.columns[frame.columns.duplicated()].unique()
        raise ValueError(f"{what} has columns of one name: {listed(map(repr, doubled))}")
    if len(frame) == 0:
        raise ValueError(f"{what} has no rows")
    return frame


def column(frame: Any, name: Any) -> Any:
    """A column by its name, or the index by its."""
    if isinstance(name, (list, set, dict)):
        raise TypeError(f"one column is wanted, not a {type(name).__qualname__}: {name!r}")
    if name not in frame.columns:
        if name is not None and name == frame.index.name:
            return frame.index.to_series()
        raise KeyError(f"there is no column {name!r}{nearest(str(name), map(str, frame.columns))}")
    return frame[name]


def numbers(series: Any, name: Any) -> Any:
    """A column, or the index without a name, as Doubles, missing values as NaN."""
    pd = pandas()
    if pd.api.types.is_bool_dtype(series.dtype) or not pd.api.types.is_numeric_dtype(series.dtype) \
            or pd.api.types.is_complex_dtype(series.dtype):
        words = ""
        if series.dtype == object:
            words = "; pandas.to_numeric makes them of texts, and to_datetime dates"
        where = "the index" if name is None else f"column {name!r}"
        raise TypeError(f"{where} has elements of type {series.dtype}, not numbers{words}")
    return series.to_numpy(dtype="f8", na_value=np.nan)


def singles(series: Any) -> Any:
    """The same as Singles, for which the numbers must not be too large."""
    wide = numbers(series, series.name)
    with np.errstate(over="ignore"):
        narrow = wide.astype("f4")
    lost = np.isinf(narrow) & ~np.isinf(wide)
    if lost.any():
        raise OverflowError(f"column {series.name!r} has "
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
        given, what = column(frame, date), f"column {date!r}"
        if pd.api.types.is_datetime64_any_dtype(given):
            given = pd.DatetimeIndex(given)
    if not isinstance(given, pd.DatetimeIndex):
        others = [repr(name) for name in frame.columns
                  if pd.api.types.is_datetime64_any_dtype(frame[name])]
        words = f"; date={others[0]} takes those of a column" if others else (
            "; pandas.to_datetime makes them of texts, and `date=` names the column that has them")
        raise TypeError(f"{what} has to have dates{words}")
    if given.tz is not None:
        raise ValueError(f"{what} has a time zone; dates here are local ones: .tz_localize(None)")
    if given.hasnans:
        raise ValueError(f"{what} has missing dates (NaT)")
    return given.to_numpy().astype("datetime64[ns]")


def moment(date: Any, what: str) -> Any:
    """A date of any make as datetime64[ns]."""
    pd = pandas()
    if not isinstance(date, (str, datetime.date, np.datetime64)):
        raise TypeError(f"{what} has to be a date, not a {type(date).__qualname__}")
    try:
        made = pd.Timestamp(date)
    except ValueError:
        raise ValueError(f"{what} has to be a date, not {date!r}") from None
    if made is pd.NaT:
        raise ValueError(f"{what} is NaT, no date")
    if made.tz is not None:
        raise ValueError(f"{what} has a time zone; dates here are local ones: .tz_localize(None)")
    return made.to_datetime64().astype("datetime64[ns]")


def ascending(dates: Any, whose: str = "") -> None:
    back = np.flatnonzero(dates[1:] < dates[:-1])
    if len(back):
        k = int(back[0])
        early, late = (np.datetime_as_string(d, unit="auto") for d in (dates[k + 1], dates[k]))
        raise ValueError(f"the dates{whose} are not in order: {early} stands after {late}; "
                         ".sort_index() orders them")
