"""Daily records of wells over 30 years onto months, beside pandas, DuckDB and Polars in one run:
VQMATH63_LIBRARY=build/bench/src/libvqmath63.so PYTHONPATH=python \\
  python3 bench/beside_wells.py VQHOST FOLDER [OUT.json]

Prints medians of seconds on the clock: of frames in memory, and of whole processes from one CSV to
another. FOLDER keeps the records that are made; it has npm's DuckDB and Polars below node_modules."""
import os
import pathlib
import subprocess
import sys
import time

import beside_records
import numpy as np
import pandas as pd
import rounds

import vqmath63

WELLS = (1, 10, 100, 1_000)
DAYS = pd.date_range("1990-01-01", "2019-12-31")


def records(wells):
    """Rows by day and well, as a frame; amounts are tenths below a thousand."""
    random = np.random.default_rng(wells)
    count = wells * len(DAYS)
    frame = {"date": np.repeat(DAYS, wells), "well": np.tile([f"W-{w:04d}" for w in range(wells)], len(DAYS))}
    for name in ("oil", "gas", "water"):
        frame[name] = random.integers(0, 10_000, count) / 10
    return pd.DataFrame(frame)


def file_of(folder, wells):
    path = folder / f"daily_{wells}_wells.csv"
    if not path.exists():
        part = path.with_suffix(".part")
        records(wells).to_csv(part, index=False)
        part.rename(path)
    return str(path)


def processes(vqhost, folder, wells):
    source = file_of(folder, wells)
    for name, command in beside_records.commands(vqhost, source, str(folder / "out.csv"), "month").items():
        yield f"files {name}/{wells}", lambda words=command: subprocess.run(
            words, cwd=folder, check=True, stdout=subprocess.DEVNULL)


def frames(source, wells):
    """Rows in order of well and date: as pandas reads them, which makes one object of equal texts of a
    piece of the file, and with a text of its own in each row, as a database's driver makes them."""
    order = {"by": ["well", "date"], "kind": "stable", "ignore_index": True}
    held = {"frames": pd.read_csv(source, parse_dates=["date"]).sort_values(**order),
            "own texts": records(wells).sort_values(**order)}
    for name, frame in held.items():
        def by_pandas(frame=frame):
            return frame.groupby(["well", pd.Grouper(key="date", freq="MS")])[["oil", "gas", "water"]].mean()
        yield f"{name} vqmath63/{wells}", lambda frame=frame: vqmath63.accumulate(
            frame, "month", by="well", date="date")
        yield f"{name} pandas/{wells}", by_pandas


def main():
    vqhost, folder = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2]).absolute()
    seconds = {}
    for wells in WELLS:
        few = 5 if wells < 100 else 3
        jobs = {**dict(processes(vqhost, folder, wells)), **dict(frames(file_of(folder, wells), wells))}
        for name, values in rounds.measure(jobs, few, 0.0, time.perf_counter).items():
            seconds[name] = values
    rounds.write(seconds)


main()
