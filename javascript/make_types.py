#!/usr/bin/env python3
"""Writes the package's type declarations, index.d.ts, from the component's own description.

usage: VQMATH63_LIBRARY=libvqmath63.so make_types.py OUT
"""

import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "python"))
from vqmath63._description import classes  # noqa: E402

TYPES = {"Single": "number", "Double": "number", "Long": "number", "Boolean": "boolean", "Date": "Date",
         "String": "string", "": "void"}
ARRAYS = {"Single": "Float32Array", "Double": "Float64Array", "Long": "Int32Array",
          "Boolean": "boolean[]"}
HEAD = """// Made from the component's description. Arguments that a member only writes are left out and come back.

type Numbers = ArrayLike<number>;
type Truths = ArrayLike<boolean | number>;

export interface Line { line: string; number: number; text: string; module: string; routine: string }

/** The component reported an error; `lines` has all of them, `result` what the call returned. */
export class VqError extends Error {
  lines: Line[];
  number: number;
  text: string;
  routine: string;
  result: unknown;
}
"""


def given(type):
    if type.rank == 0:
        return TYPES[type.name]
    one = "Truths" if type.name == "Boolean" else "Numbers"
    return (one if type.rank == 1 else f"ArrayLike<{one}>") + " | null"


def back(type):
    if type.rank == 2:
        return f"{TYPES[type.name]}[][]"
    return ARRAYS[type.name] if type.rank else TYPES[type.name]


def many(type):
    """What stands for many: of numbers an array."""
    return "Truths" if type.name == "Boolean" else "Numbers"


def result_of(member, of=back):
    parts = [("result", member.result)] if member.result.name else []
    parts += [(a.name, a.type) for a in member.outputs]
    if len(parts) > 1:
        return "{ " + "; ".join(f"{name}: {of(type)}" for name, type in parts) + " }"
    return of(parts[0][1]) if parts else "void"


def parameters(member, of=given):
    return ", ".join(f"{a.name}{'?' if a.optional else ''}: {of(a.type)}" for a in member.inputs)


def signatures(member):
    yield f"{member.name}({parameters(member)}): {result_of(member)};"
    if member.elementwise:
        single = ("Single", "Double", "Long", "Boolean")

        def lists(type):
            ok = type.rank == 0 and type.name in single
            return f"{given(type)} | {many(type)}" if ok else given(type)
        yield f"{member.name}({parameters(member, lists)}): {result_of(member, lambda t: ARRAYS[t.name])};"


def declaration(of):
    lines = [f"/** {of.help} */", f"declare class {of.name} {{"]
    lets = {m.name: m for m in of.members if m.kind == "let"}
    settings = "; ".join(f"{name}?: {given(m.arguments[0].type)}" for name, m in lets.items())
    lines.append(f"  constructor(settings?: {{ {settings} }});" if lets else "  constructor();")
    for m in of.members:
        if m.kind == "method" or m.kind == "get" and m.inputs:
            lines.append(f"  /** {m.help} */")
            lines += [f"  {text}" for text in signatures(m)]
        elif m.kind == "get":
            lines += [f"  /** {m.help} */", f"  get {m.name}(): {back(m.result)};"]
        else:
            lines += [f"  /** {m.help} */", f"  set {m.name}(value: {given(m.arguments[0].type)});"]
    return "\n".join([*lines, "}"])


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    known = classes()
    parts = [HEAD, *map(declaration, known), "declare const vqmath63: {"]
    for of in known:
        parts += [f"  {name}: typeof {of.name};" for name in (of.name, of.name.removeprefix("zt"))]
    pathlib.Path(sys.argv[1]).write_text("\n".join([*parts, "};", "export default vqmath63;", "export {};", ""]),
                                         encoding="utf-8")


main()
