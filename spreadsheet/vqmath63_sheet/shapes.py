"""Functions whose arguments and results have the shape that a sheet wants; each goes through the
methods of the component."""

import datetime
import inspect
import math
import struct

import vqmath63
from vqmath63._description import Type
from vqmath63._names import listed, nearest

from . import cells
from .cells import CellError
from .functions import FIRST_DAY, Function, Parameter

_MOST = 2**24  # whole numbers up to here are Singles


class Shape(Function):
    """A function written here. Its parameters are those of the Python function, its help the first
    paragraph of the words there, and theirs the lines that begin with their names."""

    def __init__(self, work):
        self.identifier = "".join(word.capitalize() for word in work.__name__.split("_"))
        self.name = self.identifier.upper()
        self._work = work
        paragraphs = inspect.getdoc(work).split("\n\n")
        self.help = " ".join(paragraphs[0].split())
        words = dict(line.split(": ", 1) for line in paragraphs[-1].split("\n")) \
            if len(paragraphs) > 1 else {}
        self.parameters = tuple(
            Parameter(name, Type(p.annotation.rstrip("()"), p.annotation.count("()")),
                      p.default is not p.empty, help=words[name])
            for name, p in inspect.signature(work).parameters.items() if name != "first_day")

    @property
    def wants_document(self):
        return "first_day" in inspect.signature(self._work).parameters

    def evaluate(self, given, first_day=FIRST_DAY):
        if len(given) > len(self.parameters):
            raise CellError(cells.PARAMETERS, f"{self.name} takes {len(self.parameters)} arguments")
        named = {}
        names = [name for name in inspect.signature(self._work).parameters if name != "first_day"]
        for name, parameter, cell in zip(names, self.parameters, [*given, *[None] * len(names)]):
            if cell is not None:
                named[name] = cell
            elif not parameter.optional:
                raise CellError(cells.PARAMETERS, f"{parameter.name} is missing")
        if self.wants_document:
            named["first_day"] = first_day
        return self._work(**named)


def _text(cell, name, words):
    """One of some words."""
    word = cells.single(cell)
    if not isinstance(word, str) or word.lower() not in words:
        raise CellError(cells.VALUE, f"{name} is {word!r}{nearest(str(word), words)}; it has to be "
                                     f"one of {listed(words)}")
    return word.lower()


def _whole(cell, name):
    value = cells.number(cells.single(cell), name)
    if not value.is_integer():
        raise CellError(cells.VALUE, f"{name} is {value!r}; it has to be a whole number")
    return int(value)


def _column(cell, name):
    values = cells.column(cell, name)
    if values is None:
        raise CellError(cells.VALUE, f"{name} is empty")
    return values


def _same_length(first, first_name, other, other_name):
    if len(first) != len(other):
        raise CellError(cells.PARAMETERS, f"{first_name} has {len(first)} filled rows, {other_name} "
                                          f"{len(other)}")


def _ascending(values, name, strictly=True):
    for k in range(1, len(values)):
        if values[k] < values[k - 1] or strictly and values[k] == values[k - 1]:
            raise CellError(cells.VALUE, f"{name} do not ascend: cell {k + 1} is {values[k]!r}, "
                                         f"after {values[k - 1]!r}")


# --- periods ---

_MONTHS = {"month": 1, "bi-monthly": 2, "quarter": 3, "half-year": 6, "year": 12}
_PERIODS = ("minute", "hour", "day", "week", *_MONTHS)


