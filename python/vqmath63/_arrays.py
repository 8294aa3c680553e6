"""Arrays on their way to the component and back.

Index 1 of the component is element 0 in Python: an array that goes in has lower bounds 1 and lies
over the caller's memory, and of one that comes out Python sees the elements from index 1 on.
"""

from __future__ import annotations

import array
import ctypes
import struct
import threading
import warnings
from typing import Any

from . import _library as lib
from ._description import Type
from ._values import FORMAT, TO, VARIANT_TYPE, kind_of


def _numpy_if_there() -> Any:
    try:
        import numpy
    except ImportError:
        return None
    return numpy


numpy = _numpy_if_there()

_DESCRIPTOR = struct.Struct("@HHIIPIiIi")  # lib.SafeArray, as struct packs it
_MOST_ELEMENTS = 2**31 - 2
_SIZE = {"Single": 4, "Double": 8, "Long": 4, "Boolean": 2}
C_TYPE: dict[str, Any] = {"Single": ctypes.c_float, "Double": ctypes.c_double,
                          "Long": ctypes.c_int32, "Boolean": ctypes.c_int16}
DTYPE: dict[str, Any] = {}
if numpy is not None:
    DTYPE = {"Single": numpy.dtype("f4"), "Double": numpy.dtype("f8"), "Long": numpy.dtype("i4"),
             "Boolean": numpy.dtype("i2")}


class ConversionWarning(UserWarning):
    """An array was converted or copied, since the component could not use it where it lies."""


class _Told(threading.local):
    on = False


_told = _Told()


def conversions(mode: str) -> None:
    """Whether this thread is told ("warn") or not ("silent", as from the start) when an array is
    converted to another type of element or copied."""
    if mode not in ("silent", "warn"):
        raise ValueError(f"conversions are 'silent' or 'warn', not '{mode}'")
    _told.on = mode == "warn"


def _tell(what: str, argument: str) -> None:
    if _told.on:
        from ._messages import _stack_level
        warnings.warn(ConversionWarning(f"{argument}: {what}"), stacklevel=_stack_level())


def is_arraylike(value: Any) -> bool:
    """Whether a value stands for many."""
    if numpy is not None and isinstance(value, numpy.ndarray):
        return bool(value.ndim > 0)
    if isinstance(value, (list, tuple, range, array.array, memoryview)):
        return True
    return bool(hasattr(value, "__array__") and getattr(value, "ndim", 0) > 0)


def _no_number(given: Any) -> str:
    """What is wrong with an array of objects: its first element that is no number."""
    for at, element in numpy.ndenumerate(given):
        if not isinstance(element, (int, float, numpy.bool_, numpy.number)):
            where = f"has an element that is no number: {_place(at)} " if at else ""
            return f"{where}is {kind_of(element)}"
    return "is an object array; .astype(float) makes numbers of its elements"


def _refuse_kind(given: Any, wanted: str) -> None:
    kind, dtype = given.dtype.kind, given.dtype
    words = {"U": "has texts as elements", "S": "has texts as elements", "c": "has complex numbers",
             "M": "has dates as elements", "m": "has lengths of time as elements",
             "b": "has truths as elements, not numbers", "V": "is an array of records",
             "f": f"has elements of type {dtype}"}
    noun = {"Boolean": "an array of bool", "Long": "an array of whole numbers"}
    told = _no_number(given) if kind == "O" else words.get(kind, f"has elements of type {dtype}")
    raise TypeError(f"{told}; it has to be {noun.get(wanted, 'an array of numbers')}")


def _place(at: Any) -> str:
    return f"[{', '.join(map(str, at))}]"


def place_in(shape: tuple[int, ...], count: int) -> str:
    """Where element `count` of an array is, as it is written in an index."""
    return _place(numpy.unravel_index(count, shape) if len(shape) > 1 else (count,))


def _first(where: Any) -> str:
    return _place(numpy.argwhere(where)[0])


