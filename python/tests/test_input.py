"""What goes in: refused with words before anything is called, or taken as it is told."""

import array
import datetime
import decimal
import os
import pickle
import resource
import subprocess
import sys
import threading

import numpy as np
import pandas as pd
import pytest

NaT = pd.NaT
ZONE = datetime.timezone.utc


def maths(v):
    return v.MathLib()


def stats(v):
    return v.Statistics()


def profile(v):
    return v.Accumulate()


def curve(v):
    return v.Integrate()


def put(make, name, value):
    return lambda v: setattr(make(v), name, value)


REFUSED = [
    # names
    (lambda v: v.MathLab, AttributeError, "did you mean 'MathLib'"),
    (lambda v: v.acumulate, AttributeError, "did you mean 'accumulate'"),
    (lambda v: maths(v).erf, AttributeError, "did you mean 'Erf'"),
    (put(profile, "Perid", "month"), AttributeError, "did you mean 'Period'"),
    (put(profile, "Accumulate", 1), AttributeError, "cannot be set"),
    (put(stats, "xBar", 1.0), AttributeError, "cannot be set"),
    (lambda v: profile(v).DataPeriod, AttributeError, "can be set, but not read"),
    (lambda v: maths(v).Erf(xvalue=1), TypeError, "did you mean 'xValue'"),
    (lambda v: stats(v).Statistics([1], qOK=True), TypeError, "qOK comes back"),
    (lambda v: v.errors("rise"), ValueError, "did you mean 'raise'"),
    (lambda v: v.conversions("loud"), ValueError, "silent"),
    (lambda v: maths(v).Erf(x=1), TypeError, "no argument 'x'; it takes (xValue)"),
    (lambda v: v.Object(), TypeError, "make one of them"),
    (lambda v: v.MathLib.Erf(0.5), TypeError, "wants an object: MathLib().Erf(xValue)"),
    (lambda v: v.MathLib.Erf(stats(v), 0.5), TypeError, "wants an object"),
    # numbers of arguments
    (lambda v: maths(v).Erf(), TypeError, "takes (xValue); xValue is missing"),
    (lambda v: maths(v).Erf(1, 2), TypeError, "takes (xValue), not 2"),
    (lambda v: maths(v).Erf(1, xValue=2), TypeError, "xValue' is given twice"),
    (lambda v: maths(v).beta(B=1), TypeError, "A is missing"),
    # single values
    (lambda v: maths(v).Erf("1"), TypeError, "xValue has to be a number, not a str"),
    (lambda v: maths(v).Erf(None), TypeError, "has to be a number, not None"),
    (lambda v: maths(v).Erf(1j), TypeError, "has to be a number, not a complex"),
    (lambda v: maths(v).Erf(np.complex64(1j)), TypeError, "has to be a number, not a complex64"),
    (lambda v: maths(v).Erf(np.timedelta64(1, "ns")), TypeError, "not a timedelta64"),
    (lambda v: maths(v).Erf(np.array("1")), TypeError, "has to be a number, not a ndarray"),
    (lambda v: maths(v).Erf(decimal.Decimal("1e400")), OverflowError, "range of a Double"),
    (lambda v: maths(v).Erf(10**400), OverflowError, "beyond the range of a Double"),
    (lambda v: maths(v).Factorial(2.5), TypeError, "n has to be a whole number, not 2.5"),
    (lambda v: maths(v).Factorial(2**31), OverflowError, "beyond the range of a Long"),
    (lambda v: maths(v).Factorial(float("nan")), TypeError, "whole number"),
    (lambda v: maths(v).ArithmeticDiff(1e39, 1), OverflowError, "beyond the range of a Single"),
    (put(curve, "IntegrationRule", "Simson"), TypeError, "did you mean 'IntegrationRule.Simpson'"),
    (lambda v: put(curve, "IntegrationRule", v.Quartile.LowerQuartile)(v), TypeError,
     "one of vqIntegrationRule, not of vqQuartile"),
    (put(profile, "Silent", "no"), TypeError, "True or False"),
    (put(profile, "Silent", [True]), TypeError, "True or False, not a list"),
    (put(profile, "Frequency", np.array([3])), TypeError, "has to be a number, not a ndarray"),
    (put(profile, "Period", "quater"), ValueError, "did you mean 'quarter'"),
    (put(profile, "Period", 3), TypeError, "has to be a text"),
    (put(profile, "StartDate", "2023-01-01"), TypeError, "has to be a date"),
    (put(profile, "StartDate", 45000), TypeError, "has to be a date"),
    (put(profile, "StartDate", NaT), ValueError, "NaT"),
    (put(profile, "StartDate", np.datetime64("NaT")), ValueError, "NaT"),
    (put(profile, "StartDate", datetime.date(99, 1, 1)), ValueError, "year 100"),
    (put(profile, "StartDate", np.datetime64("20000")), ValueError, "years 100 to 9999"),
    (put(profile, "StartDate", datetime.datetime(2023, 1, 1, tzinfo=ZONE)), ValueError, "zone"),
    # arrays
    (lambda v: stats(v).Median("123"), TypeError, "xA has texts"),
    (lambda v: stats(v).Median(1.0), ValueError, "array of 1 dimension, not of shape ()"),
    (lambda v: stats(v).Median([[1, 2], [3]]), TypeError, "rows of several lengths"),
    (lambda v: stats(v).Median(np.array([1, "a"], object)), TypeError, "[1] is a str"),
    (lambda v: stats(v).Median([1, None]), TypeError, "[1] is None"),
    (lambda v: stats(v).Median(np.array([1, 2], object)), TypeError, "object array"),
    (lambda v: stats(v).Median(pd.array([True, None])), TypeError, "missing values among"),
    (put(profile, "RateArray", True), ValueError, "array of 1 dimension, not of shape ()"),
    (lambda v: stats(v).Median([1j]), TypeError, "complex"),
    (lambda v: stats(v).Median([True, False]), TypeError, "truths"),
    (lambda v: stats(v).Median(np.array(["2023"], "M8[D]")), TypeError, "dates"),
    (lambda v: stats(v).Median(np.array([1, 1e39])), OverflowError, "[1] is 1e+39"),
    (lambda v: stats(v).SumListX([1, 2.5], 2, [1, 2]), TypeError, "element [1] is 2.5"),
    (lambda v: stats(v).SumListX([1, 2**31], 2, [1, 2]), OverflowError, "[1] is 2147483648"),
    (lambda v: stats(v).MaskValuesXY([0.5], [1], [1]), TypeError, "an array of bool"),
    (lambda v: profile(v).Accumulate([1, 2]), ValueError, "2 dimensions, not of shape (2,)"),
    (lambda v: stats(v).Median(np.ma.array([1, 2], mask=[0, 1])), TypeError, "masked"),
    # arrays of single values
    (lambda v: maths(v).beta([1, 2], [1, 2, 3]), ValueError, "A (2,) and B (3,) do not go"),
    (lambda v: maths(v).Arithmetic([1, 2], 3, ["+", "-"]), TypeError, "has to be a text"),
    (lambda v: stats(v).RemoveNulls([0, 1], [1, 2]), TypeError, "xNull has to be a number"),
    (lambda v: maths(v).beta(pd.Series([1, 2]), pd.Series([1, 2], [5, 6])), ValueError,
     "another index"),
    (lambda v: pickle.dumps(maths(v)), TypeError, "cannot be copied or sent"),
]


