#!/usr/bin/env python3
"""Makes a field's daily records as operators keep them, and the operator's own monthly table.

A month's amounts of a well are drawn first, in tenths, and then dealt out to the days on which it
produced: so the monthly table is right by construction, whoever adds up the days. The records have
what real ones have: wells interleaved day by day, days without a row where a well is shut in,
corrections below zero, empty cells, columns that do not matter, texts among numbers.

usage: make_records.py FOLDER           writes daily_records.csv and monthly_volumes.csv
       make_records.py --long FILE WELLS MONTHS [--by-well]
                                        writes monthly rows of many wells, for the bench
"""
import datetime
import random
import sys

WELLS = (("A-1", 0), ("A-2 T2", 0), ("B-1 Høy", 40), ("C-3", 75))
BEGIN = datetime.date(2023, 1, 10)
END = datetime.date(2023, 7, 1)
HEADER = "date,field,well,status,hours_on,choke_pct,whp_bar,oil_vol,gas_vol,water_vol,remark"


def days_of(month, begin):
    """The days of a month that lie within the records."""
    day = max(month, begin)
    days = []
    while day.month == month.month and day < END:
        days.append(day)
        day += datetime.timedelta(1)
    return days


def deal(rng, total, days):
    """Deals a whole number out to days; now and then one is corrected on the day after."""
    cuts = sorted(rng.randint(0, total) for _ in days[1:])
    parts = [b - a for a, b in zip([0, *cuts], [*cuts, total])]
    for i in range(len(parts) - 1):
        if rng.random() < 0.04:
            wrong = rng.randint(100, 4000)
            parts[i] += wrong + parts[i + 1]
            parts[i + 1] = -wrong
    return parts


def tenths(number):
    sign = "-" if number < 0 else ""
    return f"{sign}{abs(number) // 10}.{abs(number) % 10}"


def make_field(folder):
    rng = random.Random(63)
    rows = []
    monthly = []
    for well, late in WELLS:
        begin = BEGIN + datetime.timedelta(late)
        shut = set()
        for _ in range(3):
            first = begin + datetime.timedelta(rng.randint(5, 150))
            shut |= {first + datetime.timedelta(i) for i in range(rng.randint(2, 38))}
        month = begin.replace(day=1)
        while month < END:
            days = [day for day in days_of(month, begin) if day not in shut]
            if days:
                totals = [rng.randint(20, 400) * 10 * len(days) + rng.randint(0, 9)
                          for _ in range(3)]
                parts = [deal(rng, total, days) for total in totals]
                for day, *amounts in zip(days, *parts):
                    rows.append((day, well, amounts))
                monthly.append((well, month, totals))
            month = (month + datetime.timedelta(32)).replace(day=1)
    rows.sort(key=lambda row: row[0])
    with open(f"{folder}/daily_records.csv", "w", encoding="utf-8", newline="\n") as out:
        print(HEADER, file=out)
        for day, well, amounts in rows:
            pressure = rng.choice(["n/a", "", "-", f"{rng.randint(40, 90)}", f"{rng.randint(40, 90)}"])
            remark = rng.choice(["", "", "", "test, separator 2", "choke changed"])
            remark = f'"{remark}"' if "," in remark else remark
            hours = rng.choice(["24", "24", "24", "23.5", ""])
            print(day, "Sample", well, "open", hours, rng.randint(20, 100), pressure,
                  *map(tenths, amounts), remark, sep=",", file=out)
    with open(f"{folder}/monthly_volumes.csv", "w", encoding="utf-8", newline="\n") as out:
        print("well,month,oil_vol,gas_vol,water_vol", file=out)
        for well, month, totals in monthly:
            print(well, month, *map(tenths, totals), sep=",", file=out)


def make_long(path, wells, months, by_well):
    rng = random.Random(36)
    texts = [f"{i / 10:.1f}" for i in (rng.randint(0, 99999) for _ in range(100_003))]
    dates = [f"{1990 + m // 12}-{m % 12 + 1:02d}-01" for m in range(months)]
    with open(path, "w", encoding="ascii", newline="\n") as out:
        out.write("date,well,oil,gas,water\n")
        at = 0

        def row(date, well):
            nonlocal at
            at = (at + 7919) % 100_000
            return f"{date},W-{well:06d},{texts[at]},{texts[at + 1]},{texts[at + 2]}\n"

        if by_well:
            for well in range(wells):
                out.write("".join([row(date, well) for date in dates]))
        else:
            for date in dates:
                out.write("".join([row(date, well) for well in range(wells)]))


def main(words):
    if words[:1] == ["--long"] and len(words) in (4, 5):
        make_long(words[1], int(words[2]), int(words[3]), words[4:] == ["--by-well"])
    elif len(words) == 1 and not words[0].startswith("-"):
        make_field(words[0])
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(sys.argv[1:])
