#!/usr/bin/env python3
"""Packs, unpacks and begins the corpora of fuzz/.

usage: fuzz_corpus.py unpack FILE.corpus FOLDER    a file per input
       fuzz_corpus.py pack FOLDER... FILE.corpus   the inputs of the folders, shortest first
       fuzz_corpus.py seeds FOLDER                 the tables of tests/data as inputs of the
                                                   component's fuzzer

A corpus is its inputs one after another, each behind its length in four bytes, lowest first.
"""

import datetime
import hashlib
import pathlib
import random
import re
import struct
import sys

DATA = pathlib.Path(__file__).resolve().parent.parent / "tests" / "data"


def name_of(data):
    return hashlib.sha1(data).hexdigest()


def unpack(corpus, folder):
    data = pathlib.Path(corpus).read_bytes()
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    count = 0
    while data:
        (length,) = struct.unpack_from("<I", data)
        one, data = data[4 : 4 + length], data[4 + length :]
        (folder / name_of(one)).write_bytes(one)
        count += 1
    print(count, "inputs")


def pack(folders, corpus):
    inputs = {p.read_bytes() for folder in folders for p in pathlib.Path(folder).iterdir()}
    inputs.discard(b"")
    ordered = sorted(inputs, key=lambda one: (len(one), one))
    data = b"".join(struct.pack("<I", len(one)) + one for one in ordered)
    pathlib.Path(corpus).write_bytes(data)
    print(len(ordered), "inputs,", len(data), "bytes")


def fields_of(name):
    for line in (DATA / name).read_text(encoding="utf-8").splitlines():
        if line and line[0] not in "#[":
            yield line.split("\t")


def members():
    """Class and place in its table of every member, and the types of the arguments."""
    classes, rows = [], {}
    for fields in fields_of("interface.tsv"):
        if len(fields) == 3 and fields[0] != "class":
            classes.append(fields[0])
        elif len(fields) == 7 and fields[0] != "class":
            name, slot, kind, member, _, _, arguments = fields
            types = [] if arguments == "-" else [a.split("=")[0].split()[-1] for a in arguments.split(";")]
            row = (classes.index(name), int(slot) - 7, types)
            rows[name, "call" if kind == "method" else kind, member] = row
    return rows


def number(cell):
    if len(cell) == 10 and cell[4] == cell[7] == "-":
        return float((datetime.date.fromisoformat(cell) - datetime.date(1899, 12, 30)).days)
    return float(cell)


def scalar(cell, kind):
    """A value as fuzz/values.cpp reads it; kind 0 is the argument's own type."""
    if kind == "String":
        text = cell[1:-1].encode("latin-1")
        return b"\xfe" + bytes([len(text)]) + text
    if kind == "Boolean":
        return b"\xff\xff" if cell == "True" else b"\0\0"
    x = number(cell)
    if kind == "Long" and -128 <= x <= 127:
        return b"\xfd" + struct.pack("<b", int(x))
    if kind == "Long":
        return b"\xfb" + struct.pack("<i", int(x))
    if kind == "Single":
        return b"\xff" + struct.pack("<f", x)
    return b"\xfe" + struct.pack("<d", x)


def value(cell, kind):
    if not cell.startswith("["):
        return b"\0" + scalar(cell, kind)
    rows = [row.split() for row in cell[1:-1].split(";")]
    if not any(rows):
        return b"\0\x04"
    shape = bytes([len(rows), len(rows[0])]) if kind.endswith("(,)") else bytes([len(rows[0])])
    elements = [row[c] for c in range(len(rows[0])) for row in rows]
    if kind.startswith("Boolean"):
        packed = b"\x02" + bytes(255 if e == "True" else 0 for e in elements)
    else:
        packed = b"\x00" + b"".join(struct.pack("<f", number(e)) for e in elements)
    return b"\0\0" + shape + packed


def operation(*chunks):
    data = bytes([len(chunks)])
    for chunk in chunks:
        data += bytes([len(chunk)]) if len(chunk) < 255 else b"\xff" + struct.pack("<H", len(chunk))
        data += chunk
    return data


# Numbers of fuzz/values.cpp: of types, of ways to send, of operations.
R8, I2, OBJECT, TEXT, VARIANT, ARRAY = 0, 3, 9, 8, 22, 0x80
BY_VALUE, BY_REF, IN_VARIANT, IN_REF, NESTED, MISSING = range(6)
CALL, ASSIGN, STATE, COMPANIONS, OBJECTS, SYSTEM, ASK, LATER = range(8)


def double(x):
    return b"\xfe" + struct.pack("<d", x)


def disguised(cell, kind, way):
    """A value in another form than its own type: as scripts, sheets and text have it."""
    if not cell.startswith("["):
        if kind == "String":
            return value(cell, kind)
        if kind == "Boolean":
            cell = "-1" if cell == "True" else "0"
        text = repr(number(cell)).encode()
        return [
            bytes([TEXT, 0xFE, len(text)]) + text,
            bytes([I2]) + double(number(cell)),
            bytes([OBJECT, 2, R8 + 27]) + double(number(cell)),  # a box
            bytes([OBJECT, 3, R8 + 27]) + double(number(cell)),  # an object with a default value
        ][way]
    rows = [row.split() for row in cell[1:-1].split(";")]
    rank = 2 if kind.endswith("(,)") else 1
    lines = [[-1.0 if e == "True" else 0.0 if e == "False" else number(e) for e in row] for row in rows]
    if not any(lines):
        return value(cell, kind) if way < 2 else bytes([OBJECT, 0, 0])
    line = lambda numbers: bytes([0, len(numbers)]) + b"".join(map(double, numbers))
    if way == 3 and rank == 2:
        return bytes([OBJECT, 1, len(lines)]) + b"".join(b"\0" + line(one) for one in lines)
    if way >= 2:
        return bytes([OBJECT]) + line(lines[0])
    shape = bytes([len(lines), len(lines[0])]) if rank == 2 else bytes([len(lines[0])])
    elements = [row[c] for c in range(len(lines[0])) for row in lines]
    if way == 0:
        mixed = (bytes([kind_of]) + double(e) for kind_of, e in zip([R8 + 27, I2, 5, 7, 6] * 99, elements))
        return bytes([ARRAY | VARIANT, 1]) + shape + b"\0" + b"".join(mixed)
    return bytes([ARRAY | R8, 1]) + shape + b"\1" + b"".join(map(double, elements))


