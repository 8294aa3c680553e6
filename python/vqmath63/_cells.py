"""Room for the values of a call, as the component's way of many calls looks at it."""

from __future__ import annotations

import ctypes
import struct
from enum import IntEnum

from . import _library as lib
from ._description import Argument
from ._enumerations import number_of
from ._values import FORMAT, TO

MISSING = object()  # an optional argument that is left out
CELL = 8
COLUMN = struct.Struct("@Pq")
POINTER = struct.Struct("@P")


class Frame:
    """Room for the values of one call: a cell per argument and one for the result, and a column
    over each. Frames are used again; a call within a call takes another."""

    __slots__ = ("cells", "base", "columns", "columns_at")

    def __init__(self, count: int) -> None:
        self.cells = ctypes.create_string_buffer(CELL * count)
        self.base = ctypes.addressof(self.cells)
        self.columns = ctypes.create_string_buffer(COLUMN.size * count)
        self.columns_at = ctypes.addressof(self.columns)
        for k in range(count):
            self.set_column(k, self.base + CELL * k, 0)

    def set_column(self, k: int, first: int, stride: int) -> None:
        COLUMN.pack_into(self.columns, COLUMN.size * k, first, stride)

    def clear(self, offsets: list[int]) -> None:
        for offset in offsets:
            POINTER.pack_into(self.cells, offset, 0)

    def pointer(self, offset: int) -> int:
        address: int = POINTER.unpack_from(self.cells, offset)[0]
        return address

    def free_texts(self, offsets: list[int]) -> None:
        for offset in offsets:
            lib.free_text(self.pointer(offset))


class Scalar:
    """A single value in its cell."""

    __slots__ = ("type", "convert", "packer", "offset")

    def __init__(self, argument: Argument, place: int,
                 numbers: type[IntEnum] | None) -> None:
        self.type = argument.type.name
        self.convert = TO[self.type] if numbers is None else number_of(numbers)
        self.packer = struct.Struct("@" + FORMAT[self.type])
        self.offset = CELL * place
