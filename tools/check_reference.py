#!/usr/bin/env python3
"""Runs the examples of the reference and of the guide, and holds each to the output below it.

usage: check_reference.py write cpp FILE      writes a C++ program of all examples
       check_reference.py write vb FILE       the same for VBScript
       check_reference.py cpp PROGRAM         runs that program
       check_reference.py vb OUTPUT           holds what the script has printed (under Wine)
       check_reference.py python              runs those in Python, by the package vqmath63
       check_reference.py console VQHOST      runs the commands, and looks whether those of the
                                              index have the options that are told

In the reference numbers have to agree in the six digits that it shows, and words exactly; the guide's
output, and that of other pages where some is shown, has to agree as it stands. There whole programs in
C++, statements in VBScript and commands are looked at; python/tests/test_docs.py runs what is Python.
The last line counts:
"reference LANGUAGE: C checks, F failures"; exit status 1 when something failed."""

import contextlib
import io
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

from reference.examples import LANGUAGES

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGES = sorted((ROOT / "docs/reference").glob("*.md"))
GUIDE = [*sorted((ROOT / "docs/guide").glob("*.md")), ROOT / "docs/hosts.md", ROOT / "README.md"]
PROGRAM = r"\n((?:(?!```).)*?)```\n"  # between fences
# A number, a truth or a text in quotes; names and what belongs to them are passed over.
TOKEN = re.compile(r'"([^"]*)"|(?<![\w.])(-?(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?)(?![\w.])|\b([Tt]rue|[Ff]alse)\b')


class Example:
    def __init__(self, where, programs, printed):
        self.where, self.programs = where, programs
        self.printed = printed  # lines, or in the guide a text


def read_examples(path):
    """The preludes of a page, by language, and its examples."""
    text = path.read_text(encoding="utf-8")
    one_each = "".join(rf"```{language}{PROGRAM}" for language in LANGUAGES)
    preludes = re.search("".join(rf"```{each}{PROGRAM}" for each in ("cpp", "vb", "python")), text, re.S)
    found = []
    for each in re.finditer(one_each + rf"(?:\n```text{PROGRAM})?", text, re.S):
        heading = re.findall(r"^### (.*)$", text[:each.start()], re.M)[-1]
        programs = dict(zip(LANGUAGES, each.groups()))
        found.append(Example(f"{path.stem}: {heading}", programs, (each[5] or "").splitlines()))
    if not preludes or not found or text.count("```console\n") != len(found):
        sys.exit(f"{path}: its examples have another form than this script reads")
    return dict(zip(("cpp", "vb", "python"), preludes.groups())), found


def read_guide(path):
    """The blocks of a page of the guide that can be run, each an example of one language."""
    text = path.read_text(encoding="utf-8")
    for found in re.finditer(rf"^```(\w*){PROGRAM}(?:\n```text{PROGRAM})?", text, re.M | re.S):
        language, program, printed = found.groups()
        if program.startswith("$ vqhost "):
            language = "console"
        if language == "console" or language == "cpp" and "int main" in program or (
                language == "vb" and printed):
            line = text.count("\n", 0, found.start()) + 2
            yield Example(f"{path.relative_to(ROOT)}:{line}", {language: program}, printed)


def values_of(text):
    """Numbers, truths as 1 and 0, and quoted texts, in order."""
    values = []
    for quoted, number, truth in TOKEN.findall(text):
        if truth:
            values.append(float(truth.lower() == "true"))
        else:
            values.append(float(number) if number else quoted)
    return values


def same(wanted, got, text):
    if isinstance(wanted, str):
        return wanted.rstrip("* ") in text
    return isinstance(got, float) and abs(got - wanted) <= 5.1e-6 * abs(wanted)


