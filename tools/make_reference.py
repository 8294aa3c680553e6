#!/usr/bin/env python3
"""Writes docs/reference.md: the members of the nine classes and what is said of them.

The lists of members come from the member tables (vqgenerate reference); rules and special values
from the doc comments of the class headers in src/. A sentence "NaN: ..." of a class holds for each
of its members that takes a number and says nothing of its own.

usage: make_reference.py VQGENERATE [--check]      --check: writes nothing, fails if the page is old
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs/reference.md"
DECLARATION = re.compile(r"[\w:<>,&\s]*?\b(~?\w+)\s*\(")
TAKES_NUMBERS = re.compile(r"\b(Single|Double)\b")


def class_bodies():
    """Class name -> (its own doc comment, the lines of its public part)."""
    bodies = {}
    for header in sorted(ROOT.glob("src/*/*.hpp")):
        text = header.read_text(encoding="utf-8")
        for found in re.finditer(r"((?:^///.*\n)+)class (zt\w+)(?: final)? \{\n public:\n", text, re.M):
            body = text[found.end():]
            ends = [at for at in (body.find("\n private:"), body.find("\n};")) if at >= 0]
            bodies.setdefault(found[2], (found[1].splitlines(), body[:min(ends)].splitlines()))
    return bodies


def paragraphs(lines):
    """A comment's lines without their slashes, joined to one text; tables keep their lines."""
    words, table = [], []
    for line in lines:
        line = line.strip().lstrip("/").strip()
        (table if line.startswith("|") else words).append(line)
    return re.sub(r"\s+", " ", " ".join(words)).strip(), table


def member_notes(lines):
    """Member name -> text of its doc comment. A comment holds for the declarations that follow it
    without an empty line or another comment between."""
    notes, comment, fresh = {}, [], False
    statement = ""
    for line in lines:
        text = line.strip()
        if not statement and text.startswith("///"):
            if not fresh:
                comment = []
            comment.append(text)
            fresh = True
        elif not statement and (not text or text.startswith("//")):
            comment, fresh = [], False
        else:
            fresh = False
            statement += " " + text
            if statement.count("(") == statement.count(")") and (
                    statement.endswith((";", "}")) or ") {" in statement and text == "}"):
                named = DECLARATION.match(statement)
                if named and not named[1].startswith(("zt", "~", "operator")):
                    name = re.sub(r"^(get|put)_", "", named[1])
                    said = paragraphs(comment)[0]
                    if said and said not in notes.get(name, ""):
                        notes[name] = (notes.get(name, "") + " " + said).strip()
                statement = ""
    return notes


def default_nan(text):
    """The class's sentence on NaN, taken out of its text."""
    found = re.search(r"NaN: [^.]*(?:\.\d[^.]*)*\.", text)
    return (text, "") if not found else (re.sub(" ?" + re.escape(found[0]), "", text), found[0])


def escaped(text):
    return re.sub(r"<(?=[a-z/])", "&lt;", text).replace("*", "\\*")


def page(generator):
    made = subprocess.run([generator, "reference"], check=True, capture_output=True, text=True).stdout
    head, *sections = re.split(r"(?m)^## ", made)
    bodies, missing = class_bodies(), []
    for section in sections:
        name = section.split("\n", 1)[0]
        comment, lines = bodies[name]
        said, table = paragraphs(comment)
        said, nan = default_nan(said)
        head += "## " + section.rstrip() + "\n\n" + escaped(said) + "\n"
        if table:
            head += "\n" + "\n".join([table[0], table[1]] + table[2:]) + "\n"
        notes, listed = member_notes(lines), []
        for row in section.splitlines():
            member = re.match(r"\| \d+ \| `(?:Function|Sub|Property \w+) (\w+)\((.*)\)", row)
            if not member or member[1] in listed:
                continue
            listed.append(member[1])
            note = notes.get(member[1], "")
            if TAKES_NUMBERS.search(member[2]) and not re.search(r"\bNaN\b", note):
                if not nan:
                    missing.append(f"{name}.{member[1]}")
                note = (note + " " + nan).strip()
            if note:
                head += ("\n" if len(listed) == 1 else "") + f"- `{member[1]}`: {escaped(note)}\n"
        head += "\n"
    if missing:
        sys.exit("no word on NaN in the doc comments of: " + ", ".join(missing))
    return head.rstrip() + "\n"


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    text = page(sys.argv[1])
    if sys.argv[2:] != ["--check"]:
        PAGE.write_text(text, encoding="utf-8")
    elif PAGE.read_text(encoding="utf-8") != text:
        sys.exit("docs/reference.md is not current. To mend it:\n"
                 f"  python3 tools/make_reference.py {sys.argv[1]}")


main()
