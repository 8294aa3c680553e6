#!/usr/bin/env python3
"""Breaks the sources in small ways, one at a time, and sees whether a test notices.

A mutant is one line of src/ with one change: a comparison, an operator, a constant, a condition, two
arguments, a statement that is left out. Each is built and tested in a copy of the working tree below
build/mutate; the tree itself is not touched. A mutant that a test, an assertion at compile time or
a time limit catches is killed. One that nothing catches survives: either a test is missing, or
nobody can see the difference. What nobody can see is listed with its reason in
tools/mutants_unobservable.tsv and not tried again; a survivor whose optimised object file is the
original's byte for byte needs no entry.

  tools/mutate.py --change main                     every mutant of the lines changed since main
  tools/mutate.py --sample 300 --seed 1             one mutant on each of 300 lines of src/
  tools/mutate.py --files src/statistics --list     what there is
  tools/mutate.py --again build/mutate/results.tsv  the survivors of a run, after tests were added
  tools/mutate.py --sample 300 --resume             go on with a run that was ended, after its results

Prints survivors and a count; the results, a line a mutant, go to --results. Exit status 1 when one
survived or an entry of the list has lost its line, 2 when the tests fail before anything is broken.
"""
import argparse
import fnmatch
import hashlib
import json
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time
from collections import Counter
from pathlib import Path

from mutants import Mutant, mutants_of

ROOT = Path(__file__).resolve().parent.parent
UNOBSERVABLE = "tools/mutants_unobservable.tsv"
NOT_BUILT_HERE = ("*_windows.*", "*/registration_windows.cpp")
# The tests of a room come first, then those that reach furthest for their time.
ORDER = "frame component tolerant info petroleum regression calculus mathlib automation statistics accumulate geometry host"
MEMORY_LIMIT = 12 << 30


# --- which lines are asked for -----------------------------------------------------------------


def git(*words):
    return subprocess.run(["git", *words], cwd=ROOT, check=True, stdout=subprocess.PIPE, text=True).stdout


def source_files(names):
    files = [f for f in git("ls-files", "-co", "--exclude-standard", "src").split("\n")
             if f.endswith((".cpp", ".hpp")) and (ROOT / f).exists()
             and not any(fnmatch.fnmatch(f, pattern) for pattern in NOT_BUILT_HERE)]
    if names is None:
        return sorted(files)
    wanted = [os.path.relpath(Path(name).resolve(), ROOT) for name in names]
    return sorted(f for f in files if any(f == w or f.startswith(w + "/") for w in wanted))


def changed_lines(base):
    lines, file = {}, None
    for row in git("diff", "-U0", "--no-color", base, "--", "src").split("\n"):
        if row.startswith("+++ "):
            file = row[6:] if row.startswith("+++ b/") else None
        elif row.startswith("@@") and file:
            start, count = re.search(r"\+(\d+)(?:,(\d+))?", row).groups()
            lines.setdefault(file, set()).update(range(int(start), int(start) + int(count or 1)))
    for file in git("ls-files", "-o", "--exclude-standard", "src").split():
        lines[file] = None  # a new file, whole
    return lines


def read_rows(path):
    for row in path.read_text().split("\n"):
        if row and not row.startswith("#"):
            yield row.split("\t")


# --- the copy that is broken, built and tested -------------------------------------------------