def problem_of(wanted_text, got_text):
    """What is wrong with an output, "" if nothing."""
    wanted = values_of(wanted_text)
    texts = [value for value in wanted if isinstance(value, str)]
    numbers = [value for value in wanted if not isinstance(value, str)]
    got = [value for value in values_of(got_text) if isinstance(value, float)]
    if texts:  # a text may hold numbers; it has to be there
        got = got[:len(numbers)]
    got = [abs(value) if want in (0.0, 1.0) and value == -1 else value  # True may be -1
           for want, value in zip(numbers, got)] if len(got) == len(numbers) else got
    fine = len(got) == len(numbers) and all(same(w, g, got_text) for w, g in zip(numbers, got))
    if fine and all(same(text, "", got_text) for text in texts):
        return ""
    return f"wanted {wanted_text!r}, got {got_text!r}"


def guide_problem(wanted, got):
    """What is wrong with an output of the guide; blanks at the ends of lines do not count."""
    lines = [line.rstrip() for line in got.strip("\n").splitlines()]
    if wanted is None or lines == [line.rstrip() for line in wanted.strip("\n").splitlines()]:
        return ""
    return f"wanted {wanted!r}, got {got!r}"


def by_name(text):
    """What vqhost prints: the result under "", and each argument under its name."""
    found, name = {"": ""}, ""
    for line in text.splitlines():
        named = re.match(r"(\w+) = (.*)$", line)
        if named:
            name = named[1]
            found[name] = "" if named[2].startswith("rows ") else named[2]
        else:
            found[name] += " " + line
    return found


class Tally:
    def __init__(self, language):
        self.language, self.checks, self.failures = language, 0, 0

    def hold(self, where, problem):
        self.checks += 1
        if problem:
            self.failures += 1
            print(f"{where}: {problem}")

    def close(self):
        print(f"reference {self.language}: {self.checks} checks, {self.failures} failures")
        sys.exit(1 if self.failures or not self.checks else 0)


def cpp_program(pages, guide):
    headers, functions, calls = [], [], []
    for prelude, found in pages:
        *includes, declared = [line for line in prelude["cpp"].splitlines() if "using" not in line]
        headers += includes
        for example in found:
            body = "\n  ".join([declared, *example.programs["cpp"].splitlines()])
            functions.append(f"void example_{len(calls)}() {{\n  {body}\n}}\n")
            calls.append(f'  std::cout << "== {example.where}\\n";\n  example_{len(calls)}();\n')
    for example in guide:
        if "cpp" in example.programs:
            lines = example.programs["cpp"].splitlines()
            headers += [line for line in lines if line.startswith("#include")]
            body = "\n".join(line for line in lines if not line.startswith("#include"))
            functions.append(f"namespace page_{len(calls)} {{\n"
                             + body.replace("int main()", "void run()") + "\n}\n")
            calls.append(f'  std::cout << "== {example.where}\\n";\n  page_{len(calls)}::run();\n')
    return "\n".join(["#include <cstdint>", "#include <iostream>", "#include <string>",
                      "#include <vector>", *headers, "", "using namespace vqmath63;", "namespace {",
                      *functions, "}", "int main() {", *calls, "}", ""])


def vb_program(pages, guide):
    lines = []
    pages = [*pages, ({"vb": ""}, [each for each in guide if "vb" in each.programs])]
    for prelude, found in pages:
        for example in found:
            lines += [f'WScript.Echo "== {example.where}"', f"Example{len(lines)}",
                      f"Sub Example{len(lines)}", prelude["vb"].rstrip(),
                      example.programs["vb"].rstrip(), "End Sub"]
    return "\r\n".join("\r\n".join(lines).splitlines()) + "\r\n"


def hold_output(tally, pages, guide, output, language):
    """An output of all examples, each behind a line with its name."""
    parts = dict(part.partition("\n")[::2] for part in re.split(r"^== ", output, flags=re.M)[1:])
    for _, found in pages:
        for example in found:
            got = parts.get(example.where)
            wanted = "\n".join(example.printed)
            tally.hold(example.where, "it did not run" if got is None else problem_of(wanted, got))
    for example in guide:
        if language in example.programs:
            got = parts.get(example.where)
            problem = "it did not run" if got is None else guide_problem(example.printed, got)
            tally.hold(example.where, problem)