@pytest.mark.parametrize("call, error, words", REFUSED)
def test_refused_with_words(vq, call, error, words):
    with vq.errors("list") as lines, pytest.raises(error) as refused:
        call(vq)
    assert words in str(refused.value)
    assert lines == []


TAKEN = [
    [3, 1, 2], (3, 1, 2), range(1, 4), array.array("d", [3, 1, 2]), array.array("f", [3, 1, 2]),
    np.array([3, 1, 2], "f4"), np.array([3, 1, 2], ">f8"), np.array([3, 1, 2], "u1"),
    np.array([3, 9, 1, 9, 2, 9], "f4")[::2], np.array([2, 1, 3], "f4")[::-1],
    pd.Series([3, 1, 2]), pd.Series([3, 1, 2], dtype="Int64"), pd.Index([3, 1, 2]),
    np.ma.array([3.0, 1.0, 2.0]), np.array([3, 1e-300, 2])]


@pytest.mark.parametrize("samples", TAKEN, ids=lambda s: type(s).__name__)
def test_arrays_of_any_make_are_taken_and_kept(vq, samples):
    before = list(samples)
    if isinstance(samples, np.ndarray):
        samples.flags.writeable = False
    with np.errstate(all="raise"):
        assert vq.Statistics().Median(samples) == 2
    assert list(samples) == before


def test_only_what_the_component_cannot_use_is_converted(vq):
    stats, singles = vq.Statistics(), np.arange(4, dtype="f4")
    vq.conversions("warn")
    try:
        stats.Median(singles)
        vq.MathLib().Erf(np.zeros(3)[::-1])
        for other, words in ((singles[::2], "copied"), (singles.astype("f8"), "to Single")):
            with pytest.warns(vq.ConversionWarning, match=words) as told:
                stats.Median(other)
            assert told[0].filename == __file__
    finally:
        vq.conversions("silent")


