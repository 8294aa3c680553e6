"""The component's shared library: where it is found, and its functions as ctypes sees them."""

from __future__ import annotations

import ctypes
import functools
import os
import sys
from ctypes import POINTER, c_int32, c_int64, c_uint16, c_uint32, c_void_p
from typing import Any

if sys.platform == "win32":
    _open, _FUNCTION, _NAME = ctypes.WinDLL, ctypes.WINFUNCTYPE, "vqmath63.dll"
else:
    _open, _FUNCTION, _NAME = ctypes.CDLL, ctypes.CFUNCTYPE, "libvqmath63.so"

# Types of automation values, and what an Invoke is asked for.
I2, I4, R4, R8, DATE, BSTR, BOOL = 2, 3, 4, 5, 7, 8, 11
METHOD, GET, PUT = 1, 2, 4
FIXED_MEMORY = 0x0001 | 0x0002 | 0x0010  # of an array whose memory is the caller's


class Bound(ctypes.Structure):
    _fields_ = [("count", c_uint32), ("lower", c_int32)]


class SafeArray(ctypes.Structure):
    """The descriptor of an array of at most two dimensions, which stand last first."""

    _fields_ = [("dimensions", c_uint16), ("features", c_uint16), ("element_size", c_uint32),
                ("locks", c_uint32), ("data", c_void_p), ("bounds", Bound * 2)]


class Column(ctypes.Structure):
    """What one argument, or the result, is in each of many calls."""

    _fields_ = [("first", c_void_p), ("stride", c_int64)]


class Failures(ctypes.Structure):
    _fields_ = [("count", c_int64), ("first", c_int64)]


MESSAGE_CALLBACK = _FUNCTION(None, c_void_p, c_int32, c_void_p)


def _find_library() -> str:
    chosen = os.environ.get("VQMATH63_LIBRARY")
    if chosen:
        return chosen
    beside = os.path.join(os.path.dirname(os.path.abspath(__file__)), _NAME)
    if os.path.exists(beside):
        return beside
    return _NAME.replace(".so", ".so.6")  # where the system looks


def _load() -> ctypes.CDLL:
    path = _find_library()
    try:
        return _open(path)
    except OSError as error:
        raise ImportError(f"the library of vqmath63 cannot be loaded: {error}. It belongs in the "
                          "package's folder; VQMATH63_LIBRARY names another place.") from None


library = _load()
_system = _open("oleaut32") if sys.platform == "win32" else library


def _function(of: ctypes.CDLL, name: str, result: Any, *arguments: Any) -> Any:
    try:
        function = getattr(of, name)
    except AttributeError:
        raise ImportError(f"{of._name} is too old for this package: it has no {name}") from None
    function.restype, function.argtypes = result, arguments
    return function


describe_to = _function(library, "VqDescribe", c_int32, c_void_p, POINTER(c_void_p))
call_many = _function(library, "VqCallMany", c_int32, c_void_p, c_int32, c_uint16, c_int64,
                      c_void_p, c_uint32, c_void_p, c_void_p)
set_message_callback = _function(library, "VqSetMessageCallback", c_int32, c_void_p, c_void_p)
get_class_object = _function(library, "DllGetClassObject", c_int32, c_void_p, c_void_p,
                             POINTER(c_void_p))
new_text = _function(_system, "SysAllocStringLen", c_void_p, c_void_p, c_uint32)
text_bytes = _function(_system, "SysStringByteLen", c_uint32, c_void_p)
free_text = _function(_system, "SysFreeString", None, c_void_p)
new_array = _function(_system, "SafeArrayCreate", c_void_p, c_uint16, c_uint32, c_void_p)
destroy_array = _function(_system, "SafeArrayDestroy", c_int32, c_void_p)
_get_error_info = _function(_system, "GetErrorInfo", c_int32, c_uint32, POINTER(c_void_p))


def wide(text: str) -> ctypes.Array[ctypes.c_char]:
    """A text with its end, as the component's functions read it."""
    return ctypes.create_string_buffer(text.encode("utf-16-le") + b"\0")


def text_of(bstr: int | None) -> str:
    return ctypes.string_at(bstr, text_bytes(bstr)).decode("utf-16-le", "replace") if bstr else ""


def taken_text(bstr: int | None) -> str:
    """A text of the component's that is ours to free."""
    text = text_of(bstr)
    free_text(bstr)
    return text


def bstr_of(text: str) -> int:
    units = text.encode("utf-16-le", "surrogatepass")
    made = new_text(units, len(units) // 2)
    if not made:
        raise MemoryError(f"no memory for a text of {len(text)} characters")
    return int(made)


def _slot(pointer: int, index: int, *types: Any) -> Any:
    """Entry `index` of an interface's table of functions."""
    functions = ctypes.cast(pointer, POINTER(POINTER(c_void_p)))[0]
    return _FUNCTION(c_int32, c_void_p, *types)(functions[index] or 0)


def release(pointer: int) -> None:
    _slot(pointer, 2)(pointer)


@functools.cache
def _guid(text: str) -> bytes:
    import uuid
    return uuid.UUID(text).bytes_le


_DISPATCH = _guid("00020400-0000-0000-C000-000000000046")
_FACTORY = _guid("00000001-0000-0000-C000-000000000046")


def create(class_id: str) -> int:
    """A new object of a class, as the address of its IDispatch."""
    factory, made = c_void_p(), c_void_p()
    code = get_class_object(_guid(class_id), _FACTORY, ctypes.byref(factory))
    if code >= 0 and factory.value:
        code = _slot(factory.value, 3, c_void_p, c_void_p, POINTER(c_void_p))(
            factory, None, _DISPATCH, ctypes.byref(made))
        release(factory.value)
    if code < 0 or not made.value:
        raise failure(code)
    return made.value


def failure(code: int) -> Exception:
    """What a failed result code and this thread's error info amount to in Python."""
    info, words = c_void_p(), c_void_p()
    text = ""
    if _get_error_info(0, ctypes.byref(info)) == 0 and info.value:
        if _slot(info.value, 5, POINTER(c_void_p))(info, ctypes.byref(words)) >= 0:
            text = taken_text(words.value)
        release(info.value)
    code &= 0xFFFFFFFF
    number = code & 0xFFFF if code >> 16 == 0x800A else code
    if number in (7, 0x8007000E):
        return MemoryError(text or "out of memory")
    from ._messages import Error
    return Error.of_failure(number, text or f"result code {code:08X}")


def describe(identifier: str = "") -> list[list[str]]:
    """The lines of the component's description, each as its fields."""
    text = c_void_p()
    code = describe_to(wide(identifier) if identifier else None,
                       ctypes.byref(text))
    if code < 0:
        raise LookupError(f"the component does not describe '{identifier}'")
    return [line.split("\t") for line in taken_text(text.value).split("\n") if line]

