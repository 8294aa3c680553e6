"""The component's classes as Python classes, made from its description."""

from __future__ import annotations

import inspect
from collections.abc import Callable
from typing import TYPE_CHECKING, Any

from . import _library as lib
from . import _messages, _signature
from ._calls import Call
from ._description import Class, classes
from ._names import listed, nearest


class Object:
    """An object of the component. It belongs to the thread that makes it."""

    __slots__ = ("_pointer", "_heard", "__weakref__")
    _pointer: int
    _heard: list[str]  # by which its thread is known: a number of threads comes again
    _class: Class
    _readable: frozenset[str]
    _settable: frozenset[str]

    def __init__(self, *given: Any, **properties: Any) -> None:
        if not hasattr(type(self), "_class"):
            raise TypeError("Object is what the classes have in common; make one of them, such as "
                            "MathLib()")
        if given:
            raise TypeError(f"{self._class.name} takes properties by their names alone"
                            + (f": {listed(sorted(self._settable))}" if self._settable else
                               "; it has none to set"))
        set_own = object.__setattr__
        set_own(self, "_pointer", 0)
        set_own(self, "_heard", _messages.heard_lines())
        set_own(self, "_pointer", lib.create(self._class.class_id))
        for name, value in properties.items():
            setattr(self, name, value)

    def __del__(self) -> None:
        pointer = getattr(self, "_pointer", 0)
        if pointer:
            object.__setattr__(self, "_pointer", 0)
            lib.release(pointer)
            heard = _messages.heard_lines()
            if heard and heard is self._heard:
                _messages.log_heard(heard)

    def _use(self) -> tuple[int, list[str]]:
        if _messages.heard_lines() is not self._heard:
            raise RuntimeError(f"this {self._class.name} belongs to the thread that made it; make "
                               "one in each thread that needs one")
        return self._pointer, self._heard

    if not TYPE_CHECKING:  # what is misspelt is for a type checker to see

        def __getattr__(self, name: str) -> Any:
            if name.startswith("_"):
                raise AttributeError(f"a {type(self).__name__} has no '{name}'")
            if name in self._settable:
                raise AttributeError(f"{self._class.name}.{name} can be set, but not read")
            known = self._readable | self._settable
            raise AttributeError(f"{self._class.name} has no member '{name}'"
                                 + nearest(name, known))

        def __setattr__(self, name: str, value: Any) -> None:
            if name not in self._settable:
                if name in self._readable:
                    raise AttributeError(f"{self._class.name}.{name} cannot be set")
                raise AttributeError(f"{self._class.name} has no property '{name}'"
                                     + nearest(name, self._settable))
            super().__setattr__(name, value)

    def __reduce__(self) -> str:
        raise TypeError(f"a {self._class.name} cannot be copied or sent to another process; make "
                        "another")

    def __repr__(self) -> str:
        return f"<{self._class.name} of vqmath63>"


def _method(call: Call, of: Class) -> Callable[..., Any]:
    def method(self: Object, /, *given: Any, **named: Any) -> Any:
        # The number of a member may be another's in another class.
        if getattr(self, "_class", None) is not of:
            raise TypeError(f"{call.name} wants an object: {of.name.removeprefix('zt')}()."
                            f"{call.member.name}{_signature.takes(call.member)}")
        pointer, heard = self._use()
        return call(pointer, heard, given, named)

    method.__module__ = __package__
    method.__name__ = call.member.name
    method.__qualname__ = call.name
    method.__doc__ = _signature.documentation(call.member, call.back)
    signature = _signature.signature(call.member, call.back, call.row)
    method.__signature__ = signature  # type: ignore[attr-defined]
    return method


def _getter(call: Call) -> Callable[[Object], Any]:
    def get(self: Object) -> Any:
        return call(*self._use(), (), {})
    return get


def _setter(call: Call) -> Callable[[Object, Any], None]:
    def put(self: Object, value: Any) -> None:
        call(*self._use(), (value,), {})
    return put


def _unreadable(name: str) -> Callable[[Object], Any]:
    def get(self: Object) -> Any:
        raise AttributeError(name)  # on to __getattr__, which has the words
    return get


def make_class(described: Class) -> type[Object]:
    """The Python class of a class of the component."""
    body: dict[str, Any] = {"__slots__": (), "__module__": __package__, "_class": described}
    gets = {m.name: Call(m) for m in described.members if m.kind == "get"}
    lets = {m.name: Call(m) for m in described.members if m.kind == "let"}
    for member in described.members:
        if member.kind == "method":
            body[member.name] = _method(Call(member), described)
        elif member.name in gets and gets[member.name].inputs:  # a property with arguments
            body[member.name] = _method(gets[member.name], described)
        else:
            name = member.name
            get = _getter(gets[name]) if name in gets else _unreadable(name)
            put = _setter(lets[name]) if name in lets else None
            text = _signature.property_text(lets[name].member if name in lets else member)
            body[name] = property(get, put, None, text)
    body["_readable"] = frozenset(m.name for m in described.members if m.kind != "let")
    body["_settable"] = frozenset(lets)
    body["__signature__"] = inspect.Signature(
        [inspect.Parameter(name, inspect.Parameter.KEYWORD_ONLY, default=...) for name in lets])
    body["__doc__"] = (f"{described.help} ({described.programmatic_id})\n\n"
                       "Properties may be set as it is made, by their names. Belongs to the thread "
                       "that makes it.")
    return type(described.name, (Object,), body)


def make_classes() -> dict[str, type[Object]]:
    """All classes by their names, and by those without the prefix "zt"."""
    made: dict[str, type[Object]] = {}
    for described in classes():
        made_class = make_class(described)
        made[described.name] = made_class
        made.setdefault(described.name.removeprefix("zt"), made_class)
    return made
