"""Single values on their way to the component and back: numbers, truths, texts and dates."""

from __future__ import annotations

import datetime
import math
import operator
from collections.abc import Callable
from typing import Any

from . import _library as lib

_EPOCH = datetime.datetime(1899, 12, 30)
_FIRST_YEAR = 100  # of automation dates
_LAST_DAY = 2958465  # 9999-12-31, on which dates end here and there
_LARGEST_LONG = 2**31 - 1
_LARGEST_SINGLE = math.ldexp(1 - 2.0**-25, 128)  # from here on a Single would be infinite

# As struct packs them.
FORMAT = {"Single": "f", "Double": "d", "Long": "i", "Boolean": "h", "Date": "d", "String": "P"}
VARIANT_TYPE = {"Single": lib.R4, "Double": lib.R8, "Long": lib.I4, "Boolean": lib.BOOL,
                "Date": lib.DATE, "String": lib.BSTR}


def kind_of(value: object) -> str:
    name = type(value).__qualname__
    return "None" if value is None else f"{'an' if name[0] in 'aeiouAEIOU' else 'a'} {name}"


def to_double(value: Any) -> float:
    if isinstance(value, float):
        return float(value)
    # NumPy makes a float of its texts, lengths of time and complex numbers too.
    if type(value) is not int and (
            isinstance(value, (str, bytes, bytearray, complex, datetime.date))
            or getattr(value, "ndim", 0) != 0
            or getattr(getattr(value, "dtype", None), "kind", "f") not in "biuf"):
        raise TypeError(f"has to be a number, not {kind_of(value)}")
    try:
        number = float(value)
    except OverflowError:
        number = math.inf
    except (TypeError, ValueError):
        raise TypeError(f"has to be a number, not {kind_of(value)}") from None
    if math.isinf(number) and value != number:
        raise OverflowError("is beyond the range of a Double")
    return number


def to_single(value: Any) -> float:
    number = to_double(value)
    if abs(number) >= _LARGEST_SINGLE and not math.isinf(number):
        raise OverflowError(f"is {number!r}, beyond the range of a Single")
    return number


def to_long(value: Any) -> int:
    try:
        number = operator.index(value)
    except TypeError:
        real = to_double(value)
        if not real.is_integer():
            raise TypeError(f"has to be a whole number, not {real!r}") from None
        number = int(real)
    if not -_LARGEST_LONG - 1 <= number <= _LARGEST_LONG:
        raise OverflowError(f"is {number}, beyond the range of a Long")
    return number


def to_boolean(value: Any) -> int:
    if isinstance(value, bool):
        return -1 if value else 0
    try:
        return -1 if to_double(value) != 0 else 0
    except TypeError:
        raise TypeError(f"has to be True or False, not {kind_of(value)}") from None


def to_text(value: Any) -> str:
    if not isinstance(value, str):
        raise TypeError(f"has to be a text, not {kind_of(value)}")
    return value


def to_date(value: Any) -> float:
    """The automation date of a date: days since 1899-12-30 with the time of day as their fraction,
    which before that day is unsigned."""
    if type(value).__module__ == "numpy" and type(value).__name__ == "datetime64":
        value = value.astype("datetime64[us]").item()
        if value is None:
            raise ValueError("is NaT, no date")
        if isinstance(value, int):
            raise ValueError(f"is not in the years {_FIRST_YEAR} to 9999, which dates have here")
    if not isinstance(value, datetime.date):
        raise TypeError(f"has to be a date (datetime, datetime64, Timestamp), not {kind_of(value)}")
    if value != value:
        raise ValueError("is NaT, no date")
    if not isinstance(value, datetime.datetime):
        value = datetime.datetime(value.year, value.month, value.day)
    if value.tzinfo is not None:
        raise ValueError("has a time zone; dates here are local ones: .replace(tzinfo=None), or "
                         ".tz_localize(None) of pandas")
    if value.year < _FIRST_YEAR:
        raise ValueError(f"is before the year {_FIRST_YEAR}, with which dates begin here")
    since = value - _EPOCH
    fraction = (since.seconds + since.microseconds / 1e6) / 86400
    serial = since.days + fraction if since.days >= 0 else since.days - fraction
    # The last microseconds of a day are not to become another.
    return serial if math.trunc(serial) == since.days else math.nextafter(serial, 0.0)


def from_date(value: float) -> datetime.datetime:
    """The date of an automation date, to the millisecond."""
    whole = math.trunc(value)
    thousandths = round(abs(value - whole) * 86400e3)
    if whole == _LAST_DAY:
        thousandths = min(thousandths, 86_399_999)
    return _EPOCH + datetime.timedelta(days=whole, milliseconds=thousandths)


TO: dict[str, Callable[[Any], Any]] = {
    "Single": to_single, "Double": to_double, "Long": to_long, "Boolean": to_boolean,
    "Date": to_date, "String": to_text}
FROM: dict[str, Callable[[Any], Any]] = {
    "Single": float, "Double": float, "Long": int, "Boolean": bool, "Date": from_date,
    "String": lib.text_of}
