"""Classes, members and arguments as the component describes itself."""

from __future__ import annotations

import functools
from dataclasses import dataclass
from enum import IntEnum

from . import _library as lib
from ._enumerations import enumeration


@dataclass(frozen=True)
class Type:
    """A declared type: "Single", "Double", "Long", "Boolean", "Date", "String" or "" for none; and
    the number of dimensions of an array of these, 0 for a single value."""

    name: str
    rank: int

    @staticmethod
    def of(text: str) -> Type:
        name, bracket, _ = text.partition("(")
        return Type(name, 0 if not bracket else 2 if text.endswith("(,)") else 1)

    def __str__(self) -> str:
        return self.name + ("", "()", "(,)")[self.rank]


_LONG = Type("Long", 0)


@dataclass(frozen=True)
class Argument:
    name: str
    type: Type
    direction: str  # "in", "in,ref", "in,lent", "out" or "in,out"
    optional: bool
    default: object

    @property
    def is_input(self) -> bool:
        return self.direction != "out"

    @property
    def is_output(self) -> bool:
        return self.direction in ("out", "in,out")


@dataclass(frozen=True)
class Member:
    class_name: str
    kind: str  # "method", "get" or "let"
    name: str
    id: int
    result: Type
    help: str
    arguments: tuple[Argument, ...]

    @property
    def inputs(self) -> tuple[Argument, ...]:
        return tuple(a for a in self.arguments if a.is_input)

    @property
    def outputs(self) -> tuple[Argument, ...]:
        return tuple(a for a in self.arguments if a.is_output)

    @property
    def elementwise(self) -> bool:
        """Whether single values may be arrays, with an array of results: everything that comes
        back has to be a number or a truth, and something that goes in."""
        back = [a.type for a in self.outputs] + ([self.result] if self.result.name else [])
        single = ("Single", "Double", "Long", "Boolean")
        return (self.kind == "method" and all(t.rank == 0 and t.name in single for t in back)
                and any(a.type.rank == 0 and a.type.name in single for a in self.inputs))

    @functools.cached_property
    def _values(self) -> list[list[str]]:
        return lib.describe(f"vq140Analyse.{self.class_name}.{self.name}")

    @functools.cached_property
    def words(self) -> dict[str, list[str]]:
        """The words that arguments are one of, by argument."""
        known: dict[str, list[str]] = {}
        for argument, word, *number in self._values:
            if not number:
                known.setdefault(argument, []).append(word)
        return known

    @functools.cached_property
    def numbers(self) -> dict[str, type[IntEnum]]:
        """The enumerations that arguments are one of, by argument."""
        if not any(a.type == _LONG and a.is_input for a in self.arguments):
            return {}
        names: dict[tuple[str, str, str], list[tuple[str, int]]] = {}
        for argument, name, *rest in self._values:
            if rest:
                number, of, text = rest
                names.setdefault((argument, of, text), []).append((name, int(number)))
        return {argument: enumeration(of, text, numbers)
                for (argument, of, text), numbers in names.items()}


@dataclass(frozen=True)
class Class:
    programmatic_id: str
    name: str
    help: str
    class_id: str
    members: tuple[Member, ...]


def _default(text: str, type: Type) -> object:
    if type.name == "String":
        return text[1:-1]
    return text == "True" if type.name == "Boolean" else float(text)


def _member(class_name: str, fields: list[str]) -> Member:
    kind, name, number, result, help_text, *rest = fields
    arguments = []
    for k in range(0, len(rest), 4):
        type = Type.of(rest[k + 1])
        optional = rest[k + 3].startswith("optional=")
        default = _default(rest[k + 3][len("optional="):], type) if optional else None
        arguments.append(Argument(rest[k], type, rest[k + 2], optional, default))
    return Member(class_name, kind, name, int(number), Type.of(result), help_text,
                  tuple(arguments))


@functools.cache
def classes() -> tuple[Class, ...]:
    return tuple(
        Class(programmatic_id, name, help_text, class_id,
              tuple(_member(name, fields) for fields in lib.describe(programmatic_id)))
        for programmatic_id, name, help_text, class_id in lib.describe())
