#!/usr/bin/env python3
"""Holds the results of the worked calls to one another, digit for digit: of the command-line host, which
calls by name, of Python, and of other hosts that have left theirs in files.

usage: VQMATH63_LIBRARY=libvqmath63.so same_digits.py VQHOST DIGITS...
    DIGITS   lines: of tests/data/calls.tsv, name of the result, list of what it has (row after row)

The last line counts: "digits: C checks, F failures"."""

import array
import datetime
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path[:0] = [str(ROOT / "docs/site"), str(ROOT / "python")]
import calls  # noqa: E402
import vqmath63  # noqa: E402

NUMBER = re.compile(r"-?(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?|True|False")


def value(text):
    if text.startswith("["):
        rows = [[value(word) for word in row.split()] for row in text[1:-1].split(";")]
        return rows if len(rows) > 1 else rows[0] or None
    if text in ("True", "False"):
        return text == "True"
    if re.fullmatch(r"\d{4}-\d\d-\d\d", text):
        return datetime.datetime.fromisoformat(text)
    return text.strip('"') if text.startswith('"') else float(text)


def flat(part):
    part = part.tolist() if hasattr(part, "tolist") else part
    return sum(map(flat, part), []) if isinstance(part, list) else [part]


def by_python(of, call):
    """Name -> what Python has of it."""
    made = getattr(vqmath63, of)(**{name: value(text) for name, text in call.settings.items()})
    member = next(m for m in made._class.members if m.name == call.member and m.kind != "let")
    given = [value(before) for a, (before, _) in zip(member.arguments, call.cells) if a.is_input]
    got = getattr(made, call.member)(*given)
    names = ["result"] * bool(member.result.name) + [a.name for a in member.outputs]
    parts = dict(zip(names, got if len(names) > 1 else (got,)))
    for a, (before, after) in zip(member.arguments, call.cells):
        if a.is_output and before == after:  # what is left alone is fresh in Python
            del parts[a.name]
    parts.update((name, getattr(made, name)) for name in call.read)
    types = {a.name: a.type.name for a in member.arguments} | {"result": member.result.name}
    types |= {m.name: m.result.name for m in made._class.members if m.kind == "get" and not m.arguments}
    return {name: flat(part) for name, part in parts.items()}, types


def as_argument(text):
    """A value of the table as the command line takes it."""
    if not text.startswith("["):
        return text.strip('"')
    rows = [f"[{','.join(row.split())}]" for row in text[1:-1].split(";")]
    return rows[0] if len(rows) == 1 else f"[{','.join(rows)}]"


def by_name(host, of, call):
    """Name -> the numbers and truths that vqhost prints of it; None where it cannot make the call."""
    arguments = getattr(vqmath63, of)._class.members
    arguments = next(m.arguments for m in arguments if m.name == call.member and m.kind != "let")
    if ('"-"', '"-"') in call.cells:  # which the command line takes for an argument that is left out
        return None
    given = [f"{a.name}={as_argument(before)}" for a, (before, _) in zip(arguments, call.cells)]
    command = [host, "call", of, call.member, *given, "--all"]
    for name, text in call.settings.items():
        command += ["--set", f"{name}={as_argument(text)}"]
    for name in call.read:
        command += ["--get", name]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    made = {}
    for line in done.stdout.splitlines():
        head = re.match(r"(\w+) = ", line)
        if not line.startswith("  "):
            name = head[1] if head else "result"
        words = line[head.end():] if head else line
        made.setdefault(name, []).extend([] if words.startswith("rows ") else NUMBER.findall(words))
    return made


def same(one, other, kind):
    """Equal numbers; where one is the text of a Single, as Singles."""
    if str(other) in ("True", "False", "true", "false"):
        return str(one).lower() == str(other).lower()
    if kind == "Single":
        return array.array("f", [float(one)]) == array.array("f", [float(other)]) == array.array("d", [float(one)])
    return float(one) == float(other)


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    host, *files = sys.argv[1:]
    told = {}
    for file in files:
        for line in pathlib.Path(file).read_text(encoding="utf-8").splitlines():
            number, name, text = line.split("\t")
            told.setdefault((int(number), name), []).append((file, json.loads(text)))
    checks, problems = 0, []
    for of, worked in calls.read().items():
        for call in worked:
            if not call.whole or call.failure or '"monthly"' in call.settings.values():
                continue
            parts, types = by_python(of, call)
            printed = by_name(host, of, call)
            for name, part in parts.items():
                if not all(isinstance(each, (int, float, bool)) for each in part):
                    continue
                others = ([] if printed is None else [("by name", printed.get(name))]) + told.get((call.line, name), [])
                for where, other in others:
                    checks += 1
                    if other is None or len(other) != len(part) or not all(
                            same(a, b, types[name]) for a, b in zip(part, other)):
                        problems.append(f"line {call.line}, {of}.{call.member}, {name}: {part} in Python, "
                                        f"{where} {other}")
    print("\n".join([*problems, f"digits: {checks} checks, {len(problems)} failures"]))
    sys.exit(1 if problems or checks < 290 * (1 + len(files)) else 0)


main()
