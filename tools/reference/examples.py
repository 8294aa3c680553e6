"""Turns worked calls into programs: the same calls in C++, by name, in Python, on the command line.

An example is a list of steps (steps.py). A language has one template for all members."""

import datetime
import shlex

from .steps import is_date

VARIABLES = {"ztMathLib": "maths", "ztStatistics": "statistics", "ztSample": "sample",
             "ztRegression": "regression", "ztDifferentiate": "differentiate",
             "ztIntegrate": "integrate", "ztAccumulate": "accumulate", "ztPetroleum": "petroleum",
             "ztAnalyseInfo": "info"}
LANGUAGES = {"cpp": "C++", "vb": "By name", "python": "Python", "console": "Command line"}
CPP_TYPES = {"Single": "float", "Double": "double", "Long": "std::int32_t", "Boolean": "bool",
             "String": "std::string", "Date": "Date"}
WIDTH = 92


# Values of the worked calls.

def rows_of(value):
    return [row.split() for row in value[1:-1].split(";")] if value != "[]" else []


def given_value(value, argument):
    """What an example hands over: zeros in place of what is there to be written over."""
    if argument.direction == "in,out" and set(value.strip("[]").split()) == {"7"}:
        return value.replace("7", "0")
    return value


def rounded(value):
    """As examples print it, to six digits."""
    if value.startswith("["):
        rows = ["[" + ", ".join(rounded(cell) for cell in row) + "]" for row in rows_of(value)]
        return "[" + ", ".join(rows) + "]" if len(rows) > 1 else rows[0] if rows else "[]"
    try:
        return f"{float(value):.6g}"
    except ValueError:
        return value


def output_lines(steps):
    """What the steps print, a line each: "0.5", or "Name = 0.5, Other = [1, 2]"."""
    lines = []
    for step in steps:
        parts = []
        if step.call.result != "-":
            label = f"{step.call.member} = " if len(steps) > 1 else ""
            parts.append(label + rounded(step.call.result))
        for argument, (_, after) in zip(step.call.signature, step.call.arguments):
            if after:
                parts.append(f"{argument.name} = {rounded(after)}")
        lines.append(", ".join(parts))
    return [line for line in lines if line]


def wrapped(head, parts, separator, tail=""):
    """Statements that hold as many of the parts as a line takes."""
    lines, now = [], []
    for part in parts:
        if now and len(head + separator.join([*now, part]) + tail) > WIDTH:
            lines.append(head + separator.join(now) + tail)
            now = []
        now.append(part)
    return lines + ([head + separator.join(now) + tail] if now else [])


class Writer:
    """What the languages share: statements before, results joined while nothing comes between."""

    def __init__(self, class_name, native_names):
        self.native_names = native_names  # the names of the class's C++ functions
        self.object = VARIABLES[class_name]
        self.class_name = class_name
        self.lines, self.results, self.known = [], [], {}

    def results_done(self):
        if self.results:
            self.lines += self.print_all(self.results)
        self.results = []

    def say(self, *lines):
        if lines:
            self.results_done()
            self.lines += lines

    def variable(self, name, declaration, changed=False):
        """A variable of this declaration, which holds "@" for its name; one of its own where the
        call changes it."""
        if name in self.known and (changed or self.known[name] != declaration):
            name += "2"
        if name not in self.known:
            self.known[name] = declaration
            self.say(*[line.replace("@", name) for line in declaration])
        return name

    def program(self, steps):
        done = set()
        for step in steps:
            for each in [*step.lets, step.before]:
                if each is not None and id(each) not in done:
                    done.add(id(each))
                    self.step(each, shown=False)
            self.step(step.call, shown=True)
        self.results_done()
        return self.lines


