"""What can be changed on a line of C++: the small breaks that mutate.py tries."""

import re
from typing import NamedTuple


class Mutant(NamedTuple):
    file: str
    line: int  # from 1
    text: str  # the line without the blanks around it
    becomes: str


def code_only(text):
    """The source with comments, texts and characters blanked out, every position kept."""
    blank = lambda found: re.sub(r"[^\n]", " ", found.group())
    token = r"""//[^\n]*|/\*.*?\*/|R"\((?:.*?)\)"|"(?:\\.|[^"\\\n])*"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'"""
    return re.sub(token, blank, text, flags=re.S)


REPLACED = {
    " < ": [" <= ", " > "], " > ": [" >= ", " < "], " <= ": [" < "], " >= ": [" > "],
    " == ": [" != "], " != ": [" == "], " && ": [" || "], " || ": [" && "],
    " + ": [" - "], " - ": [" + "], " * ": [" / "], " / ": [" * "], " % ": [" * "],
    " += ": [" -= ", " = "], " -= ": [" += ", " = "], " *= ": [" /= "], " /= ": [" *= "],
    " & ": [" | "], " | ": [" & "], " << ": [" >> "], " >> ": [" << "],
    "++": ["--"], "--": ["++"], "true": ["false"], "false": ["true"],
}
OPERATOR = re.compile("|".join([r" (?:<<|>>|[-+*/<>=!]=|&&|\|\||[-+*/%<>&|]) ", r"\+\+|--", r"\b(?:true|false)\b"]))
NUMBER = re.compile(r"(?<![\w.])(0[xX][0-9a-fA-F']+|\d[\d']*(?:\.[\d']*)?(?:[eE][-+]?\d+)?)([fFuUlL]*)(?![\w.])")
NEGATION = re.compile(r"(?<![\w)!])!(?=[\w(])|(?:(?<=[=(,] )|(?<=\()|(?<=return ))-(?=[a-zA-Z(])")
ARGUMENTS = re.compile(r"(?<=[(, ])([A-Za-z_]\w*(?:\.\w+)*), ([A-Za-z_]\w*(?:\.\w+)*)(?=[,)])")
STATEMENT = re.compile(r"\s*(?:[\w:.\->\[\]*()+]+(?: - \d+\))? (?:[-+*/|&]|<<|>>)?= .*|(?:\+\+|--)[\w.]+|(?!return\b)[\w:.\->]+(?:<[\w, ]+>)?\(.*\)"
                       r"|throw .*|break|continue|return);\s*$")
RESULT = re.compile(r"\breturn ([^;{}]+);")
NOT_CODE = re.compile(r"\s*(?:#|static_assert|using |namespace |template |friend class|class |struct |enum |public:|private:)")


def number_changes(found):
    digits, suffix = found.group(1).replace("'", ""), found.group(2)
    if re.fullmatch(r"0[xX].*|\d+", digits):
        value = int(digits, 16 if digits[:2] in ("0x", "0X") else 10)
        return [str(value + 1) + suffix, str(value - 1) + suffix]
    value = float(digits)
    if abs(value) >= 1e15 or 0 < abs(value) < 1e-3:
        return [f"({found.group()} * 2)"]
    return [f"({found.group()} + 1)", f"({found.group()} - 1)"]


def changes(line, code, begins_statement):
    """The line with one change each."""
    def with_part(start, end, part):
        return line[:start] + part + line[end:]

    if NOT_CODE.match(code):
        return
    for found in OPERATOR.finditer(code):
        for other in REPLACED[found.group()]:
            yield with_part(*found.span(), other)
    for found in NUMBER.finditer(code):
        if not re.search(r"\w<[^<>()]*$", code[:found.start()]):  # no argument of a template
            for other in number_changes(found):
                yield with_part(*found.span(), other)
    for found in NEGATION.finditer(code):
        yield with_part(*found.span(), "")
    for found in ARGUMENTS.finditer(code):
        if found.group(1) != found.group(2):
            yield with_part(*found.span(), f"{found.group(2)}, {found.group(1)}")
    for found in re.finditer(r"\bif \(", code):
        depth = 0
        for at in range(found.end() - 1, len(code)):
            depth += {"(": 1, ")": -1}.get(code[at], 0)
            if depth == 0:
                begin = max(found.end(), code.rfind("; ", found.end(), at) + 2)
                if code[begin] != "!":
                    yield with_part(begin, at, f"!({line[begin:at].strip()})")
                break
    if begins_statement and STATEMENT.match(code):
        yield re.sub(r"\S.*", ";", line, count=1)
    for found in RESULT.finditer(code):
        if found.group(1).strip() not in ("0", "0.0", "false", "nullptr", "true"):
            yield with_part(*found.span(), "return {};")


def mutants_of(tree, file, lines=None):
    text = (tree / file).read_text()
    code_lines = code_only(text).split("\n")
    before = ";"  # the last code before the line
    for number, (line, code) in enumerate(zip(text.split("\n"), code_lines), 1):
        if not code.strip():
            continue
        if lines is None or number in lines:
            seen = {line}
            for becomes in changes(line, code, before[-1] in ";{}:"):
                if becomes not in seen:
                    seen.add(becomes)
                    yield Mutant(file, number, line.strip(), becomes.strip())
        before = code.rstrip()
