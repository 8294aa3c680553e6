#!/usr/bin/env python3
"""Writes the reference: docs/reference.md, by class and by task, and a page a class below
docs/reference/.

The members come from their tables (vqgenerate reference); rules, formulas, arguments and special
values from the doc comments of the class headers in src/; the examples from the worked calls in
tests/data/calls.tsv; the tasks from tools/reference/tasks.tsv.

usage: make_reference.py VQGENERATE [--check]    --check: writes nothing, fails if a page is old
"""
import pathlib
import sys

from reference import comments, pages, tables

ROOT = pathlib.Path(__file__).resolve().parent.parent


def made_pages(generator):
    """Path below docs/ -> text."""
    classes = tables.read_tables(generator)
    notes = comments.read_headers(ROOT)
    calls = tables.read_calls(ROOT / "tests/data/calls.tsv", classes)
    topics = pages.read_tasks(ROOT / "tools/reference/tasks.tsv")
    made = {"reference.md": pages.index_page(classes, topics)}
    for each in classes:
        made[f"reference/{each.name}.md"] = pages.class_page(each, notes[each.name], calls, topics)
    return made


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    try:
        made = made_pages(sys.argv[1])
    except pages.PageError as error:
        sys.exit(str(error))
    folder = ROOT / "docs/reference"
    folder.mkdir(exist_ok=True)
    there = {f"reference/{path.name}" for path in folder.glob("*.md")}
    old = [name for name, text in made.items()
           if not (ROOT / "docs" / name).exists()
           or (ROOT / "docs" / name).read_text(encoding="utf-8") != text]
    if sys.argv[2:] == ["--check"]:
        if old or there - set(made):
            sys.exit("not current: " + ", ".join(f"docs/{name}" for name in [*old, *(there - set(made))])
                     + f". To mend it:\n  python3 tools/make_reference.py {sys.argv[1]}")
        return
    for name in old:
        (ROOT / "docs" / name).write_text(made[name], encoding="utf-8")


main()
