"""The component's named numbers, such as quadrature rules, as enumerations of Python."""

from __future__ import annotations

import enum
from collections.abc import Callable
from enum import IntEnum
from typing import Any

from ._names import listed, nearest
from ._values import to_long

_PREFIX = "vq"
_made: dict[str, type[IntEnum]] = {}


def plain(name: str) -> str:
    """A name of the component's without the prefix."""
    return name.removeprefix(_PREFIX)


def enumeration(name: str, text: str, numbers: list[tuple[str, int]]) -> type[IntEnum]:
    """The enumeration of a name, made when it is first asked for; each of its names is there
    without the prefix too."""
    if name not in _made:
        names = numbers + [(plain(each), number) for each, number in numbers]
        make: Any = IntEnum
        made = make(name, names, module=__package__)
        made.__doc__ = text
        _made[name] = made
    return _made[name]


def number_of(numbers: type[IntEnum]) -> Callable[[Any], int]:
    """Converts to a Long a value that may be one of an enumeration, but of no other."""
    def convert(value: Any) -> int:
        if isinstance(value, str):
            of = plain(numbers.__name__)
            near = nearest(f"{of}.{value}", [f"{of}.{name}" for name in numbers.__members__])
            raise TypeError(f"has to be a number or one of {numbers.__name__}, not a "
                            f"str{near}: {listed(told(numbers))}")
        if isinstance(value, enum.Enum) and not isinstance(value, numbers):
            raise TypeError(f"has to be one of {numbers.__name__}, not of "
                            f"{value.__class__.__name__}: {listed(told(numbers))}")
        return to_long(value)
    return convert


def told(numbers: type[IntEnum]) -> list[str]:
    """Its names with their numbers."""
    return [f"{each.name} {each.value}" for each in numbers]


def all_made() -> dict[str, type[IntEnum]]:
    """The enumerations by their names, and by those without the prefix."""
    return _made | {plain(name): made for name, made in _made.items()}
