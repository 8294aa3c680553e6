"""How a member is called: its arguments bound, converted, called once or over arrays, and what
comes back put together. Nothing here knows a member by name; all follows from its description."""

from __future__ import annotations

import collections
import ctypes
import inspect
import struct
from typing import Any

from . import _arrays, _messages
from . import _library as lib
from ._description import Argument, Member
from ._names import listed, nearest
from ._values import FORMAT, FROM, TO

numpy = _arrays.numpy
_MISSING = object()
_CELL = 8
_COLUMN = struct.Struct("@Pq")
_POINTER = struct.Struct("@P")
_PLAIN = (float, int, bool, str)
_FLAGS = {"method": lib.METHOD, "get": lib.GET, "let": lib.PUT}


_row_types: dict[tuple[str, str], Any] = {}


def _row_type(member: Member, fields: list[str]) -> Any:
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


class _Frame:
    """Room for the values of one call: a cell per argument and one for the result, and a column
    over each. Frames are used again; a call within a call takes another."""

    __slots__ = ("cells", "base", "columns", "columns_at")

    def __init__(self, count: int) -> None:
        self.cells = ctypes.create_string_buffer(_CELL * count)
        self.base = ctypes.addressof(self.cells)
        self.columns = ctypes.create_string_buffer(_COLUMN.size * count)
        self.columns_at = ctypes.addressof(self.columns)
        for k in range(count):
            self.set_column(k, self.base + _CELL * k, 0)

    def set_column(self, k: int, first: int, stride: int) -> None:
        _COLUMN.pack_into(self.columns, _COLUMN.size * k, first, stride)


class _Scalar:
    """A single value in its cell."""

    def __init__(self, argument: Argument, place: int) -> None:
        self.name = argument.name
        self.type = argument.type.name
        self.convert = TO[self.type]
        self.packer = struct.Struct("@" + FORMAT[self.type])
        self.offset = _CELL * place
        self.place = place


