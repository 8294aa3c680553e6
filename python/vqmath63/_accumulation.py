"""Production profiles of frames on calendar periods."""

from __future__ import annotations

import datetime
import warnings
from dataclasses import dataclass
from typing import Any

import numpy as np

from . import _frames, _messages
from ._names import listed, nearest
from ._spreading import spread
from ._values import kind_of, to_long

_NS_PER_MINUTE = 60 * 10**9
_UNITS = (("day", 1440), ("hour", 60), ("minute", 1))
_EXACT = 2**24  # whole numbers up to here are Singles
_MONTHS = {"month": 1, "bi-monthly": 2, "quarter": 3, "half-year": 6, "year": 12}
_MINUTES = {"minute": 1, "hour": 60, "day": 1440}


@dataclass(frozen=True)
class _Settings:
    period: str
    frequency: int
    rates: tuple[bool, ...]  # per series
    start: np.datetime64 | None


def _singular(word: str) -> str:
    lower = word.lower()
    return lower if lower in ("bi-monthly",) else lower.removesuffix("s")


def _start_of(period: str, moment: Any) -> Any:
    """The beginning of the calendar period that a moment is in."""
    if period in _MONTHS:
        months = moment.astype("datetime64[M]").astype(int)
        return np.datetime64(int(months - months % _MONTHS[period]), "M").astype("datetime64[ns]")
    if period == "week":
        days = moment.astype("datetime64[D]").astype(int)
        return np.datetime64(int(days - (days + 3) % 7), "D").astype("datetime64[ns]")  # Monday
    minutes = moment.astype("datetime64[m]").astype(int)
    step = _MINUTES[period]
    return np.datetime64(int(minutes - minutes % step), "m").astype("datetime64[ns]")


def _times(dates: Any) -> tuple[Any, str]:
    """Times since the first date as Singles, and the unit in which they are exact."""
    since = (dates - dates[0]).astype("i8")
    for word, minutes in _UNITS:
        count, rest = np.divmod(since, minutes * _NS_PER_MINUTE)
        if count[-1] <= _EXACT and not rest.any():
            return count.astype("f4"), word
    minutes_since = since / _NS_PER_MINUTE
    if minutes_since[-1] > _EXACT / 60:  # to the second
        raise ValueError("the dates are too far apart for times that are no whole minutes: "
                         ".index.round('min') makes them so")
    return minutes_since.astype("f4"), "minute"


def _moments(first: Any, days: Any) -> Any:
    """The ends of periods from days as Singles: the roundest clock times within their precision."""
    told = days.astype("f8")
    precision = np.spacing(days) / 2 + 1e-9
    ends = told.copy()
    done = np.zeros(len(told), bool)
    base = float((first - first.astype("datetime64[D]")).astype("i8")) / (1440 * _NS_PER_MINUTE)
    for per_day in (1, 24, 1440, 86400):
        rounded = np.round((told + base) * per_day) / per_day - base
        fits = ~done & (np.abs(rounded - told) <= precision)
        ends[fits] = rounded[fits]
        done |= fits
    seconds = np.round(ends * 86400)
    return first + (seconds * 1e9).astype("i8").astype("timedelta64[ns]")


def _one(dates: Any, values: Any, settings: _Settings) -> tuple[Any, Any, Any]:
    """Beginnings and ends of the periods and the values of one profile."""
    from . import Accumulate
    times, unit = _times(dates)
    table = np.empty((len(times), values.shape[1] + 1), "f4", order="F")
    table[:, 0] = times
    table[:, 1:] = values
    start = settings.start
    if start is None:
        start = _start_of(_singular(settings.period), dates[0])
    profile = Accumulate(DataPeriod=unit, Period=settings.period, Frequency=settings.frequency,
                         StartData=dates[0], StartDate=start,
                         RateArray=[True, *settings.rates])
    made = profile.Accumulate(table).dAccumulate
    if made.size == 0:
        made = np.zeros((0, values.shape[1] + 1), "f4")
    first = max(dates[0], start)
    ends = _moments(first, made[:, 0])
    begins = np.concatenate([[first], ends[:-1]]) if len(ends) else ends
    return begins, ends, made[:, 1:]


def _many(work: list[tuple[Any, Any]], settings: _Settings) -> list[Any]:
    """Several profiles, each with the error lines that it came to."""
    results = []
    for dates, values in work:
        with _messages.errors("list") as lines:
            begins, ends, made = _one(dates, values, settings)
            results.append((begins, ends, made, list(lines)))
    return results


def _check_period(word: str) -> None:
    from . import Accumulate
    if not isinstance(word, str):
        raise TypeError(f"period has to be a word, not {kind_of(word)}")
    known = next(m for m in Accumulate._class.members
                 if m.name == "Period" and m.kind == "let").words["value"]
    if word.lower() not in known:
        raise ValueError(f"'{word}' is no period{nearest(word, known)}: {listed(known)}")


def _rates(series: Any, by: Any) -> Any:
    try:
        return _frames.singles(series)
    except TypeError as error:
        if by is not None or series.dtype != object:
            raise
        raise TypeError(f"{error}; by={series.name!r} makes a profile for each of them") from None


def _check_frequency(frequency: Any) -> None:
    try:
        number = to_long(frequency)
    except (TypeError, OverflowError) as error:
        raise error.__class__(f"frequency {error}") from None
    if number < 1:
        raise ValueError(f"frequency has to be 1 or more, not {frequency!r}")


