"""How a member is called: its arguments bound and converted, the call made, and what comes back put
together. Nothing here knows a member by name; all follows from its description."""

from __future__ import annotations

import ctypes
import struct
from typing import Any

from . import _arrays, _many, _messages, _signature
from . import _library as lib
from ._cells import CELL, COLUMN, MISSING, POINTER, Frame, Scalar
from ._description import Argument, Member
from ._names import listed, nearest
from ._values import FORMAT, FROM, TO

_PLAIN = (float, int, bool, str)
_FLAGS = {"method": lib.METHOD, "get": lib.GET, "let": lib.PUT}


class Call:
    """A member as a function of an object and arguments."""

    def __init__(self, member: Member) -> None:
        self.member = member
        self.name = f"{member.class_name}.{member.name}"
        self.inputs = member.inputs
        self.names = [a.name for a in self.inputs]
        self.count = len(member.arguments)
        self.flags = _FLAGS[member.kind]
        self.elementwise = member.elementwise
        self.frames: list[Frame] = []
        places = [(k, a) for k, a in enumerate(member.arguments)]
        self.loads = [(a, k, None if a.type.rank else Scalar(
            a, k, member.numbers.get(a.name))) for k, a in places if a.is_input]
        self.scalars = [index for index, (_, _, s) in enumerate(self.loads)
                        if s is not None and s.type != "String"]
        # Optional inputs that come back, so that there is something to write to.
        self.come_back = [k for k, a in enumerate(self.inputs) if a.optional and a.is_output]
        self.texts = [CELL * k for k, a in places
                      if a.type.name == "String" and a.type.rank == 0]
        self.empty = [CELL * k for k, a in places if a.direction == "out"] + self.texts
        # What comes back: the cell, its type, and the argument; the result first.
        self.back: list[tuple[int, Any, Argument | None]] = []
        if member.result.name:
            self.back.append((self.count, member.result, None))
        self.back += [(k, a.type, a) for k, a in places if a.is_output]
        fields = ["result" if a is None else a.name for _, _, a in self.back]
        self.row: Any = None
        if len(fields) > 1:
            self.row = _signature.row_type(member, fields)

    # --- the arguments ---

    def bind(self, given: tuple[Any, ...], named: dict[str, Any]) -> list[Any]:
        """A value per input, MISSING for what is left out."""
        bound = list(given)
        if len(bound) > len(self.inputs):
            raise TypeError(f"{self.name} takes {_signature.takes(self.member)}, not "
                            f"{len(bound)} arguments{_signature.comes_back(self.member)}")
        if not named and len(bound) == len(self.inputs):
            return bound
        bound += [MISSING] * (len(self.inputs) - len(bound))
        for name, value in named.items():
            if name not in self.names:
                output = any(a.name == name for a in self.member.outputs)
                words = _signature.comes_back(self.member) if output else (
                    nearest(name, self.names) or f"; it takes {_signature.takes(self.member)}")
                raise TypeError(f"{self.name} has no argument '{name}'" + words)
            k = self.names.index(name)
            if bound[k] is not MISSING:
                raise TypeError(f"{self.name}: '{name}' is given twice")
            bound[k] = value
        missing = [a.name for a, v in zip(self.inputs, bound)
                   if v is MISSING and not a.optional]
        if missing:
            raise TypeError(f"{self.name} takes {_signature.takes(self.member)}; {listed(missing)} "
                            f"{'is' if len(missing) == 1 else 'are'} missing")
        for k in self.come_back:
            if bound[k] is MISSING:
                bound[k] = self.inputs[k].default
        return bound

    def refusal(self, argument: Argument, error: Exception) -> Exception:
        """An error of a value's conversion, with the argument's name before it."""
        value = argument.name if self.member.kind == "method" else "the value"
        return error.__class__(f"{self.name}: {value} {error}")

    def check_word(self, argument: Argument, word: str) -> None:
        known = self.member.words.get(argument.name)
        if known and word.lower() not in known:
            raise ValueError(f"'{word}' is none of the words that it may be{nearest(word, known)}: "
                             f"{listed(known)}")

    # --- one call ---

    def __call__(self, pointer: int, heard: list[str], given: tuple[Any, ...],
                 named: dict[str, Any]) -> Any:
        bound = self.bind(given, named)
        if self.elementwise:
            for k in self.scalars:
                value = bound[k]
                if type(value) not in _PLAIN and _arrays.is_arraylike(value):
                    return _many.many_calls(self, bound, pointer, heard)
        frame = self.frames.pop() if self.frames else Frame(self.count + 1)
        left_out: list[int] = []
        owned: list[int] = []  # cells with arrays of the component's own
        kept: list[Any] = []
        if self.empty:
            frame.clear(self.empty)
        try:
            self.load(frame, bound, left_out, owned, kept)
            code = lib.call_many(pointer, self.member.id, self.flags, 1, frame.columns_at,
                                 self.count, frame.columns_at + COLUMN.size * self.count, None)
            if code < 0:
                heard.clear()
                raise lib.failure(code)
            result = self.results(frame, owned)
        finally:
            if self.texts:
                frame.free_texts(self.texts)
            for offset in owned:
                array = frame.pointer(offset)
                if array:
                    lib.destroy_array(array)
            for k in left_out:
                frame.set_column(k, frame.base + CELL * k, 0)
            self.frames.append(frame)
        if heard:
            _messages.tell(heard, self.name, result)
        return result

    def load(self, frame: Frame, bound: list[Any], left_out: list[int], owned: list[int],
             kept: list[Any]) -> None:
        for (argument, place, scalar), value in zip(self.loads, bound):
            if value is MISSING:
                frame.set_column(place, 0, 0)
                left_out.append(place)
                continue
            try:
                if scalar is None:
                    self.load_array(frame, argument, place, value, owned, kept)
                elif scalar.type == "String":
                    text = TO["String"](value)
                    self.check_word(argument, text)
                    scalar.packer.pack_into(frame.cells, scalar.offset, lib.bstr_of(text))
                else:
                    scalar.packer.pack_into(frame.cells, scalar.offset, scalar.convert(value))
            except (TypeError, ValueError, OverflowError) as error:
                raise self.refusal(argument, error) from None
        # Arrays that only come back are unallocated, and ours from then on.
        owned += [CELL * k for k, type, a in self.back
                  if type.rank and a is not None and not a.is_input]

    def load_array(self, frame: Frame, argument: Argument, place: int, value: Any,
                   owned: list[int], kept: list[Any]) -> None:
        address = 0
        if value is not None:
            block = _arrays.block_of(value, argument.type, f"{argument.name} of {self.name}")
            if argument.is_output:
                address = _arrays.copied(block, argument.type)
            else:
                descriptor = _arrays.lent(block, argument.type)
                kept += (block, descriptor)
                address = ctypes.addressof(descriptor)
        POINTER.pack_into(frame.cells, CELL * place, address)
        if argument.is_output:
            owned.append(CELL * place)

    def results(self, frame: Frame, owned: list[int]) -> Any:
        values = []
        for place, type, _ in self.back:
            offset = CELL * place
            if type.rank:
                address = frame.pointer(offset)
                owned.remove(offset)
                values.append(_arrays.taken(address, type))
            elif type.name == "String" and place == self.count:
                values.append(lib.taken_text(frame.pointer(offset)))
            else:
                stored = struct.unpack_from("@" + FORMAT[type.name], frame.cells, offset)[0]
                values.append(FROM[type.name](stored))
        if self.row is not None:
            return self.row(*values)
        return values[0] if values else None
