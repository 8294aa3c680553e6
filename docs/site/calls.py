"""The worked calls of tests/data/calls.tsv, as the forms of the site begin with them and are held to them."""

import dataclasses
import pathlib

TABLE = pathlib.Path(__file__).resolve().parents[2] / "tests/data/calls.tsv"


@dataclasses.dataclass
class Call:
    """A call of a method, or a property that is read with arguments. Values stand as in the table."""

    line: int
    member: str
    result: str  # "-" for none
    cells: list  # of each argument: what is given, and what comes back or the same
    settings: dict  # the properties set before
    within: float
    whole: bool  # nothing but the settings acts on it, neither an earlier call nor a log
    failure: str = ""  # words of its error line
    read: dict = dataclasses.field(default_factory=dict)  # properties read after it


def read():
    """Class -> its calls."""
    made, settings, within, limits, logged = {}, {}, 0.0, False, False
    for number, line in enumerate(TABLE.read_text(encoding="utf-8").splitlines(), 1):
        kind, name, *rest = [*line.split("\t"), ""]
        if kind == "within":
            within = float(name)
        elif kind == "new":
            calls, settings, limits, logged = made.setdefault(name, []), {}, False, rest[0] == "log"
        elif kind == "let":
            settings[name] = rest[1]
        elif kind == "line" and calls:
            calls[-1].failure = f"Error:{name}] "
        elif kind == "get" and len(rest) == 2 and not logged:
            if calls and calls[-1].settings == settings and not calls[-1].failure:
                calls[-1].read[name] = rest[0]
        elif kind in ("call", "get"):
            cells = [(before, after or before) for before, _, after in (cell.partition(">") for cell in rest[1:-1])]
            limits |= name == "setLimits"  # which the object keeps
            whole = not logged and not (limits and name == "BinVector")
            calls.append(Call(number, name, rest[0], cells, dict(settings), within, whole))
    return made


def typed(value):
    """A value as somebody would type it into a form, or paste it from a sheet."""
    if value.startswith("["):
        rows = [row.split() for row in value[1:-1].split(";")]
        return "\n".join("\t".join(row) for row in (rows if len(rows) > 1 else zip(*rows)))
    return value.strip('"')


def as_typed(call):
    return {"member": call.member, "given": [typed(before) for before, _ in call.cells],
            "set": {name: typed(value) for name, value in call.settings.items()}}


def examples():
    """Class -> what its forms begin with: calls, and for each member which of them show it."""
    made = {}
    for name, calls in read().items():
        good = [call for call in calls if not call.failure and call.cells[-1:] != [("True", "False")]]
        shows = {}
        for at, call in enumerate(good):
            for member in (call.member, *call.settings, *call.read):
                shows.setdefault(member, []).append(at)
        made[name] = {"calls": [as_typed(call) for call in good], "shows": shows}
    return made
