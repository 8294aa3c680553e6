#!/usr/bin/env python3
"""Packs, unpacks and begins the corpora of fuzz/.

usage: fuzz_corpus.py unpack FILE.corpus FOLDER    a file per input
       fuzz_corpus.py pack FOLDER... FILE.corpus   the inputs of the folders, shortest first
       fuzz_corpus.py seeds FOLDER                 the worked calls of tests/data/calls.tsv as inputs
                                                   of the component's fuzzer

A corpus is its inputs one after another, each behind its length in four bytes, lowest first.
"""

import datetime
import hashlib
import pathlib
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


def operation(chunks):
    data = bytes([len(chunks)])
    for chunk in chunks:
        data += bytes([len(chunk)]) if len(chunk) < 255 else b"\xff" + struct.pack("<H", len(chunk))
        data += chunk
    return data


def seeds(folder):
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    rows = members()
    name, before = "", [b"", b"", b""]

    def save(program):
        (folder / name_of(program)).write_bytes(program)

    for fields in fields_of("calls.tsv"):
        if fields[0] == "new":
            name, before = fields[1], [b"", b"", b""]
        if fields[0] not in ("call", "get", "let"):
            continue
        of_class, place, types = rows[name, fields[0], fields[1]]
        cells = [cell.split(">")[0] for cell in fields[3:]]
        values = [value(cell, kind) for cell, kind in zip(cells, types)]
        for way, form in ((0, 2), (1, 0), (0, 1)):  # in variants, by the vtable, by reference
            head = bytes([0, of_class, place, way])
            one = operation([head] + [bytes([form]) + v for v in values])
            if fields[0] == "let" or not types:
                before[way + form // 2] += one  # settings, for what is called next
            save((before[way + form // 2] + one)[-4000:] if fields[0] != "let" else one)


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
