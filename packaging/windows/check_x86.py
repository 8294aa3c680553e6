"""Looks into the 32-bit component's file for what a host there cannot see until it crashes.

usage: check_x86.py OBJDUMP COMPONENT EXPORT_LIST INTERFACE_TABLE LIBRARY...

- Exports bear their plain names: those of the module-definition file EXPORT_LIST, and no others.
- Each function of the classes' tables takes from the stack what its caller has put there. On 32-bit
  Windows the called function does that (stdcall: `ret N`), so that a wrong count of bytes leaves the
  caller with a stack that is off. N follows from the arguments in INTERFACE_TABLE.
- No function of the static libraries that the component is made of reckons with the x87 registers, whose
  steps round otherwise than those of every other processor. It may load and store with them, as results
  are handed over.

The tables are found in the file itself: rows of addresses that the loader has to relocate, which begin
with the seven functions of IUnknown and IDispatch, told by the bytes that those take.

Prints a line of what was looked at; exit status 1 with what is wrong.
"""

import re
import struct
import subprocess
import sys
from collections import defaultdict

DISPATCH = [12, 4, 4, 8, 16, 24, 36]  # QueryInterface, AddRef, ..., Invoke
SIZES = {"Double": 8, "Date": 8}  # everything else takes one place of 4 bytes
MOST_STEPS = 20000


def members(path):
    """Per class the members in the order of its interface, with the bytes that each takes."""
    classes = defaultdict(list)
    section = ""
    with open(path, encoding="utf-8") as file:
        for line in file:
            fields = line.rstrip("\n").split("\t")
            if fields[0].startswith("["):
                section = fields[0]
            if section != "[members]" or len(fields) < 7 or fields[0] == "class":
                continue
            name, slot, kind, member, _, result, arguments = fields[:7]
            size = 4 + (4 if result != "-" else 0)  # the object, and where the result goes
            for argument in [] if arguments == "-" else arguments.split(";"):
                words = argument.split("=")[0].split()
                size += 4 if words[0] == "ref" else SIZES.get(words[-1], 4)
            classes[name].append((f"{name}.{member} ({kind})", size))
            if int(slot) != 6 + len(classes[name]):
                raise ValueError(f"{path}: slot {slot} of {name} is not in its place")
    return classes


class Image:
    """Addresses that the loader relocates, and the code, of a file for 32-bit Windows."""

    def __init__(self, objdump, path):
        with open(path, "rb") as file:
            self.bytes = file.read()
        (header,) = struct.unpack_from("<I", self.bytes, 0x3C)
        machine, sections = struct.unpack_from("<HH", self.bytes, header + 4)
        if self.bytes[header : header + 4] != b"PE\0\0" or machine != 0x14C:
            raise ValueError("not a file for 32-bit Windows")
        (optional_size,) = struct.unpack_from("<H", self.bytes, header + 20)
        (self.base,) = struct.unpack_from("<I", self.bytes, header + 24 + 28)
        (relocations, length) = struct.unpack_from("<II", self.bytes, header + 24 + 96 + 8 * 5)
        self.sections = []
        for i in range(sections):
            at = header + 24 + optional_size + 40 * i
            self.sections.append(struct.unpack_from("<IIII", self.bytes, at + 8))
        self.relocated = set()
        at = self.offset(relocations)
        end = at + length
        while at < end:
            page, size = struct.unpack_from("<II", self.bytes, at)
            for (entry,) in struct.iter_unpack("<H", self.bytes[at + 8 : at + size]):
                if entry >> 12 == 3:
                    self.relocated.add(page + (entry & 0xFFF))
            at += size
        self.code = {}
        for line in run(objdump, "-d", "-Mintel", "--no-show-raw-insn", "-j", ".text", path).splitlines():
            found = re.match(r"\s*([0-9a-f]+):\s+(\S.*?)\s*$", line)
            if found:
                self.code[int(found[1], 16)] = found[2]
        order = sorted(self.code)
        self.next = dict(zip(order, order[1:]))

    def offset(self, address):
        for size, at, raw_size, raw in self.sections:
            if at <= address < at + max(size, raw_size):
                return raw + address - at
        raise ValueError(f"no section holds {address:#x}")

    def runs(self):
        """Rows of relocated addresses of code, one after the other."""
        row, last = [], None
        for place in sorted(self.relocated):
            (target,) = struct.unpack_from("<I", self.bytes, self.offset(place))
            if target not in self.code:
                continue
            if row and place != last + 4:
                yield row
                row = []
            row.append(target)
            last = place
        yield row

    def taken(self, entry):
        """The bytes that a function takes from the stack, as a set: one number when all is well."""
        found, seen, waiting = set(), set(), [entry]
        while waiting and len(seen) < MOST_STEPS:
            at = waiting.pop()
            while at in self.code and at not in seen:
                seen.add(at)
                words = self.code[at].split()
                if words[0] in ("bnd", "rep", "repz"):
                    words = words[1:]
                if words[0] == "ret":
                    found.add(int(words[1], 16) if len(words) > 1 else 0)
                    break
                jump = re.fullmatch(r"0x([0-9a-f]+)|([0-9a-f]+)", words[1]) if len(words) > 1 else None
                if words[0].startswith("j") and jump:
                    waiting.append(int(jump[1] or jump[2], 16))
                if words[0] == "jmp" or words[0] in ("ud2", "int3"):
                    break
                at = self.next.get(at)
        return found


