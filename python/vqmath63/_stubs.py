"""Writes the package's type stubs from the component's description:
python3 -m vqmath63._stubs > vqmath63/__init__.pyi"""

from __future__ import annotations

import sys
from enum import IntEnum

from ._calls import Call
from ._description import Argument, Class, Member, Type, classes
from ._enumerations import all_made, plain

_HEAD = '''\
# Made from the component's description by: python3 -m vqmath63._stubs
import datetime
from collections.abc import Sequence
from enum import IntEnum
from typing import Any, NamedTuple, overload

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._accumulation import accumulate as accumulate
from ._arrays import ConversionWarning as ConversionWarning
from ._arrays import conversions as conversions
from ._messages import Error as Error
from ._messages import ErrorWarning as ErrorWarning
from ._messages import Line as Line
from ._messages import errors as errors
from ._messages import lines as lines
from ._objects import Object as Object
from ._tables import Fit as Fit
from ._tables import derivative as derivative
from ._tables import fit as fit
from ._tables import inside as inside
from ._tables import statistics as statistics
from ._tables import volume_factor as volume_factor

__version__: str
Many = NDArray[Any] | Sequence[float]

'''
_SCALAR = {"Single": "float", "Double": "float", "Long": "int", "Boolean": "bool",
           "Date": "datetime.datetime", "String": "str", "": "None"}
_GIVEN = dict(_SCALAR, Date="datetime.date | np.datetime64")
_ELEMENT = {"Single": "np.float32", "Double": "np.float64", "Long": "np.int32",
            "Boolean": "np.bool_"}


def _back(type: Type, many: bool = False) -> str:
    if type.rank or many:
        return f"NDArray[{_ELEMENT[type.name]}]"
    return _SCALAR[type.name]


def _given(member: Member, argument: Argument, many: bool) -> str:
    if argument.type.rank:
        return "ArrayLike | None"
    word = _GIVEN[argument.type.name]
    if argument.name in member.numbers:
        word = f"{member.numbers[argument.name].__name__} | {word}"
    return f"{word} | Many" if many and word != "str" else word


def _default(argument: Argument) -> str:
    return " = ..." if argument.optional else ""


def _rows(call: Call) -> list[str]:
    """The named tuples of what comes back, for single values and for arrays."""
    lines: list[str] = []
    for many in (False, True) if call.elementwise else (False,):
        if call.row is None:
            continue
        name = f"_{call.member.class_name}_{call.row.__name__}{'s' * many}"
        lines.append(f"class {name}(NamedTuple):")
        for field, (_, type, _) in zip(call.row._fields, call.back):
            lines.append(f"    {field}: {_back(type, many)}")
        lines.append("")
    return lines


def _result(call: Call, many: bool) -> str:
    if call.row is not None:
        return f"_{call.member.class_name}_{call.row.__name__}{'s' * many}"
    return _back(call.back[0][1], many) if call.back else "None"


def _method(call: Call) -> list[str]:
    lines = []
    # One signature for single values, and one for each first argument that may be an array.
    places: list[int | None] = [None]
    if call.elementwise:
        places += [k for k, a in enumerate(call.inputs)
                   if not a.type.rank and a.type.name != "String"]
    for place in places:
        parameters = []
        for k, a in enumerate(call.inputs):
            many = place is not None and k >= place
            word = "Many" if k == place else _given(call.member, a, many)
            parameters.append(f"{a.name}: {word}{_default(a) if k != place else ''}")
        if len(places) > 1:
            lines.append("    @overload")
        lines.append(f"    def {call.member.name}({', '.join(['self', *parameters])}) -> "
                     f"{_result(call, place is not None)}: ...")
    return lines


def _class(described: Class) -> list[str]:
    rows: list[str] = []
    body: list[str] = []
    properties: list[str] = []
    lets = {m.name: m for m in described.members if m.kind == "let"}
    seen: set[str] = set()
    for member in described.members:
        call = Call(member)
        rows += _rows(call)
        if member.kind == "method" or (member.kind == "get" and call.inputs):
            body += _method(call)
    for name in dict.fromkeys(m.name for m in described.members if m.kind != "method"):
        get = next((m for m in described.members if m.name == name and m.kind == "get"), None)
        if get is not None and get.arguments:
            continue
        given = _given(lets[name], lets[name].arguments[0], False) if name in lets else "Any"
        # A checker may hold what is set to what is read; what is never read has the type to set.
        read = _back(get.result) if get is not None else given
        body += ["    @property", f"    def {name}(self) -> {read}: ..."]
        if name in lets:
            body += [f"    @{name}.setter", f"    def {name}(self, value: {given}) -> None: ..."]
            properties.append(f"{name}: {given} = ...")
        seen.add(name)
    words = ", ".join(["self", *(["*", *properties] if properties else [])])
    return [*rows, f"class {described.name}(Object):",
            f"    def __init__({words}) -> None: ...", *body, "",
            f"{described.name.removeprefix('zt')} = {described.name}", ""]


def _enumerations(names: dict[str, type[IntEnum]]) -> list[str]:
    lines: list[str] = []
    for name, made in names.items():
        if name == made.__name__:
            lines += [f"class {name}(IntEnum):",
                      *(f"    {each} = {number.value}"
                        for each, number in made.__members__.items()),
                      "", f"{plain(name)} = {name}", ""]
    return lines


def stubs() -> str:
    body = [line for described in classes() for line in _class(described)]
    return _HEAD + "\n".join(_enumerations(all_made()) + body)


if __name__ == "__main__":
    sys.stdout.write(stubs())
