"""How far one process, the processes of one machine and a Dask cluster carry the accumulation of
many wells, for docs/scaling.md:
VQMATH63_LIBRARY=build/rel/src/libvqmath63.so PYTHONPATH=python python3 bench/scaling.py [WELLS]

Prints seconds on the clock and of the processors, those of all processes together."""

import concurrent.futures
import contextlib
import io
import os
import pathlib
import resource
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "examples"))
import pandas as pd  # noqa: E402
import ten_thousand_wells as example  # noqa: E402

import vqmath63 as vq  # noqa: E402

YEARS = 30


def processors():
    return sum(sum(resource.getrusage(who)[:2])
               for who in (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN))


def row(name, work):
    begun, used = time.perf_counter(), processors()
    result = work()
    print(f"{name:44}{time.perf_counter() - begun:10.2f}{processors() - used:10.2f}", flush=True)
    return result


def pieces():
    """What each part of the work costs, by itself, of 20 wells in this process."""
    print(f"{'20 wells of 30 years of days':44}{'clock':>10}{'processor':>10}")
    rows = row("  made up", lambda: example.days_of(range(20), YEARS))
    text = io.StringIO(rows.to_csv(index=False))
    row("  read from a CSV", lambda: pd.read_csv(text, parse_dates=["date"]))
    once = vq.accumulate(rows, "quarter", by="well", date="date")
    row("  onto quarters", lambda: vq.accumulate(rows, "quarter", by="well", date="date"))
    with concurrent.futures.ProcessPoolExecutor(1) as pool:
        pool.submit(os.getpid).result()
        row("  their rows to a process and back", lambda: pool.submit(pd.concat, [rows]).result())
        row("  their quarters to a process and back", lambda: pool.submit(pd.concat, [once]).result())


def cluster():
    import dask
    from dask.distributed import Client
    dask.config.set({"distributed.nanny.pre-spawn-environ.MALLOC_TRIM_THRESHOLD_": 2**30})
    return Client(n_workers=os.cpu_count(), threads_per_worker=1, dashboard_address=None)


def nothing_at_all():
    print(f"{'1000 tasks that do nothing':44}{'clock':>10}{'processor':>10}")
    with concurrent.futures.ProcessPoolExecutor() as pool:
        row("  processes", lambda: list(pool.map(abs, range(1000))))
    with cluster() as client:
        row("  a cluster", lambda: client.gather(client.map(abs, range(1000), pure=False)))


def frame_in_memory(wells):
    rows = example.days_of(range(wells), YEARS)
    print(f"{f'{wells} wells in one frame, {len(rows):,} rows':44}{'clock':>10}{'processor':>10}")

    def spread(jobs):
        return vq.accumulate(rows, "quarter", by="well", date="date", jobs=jobs)

    def over(pool):
        with pool as jobs:
            return spread(jobs)
    alone = row("  in one process", lambda: spread(1))
    others = [row(f"  threads, {os.cpu_count()}",
                  lambda: over(concurrent.futures.ThreadPoolExecutor(os.cpu_count()))),
              row(f"  processes, {os.cpu_count()}", lambda: spread(0)),
              row(f"  a cluster of {os.cpu_count()} workers", lambda: over(cluster()))]
    for each in others:
        pd.testing.assert_frame_equal(each, alone, check_exact=True)
    peak = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024
    print(f"  peak of this process: {peak:,.0f} MB")


def wells_at_the_workers(wells):
    print(f"{f'{wells} wells, each read where it is worked on':44}{'clock':>10}{'processor':>10}")
    alone = None
    for name, words in (("in one process", []),
                        (f"processes, {os.cpu_count()}", ["--jobs", str(os.cpu_count())]),
                        ("a cluster of this machine", ["--cluster", "local"])):
        def work(words=words):
            with contextlib.redirect_stdout(io.StringIO()):
                return example.main(["--wells", str(wells), *words])
        made = row("  " + name, work)
        alone = made if alone is None else alone
        pd.testing.assert_frame_equal(made, alone, check_exact=True)


if __name__ == "__main__":
    most = int(sys.argv[1]) if len(sys.argv) > 1 else 10_000
    pieces()
    nothing_at_all()
    frame_in_memory(most // 10)
    for wells in (most // 100, most // 10, most):
        wells_at_the_workers(wells)
