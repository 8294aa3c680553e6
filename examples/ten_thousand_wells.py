"""Thirty years of days of ten thousand wells onto quarters: in this process, over processes, or over
a Dask cluster, with the same numbers to the last bit.

    python3 ten_thousand_wells.py --wells 1000                      # in this process
    python3 ten_thousand_wells.py --jobs 8                          # over processes
    python3 ten_thousand_wells.py --cluster local                   # a cluster on this machine
    python3 ten_thousand_wells.py --cluster tcp://scheduler:8786    # one that runs already

What travels is small: a task is a range of wells, whose days each worker reads where it works, and
what comes back is quarters. Here `days_of` makes them up; read_parquet or read_csv goes there."""

import argparse
import concurrent.futures
import contextlib
import hashlib
import os
import time

import numpy as np
import pandas as pd

import vqmath63 as vq

WELLS_A_TASK = 20


def days_of(wells, years):
    """Long rows of the daily rates of some wells: declines with days shut in."""
    dates = pd.date_range("1994-01-01", periods=round(365.25 * years), freq="D")
    age = np.arange(len(dates), dtype="f4") / 365.25
    parts = []
    for well in wells:
        random = np.random.default_rng(well)
        flowing = random.random(len(dates), dtype="f4") > 0.03
        oil = flowing * np.float32(random.uniform(50, 900)) * np.exp(-age * random.uniform(0.03, 0.4))
        water = flowing * np.float32(random.uniform(5, 300)) * (1 - np.exp(-age / 8))
        parts.append(pd.DataFrame({"well": well, "date": dates, "oil": oil, "water": water}))
    return pd.concat(parts, ignore_index=True)


def quarters_of(wells, years):
    return vq.accumulate(days_of(wells, years), "quarter", by="well", date="date").reset_index()


@contextlib.contextmanager
def workers(options):
    """Something whose `map` runs tasks and gives their results in order."""
    if options.cluster:
        import dask
        from dask.distributed import Client
        # Else workers give all memory back at each step, which takes as long as the work.
        dask.config.set({"distributed.nanny.pre-spawn-environ.MALLOC_TRIM_THRESHOLD_": 2**30})
        chosen = {"n_workers": os.cpu_count(), "threads_per_worker": 1, "dashboard_address": None}
        with Client(**chosen if options.cluster == "local" else {"address": options.cluster}) as client:
            yield lambda do, *over: client.gather(client.map(do, *over, pure=False))
    elif options.jobs > 1:
        with concurrent.futures.ProcessPoolExecutor(options.jobs) as pool:
            yield pool.map
    else:
        yield map


def main(words=None):
    read = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    read.add_argument("--wells", type=int, default=10_000)
    read.add_argument("--years", type=float, default=30)
    read.add_argument("--jobs", type=int, default=1, help="processes")
    read.add_argument("--cluster", help="'local', or the address of a scheduler")
    options = read.parse_args(words)
    tasks = [range(k, min(k + WELLS_A_TASK, options.wells))
             for k in range(0, options.wells, WELLS_A_TASK)]
    begun = time.perf_counter()
    with workers(options) as run:
        ready = time.perf_counter()
        quarters = pd.concat(run(quarters_of, tasks, [options.years] * len(tasks)),
                             ignore_index=True)
        done = time.perf_counter()
    bits = hashlib.sha256(quarters[["oil", "water"]].to_numpy().tobytes()).hexdigest()[:16]
    print(f"{options.wells} wells, {len(quarters)} quarters, bits {bits}")
    print(f"ready in {ready - begun:.1f} s, done in {done - ready:.1f} s, "
          f"{options.wells * 365.25 * options.years / (done - ready):,.0f} rows a second")
    return quarters


if __name__ == "__main__":
    main()
