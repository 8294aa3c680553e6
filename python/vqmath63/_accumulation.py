"""Production profiles of frames on calendar periods."""

from __future__ import annotations

import datetime
import warnings
from collections.abc import Iterator
from typing import Any

import numpy as np

from . import _frames, _messages
from ._groups import groups as groups_of_keys
from ._names import listed, nearest
from ._profiles import Settings, made_of
from ._spreading import spread
from ._values import kind_of, to_long

_COLUMNS_TOGETHER = 24  # of which the dates are looked at once
_NUMBERS_TOGETHER = 2**18  # that stay in the cache
_PARTS = 64  # of many profiles that are spread, at least


def _check_period(word: str) -> None:
    from . import Accumulate
    if not isinstance(word, str):
        raise TypeError(f"period has to be a word, not {kind_of(word)}")
    known = next(m for m in Accumulate._class.members
                 if m.name == "Period" and m.kind == "let").words["value"]
    if word.lower() not in known:
        raise ValueError(f"'{word}' is no period{nearest(word, known)}: {listed(known)}")


def _numbers(series: Any, by: Any) -> Any:
    try:
        return _frames.numbers(series, series.name)
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


def _batches(profiles: list[Any], columns: int, most: int) -> list[slice]:
    """Neighbours of the same dates that go into one table, since much of the work is for the dates
    alone: a few columns, and what stays in the cache."""
    made = []
    begin = 0
    while begin < len(profiles):
        dates = profiles[begin]
        room = min(most, _COLUMNS_TOGETHER // columns, _NUMBERS_TOGETHER // (columns * len(dates)))
        end = begin + 1
        while end < min(begin + room, len(profiles)) and profiles[end] is dates:
            end += 1
        made.append(slice(begin, end))
        begin = end
    return made


def _tables(series: dict[Any, Any], batches: Iterator[list[Any]], sliced: bool) -> Iterator[Any]:
    """A table of Singles for each batch of groups of rows: its first column for the times, then
    those of each group."""
    if not sliced:
        values = [_frames.narrowed(wide, name) for name, wide in series.items()]
    else:
        values = list(series.values())
    for batch in batches:
        columns = [column[rows] for rows in batch for column in values]
        table = np.empty((len(columns[0]), len(columns) + 1), "f4", order="F")
        with np.errstate(all="ignore"):
            for k, column in enumerate(columns):
                table[:, k + 1] = column
        if sliced and np.isinf(table[:, 1:]).any():
            for name, wide in series.items():
                _frames.narrowed(wide, name)  # tells of the one that is too large
        yield table


def _tell_doubled(profiles: list[Any], total: int, by: Any) -> None:
    """Rows of one date cover no time but for the first: most often a column to tell them apart was
    left out."""
    counts = {id(own): np.count_nonzero(own[1:] == own[:-1])
              for own in {id(own): own for own in profiles}.values()}
    count = sum(counts[id(own)] for own in profiles)
    if count:
        first = next(own[1:][own[1:] == own[:-1]][0] for own in profiles if counts[id(own)])
        words = " (is by= missing, which tells wells apart?)" if by is None else ""
        warnings.warn(f"{count} of {total} rows have the date of the row before them, the first "
                      f"{np.datetime_as_string(first, unit='auto')}: they cover no time{words}",
                      stacklevel=4)


def _labels_of_groups(by: Any, names: list[Any], results: list[Any]) -> Any:
    """An index of groups and intervals. Many groups share few intervals: an interval is made once,
    since pandas would look at each as an object; periods that groups share are looked at once."""
    pd = _frames.pandas()
    shared = {id(result[0]): result for result in results}
    places = dict(zip(shared, range(len(shared))))
    begins, ends = (np.concatenate([r[k] for r in shared.values()]) for k in (0, 1))
    (b, all_begins), (e, all_ends) = (pd.factorize(x, sort=True) for x in (begins, ends))
    pairs, codes = np.unique(b * len(all_ends) + e, return_inverse=True)
    intervals = pd.IntervalIndex.from_arrays(all_begins[pairs // len(all_ends)],
                                             all_ends[pairs % len(all_ends)])
    cuts = np.cumsum([0, *(len(r[0]) for r in shared.values())])
    of_each = [codes[a:b] for a, b in zip(cuts, cuts[1:])]
    counts = [len(r[0]) for r in results]
    return pd.MultiIndex(levels=[pd.Index(names), intervals], names=[by, "period"],
                         codes=[np.repeat(np.arange(len(names)), counts),
                                np.concatenate([of_each[places[id(r[0])]] for r in results])])


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
    numbers = {name: _numbers(frame[name], by) for name in series}
    first = None if start is None else _frames.moment(start, "start")
    _check_frequency(frequency)
    settings = Settings(period, frequency, tuple(name not in cumulative for name in series), first)

    groups: list[tuple[Any, Any]] = [(None, slice(0, len(dates)))]
    if by is not None:
        if by == date:
            raise ValueError(f"by and date are one column, {by!r}")
        groups = list(zip(*groups_of_keys(groups_of, by)))
    profiles: list[Any] = []
    kept, rows_kept, short = [], [], []
    for name, rows in groups:
        own = dates[rows]
        if profiles and np.array_equal(own.view("i8"), profiles[-1].view("i8")):
            own = profiles[-1]
        else:
            _frames.ascending(own, "" if by is None else f" of {by} {name!r}", date)
            if len(own) < 2 or own[-1] <= (own[0] if first is None else max(own[0], first)):
                short.append(name)
                continue
        kept.append(name)
        rows_kept.append(rows)
        profiles.append(own)
    why = "one date covers no time" if first is None else "no time is covered from the start on"
    if short and by is None:
        raise ValueError(f"{why}: nothing can be reported")
    if short:
        warnings.warn(f"left out, since {why}: {by} {listed(map(repr, short[:5]))}"
                      f"{' and others' if len(short) > 5 else ''}", stacklevel=3)
    _tell_doubled(profiles, len(dates), by)
    most = len(profiles) if jobs == 1 else len(profiles) // _PARTS
    batches = _batches(profiles, len(series), most)
    tables = _tables(numbers, (rows_kept[batch] for batch in batches),
                     all(isinstance(rows, slice) for rows in rows_kept))
    work = zip((profiles[batch.start] for batch in batches), tables)
    costs = [len(profiles[batch.start]) * (batch.stop - batch.start) for batch in batches]
    results = spread(made_of, work, costs, settings, jobs)
    if not results:
        raise ValueError("there is nothing to report")
    lines = [line for result in results for line in result[3]]
    if by is None:
        index = pd.IntervalIndex.from_arrays(*results[0][:2], name="period")
    else:
        index = _labels_of_groups(by, kept, results)
    made = pd.DataFrame(np.concatenate([r[2] for r in results]), index=index, columns=series)
    if lines:
        _messages.tell_lines(f"accumulate: {lines[0]}", lines, made, len(lines), 0)
    return made