class Cpp(Writer):
    def literal(self, value, type_name):
        if type_name == "Boolean":
            return value.lower()
        if type_name == "Date":
            day = datetime.date.fromisoformat(value) - datetime.date(1899, 12, 30)
            return f"Date{{{day.days}}}"
        if type_name == "Single" and any(mark in value for mark in ".e"):
            return value + "F"
        return value

    def array(self, argument, value):
        element = "Boolean" if argument.type == "Boolean" else CPP_TYPES[argument.type]
        rows = rows_of(value)
        cells = [[self.literal(cell, argument.type) for cell in row] for row in rows]
        if argument.rank == 2:
            columns = ",  ".join(", ".join(column) for column in zip(*cells))
            name = self.variable(argument.name, (
                f"const {element} @[]{{{columns}}};  // column after column",))
            return f"Array2<const {element}>({name}, {{1, {len(rows)}}}, {{1, {len(rows[0])}}})"
        if argument.direction == "in,ref":
            return self.variable(argument.name,
                                 (f"const std::vector<{element}> @{{{', '.join(cells[0])}}};",))
        fill = [f"@({i}) = {cell};" for i, cell in enumerate(cells[0], 1) if cell != "0"]
        declaration = (f"Array1<{element}> @(1, {len(cells[0])});", *wrapped("", fill, " "))
        return self.variable(argument.name, declaration, argument.direction == "in,out")

    def given(self, argument, value):
        if argument.rank and argument.direction == "out":
            element = "Boolean" if argument.type == "Boolean" else CPP_TYPES[argument.type]
            return self.variable(argument.name, (f"Array{argument.rank}<{element}> @;",))
        if argument.rank:
            return self.array(argument, value)
        if argument.direction in ("in", "in,ref"):
            return self.literal(value, argument.type)
        start = {"Boolean": "false", "String": '""'}.get(argument.type, "0")
        if argument.direction != "out":
            start = self.literal(value, argument.type)
        return self.variable(argument.name, (f"{CPP_TYPES[argument.type]} @ = {start};",))

    def step(self, call, shown):
        names = []
        for i, argument in enumerate(call.signature):
            value = call.arguments[i][0] if i < len(call.arguments) else ""
            if not value and argument.default:
                value = argument.default
            names.append(self.given(argument, given_value(value, argument)))
        prefixed = {"get": "get_", "let": "put_"}.get(call.kind, "") + call.member
        native = prefixed if prefixed in self.native_names else call.member
        opening = f"{self.object}.{native}("
        text = "\n    ".join(wrapped(opening, names, ", ", ")"))
        text = text.replace(f")\n    {opening}", ",\n    ") if names else opening + ")"
        if not shown or call.result == "-":
            self.say(text + ";")
        else:
            self.results.append(text)
        outs = [(a, n) for a, n, (_, after) in zip(call.signature, names, call.arguments) if after]
        if shown and outs:
            self.results_done()
            self.print_outs(outs, call)

    def print_outs(self, outs, call):
        scalars = []
        for argument, name in outs:
            if argument.rank == 0:
                scalars.append(name)
                continue
            if scalars:
                self.lines += self.print_all(scalars)
                scalars = []
            element = CPP_TYPES[argument.type]
            if argument.rank == 1:
                self.lines += [f"for ({element} each : {name}.elements()) "
                               'std::cout << each << "\\n";']
            else:
                after = dict(zip([a.name for a in call.signature], call.arguments))[argument.name][1]
                columns = len(rows_of(after)[0])
                cells = ' << " " << '.join(f"{name}(i, {c})" for c in range(1, columns + 1))
                self.lines += [f"for (int i = 1; i <= {name}.rows().upper; ++i) {{",
                               f'  std::cout << {cells} << "\\n";', "}"]
        if scalars:
            self.lines += self.print_all(scalars)

    def print_all(self, parts):
        return wrapped("std::cout << ", parts, ' << " " << ', ' << "\\n";')


