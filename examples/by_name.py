"""Accumulates monthly rates by name, with nothing but ctypes: python3 by_name.py libvqmath63.so"""

import ctypes
import datetime
import sys
from ctypes import POINTER, byref, c_double, c_float, c_int32, c_int64, c_uint16, c_uint32, c_void_p

library = ctypes.CDLL(sys.argv[1] if len(sys.argv) > 1 else "libvqmath63.so")
METHOD, GET, PUT = 1, 2, 4  # what Invoke is to do
I4, R4, R8, DATE, BSTR, BOOL = 3, 4, 5, 7, 8, 11  # types of a VARIANT
ARRAY, BYREF = 0x2000, 0x4000
PROPERTY_VALUE = c_int32(-3)  # the name of the value in a property put
EXCEPTION = -2147352567  # DISP_E_EXCEPTION: the words are in the exception record


class Variant(ctypes.Structure):
    class Value(ctypes.Union):
        _fields_ = [("i4", c_int32), ("r4", c_float), ("r8", c_double), ("bool", ctypes.c_int16),
                    ("pointer", c_void_p)]

    _anonymous_ = ["value"]
    _fields_ = [("type", c_uint16), ("reserved", c_uint16 * 3), ("value", Value), ("more", c_int64)]


class Arguments(ctypes.Structure):
    _fields_ = [("values", POINTER(Variant)), ("named", POINTER(c_int32)), ("count", c_uint32),
                ("named_count", c_uint32)]


class ExceptionRecord(ctypes.Structure):
    _fields_ = [("code", c_uint16), ("source", c_void_p), ("text", c_void_p), ("file", c_void_p),
                ("context", c_uint32), ("reserved", c_void_p), ("fill_in", c_void_p),
                ("number", c_int32)]


class Bound(ctypes.Structure):
    _fields_ = [("count", c_uint32), ("lower", c_int32)]


def wide(text):
    return ctypes.create_string_buffer(text.encode("utf-16-le") + b"\0")


library.SysAllocString.restype = library.SafeArrayCreate.restype = c_void_p
library.VariantClear.argtypes = [POINTER(Variant)]
library.SafeArrayAccessData.argtypes = [c_void_p, POINTER(c_void_p)]
library.SafeArrayUnaccessData.argtypes = [c_void_p]
library.SafeArrayGetUBound.argtypes = [c_void_p, c_uint32, POINTER(c_int32)]
library.SysStringByteLen.argtypes = library.SysFreeString.argtypes = [c_void_p]


def variant(value):
    """A VARIANT of a Python value; a Variant is handed over by reference."""
    if isinstance(value, Variant):
        return Variant(BYREF | value.type, pointer=ctypes.addressof(value.value))
    if isinstance(value, bool):
        return Variant(BOOL, bool=-1 if value else 0)
    if isinstance(value, int):
        return Variant(I4, i4=value)
    if isinstance(value, datetime.date):
        return Variant(DATE, r8=(value - datetime.date(1899, 12, 30)).days)
    if isinstance(value, str):
        return Variant(BSTR, pointer=library.SysAllocString(wide(value)))
    return Variant(R8, r8=value)


def taken(bstr):
    """A text that the component made and that is ours to free."""
    text = ctypes.string_at(bstr, library.SysStringByteLen(bstr)).decode("utf-16-le")
    library.SysFreeString(bstr)
    return text


def table(rows):
    """A two-dimensional array of Double, both indices from 1."""
    array = library.SafeArrayCreate(R8, 2, (Bound * 2)(Bound(len(rows), 1), Bound(len(rows[0]), 1)))
    data = c_void_p()
    library.SafeArrayAccessData(array, byref(data))
    columns = [x for column in zip(*rows) for x in column]  # the first index moves fastest
    ctypes.memmove(data, (c_double * len(columns))(*columns), 8 * len(columns))
    library.SafeArrayUnaccessData(array)
    return Variant(ARRAY | R8, pointer=array)


