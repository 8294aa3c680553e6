"""Times jobs of Python in rounds that go through all of them in an order of chance, so that what else
the machine does meets each alike, and writes the times as Google Benchmark writes its own."""
import json
import random
import sys
import time


def _seconds(work, times, clock):
    begun = clock()
    for _ in range(times):
        work()
    return (clock() - begun) / times


def measure(jobs, rounds=5, least=0.01, clock=time.process_time):
    """Seconds of one call of each of `jobs`, {name: function}, in each round; of calls that are
    shorter than `least` seconds so many are made."""
    often = {}
    for name, work in jobs.items():
        once = max(_seconds(work, 1, clock), 1e-7)  # also the call that is not counted
        often[name] = max(1, int(least / min(once, _seconds(work, 1, clock) + 1e-7)))
    seconds = {name: [] for name in jobs}
    order, chance = list(jobs), random.Random(63)
    for _ in range(rounds):
        chance.shuffle(order)
        for name in order:
            seconds[name].append(_seconds(jobs[name], often[name], clock))
    return seconds


def write(seconds):
    """As JSON to the file that the last word of the command line names, else to be read."""
    rows = [{"name": name, "run_type": "iteration", "cpu_time": value * 1e9, "time_unit": "ns"}
            for name, values in seconds.items() for value in values]
    if sys.argv[-1].endswith(".json"):
        with open(sys.argv[-1], "w", encoding="utf-8") as out:
            json.dump({"benchmarks": rows}, out)
        return
    for name, values in seconds.items():
        print(f"{name:40}{sorted(values)[len(values) // 2] * 1e6:14.2f} us")
