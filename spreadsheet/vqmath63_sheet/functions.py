"""The component's methods as functions of cells; all follows from its description.

An argument that a method only writes is left out. What comes back stands side by side, arrays as
columns, without the truth that tells of success: where that is False there is no result. A method
that leaves its results to the properties of its object returns their names and values, or the one
that is asked for. Properties that can be set are further arguments, which may be left out. Where one number is wanted a range of
them may be given: each has its own result, or its own error."""

import datetime
import itertools
import threading
from dataclasses import dataclass
from typing import Any

import vqmath63
from vqmath63._description import Type, classes
from vqmath63._names import listed, nearest

from . import cells
from .cells import CellError

SUCCESS = "qOK"
FIRST_DAY = datetime.datetime(1899, 12, 30)
_SLICE = 256  # calls that are made one by one when one of them fails

# Methods that no cell is to call: they act on the program's log.
LEFT_OUT = {("ztAnalyseInfo", "CloseDown")}
# Arrays that a method wants to be there already, and those whose length they have.
AS_LONG_AS = {("ztDifferentiate", "FirstDerivative", "dydx"): "xVals"}


@dataclass(frozen=True)
class Parameter:
    name: str
    type: Type
    optional: bool = False
    numbers: Any = None  # the enumeration it may be told by
    setting: bool = False  # a property, set before the call
    help: str = ""


ONLY = Parameter("only", Type("String", 0), True,
                 help="the name of one of its results, such as xBar: that number alone")


class Function:
    """A function of cells: `name` follows "VQ.", `identifier` is its name in files."""

    name = ""
    identifier = ""
    help = ""
    parameters: tuple = ()

    @property
    def wants_document(self):
        return any(p.type.name == "Date" for p in self.parameters)

    def evaluate(self, given, first_day=FIRST_DAY):
        """Rows of cells; a CellError among them, or raised, is an error."""
        raise NotImplementedError


def _listed(value):
    """Whatever the package returns in lists, numbers and texts."""
    return value.tolist() if hasattr(value, "tolist") else value


class Member(Function):
    """A method of a class."""

    def __init__(self, of, member):
        self.member = member
        self.name = member.name.upper()
        self.identifier = member.name.replace("_", "")
        self.help = member.help
        self._class = getattr(vqmath63, of.name)
        self._objects = {}
        lets = [m for m in of.members if m.kind == "let"]
        self._readable = [m.name for m in of.members if m.kind == "get" and not m.arguments]
        made = []
        for a in member.inputs:
            if (of.name, member.name, a.name) not in AS_LONG_AS:
                made.append(Parameter(a.name, a.type, a.optional, member.numbers.get(a.name)))
        self._settings_at = len(made)
        for let in lets:
            value = let.arguments[0]
            made.append(Parameter(let.name, value.type, True, let.numbers.get(value.name), True,
                                  let.help))
        self.parameters = tuple(made)
        self._long = {a.name: AS_LONG_AS[of.name, member.name, a.name] for a in member.inputs
                      if (of.name, member.name, a.name) in AS_LONG_AS}
        self._back = ["result"] * bool(member.result.name) + [a.name for a in member.outputs]
        self._summary = self._back == [SUCCESS] and bool(self._readable)
        self._worked_out = None
        if self._summary:
            self.parameters += (ONLY,)

    def _object(self, given):
        """An object to call: of its own where the call changes it, else this thread's."""
        if self._back == [SUCCESS] or len(given) > self._settings_at:
            return self._class()
        thread = threading.get_ident()
        if thread not in self._objects:
            self._objects[thread] = self._class()
        return self._objects[thread]

    def evaluate(self, given, first_day=FIRST_DAY):
        if len(given) > len(self.parameters):
            raise CellError(cells.PARAMETERS, f"{self.name} takes {len(self.parameters)} arguments")
        named, ranges, rows_given, only = {}, {}, [], None
        of = self._object(given)
        for parameter, cell in itertools.zip_longest(self.parameters, given):
            name = parameter.name
            if cell is None:
                if not parameter.optional:
                    raise CellError(cells.PARAMETERS, f"{name} is missing")
                continue
            if parameter.type.rank:
                value = self._array(parameter, cell)
                if parameter.type.rank == 1 and cells.is_range(cell):
                    rows_given.append(len(cell) == 1)
            elif cells.is_range(cell):
                if not self.member.elementwise or parameter.setting or parameter.type.name == "String":
                    raise CellError(cells.PARAMETERS, f"{name} is a range; it has to be one cell")
                ranges[name] = (parameter, cell)
                continue
            else:
                value = cells.scalar(cell, parameter, first_day)
            if parameter is ONLY:
                only = value
            elif parameter.setting:
                setattr(of, name, value)
            else:
                named[name] = value
        for name, other in self._long.items():
            named[name] = [0.0] * len(named[other] or ())
        method = getattr(of, self.member.name)
        if ranges:
            return _Many(method, named, ranges, self).evaluate(first_day)
        parts = self._parts(method(**named))
        if self._summary:
            return self._results(of, only)
        rows = cells.side_by_side(parts)
        if rows_given and all(rows_given):  # arrays that lie in rows have results in rows
            rows = [list(row) for row in zip(*rows)]
        return rows

    def _array(self, parameter, cell):
        if parameter.type.rank == 2:
            return cells.table(cell, parameter.name)
        values = cells.column(cell, parameter.name, parameter.type.name)
        if values is not None and parameter.type.name == "Boolean":
            return [value != 0 for value in values]
        return values

    def _parts(self, result):
        values = result if len(self._back) > 1 else (result,)
        parts = [(name, _listed(value)) for name, value in zip(self._back, values)]
        if len(parts) > 1 and (SUCCESS, False) in parts:
            raise CellError(cells.NOT_AVAILABLE, f"{self.member.name}: there is no result")
        return [value for name, value in parts if name != SUCCESS or len(parts) == 1]

    def _results(self, of, only):
        names = self.result_names()
        if only is None:
            return [[name, getattr(of, name)] for name in names]
        name = next((name for name in names if name.lower() == only.lower()), None)
        if name is None:
            raise CellError(cells.VALUE, f"'{only}' is none of the results{nearest(only, names)}: "
                            + listed(names))
        return [[getattr(of, name)]]

    def result_names(self):
        """The properties that the method works out: those that a call on some numbers leaves other
        than they are at first."""
        if self._worked_out is None:
            numbers = [[k + 2.0, k * k + 3.0, 2.0 * k + 5, 2.0 * k + 5] for k in range(9)]
            tried, fresh = self._class(), self._class()
            getattr(tried, self.member.name)(*numbers[:len(self.member.inputs)])
            self._worked_out = [name for name in self._readable
                                if getattr(tried, name) != getattr(fresh, name)]
        return self._worked_out


