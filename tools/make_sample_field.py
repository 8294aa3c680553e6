#!/usr/bin/env python3
"""Writes samples/field_wells.csv: eight years of a made-up field of six wells.

Each row ends an interval that begins at the row above. A rate (sm3/d) is the mean of that interval,
so that the sum of rate x days down to a row is the volume produced until then; field_oil_cum (sm3)
is that sum. Wells decline after Arps (1945, Trans. AIME 160, 228-247), exponentially or
hyperbolically, counted in days on stream; they start one after the other, are shut in now and then,
and are tested on a shorter choke between the monthly rows. Some months are missing. The file is the
same at each run.

Usage: tools/make_sample_field.py [FILE]
"""

import datetime
import decimal
import math
import pathlib
import random
import sys

SEED = 1945
FIRST = datetime.date(2015, 1, 1)
MONTHS = 96
LONG_GAPS = {(2016, 8), (2016, 9), (2019, 5), (2021, 12)}  # no row at the first of these months

# Initial rate (sm3/d), nominal decline (1/year), Arps exponent b (0 is exponential), first day on
# stream, and the months in which the well is shut in.
WELLS = {
    "W-1": (620.0, 0.35, 0.0, "2015-01-01", {(2016, 4), (2020, 6)}),
    "W-2": (880.0, 0.55, 0.6, "2015-01-01", {(2017, 9)}),
    "W-3": (430.0, 0.28, 0.0, "2015-06-12", {(2016, 4), (2018, 7), (2018, 8)}),
    "W-4": (1150.0, 0.90, 0.9, "2016-02-20", {(2019, 1), (2022, 3)}),
    "W-5": (540.0, 0.40, 0.4, "2017-03-05", {(2020, 6), (2021, 7)}),
    "W-6": (760.0, 0.65, 0.8, "2018-10-01", {(2020, 6), (2022, 10), (2022, 11), (2022, 12)}),
}


def arps_volume(rate, decline, b, days):
    """Volume produced in the first days on stream: the integral of the decline curve."""
    daily = decline / 365.25
    if b == 0.0:
        return rate / daily * (1.0 - math.exp(-daily * days))
    return rate / ((1.0 - b) * daily) * (1.0 - (1.0 + b * daily * days) ** (1.0 - 1.0 / b))


def month_start(number):
    return datetime.date(FIRST.year + number // 12, number % 12 + 1, 1)


def row_dates(random_source):
    dates = set()
    for number in range(MONTHS + 1):
        date = month_start(number)
        if (date.year, date.month) not in LONG_GAPS:
            dates.add(date)
    for _, _, _, start, _ in WELLS.values():
        dates.add(datetime.date.fromisoformat(start))
    # Two well tests a year: a short interval of three or four days.
    for year in range(FIRST.year, FIRST.year + MONTHS // 12):
        for month in random_source.sample(range(1, 13), 2):
            day = random_source.randint(8, 20)
            dates.add(datetime.date(year, month, day))
            dates.add(datetime.date(year, month, day + random_source.randint(3, 4)))
    return sorted(dates)


def interval_rate(well, start, end, on_stream, random_source):
    """Mean oil rate of an interval, and the days on stream at its end."""
    rate, decline, b, first, shut_in = WELLS[well]
    days = (end - start).days
    if start < datetime.date.fromisoformat(first) or (start.year, start.month) in shut_in:
        return 0.0, on_stream
    choke = random_source.uniform(0.55, 0.70) if days <= 4 else random_source.uniform(0.94, 1.0)
    producing = days * (choke if days > 4 else 1.0)
    volume = arps_volume(rate, decline, b, on_stream + producing)
    volume -= arps_volume(rate, decline, b, on_stream)
    mean = volume / days * (choke if days <= 4 else 1.0)
    return mean, on_stream + producing


def table():
    random_source = random.Random(SEED)
    dates = row_dates(random_source)
    tenth = decimal.Decimal("0.1")
    cumulative = decimal.Decimal(0)
    on_stream = dict.fromkeys(WELLS, 0.0)
    yield ["date", *WELLS, "field_water", "field_oil_cum"]
    yield [dates[0].isoformat(), *["0.0"] * len(WELLS), "0.0", "0.0"]
    for start, end in zip(dates, dates[1:]):
        rates = []
        for well in WELLS:
            rate, on_stream[well] = interval_rate(well, start, end, on_stream[well], random_source)
            rates.append(decimal.Decimal(rate).quantize(tenth))
        oil = sum(rates)
        cumulative += oil * (end - start).days
        # The water cut grows with the oil produced.
        cut = 0.9 * (1.0 - math.exp(-float(cumulative) / 2.5e6))
        water = decimal.Decimal(float(oil) * cut / (1.0 - cut)).quantize(tenth)
        yield [end.isoformat(), *map(str, rates), str(water), str(cumulative)]


def main():
    default = pathlib.Path(__file__).resolve().parent.parent / "samples" / "field_wells.csv"
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else default
    target.write_text("".join(",".join(row) + "\n" for row in table()), encoding="utf-8")


if __name__ == "__main__":
    main()
