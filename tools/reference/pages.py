"""Writes the pages of the reference from tables, comments and worked calls."""

import re

from . import examples
from .comments import PARAGRAPH
from .steps import steps_for

# Names of members that are words of running text, or of its formulas, too.
WORDS = {"A", "B", "R", "Max", "Min", "Sign", "angle", "average", "beta", "cosine", "sine"}
FENCE = "```"


class PageError(Exception):
    """What keeps the pages from being complete."""


def anchor(name):
    return name.lower()


def in_markdown(text):
    return re.sub(r"<(?=[a-z/])", "&lt;", text).replace("*", "\\*").replace("|", "\\|")


class Linker:
    """Turns the names of a class's members in running text into links."""

    def __init__(self, names):
        known = sorted(set(names) - WORDS, key=len, reverse=True)
        self.pattern = re.compile(r"(?<![\w.])(" + "|".join(map(re.escape, known)) + r")(?!\w)")

    def __call__(self, text, own=()):
        text = self.pattern.sub(
            lambda found: found[0] if found[0] in own else f"[{found[0]}](#{anchor(found[0])})",
            in_markdown(text))
        return re.sub(r"\bdocs/(\w+)\.md", r"[\1](../\1.md)", text)


def read_tasks(path):
    """Topic -> (task, [(class, member)], command), in the order of the file."""
    topics = {}
    for line in path.read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            topic, task, members, command = line.split("\t")
            named = [tuple(each.split(".")) for each in members.split(", ")]
            topics.setdefault(topic, []).append((task, named, command))
    return topics


def kinds_of(members, name):
    return [each for each in members if each.name == name]


def word_of(argument, note, section, whole, where):
    for each in (note, section, whole):
        if argument.name in each.params:
            return each.params[argument.name]
    raise PageError(f"{where}: no @param {argument.name}")


def declaration_lines(member):
    """A declaration as Basic goes on with it in a further line."""
    head, _, rest = member.declaration().partition("(")
    parts = rest.split(", ")
    lines = examples.wrapped("", [f"{head}({parts[0]}", *parts[1:]], ", ")
    return [("    " if at else "") + line + (", _" if at < len(lines) - 1 else "")
            for at, line in enumerate(lines)]


def group_arguments(members):
    """The arguments of members that share a comment, each once."""
    found = {}
    for member in members:
        for each in member.arguments:
            found.setdefault(each.name, each)
    return found.values()


def own_words(members):
    """What the text on members calls their own: their names, and those of their arguments."""
    return {each.name for each in members} | {each.name for each in group_arguments(members)}


WAYS = {"in": "", "in,ref": "", "in,lent": "", "out": ", result", "in,out": ", changed"}


def argument_rows(members, note, section, whole, link):
    rows = []
    names = own_words(members)
    for each in group_arguments(members):
        type_text = each.type + ("", "()", "(,)")[each.rank] + WAYS[each.direction]
        if each.default:
            type_text += f", by default {each.default}"
        where = f"{whole.name}.{members[0].name}"
        said = word_of(each, note, section, whole, where)
        rows.append(f"| `{each.name}` | {type_text} | {link(said, names)} |")
    results = list(dict.fromkeys(each.result for each in members if each.result))
    if results:
        said = note.result or section.result or whole.result
        if not said and results != ["Boolean"]:
            raise PageError(f"{whole.name}.{members[0].name}: no @return")
        rows.append(f"| returns | {', '.join(results)} | {link(said, names)} |")
    return ["| | | |", "| --- | --- | --- |", *rows, ""] if rows else []


def example_blocks(class_name, steps, functions):
    lines = []
    for language, writer in examples.WRITERS.items():
        program = writer(class_name, functions).program(steps)
        lines += [FENCE + language, *program, FENCE]
    printed = examples.output_lines(steps)
    if printed:
        lines += ["", FENCE + "text", *printed, FENCE]
    return lines


def see_also(names, class_name, topics):
    """Members that stand in one line of tasks with these."""
    found = {}
    for tasks in topics.values():
        for _, named, command in tasks:
            if any((class_name, name) in named for name in names):
                for of, name in named:
                    if of == class_name and name not in names:
                        found[f"[{name}](#{anchor(name)})"] = 1
                if command and not command.startswith("-"):
                    found[f"`vqhost {command}`"] = 1
    return list(found)


def merged_groups(sections):
    """The comments of a class with the members of each; a property of which reading and setting
    are told apart comes once."""
    homes, merged = {}, []
    for section in sections:
        groups = []
        for names, note in section.groups:
            fresh = [name for name in names if name not in homes]
            if fresh:
                groups.append((fresh, note))
                homes.update((name, note) for name in fresh)
            else:
                for name in names:
                    home = homes[name]
                    home.text += [each for each in note.text if each not in home.text]
        merged.append((section.note, groups))
    return merged


