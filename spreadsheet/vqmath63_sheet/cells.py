"""What cells hold, as the component takes it, and what comes of it, as cells show it.

Calc hands over a number or a text for a cell, rows of these for a range, and nothing for an argument
that was left out. An empty cell comes as an empty text."""

import array
import datetime
import math
import struct

# Errors by their numbers in Calc: what a cell shows, and what to use it for.
ARGUMENT = 502  # Err:502  outside a function's domain
NUMBER = 503  # #NUM!    overflow
PARAMETERS = 504  # Err:504  left out, too many, of the wrong shape
VALUE = 519  # #VALUE!  of the wrong kind
DIVISION = 532  # #DIV/0!
NOT_AVAILABLE = 32767  # #N/A     there is no result

_OF_NUMBER = {5: ARGUMENT, 6: NUMBER, 11: DIVISION}  # of the component's errors; else VALUE


class CellError(Exception):
    """What a cell shows as an error, with words for whoever asks."""

    def __init__(self, code, words):
        super().__init__(words)
        self.code = code


def as_cell_error(error):
    """Any exception as one."""
    if isinstance(error, CellError):
        return error
    number = getattr(error, "number", None)
    if number is not None:
        return CellError(_OF_NUMBER.get(number, VALUE), str(error))
    code = NUMBER if isinstance(error, OverflowError) else VALUE
    return CellError(code, str(error) or type(error).__name__)


def error_value(code):
    """The number that Calc shows as an error: a NaN with the error in its lower half."""
    return struct.unpack("<d", struct.pack("<II", code, 0x7FF80000))[0]


def is_range(cell):
    """Whether an argument is of more than one cell."""
    return isinstance(cell, tuple) and (len(cell) != 1 or len(cell[0]) != 1)


def single(cell):
    """An argument of one cell."""
    return cell[0][0] if isinstance(cell, tuple) else cell


def _refusal(value, name, wanted):
    if value == "":
        return CellError(VALUE, f"{name} is empty; it has to be {wanted}")
    told = "a number" if isinstance(value, float) else f"'{value}'"
    return CellError(VALUE, f"{name} is {told}; it has to be {wanted}")


def number(value, name):
    if not isinstance(value, (int, float)):
        raise _refusal(value, name, "a number")
    return float(value)


def scalar(cell, parameter, first_day):
    """A single value of a parameter's type. Numbers that have names may be told by these."""
    name, kind = parameter.name, parameter.type.name
    value = single(cell)
    if kind == "String":
        if not isinstance(value, str):
            raise _refusal(value, name, "a text")
        return value
    if parameter.numbers and isinstance(value, str) and value:
        by_name = {n.lower(): n for n in parameter.numbers.__members__}
        if value.lower() not in by_name:
            raise _refusal(value, name, f"a number, or one of {', '.join(by_name.values())}")
        return parameter.numbers[by_name[value.lower()]]
    real = number(value, name)
    if kind == "Boolean":
        return real != 0
    if kind == "Date":
        return moment(real, first_day)
    if kind == "Long" and not real.is_integer():
        raise CellError(VALUE, f"{name} is {real!r}; it has to be a whole number")
    return real


def moment(days, first_day):
    """The date of a number of days since the document's first day."""
    try:
        return first_day + datetime.timedelta(milliseconds=round(days * 86400e3))
    except OverflowError:
        raise CellError(NUMBER, f"{days!r} is no date") from None


def rows_of(cell):
    return cell if isinstance(cell, tuple) else () if cell is None else ((cell,),)


def _filled(rows):
    """Rows without the empty ones at their end."""
    last = len(rows)
    while last and all(value == "" for value in rows[last - 1]):
        last -= 1
    return rows[:last]


def _numbers(values, name, place_of):
    try:
        return array.array("d", values)
    except TypeError:
        at = next(k for k, value in enumerate(values) if not isinstance(value, (int, float)))
        raise _refusal(values[at], f"{place_of(at)} of {name}", "a number") from None


def column(cell, name, kind="Double"):
    """The numbers of a column or a row of cells, up to the last that is filled; None without any."""
    rows = rows_of(cell)
    if len(rows) == 1:
        values = list(rows[0])
        while values and values[-1] == "":
            values.pop()
    else:
        width = max(map(len, rows), default=0)
        if width > 1:
            raise CellError(PARAMETERS, f"{name} has {width} columns; it has to be one column or "
                                        "one row")
        values = [row[0] for row in _filled(rows)]
    if not values:
        return None
    made = _numbers(values, name, lambda at: f"cell {at + 1}")
    if kind == "Single":  # what the component reads where it lies
        singles = array.array("f", made)
        if math.inf not in singles and -math.inf not in singles:
            return singles
    return made


def table(cell, name):
    """The numbers of a range, row by row, up to the last row that is filled; None without any."""
    rows = _filled(rows_of(cell))
    made = []
    for at, row in enumerate(rows):
        def place(k, at=at):
            return f"row {at + 1}, column {k + 1}"
        made.append(list(_numbers(row, name, place)))
    return made or None


def side_by_side(parts):
    """Rows of cells: of each part a column, or its columns; shorter ones are filled up."""
    blocks = []
    for part in parts:
        if not isinstance(part, list):
            part = [[part]]
        elif part and not isinstance(part[0], list):
            part = [[value] for value in part]
        blocks.append(part)
    height = max(map(len, blocks), default=0)
    if height == 0:
        raise CellError(NOT_AVAILABLE, "the result has no elements")
    rows = [[] for _ in range(height)]
    for block in blocks:
        width = len(block[0]) if block else 1
        for k in range(height):
            rows[k] += block[k] if k < len(block) else [""] * width
    return rows