class Call:
    """A member as a function of an object and arguments."""

    def __init__(self, member: Member) -> None:
        self.member = member
        self.name = f"{member.class_name}.{member.name}"
        self.inputs = member.inputs
        self.names = [a.name for a in self.inputs]
        self.required = sum(not a.optional for a in self.inputs)
        self.count = len(member.arguments)
        self.flags = _FLAGS[member.kind]
        self.elementwise = member.elementwise
        self.frames: list[_Frame] = []
        places = [(k, a) for k, a in enumerate(member.arguments)]
        self.loads = [(a, k, None if a.type.rank else _Scalar(a, k))
                      for k, a in places if a.is_input]
        self.scalars = [index for index, (_, _, s) in enumerate(self.loads)
                        if s is not None and s.type != "String"]
        self.fresh = [_CELL * k for k, a in places if a.direction == "out"]
        self.texts = [_CELL * k for k, a in places
                      if a.type.name == "String" and a.type.rank == 0]
        # What comes back: the cell, its type, and the argument; the result first.
        self.back: list[tuple[int, Any, Argument | None]] = []
        if member.result.name:
            self.back.append((self.count, member.result, None))
        self.back += [(k, a.type, a) for k, a in places if a.is_output]
        fields = ["result" if a is None else a.name for _, _, a in self.back]
        self.row: Any = None
        if len(fields) > 1:
            self.row = _row_type(member, fields)

    # --- the arguments ---

    def bind(self, given: tuple[Any, ...], named: dict[str, Any]) -> list[Any]:
        """A value per input, _MISSING for what is left out."""
        bound = list(given)
        if len(bound) > len(self.inputs):
            raise TypeError(f"{self.name} takes {self.takes()}, not {len(bound)} arguments"
                            + self.comes_back())
        if not named and len(bound) == len(self.inputs):
            return bound
        bound += [_MISSING] * (len(self.inputs) - len(bound))
        for name, value in named.items():
            if name not in self.names:
                output = any(a.name == name for a in self.member.outputs)
                words = self.comes_back() if output else nearest(name, self.names)
                raise TypeError(f"{self.name} has no argument '{name}'" + words)
            k = self.names.index(name)
            if bound[k] is not _MISSING:
                raise TypeError(f"{self.name}: '{name}' is given twice")
            bound[k] = value
        missing = [a.name for a, v in zip(self.inputs, bound)
                   if v is _MISSING and not a.optional]
        if missing:
            raise TypeError(f"{self.name} takes {self.takes()}; {listed(missing)} "
                            f"{'is' if len(missing) == 1 else 'are'} missing")
        return bound

    def takes(self) -> str:
        return "(" + ", ".join(f"[{a.name}]" if a.optional else a.name for a in self.inputs) + ")"

    def comes_back(self) -> str:
        only_back = [a.name for a in self.member.outputs if not a.is_input]
        if not only_back:
            return ""
        if len(only_back) == 1:
            return f"; {only_back[0]} comes back as a result"
        return f"; {listed(only_back)} come back as results"

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
                    return Many(self, bound).call(pointer, heard)
        frame = self.frames.pop() if self.frames else _Frame(self.count + 1)
        left_out: list[int] = []
        owned: list[int] = []  # cells with arrays of the component's own
        kept: list[Any] = []
        cells = frame.cells
        for offset in self.fresh:
            _POINTER.pack_into(cells, offset, 0)
        for offset in self.texts:
            _POINTER.pack_into(cells, offset, 0)
        try:
            self.load(frame, bound, left_out, owned, kept)
            code = lib.call_many(pointer, self.member.id, self.flags, 1, frame.columns_at,
                                 self.count, frame.columns_at + _COLUMN.size * self.count, None)
            if code < 0:
                heard.clear()
                raise lib.failure(code)
            result = self.results(frame, owned)
        finally:
            for offset in self.texts:
                lib.free_text(_POINTER.unpack_from(cells, offset)[0])
            for offset in owned:
                array = _POINTER.unpack_from(cells, offset)[0]
                if array:
                    lib.destroy_array(array)
            for k in left_out:
                frame.set_column(k, frame.base + _CELL * k, 0)
            self.frames.append(frame)
        if heard:
            _messages.tell(heard, self.name, result, None, 1)
        return result

    def load(self, frame: _Frame, bound: list[Any], left_out: list[int], owned: list[int],
             kept: list[Any]) -> None:
        for (argument, place, scalar), value in zip(self.loads, bound):
            if value is _MISSING:
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
        owned += [_CELL * k for k, type, a in self.back
                  if type.rank and a is not None and not a.is_input]

    def load_array(self, frame: _Frame, argument: Argument, place: int, value: Any,
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
        _POINTER.pack_into(frame.cells, _CELL * place, address)
        if argument.is_output:
            owned.append(_CELL * place)

    def results(self, frame: _Frame, owned: list[int]) -> Any:
        values = []
        for place, type, _ in self.back:
            offset = _CELL * place
            if type.rank:
                address = _POINTER.unpack_from(frame.cells, offset)[0]
                owned.remove(offset)
                values.append(_arrays.taken(address, type))
            elif type.name == "String" and place == self.count:
                values.append(lib.taken_text(_POINTER.unpack_from(frame.cells, offset)[0]))
            else:
                stored = struct.unpack_from("@" + FORMAT[type.name], frame.cells, offset)[0]
                values.append(FROM[type.name](stored))
        if self.row is not None:
            return self.row(*values)
        return values[0] if values else None

    # --- what inspect and help show ---

    def signature(self) -> inspect.Signature:
        kinds = inspect.Parameter
        parameters = [kinds("self", kinds.POSITIONAL_ONLY)]
        for a in self.inputs:
            default = a.default if a.optional else kinds.empty
            parameters.append(kinds(a.name, kinds.POSITIONAL_OR_KEYWORD, default=default,
                                    annotation=input_type(a, self.elementwise)))
        return inspect.Signature(parameters, return_annotation=result_type(self))

    def documentation(self) -> str:
        lines = [self.member.help, ""]
        for a in self.inputs:
            word = {"in,out": ", comes back changed"}.get(a.direction, "")
            lines.append(f"{a.name}: {describe_type(a)}{word}")
        if self.back:
            fields = [f"{'the result' if a is None else a.name} ({type})"
                      for _, type, a in self.back]
            lines.append(f"Returns {listed(fields)}.")
        if self.elementwise:
            lines.append("Numbers may be arrays: a result then is an array of that shape.")
        return "\n".join(lines)


_PYTHON = {"Single": "float", "Double": "float", "Long": "int", "Boolean": "bool",
           "Date": "datetime", "String": "str", "": "None"}


def describe_type(argument: Argument) -> str:
    if argument.type.rank:
        return f"array of {argument.type.name}, {argument.type.rank} dimension" \
               + "s" * (argument.type.rank > 1)
    return argument.type.name


def input_type(argument: Argument, elementwise: bool) -> str:
    name = _PYTHON[argument.type.name]
    if argument.type.rank:
        return "ArrayLike"
    return f"{name} | ArrayLike" if elementwise and name != "str" else name


def result_type(call: Call) -> str:
    if call.row is not None:
        return f"{call.row.__name__}"
    for _, type, _ in call.back:
        return "ndarray" if type.rank else _PYTHON[type.name]
    return "None"


class Many:
    """Many calls of a member at once: some of its single values are arrays. Arrays among the
    member's own arguments, and texts, are one for all calls."""

    def __init__(self, call: Call, bound: list[Any]) -> None:
        self.plan = call
        self.bound = bound

    def call(self, pointer: int, heard: list[str]) -> Any:
        plan = self.plan
        if numpy is None:
            return _ListMany(plan, self.bound).call(pointer, heard)
        arrays: dict[int, Any] = {}  # by place of the argument
        labels = None
        for (argument, place, scalar), value in zip(plan.loads, self.bound):
            if scalar is None or scalar.type == "String" or value is _MISSING:
                continue
            if not _arrays.is_arraylike(value):
                continue
            try:
                labels = same_labels(labels, value)
                arrays[place] = _arrays.converted(value, scalar.type,
                                                  f"{argument.name} of {plan.name}")
            except (TypeError, ValueError, OverflowError) as error:
                raise plan.refusal(argument, error) from None
        try:
            shape = numpy.broadcast_shapes(*(a.shape for a in arrays.values()))
        except ValueError:
            told = [f"{plan.member.arguments[k].name} {a.shape}" for k, a in arrays.items()]
            raise ValueError(f"{plan.name}: the shapes of {listed(told)} do not go "
                             "together") from None
        calls = 1
        for n in shape:
            calls *= n
        frame = _Frame(plan.count + 1)
        kept: list[Any] = []
        owned: list[int] = []
        single = [0.0 if k in arrays else v
                  for k, v in zip((place for _, place, _ in plan.loads), self.bound)]
        try:
            plan.load(frame, single, [], owned, kept)
            for place, a in arrays.items():
                kept.append(self.spread(frame, place, a, shape, plan.member.arguments[place]))
            outputs = []
            for place, type, _ in plan.back:
                out = numpy.zeros(shape, _arrays.DTYPE[type.name])
                frame.set_column(place, out.__array_interface__["data"][0], out.itemsize)
                outputs.append(out)
            failures = lib.Failures(0, -1)
            code = lib.call_many(pointer, plan.member.id, plan.flags, calls, frame.columns_at,
                                 plan.count, frame.columns_at + _COLUMN.size * plan.count,
                                 ctypes.byref(failures))
        finally:
            for offset in plan.texts:
                lib.free_text(_POINTER.unpack_from(frame.cells, offset)[0])
        values = [labelled(out != 0 if type.name == "Boolean" else out, labels, shape)
                  for out, (_, type, _) in zip(outputs, plan.back)]
        result = plan.row(*values) if plan.row is not None else values[0]
        finish(plan, code, heard, result, failures, calls)
        return result

    def spread(self, frame: _Frame, place: int, a: Any, shape: tuple[int, ...],
               argument: Argument) -> Any:
        """Lays a column over an array, where it lies if that is possible."""
        changed = argument.direction in ("in,lent", "in,out")  # could be written
        plain = a.dtype.isnative and not changed
        if plain and a.size == 1:
            frame.set_column(place, a.__array_interface__["data"][0], 0)
        elif plain and a.shape == shape and a.ndim == 1:
            frame.set_column(place, a.__array_interface__["data"][0], a.strides[0])
        else:
            if not (plain and a.shape == shape and a.flags.c_contiguous):
                a = numpy.array(numpy.broadcast_to(a, shape), a.dtype.newbyteorder("="), order="C")
            frame.set_column(place, a.__array_interface__["data"][0], a.itemsize)
        return a


class _ListMany:
    """The same without NumPy: lists of one length, and lists as results."""

    def __init__(self, call: Call, bound: list[Any]) -> None:
        self.plan = call
        self.bound = bound

    def call(self, pointer: int, heard: list[str]) -> Any:
        plan = self.plan
        frame = _Frame(plan.count + 1)
        kept: list[Any] = []
        single = list(self.bound)
        columns: dict[int, _arrays.Block] = {}
        for k, (argument, place, scalar) in enumerate(plan.loads):
            if scalar is None or not _arrays.is_arraylike(self.bound[k]):
                continue
            try:
                type = argument.type.__class__(argument.type.name, 1)
                columns[place] = _arrays.block_of(self.bound[k], type, argument.name)
            except (TypeError, ValueError, OverflowError) as error:
                raise plan.refusal(argument, error) from None
            single[k] = 0.0
        lengths = {b.shape[0] for b in columns.values()}
        if len(lengths) > 1:
            raise ValueError(f"{plan.name}: lists of lengths {listed(map(str, sorted(lengths)))} "
                             "do not go together")
        calls = lengths.pop()
        try:
            plan.load(frame, single, [], [], kept)
            for place, block in columns.items():
                stride = struct.calcsize(FORMAT[plan.member.arguments[place].type.name])
                frame.set_column(place, block.address, stride)
            outputs = []
            for place, type, _ in plan.back:
                out = (_arrays.C_TYPE[type.name] * calls)()
                frame.set_column(place, ctypes.addressof(out), ctypes.sizeof(out._type_))
                outputs.append(out)
            failures = lib.Failures(0, -1)
            code = lib.call_many(pointer, plan.member.id, plan.flags, calls, frame.columns_at,
                                 plan.count, frame.columns_at + _COLUMN.size * plan.count,
                                 ctypes.byref(failures))
        finally:
            for offset in plan.texts:
                lib.free_text(_POINTER.unpack_from(frame.cells, offset)[0])
        values = [[x != 0 for x in out] if type.name == "Boolean" else list(out)
                  for out, (_, type, _) in zip(outputs, plan.back)]
        result = plan.row(*values) if plan.row is not None else values[0]
        finish(plan, code, heard, result, failures, calls)
        return result


def finish(plan: Call, code: int, heard: list[str], result: Any, failures: lib.Failures,
           calls: int) -> None:
    """Tells of what failed in many calls."""
    if code < 0:
        error = lib.failure(code)
        if not isinstance(error, _messages.Error) or not failures.count:
            heard.clear()
            raise error
        heard.insert(0, f"Error:{error.text} (No.{error.number}) "
                        f"In [{plan.member.class_name} (Code) ({plan.member.name})] ")
    if heard:
        _messages.tell(heard, plan.name, result, failures, calls)


def same_labels(labels: Any, value: Any) -> Any:
    """The index of the series among the arguments, which have to agree."""
    index = getattr(value, "index", None)
    if index is None or not hasattr(index, "equals"):
        return labels
    if labels is not None and not labels.index.equals(index):
        raise ValueError("has another index than the series before it")
    return value if labels is None else labels


def labelled(out: Any, labels: Any, shape: tuple[int, ...]) -> Any:
    """A series of the same index, where a series went in."""
    if labels is None or labels.shape != shape or labels.ndim != 1:
        return out
    return labels.__class__(out, index=labels.index)
