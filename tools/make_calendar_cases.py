#!/usr/bin/env python3
"""Writes tests/data/calendar_cases.tsv: what an accumulation onto calendar periods must give.

The figures come from exact rational arithmetic over functions of time: a rate is a step
function of time (a sample's value holds over the interval that ends at it), a cumulative a
broken line, a reporting period an interval between calendar moments. Nothing here builds a table
of rows and nothing is shared with the library.

usage: make_calendar_cases.py [OUTPUT]
"""
import calendar
import datetime
import pathlib
import struct
import sys
from fractions import Fraction as F

DAY_ZERO = datetime.date(1899, 12, 30)
SAME_MOMENT = F(3, 2) / 86400
DAYS = {"minute": F(1, 1440), "hour": F(1, 24), "day": F(1), "week": F(7)}
MONTHS = {"month": 1, "bi-monthly": 2, "quarter": 3, "half-year": 6, "year": 12}


def parse(text):
    """Exact days since 1899-12-30 of 'YYYY-MM-DD [hh:mm[:ss]]'."""
    date, _, clock = text.partition(" ")
    parts = [F(p) for p in clock.split(":")] if clock else []
    seconds = sum((p * s for p, s in zip(parts, (3600, 60, 1))), F(0))
    return (datetime.date.fromisoformat(date) - DAY_ZERO).days + seconds / 86400


def serial(days):
    """The automation date of a moment: before day zero the time of day counts away from zero."""
    whole = days.numerator // days.denominator
    return repr(float(days if whole >= 0 else whole - (days - whole)))


def add_months(days, months):
    whole = days.numerator // days.denominator
    date = DAY_ZERO + datetime.timedelta(days=whole)
    year, month = divmod(date.year * 12 + date.month - 1 + months, 12)
    day = min(date.day, calendar.monthrange(year, month + 1)[1])
    return (datetime.date(year, month + 1, day) - DAY_ZERO).days + (days - whole)


def moment(origin, word, units):
    singular = word.lower()
    if singular not in DAYS and singular not in MONTHS:
        singular = singular[:-1]
    if singular in DAYS:
        return origin + units * DAYS[singular]
    whole = units.numerator // units.denominator
    start = add_months(origin, whole * MONTHS[singular])
    end = add_months(origin, (whole + 1) * MONTHS[singular])
    return start + (units - whole) * (end - start)


def edges(times, start, word, frequency):
    """Ends of the reporting periods, each moved onto a sample that is the same moment."""
    first, last = times[0], times[-1]

    def snapped(t):
        nearest = min(times, key=lambda s: abs(s - t))
        return nearest if abs(nearest - t) <= SAME_MOMENT else t

    result = [snapped(start) if start > first + SAME_MOMENT else first]
    k = 0
    while True:
        boundary = moment(start, word, F(k * frequency))
        if boundary >= last - SAME_MOMENT:
            return result + [last]
        if boundary > first + SAME_MOMENT and snapped(boundary) > result[-1]:
            result.append(snapped(boundary))
        k += 1


def mean_rate(times, values, a, b):
    volume = F(0)
    for i in range(1, len(times)):
        overlap = min(times[i], b) - max(times[i - 1], a)
        if overlap > 0:
            volume += values[i] * overlap
    return volume / (b - a)


def reached(times, values, t):
    i = max(k for k, s in enumerate(times) if s <= t)
    if times[i] == t:
        return values[i]
    return values[i] + (values[i + 1] - values[i]) * (t - times[i]) / (times[i + 1] - times[i])


def exact(text):
    """A number that a Single holds."""
    value = float(text)
    assert struct.unpack("f", struct.pack("f", value))[0] == value, text
    return F(value)


def row(name, data, report, samples, kinds="rate cumulative", index=1):
    """data, report: 'date|word[|frequency]'; samples: 't v v, t v v, ...'."""
    data_date, data_word = data.split("|")
    start_text, word, frequency = report.split("|")
    rows = [[exact(v) for v in line.split()] for line in samples.split(",")]
    kinds = kinds.split()
    assert all(len(r) == len(kinds) + 1 for r in rows), name
    used = rows[index - 1:]
    times = [moment(parse(data_date), data_word, r[0]) for r in used]
    assert times == sorted(times), name
    cuts = edges(times, parse(start_text), word, int(frequency))
    periods = []
    for a, b in zip(cuts, cuts[1:]):
        figures = [b - cuts[0]]
        for column, kind in enumerate(kinds, 1):
            values = [r[column] for r in used]
            figures.append(mean_rate(times, values, a, b) if kind == "rate"
                           else reached(times, values, b))
        periods.append(" ".join(f"{float(v):.10g}" for v in figures))
    plain = [" ".join(f"{float(v):.10g}" for v in r) for r in rows]
    return "\t".join([name, data_date, serial(parse(data_date)), data_word, start_text,
                      serial(parse(start_text)), word, frequency, str(index), " ".join(kinds),
                      "; ".join(plain), "; ".join(periods)])