def run(*words):
    return subprocess.run(words, check=True, capture_output=True, text=True).stdout


def exports(objdump, path):
    table = run(objdump, "-p", path).split("[Ordinal/Name Pointer] Table")[1].split("\n\n")[0]
    return set(re.findall(r"\[ *\d+\] (\S+)$", table, re.M))


# Steps of the x87 that compute; what loads, stores, compares, or keeps its state is not among them.
X87_ARITHMETIC = re.compile(r"f(i?(add|sub|mul|div)r?p?|sqrt|prem1?|rndint|scale|xtract|2xm1|yl2xp?1?|yl2x|p?tan|"
                            r"patan|sin|cos|sincos)$")


def x87_arithmetic(objdump, library):
    """How many functions a static library has, and the x87 steps in them: function and instruction."""
    functions, steps, name = 0, [], ""
    for line in run(objdump, "-d", "-C", "-Mintel", "--no-show-raw-insn", library).splitlines():
        head = re.match(r"[0-9a-f]+ <(.*)>:$", line)
        if head:
            functions, name = functions + 1, head[1]
        words = line.split("\t")[-1].split()
        if words and line[:1] == " " and X87_ARITHMETIC.match(words[0]):
            steps.append((name, " ".join(words)))
    return functions, steps


def check(objdump, path, export_list, table, *libraries):
    with open(export_list, encoding="utf-8") as file:
        wanted = set(re.findall(r"^  (\w+)", file.read(), re.M))
    names = exports(objdump, path)
    problems = [f"the export {name} is decorated, or nobody's" for name in sorted(names - wanted)]
    problems += [f"there is no export {name}" for name in sorted(wanted - names)]

    image = Image(objdump, path)
    classes = members(table)
    tables = []
    for row in image.runs():
        takes = [image.taken(entry) for entry in row]
        for at in range(len(row) - len(DISPATCH)):
            if takes[at : at + len(DISPATCH)] == [{size} for size in DISPATCH]:
                tables.append(takes[at + len(DISPATCH) :])
    functions = 0
    for name, wanted in classes.items():
        differences = [
            [(member, size, got) for (member, size), got in zip(wanted, takes) if got != {size}]
            for takes in tables
            if len(takes) >= len(wanted)
        ]
        if not differences:
            problems.append(f"{name}: no table of {len(wanted)} functions")
            continue
        nearest = min(differences, key=len)
        for member, size, got in nearest[:10]:
            said = " or ".join(map(str, sorted(got))) or "nothing"
            problems.append(f"{member} takes {said} bytes from the stack, its arguments have {size}")
        functions += len(wanted)
    if len(tables) != len(classes):
        problems.append(f"{len(tables)} tables of functions, but {len(classes)} classes")
    print(f"{len(names)} exports and {functions} functions of {len(tables)} tables")
    checks = len(names) + functions
    for library in libraries:
        searched, steps = x87_arithmetic(objdump, library)
        problems += [f"{name}: {step}" for name, step in steps[:20]]
        if searched == 0:
            problems.append(f"{library}: no functions")
        checks += searched
        print(f"{searched} functions of {library.split('/')[-1]} without x87 arithmetic")
    print(f"x86: {checks} checks, {len(problems)} failures")
    return problems


if __name__ == "__main__":
    if len(sys.argv) < 6:
        sys.exit(__doc__)
    found = check(*sys.argv[1:])
    sys.exit("\n".join(found) if found else 0)
