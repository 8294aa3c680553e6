"""Production profiles, one or many, by ztAccumulate."""

from __future__ import annotations

from collections.abc import Iterable
from dataclasses import dataclass
from typing import Any

import numpy as np

from . import _messages

_NS_PER_MINUTE = 60 * 10**9
_UNITS = (("day", 1440), ("hour", 60), ("minute", 1))
_EXACT = 2**24  # whole numbers up to here are Singles
_MONTHS = {"month": 1, "bi-monthly": 2, "quarter": 3, "half-year": 6, "year": 12}
_MINUTES = {"minute": 1, "hour": 60, "day": 1440}


@dataclass(frozen=True)
class Settings:
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


class _Reporter:
    """Makes profiles one after another. What follows from the dates alone is kept for the next
    profile, since wells of a field mostly have the same ones."""

    def __init__(self, settings: Settings) -> None:
        from . import Accumulate
        self.settings = settings
        self.profile = Accumulate(Period=settings.period, Frequency=settings.frequency)
        self.columns = 0
        self.dates: Any = None
        self.days: Any = None

    def _look_at(self, dates: Any) -> None:
        self.times, unit = _times(dates)
        start: Any = self.settings.start
        if start is None:
            start = _start_of(_singular(self.settings.period), dates[0])
        self.profile.DataPeriod = unit
        self.profile.StartData = dates[0]
        self.profile.StartDate = start
        self.first = max(dates[0], start)
        self.dates, self.days = dates, None

    def made(self, dates: Any, table: Any) -> tuple[Any, Any, Any]:
        """Beginnings and ends of the periods, and the values, of series that begin in the second
        column of the table: those of one profile, or of several side by side."""
        if dates is not self.dates:
            self._look_at(dates)
        if table.shape[1] != self.columns:
            self.columns = table.shape[1]
            rates = self.settings.rates
            self.profile.RateArray = [True, *rates * (self.columns // len(rates))]
        table[:, 0] = self.times
        made = self.profile.Accumulate(table).dAccumulate
        if made.size == 0:
            made = np.zeros((0, table.shape[1]), "f4")
        days = made[:, 0]
        if self.days is None or not np.array_equal(days, self.days):
            self.days = days
            self.ends = _moments(self.first, days)
            self.begins = (np.concatenate([[self.first], self.ends[:-1]]) if len(self.ends)
                           else self.ends)
        return self.begins, self.ends, made[:, 1:]


def made_of(work: Iterable[tuple[Any, Any]], settings: Settings) -> list[Any]:
    """Profiles of dates and tables, each with the error lines that it came to: beginnings and ends
    of the periods, values, lines. A table may have the series of several profiles. Neighbours of
    the same dates are quicker with the same array of dates."""
    results: list[Any] = []
    with _messages.errors("list") as lines:
        reporter = _Reporter(settings)
        wide = len(settings.rates)
        for dates, table in work:
            places = range(1, table.shape[1], wide)
            begins, ends, values = reporter.made(dates, table)
            if not lines:
                results += [(begins, ends, values[:, k - 1:k - 1 + wide], []) for k in places]
                continue
            for k in places:  # one by one: an error in one ends the work on those after it
                if len(places) > 1:
                    lines.clear()
                    alone = np.asfortranarray(table[:, [0, *range(k, k + wide)]])
                    begins, ends, values = reporter.made(dates, alone)
                results.append((begins, ends, values, list(lines)))
            lines.clear()
    return results