class Basic(Writer):
    def literal(self, value):
        if is_date(value):
            year, month, day = value.split("-")
            return f"DateSerial({int(year)}, {int(month)}, {int(day)})"
        return value

    def given(self, argument, value):
        if argument.direction == "out":
            return argument.name
        if argument.rank == 0 and argument.direction == "in,out":
            return self.variable(argument.name, (f"@ = {self.literal(value)}",))
        if argument.rank == 0:
            return self.literal(value)
        rows = rows_of(value)
        if argument.rank == 1:
            return self.variable(argument.name, (f"@ = Array({', '.join(['0', *rows[0]])})",),
                                 argument.direction == "in,out")
        fill = [" : ".join(f"@({i}, {j}) = {cell}" for j, cell in enumerate(row, 1))
                for i, row in enumerate(rows, 1)]
        return self.variable(argument.name, (f"Dim @({len(rows)}, {len(rows[0])})", *fill))

    def step(self, call, shown):
        names = [self.given(a, given_value(given, a))
                 for a, (given, _) in zip(call.signature, call.arguments)]
        text = f"{self.object}.{call.member}"
        if call.kind == "let":
            self.say(f"{text} = {names[0]}")
            return
        if call.result != "-" and shown:
            self.results.append(f"{text}({', '.join(names)})" if names else text)
        else:
            self.say(f"{text} {', '.join(names)}".rstrip())
        outs = [(a, n) for a, n, (_, after) in zip(call.signature, names, call.arguments) if after]
        if not shown:
            return
        scalars = []
        for argument, name in outs:
            if argument.rank == 0:
                scalars.append(name)
                continue
            self.results_done()
            self.lines += self.print_all(scalars)
            scalars = []
            if argument.rank == 1:
                self.lines += [f"For i = 1 To UBound({name}) : WScript.Echo {name}(i) : Next"]
            else:
                after = dict(zip([a.name for a in call.signature], call.arguments))[argument.name][1]
                columns = len(rows_of(after)[0])
                cells = ", ".join(f"{name}(i, {c})" for c in range(1, columns + 1))
                self.lines += [f"For i = 1 To UBound({name}, 1) : WScript.Echo {cells} : Next"]
        if scalars:
            self.results_done()
            self.lines += self.print_all(scalars)

    def print_all(self, parts):
        return wrapped("WScript.Echo ", parts, ", ")


class Python(Writer):
    def literal(self, value):
        if is_date(value):
            year, month, day = value.split("-")
            return f"date({int(year)}, {int(month)}, {int(day)})"
        if value.startswith("["):
            rows = ["[" + ", ".join(row) + "]" for row in rows_of(value)]
            return rows[0] if len(rows) == 1 else "[" + ", ".join(rows) + "]"
        return value

    def given(self, argument, value):
        if argument.rank == 0:
            return self.literal(value)
        text = self.literal(value)
        return self.variable(argument.name, (f"@ = {text}",)) if len(text) > 24 else text

    def step(self, call, shown):
        names = [self.given(a, given_value(given, a))
                 for a, (given, _) in zip(call.signature, call.arguments) if a.direction != "out"]
        text = f"{self.object}.{call.member}"
        if call.kind == "let":
            self.say(f"{text} = {names[0]}")
            return
        if call.kind == "call" or names or call.signature:
            text += f"({', '.join(names)})"
        if shown and call.values:
            self.results.append(text)
        else:
            self.say(text)

    def print_all(self, parts):
        return wrapped("print(", parts, ", ", ")")


class Console(Writer):
    def literal(self, value):
        if value.startswith("["):
            rows = ["[" + ",".join(row).lower() + "]" for row in rows_of(value)]
            return rows[0] if len(rows) == 1 else "[" + ",".join(rows) + "]"
        return shlex.quote(value[1:-1]) if value.startswith('"') else value

    def program(self, steps):
        together = {}  # properties that one call tells
        for step in steps:
            alone = step.before is None
            together.setdefault(id(step.call if alone else step.before), []).append(step)
        for group in together.values():
            step = group[0]
            call = step.before or step.call
            words = ["-" if a.direction == "out" else self.literal(given_value(given, a))
                     for a, (given, _) in zip(call.signature, call.arguments)]
            while words and words[-1] == "-":
                words.pop()
            text = " ".join(["vqhost call", self.class_name, call.member, *words])
            for let in step.lets:
                text += f" --set {let.member}={self.literal(let.arguments[0][0])}"
            if step.before is not None:
                text += " --get " + ",".join(each.call.member for each in group)
            self.lines.append(text)
        return self.lines


WRITERS = {"cpp": Cpp, "vb": Basic, "python": Python, "console": Console}


def prelude(class_name, header):
    """What stands before every example of a class, by language."""
    name = VARIABLES[class_name]
    return {
        "cpp": [f"#include <vqmath63/{header}>", "using namespace vqmath63;", f"{class_name} {name};"],
        "vb": [f'Set {name} = CreateObject("vq140Analyse.{class_name}")'],
        "python": [*["from datetime import date"] * (class_name == "ztAccumulate"),
                   "import vqmath63 as vq", f"{name} = vq.{class_name.removeprefix('zt')}()"],
    }
