"""Holds example programs, and the programs in pages, to the type library's source text.

usage: check_examples.py GENERATOR FILE...

Of each use of one of the component's objects the member has to exist, spelt as in the library and of
that kind (method, property to read, property to set), with no fewer arguments than it must have and no
more than it has. A file that uses none is a fault. What a language does with types is not looked at.

GENERATOR is vqgenerate, which prints the library's source text. In pages (.md) the fenced parts are looked at, each by
the language behind its fence. Prints a line of what was looked at; exit status 1 with what is wrong.
"""

import re
import subprocess
import sys

LIBRARY = "vq140Analyse"
BASIC, JSCRIPT, SHELL, PYTHON, SHARP, PLUS = "vb", "js", "powershell", "python", "csharp", "cpp"
LANGUAGES = {"bas": BASIC, "vbs": BASIC, "js": JSCRIPT, "ps1": SHELL, "py": PYTHON, "cs": SHARP, "cpp": PLUS}
COMMENTS = {BASIC: "'", JSCRIPT: "//", SHELL: "#", PYTHON: "#", SHARP: "//", PLUS: "//"}
QUOTES = {BASIC: '"', JSCRIPT: "\"'", SHELL: "\"'", PYTHON: "\"'", SHARP: '"', PLUS: '"'}
VARIABLE = r"(\$?[A-Za-z]\w*)"
# How a variable comes to hold an object: group 1 the variable, 2 the class.
BINDINGS = [
    rf"{VARIABLE}\s+As\s+(?:New\s+)?{LIBRARY}\.(\w+)",
    rf"{VARIABLE}\s*=\s*[^=\n\"']*[\"' ]{LIBRARY}\.(\w+)",
]
POINTER = r"_(zt\w+)\s*\*\s*(\w+)"


class Member:
    def __init__(self):
        self.kinds = set()
        self.fewest = self.most = self.results = 0


def read_library(generator):
    """The classes, each with its members by name, and the names of the numbers."""
    text = subprocess.run([generator, "idl"], check=True, capture_output=True, text=True).stdout
    classes, constants = {}, set()
    for body in re.findall(r"\benum \w+ \{(.*?)\}", text, re.S):
        constants.update(re.findall(r"(\w+) = ", body))
    for name, body in re.findall(r"interface _(\w+) : IDispatch \{\n(.*?)\n    \}", text, re.S):
        members = classes.setdefault(name, {})
        for attributes, member, words in re.findall(r"\[(id\(.*)\]\n\s+HRESULT (\w+)\((.*)\);", body):
            entry = members.setdefault(member, Member())
            kind = re.match(r"id\(\d+\), (propget|propput)\b", attributes)
            arguments = re.findall(r"\[((?:in|out)[^\]]*)\]", words)
            results = sum("retval" in each for each in arguments)
            optional = sum("optional" in each for each in arguments)
            entry.kinds.add(kind[1] if kind else "method")
            if not kind or kind[1] == "propget":
                entry.most = len(arguments) - results
                entry.fewest = entry.most - optional
            entry.results = results
    return classes, constants


def blanked(text, language):
    """The text without what stands in quotes and comments; everything keeps its place."""
    out = list(text)
    quote, i = "", 0
    while i < len(text):
        if quote:
            if text.startswith(quote, i) or (text[i] == "\n" and len(quote) == 1):
                i += len(quote)
                quote = ""
                continue
            out[i] = text[i] if text[i] == "\n" else "_"
        elif language == PYTHON and text.startswith('"""', i):
            quote = '"""'
            i += 2
        elif text[i] in QUOTES[language]:
            quote = text[i]
        elif text.startswith(COMMENTS[language], i):
            end = text.find("\n", i)
            end = len(text) if end < 0 else end
            out[i:end] = " " * (end - i)
            i = end
        i += 1
    return "".join(out)


def arguments_in(text):
    """How many arguments a list has, counted by the commas outside of all brackets."""
    depth, commas = 0, 0
    for c in text:
        depth += (c in "([{") - (c in ")]}")
        commas += c == "," and depth == 0
    return commas + 1 if text.strip() else 0


def in_parentheses(text, at):
    depth = 0
    for i in range(at, len(text)):
        depth += (text[i] in "([{") - (text[i] in ")]}")
        if depth == 0:
            return text[at + 1 : i]
    return text[at + 1 :]


