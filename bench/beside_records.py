#!/usr/bin/env python3
"""Times `vqhost accumulate` on long records beside pandas, DuckDB and Polars.

Monthly rows of many wells (tools/make_records.py --long) are summed by quarter and written as CSV.
The programs take turns; of each the best and the median of its times are told, and the memory that
it took at most. All of them have to come to the same total.

usage: beside_records.py VQHOST RECORDS.csv [--rounds N] [--without ENGINE]...
DuckDB and Polars are found from the current folder, after
  npm install @duckdb/node-api nodejs-polars
"""
import argparse
import os
import pathlib
import resource
import statistics
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).parent
PANDAS = """
import sys, pandas as pd
frame = pd.read_csv(sys.argv[1], parse_dates=["date"])
frame["date"] = frame["date"].dt.to_period(sys.argv[3][0].upper()).dt.start_time
frame.groupby(["well", "date"])[["oil", "gas", "water"]].sum().to_csv(sys.argv[2])
"""


def commands(vqhost, source, target, period="quarter"):
    script = str(HERE / "beside_records.mjs")
    return {
        "vqhost": [vqhost, "accumulate", source, "--by", "well", "--volumes", "oil,gas,water",
                   "--stamp", "begin", "--period", period, "-o", target],
        "pandas": [sys.executable, "-c", PANDAS, source, target, period],
        "duckdb": ["node", script, "duckdb", source, target, period],
        "polars": ["node", script, "polars", source, target, period],
    }


def run(command):
    """Wall time in seconds and memory in MB of one run."""
    begun = time.perf_counter()
    child = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        sys.exit(f"{command[0]} ended with {child.returncode}")
    return time.perf_counter() - begun, usage.ru_maxrss / 1024


def total(path):
    """Rows, and the sum of the column of oil."""
    rows, oil = 0, 0.0
    with open(path, encoding="utf-8") as lines:
        column = next(lines).rstrip().split(",").index("oil")
        for line in lines:
            rows += 1
            oil += float(line.split(",")[column])
    return rows, round(oil, 1)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("vqhost")
    parser.add_argument("records")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--without", action="append", default=[])
    options = parser.parse_args()
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    with tempfile.TemporaryDirectory() as folder:
        target = os.path.join(folder, "out.csv")
        engines = {name: command for name, command in
                   commands(options.vqhost, options.records, target).items()
                   if name not in options.without}
        results = {name: [] for name in engines}
        totals = {}
        for turn in range(options.rounds):
            for name, command in engines.items():
                results[name].append(run(command))
                if turn == 0:
                    totals[name] = total(target)
    if len(set(totals.values())) != 1:
        sys.exit(f"they do not agree: {totals}")
    print(f"{'':8} {'best s':>8} {'median s':>9} {'MB':>7}")
    for name, runs in results.items():
        times = [wall for wall, _ in runs]
        print(f"{name:8} {min(times):8.2f} {statistics.median(times):9.2f}"
              f" {max(memory for _, memory in runs):7.0f}")


if __name__ == "__main__":
    main()