def test_what_a_member_changes_comes_back_and_the_callers_stays(vq):
    samples = np.array([-2, -4], "f4")
    assert vq.Statistics().Normalise(samples).xA.tolist() == [1, 2]
    assert samples.tolist() == [-2, -4]
    mask, x = np.array([True, False, True]), np.array([1, 2, 3], "f4")
    kept = vq.Statistics().MaskValuesXY(mask, x, x)
    assert (kept.dX.tolist(), kept.nRows, kept.qOK) == ([1, 3], 2, True)
    assert x.tolist() == [1, 2, 3]


# Sample 1 is element 0: indices that the component tells count from 1.
def test_index_1_is_element_0(vq):
    from vqmath63 import _arrays
    from vqmath63 import _library as lib
    from vqmath63._description import Type
    assert vq.Statistics().Index_of_Maximum_Of_X([7, 9, 8]) == 2
    for bounds, lower in ((([3],), 1), (([3],), 0), (([3],), -1), (([3, 2],), 1), (([3, 2],), 0)):
        shape = bounds[0]
        made = lib.new_array(lib.R4, len(shape), (lib.Bound * 2)(*(lib.Bound(n, lower)
                                                                   for n in shape)))
        count = int(np.prod(shape))
        data = lib.SafeArray.from_address(made).data
        (lib.ctypes.c_float * count).from_address(data)[:] = list(range(count))
        want = np.arange(count, dtype="f4").reshape(shape, order="F")
        skip = 1 - lower
        got = _arrays.taken(made, Type("Single", len(shape)))
        assert got.tolist() == want[(slice(skip, None),) * len(shape)].tolist()


DATES = [(datetime.date(1899, 12, 30), 0.0), (datetime.datetime(1899, 12, 29, 18), -1.75),
         (datetime.datetime(2023, 1, 31, 6), 44957.25), (np.datetime64("2023-01-31"), 44957.0),
         (np.datetime64("2023-01-31T06", "ns"), 44957.25), (pd.Timestamp("2023-01-31T06"), 44957.25),
         (datetime.date(100, 1, 1), -657434.0), (datetime.date(9999, 12, 31), 2958465.0)]


@pytest.mark.parametrize("date, serial", DATES)
def test_dates(vq, date, serial):
    from vqmath63 import _values
    assert _values.to_date(date) == serial
    profile = vq.Accumulate(StartData=date)
    assert np.datetime64(profile.StartData) == np.datetime64(date)


def test_the_last_moment_of_a_day_stays_in_it(vq):
    from vqmath63 import _values
    for day in (datetime.date(100, 1, 1), datetime.date(9999, 12, 31)):
        last = datetime.datetime.combine(day, datetime.time.max)
        assert int(_values.to_date(last)) == _values.to_date(day)
    assert vq.Accumulate(StartData=last).StartData == last.replace(microsecond=999_000)


SHAPES = [((3,), (3,)), ((3, 1), (4,)), ((), (2, 3)), ((1,), (5,)), ((0,), (1,)), ((2, 2), (2, 2))]


@pytest.mark.parametrize("n_shape, x_shape", SHAPES)
@pytest.mark.parametrize("order", ["C", "F", "reversed"])
def test_single_values_may_be_arrays_of_any_shape(vq, n_shape, x_shape, order):
    maths, random = vq.MathLib(), np.random.default_rng(63)
    n = random.integers(0, 9, n_shape)
    x = np.array(random.uniform(0, 9, x_shape), order="F" if order == "F" else "C")
    if order == "reversed":
        n, x = np.flip(n), np.flip(x)
    got = maths.Jbn(n, x)
    wide_n, wide_x = np.broadcast_arrays(n, x)
    assert got.shape == wide_n.shape and got.dtype == np.float64
    assert got.ravel().tolist() == [maths.Jbn(int(a), float(b))
                                    for a, b in zip(wide_n.ravel(), wide_x.ravel())]


def test_a_series_gives_its_index_to_the_result(vq):
    made = vq.MathLib().Squared(pd.Series([1.0, 2.0], index=["a", "b"]))
    assert made.to_dict() == {"a": 1.0, "b": 4.0}


