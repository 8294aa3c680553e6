#!/usr/bin/env python3
"""Holds the pages of vqhost report to what their files are made of.

usage: report_page.py VQHOST

Files are written whose rates, sums and declines are known; the pages are read as XML, and what their
pictures and tables show is compared.
"""

import csv
import datetime
import io
import math
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml

VQHOST = str(pathlib.Path(sys.argv.pop(1)).resolve())
NARROW_BLANK = "\u202f"
MULTIPLES = {"thousand": 1e3, "million": 1e6, "billion": 1e9}
FIRST = datetime.date(2023, 1, 1)


def day(count):
    return (FIRST + datetime.timedelta(days=count)).isoformat()


class Figure:
    """A picture with its ticks, paths in units of the axes, and numbers."""

    def __init__(self, element):
        self.title = element.find(".//h3").text
        self.note = "".join(each.text for each in element.findall("figcaption/p"))
        self.x_title, self.y_title = (element.find(f"p[@class='{kind}']").text for kind in ("axis x", "axis"))
        self.paths = [(each.get("data-series"), each.get("class").split(), each.get("d"))
                      for each in element.findall(".//path[@data-series]")]
        self.legend = [each.find("span").tail for each in element.findall("ul/li")]
        self.x_ticks, self.y_ticks = (
            [(float(re.search(r":([-\d.e]+)%", each.get("style"))[1]) / 100, each.text)
             for each in element.findall(f".//div[@class='ticks {axis}']/span")] for axis in "xy")
        self.rows = [row for row in csv.DictReader(io.StringIO(element.findtext("details/pre") or ""))]

    def y_value(self, units):
        """The value at a height of the picture, by two of its ticks."""
        many = next((size for word, size in MULTIPLES.items() if f", {word}" in self.y_title), 1.0)
        (low, first), (high, last) = ((at, many * number(text)) for at, text in (self.y_ticks[0], self.y_ticks[-1]))
        return first + ((1 - units / 1000) - low) / (high - low) * (last - first)

    def corners(self, series):
        """The points of a path, in units of the picture."""
        d = next(d for name, _, d in self.paths if name == series)
        x = y = 0.0
        for letter, numbers in re.findall(r"([MLHVhZ])([-\d. ]*)", d):
            values = [float(each) for each in numbers.split()]
            if letter in "ML":
                x, y = values
            elif letter == "H":
                x, = values
            elif letter == "V":
                y, = values
            yield x, y


def number(label):
    return float(label.replace(NARROW_BLANK, ""))