def _numbers_of(value: Any) -> Any:
    """Any array-like as a NumPy array."""
    if isinstance(value, numpy.ma.MaskedArray):
        if value.dtype.kind in "iu" and numpy.ma.is_masked(value):
            raise TypeError("is masked; whole numbers know no missing value")
        return value.filled(numpy.nan) if value.dtype.kind == "f" else value.filled()
    if isinstance(value, numpy.ndarray):
        return value
    if isinstance(value, array.array):
        return numpy.asarray(value)
    dtype = getattr(value, "dtype", None)
    if dtype is not None and hasattr(dtype, "na_value") and hasattr(value, "to_numpy"):
        kind = getattr(dtype, "kind", "O")
        if kind == "b" and value.isna().any():
            raise TypeError("has missing values among truths")
        if kind in "iuf" and value.isna().any():  # pandas' own types with missing values
            return value.to_numpy(dtype="f8", na_value=numpy.nan)
        return value.to_numpy(dtype=getattr(dtype, "numpy_dtype", None))
    with warnings.catch_warnings():
        warnings.simplefilter("error")  # rows of several lengths
        try:
            return numpy.asarray(value)
        except Exception:
            raise TypeError("has rows of several lengths or elements of several kinds") from None


def converted(value: Any, wanted: str, argument: str) -> Any:
    """A NumPy array of the very type, the given one where it is that. Errors 6 and 13 in words."""
    given = _numbers_of(value)
    dtype = DTYPE[wanted]
    if given.dtype == dtype and wanted != "Boolean":
        return given
    kind = given.dtype.kind
    if given.size == 0 and not isinstance(value, numpy.ndarray):
        return numpy.zeros(given.shape, dtype)  # an empty list has no type
    if wanted == "Boolean":
        if kind not in "biu":
            _refuse_kind(given, wanted)
        made = numpy.array(given != 0, dtype)
        numpy.negative(made, out=made)
    elif kind not in "fiu":
        _refuse_kind(given, wanted)
    elif wanted == "Long":
        if kind == "f":
            bad = ~(given == numpy.trunc(given)) | numpy.isinf(given)
            if bad.any():
                raise TypeError(f"has to be an array of whole numbers; element {_first(bad)} "
                                f"is {given[bad][0].item()!r}")
        bad = (given < -2**31) | (given > 2**31 - 1)
        if bad.any():
            raise OverflowError(f"has an element beyond the range of a Long: {_first(bad)} is "
                                f"{given[bad][0]}")
        made = given.astype(dtype)
    else:
        with numpy.errstate(all="ignore"):
            made = given.astype(dtype)
        if kind == "f" and dtype.itemsize < given.dtype.itemsize:
            bad = numpy.isinf(made) & ~numpy.isinf(given)
            if bad.any():
                raise OverflowError(f"has an element beyond the range of a {wanted}: "
                                    f"{_first(bad)} is {given[bad][0].item()!r}")
    if isinstance(value, numpy.ndarray) or hasattr(value, "dtype"):
        _tell(f"{given.size} elements of {given.dtype} converted to {wanted}", argument)
    return made


class Block:
    """Elements in memory, as a safe array lies over them, column after column. Keeps what owns the
    memory."""

    __slots__ = ("address", "shape", "owner")

    def __init__(self, address: int, shape: tuple[int, ...], owner: Any) -> None:
        self.address = address
        self.shape = shape
        self.owner = owner


def _check_size(count: int) -> None:
    if count > _MOST_ELEMENTS:
        raise OverflowError(f"has {count} elements, beyond the range of a Long")


def _numpy_block(value: Any, type: Type, argument: str) -> Block:
    made = converted(value, type.name, argument)
    if made.ndim != type.rank:
        raise ValueError(f"has to be an array of {type.rank} dimension{'s' * (type.rank > 1)}, "
                         f"not of shape {made.shape}")
    if not (made.flags.f_contiguous and made.flags.aligned and made.dtype.isnative):
        if made is value:
            _tell(f"{made.size} elements copied, since they do not lie "
                  f"{'column after column' if type.rank == 2 else 'side by side'}", argument)
        made = numpy.array(made, DTYPE[type.name], order="F")
    return Block(made.__array_interface__["data"][0], made.shape, made)