# Boundaries fall on samples, between them and inside a gap; a cumulative runs alongside.
PROFILE = "0 2 0, 1 20 20, 1.5 8 24, 2 4 26, 4.25 16 62, 5 6 66.5"
MONTHLY = "0 5 0, 1 20 512, 2 30 1024, 3 40 2048"


def unit_rows():
    for word in DAYS:
        yield row(word, f"2024-02-27|{word}s", f"2024-02-27|{word}|1", PROFILE)
        yield row(word + "s", f"2024-02-27 09:30|{word}", f"2024-02-20 06:00|{word}s|2", PROFILE)
    for word in MONTHS:
        yield row(word, f"2023-08-31|{word}", f"2023-08-31|{word}|1", PROFILE)
        if word != "bi-monthly":
            yield row(word + "s", f"2023-08-31 12:00|{word}s", f"2023-06-30|{word}s|1", PROFILE)


def rows():
    yield from unit_rows()
    yield row("month ends, common year", "2023-01-31|month", "2023-01-31|Month|1", MONTHLY)
    yield row("month ends, leap year", "2024-01-31|MONTHS", "2024-01-31|month|1", MONTHLY)
    yield row("29 February by years", "2024-02-29|year", "2024-02-29|year|1",
              "0 5 0, 1 20 512, 2.5 8 700, 4 30 1024, 5 40 2048")
    yield row("no leap day in 2100", "2096-02-29|years", "2096-02-29|half-years|4",
              "0 5 0, 2 20 512, 4 30 1024, 5 40 2048")
    yield row("frequency 3", "2023-01-31|day", "2023-01-31|months|3", "0 1 0, 100 4 10, 400 2 90")
    yield row("frequency 4", "2023-01-01|week", "2023-01-03|day|4", "0 1 0, 1 4 14, 3 2 42")
    yield row("frequency 5", "2023-01-01|hour", "2022-12-31 22:00|hours|5", "0 1 0, 7 4 16, 21 2 64")
    yield row("one period holds all", "2023-01-10|day", "2023-01-01|year|5", "0 1 0, 7 4 16, 21 2 64")
    yield row("reporting starts on a sample", "2023-01-01|month", "2023-02-01|month|1", MONTHLY)
    yield row("reporting starts between samples", "2023-01-01|month", "2023-02-11 06:00|month|1",
              MONTHLY)
    yield row("reporting starts in the last interval", "2023-01-01|month", "2023-03-16|month|1",
              MONTHLY)
    yield row("reporting starts years before, phase kept", "2023-01-10|day", "2019-12-31|month|1",
              "0 1 0, 30 4 16, 60 2 64")
    yield row("boundaries 1 s before the samples", "2023-03-15|month", "2023-03-14 23:59:59|month|1",
              MONTHLY)
    yield row("boundaries 1 s after the samples", "2023-03-15|month", "2023-03-15 00:00:01|month|1",
              MONTHLY)
    yield row("boundaries 2 s before the samples", "2023-03-15|month", "2023-03-14 23:59:58|month|1",
              MONTHLY)
    yield row("boundaries 2 s after the samples", "2023-03-15|month", "2023-03-15 00:00:02|month|1",
              MONTHLY)
    yield row("steps of a cumulative, also on a boundary", "2023-01-01|day", "2023-01-01|day|10",
              "0 1 0, 0 9 3, 10 2 10, 10 7 15, 10 5 16, 15 3 20, 15 1 30, 30 2 40, 30 8 45")
    yield row("index 3", "2023-01-31|month", "2023-01-31|bi-monthly|1", MONTHLY + ", 4.5 8 3000",
              index=3)
    yield row("times before the data's date", "2023-01-31|months", "2022-10-31|month|1",
              "-2.5 1 0, -1 4 16, 0.25 2 64")
    yield row("before day zero", "1899-11-15 18:00|day", "1899-11-10 06:00|month|1",
              "0 5 0, 20.5 20 8, 44.25 1 10, 60 30 40")
    yield row("decades by minutes", "1950-01-31|minutes", "1950-01-31|years|10",
              "0 0 0, 10000000 3 4096, 33554432 2 8192, 40000000 7 9000, 52000000 1 16384")
    yield row("columns mixed", "2023-01-31|week", "2023-02-01|month|1",
              "0 0 4 0 9, 4 64 8 256 7, 9 128 2 512 5, 12 512 1 513 3",
              "cumulative rate cumulative rate")


def main():
    home = pathlib.Path(__file__).resolve().parent.parent
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else (
        home / "tests" / "data" / "calendar_cases.tsv")
    head = ("name", "data from", "data date", "data period", "report from", "report date", "period",
            "frequency", "index", "kinds", "samples", "periods")
    target.write_text("\n".join(["\t".join(head), *rows()]) + "\n", encoding="utf-8")


main()