class _Many:
    """The calls of a method over ranges where single numbers are wanted: of one size, or a column
    and a row, which make a table."""

    def __init__(self, method, named, ranges, function):
        self.method, self.named, self.function = method, named, function
        sizes = [(len(cell), len(cell[0])) for _, cell in ranges.values()]
        self.height, self.width = (max(size[k] for size in sizes) for k in (0, 1))
        if any(h not in (1, self.height) or w not in (1, self.width) for h, w in sizes):
            told = [f"{name} {len(c)} x {len(c[0])}" for name, (_, c) in ranges.items()]
            raise CellError(cells.PARAMETERS, "the ranges do not go together: " + ", ".join(told))
        self.ranges = ranges

    def _values(self, parameter, cell, first_day):
        if parameter.type.name == "Double" and len(cell) == self.height and len(cell[0]) == self.width:
            plain = list(itertools.chain.from_iterable(cell))
            if set(map(type, plain)) == {float}:
                return plain
        made = []
        for k in range(self.height):
            row = cell[k if len(cell) > 1 else 0]
            for j in range(self.width):
                try:
                    made.append(cells.scalar(row[j if len(row) > 1 else 0], parameter, first_day))
                except CellError as error:
                    made.append(error)
        return made

    def evaluate(self, first_day):
        given = {name: self._values(parameter, cell, first_day)
                 for name, (parameter, cell) in self.ranges.items()}
        count = self.height * self.width
        if any(CellError in map(type, values) for values in given.values()):
            made = [next((v for v in values if isinstance(v, CellError)), None)
                    for values in zip(*given.values())]
            good = [k for k in range(count) if made[k] is None]
        else:
            made, good = [None] * count, range(count)
        if good:
            self._call(given, good, made)
        return self._shaped(made)

    def _call(self, given, places, made):
        """The calls of some places; where some fail, in slices, and these one by one."""
        try:
            if len(places) == 1:
                one = {name: values[places[0]] for name, values in given.items()}
                made[places[0]] = self.function._parts(self.method(**self.named, **one))
                return
            result = self.method(**self.named, **{
                name: [values[k] for k in places] for name, values in given.items()})
        except (vqmath63.Error, CellError) as error:
            if len(places) == 1:
                made[places[0]] = error
                return
            step = _SLICE if len(places) > _SLICE else 1
            for begin in range(0, len(places), step):
                self._call(given, places[begin:begin + step], made)
            return
        if self.function._back == ["result"]:
            for k, value in zip(places, _listed(result)):
                made[k] = [value]
            return
        columns = result if len(self.function._back) > 1 else (result,)
        for k, *values in zip(places, *map(_listed, columns)):
            try:
                made[k] = self.function._parts(tuple(values) if len(values) > 1 else values[0])
            except CellError as error:
                made[k] = error

    def _shaped(self, made):
        outputs = len([name for name in self.function._back if name != SUCCESS]) or 1
        each = [[cells.as_cell_error(v)] * outputs if isinstance(v, Exception) else v for v in made]
        if self.width == 1:  # results of one place side by side
            return each
        planes = [[[each[k * self.width + j][out] for j in range(self.width)]
                   for k in range(self.height)] for out in range(outputs)]
        if self.height == 1 and self.width > 1:
            return [row for plane in planes for row in plane]
        return [sum((plane[k] for plane in planes), []) for k in range(self.height)]


def members():
    """The functions of all methods."""
    return [Member(of, member) for of in classes() for member in of.members
            if member.kind == "method" and (of.name, member.name) not in LEFT_OUT]