def problem_of(member, name, text, begin, end, language):
    """What is wrong with one use of a member; `begin` is where its object stands, `end` behind it."""
    line_end = text.find("\n", end)
    rest = text[end : len(text) if line_end < 0 else line_end]
    if language == PLUS:
        wanted = member.most + member.results if name.startswith("get_") or "method" in member.kinds else 1
        got = arguments_in(in_parentheses(text, end))
        return "" if got == wanted else f"{got} arguments, it has {wanted}"
    before = text[text.rfind("\n", 0, begin) + 1 : begin]
    statement = re.fullmatch(r"\s*|.*(:|\bThen|\bElse)\s+", before)
    if rest.startswith("("):
        given = arguments_in(in_parentheses(text, end))
    elif re.match(r"\s*=(?!=)", rest) and (language != BASIC or statement):
        return "" if "propput" in member.kinds else "it cannot be set"
    elif language == BASIC and statement and rest.strip():
        given = arguments_in(re.split(r"\bElse\b|:(?!=)", rest)[0])
    else:
        given = 0
    if not member.kinds & {"method", "propget"}:
        return "it cannot be read"
    if given < member.fewest or given > member.most:
        few = "" if member.fewest == member.most else f"{member.fewest} to "
        return f"{given} arguments, it has {few}{member.most}"
    return ""


def check_program(text, language, classes, constants):
    """The uses in a program, as places in it with what is wrong there ("" where all is well)."""
    plain = blanked(text, language)
    uses = []
    holders = []  # where a variable is bound, the variable, the class
    for pattern in BINDINGS:
        for found in re.finditer(pattern, text):
            if plain[found.start()] == text[found.start()] != " ":
                holders.append((found.start(), found[1], found[2]))
    for found in re.finditer(POINTER, plain) if language == PLUS else []:
        holders.append((found.start(), found[2], found[1]))
    for found in re.finditer(rf"\b{LIBRARY}\.(\w\w\w+)", text):
        name = found[1]
        wrong = "" if name in classes or name in constants else f"there is no {LIBRARY}.{name}"
        uses.append((found.start(), wrong))
    for found in re.finditer(r"\bvq[A-Z]\w+", plain):
        wrong = "" if found[0] in constants else f"there is no number {found[0]}"
        uses.append((found.start(), wrong))
    access = "->" if language == PLUS else r"\."
    for found in re.finditer(rf"{VARIABLE}{access}(\w+)", plain):
        bound = [each for each in sorted(holders) if each[1] == found[1] and each[0] < found.start()]
        if not bound or bound[-1][2] not in classes:
            continue
        name = found[2]
        own_name = re.sub(r"^(get|put)_", "", name) if language == PLUS else name
        member = classes[bound[-1][2]].get(own_name)
        wrong = "there is no such member"
        if member:
            wrong = problem_of(member, name, plain, found.start(), found.end(), language)
        elif language == PLUS and name in ("Release", "AddRef", "QueryInterface"):
            continue
        uses.append((found.start(), wrong and f"{bound[-1][2]}.{name}: {wrong}"))
    return uses


def programs_of(path, text):
    """The programs of a file: the line that each begins at, its language, its text."""
    suffix = path.rsplit(".", 1)[-1]
    if suffix != "md":
        yield 1, LANGUAGES[suffix], text
        return
    for found in re.finditer(r"^```(\w+)\n(.*?)^```$", text, re.M | re.S):
        if found[1] in LANGUAGES.values():
            yield text.count("\n", 0, found.start(2)) + 1, found[1], found[2]


def main(generator, paths):
    classes, constants = read_library(generator)
    problems, count = [], 0
    for path in paths:
        with open(path, encoding="utf-8") as file:
            text = file.read()
        had = count
        for line, language, program in programs_of(path, text):
            for at, wrong in check_program(program, language, classes, constants):
                count += 1
                if wrong:
                    problems.append(f"{path}:{line + program.count(chr(10), 0, at)}: {wrong}")
        if count == had:
            problems.append(f"{path}: uses nothing of the component")
    print(f"{count} uses in {len(paths)} files, {len(problems)} problems")
    return problems


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    found = main(sys.argv[1], sys.argv[2:])
    sys.exit("\n".join(found) if found else 0)
