"""What the reference is made from: the member tables, and the worked calls of every member."""

import subprocess
from dataclasses import dataclass, field


@dataclass(frozen=True)
class Argument:
    name: str
    type: str  # "Single", "Double", "Long", "Boolean", "Date" or "String"
    rank: int  # dimensions of an array, 0 for a single value
    direction: str  # "in", "in,ref", "in,lent", "out" or "in,out"
    default: str  # as hosts of the Basic family write it; "" where it has to be given

    @property
    def is_output(self):
        return self.direction in ("out", "in,out")


@dataclass(frozen=True)
class Member:
    kind: str  # "method", "get" or "let"
    name: str
    id: int
    result: str
    help: str
    arguments: tuple

    def declaration(self):
        """As hosts of the Basic family declare it."""
        words = {"get": "Property Get", "let": "Property Let"}.get(self.kind)
        words = words or ("Function" if self.result else "Sub")
        parts = []
        for each in self.arguments:
            way = "ByVal" if each.direction == "in" else "ByRef"
            text = f"{way} {each.name}{('', '()', '(,)')[each.rank]} As {each.type}"
            parts.append(f"[{text} = {each.default}]" if each.default else text)
        return f"{words} {self.name}({', '.join(parts)})" + (f" As {self.result}" * bool(self.result))


@dataclass
class Class:
    name: str
    id: str
    help: str
    members: list = field(default_factory=list)
    numbers: list = field(default_factory=list)  # name, help, {name: number}


def read_tables(generator):
    """The classes, in the order of the component."""
    made = subprocess.run([generator, "reference"], check=True, capture_output=True, text=True).stdout
    classes = []
    for line in made.splitlines():
        kind, name, *rest = line.split("\t")
        if kind == "class":
            classes.append(Class(name, *rest))
        elif kind == "numbers":
            classes[-1].numbers.append((name, rest[0], dict(zip(rest[1::2], rest[2::2]))))
        else:
            number, result, help_text, *words = rest
            arguments = []
            for at in range(0, len(words), 4):
                spelt, type_text, direction, needed = words[at:at + 4]
                type_name, bracket, _ = type_text.partition("(")
                rank = 0 if not bracket else 2 if type_text.endswith("(,)") else 1
                arguments.append(Argument(spelt, type_name, rank, direction,
                                          needed.removeprefix("optional=") if "=" in needed else ""))
            classes[-1].members.append(Member(kind, name, int(number), result, help_text,
                                              tuple(arguments)))
    return classes


@dataclass(eq=False)
class Call:
    """A row of the worked calls. Values stand as there: 0.5, True, 2023-01-31, "text", [1 2; 3 4]."""

    kind: str  # "call", "get" or "let"
    member: str
    result: str  # "-" for none
    arguments: tuple  # of (value given, value that came back or "" where it is the same)
    failed: bool
    signature: tuple  # the member's arguments
    type: str  # of the member's result

    @property
    def values(self):
        """What comes of it."""
        back = [after for _, after in self.arguments if after]
        return back if self.result == "-" else [self.result, *back]


def read_calls(path, classes):
    """The worked calls: class name -> its calls, those of one object."""
    kinds = {"call": "method"}
    members = {(each.name, member.kind, member.name): member
               for each in classes for member in each.members}
    calls, name = {}, ""
    lines = path.read_text(encoding="utf-8").splitlines()
    rows = [line.split("\t") for line in lines if line and not line.startswith("#")]
    for row, following in zip(rows, rows[1:] + [[""]]):
        if row[0] == "new":
            name = row[1]
            calls[name] = []
        elif row[0] in ("call", "get", "let"):
            cells = tuple(tuple(cell.partition(">")[::2]) for cell in row[3:])
            member = members[name, kinds.get(row[0], row[0]), row[1]]
            calls[name].append(Call(row[0], row[1], row[2], cells, following[0] == "line",
                                      member.arguments, member.result))
    return calls
