#!/usr/bin/env python3
"""Packs, unpacks and begins the corpora of fuzz/.

usage: fuzz_corpus.py unpack FILE.corpus FOLDER    a file per input
       fuzz_corpus.py pack FOLDER... FILE.corpus   the inputs of the folders, shortest first
       fuzz_corpus.py seeds FOLDER                 the tables of tests/data as inputs of the
                                                   component's fuzzer
       fuzz_corpus.py lines FILE... FOLDER         each command line of transcripts, with the files
                                                   that it names, as an input of the host's fuzzer

A corpus is its inputs one after another, each behind its length in four bytes, lowest first.
"""

import hashlib
import pathlib
import struct
import sys

import fuzz_seeds


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


def seeds(folder):
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    inputs = fuzz_seeds.programs()
    for data in inputs:
        (folder / name_of(data)).write_bytes(data)
    print(len(inputs), "inputs")


def lines(transcripts, folder):
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    inputs = set()
    for transcript in transcripts:
        files, name = {}, None
        for line in pathlib.Path(transcript).read_bytes().split(b"\n"):
            if line == b"=":
                files, name = {}, None
            elif line.startswith(b"file "):
                name = line[5:]
                files[name] = line + b"\n"
            elif line.startswith(b"| ") and name is not None:
                files[name] += line + b"\n"
            elif line.startswith(b"$"):
                inputs.add(b"".join(text for of, text in files.items() if of and of in line) + line + b"\n")
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
    elif len(words) >= 3 and words[0] == "lines":
        lines(words[1:-1], words[-1])
    else:
        sys.exit(__doc__)


main(sys.argv[1:])