def test_errors_are_told_as_chosen(vq):
    maths = vq.MathLib()
    with pytest.raises(vq.Error, match="Overflow .error 6. in Squared") as told:
        maths.Squared(1e200)
    error = told.value
    assert (error.number, error.text, error.module, error.routine, error.result) == (
        6, "Overflow", "ztMathLib", "Squared", 0.0)
    with vq.errors("warn"), pytest.warns(vq.ErrorWarning, match="Squared") as warned:
        assert maths.Squared(1e200) == 0
    assert warned[0].filename == __file__
    with vq.errors("list") as lines:
        assert maths.Squared([1, 1e200, 3, 1e300]).tolist() == [1, 0, 9, 0]
        assert maths.RTD([0, 1e308]).tolist() == [0, 0]
        assert [(x.number, x.routine) for x in lines] == [(6, "Squared"), (6, "RTD")]
        assert len(vq.lines()) == 2 and vq.lines() == [] and lines == []
    with pytest.raises(vq.Error, match=r"2 of 4 elements failed, the first is \[1\]") as told:
        maths.Squared([1, 1e200, 3, 1e300])
    assert (told.value.failed, told.value.first_failed) == (2, 1)
    assert told.value.result.tolist() == [1, 0, 9, 0]
    with pytest.raises(vq.Error, match=r"1 of 4 elements failed, the first is \[1, 0\]"):
        maths.Squared(np.array([[1, 2], [1e200, 4]], order="F"))
    with pytest.raises(vq.Error, match="Overflow"):
        maths.RTD(1e308)
    # What comes back goes to another process too.
    assert pickle.loads(pickle.dumps(error)).lines == error.lines
    assert type(error).__module__ == "vqmath63"
    made = maths.Polar_to_Rectangular(2, 0)
    assert pickle.loads(pickle.dumps(made)) == made and made.X == 2
    assert maths.Squared(3) == 9


def in_thread(work):
    """What a function in a thread of its own returns or raises."""
    box = []

    def run():
        try:
            box.append(work())
        except Exception as error:
            box.append(error)
    thread = threading.Thread(target=run)
    thread.start()
    thread.join()
    return box[0]


def test_an_object_belongs_to_its_thread(vq):
    maths = vq.MathLib()
    assert "belongs to the thread" in str(in_thread(lambda: maths.Erf(0.5)))
    assert in_thread(lambda: vq.MathLib().Erf(0.5)) == maths.Erf(0.5)
    for _ in range(50):  # also where a later thread has the number of the one that ended
        orphan = in_thread(vq.MathLib)
        assert isinstance(in_thread(lambda: orphan.Squared(1e200)), RuntimeError)
    with vq.errors("list"):  # of this thread alone
        assert isinstance(in_thread(lambda: vq.MathLib().Squared(1e200)), vq.Error)


# Those that only a companion could change are handed over as copies.
def test_memory_that_cannot_be_written_is_not(vq, tmp_path):
    np.array([0, 1, 2, 3], "f4").tofile(tmp_path / "x")
    x = np.memmap(tmp_path / "x", "f4", "r")
    made = vq.MathLib().LineCrossPoint(x, 0, x, 2, 0, 1, 4, 1)
    assert made.xi.tolist() == [0, 1, 2, 3] and made.qInt.all()
    assert vq.Statistics().RemoveNulls(float(x[1]), x).xANew.tolist() == [0, 2, 3]


def test_memory_of_arrays_and_texts_is_freed(vq):
    stats, samples = vq.Statistics(), np.zeros(250_000, "f4")
    held = []
    for turn in range(200):  # a megabyte in, a megabyte out
        kept = stats.RemoveNulls(1.0, samples).xANew
        stats.Normalise(samples)
        vq.MathLib().ArithmeticSingle([1] if turn % 2 else 1, 2, "?" * 500_000)
        if turn == 20:
            held = [kept, resource.getrusage(resource.RUSAGE_SELF).ru_maxrss]
    assert resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - held[1] < 20_000  # kilobytes
    del stats, kept
    assert held[0].sum() == 0  # lives on by itself


WITHOUT_NUMPY = """
import sys
sys.modules["numpy"] = None
import array, vqmath63 as vq
from vqmath63 import *
stats, maths = vq.Statistics(), MathLib()
assert stats.Median([3, 1, 2]) == stats.Median(array.array("f", [3, 1, 2])) == 2.0
assert stats.RemoveNulls(0, [1, 0, 2]) == ([1.0, 2.0], 2, True)
assert maths.Max([1, 5], 3) == [3.0, 5.0]
assert maths.Quadrant([1, -1], [1, 1]) == [1, 2]
made = vq.Accumulate(DataPeriod="month").Accumulate([[0, 5], [1, 20], [2, 30]])
assert made.qOK and [round(row[1], 3) for row in made.dAccumulate] == [20.0, 30.0], made
for call, words in ((lambda: stats.Median(["a"]), "element [0] has to be a number"),
                    (lambda: maths.Max([1, 2], [1]), "lengths 1 and 2"),
                    (lambda: vq.Accumulate().Accumulate([[1], [1, 2]]), "one length")):
    try:
        call()
    except (TypeError, ValueError) as error:
        assert words in str(error), error
    else:
        raise AssertionError(words)
"""


def test_lists_do_without_numpy():
    subprocess.run([sys.executable, "-c", WITHOUT_NUMPY], check=True,
                   env={**os.environ, "PYTHONPATH": os.pathsep.join(filter(None, sys.path))})