def _start_of(period, moment):
    """The beginning of the calendar period that a moment is in."""
    day = datetime.datetime(moment.year, moment.month, moment.day)
    if period in _MONTHS:
        months = moment.year * 12 + moment.month - 1
        months -= months % _MONTHS[period]
        return datetime.datetime(months // 12, months % 12 + 1, 1)
    if period == "week":
        return day - datetime.timedelta(days=day.weekday())
    return moment.replace(second=0, microsecond=0, **{
        "day": {"hour": 0, "minute": 0}, "hour": {"minute": 0}, "minute": {}}[period])


def _times(days):
    """Times since the first of some days, and the unit in which they are whole Singles."""
    since = [day - days[0] for day in days]
    for word, each in (("day", 1), ("hour", 24), ("minute", 1440)):
        counts = [round(day * each) for day in since]
        if counts[-1] <= _MOST and all(abs(c - day * each) < 1e-5 * each
                                       for c, day in zip(counts, since)):
            return [float(count) for count in counts], word
    raise CellError(cells.VALUE, "dates have to be whole minutes, not too far apart")


def _end(days):
    """An end of a period as days of Single precision: the roundest clock time that it can be."""
    bits = struct.unpack("<i", struct.pack("<f", days))[0]
    precision = struct.unpack("<f", struct.pack("<i", bits + 1))[0] - days
    for a_day in (1, 24, 1440, 86400):
        rounded = round(days * a_day) / a_day
        if abs(rounded - days) <= precision / 2 + 1e-9:
            return rounded
    return days


def periods(dates: "Date()", values: "Single()()", period: "String" = None,
            totals: "Boolean()" = None, frequency: "Long" = None, start: "Date" = None, *,
            first_day=FIRST_DAY):
    """A production profile on calendar periods: a row for each, with its begin, its end, and for
    each column of values the mean of the rates, or the running total at its end.

    dates: dates in ascending order, one a row
    values: columns of numbers; a rate is the mean of the time that ends at its row
    period: minute, hour, day, week, month (where left out), bi-monthly, quarter, half-year or year
    totals: TRUE for each column of values that is a running total; all are rates where left out
    frequency: how many periods make one, 1 where left out
    start: where the first period begins, where it is not with the calendar
    """
    word = "month" if period is None else _text(period, "period", _PERIODS)
    days = _column(dates, "dates")
    _ascending(days, "dates", strictly=False)
    table = cells.table(values, "values")
    _same_length(days, "dates", table or [], "values")
    running = [v != 0 for v in cells.column(totals, "totals") or ()] if totals is not None else []
    if len(running) not in (0, 1, len(table[0])):
        raise CellError(cells.PARAMETERS, f"totals has {len(running)} values for {len(table[0])} "
                                          "columns")
    if len(running) != len(table[0]):
        running = (running or [False]) * len(table[0])
    begin = cells.moment(days[0], first_day)
    first = _start_of(word, begin) if start is None else \
        cells.moment(cells.number(cells.single(start), "start"), first_day)
    count = 1 if frequency is None else _whole(frequency, "frequency")
    if count < 1:
        raise CellError(cells.VALUE, f"frequency is {count}; it has to be 1 or more")
    times, unit = _times(days)
    profile = vqmath63.Accumulate(
        DataPeriod=unit, Period=word, Frequency=count, StartData=begin, StartDate=first,
        RateArray=[True, *(not total for total in running)])
    made = profile.Accumulate([[t, *row] for t, row in zip(times, table)]).dAccumulate
    made = made.tolist() if hasattr(made, "tolist") else made
    since = max(days[0], (first - first_day) / datetime.timedelta(days=1))
    ends = [since + _end(row[0]) for row in made]
    return [[b, e, *row[1:]] for b, e, row in zip([since, *ends], ends, made)]


# --- fits ---

_FITS = {"linear": (False, False), "logarithmic": (True, False), "exponential": (False, True),
         "power": (True, True)}


def _logarithms(values, name):
    bad = next((k for k, v in enumerate(values) if not v > 0), None)
    if bad is not None:
        raise CellError(cells.ARGUMENT, f"cell {bad + 1} of {name} is {values[bad]!r}, which has no "
                                        "logarithm")
    return [math.log(v) for v in values]


def fit(x: "Double()", y: "Double()", kind: "String" = None):
    """The straight line through samples: its intercept, its slope and the correlation coefficient.

    x: abscissae
    y: ordinates, as many
    kind: linear (where left out) y = A + B x; logarithmic y = A + B ln x; exponential ln y = A + B x; power ln y = A + B ln x
    """
    word = "linear" if kind is None else _text(kind, "kind", _FITS)
    xs, ys = _column(x, "x"), _column(y, "y")
    _same_length(xs, "x", ys, "y")
    log_x, log_y = _FITS[word]
    if log_x:
        xs = _logarithms(xs, "x")
    if log_y:
        _logarithms(ys, "y")
    if min(xs) == max(xs):
        raise CellError(cells.VALUE, "a line wants two different x")
    line = vqmath63.Regression(RegressionType="Exponential" if log_y else "Linear")
    line.Regression(xs, ys, None)
    return [[line.A, line.B, line.R]]


def decline(dates: "Date()", rates: "Double()"):
    """An exponential decline: the rate at the first date, the part of it that goes in a year (a nominal
    rate, of 365.25 days) and the correlation coefficient. Rows without a rate above 0 are left out.

    dates: dates, or days
    rates: rates at these, as many
    """
    days, values = _column(dates, "dates"), _column(rates, "rates")
    _same_length(days, "dates", values, "rates")
    there = [(day - days[0], value) for day, value in zip(days, values) if value > 0]
    if len({day for day, _ in there}) < 2:
        raise CellError(cells.VALUE, "a decline wants rates above 0 at two dates")
    line = vqmath63.Regression(RegressionType="Exponential")
    line.Regression([day for day, _ in there], [value for _, value in there], None)
    return [[math.exp(line.A), -line.B * 365.25, line.R]]


# --- fluids ---

def _at_each(method, table, *places):
    """Factors at places, as ranges or single cells; NOT_AVAILABLE where there is none."""
    from .addin import functions
    return functions()[method].evaluate([*table, *places])


def dead_oil_factor(pressures: "Single()", factors: "Single()", at: "Single"):
    """The volume factor of dead oil at each pressure.

    pressures: pressures of the table, ascending
    factors: factors at these
    at: the pressure, or a range of pressures
    """
    table = _column(pressures, "pressures")
    _ascending(table, "pressures")
    _same_length(table, "pressures", _column(factors, "factors"), "factors")
    return _at_each("GETVOLUMECORRECTIONDEAD", [pressures, factors, float(len(table))], at)


def live_oil_factor(primaries: "Single()", pressures: "Single()", factors: "Single()",
                    primary: "Single", at: "Single"):
    """The volume factor of live oil at each primary value and pressure.

    primaries: dissolved gas (or another primary value), in rows of one curve after the other, ascending
    pressures: pressures of each curve, the saturation point first
    factors: factors at these
    primary: the primary value, or a range
    at: the pressure, or a range
    """
    first = _column(primaries, "primaries")
    _ascending(first, "primaries", strictly=False)
    for other, name in ((pressures, "pressures"), (factors, "factors")):
        _same_length(first, "primaries", _column(other, name), name)
    starts = [k for k in range(len(first)) if k == 0 or first[k] != first[k - 1]]
    curves = tuple((first[k],) for k in starts)
    places = tuple((k + 1.0,) for k in starts)
    return _at_each("GETVOLUMECORRECTIONLIVE",
                    [curves, places, float(len(starts)), pressures, factors, float(len(first))],
                    primary, at, 0.0)


def water_factor(reference: "Single", factor: "Single", compressibility: "Single", at: "Single"):
    """The volume factor of water at each pressure.

    reference: reference pressure
    factor: factor there
    compressibility: compressibility, 1 over the unit of the pressures
    at: the pressure, or a range of pressures
    """
    return _at_each("GETWATERVOLUMECORRECTION", [reference, factor, compressibility, 1.0], at)


# --- statistics ---

def bins(values: "Single()", count: "Long", lower: "Single" = None, upper: "Single" = None):
    """Bins of one width and how many values are in each: a row a bin, with its centre and the count.

    values: a column of numbers
    count: how many bins
    lower: the lowest edge; the smallest value where left out
    upper: the highest edge; the largest value where left out
    """
    numbers = _column(values, "values")
    sample = vqmath63.Sample()
    if lower is not None or upper is not None:
        limits = [edge(numbers) if cell is None else cells.number(cells.single(cell), name)
                  for cell, name, edge in ((lower, "lower", min), (upper, "upper", max))]
        if not sample.setLimits(*limits):
            raise CellError(cells.VALUE, f"lower is {limits[0]!r}, not below {limits[1]!r}")
    made = sample.BinVector(numbers, _whole(count, "count"))
    return [list(row) for row in zip(map(float, made.xBin), map(float, made.xCount))]


# --- the component ---

def version():
    """The version text of the component."""
    return [[vqmath63.AnalyseInfo().DLLVersion("", "", False)[0]]]


def shapes():
    return [Shape(work) for work in (periods, fit, decline, dead_oil_factor, live_oil_factor,
                                     water_factor, bins, version)]