def worked_calls(rows):
    """The worked calls, each behind the properties that were set before it."""
    name, before = "", {}
    for fields in fields_of("calls.tsv"):
        if fields[0] == "new":
            name, before = fields[1], {}
        if fields[0] not in ("call", "get", "let"):
            continue
        of_class, place, types = rows[name, fields[0], fields[1]]
        cells = list(zip([cell.split(">")[0] for cell in fields[3:]], types))
        own = [value(*cell) for cell in cells]
        other = [[disguised(*cell, way) for cell in cells] for way in range(4)] if cells else []
        # By name, through the vtable (1), three at once (2).
        plans = [(0, IN_VARIANT, own), (1, 0, own), (2, 0, own), (0, BY_REF, own), (0, IN_REF, own)]
        plans += [(0, form, values) for form in (BY_VALUE, IN_VARIANT) for values in other]
        for k, (way, form, values) in enumerate(plans):
            arguments = [bytes([form]) + v for v in values]
            one = operation(bytes([CALL, of_class, place, way]) + b"\3\0" * (way == 2), *arguments)
            if fields[0] == "let" or not types:
                before[k] = (before.get(k, b"") + one)[-2000:]
            yield before.get(k, b"") + one
            for skipped in range(len(arguments)):  # and once with each argument left out
                if k == 0:
                    some = arguments[:skipped] + [bytes([MISSING])] + arguments[skipped + 1 :]
                    yield operation(bytes([CALL, of_class, place, 0]), *some)


def function_calls(rows):
    """Functions at the numbers of the tables of special cases."""
    families = {"jy": "J0 J1 y0 y1 Jbn Ybn", "ik": "I0 i1 K0 K1 Ibn Kbn"}
    for name in ("special_cases.tsv", "edge_cases.tsv", "bessel_cases.tsv"):
        for fields in fields_of(name):
            words = " ".join(families.get(field, field) for field in fields[:2]).split()
            numbers = [float(x) for x in re.findall(r"[-+]?\d+(?:\.\d+)?(?:e[-+]?\d+)?", " ".join(fields[1:]))]
            for member in words:
                of_class, place, types = rows.get(("ztMathLib", "call", member), (0, 0, []))
                program = b""
                for at in range(len(numbers) - len(types) + 1 if types else 0):
                    values = [b"\0\0" + (scalar(str(int(max(-2e9, min(x, 2e9)))), kind) if kind == "Long" else double(x))
                              for x, kind in zip(numbers[at:], types)]
                    program += operation(bytes([CALL, of_class, place, 1]), *values)
                yield program[:3000]


def system_calls(chance):
    """Variables of every type, and what the system's functions make of them."""
    for kind in range(27):
        for array in (0, ARRAY):
            for _ in range(40):
                random_bytes = lambda count: bytes(chance.choice((0, 1, 2, 3, 255, chance.randrange(256))) for _ in range(count))
                program = operation(bytes([ASSIGN, 0]), bytes([kind + 27 * (array == 0) | array, 0, 3]) + random_bytes(24))
                program += operation(bytes([ASSIGN, 1]), bytes([chance.randrange(27)]) + random_bytes(9))
                for _ in range(8):
                    what = chance.choice((3, 4)) if array else chance.randrange(8)
                    program += operation(bytes([SYSTEM, chance.randrange(2), chance.randrange(2), chance.randrange(3), what]) + random_bytes(12))
                yield program
    values = [bytes([TEXT, word]) for word in range(40)]
    values += [bytes([kind + 27]) + double(x) for kind in range(27) for x in (0, -7.5, 2.5e9, 44957.3, 1e300)]
    values += [bytes([OBJECT, 3]) + v for v in values[::9]]
    for v in values:
        program = operation(bytes([ASSIGN, 0]), v)
        for kind in range(27):
            program += operation(bytes([SYSTEM, 0, 1 + kind % 2, kind % 3, 0, 0, 0, kind]))
        yield program
    yield operation(bytes([SYSTEM, 0, 0, 0, 8]))
    for word in ["", "vq140Analyse.ztIntegrate", "vq140Analyse.ztAccumulate.Period", "USER"]:
        yield operation(bytes([ASK, 1]), b"\xfe" + bytes([len(word)]) + word.encode())
    for of_class in range(9):
        for what in range(6):
            yield b"".join(operation(bytes([OBJECTS, of_class, what]) + chance.randbytes(8)) for _ in range(8))


def seeds(folder):
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    rows, chance = members(), random.Random(1)
    inputs = {*worked_calls(rows), *function_calls(rows), *system_calls(chance)} - {b""}
    for data in inputs:
        (folder / name_of(data)).write_bytes(data)
    print(len(inputs), "inputs")


def main(words):
    if len(words) == 3 and words[0] == "unpack":
        unpack(words[1], words[2])
    elif len(words) >= 3 and words[0] == "pack":
        pack(words[1:-1], words[-1])
    elif len(words) == 2 and words[0] == "seeds":
        seeds(words[1])
    else:
        sys.exit(__doc__)


main(sys.argv[1:])
