"""Many calls of a member at once: some of its single values are arrays. Arrays among the member's
own arguments, and texts, are one for all calls."""

from __future__ import annotations

import ctypes
import math
import struct
from collections.abc import Callable
from typing import TYPE_CHECKING, Any

from . import _arrays, _messages
from . import _library as lib
from ._cells import COLUMN, MISSING, Frame
from ._description import Argument, Type
from ._names import listed
from ._values import FORMAT

if TYPE_CHECKING:
    from ._calls import Call

numpy = _arrays.numpy


def many_calls(plan: Call, bound: list[Any], pointer: int, heard: list[str]) -> Any:
    if numpy is None:
        return _over_lists(plan, bound, pointer, heard)
    return _over_arrays(plan, bound, pointer, heard)


def _taken(plan: Call, argument: Argument, convert: Callable[..., Any], *given: Any) -> Any:
    try:
        return convert(*given)
    except (TypeError, ValueError, OverflowError) as error:
        raise plan.refusal(argument, error) from None


class _Columns:
    """Columns over the arguments of many calls and over what comes back; what they lie over is
    kept."""

    def __init__(self, plan: Call) -> None:
        self.plan = plan
        self.frame = Frame(plan.count + 1)
        self.kept: list[Any] = []

    def lay(self, place: int, address: int, stride: int, owner: Any) -> None:
        self.kept.append(owner)
        self.frame.set_column(place, address, stride)

    def call(self, bound: list[Any], arrays: dict[int, Any], pointer: int,
             calls: int) -> tuple[int, lib.Failures]:
        """Makes the calls; the arguments in `arrays` have their columns, the others are loaded."""
        plan, columns = self.plan, self.frame.columns_at
        single = [0.0 if place in arrays else value
                  for (_, place, _), value in zip(plan.loads, bound)]
        failures = lib.Failures(0, -1)
        try:
            plan.load(self.frame, single, [], [], self.kept)
            code = lib.call_many(pointer, plan.member.id, plan.flags, calls, columns, plan.count,
                                 columns + COLUMN.size * plan.count, ctypes.byref(failures))
        finally:
            self.frame.free_texts(plan.texts)
        return code, failures


def _over_arrays(plan: Call, bound: list[Any], pointer: int, heard: list[str]) -> Any:
    arrays: dict[int, Any] = {}  # by place of the argument
    labels = None
    for (argument, place, scalar), value in zip(plan.loads, bound):
        if scalar is None or scalar.type == "String" or value is MISSING:
            continue
        if _arrays.is_arraylike(value):
            labels = _taken(plan, argument, _same_labels, labels, value)
            arrays[place] = _taken(plan, argument, _arrays.converted, value, scalar.type,
                                   f"{argument.name} of {plan.name}")
    try:
        shape = numpy.broadcast_shapes(*(a.shape for a in arrays.values()))
    except ValueError:
        told = [f"{plan.member.arguments[k].name} {a.shape}" for k, a in arrays.items()]
        raise ValueError(f"{plan.name}: the shapes of {listed(told)} do not go together") from None
    room = _Columns(plan)
    for place, a in arrays.items():
        _spread(room, place, a, shape, plan.member.arguments[place])
    outputs = []
    for place, type, _ in plan.back:
        out = numpy.zeros(shape, _arrays.DTYPE[type.name])
        room.lay(place, out.__array_interface__["data"][0], out.itemsize, out)
        outputs.append(out)
    calls = math.prod(shape)
    code, failures = room.call(bound, arrays, pointer, calls)
    values = [_labelled(out != 0 if type.name == "Boolean" else out, labels, shape)
              for out, (_, type, _) in zip(outputs, plan.back)]
    return _finish(plan, code, heard, values, failures, shape)


def _spread(room: _Columns, place: int, a: Any, shape: tuple[int, ...],
            argument: Argument) -> None:
    """Lays a column over an array, where it lies if that is possible."""
    changed = argument.direction in ("in,lent", "in,out")  # could be written
    plain = a.dtype.isnative and not changed
    stride = a.itemsize
    if plain and a.size == 1:
        stride = 0
    elif plain and a.shape == shape and a.ndim == 1:
        stride = a.strides[0]
    elif not (plain and a.shape == shape and a.flags.c_contiguous):
        a = numpy.array(numpy.broadcast_to(a, shape), a.dtype.newbyteorder("="), order="C")
    room.lay(place, a.__array_interface__["data"][0], stride, a)


def _over_lists(plan: Call, bound: list[Any], pointer: int, heard: list[str]) -> Any:
    """The same without NumPy: lists of one length, and lists as results."""
    blocks: dict[int, _arrays.Block] = {}
    for (argument, place, scalar), value in zip(plan.loads, bound):
        if scalar is not None and _arrays.is_arraylike(value):
            blocks[place] = _taken(plan, argument, _arrays.block_of, value,
                                   Type(argument.type.name, 1), argument.name)
    lengths = {block.shape[0] for block in blocks.values()}
    if len(lengths) > 1:
        raise ValueError(f"{plan.name}: lists of lengths {listed(map(str, sorted(lengths)))} "
                         "do not go together")
    calls = lengths.pop()
    room = _Columns(plan)
    for place, block in blocks.items():
        stride = struct.calcsize(FORMAT[plan.member.arguments[place].type.name])
        room.lay(place, block.address, stride, block)
    outputs = []
    for place, type, _ in plan.back:
        out = (_arrays.C_TYPE[type.name] * calls)()
        room.lay(place, ctypes.addressof(out), ctypes.sizeof(out._type_), out)
        outputs.append(out)
    code, failures = room.call(bound, blocks, pointer, calls)
    values = [[x != 0 for x in out] if type.name == "Boolean" else list(out)
              for out, (_, type, _) in zip(outputs, plan.back)]
    return _finish(plan, code, heard, values, failures, (calls,))


def _finish(plan: Call, code: int, heard: list[str], values: list[Any], failures: lib.Failures,
            shape: tuple[int, ...]) -> Any:
    """What comes back, and tells of what failed."""
    result = plan.row(*values) if plan.row is not None else values[0]
    if code < 0:
        error = lib.failure(code)
        if not isinstance(error, _messages.Error) or not failures.count:
            heard.clear()
            raise error
        heard.insert(0, f"Error:{error.text} (No.{error.number}) "
                        f"In [{plan.member.class_name} (Code) ({plan.member.name})] ")
    if heard:
        _messages.tell(heard, plan.name, result, failures, math.prod(shape),
                       _arrays.place_in(shape, failures.first))
    return result


def _same_labels(labels: Any, value: Any) -> Any:
    """The index of the series among the arguments, which have to agree."""
    index = getattr(value, "index", None)
    if index is None or not hasattr(index, "equals"):
        return labels
    if labels is not None and not labels.index.equals(index):
        raise ValueError("has another index than the series before it")
    return value if labels is None else labels


def _labelled(out: Any, labels: Any, shape: tuple[int, ...]) -> Any:
    """A series of the same index, where a series went in."""
    if labels is None or labels.shape != shape or labels.ndim != 1:
        return out
    return labels.__class__(out, index=labels.index)