def _plain_block(value: Any, type: Type) -> Block:
    code = FORMAT[type.name]
    if isinstance(value, array.array) and value.typecode == code and type.rank == 1:
        return Block(value.buffer_info()[0], (len(value),), value)
    if isinstance(value, (str, bytes)) or not hasattr(value, "__len__"):
        raise TypeError("has to be a list or an array")
    shape: tuple[int, ...] = (len(value),)
    elements = value
    if type.rank == 2:
        rows = [list(row) if hasattr(row, "__len__") else [row] for row in value]
        if any(not hasattr(row, "__len__") for row in value) or len({len(r) for r in rows}) > 1:
            raise ValueError("has to be a list of rows of one length")
        shape = (len(rows), len(rows[0]) if rows else 0)
        elements = [x for column in zip(*rows) for x in column]
    made = array.array(code)
    to = TO[type.name]
    for k, element in enumerate(elements):
        try:
            made.append(to(element))
        except (TypeError, ValueError, OverflowError) as error:
            raise error.__class__(f"element [{k}] {error}") from None
    return Block(made.buffer_info()[0], shape, made)


def block_of(value: Any, type: Type, argument: str) -> Block:
    """What the component reads where it lies."""
    if numpy is None:
        made = _plain_block(value, type)
    elif (value.__class__ is array.array and value.typecode == FORMAT[type.name]
          and type.rank == 1 and type.name != "Boolean"):
        made = Block(value.buffer_info()[0], (len(value),), value)
    elif (value.__class__ is numpy.ndarray and value.dtype == DTYPE[type.name]
          and value.ndim == type.rank and value.flags.f_contiguous and value.flags.aligned
          and type.name != "Boolean"):
        made = Block(value.__array_interface__["data"][0], value.shape, value)
    else:
        made = _numpy_block(value, type, argument)
    for count in made.shape:
        _check_size(count)
    return made


def lent(block: Block, type: Type) -> Any:
    """The descriptor of a safe array over memory that the component reads; lives as long as the
    block."""
    bounds = [part for count in reversed(block.shape) for part in (count, 1)]
    if type.rank == 1:
        bounds += (0, 0)
    return ctypes.create_string_buffer(
        _DESCRIPTOR.pack(type.rank, lib.FIXED_MEMORY, _SIZE[type.name], 0, block.address, *bounds))


def copied(block: Block, type: Type) -> int:
    """A safe array of the component's own with these elements, for it to change."""
    bounds = (lib.Bound * 2)(*(lib.Bound(count, 1) for count in block.shape))
    made = lib.new_array(VARIANT_TYPE[type.name], type.rank, ctypes.byref(bounds))
    if not made:
        raise MemoryError(f"no memory for an array of {block.shape}")
    size = _SIZE[type.name]
    for count in block.shape:
        size *= count
    if size:
        ctypes.memmove(lib.SafeArray.from_address(made).data, block.address, size)
    return int(made)


class _Owner:
    """Frees a safe array when nothing looks at its elements any more."""

    __slots__ = ("_address", "_destroy")

    def __init__(self, address: int) -> None:
        self._address = address
        self._destroy = lib.destroy_array

    def __del__(self) -> None:
        self._destroy(self._address)


def taken(address: int | None, type: Type) -> Any:
    """The elements of a safe array that is ours: a NumPy array over its memory, or a list; without
    elements where there is no array. The elements below index 1, which the component disregards,
    are left out."""
    shape: list[int] = [0] * type.rank
    skip = [0] * type.rank
    data = None
    if address:
        owner = _Owner(address)
        descriptor = lib.SafeArray.from_address(address)
        data = descriptor.data
        for k in range(type.rank):
            bound = descriptor.bounds[type.rank - 1 - k]
            shape[k] = bound.count
            skip[k] = max(0, 1 - bound.lower)
    count = 1
    for n in shape:
        count *= n
    if not count or not data:
        if numpy is None:
            return []
        dtype = bool if type.name == "Boolean" else DTYPE[type.name]
        return numpy.zeros(shape if count == 0 else [0] * type.rank, dtype)
    c_array = C_TYPE[type.name] * count
    if numpy is None:
        flat = list(c_array.from_address(data))
        if type.name == "Boolean":
            flat = [x != 0 for x in flat]
        if type.rank == 1:
            return flat[skip[0]:]
        return [flat[row::shape[0]][skip[1]:] for row in range(skip[0], shape[0])]
    memory = c_array.from_address(data)
    memory._owner = owner  # lives as long as an array looks at the memory
    made = numpy.frombuffer(memory, DTYPE[type.name])
    if type.rank == 2:
        made = made.reshape(shape, order="F")
    if type.name == "Boolean":
        made = made != 0
    if any(skip):
        made = made[tuple(slice(k, None) for k in skip)]
    return made