class Bench:
    def __init__(self, folder, jobs, slack):
        self.tree, self.build, self.scratch = folder / "tree", folder / "build", folder / "scratch"
        self.jobs, self.slack = jobs, slack
        self.seconds, self.digests = {}, {}

    def copy_tree(self):
        names = [n for n in git("ls-files", "-co", "--exclude-standard").split("\n") if n and (ROOT / n).is_file()]
        for old in (p for p in self.tree.rglob("*") if p.is_file()):
            if str(old.relative_to(self.tree)) not in names:
                old.unlink()
        for name in names:
            source, target = ROOT / name, self.tree / name
            if not target.exists() or target.read_bytes() != source.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, target)

    def run(self, words, seconds=None, cwd=None):
        """Exit status (None when the time was up) and what it printed."""
        environment = dict(os.environ, TZ="Asia/Kathmandu", LC_ALL="C", TMPDIR=str(self.scratch))
        process = subprocess.Popen(words, cwd=cwd or self.scratch, env=environment, text=True, errors="replace",
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                   start_new_session=True)
        try:
            output, _ = process.communicate(timeout=seconds)
            return process.returncode, output
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()
            return None, ""

    def ninja(self, *targets):
        return self.run(["ninja", "-C", str(self.build), f"-j{self.jobs}", *targets])

    def programs(self, room=None):
        rooms = [r for r in ORDER.split() if (self.tree / "tests" / r).is_dir()]
        rooms.sort(key=lambda r: r != room)
        return rooms

    def digest(self, room):
        """What decides how the tests of a room go: the program, and what it loads."""
        files = [self.build / "tests" / f"test_{room}"]
        files += sorted((self.build / "src").glob("*.so")) if room in ("component", "host") else []
        files += [self.build / "src/host/vqhost"] if room == "host" else []
        return hashlib.sha256(b"".join(f.read_bytes() for f in files)).digest()

    def targets(self, room):
        return [f"test_{room}"] + (["vqhost"] if room == "host" else [])

    def run_test(self, name, words):
        """As run, within several times what the same took before anything was broken."""
        limit = None if name not in self.seconds else self.slack + 8 * self.seconds[name]
        begun = time.monotonic()
        status, output = self.run(words, limit)
        self.seconds.setdefault(name, time.monotonic() - begun)
        return status, output

    def test(self, room):
        """None when the room's tests pass, else what noticed."""
        status, output = self.run_test(room, [str(self.build / "tests" / f"test_{room}"), "--gtest_brief=1",
                                              "--gtest_fail_fast", "--gtest_catch_exceptions=0"])
        if status == 0:
            return None
        if status is None:
            return f"{room}: time"
        failed = re.findall(r"\[  FAILED  \] (\S+)", output)
        return f"{room}: {failed[0].rstrip(',') if failed else 'status %d' % status}"

    def test_the_rest(self):
        """What is no program of a room: None when it passes, else what noticed."""
        others = r"^(%s)\.[A-Z]|bits_are_the_same" % "|".join(self.programs())
        status, output = self.run_test("rest", ["ctest", "--test-dir", str(self.build), "--stop-on-failure",
                                                "-E", others])
        if status != 0:
            failed = re.search(r"\n\s*\d+ - (\S+)", output)
            return failed.group(1) if failed else "ctest"
        # The bits as the program starts; other locales and roundings would tell nothing more.
        status, output = self.run_test("bits", [str(self.build / "tests/hostile_calls"), "80"])
        return None if status == 0 and output == (self.tree / "tests/data/same_bits.txt").read_text() else "the bits"

    def prepare(self, like=None):
        """Builds the unbroken copy and sees its tests pass, unless another copy did."""
        for folder in (self.tree, self.build, self.scratch):
            folder.mkdir(parents=True, exist_ok=True)
        self.copy_tree()
        words = ["cmake", "-S", str(self.tree), "-B", str(self.build), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                 "-DCMAKE_CXX_FLAGS=-O0 -g0", "-DVQ_INSTALL=OFF"]
        if shutil.which("ccache"):
            words.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
        for step in (words, ["ninja", "-C", str(self.build), f"-j{self.jobs}"]):
            status, output = self.run(step)
            if status != 0:
                sys.exit("mutate: the copy does not build\n" + output[-4000:])
        tests = [*(lambda room=room: self.test(room) for room in self.programs()), self.test_the_rest]
        self.seconds = dict(like.seconds) if like else {}
        for test in tests if like is None else []:
            noticed = test()
            if noticed:
                print(f"mutate: before anything is broken: {noticed}", file=sys.stderr)
                sys.exit(2)
        self.digests = {room: self.digest(room) for room in self.programs()}
        self.commands = {c["file"]: c for c in json.loads((self.build / "compile_commands.json").read_text())}

    def optimised_object(self, file):
        """The optimised object file of a source, or None for a header."""
        command = self.commands.get(str(self.tree / file))
        if command is None:
            return None
        words = command["command"].replace(" -O0", " -O2").split()
        target = self.scratch / "optimised.o"
        words[words.index("-o") + 1] = str(target)
        status, _ = self.run(words, cwd=command["directory"])
        return target.read_bytes() if status == 0 else None

    def try_mutant(self, mutant):
        """(verdict, what noticed); the verdict None when the mutant does not compile."""
        path = self.tree / mutant.file
        original = path.read_text()
        lines = original.split("\n")
        at = lines[mutant.line - 1]
        lines[mutant.line - 1] = at[:len(at) - len(at.lstrip())] + mutant.becomes
        try:
            path.write_text("\n".join(lines))
            verdict, noticed = self.build_and_test(mutant.file.split("/")[1])
            if verdict != "survived":
                return verdict, noticed
            broken = self.optimised_object(mutant.file)
            path.write_text(original)
            if broken is not None and broken == self.optimised_object(mutant.file):
                return "same", "the same object file"
            path.write_text("\n".join(lines))
            status, _ = self.ninja()
            noticed = self.test_the_rest() if status == 0 else "the build: a step of it"
            return ("killed", noticed) if noticed else ("survived", "")
        finally:
            path.write_text(original)

    def build_and_test(self, room):
        """By the programs of the rooms alone."""
        for program in self.programs(room):
            status, output = self.ninja(*self.targets(program))
            if status != 0:
                errors = re.findall(r"error: (.*)", output)
                if errors and "static assertion" not in errors[0]:
                    return None, ""
                return "killed", "the build: " + (errors[0] if errors else "a step of it")
            if self.digest(program) == self.digests[program]:
                continue
            noticed = self.test(program)
            if noticed:
                return "killed", noticed
        return "survived", ""


# --- the run -----------------------------------------------------------------------------------