def rows_of(array):
    """The rows of a two-dimensional array of Single."""
    rows, columns, data = c_int32(), c_int32(), c_void_p()
    library.SafeArrayGetUBound(array.pointer, 1, byref(rows))
    library.SafeArrayGetUBound(array.pointer, 2, byref(columns))
    library.SafeArrayAccessData(array.pointer, byref(data))
    values = ctypes.cast(data, POINTER(c_float))[:rows.value * columns.value]
    library.SafeArrayUnaccessData(array.pointer)
    return [values[row::rows.value] for row in range(rows.value)]


def slot(pointer, index, *types):
    """Entry `index` of an interface's function table."""
    functions = ctypes.cast(pointer, POINTER(POINTER(c_void_p)))[0]
    return ctypes.CFUNCTYPE(c_int32, c_void_p, *types)(functions[index])


class Object:
    """An object of the component, by programmatic id."""

    def __init__(self, programmatic_id):
        class_id = ctypes.create_string_buffer(16)
        factory_id = (1).to_bytes(4, "little") + bytes(4) + bytes([0xC0]) + bytes(6) + b"\x46"
        dispatch_id = (0x20400).to_bytes(4, "little") + factory_id[4:]
        factory, self.pointer = c_void_p(), c_void_p()
        if library.CLSIDFromProgID(wide(programmatic_id), class_id) < 0:
            raise LookupError(programmatic_id)
        library.DllGetClassObject(class_id, factory_id, byref(factory))
        create = slot(factory, 3, c_void_p, ctypes.c_char_p, POINTER(c_void_p))
        create(factory, None, dispatch_id, byref(self.pointer))
        slot(factory, 2)(factory)  # Release

    def __del__(self):
        if self.pointer:
            slot(self.pointer, 2)(self.pointer)

    def call(self, name, *values, flags=METHOD):
        member, names = c_int32(), c_void_p(ctypes.addressof(text := wide(name)))
        find = slot(self.pointer, 5, c_void_p, c_void_p, c_uint32, c_uint32, POINTER(c_int32))
        if find(self.pointer, None, byref(names), 1, 0, byref(member)) < 0:
            raise AttributeError(name)
        sent = (Variant * len(values))(*[variant(v) for v in reversed(values)])  # last one first
        arguments = Arguments(sent, None, len(values), 0)
        if flags == PUT:
            arguments.named, arguments.named_count = ctypes.pointer(PROPERTY_VALUE), 1
        result, failure = Variant(), ExceptionRecord()
        invoke = slot(self.pointer, 6, c_int32, c_void_p, c_uint32, c_uint16, c_void_p, c_void_p,
                      c_void_p, c_void_p)
        outcome = invoke(self.pointer, member, None, 0, flags, byref(arguments), byref(result),
                         byref(failure), None)
        for value in sent:
            library.VariantClear(value)
        if outcome == EXCEPTION:
            raise RuntimeError(f"{taken(failure.source)}: {taken(failure.text)}, "
                               f"number {failure.number & 0xFFFFFFFF:08X}")
        if outcome < 0:
            raise TypeError(f"{name}: {outcome & 0xFFFFFFFF:08X}")
        if result.type == BSTR:
            return taken(result.pointer)
        return {I4: result.i4, R4: result.r4, BOOL: result.bool != 0}.get(result.type, result.r8)

    def set(self, name, value):
        self.call(name, value, flags=PUT)

    def get(self, name):
        return self.call(name, flags=GET)


well = Object("vq140Analyse.ztAccumulate")
well.set("StartData", datetime.date(2023, 1, 31))  # the moment of time 0
well.set("StartDate", datetime.date(2023, 1, 31))  # where reporting begins
well.set("DataPeriod", "month")
well.set("Period", "Month")

data = table([[0, 5], [1, 20], [2, 30], [3, 40]])  # time in months, rate
result = Variant(ARRAY | R4)  # no array yet
ok = variant(False)
well.call("Accumulate", data, result, ok)

print(f"by {well.get('Period')}, ok: {ok.bool != 0}")
for days, rate in rows_of(result):
    print(f"day {days:3.0f}  rate {rate:5.2f}")
try:
    well.call("Accumulate", 7, result, ok)
except RuntimeError as error:
    print(error)