class ReportPage(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, header, rows):
        text = header + "\n" + "".join(",".join(map(str, row)) + "\n" for row in rows)
        (self.folder / name).write_bytes(text.encode("utf-8", "surrogateescape"))

    def report(self, *words):
        run = subprocess.run([VQHOST, "report", *words, "-o", "-"], cwd=self.folder, capture_output=True)
        self.assertEqual((run.returncode, run.stderr), (0, b""))
        page = xml.fromstring(run.stdout)
        for each in page.iter():
            self.assertTrue(each.get("href", "#").startswith("#"), "a link leads elsewhere")
            self.assertIsNone(each.get("src"))
        self.assertNotIn(b"http:", run.stdout)
        self.assertNotIn(b"url(", run.stdout)
        self.size = len(run.stdout)
        self.page = page
        sections = {each.get("id"): each for each in page.iter("section")}
        return {name: [Figure(each) for each in section.iter("figure")] for name, section in sections.items()}

    def story(self):
        return [each.text for each in self.page.findall(".//section[@id='data']/ul/li")]

    def test_periods_stack_and_volumes_of_constant_rates(self):
        # A gives 100 a day; B 50 until the end of June, then nothing.
        rows = [(day(i), 100, 50 if i <= 181 else 0, 7) for i in range(366)]
        self.write("f.csv", "date,A-1 (m3/d),A-2 (m3/d),water (m3/d)", rows)
        figures = self.report("f.csv", "--period", "quarter")
        stack, = figures["stack"]
        self.assertEqual((stack.y_title, stack.legend), ("Rate, m3/d", ["A-1", "A-2"]))
        heights = [[round(stack.y_value(y), 1) for _, y in stack.corners(name)] for name in ("A-1", "A-2")]
        self.assertEqual([set(heights[0]), set(heights[1])], [{0, 100}, {100, 150}])
        self.assertEqual([(row["A-1, m3/d"], row["A-2, m3/d"], row["total, m3/d"]) for row in stack.rows],
                         [("100", "50", "150")] * 2 + [("100", "0", "100")] * 2)
        volume, water = figures["cumulative"]
        self.assertEqual(volume.y_ticks[-1][1], f"50{NARROW_BLANK}000")
        self.assertEqual([float(row["total, m3"]) for row in volume.rows], [13500, 27150, 36350, 45550])
        self.assertEqual(volume.y_title, "Volume, m3")
        ends = [(round(x), round(volume.y_value(y))) for x, y in volume.corners("total")]
        self.assertEqual((ends[0], ends[-1]), ((0, 0), (1000, 45550)))
        self.assertEqual([name for name, _, _ in water.paths], ["water"], "a panel of its own has no total")
        _, second, _ = figures["periods"]
        self.assertEqual([(name, kind[0]) for name, kind, _ in second.paths],
                         [("rows of the file", "steps"), ("mean of a quarter", "steps")])
        # B's rows fall where June ends: 181 of 365 days.
        fall = [x for x, y in second.corners("rows of the file") if round(second.y_value(y)) == 50]
        self.assertAlmostEqual(max(fall), 1000 * 181 / 365, delta=0.06)
        self.assertIn("Volume 9050 m3.", second.note)
        bins, = [each for each in figures["histogram"] if each.title == "A-2"]
        self.assertEqual([int(row["rows"]) for row in bins.rows], [184] + 18 * [0] + [182])
        self.assertEqual(len(figures["histogram"]), 1, "bins of A-1 have no width")
        self.assertIn("There are no gaps.", " ".join(self.story()))

    def test_decline_of_an_exponential_reaches_its_limit_on_the_day(self):
        rows = [(day(-5), 1, 0)] + [(day(i), 1000 * math.exp(-i / 1000), 0) for i in range(0, 900, 3)]
        self.write("f.csv", "date,q,none", rows)
        figures = self.report("f.csv", "--limit", "100", "--unit", "q=bbl", "--decline", "q,none")
        decline, = figures["decline"]
        reached = day(math.ceil(1000 * math.log(10)))
        self.assertIn(f"at the limit of 100 bbl/d on {reached}, 3.8 years beyond the data", decline.note)
        self.assertIn("The rate declines by 30.6 % a year.", decline.note)
        self.assertAlmostEqual(float(figures["histogram"][0].rows[0]["to, bbl/d"]), 1 + 999 / 20, delta=1e-3)
        limit = [x for x, _ in decline.corners("limit")]
        dot, = [float(d[1:].split()[0]) for name, kind, d in decline.paths if kind[0] == "dots" and not name]
        self.assertAlmostEqual((dot - limit[0]) / (limit[-1] - limit[0]), 1 / 1.05, delta=2e-4)
        self.assertIn("none: no line", "".join(self.page.itertext()))
        values = [each.text for each in self.page.findall(".//section[@id='decline']//div[@class='alone']//td")]
        self.assertEqual((values[0], values[-1]), ("q", reached))
        self.assertAlmostEqual(float(values[2]), -0.001, delta=1e-7)  # sums of Singles

    def test_story_tells_of_gaps_fills_and_odd_values(self):
        days = [0, 1, 2, 3, 20, 21, 21, 22]
        rows = [(day(i), 5 if i != 2 else "", -1 if i == 3 else 2, "x") for i in days]
        self.write("f.csv", "date,oil,gas,note", rows)
        self.report("f.csv", "--empty-as", "0")
        story = " ".join(self.story())
        for words in (f"1 step is more than half as long again; the longest, from {day(3)} to {day(20)}, takes 17 days",
                      "1 row stands at the time of the row before", "its rates (oil and gas) are in no period",
                      "Empty cells stand for 0.", "1 value of gas is below 0", "The column 'note' holds no numbers"):
            self.assertIn(words, story)

    def test_long_records_are_stacked_by_group_with_their_sums(self):
        # Fifteen wells, interleaved; well k has k barrels each day of its own month and a half.
        rows = [(day(i), f"P-{k}", k, -k) for i in range(45) for k in range(1, 16) if k < 15 or i >= 10]
        self.write("f.csv", "date,well,oil,choke", rows)
        words = ("--by", "well", "--volumes", "oil", "--stamp", "begin", "--unit", "bbl", "--decline", "P-9")
        figures = self.report("f.csv", *words)
        stack, = figures["stack-oil"]
        self.assertEqual((stack.legend[-1], stack.y_title), ("8 others", "Rate, bbl/d"))
        total = sum(range(1, 16))
        self.assertEqual([float(row["total, bbl/d"]) for row in stack.rows][1], total)
        self.assertAlmostEqual(float(stack.rows[0]["total, bbl/d"]), total - 15 * 10 / 31, delta=1e-4)
        volume, = figures["cumulative-oil"]
        self.assertEqual([float(row["total, bbl"]) for row in volume.rows], [31 * total - 150, 45 * total - 150])
        panel = figures["periods-oil"][0]
        self.assertEqual([name for name, _, _ in panel.paths], ["days", "mean of a month"])
        late, = [each for each in figures["periods-oil"] if each.title == "P-15"]
        rise = [x for x, y in late.corners("days") if round(late.y_value(y)) == 15]
        self.assertAlmostEqual(min(rise), 1000 * 10 / 45, delta=0.1)
        self.assertIn(f"{len(rows)} rows of 15 groups", " ".join(self.story()))

    def test_names_and_titles_are_text_whatever_they_hold(self):
        name = "<b a='\">&amp;\x01\uffff\u00e9\u2028\U00010000"
        self.write("f.csv", "date,\"" + name.replace('"', '""') + "\"", [(day(i), i) for i in range(9)])
        figures = self.report("f.csv", "--title", "</title><script>")
        self.assertEqual(figures["periods"][0].title, name.replace("\x01", "\ufffd").replace("\uffff", 3 * "\ufffd"))
        self.assertEqual(self.page.find("head/title").text, "</title><script>")
        self.assertEqual(len(list(self.page.iter("script"))), 1)

    def test_ticks_stand_where_their_labels_say(self):
        for power in (*range(-36, 15, 3), 5):
            for offset in (0, -2, 1e4):
                with self.subTest(power=power, offset=offset):
                    rates = [(offset + each) * 10.0 ** power for each in (1, 2, 8, 1.5)]
                    self.write("f.csv", "date,q", [(day(i), each) for i, each in enumerate(rates)])
                    figure = self.report("f.csv", "--period", "day")["periods"][0]
                    at, labels = zip(*figure.y_ticks)
                    values = [number(each) for each in labels]
                    self.assertTrue(3 <= len(at) <= 9 and len(set(labels)) == len(at), labels)
                    for place, value in zip(at, values):
                        self.assertAlmostEqual(place, (value - values[0]) / (values[-1] - values[0]), delta=6e-4)
                    shown = [figure.y_value(y) for _, y in figure.corners("mean of a day")]
                    self.assertAlmostEqual(max(shown) / rates[2], 1, delta=7e-4)

    def test_dates_stand_where_their_labels_say(self):
        for days in (0.02, 0.2, 2, 9, 40, 100, 400, 1500, 9000, 200000):
            with self.subTest(days=days):
                last = datetime.datetime(1901, 3, 1, 1, 7) + datetime.timedelta(days=days)
                self.write("f.csv", "date,q", [("1901-03-01 01:07", 1), (f"{last:%Y-%m-%d %H:%M:%S}", 1)])
                figure = self.report("f.csv", "--period", "year")["periods"][0]
                self.assertTrue(2 <= len(figure.x_ticks) <= 11, figure.x_ticks)
                for at, label in figure.x_ticks:
                    full = {4: label + "-01-01 00:00", 7: label + "-01 00:00", 10: label + " 00:00",
                            11: "1901-" + label}[len(label)]
                    moment = datetime.datetime.fromisoformat(full)
                    passed = (moment - datetime.datetime(1901, 3, 1, 1, 7)).total_seconds()
                    self.assertAlmostEqual(at, passed / 86400 / days, delta=2e-3)

    def test_very_many_rows_and_series_make_a_page_that_can_be_sent(self):
        # A single row of 90000 among some ten is seen where it stands.
        series = 30
        rows = [[day(i)] + [90000 if i == 6545 else 10 + (i * j) % 7 for j in range(series)] for i in range(9000)]
        self.write("f.csv", "date," + ",".join(f"well {chr(65 + j)}x" for j in range(series)), rows)
        figures = self.report("f.csv", "--period", "day")
        self.assertLess(self.size, 3_000_000)
        self.assertEqual(len(figures["periods"]), 12)
        self.assertEqual(figures["stack"][0].legend[-1], "23 others")
        self.assertIn("well Hx and 22 others) are in no period", " ".join(self.story()))
        for figure in figures["periods"]:
            for name in ("rows of the file", "mean of a day"):
                places = [x for x, y in figure.corners(name) if figure.y_value(y) > 89000]
                self.assertTrue(places and all(abs(x - 1000 * 6545 / 8999) < 1.1 for x in places), places)
        self.assertIn("vqhost accumulate f.csv --period day -o", "".join(self.page.itertext()))

    def test_many_wells_and_series_share_the_room_of_a_page(self):
        names = "abcdefghijkl"
        self.write("f.csv", "date,well," + ",".join(names),
                   [[day(i), f"P-{k}"] + [1 + i * j * k % 97 for j in range(12)] for i in range(500) for k in range(14)])
        figures = self.report("f.csv", "--by", "well", "--stamp", "begin", "--period", "day")
        self.assertLess(self.size, 3_000_000)
        best = sorted(range(14), key=lambda k: -sum(1 + i * 11 * k % 97 for i in range(500)))[:3]
        self.assertEqual([figure.title for figure in figures["periods-l"]],
                         [f"P-{k}" for k in sorted(best)] + ["11 others"])
        for figure in self.page.iter("figure"):
            edges = figure.find(".//svg").get("data-rows", "").split()
            self.assertIn(len(edges), (0, len(figure.findall(".//tbody/tr")) + 1), "a pointer shows its own row")

    def test_factors_at_the_rows_of_fluid_tables(self):
        self.write("live.csv", "primary,pressure,factor",
                   [(1, 100, 1.25), (1, 300, 1), (3, 200, 1.75), (3, 300, 1.5), (3, 400, 1.25)])
        self.write("points.csv", "primary,pressure", [(1, 100), (3, 300), (3, 900)])
        figure, = self.report("--live", "live.csv", "--points", "points.csv", "--pressure-unit", "bar")["fluid"]
        self.assertEqual(figure.legend, ["primary 1", "primary 3", "saturated", "asked for"])
        self.assertEqual(figure.x_title, "Pressure, bar")
        for name in figure.legend[:2]:
            places = [x for x, _ in figure.corners(name)]
            self.assertTrue(len(places) > 8 and places == sorted(places), places)
        at_rows = {(row["primary"], row["pressure, bar"]): float(row["factor"]) for row in figure.rows}
        for key, factor in {("1", "100"): 1.25, ("1", "300"): 1, ("3", "200"): 1.75, ("3", "300"): 1.5}.items():
            self.assertAlmostEqual(at_rows[key], factor, delta=1e-6)
        cells = [each.text for each in self.page.findall(".//div[@class='alone']//td")]
        self.assertEqual([cells[2], cells[6]], ["1.25000", "1.50000"])
        self.assertEqual([cells[3], cells[11]], [None, "the table is extended"])


if __name__ == "__main__":
    unittest.main()
