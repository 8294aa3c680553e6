"""Which rows of a column have one key, however the column holds it, beside a look at each row."""

import sys
import types

import numpy as np
import pandas as pd
import pytest


def own(text):
    """An equal text that is another object."""
    return "".join([text[:1], text[1:]])


def column(random):
    """Runs of keys, some of them again further on; part of the rows have a text of their own."""
    names = [f"W-{k}" for k in range(random.integers(1, 7))]
    rows = np.repeat(random.choice(names, 12), random.integers(1, 40, 12)).tolist()
    share = random.choice([0, 0.02, 0.5, 1])
    kept = dict(zip(names, names))
    return [own(name) if random.random() < share else kept[name] for name in rows]


def strided(rows):
    return np.array([rows, rows[::-1]], object).T.copy()[:, 1]


HELD = {
    "objects": lambda rows: pd.Series(rows, dtype=object),
    "objects beside others": lambda rows: pd.Series(strided(rows)),
    "objects from the last on": lambda rows: pd.Series(strided(rows[::-1])[::-1]),
    "a level": lambda rows: pd.MultiIndex.from_arrays([rows]).get_level_values(0).to_series(),
    "categories": lambda rows: pd.Series(pd.Categorical(rows, ["W-9", *sorted(set(rows))[::-1]])),
    "texts of pandas": lambda rows: pd.Series(rows, dtype="string"),
    "numbers": lambda rows: pd.Series([int(name[2:]) for name in rows]),
    "numbers of pandas": lambda rows: pd.Series([int(name[2:]) for name in rows], dtype="Int64"),
    "tuples": lambda rows: pd.Series([(name, 1) for name in rows]),
}


@pytest.mark.parametrize("python", ["cpython", "another"])
@pytest.mark.parametrize("held", HELD)
def test_each_key_has_the_rows_that_a_look_at_each_finds(vq, monkeypatch, held, python):
    from vqmath63 import _groups
    monkeypatch.setattr(sys, "implementation", types.SimpleNamespace(name=python))
    random = np.random.default_rng(63)
    for block in (1, 7, 16, 2**16) * 5:
        monkeypatch.setattr(_groups, "_BLOCK", block)
        monkeypatch.setattr(_groups, "_FEW_ROWS", random.choice([25, 4096]))
        rows = column(random)
        for part in (rows, rows[:1], rows[:2], sorted(rows), list(dict.fromkeys(rows))):
            keys = HELD[held](part)
            found: dict = {}
            for place, key in enumerate(keys):
                found.setdefault(key, []).append(place)
            order = list(keys.cat.categories) if held == "categories" else sorted(found)
            names, places = _groups.groups(keys, "well")
            assert list(names) == [name for name in order if name in found]
            assert [np.arange(len(part))[at].tolist() for at in places] == [
                found[name] for name in names]


@pytest.mark.filterwarnings("ignore")  # as most users have it
@pytest.mark.parametrize("missing", [None, np.nan, pd.NA, pd.NaT], ids=str)
@pytest.mark.parametrize("rows", [slice(0, 1), slice(9, 30), slice(10, 11), slice(0, 40)], ids=str)
def test_missing_keys_are_refused(vq, missing, rows):
    days = pd.date_range("2024-01-01", periods=40)
    frame = pd.DataFrame({"day": days, "oil": 1.0, "well": np.repeat(["W-1", "W-2"], 20)})
    frame.loc[frame.index[rows], "well"] = missing
    texts = frame["well"].astype(object)
    own_texts = texts.map(own, na_action="ignore")
    numbers = texts.map({"W-1": 1, "W-2": 2}).astype("Int64")
    for well in (texts, own_texts, texts.astype("category"), texts.astype("string"), numbers):
        with pytest.raises(ValueError, match="column 'well' has missing values"):
            vq.accumulate(frame.assign(well=well), by="well", date="day")
