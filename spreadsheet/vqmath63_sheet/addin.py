"""All functions of the add-in, and what Calc does with one: call it, and ask why it failed."""

import datetime
import functools
import threading

from vqmath63 import _messages
from vqmath63._names import nearest

from . import cells
from .functions import FIRST_DAY, members
from .shapes import shapes

# In files a function is this name and its identifier in upper case: never to be changed.
SERVICE = "org.vqmath63.Calc"
PREFIX = "VQ."
WHY = "WHY"
WHY_HELP = ("In words, why a function failed: it is called once more. Empty where it did not fail.",
            ("name", "the function, such as \"VQ.INTEGRAL\""),
            ("arguments", "its arguments, as they stand in the formula that failed"))


@functools.cache
def functions():
    """Name -> function, in the order of the component, then the shapes."""
    made = {}
    for each in [*members(), *shapes()]:
        if each.name in made:
            raise ValueError(f"two functions of the name {each.name}")
        made[each.name] = each
    return made


def call(function, given, first_day=FIRST_DAY):
    """Rows of cells for Calc, with errors in their places, and words for the first of them."""
    try:
        rows = function.evaluate(given, first_day)
    except Exception as error:
        failed = cells.as_cell_error(error)
        return ((cells.error_value(failed.code),),), str(failed)
    words = ""
    for row in rows:
        for k, value in enumerate(row):
            if isinstance(value, cells.CellError):
                words = words or str(value)
                row[k] = cells.error_value(value.code)
            elif isinstance(value, bool):  # which Calc shows as 0
                row[k] = float(value)
    return tuple(map(tuple, rows)), words


def why(name, given, first_day=FIRST_DAY):
    """Why a call fails, in words."""
    known = functions()
    upper = name.upper().removeprefix(PREFIX)
    if upper not in known:
        return f"there is no function {name}" + nearest(upper, known)
    while given and given[-1] is None:
        given = given[:-1]
    return call(known[upper], given, first_day)[1]


def first_day_of(document):
    """The day that a document's dates count from."""
    try:
        day = document.getPropertyValue("NullDate")
        return datetime.datetime(day.Year, day.Month, day.Day)
    except Exception:  # not a document that has one
        return FIRST_DAY


_lines = {}  # thread -> the list of its error lines


def enter():
    """What each call of Calc's begins with: LibreOffice makes a new thread state of Python for it."""
    _messages.resume(_lines.setdefault(threading.get_ident(), []))


def _method(function):
    """The method of the component of Calc."""
    count = len(function.parameters)

    def without(self, *given):
        enter()
        return call(function, _trimmed(given[:count]))[0]

    def with_document(self, document, *given):
        enter()
        return call(function, _trimmed(given[:count]), first_day_of(document))[0]

    return with_document if function.wants_document else without


def _trimmed(given):
    last = len(given)
    while last and given[last - 1] is None:
        last -= 1
    return given[:last]


def methods():
    """Identifier -> Python function, of all functions."""
    made = {f.identifier: _method(f) for f in functions().values()}

    def ask(self, document, name, given):
        enter()
        return ((why(name, given, first_day_of(document)),),)

    made["Why"] = ask
    return made
