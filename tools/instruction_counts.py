#!/usr/bin/env python3
"""Counts the instructions of the hottest jobs and holds them to what they were.

A count hardly depends on what else a machine does, so a job that became slower shows where a time
would drown. The jobs are those of bench/counted_jobs.cpp, run under valgrind's callgrind.

  tools/instruction_counts.py PROGRAM            compares with bench/instruction_counts.tsv
  tools/instruction_counts.py PROGRAM --write    writes that file anew
  tools/instruction_counts.py PROGRAM NAME...    some jobs only

PROGRAM is counted_jobs of a release build. Exit status 1 when a job takes over 3 % more than it
did; one that takes less is told, so that the file can follow.
"""
import argparse
import re
import subprocess
import sys
from pathlib import Path

TABLE = Path(__file__).resolve().parent.parent / "bench" / "instruction_counts.tsv"
HEAD = "# Instructions of each job of counted_jobs, x86-64 with AVX2, g++ 12, -O3: tools/instruction_counts.py PROGRAM --write\n"
ALLOWANCE = 0.03


def count(program, name):
    words = ["valgrind", "--tool=callgrind", "--instr-atstart=no", "--callgrind-out-file=/dev/null", program, name]
    done = subprocess.run(words, capture_output=True, text=True)
    found = re.search(r"Collected : (\d+)", done.stderr)
    if done.returncode != 0 or found is None:
        sys.exit(f"instruction_counts: {' '.join(words)} ended with {done.returncode}\n{done.stderr}")
    return int(found.group(1))


def known():
    rows = [line.split("\t") for line in TABLE.read_text().splitlines() if line and line[0] != "#"]
    return {name: int(counted) for name, counted in rows}


def main():
    words = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    words.add_argument("program")
    words.add_argument("names", nargs="*")
    words.add_argument("--write", action="store_true")
    options = words.parse_args()
    names = options.names or subprocess.run([options.program], capture_output=True, text=True, check=True).stdout.split()
    counts = {name: count(options.program, name) for name in names}
    if options.write:
        kept = known() if options.names else {}
        TABLE.write_text(HEAD + "".join(f"{name}\t{n}\n" for name, n in {**kept, **counts}.items()))
        return 0
    before, failures = known(), 0
    for name, now in counts.items():
        if name not in before:
            failures += 1
            print(f"{name:24}{now:14}  not in {TABLE.name}")
            continue
        ratio = now / before[name]
        more = ratio > 1 + ALLOWANCE
        failures += more
        word = "  MORE than allowed" if more else "  less: the file may follow" if ratio < 1 - ALLOWANCE else ""
        print(f"{name:24}{now:14}{before[name]:14}{ratio:8.3f}{word}")
    print(f"{len(counts)} checks, {failures} failures")
    return failures > 0


if __name__ == "__main__":
    sys.exit(main())