def run_python(tally, pages):
    for prelude, found in pages:
        for example in found:
            printed = io.StringIO()
            names = {}
            try:
                with contextlib.redirect_stdout(printed):
                    exec(prelude["python"] + example.programs["python"], names)
            except Exception as error:
                tally.hold(example.where, f"{type(error).__name__}: {error}")
                continue
            tally.hold(example.where, problem_of("\n".join(example.printed), printed.getvalue()))


def run_commands(tally, guide, program):
    for example in guide:
        for command in example.programs.get("console", "").splitlines():
            words = shlex.split(command.removeprefix("$ "), comments=True)
            done = subprocess.run([program, *words[1:]], capture_output=True, text=True)
            problem = guide_problem(example.printed, done.stdout)
            tally.hold(f"{example.where}: {command}", done.stderr if done.returncode else problem)


def run_console(tally, pages, program):
    for _, found in pages:
        for example in found:
            lines = list(example.printed)
            for command in example.programs["console"].splitlines():
                words = shlex.split(command)
                told = words[words.index("--get") + 1].split(",") if "--get" in words else [""]
                wanted = ", ".join(lines[:len(told)])
                if len(told) == 1:  # of a property, which stands under its own name
                    wanted = re.sub(rf"^({words[3]}|{told[0]}) = |^(?=[^=]*$)",
                                    f"{told[0]} = " * bool(told[0]), wanted)
                del lines[:len(told)]
                done = subprocess.run([program, *words[1:]], capture_output=True, text=True)
                if done.returncode != 0:
                    tally.hold(example.where, f"{command}: {done.stderr or done.stdout}")
                    continue
                got, problem = by_name(done.stdout), ""
                for part in re.split(r", (?=\w+ = )", wanted):
                    named = re.match(r"(\w+) = (.*)$", part)
                    name, value = named.groups() if named else ("", part)
                    problem = problem or problem_of(value, got.get(name, ""))
                tally.hold(example.where, problem)
    index = (ROOT / "docs/reference.md").read_text(encoding="utf-8")
    for told in dict.fromkeys(re.findall(r"`vqhost ([a-z][^`]*)`", index)):
        command, *options = told.split()
        if command != "members":
            said = subprocess.run([program, command, "--help"], capture_output=True, text=True)
            missing = [each for each in options if each.startswith("--") and each not in said.stdout]
            tally.hold(f"vqhost {told}", said.returncode != 0 or missing and f"no {missing}")


def main(words):
    if len(words) < 1 or len(words) != {"write": 3, "python": 1}.get(words[0], 2):
        sys.exit(__doc__)
    pages = [read_examples(path) for path in PAGES]
    guide = [example for path in GUIDE for example in read_guide(path)]
    if words[0] == "write":
        text = (cpp_program if words[1] == "cpp" else vb_program)(pages, guide)
        pathlib.Path(words[2]).write_text(text, encoding="utf-8", newline="")
        return
    tally = Tally(words[0])
    given = str(pathlib.Path(words[1]).resolve()) if len(words) > 1 else ""
    with tempfile.TemporaryDirectory() as folder, contextlib.chdir(folder):  # for what they write
        pathlib.Path("samples").symlink_to(ROOT / "samples")
        if words[0] == "cpp":
            done = subprocess.run([given], capture_output=True, text=True)
            hold_output(tally, pages, guide, done.stdout, "cpp")
        elif words[0] == "vb":
            output = pathlib.Path(given).read_text(encoding="utf-8", errors="replace")
            hold_output(tally, pages, guide, output.replace("\r", ""), "vb")
        elif words[0] == "python":
            run_python(tally, pages)
        else:
            run_console(tally, pages, given)
            run_commands(tally, guide, given)
    tally.close()


main(sys.argv[1:])
