"""Reads what the public headers say of classes and members.

Comments are those that begin with three slashes. Of a class it stands before it; of members before
their declarations, and holds for all that follow without an empty line or another comment between.
"@name HEADING" begins a section of members. Words of a section, or of the class, hold for each of
its members that says nothing of its own:

    @param NAME ...   an argument: its role, unit, bounds
    @return ...       the result
    @failure ...      what becomes of a failure

"$$ ... $$" on lines of its own is a formula in TeX. A class's sentence "NaN: ..." holds for each member that takes
a number and says nothing of its own. What remains is running text, and tables."""

import re
from dataclasses import dataclass, field

DECLARATION = re.compile(r"[\w:<>,&\s]*?\b(~?\w+)\s*\(")
FAILURES = re.compile(r"\b[Ff]ails?\b|^Errors, |\b[Ee]rror \d|^No trap|reaches the caller"
                      r"|: (5|6|7|9|11|13)\.$|a failure\b")
SPECIAL = re.compile(r"\bNaN\b|\b1e308\b|3\.402823E|[Oo]ut of range|infinit|overflow is"
                     r"|without a message")
COSTS = re.compile(r"^O\(|nanosecond|microsecond|[Rr]elative error|[Aa]ccura|allocation\.$|[Dd]ouble precision"
                   r"|stored as Single|^Sums are")
SOURCES = re.compile(r"^Sources?:|W\. J\. Cody")
NO_DESCRIPTION = re.compile(r"NaN: |Fails|Out of range|No trap")
PARAGRAPH = "\n\n"  # before a sentence that begins one
ABBREVIATION = re.compile(r"\b(W|J|Phil|Mag|[A-Z])\.$")


@dataclass
class Note:
    """What one comment says."""

    text: list = field(default_factory=list)  # sentences
    tables: list = field(default_factory=list)
    formulas: list = field(default_factory=list)
    params: dict = field(default_factory=dict)
    result: str = ""
    failure: str = ""
    name: str = ""

    def sorted_text(self):
        """The sentences by what they are about: description, failures, special values, cost, source."""
        groups = {"": [], "Failures": [], "Special values": [], "Accuracy and cost": [], "Source": []}
        for at, sentence in enumerate(self.text):
            for place, clause in enumerate(clauses(sentence)):
                kind = "" if at == place == 0 and not NO_DESCRIPTION.match(clause) else kind_of(clause)
                groups[kind].append(clause.strip() if kind or not groups[kind] else clause)
        return {kind: " ".join(parts).replace(" " + PARAGRAPH, PARAGRAPH)
                for kind, parts in groups.items() if parts}


def kind_of(clause):
    """Under which heading a clause goes, "" for the description."""
    text = clause.strip()
    marks = (("Source", SOURCES), ("Special values", re.compile("^NaN: ")), ("Failures", FAILURES),
             ("Special values", SPECIAL), ("Accuracy and cost", COSTS))
    return next((name for name, mark in marks if mark.search(text)), "")


def clauses(sentence):
    """A sentence in parts: a clause behind a semicolon that goes under another heading is a sentence
    of its own. What is said of NaN stays together."""
    if sentence.strip().startswith("NaN: "):
        return [sentence]
    parts = []
    for each in sentence.split("; "):
        if parts and kind_of(each) == kind_of(parts[-1]) or parts and not kind_of(each):
            parts[-1] += "; " + each
        else:
            parts.append(each)
    ended = [part if part.endswith(".") else part + "." for part in parts]
    return [ended[0], *(part[0].upper() + part[1:] for part in ended[1:])]


@dataclass
class Section:
    note: Note
    groups: list = field(default_factory=list)  # of (names of members, Note), in order


@dataclass
class ClassNotes:
    header: str
    note: Note
    sections: list
    functions: set  # the names of its C++ functions


def sentences(text):
    parts, begin = [], 0
    for found in re.finditer(r"[.?!] (?=[A-Z0-9|\"(O]|dX|xA|c |qOK|dB|x)", text):
        part = text[begin:found.start() + 1]
        if (ABBREVIATION.search(part) or part.endswith("...")) and text[found.end():][:4] != "NaN:":
            continue
        parts.append(part)
        begin = found.end()
    return [part.strip() for part in [*parts, text[begin:]] if part.strip()]


def read_note(lines):
    note, words, target = Note(), [], None

    def finish():
        nonlocal words, target
        text = re.sub(r"\s+", " ", " ".join(words)).strip()
        if target is None:
            said = sentences(text)
            if said and note.text and not said[0].startswith("NaN: "):
                said[0] = PARAGRAPH + said[0]
            note.text += said
        elif target[0] == "param":
            note.params[target[1]] = text
        else:
            setattr(note, {"return": "result", "failure": "failure", "name": "name"}[target[0]], text)
        words, target = [], None

    formula = ""
    for line in lines:
        line = line.strip().removeprefix("///").strip()
        if formula or line.startswith("$$"):
            if not formula:
                finish()
            formula = (formula + " " + line).strip()
            if len(formula) > 3 and formula.endswith("$$"):
                note.formulas.append(formula.strip("$ "))
                formula = ""
            continue
        tag = re.match(r"@(param (\w+)|return|failure|name)\s*(.*)", line)
        if line.startswith("|"):
            note.tables.append(line)
        elif tag:
            finish()
            target = (tag[1].split()[0], tag[2])
            words = [tag[3]]
            if target[0] == "name":  # one line
                finish()
        elif not line:
            finish()
        else:
            words.append(line)
    finish()
    return note


def read_members(lines):
    """The sections of a class's public part, and the names of its functions."""
    sections, functions = [Section(Note())], set()
    comment, statement, open_comment, named = [], "", False, None
    for line in [*lines, ""]:
        text = line.strip()
        if not statement and text.startswith("///"):
            if not open_comment:
                comment = []
            comment.append(text)
            open_comment, named = True, None
        elif not statement and (not text or text.startswith("//")):
            if open_comment and comment and comment[0].startswith("/// @name"):
                sections.append(Section(read_note(comment)))
            comment, open_comment, named = [], False, None
        else:
            open_comment = False
            statement += " " + text
            if statement.count("(") == statement.count(")") and statement.endswith((";", "}")):
                found = DECLARATION.match(statement)
                if found and not found[1].startswith(("zt", "~", "operator")):
                    functions.add(found[1])
                    name = re.sub(r"^(get|put)_", "", found[1])
                    if named is None:
                        named = ([], read_note(comment))
                        sections[-1].groups.append(named)
                    if name not in named[0]:
                        named[0].append(name)
                statement = ""
    return sections, functions


def read_headers(root):
    """Class name -> ClassNotes, from the headers below root/src."""
    found_classes = {}
    for header in sorted(root.glob("src/*/*.hpp")):
        text = header.read_text(encoding="utf-8")
        for found in re.finditer(r"((?:^///.*\n)+)class (zt\w+)(?: final)? \{\n public:\n", text, re.M):
            body = text[found.end():]
            ends = [at for at in (body.find("\n private:"), body.find("\n};")) if at >= 0]
            sections, functions = read_members(body[:min(ends)].splitlines())
            found_classes.setdefault(found[2], ClassNotes(
                header.relative_to(root / "src").as_posix(), read_note(found[1].splitlines()),
                sections, functions))
    return found_classes
