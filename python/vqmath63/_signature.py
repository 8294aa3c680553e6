"""What a member takes and gives, in words: for messages, help and inspect.signature."""

from __future__ import annotations

import collections
import inspect
from typing import Any

from ._description import Argument, Member, Type
from ._enumerations import told
from ._names import listed

_PYTHON = {"Single": "float", "Double": "float", "Long": "int", "Boolean": "bool",
           "Date": "datetime", "String": "str", "": "None"}

_row_types: dict[tuple[str, str], Any] = {}


def row_type(member: Member, fields: list[str]) -> Any:
    """The named tuple of what a member brings back, which may go to another process."""
    key = (member.class_name, member.name)
    if key not in _row_types:
        make: Any = collections.namedtuple
        plain = make(f"{member.name}_result", fields)
        _row_types[key] = type(plain.__name__, (plain,), {
            "__slots__": (), "__module__": __package__, "__doc__": plain.__doc__,
            "__reduce__": lambda row: (_row_again, (*key, tuple(row)))})
    return _row_types[key]


def _row_again(class_name: str, name: str, values: tuple[Any, ...]) -> Any:
    return _row_types[class_name, name](*values)


def takes(member: Member) -> str:
    names = (f"[{a.name}]" if a.optional else a.name for a in member.inputs)
    return "(" + ", ".join(names) + ")"


def comes_back(member: Member) -> str:
    only_back = [a.name for a in member.outputs if not a.is_input]
    if not only_back:
        return ""
    if len(only_back) == 1:
        return f"; {only_back[0]} comes back as a result"
    return f"; {listed(only_back)} come back as results"


def _input_type(member: Member, argument: Argument) -> str:
    if argument.type.rank:
        return "ArrayLike"
    name = _PYTHON[argument.type.name]
    if argument.name in member.numbers:
        name = f"{member.numbers[argument.name].__name__} | {name}"
    return f"{name} | ArrayLike" if member.elementwise and name != "str" else name


def _result_type(back: list[tuple[int, Type, Argument | None]], row: Any) -> str:
    if row is not None:
        return str(row.__name__)
    for _, type, _ in back:
        return "ndarray" if type.rank else _PYTHON[type.name]
    return "None"


def signature(member: Member, back: list[tuple[int, Type, Argument | None]],
              row: Any) -> inspect.Signature:
    kinds = inspect.Parameter
    parameters = [kinds("self", kinds.POSITIONAL_ONLY)]
    for a in member.inputs:
        default = a.default if a.optional else kinds.empty
        parameters.append(kinds(a.name, kinds.POSITIONAL_OR_KEYWORD, default=default,
                                annotation=_input_type(member, a)))
    return inspect.Signature(parameters, return_annotation=_result_type(back, row))


def _describe_type(argument: Argument) -> str:
    if argument.type.rank:
        return f"array of {argument.type.name}, {argument.type.rank} dimension" \
               + "s" * (argument.type.rank > 1)
    return argument.type.name


def documentation(member: Member, back: list[tuple[int, Type, Argument | None]]) -> str:
    lines = [member.help, ""]
    for a in member.inputs:
        line = f"{a.name}: {_describe_type(a)}"
        if a.direction == "in,out":
            line += ", comes back changed"
        if a.name in member.numbers:
            numbers = member.numbers[a.name]
            line += f", or {numbers.__name__}: {listed(told(numbers))}"
        lines.append(line)
    if back:
        fields = [f"{'the result' if a is None else a.name} ({type})" for _, type, a in back]
        lines.append(f"Returns {listed(fields)}.")
    if member.elementwise:
        lines.append("Numbers may be arrays: a result then is an array of that shape.")
    return "\n".join(lines)


def property_text(member: Member) -> str:
    """The help of a property, with the words or the numbers that it may be set to."""
    text = member.help
    for words in member.words.values():
        text += f" One of the words {listed(words)}."
    for numbers in member.numbers.values():
        text += f" One of {numbers.__name__}: {listed(told(numbers))}."
    return text
