"""The worked calls of tests/data/calls.tsv as formulas of a sheet, and what their cells are to show."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "spreadsheet"), str(ROOT / "python")]
from vqmath63._description import classes  # noqa: E402
from vqmath63_sheet import addin, cells  # noqa: E402

ERRORS = {5: cells.ARGUMENT, 6: cells.NUMBER, 9: cells.VALUE, 11: cells.DIVISION}
MEMBERS = {(c.name, m.name): m for c in classes() for m in c.members if m.kind == "method"}


class Case:
    """A formula: rows of cells per argument; what is wanted, as rows, or the number of an error and
    words of why."""

    def __init__(self, name, given, wanted=None, error=0, words=""):
        self.name, self.given, self.wanted, self.error = name, given, wanted, error
        self.words, self.within = words, 0.0


def rows(text):
    """A value of the table as rows of cells, arrays of one dimension as a column."""
    if text.startswith("["):
        lines = [[one(x) for x in row.split()] for row in text[1:-1].split(";")]
        if not any(lines):
            return []
        return lines if len(lines) > 1 else [[x] for x in lines[0]]
    return [[one(text)]]


def one(text):
    if text.startswith('"'):
        return text[1:-1]
    if text in ("True", "False"):
        return float(text == "True")
    if re.fullmatch(r"\d{4}-\d\d-\d\d", text):
        import datetime
        return float((datetime.date.fromisoformat(text) - datetime.date(1899, 12, 30)).days)
    return float(text)


def wanted_rows(parts):
    height = max(map(len, parts))
    made = []
    for k in range(height):
        made.append([])
        for part in parts:
            width = len(part[0]) if part else 1
            made[-1] += part[k] if k < len(part) else [""] * width
    return made


def cases():
    """The calls of each member that a sheet has, in the order of the table, and how many it has not."""
    made, left_out, last, settings = [], 0, None, {}
    within = 0.0
    lines = (ROOT / "tests/data/calls.tsv").read_text(encoding="utf-8").splitlines()
    table = [line.split("\t") for line in lines if line and not line.startswith("#")]
    for fields, following in zip(table, [*table[1:], [""]]):
        kind = fields[0]
        if kind == "within":
            within = float(fields[1])
        elif kind == "new":
            of, settings, last, limits = fields[1], {}, None, False
        elif kind == "let":
            settings[fields[1]] = rows(fields[3])
        elif kind == "get":
            if last is None or fields[1] not in last[1]:
                left_out += 1
                continue
            count = len(addin.functions()[last[0].name].parameters) - 1
            given = (last[0].given + [None] * count)[:count]
            made.append(Case(last[0].name, [*given, fields[1]], rows(fields[2])))
            made[-1].within = within
        elif kind == "call":
            function = addin.functions().get(fields[1].upper())
            limits |= fields[1] == "setLimits"  # kept from call to call, which no cell does
            if function is None or limits and fields[1] == "BinVector":
                left_out += 1
                continue
            case = _case(function, MEMBERS[of, fields[1]], fields, settings, following)
            case.within = within
            made.append(case)
            last = (case, function.result_names()) if function._summary and not case.error else None
    return made, left_out


def _case(function, member, fields, settings, following):
    taken = {p.name for p in function.parameters}
    given, parts = [], [] if fields[2] == "-" else [rows(fields[2])]
    success = True
    for argument, text in zip(member.arguments, fields[3:]):
        before, _, after = text.partition(">")
        if argument.is_input and argument.name in taken:
            given.append(rows(before))
        if argument.name == "qOK":
            success = (after or before) == "True"
        elif argument.is_output:
            left_alone = argument.direction == "out" and after == before and not argument.type.rank
            parts.append([[0.0]] if left_alone else rows(after or before))
    own = [p.name for p in function.parameters if p.setting]
    if any(name in settings for name in own):
        before_them = [p.name for p in function.parameters].index(own[0])
        given += [None] * (before_them - len(given))
        given += [settings.get(name) for name in own]
    name = function.name
    if "monthly" in (settings.get("Period") or [[""]])[0]:  # before the call is made
        return Case(name, given, error=cells.VALUE, words="'monthly' is none of the words")
    if following[0] == "line":
        number = int(re.search(r"\(No\.(\d+)\)", following[1])[1])
        return Case(name, given, error=ERRORS[number], words=following[1].split(" (No")[0])
    if function._summary:
        return Case(name, given)
    if not parts:
        return Case(name, given, [[float(success)]])
    return Case(name, given, wanted_rows(parts), error=0 if success else cells.NOT_AVAILABLE)
