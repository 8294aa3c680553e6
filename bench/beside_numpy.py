"""Statistics of the Python package beside NumPy's, over arrays of Singles in one run:
VQMATH63_LIBRARY=build/bench/src/libvqmath63.so PYTHONPATH=python python3 bench/beside_numpy.py [OUT.json]

Prints microseconds a call, medians in the processor's time. NumPy adds in pieces, several at a time,
where ours adds one Single to the next."""

import numpy as np
import rounds

import vqmath63

NULL = -999.25
statistics = vqmath63.Statistics()
random = np.random.default_rng(63)


def summary(x):
    return x.sum(), x.mean(), x.std(ddof=1), x.min(), x.max()


def median_and_mode(x):
    values, counts = np.unique(x, return_counts=True)
    return summary(x), np.median(x), values[counts.argmax()]


def without_nulls(*columns):
    keep = np.logical_and.reduce([column != NULL for column in columns])
    return [column[keep] for column in columns]


def jobs():
    for count in (1_000, 100_000, 1_000_000, 10_000_000):
        x = random.normal(100, 15, count).astype("f4")
        yield f"SumOfX/{count}", lambda x=x: statistics.SumOfX(x)
        yield f"numpy sum/{count}", lambda x=x: x.sum()
        yield f"BasicStatistics/{count}", lambda x=x: statistics.BasicStatistics(x)
        yield f"numpy summary/{count}", lambda x=x: summary(x)
        yield f"Statistics/{count}", lambda x=x: statistics.Statistics(x)
        yield f"numpy median and mode/{count}", lambda x=x: median_and_mode(x)
        holes = [random.choice(np.float32([NULL, *[1] * 19]), count) * x for _ in range(3)]
        for column in holes:
            column[column < -1] = NULL
        ours = statistics.RemoveNullsXYZ(NULL, *holes)
        for mine, theirs in zip(ours, without_nulls(*holes)):
            np.testing.assert_array_equal(mine, theirs)
        yield f"RemoveNullsXYZ/{count}", lambda h=holes: statistics.RemoveNullsXYZ(NULL, *h)
        yield f"numpy mask and take/{count}", lambda h=holes: without_nulls(*h)


rounds.write(rounds.measure(dict(jobs())))