def member_section(names, note, section, whole, of, context):
    """One member's part of the page, or that of members that share a comment."""
    members = [each for name in names for each in kinds_of(of.members, name)]
    own, lines = own_words(members), []

    def link(text):
        return context.link(text, own)

    if len(names) > 1:
        lines += ["".join(f'<a id="{anchor(name)}"></a>' for name in names), ""]
    lines += ["### " + ", ".join(names), ""]
    declared = [line for each in members for line in declaration_lines(each)]
    lines += [FENCE + "vb", *declared, FENCE, ""]
    groups = note.sorted_text()
    takes_numbers = any(each.type in ("Single", "Double") for m in members for each in m.arguments)
    if takes_numbers and "NaN" not in " ".join(note.text):
        if not context.nan:
            raise PageError(f"{of.name}.{names[0]}: no word on NaN")
        groups["Special values"] = (groups.get("Special values", "") + " " + context.nan).strip()
    if not groups.get(""):
        groups[""] = " ".join(dict.fromkeys(each.help for each in members))
    if groups.get(""):
        lines += [link(groups[""]), ""]
    for formula in note.formulas:
        lines += [f"$${formula}$$", ""]
    lines += argument_rows(members, note, section, whole, context.link)
    failures = groups.get("Failures", "")
    general = note.failure or section.failure or whole.failure
    if not failures.startswith("No trap") and any(each.kind == "method" for each in members):
        failures = " ".join(filter(None, [failures, general]))
    if failures:
        lines += [f"**Failures.** {link(failures)}", ""]
    for kind in ("Special values", "Accuracy and cost", "Source"):
        if groups.get(kind):
            lines += [f"**{kind}.** {link(groups[kind].removeprefix('Source: '))}", ""]
    shown = steps_for(members, context.calls[of.name], of.members)
    home = context.homes.setdefault(id(shown[0].call), names[0])
    if len(shown) == 1 and shown[0].before is None and home != names[0]:
        lines += [f"Example: that of [{home}](#{anchor(home)})."]
    else:
        lines += example_blocks(of.name, shown, context.notes.functions)
    others = see_also(names, of.name, context.topics)
    if others:
        lines += ["", "See also: " + ", ".join(others)]
    return [*lines, ""]


class Context:
    def __init__(self, of, notes, calls, topics):
        self.notes, self.calls, self.topics = notes, calls, topics
        self.homes = {}  # the member whose section has the example of a call
        for each in of.members:
            if each.kind == "method":
                call = steps_for([each], calls[of.name], of.members)[0].call
                self.homes[id(call)] = each.name
        self.link = Linker([each.name for each in of.members])
        self.nan = next((text for text in notes.note.text if text.startswith("NaN: ")), "")


def class_page(of, notes, calls, topics):
    context = Context(of, notes, calls, topics)
    whole = notes.note
    whole.name = of.name
    variable = examples.VARIABLES[of.name]
    lines = [f"# {of.name}", "", f"{of.help} Programmatic id `{of.id}`, header "
             f"`vqmath63/{notes.header}`, in Python `vqmath63.{of.name.removeprefix('zt')}`.", ""]
    text = " ".join(each for each in whole.text if not each.startswith("NaN: "))
    if text:
        lines += [context.link(text).replace(" " + PARAGRAPH, PARAGRAPH), ""]
    lines += [*whole.tables, ""] * bool(whole.tables)
    for name, help_text, numbers in of.numbers:
        values = ", ".join(f"`{word}` {number}" for word, number in numbers.items())
        lines += [f"`{name}`: {help_text} {values}.", ""]
    if whole.failure:
        lines += [f"**Failures.** {context.link(whole.failure)}", ""]
    lines += [f"In the examples `{variable}` is a new object:", ""]
    for language, program in examples.prelude(of.name, notes.header).items():
        lines += [FENCE + language, *program, FENCE]
    lines += ["", "Line n of the list is entry n of the dual interface after the seven of IUnknown and "
              "IDispatch.", "", "| Id | Member | What it does |", "| --- | --- | --- |"]
    for each in of.members:
        kind = {"get": " (read)", "let": " (set)"}.get(each.kind, "")
        lines.append(f"| {each.id} | [{each.name}](#{anchor(each.name)}){kind} | "
                     f"{in_markdown(each.help)} |")
    lines.append("")
    for section, groups in merged_groups(notes.sections):
        if groups:
            lines += [f"## {section.name or 'Members'}", ""]
            if section.text:
                lines += [context.link(" ".join(section.text).replace(PARAGRAPH, "")), ""]
        for names, note in groups:
            lines += member_section(names, note, section, whole, of, context)
    return "\n".join(lines).rstrip() + "\n"


def index_page(classes, topics):
    lines = ["# Reference of the members", "",
             "Made from the member tables, the doc comments and the worked calls. Every member with its",
             "formula, arguments, result, failures, special values and a call in C++, by name, in Python",
             "and on the command line; `vqhost members CLASS` prints the declarations.", "",
             "## By class", "", "| Class | What it does |", "| --- | --- |"]
    lines += [f"| [{each.name}](reference/{each.name}.md) | {each.help} |" for each in classes]
    lines += ["", "## By task", ""]
    told = set()
    for topic, tasks in topics.items():
        lines += [f"### {topic}", "", "| To ... | Members | Command |", "| --- | --- | --- |"]
        for task, named, command in tasks:
            told.update(named)
            of_class = dict.fromkeys(name for name, _ in named)
            cells = []
            for name in of_class:
                links = ", ".join(f"[{member}](reference/{name}.md#{anchor(member)})"
                                  for of, member in named if of == name)
                cells.append(f"{name}: {links}")
            lines.append(f"| {task} | {'; '.join(cells)} | "
                         + (f"`vqhost {command}` |" if command else "|"))
        lines.append("")
    every = {(each.name, member.name) for each in classes for member in each.members}
    for what, which in (("no task leads to", every - told), ("there is no", told - every)):
        if which:
            raise PageError(f"tasks.tsv: {what} " + ", ".join(".".join(each) for each in sorted(which)))
    return "\n".join(lines).rstrip() + "\n"
