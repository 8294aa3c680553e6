"""Which rows of a column have the same key, with one look at each where they lie side by side."""

from __future__ import annotations

import sys
from typing import Any

import numpy as np

from . import _frames

_BLOCK = 2**16  # rows that are compared at a time, so that what is made of them stays in the cache
_FEW_ROWS = 4096  # that tell whether keys come in runs
_SHORT_RUN = 4  # shorter ones are quicker looked up one by one
_POINTER = np.dtype(np.intp).str


class _Addresses:
    """The pointers that an array of objects is made of, for NumPy to read where they lie."""

    def __init__(self, objects: Any) -> None:
        self._objects = objects  # lives as long as an array looks at its memory
        described = objects.__array_interface__
        self.__array_interface__ = {**described, "typestr": _POINTER, "descr": [("", _POINTER)],
                                    "data": (described["data"][0], True)}


class _Keys:
    """Keys that are compared with their neighbours. Texts of one well are mostly one object, which
    what reads or sorts them hands on: they are looked at only where neighbours are two objects."""

    def __init__(self, series: Any) -> None:
        values = series.array
        if isinstance(series.dtype, _frames.pandas().CategoricalDtype):
            values = values.codes  # of categories, which are all different
        elif isinstance(series.dtype, np.dtype) or \
                getattr(series.dtype, "storage", None) == "python":
            values = np.asarray(values)  # where they lie
        self.values = values
        self.addresses: Any = None
        if values.dtype == object and sys.implementation.name == "cpython":
            self.addresses = np.asarray(_Addresses(values))

    def changes(self, begin: int, end: int) -> Any:
        """The rows of a block whose keys differ from those of the rows before them."""
        if self.addresses is not None:
            rows = begin + np.flatnonzero(self.addresses[begin:end]
                                          != self.addresses[begin - 1:end - 1])
            if len(rows) <= (end - begin) // _SHORT_RUN:
                return rows[_differ(self.values[rows], self.values[rows - 1])]
            self.addresses = None  # each row has an object of its own
        return begin + np.flatnonzero(_differ(self.values[begin:end],
                                              self.values[begin - 1:end - 1]))


def _differ(one: Any, other: Any) -> Any:
    if isinstance(one, np.ndarray):
        # The operator may only warn that elements cannot be compared, such as NA.
        return np.not_equal(one, other)
    made = one != other
    return made if isinstance(made, np.ndarray) else made.to_numpy(dtype=bool, na_value=True)


def _runs(series: Any) -> Any:
    """Where runs of equal keys begin; None where they are too short to be of use, or of a kind that
    is compared otherwise."""
    few = min(_FEW_ROWS, len(series))
    try:
        keys = _Keys(series)
        if len(keys.changes(1, few)) > few // _SHORT_RUN:
            return None
        return np.concatenate([[0], *(keys.changes(begin, min(begin + _BLOCK, len(series)))
                                      for begin in range(1, len(series), _BLOCK))])
    except Exception:  # of an element's own comparison
        return None


def groups(keys: Any, by: Any) -> tuple[Any, list[Any]]:
    """The keys in ascending order and where the rows of each are: a slice where all lie side by
    side, so that rows in order of their wells cost one look at each key."""
    pd = _frames.pandas()
    begins = _runs(keys)
    codes, names = pd.factorize(keys if begins is None else keys.iloc[begins], sort=True)
    if (codes < 0).any():
        raise ValueError(f"column {by!r} has missing values")
    if begins is not None:
        ends = np.append(begins[1:], len(keys))
        if len(names) == len(begins):
            order = np.argsort(codes)
            return names, [slice(*edges) for edges in zip(begins[order], ends[order])]
        codes = np.repeat(codes, ends - begins)
    order = np.argsort(codes, kind="stable")
    cuts = np.searchsorted(codes[order], np.arange(len(names) + 1))
    return names, [order[a:b] for a, b in zip(cuts, cuts[1:])]
