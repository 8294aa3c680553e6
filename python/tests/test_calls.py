"""The worked calls of tests/data/calls.tsv, as Python makes them: single values and, where a member
takes arrays of them, three at once."""

import collections
import datetime
import math
import pickle

import numpy as np
import pytest
from conftest import DATA

import vqmath63


def cell(text):
    """A cell's value, and what it becomes."""
    before, _, after = text.partition(">")
    return value(before), value(after or before)


def value(text):
    if text.startswith("["):
        rows = [[value(x) for x in row.split()] for row in text[1:-1].split(";")]
        if not any(rows):
            return None
        return np.array(rows if len(rows) > 1 else rows[0])
    if text.startswith('"'):
        return text[1:-1]
    if text in ("True", "False"):
        return text == "True"
    if len(text) == 10 and text[4] == text[7] == "-":
        return datetime.datetime.fromisoformat(text)
    return float(text)


def fresh(argument):
    return None if argument.type.rank else {"Boolean": False, "String": ""}.get(
        argument.type.name, 0.0)


def moment(days):
    """The moment of an automation date, the fraction of which has no sign."""
    whole = int(days)
    return datetime.datetime(1899, 12, 30) + datetime.timedelta(days=whole + abs(days - whole))


def same(got, want, within):
    if isinstance(got, datetime.datetime) and isinstance(want, float):
        return got == moment(want)
    if want is None:
        return got is None or np.size(got) == 0
    if isinstance(want, str):
        return got.startswith(want[:-1]) if want.endswith("*") else got == want
    if isinstance(want, np.ndarray):
        return np.shape(got) == want.shape and all(
            same(g, w, within) for g, w in zip(np.ravel(got), np.ravel(want)))
    if isinstance(want, (bool, np.bool_, datetime.datetime)):
        return bool(got == want)
    return math.fabs(got - want) <= within * math.fabs(want)


class Run:
    """Makes the calls of the table; `many` makes those that may be three at once."""

    def __init__(self, many):
        self.many = many
        self.within = 0.0
        self.counts = collections.Counter()
        self.lines, self.wanted = [], []

    def row(self, fields):
        kind = fields[0]
        if kind != "line":
            assert [x.line for x in self.lines] == self.wanted
            self.lines, self.wanted = [], []
        if kind == "line":
            self.wanted.append(f"Error:{fields[1]}] ")
        elif kind == "within":
            self.within = float(fields[1])
        elif kind == "new":
            self.object = getattr(vqmath63, fields[1])()
        elif kind == "let":
            given = cell(fields[3])[0]
            if fields[1].startswith("Start") and isinstance(given, float):
                given = moment(given)
            try:
                setattr(self.object, fields[1], given)
            except ValueError as refused:  # a word that the next call would fail for
                assert "none of the words" in str(refused)
                self.counts["refused"] += 1
        elif self.counts["refused"] == 1:
            self.counts["refused"] += 1
        elif kind in ("call", "get"):
            with vqmath63.errors("list") as self.lines:
                self.call(fields)
            self.counts["calls"] += 1

    def call(self, fields):
        _, name, result, *cells = fields
        members = [m for m in self.object._class.members
                   if m.name == name and m.kind != "let"]
        given, wanted = [], [] if result == "-" else [[value(result)]]
        for argument, text in zip(members[0].arguments, cells):
            before, after = cell(text)
            if argument.is_input:
                given.append(before)
            if argument.is_output:
                # What the member leaves alone is in Python fresh.
                left_alone = argument.direction == "out" and same(after, before, 0)
                wanted.append([after, fresh(argument)] if left_alone else [after])
        if not given and members[0].kind == "get" and not callable(getattr(self.object, name)):
            got = getattr(self.object, name)
        elif self.many and members[0].elementwise:
            self.counts["many"] += 1
            given = [np.full(3, x) if isinstance(x, (float, bool)) else x for x in given]
            got = getattr(self.object, name)(*given)
            parts = got if isinstance(got, tuple) else (got,)
            assert all(np.shape(x) == (3,) and np.all(x == x[0]) for x in parts)
            got = tuple(x[0] for x in parts)
        else:
            got = getattr(self.object, name)(*given)
        parts = got if isinstance(got, tuple) else (got,)
        # What an optional argument that was left out becomes, the table does not tell.
        for part, want in zip(parts, wanted):
            found = any(same(part, w, max(self.within, 1e-15)) for w in want)
            assert found, f"{name}{tuple(cells)}: {got}"


# In the log of the last rows lines go to a file, which this package leaves alone.
@pytest.mark.parametrize("many", [False, True])
def test_every_worked_call(vq, many, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    run = Run(many)
    skipping = False
    with open(DATA / "calls.tsv", encoding="utf-8") as table:
        for number, line in enumerate(table, 1):
            fields = line.rstrip("\n").split("\t")
            if not fields[0] or fields[0].startswith("#"):
                continue
            if fields[0] == "new":
                skipping = len(fields) > 2
            if skipping:
                continue
            try:
                run.row(fields)
            except Exception as error:
                raise AssertionError(f"calls.tsv line {number}: {error!r}") from error
    run.row(["end"])
    assert run.counts["calls"] > 200
    assert run.counts["many"] > (90 if many else -1)
    print(f"{run.counts['calls']} calls by Python, {run.counts['many']} of them over arrays")


def test_every_member_is_there_with_signature_and_words(vq):
    import inspect
    members = 0
    assert {"accumulate", "MathLib", "errors"} <= set(dir(vq))
    for name, of in vq._classes.items():
        assert set(inspect.signature(of).parameters) == of._settable
        for member in of._class.members:
            attribute = inspect.getattr_static(of, member.name)
            members += 1
            if isinstance(attribute, property):
                assert attribute.__doc__
                continue
            assert member.help in attribute.__doc__
            named = list(inspect.signature(attribute).parameters)[1:]
            assert named == [a.name for a in member.arguments if a.direction != "out"]
    assert members == 2 * 175
    assert vq.MathLib is vq.ztMathLib


def test_an_argument_left_out_comes_back_with_what_the_component_made_of_it(vq):
    info = vq.AnalyseInfo()
    assert not info.DLLVersion(qLogToFile=False).qLogToFile
    assert info.DLLVersion()[1:] == ("vqmath63.txt", True)


def test_enumerations_are_those_that_programs_are_compiled_against(vq):
    with open(DATA / "interface.tsv", encoding="utf-8") as table:
        rows = [line.split() for line in table if line.startswith("vq")]
    for of, name, number in rows:
        each = getattr(vq, of)[name]
        assert each == getattr(vq, of[2:])[name[2:]] == int(number)
        assert pickle.loads(pickle.dumps(each)) is each
    assert len(rows) == sum(len(getattr(vq, of)) for of in {row[0] for row in rows}) == 9
