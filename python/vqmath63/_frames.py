"""What the functions over frames share: columns and dates looked at before anything is called."""

from __future__ import annotations

import datetime
import functools
import importlib
import inspect
from collections.abc import Callable
from typing import Any, TypeVar, cast

import numpy as np

from ._names import listed, nearest
from ._values import kind_of

_FIRST_YEAR, _LAST_YEAR = 1678, 2261  # that nanoseconds have whole
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
        return importlib.import_module("pandas")  # so that a type checker needs none of its stubs
    except ImportError:
        raise ImportError("functions over frames need pandas, which is not "
                          "installed: pip install pandas") from None


def frame_of(frame: Any, what: str = "frame") -> Any:
    """The frame itself, or that of a series, if its columns can be told apart."""
    pd = pandas()
    if isinstance(frame, pd.Series):
        frame = frame.to_frame(frame.name if frame.name is not None else "value")
    if not isinstance(frame, pd.DataFrame):
        has = "have" if what == "points" else "has"
        raise TypeError(f"{what} {has} to be a DataFrame, not {kind_of(frame)}")
    if not frame.columns.is_unique:
        doubled = frame.columns[frame.columns.duplicated()].unique()
        raise ValueError(f"{what} has columns of one name: {listed(map(repr, doubled))}")
    if len(frame) == 0:
        raise ValueError(f"{what} has no rows")
    return frame


def column(frame: Any, name: Any) -> Any:
    """A column by its name, or the index, or a level of it, by its."""
    try:
        hash(name)
    except TypeError:
        raise TypeError(f"one column is wanted, by its name, not {kind_of(name)}") from None
    if name not in frame.columns:
        if name is not None and name in frame.index.names:
            return frame.index.get_level_values(name).to_series()
        raise KeyError(f"there is no column {name!r}{nearest(str(name), map(str, frame.columns))}")
    return frame[name]


def numbers(series: Any, name: Any) -> Any:
    """A column, or the index without a name, as Doubles, missing values as NaN."""
    pd = pandas()
    if pd.api.types.is_bool_dtype(series.dtype) or not pd.api.types.is_numeric_dtype(series.dtype) \
            or pd.api.types.is_complex_dtype(series.dtype):
        words = ""
        if series.dtype == object:
            words = "; pandas.to_numeric makes them of texts, to_datetime dates of them"
            if name is not None:
                words += f", and .drop(columns={name!r}) leaves them out"
        raise TypeError(f"{named(name)} has elements of type {series.dtype}, not numbers{words}")
    if series.dtype == np.float64:
        return series.to_numpy()  # where they lie
    return series.to_numpy(dtype="f8", na_value=np.nan)


def singles(series: Any) -> Any:
    """The same as Singles, for which the numbers must not be too large."""
    return narrowed(numbers(series, series.name), series.name)


def named(name: Any) -> str:
    return "the index" if name is None else f"column {name!r}"


def narrowed(wide: Any, name: Any) -> Any:
    """Doubles of a column, or of the index without a name, as Singles."""
    with np.errstate(all="ignore"):
        narrow = wide.astype("f4")
    lost = np.isinf(narrow) & ~np.isinf(wide)
    if lost.any():
        raise OverflowError(f"{named(name)} has {wide[lost][0]}, beyond the range of a Single")
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
        others = [repr(name) for name in [*frame.columns, *filter(None, frame.index.names)]
                  if pd.api.types.is_datetime64_any_dtype(column(frame, name))]
        words = "; pandas.to_datetime makes them of texts"
        if date is None:
            words = (f"; date={others[0]} takes those of a column or a level" if others else
                     words + ", and `date=` names the column that has them")
        raise TypeError(f"{what} has to have dates{words}")
    refuse_zone(given, what)
    dates = given.to_numpy()
    if dates.view("i8").min() == np.iinfo("i8").min:
        raise ValueError(f"{what} has missing dates (NaT)")
    if dates.dtype != "datetime64[ns]":
        years = dates.astype("datetime64[Y]").astype(int) + 1970
        if years.min() < _FIRST_YEAR or years.max() > _LAST_YEAR:
            raise ValueError(f"{what} has dates outside the years {_FIRST_YEAR} to {_LAST_YEAR}")
    return dates.astype("datetime64[ns]", copy=False)


def refuse_zone(dates: Any, what: str) -> None:
    """Refuses dates of a time zone, of which days may have 23 or 25 hours."""
    if dates.tz is not None:
        raise ValueError(f"{what} has a time zone; dates here are local ones: .tz_localize(None)")


def moment(date: Any, what: str) -> Any:
    """A date of any make as datetime64[ns]."""
    pd = pandas()
    if not isinstance(date, (str, datetime.date, np.datetime64)):
        raise TypeError(f"{what} has to be a date, not {kind_of(date)}")
    try:
        made = pd.Timestamp(date)
    except ValueError:
        raise ValueError(f"{what} has to be a date, not {date!r}") from None
    if made is pd.NaT:
        raise ValueError(f"{what} is NaT, no date")
    refuse_zone(made, what)
    return made.to_datetime64().astype("datetime64[ns]")


def ascending(dates: Any, whose: str, date: Any) -> None:
    back = np.flatnonzero(dates[1:] < dates[:-1])
    if len(back):
        k = int(back[0])
        early, late = (np.datetime_as_string(d, unit="auto") for d in (dates[k + 1], dates[k]))
        way = ".sort_index()" if date is None else f".sort_values({date!r})"
        raise ValueError(f"the dates{whose} are not in order: {early} stands after {late}; "
                         f"{way} orders them")
