"""Work spread over processes, an executor of concurrent.futures, or a cluster."""

from __future__ import annotations

import operator
import os
from collections.abc import Callable, Iterable, Iterator
from concurrent.futures import Executor, ProcessPoolExecutor
from typing import Any

from ._values import kind_of

_PART_COST = 200_000  # of a part, unless there are fewer than enough of them
_PARTS_A_WORKER = 4  # so that none waits long for the last
_SOME_WORKERS = 16  # of a pool that does not tell how many it has


def _processes(jobs: Any) -> int:
    try:
        count = operator.index(jobs)
    except TypeError:
        raise TypeError("jobs has to be a number of processes, an executor of concurrent.futures "
                        f"or a Dask client, not {kind_of(jobs)}") from None
    if count < 0:
        raise ValueError(f"jobs has to be a number of processes, 0 for one a processor, not {count}")
    return count or os.cpu_count() or 1


def _parts(work: Iterable[Any], costs: list[int], workers: int) -> Iterator[list[Any]]:
    """Neighbouring pieces of work, of about the same cost together."""
    enough = min(_PART_COST, sum(costs) // (_PARTS_A_WORKER * workers))
    part: list[Any] = []
    cost = 0
    for piece, its_cost in zip(work, costs):
        part.append(piece)
        cost += its_cost
        if cost >= enough:
            yield part
            part, cost = [], 0
    if part:
        yield part


def spread(do: Callable[..., list[Any]], work: Iterable[Any], costs: list[int], shared: Any,
           jobs: Any) -> list[Any]:
    """The results of `do(some, shared)`, a result for each piece of work, in their order."""
    if isinstance(jobs, Executor):
        futures = [jobs.submit(do, part, shared) for part in _parts(work, costs, _SOME_WORKERS)]
        return [result for future in futures for result in future.result()]
    if hasattr(jobs, "scatter") and hasattr(jobs, "gather"):  # a Dask client
        parts = list(_parts(work, costs, _SOME_WORKERS))
        lent = [jobs.scatter([part], hash=False)[0] for part in parts]
        asked = [jobs.submit(do, part, shared, pure=False) for part in lent]
        return [result for results in jobs.gather(asked) for result in results]
    workers = _processes(jobs)
    if workers == 1 or len(costs) < 2:
        return do(work, shared)
    with ProcessPoolExecutor(workers) as pool:
        futures = [pool.submit(do, part, shared) for part in _parts(work, costs, workers)]
        return [result for future in futures for result in future.result()]
