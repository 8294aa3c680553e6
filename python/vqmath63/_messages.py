"""The component's error lines as exceptions, warnings or a list, as the user chooses."""

from __future__ import annotations

import atexit
import ctypes
import logging
import re
import threading
import warnings
from dataclasses import dataclass
from types import TracebackType
from typing import Any

from . import _library as lib

_LINE = re.compile(r"Error:(?P<text>.*) \(No\.(?P<number>-?\d+)\) "
                   r"In \[(?P<module>.*?) \(Code\) *\((?P<routine>.*?)\)?\] ?$")


@dataclass(frozen=True)
class Line:
    """An error line: the number and text of the error, and the routine that met it."""

    line: str
    number: int
    text: str
    module: str
    routine: str

    def __str__(self) -> str:
        return f"{self.text} (error {self.number}) in {self.routine or self.module}"


class Error(ArithmeticError):
    """The component reported an error. `number`, `text`, `module` and `routine` are those of the
    first line, `lines` has all of them, `result` what the call returned all the same, and of a call
    over arrays `failed` the number of elements without a result and `first_failed` the place of the
    first, row after row (`result.flat[error.first_failed]`)."""

    def __init__(self, words: str, lines: list[Line], result: Any = None, failed: int = 1,
                 first_failed: int = 0) -> None:
        super().__init__(words)
        self.lines = lines
        self.result = result
        self.failed = failed
        self.first_failed = first_failed
        first = lines[0]
        self.number, self.text = first.number, first.text
        self.module, self.routine = first.module, first.routine

    def __reduce__(self) -> tuple[Any, ...]:  # back from a process of a pool
        return Error, (self.args[0], self.lines, self.result, self.failed, self.first_failed)

    @staticmethod
    def of_failure(number: int, text: str) -> Error:
        return Error(text, [Line(text, number, text, "", "")])


class ErrorWarning(RuntimeWarning):
    """The component reported an error, and the call returned what it had."""


class _Mode(threading.local):
    name = "raise"
    lines: list[Line] | None = None


_mode = _Mode()
_MODES = ("raise", "warn", "list")


class errors:
    """How this thread hears of errors: "raise" (an Error, as from the start), "warn" (an
    ErrorWarning) or "list". Lasts from the call on, or for a `with` block, which gets the list:

        with vq.errors("list") as lines:
            ...
    """

    def __init__(self, mode: str) -> None:
        if mode not in _MODES:
            from ._names import listed, nearest
            raise ValueError(f"errors are told by {listed(_MODES)}, not '{mode}'"
                             + nearest(str(mode), _MODES))
        self._before = (_mode.name, _mode.lines)
        _mode.name = mode
        _mode.lines = [] if mode == "list" else None

    def __enter__(self) -> list[Line]:
        return _mode.lines if _mode.lines is not None else []

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        _mode.name, _mode.lines = self._before


def lines() -> list[Line]:
    """The lines that came since errors("list"), or since they were asked for last."""
    kept = _mode.lines or []
    taken = list(kept)
    kept.clear()
    return taken


def _take(line: int, is_close_down: int, context: int) -> None:
    end = 0
    while ctypes.c_uint16.from_address(line + end).value:
        end += 2
    text = ctypes.string_at(line, end).decode("utf-16-le", "replace")
    if text.startswith("Error:"):
        _thread.lines.append(text)
    else:
        logging.getLogger("vqmath63").info("%s", text)


_callback = lib.MESSAGE_CALLBACK(_take)


class _Thread(threading.local):
    """What a thread hears of the component: the callback is installed when it first asks."""

    def __init__(self) -> None:
        self.lines: list[str] = []
        lib.set_message_callback(ctypes.cast(_callback, ctypes.c_void_p), None)


_thread = _Thread()
# No line may come back into an interpreter that is being taken down.
atexit.register(lib.set_message_callback, None, None)


def heard_lines() -> list[str]:
    """The list into which this thread's error lines come."""
    return _thread.lines


def resume(heard: list[str]) -> None:
    """For a host that enters a thread with a new thread state of Python each time, which forgets what
    is local to the thread: its error lines come into a list that it has had before, so that the
    objects made then may be called on. `heard` has to be of this thread alone."""
    _thread.lines = heard


def log_heard(heard: list[str]) -> None:
    """For lines that come when no call is made whose result they could go with."""
    for line in heard:
        logging.getLogger("vqmath63").error("%s", line)
    heard.clear()


def parsed(line: str) -> Line:
    found = _LINE.match(line)
    if not found:
        return Line(line, 0, line.strip(), "", "")
    return Line(line, int(found["number"]), found["text"], found["module"], found["routine"])


def tell(heard: list[str], name: str, result: Any, failures: lib.Failures | None = None,
         calls: int = 1, where: str = "") -> None:
    """Tells the user of the lines of a call, or of many of which the first that failed is at
    `where`, as chosen."""
    all_lines = [parsed(line) for line in heard]
    heard.clear()
    words = f"{name}: {all_lines[0]}"
    failed, first = 1, 0
    if failures is not None:
        failed, first = failures.count, failures.first
        words += f"; {failed} of {calls} elements failed, the first is {where}"
    tell_lines(words, all_lines, result, failed, first)


def tell_lines(words: str, all_lines: list[Line], result: Any, failed: int, first: int) -> None:
    if _mode.name == "raise":
        raise Error(words, all_lines, result, failed, first)
    if _mode.name == "warn":
        warnings.warn(ErrorWarning(words), stacklevel=_stack_level())
    elif _mode.lines is not None:
        _mode.lines.extend(all_lines)


def _stack_level() -> int:
    """How far up the user's own code is."""
    import sys
    level, frame = 1, sys._getframe(1)
    while frame.f_back is not None and frame.f_globals.get("__package__") == __package__:
        level, frame = level + 1, frame.f_back
    return level

