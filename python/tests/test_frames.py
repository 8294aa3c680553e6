"""The functions over frames, beside pandas and NumPy or worked by hand."""

import contextlib
import warnings
from concurrent import futures

import numpy as np
import pandas as pd
import pytest

DAYS = pd.date_range("2020-11-17", "2024-03-05", freq="D")


def history(dates=DAYS, seed=63):
    random = np.random.default_rng(seed)
    rates = random.uniform(10, 90, (len(dates), 2))
    return pd.DataFrame(rates, dates, ["oil", "water"])


@pytest.mark.parametrize("period, rule", [
    ("day", "D"), ("week", "W-MON"), ("month", "MS"), ("quarter", "QS"), ("year", "YS")])
def test_means_and_totals_agree_with_resample(vq, period, rule):
    frame = history().round(0)
    frame["total"] = frame["oil"].cumsum()
    made = vq.accumulate(frame, period, cumulative="total")
    # The first row tells nothing of the time before it.
    bins = frame.iloc[1:].resample(rule, closed="right", label="left")
    assert len(made) == len(bins.size())
    np.testing.assert_allclose(made[["oil", "water"]], bins[["oil", "water"]].mean(), rtol=3e-6)
    np.testing.assert_array_equal(made["total"], bins["total"].last().astype("f4"))
    assert made.index[0].left == DAYS[0] and made.index[-1].right == DAYS[-1]
    wanted = bins.size().index[1:]
    assert list(made.index.left[1:]) == list(made.index.right[:-1]) == list(wanted)
    assert made.index.closed == "right"


def wells(count=7):
    parts = [history(DAYS[k * 30:], k).assign(well=f"W-{k}") for k in range(count)]
    rows = pd.concat(parts).rename_axis("date").reset_index()
    return rows.sample(frac=1, random_state=63).sort_values("date", kind="stable")


@contextlib.contextmanager
def cluster():
    distributed = pytest.importorskip("distributed", reason="python3-distributed is not there")
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")  # its own
        with distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None,
                                      silence_logs=False) as local, local.get_client() as client:
            yield client


@pytest.mark.parametrize("jobs", [lambda: contextlib.nullcontext(2),
                                  lambda: futures.ThreadPoolExecutor(3), cluster])
def test_many_wells_are_the_same_to_the_last_bit_however_they_are_spread(vq, jobs):
    rows = wells(20)
    alone = vq.accumulate(rows, "quarter", by="well", date="date")
    with jobs() as chosen:
        made = vq.accumulate(rows, "quarter", by="well", date="date", jobs=chosen)
    pd.testing.assert_frame_equal(made, alone, check_exact=True)


def test_each_of_many_wells_is_as_it_is_alone(vq):
    rows = wells()
    alone = vq.accumulate(rows, "quarter", by="well", date="date")
    levels = rows.set_index(["well", "date"])
    by_levels = vq.accumulate(levels, "quarter", by="well", date="date")
    pd.testing.assert_frame_equal(by_levels, alone, check_exact=True)
    for ascending in (True, False):  # side by side
        in_runs = rows.sort_values("well", ascending=ascending, kind="stable")
        made = vq.accumulate(in_runs, "quarter", by="well", date="date")
        pd.testing.assert_frame_equal(made, alone, check_exact=True)
    for name, own in rows.groupby("well"):
        one = vq.accumulate(own.set_index("date")[["oil", "water"]], "quarter")
        pd.testing.assert_frame_equal(alone.loc[name], one, check_exact=True)