def _tell_doubled(dates: Any, profiles: list[Any], by: Any) -> None:
    """Rows of one date cover no time but for the first: most often a column to tell them apart was
    left out."""
    doubled = [own[1:][own[1:] == own[:-1]] for own in profiles]
    count = sum(map(len, doubled))
    if count:
        first = next(d[0] for d in doubled if len(d))
        words = " (is by= missing, which tells wells apart?)" if by is None else ""
        warnings.warn(f"{count} of {len(dates)} rows have the date of the row before them, the first "
                      f"{np.datetime_as_string(first, unit='auto')}: they cover no time{words}",
                      stacklevel=4)


def _labels_of_groups(by: Any, names: list[Any], counts: list[int], begins: Any, ends: Any) -> Any:
    """An index of groups and intervals. Many groups share few intervals: an interval is made once,
    since pandas would look at each as an object."""
    pd = _frames.pandas()
    (b, all_begins), (e, all_ends) = (pd.factorize(x, sort=True) for x in (begins, ends))
    pairs, codes = np.unique(b * len(all_ends) + e, return_inverse=True)
    intervals = pd.IntervalIndex.from_arrays(all_begins[pairs // len(all_ends)],
                                             all_ends[pairs % len(all_ends)])
    return pd.MultiIndex(levels=[pd.Index(names), intervals], names=[by, "period"],
                         codes=[np.repeat(np.arange(len(names)), counts), codes])


@_frames.spelt
def accumulate(frame: Any, period: str = "month", *, by: Any = None, date: Any = None,
               cumulative: Any = (), frequency: int = 1, start: datetime.date | None = None,
               jobs: Any = 1) -> Any:
    """A dated profile on calendar periods, by ztAccumulate.

    `frame` has a row per date, in order, and columns of numbers; dates are its index, or the column
    `date`. A rate is the mean of the interval that ends at its row; the columns in `cumulative`
    have running totals. With `by`, a column, there is a profile for each of its values.

    Returns a frame with an index of intervals, closed on the right, that the data cover (below the
    values of `by`): means of rates, and totals at the intervals' ends. Periods begin with the
    calendar (a quarter in January, a week on Monday), or with `start` and every `frequency` periods
    from it. A missing value (NaN) makes each period missing that it has a part in. `jobs` spreads
    many profiles, with the same result: over so many processes (0: one a processor), over an
    executor of concurrent.futures, or over the cluster of a Dask client.
    """
    pd = _frames.pandas()
    frame = _frames.frame_of(frame)
    _check_period(period)
    dates = _frames.dates_of(frame, date)
    groups_of = None if by is None else _frames.column(frame, by)
    series = _frames.number_columns(frame, {by, date} - {None})
    if isinstance(cumulative, str) or not np.iterable(cumulative):
        cumulative = [] if cumulative is None else [cumulative]
    for name in cumulative:
        _frames.column(frame, name)
        if name not in series:
            raise ValueError(f"cumulative names {name!r}, which is no column of numbers here")
    values = np.column_stack([_rates(frame[name], by) for name in series])
    first = None if start is None else _frames.moment(start, "start")
    _check_frequency(frequency)
    settings = _Settings(period, frequency, tuple(name not in cumulative for name in series), first)

    groups: list[tuple[Any, Any]] = [(None, slice(None))]
    if by is not None:
        if by == date:
            raise ValueError(f"by and date are one column, {by!r}")
        codes, names = pd.factorize(groups_of, sort=True)
        if (codes < 0).any():
            raise ValueError(f"column {by!r} has missing values")
        order = np.argsort(codes, kind="stable")
        cuts = np.searchsorted(codes[order], np.arange(len(names) + 1))
        groups = [(name, order[a:b]) for name, a, b in zip(names, cuts, cuts[1:])]
    work, kept, short = [], [], []
    for name, rows in groups:
        own = dates[rows]
        _frames.ascending(own, "" if by is None else f" of {by} {name!r}", date)
        if len(own) < 2 or own[-1] <= (own[0] if first is None else max(own[0], first)):
            short.append(name)
            continue
        kept.append(name)
        work.append((own, values[rows]))
    why = "one date covers no time" if first is None else "no time is covered from the start on"
    if short and by is None:
        raise ValueError(f"{why}: nothing can be reported")
    if short:
        warnings.warn(f"left out, since {why}: {by} {listed(map(repr, short[:5]))}"
                      f"{' and others' if len(short) > 5 else ''}", stacklevel=3)
    _tell_doubled(dates, [own for own, _ in work], by)
    results = spread(_many, work, [len(own) for own, _ in work], settings, jobs)
    if not results:
        raise ValueError("there is nothing to report")
    lines = [line for result in results for line in result[3]]
    begins, ends = (np.concatenate([r[k] for r in results]) for k in (0, 1))
    if by is None:
        index = pd.IntervalIndex.from_arrays(begins, ends, name="period")
    else:
        index = _labels_of_groups(by, kept, [len(r[1]) for r in results], begins, ends)
    made = pd.DataFrame(np.concatenate([r[2] for r in results]), index=index, columns=series)
    if lines:
        _messages.tell_lines(f"accumulate: {lines[0]}", lines, made, len(lines), 0)
    return made