def choose(options):
    """The mutants to try, in the order in which they are tried."""
    if options.again:
        wanted = [(row[0], Mutant(row[1], int(row[2]), row[3], row[4])) for row in read_rows(options.again)]
        chosen = []
        for verdict, old in wanted:
            if verdict == "survived" and (ROOT / old.file).exists():
                lines = [i for i, line in enumerate((ROOT / old.file).read_text().split("\n"), 1)
                         if line.strip() == old.text]
                if lines:
                    chosen.append(old._replace(line=min(lines, key=lambda i: abs(i - old.line))))
        return chosen
    if options.change:
        lines = changed_lines(options.change)
        files = [f for f in source_files(options.files) if f in lines]
        found = [list(mutants_of(ROOT, f, lines[f])) for f in files]
    else:
        found = [list(mutants_of(ROOT, f)) for f in source_files(options.files)]
    mutants = [m for per_file in found for m in per_file]
    if options.sample is None:
        return mutants
    chance = random.Random(options.seed)
    by_line = {}
    for mutant in mutants:
        by_line.setdefault((mutant.file, mutant.line), []).append(mutant)
    places = sorted(by_line)
    chance.shuffle(places)
    return [chance.choice(by_line[place]) for place in places]  # as many as it takes


def main():
    words = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    words.add_argument("--files", nargs="+", help="sources or folders of src/; all when left out")
    words.add_argument("--change", metavar="BASE", help="only the lines that differ from this commit")
    words.add_argument("--sample", type=int, metavar="N", help="N mutants that compile, on different lines")
    words.add_argument("--seed", type=int, default=1)
    words.add_argument("--again", type=Path, metavar="RESULTS", help="the survivors in these results")
    words.add_argument("--resume", action="store_true", help="keep the results that stand in the file, try the others")
    words.add_argument("--list", action="store_true", help="print the mutants, try none")
    words.add_argument("--folder", type=Path, default=ROOT / "build/mutate", help="where the copy is built")
    words.add_argument("--results", type=Path, help="default: FOLDER/results.tsv")
    words.add_argument("--jobs", type=int, default=os.cpu_count(), help="compilers at a time, of all copies")
    words.add_argument("--copies", type=int, default=max(1, os.cpu_count() // 2), help="mutants tried at a time")
    words.add_argument("--slack", type=float, default=20, help="seconds a program gets beyond 8 times its own")
    options = words.parse_args()

    unobservable = {tuple(row[:3]): row[3] for row in read_rows(ROOT / UNOBSERVABLE)}
    mutants = choose(options)
    if options.list:
        for m in mutants:
            print(f"{m.file}:{m.line}: {m.text}  ->  {m.becomes}")
        print(f"{len(mutants)} mutants", file=sys.stderr)
        return 0
    stale = [key for key in unobservable
             if not (ROOT / key[0]).exists() or key[1] not in (ROOT / key[0]).read_text()]
    for key in stale:
        print(f"{UNOBSERVABLE}: {key[0]} has no line '{key[1]}'")

    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))  # what is run inherits these
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    folder = options.folder.resolve()
    results = options.results or folder / ("again.tsv" if options.again else "results.tsv")
    known = {}
    if options.resume and results.exists():
        known = {tuple(row[1:5]): row for row in read_rows(results)}
    benches = [Bench(folder / str(i), max(1, options.jobs // options.copies), options.slack)
               for i in range(options.copies)]
    for bench in benches:
        bench.prepare(like=benches[0] if bench is not benches[0] else None)
    count, waiting, turn = Counter(), iter(mutants), threading.Lock()

    def take():
        with turn:
            enough = options.sample is not None and sum(count.values()) >= options.sample
            return None if enough else next(waiting, None)

    def tell(mutant, verdict, noticed, log):
        with turn:
            if verdict is None:
                verdict = "no mutant"
            if verdict == "same":
                verdict = "unobservable"
            if verdict != "no mutant":
                count[verdict] += 1
            print(verdict, *mutant, noticed, sep="\t", file=log, flush=True)
            if verdict == "survived":
                print(f"survived  {mutant.file}:{mutant.line}\n    {mutant.text}\n    {mutant.becomes}", flush=True)

    def work(bench, log):
        while mutant := take():
            reason = unobservable.get((mutant.file, mutant.text, mutant.becomes))
            before = known.get((mutant.file, str(mutant.line), mutant.text, mutant.becomes))
            if reason:
                tell(mutant, "unobservable", reason, log)
            elif before:
                tell(mutant, before[0], before[5], log)
            else:
                tell(mutant, *bench.try_mutant(mutant), log)

    with results.open("w") as log:
        workers = [threading.Thread(target=work, args=(bench, log)) for bench in benches]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()

    seen = count["killed"] + count["survived"]
    print(f"{sum(count.values())} mutants: {count['unobservable']} unobservable; of the other {seen} "
          f"{count['killed']} killed ({100 * count['killed'] / max(seen, 1):.1f} %), {count['survived']} survived")
    return 1 if count["survived"] or stale else 0


if __name__ == "__main__":
    sys.exit(main())