def test_wells_of_the_same_dates_are_each_as_alone(vq, monkeypatch):
    from vqmath63 import _accumulation
    dates = [DAYS[:900] if k in (9, 10) else DAYS.shift(k // 15) for k in range(20)]
    parts = [history(own, k) for k, own in enumerate(dates)]
    parts[3].iloc[40:50, 0] = np.nan
    for k in (5, 6, 19):
        parts[k].iloc[:, 1] = 3e38  # a sum of which is beyond the range of a Single
    columns = ["oil", "total", "water"]
    parts = [part.assign(total=part["oil"].cumsum())[columns] for part in parts]
    with vq.errors("list") as lines:
        alone = [vq.accumulate(part, cumulative="total") for part in parts]
        lines_alone = vq.lines()
    assert len(lines_alone) > 3
    frame = pd.concat(parts, keys=range(20), names=["well", "date"])
    for rows in (frame, frame.sort_index(level="date", kind="stable")):
        for together in (3, 6, 16, 60, 10**6):
            monkeypatch.setattr(_accumulation, "_COLUMNS_TOGETHER", together)
            for jobs in (1, futures.ThreadPoolExecutor(2)):
                with vq.errors("list") as lines:
                    made = vq.accumulate(rows, by="well", date="date", cumulative="total", jobs=jobs)
                    assert lines == lines_alone
                for k, one in enumerate(alone):
                    pd.testing.assert_frame_equal(made.loc[k], one, check_exact=True)


def test_wells_of_the_same_dates_share_a_call(vq, monkeypatch):
    from vqmath63 import _profiles
    columns, of_one = [], _profiles._Reporter.made
    monkeypatch.setattr(_profiles._Reporter, "made", lambda self, dates, table: (
        columns.append(table.shape[1]), of_one(self, dates, table))[1])
    parts = [history(DAYS[1:]), *[history()] * 20]
    frame = pd.concat(parts, keys=range(21), names=["well", "date"])
    vq.accumulate(frame, by="well", date="date", cumulative="water")
    assert columns == [1 + 2, 1 + 12 * 2, 1 + 8 * 2]


def test_start_frequency_missing_values_and_hours(vq):
    frame = history(DAYS[:100])
    made = vq.accumulate(frame, "week", frequency=2, start=pd.Timestamp("2020-11-20"))
    assert [x.strftime("%m-%d") for x in made.index.left[:3]] == ["11-20", "12-04", "12-18"]
    frame.iloc[20, 0] = np.nan  # 7 December, the mean of the 6th
    made = vq.accumulate(frame, "month")
    assert made["oil"].isna().tolist() == [False, True, False, False]
    assert not made["water"].isna().any()
    hours = history(pd.date_range("1990-01-01 07:13", periods=260_000, freq="h"))
    made = vq.accumulate(hours, "month")
    midnights = made.index.left[1:]  # which Singles of days tell to some 40 seconds only
    assert (midnights.day == 1).all() and (midnights == midnights.normalize()).all()


def doubled(frame):
    return pd.concat([frame, frame[["oil"]]], axis=1)


def with_a_large_number(row, name):
    rows = pd.concat([FRAME.assign(well=well) for well in "AB"])
    rows.iloc[row, rows.columns.get_loc(name)] = 1e40
    return rows


FRAME = history(DAYS[:5])
REFUSED = [
    (lambda v: v.accumulate(FRAME, "quater"), ValueError, "did you mean 'quarter'"),
    (lambda v: v.accumulate(FRAME, 3), TypeError, "word"),
    (lambda v: v.accumulate([1, 2]), TypeError, "DataFrame"),
    (lambda v: v.accumulate(FRAME.iloc[:0]), ValueError, "no rows"),
    (lambda v: v.accumulate(FRAME.iloc[:1]), ValueError, "covers no time"),
    (lambda v: v.accumulate(FRAME[[]]), ValueError, "no column"),
    (lambda v: v.accumulate(FRAME[::-1]), ValueError, ".sort_index() orders them"),
    (lambda v: v.accumulate(FRAME[::-1].rename_axis("at").reset_index(), date="at"), ValueError,
     ".sort_values('at') orders them"),
    (lambda v: v.accumulate(FRAME.assign(well="A")), TypeError, "by='well' makes a profile"),
    (lambda v: v.accumulate(FRAME.tz_localize("UTC")), ValueError, "time zone"),
    (lambda v: v.accumulate(FRAME.reset_index(drop=True)), TypeError, "has to have dates"),
    (lambda v: v.accumulate(FRAME.to_period("D")), TypeError, "to_timestamp"),
    (lambda v: v.accumulate(FRAME.rename(index={DAYS[1]: pd.NaT})), ValueError, "NaT"),
    (lambda v: v.accumulate(doubled(FRAME)), ValueError, "one name: 'oil'"),
    (lambda v: v.accumulate(FRAME.assign(name="x")), TypeError, "'name' has elements of type"),
    (lambda v: v.accumulate(FRAME * 1e40), OverflowError, "Single"),
    (lambda v: v.accumulate(with_a_large_number(2, "water"), by="well"), OverflowError, "'water'"),
    (lambda v: v.accumulate(with_a_large_number(9, "oil"), by="well"), OverflowError, "'oil'"),
    (lambda v: v.accumulate(FRAME, by="wel"), KeyError, "no column 'wel'"),
    (lambda v: v.accumulate(FRAME, cumulative="oli"), KeyError, "did you mean 'oil'"),
    (lambda v: v.accumulate(FRAME, by=["oil"]), TypeError, "one column is wanted"),
    (lambda v: v.accumulate(FRAME.reset_index()), TypeError, "date='index' takes those of a column or a level"),
    (lambda v: v.accumulate(FRAME, comulative="oil"), TypeError, "did you mean 'cumulative'"),
    (lambda v: v.accumulate(FRAME, frequency=0), ValueError, "frequency has to be 1 or more"),
    (lambda v: v.accumulate(FRAME, frequency="2"), TypeError, "frequency has to be a number"),
    (lambda v: v.accumulate(FRAME.rename_axis("at"), cumulative="at"), ValueError, "no column of"),
    (lambda v: v.accumulate(FRAME, by=FRAME["oil"]), TypeError, "by its name, not a Series"),
    (lambda v: v.accumulate(FRAME, start="soon"), ValueError, "start has to be a date, not 'soon'"),
    (lambda v: v.accumulate(FRAME, start=pd.Timestamp(0, tz="UTC")), ValueError, "time zone"),
    (lambda v: v.accumulate(FRAME, start="2030-01-01"), ValueError, "no time is covered"),
    (lambda v: v.accumulate(FRAME, jobs=-1), ValueError, "number of processes"),
    (lambda v: v.accumulate(FRAME, jobs="all"), TypeError, "a Dask client, not a str"),
    (lambda v: v.fit(FRAME, "oil", "water", "exponental"), ValueError, "mean 'exponential'"),
    (lambda v: v.fit(-FRAME, "oil", "water", "power"), ValueError, "no logarithm"),
    (lambda v: v.fit(FRAME * 0, "oil", "water"), ValueError, "two different"),
    (lambda v: v.fit(FRAME.set_index("oil", append=True), None, "water"), TypeError, "has levels"),
    (lambda v: v.fit(FRAME, "oil", "water", []), ValueError, "[] is no type"),
    (lambda v: v.fit(FRAME.tz_localize("UTC"), None, "oil"), ValueError, "time zone"),
    (lambda v: v.fit(FRAME * np.inf, "oil", "water"), ValueError, "infinite"),
    (lambda v: v.fit(FRAME * 1e40, "oil", "water"), OverflowError, "beyond the range of a Single"),
    (lambda v: v.fit(FRAME, "oil", "water").predict(DAYS), TypeError, "line is over numbers"),
    (lambda v: v.fit(FRAME, None, "water").predict("2023-01-01"), TypeError, "x: has texts"),
    (lambda v: v.fit(FRAME, None, "oil").predict(DAYS.tz_localize("UTC")), ValueError, "time zone"),
    (lambda v: v.fit(FRAME, "oil", "water", "power").predict([1, 0]), ValueError, "has 0.0, which"),
    (lambda v: v.statistics(FRAME[[]]), ValueError, "no column of numbers"),
    (lambda v: v.derivative(FRAME["oil"].tz_localize("UTC")), ValueError, "time zone"),
    (lambda v: v.derivative(FRAME), TypeError, "Series"),
    (lambda v: v.derivative(FRAME["oil"], 3), ValueError, "1 or 2"),
    (lambda v: v.derivative(FRAME["oil"][::-1]), ValueError, "ascending"),
    (lambda v: v.derivative(FRAME["oil"][:2], 2), ValueError, "wants 3 samples, not 2"),
    (lambda v: v.derivative(v.accumulate(FRAME, "day")["oil"]), TypeError, "index has intervals"),
    (lambda v: v.volume_factor(FRAME, ["1"]), TypeError, "points: has texts"),
    (lambda v: v.volume_factor(FRAME, pd.Series(DAYS)), TypeError, "points: has dates"),
    (lambda v: v.volume_factor(FRAME, None), TypeError, "points: is None"),
    (lambda v: v.volume_factor(FRAME, FRAME), ValueError, "one column, of pressures, not 2"),
    (lambda v: v.volume_factor(FRAME, [1], "gas"), ValueError, "no type of fluid"),
    (lambda v: v.volume_factor(FRAME[["oil"]], [1]), ValueError, "2 columns"),
    (lambda v: v.inside(FRAME, [[1, 2, 3]]), ValueError, "shape"),
    (lambda v: v.inside(FRAME, [["1", "2"]] * 3), TypeError, "the cell: has texts"),
    (lambda v: v.inside(FRAME, [[1, 2]] * 2), ValueError, "three corners or more, not 2"),
]


@pytest.mark.parametrize("call, error, words", REFUSED)
def test_refused_with_words(vq, call, error, words):
    before = FRAME.copy()
    with pytest.raises(error) as refused:
        call(vq)
    assert words in str(refused.value)
    pd.testing.assert_frame_equal(FRAME, before)


def test_a_well_of_one_date_is_left_out_with_a_word(vq):
    rows = pd.concat([history(DAYS[:40]).assign(well="A"), history(DAYS[:1]).assign(well="B")])
    with pytest.warns(UserWarning, match="well 'B'"):
        made = vq.accumulate(rows, by="well")
    assert set(made.index.get_level_values("well")) == {"A"}


def test_rows_of_one_date_are_told_of(vq):
    words = "40 of 80 rows .* first 2020-11-17: .*is by= missing"
    with pytest.warns(UserWarning, match=words) as told:
        vq.accumulate(pd.concat([history(DAYS[:40])] * 2).sort_index())
    assert told[0].filename == __file__


def test_statistics_agree_with_numpy(vq):
    frame = history(DAYS[:101]).round(1)
    frame.iloc[3, 0] = np.nan
    made = vq.statistics(frame)
    for name in frame:
        x = frame[name].dropna().to_numpy()
        np.testing.assert_allclose(
            made.loc[["count", "mean", "std", "std_n", "min", "max", "median", "sum"], name],
            [len(x), x.mean(), x.std(ddof=1), x.std(), x.min(), x.max(), np.median(x), x.sum()],
            rtol=2e-5)
    made = vq.statistics(frame["oil"] + 1e6)
    assert made.loc["std", "oil"] == pytest.approx(frame["oil"].std(), rel=1e-6)


# Samples on the line itself.
@pytest.mark.parametrize("type, line", [
    ("linear", lambda x: 3 + 0.5 * x), ("logarithmic", lambda x: 3 + 0.5 * np.log(x)),
    ("exponential", lambda x: np.exp(3 - 0.5 * x)), ("power", lambda x: np.exp(3) * x**-0.5)])
def test_a_fit_finds_the_line_of_its_type(vq, type, line):
    x = np.linspace(1, 4, 13)
    frame = pd.DataFrame({"x": x, "y": line(x)})
    frame.loc[13] = [np.nan, 5.0]
    made = vq.fit(frame, "x", "y", type)
    slope = 0.5 if type in ("linear", "logarithmic") else -0.5
    np.testing.assert_allclose([made.A, made.B, made.R], [3, slope, np.sign(slope)], rtol=3e-5)
    np.testing.assert_allclose(made.predict(x), line(x), rtol=3e-5)


@pytest.mark.parametrize("offset", [2015, 46_000, 1e7])
def test_a_fit_is_not_lost_far_from_the_origin(vq, offset):
    made = vq.fit(pd.DataFrame({"x": offset + np.arange(9), "y": 5e6 - np.arange(9) / 4}), "x", "y")
    assert (made.B, made.R) == (-0.25, -1)
    assert made.A == 5e6 + offset / 4


def test_dates_count_in_days_from_the_first(vq):
    days = pd.Series([0.0, 4.0, 16.0, 36.0], pd.to_datetime(["2020-01-01", "2020-01-03",
                                                             "2020-01-05", "2020-01-07"]))
    assert vq.derivative(days).tolist() == pytest.approx([2, 4, 8, 10], rel=1e-12)
    for x in (None, "date"):  # the index, also by its name
        assert vq.fit(days.rename_axis("date").to_frame("y"), x, "y").B == pytest.approx(6, rel=1e-6)
    # Periods by their middles, from the beginning of the first on.
    periods = pd.interval_range(DAYS[0], freq="2D", periods=3)
    line = vq.fit(pd.DataFrame({"y": [3.0, 7.0, 11.0]}, periods), None, "y")
    assert (line.A, line.B) == pytest.approx((1, 2), rel=1e-6)
    assert line.predict(DAYS[1]) == pytest.approx(3, rel=1e-6)
    assert line.predict(periods) == pytest.approx([3, 7, 11], rel=1e-6)
    assert line.predict(DAYS[:2].to_numpy()) == pytest.approx(line.predict([0, 1]), rel=1e-12)


def test_volume_factors_and_places(vq):
    dead = pd.DataFrame({"pressure": [100, 300, 700], "factor": [1.5, 1.25, 1.125]})
    assert vq.volume_factor(dead, pd.Series([200, 300], ["a", "b"])).to_dict() == {"a": 1.375,
                                                                                  "b": 1.25}
    water = pd.DataFrame([[100, 2, 2.0**-10]])
    assert vq.volume_factor(water, [356], "water").tolist() == [2.5625]
    # Saturated at 100 and 200. The last row is none that the component reads.
    live = pd.DataFrame([[10, 100, 1.25], [10, 300, 1.125], [20, 200, 1.75], [20, 400, 1.5],
                         [20, 600, 1.375]])
    points = pd.DataFrame({"gas": [10, 20, 20], "pressure": [300, 400, 200]}, ["a", "b", "c"])
    assert vq.volume_factor(live, points, "live").to_dict() == {"a": 1.125, "b": 1.5, "c": 1.75}
    triangle = pd.DataFrame({"x": [0, 4, 0], "y": [0, 0, 4]})
    places = pd.DataFrame({"x": [1, 3, np.nan], "y": [1.5, 2, 1]}, ["in", "out", "none"])
    assert vq.inside(places, triangle).to_dict() == {"in": True, "out": False, "none": False}
    top = [[0, 0, 1], [10, 0, 1.5], [10, 10, 1], [0, 10, 1.25]]
    bottom = [[x, y, z + 5] for x, y, z in top]
    places = pd.DataFrame({"x": [3, 3, 30], "y": [4, 4, 4], "z": [3, 0.5, 3]})
    assert vq.inside(places, [top, bottom]).tolist() == [True, False, False]
