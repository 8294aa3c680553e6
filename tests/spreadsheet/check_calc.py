#!/usr/bin/env python3
"""The add-in in a headless LibreOffice Calc: a workbook with the worked calls of every member is
saved, opened, recalculated and held to what is expected, saved as a workbook of Excel and held to it
again; then bad input, the shapes of a sheet, and the words of the function wizard.

usage: VQMATH63_LIBRARY=libvqmath63.so check_calc.py ADDIN.oxt FOLDER [--speed] [SAMPLE.ods]
    FOLDER   for what is made on the way; emptied first
The last line counts: "spreadsheet: C checks, F failures"."""

import pathlib
import re
import shutil
import sys
import time

import uno
import worked_calls
from office import Office
from worked_calls import Case, addin, cells

C = cells
WIDTH = 8  # of the widest result
FILTERS = {".ods": "calc8", ".xlsx": "Calc MS Excel 2007 XML"}
E = 2.718281828459045
DAYS = [[44927.0], [44957.0], [44985.0], [45016.0]]  # 2023-01-01, 01-31, 02-28, 03-31
# Name, arguments (a list is a range of cells), and the rows that are wanted or (error, words).
SHAPES = [
    # Rates hold back to the row before: January's is (30 * 2 + 1 * 3) / 31, February's
    # (27 * 3 + 1 * 4) / 28. The running total doubles each 30 days at first: day 31 is 1/28 of the way.
    ("PERIODS", [DAYS, [[1.0, 0.0], [2.0, 28.0], [3.0, 56.0], [4.0, 56.0]], "month", [[0.0, 1.0]]],
     [[44927.0, 44958.0, 63 / 31, 29.0], [44958.0, 44986.0, 85 / 28, 56.0],
      [44986.0, 45016.0, 4.0, 56.0]]),
    ("PERIODS", [[[0.0], [31.0]], [[1.0], [2.0]]], [[0.0, 2.0, 2.0], [2.0, 31.0, 2.0]]),
    ("PERIODS", [[[45000.5], [45000.25]], [[1.0], [2.0]]], (C.VALUE, "dates do not ascend: cell 2")),
    ("PERIODS", [DAYS, [[1.0]]], (C.PARAMETERS, "dates has 4 filled rows, values 1")),
    ("PERIODS", [DAYS, DAYS, "quater"], (C.VALUE, "did you mean 'quarter'?")),
    ("FIT", [[[1.0], [2.0], [3.0]], [[1.0], [3.0], [2.0]]], [[1.0, 0.5, 0.5]]),
    ("FIT", [[[1.0], [E], [E * E]], [[2.0], [5.0], [8.0]], "logarithmic"], [[2.0, 3.0, 1.0]]),
    ("FIT", [[[1.0], [2.0], [4.0]], [[12.0], [3.0], [0.75]], "power"],
     [[2.48490665, -2.0, -1.0]]),
    ("FIT", [[[1.0], [1.0]], [[2.0], [3.0]]], (C.VALUE, "two different x")),
    ("FIT", [[[0.0], [2.0]], [[2.0], [3.0]], "power"], (C.ARGUMENT, "cell 1 of x is 0.0")),
    # A row without a rate is left out; a hundred e to the power of -1 a year.
    ("DECLINE", [[[44000.0], [44365.25], [44730.5], [45095.75]],
                 [[100.0], [100 / E], [0.0], [100 / E**3]]], [[100.0, 1.0, -1.0]]),
    ("DEADOILFACTOR", [[[100.0], [300.0], [700.0]], [[1.5], [1.25], [1.125]], [[200.0], [1100.0]]],
     [[1.375], [1.0]]),
    ("DEADOILFACTOR", [[[300.0], [100.0]], [[1.5], [1.25]], 200.0], (C.VALUE, "do not ascend")),
    ("LIVEOILFACTOR", [[[1.0], [1.0], [1.0], [3.0], [3.0], [3.0], [3.0]],
                       [[100.0], [200.0], [300.0], [200.0], [300.0], [400.0], [500.0]],
                       [[1.25], [1.125], [1.0], [1.75], [1.5], [1.375], [1.3125]], 2.0, 100.0],
     [[1.5]]),
    ("WATERFACTOR", [100.0, 2.0, 0.0009765625, 356.0], [[2.5625]]),
    ("BINS", [[[1.0], [2.0], [3.0], [4.0], [5.0], [6.0], [7.0]], 2.0, 2.0, 6.0],
     [[3.0, 2.0], [5.0, 3.0]]),
    ("BINS", [[[0.0], [0.5], [1.0], [10.0], [2.0], [2.0], [3.0], [9.0]], 5.0],
     [[1.0, 3.0], [3.0, 3.0], [5.0, 0.0], [7.0, 0.0], [9.0, 2.0]]),
    ("BINS", [[[1.0], [2.0]], 2.0, 6.0, 2.0], (C.VALUE, "not below")),
    # Ranges where one number is wanted: each its own result or error; a column and a row make a table.
    ("SQUARED", [[[3.0], ["x"], [""], [1e200], [-2.0]]],
     [[9.0], [C.VALUE], [C.VALUE], [C.NUMBER], [4.0]]),
    ("MAX", [[[1.0], [5.0]], [[2.0, 3.0, 6.0]]], [[2.0, 3.0, 6.0], [5.0, 5.0, 6.0]]),
    ("MAX", [[[1.0], [5.0]], [[2.0], [3.0], [6.0]]], (C.PARAMETERS, "do not go together")),
    ("SQUARED", [[[float(k)] for k in range(1, 600)]], [[float(k * k)] for k in range(1, 600)]),
    ("POLAR_TO_RECTANGULAR", [[[2.0, 3.0]], 0.0], [[2.0, 3.0], [0.0, 0.0]]),
    # Rows as arguments make rows; the cells after the last that is filled do not count.
    ("REMOVENULLS", [9.0, [[1.0, 9.0, 2.5, "", ""]]], [[1.0, 2.5], [2.0, ""]]),
    ("INTEGRAL", [[[0.0], [2.0], [3.0], [""]], [[1.0], [5.0], [3.0], [""]], "simpson"], [[16.0]]),
    # What is not what it has to be.
    ("SQUARED", ["text"], (C.VALUE, "X is 'text'; it has to be a number")),
    ("SQUARED", [], (C.PARAMETERS, "X is missing")),
    ("FACTORIAL", [2.5], (C.VALUE, "whole number")),
    ("FACTORIAL", [3e9], (C.NUMBER, "beyond the range of a Long")),
    ("ARITHMETIC", [1.0, 2.0, 3.0], (C.VALUE, "Operation is a number; it has to be a text")),
    ("MEDIAN", [[["", ""]]], (C.VALUE, "Subscript out of range")),
    ("MEDIAN", [[[1.0], ["two"], [3.0]]], (C.VALUE, "cell 2 of xA is 'two'")),
    ("MEDIAN", [[[1.0], [""], [3.0]]], (C.VALUE, "cell 2 of xA is empty")),
    ("MEDIAN", [[[1.0, 2.0], [3.0, 4.0]]], (C.PARAMETERS, "xA has 2 columns")),
    ("SUMOFX", [[[1e39], [1.0]]], (C.NUMBER, "beyond the range of a Single")),
    ("QUARTILE", [[[1.0]], "Upper"], (C.VALUE, "UpperQuartile")),
    ("INTEGRAL", [[[0.0], [2.0]], [[1.0], [5.0]], [[1.0], [2.0]]], (C.PARAMETERS, "one cell")),
    ("POINT_IN_CUBE", [1.0, 1.0, 1.0, [["a", 1.0]], [[1.0]]], (C.VALUE, "row 1, column 1")),
]


class Checks:
    def __init__(self):
        self.count, self.failures = 0, 0

    def that(self, holds, words):
        self.count += 1
        if not holds:
            self.failures += 1
            print(f"FAILED: {words}")
        return holds


def address(column, row):
    letters = ""
    column += 1
    while column:
        column, rest = divmod(column - 1, 26)
        letters = chr(65 + rest) + letters
    return f"{letters}{row + 1}"


def formula(sheet, row, case):
    """Puts the arguments into cells, beginning behind the result; the formula over them."""
    at, words = WIDTH + 1, []
    for given in case.given:
        if given is None:
            words.append("")
        elif not isinstance(given, list):
            words.append(f'"{given}"' if isinstance(given, str) else repr(given))
        else:
            given = given or [[""], [""]]
            last = (at + len(given[0]) - 1, row + len(given) - 1)
            area = sheet.getCellRangeByPosition(at, row, *last)
            area.setDataArray(tuple(map(tuple, given)))
            words.append(address(at, row) + (f":{address(*last)}" if last != (at, row) else ""))
            at = last[0] + 2
    return words


def height(case):
    tallest = [len(given) for given in case.given if isinstance(given, list)]
    return max([1, len(case.wanted or []), *tallest]) + 1


def write(sheet, cases):
    """The workbook: each case in rows of its own, with what Calc is to show in front."""
    row = 0
    for case in cases:
        case.row = row
        words = formula(sheet, row, case)
        text = f"VQ.{case.name}({';'.join(words)})"
        if case.error or case.wanted is None:
            sheet.getCellByPosition(0, row).setFormula("=" + text)
            sheet.getCellByPosition(1, row).setFormula(
                f'=VQ.WHY("{case.name}"{"".join(";" + word for word in words)})')
        else:
            area = sheet.getCellRangeByPosition(0, row, len(case.wanted[0]) - 1,
                                                row + len(case.wanted) - 1)
            area.setArrayFormula("=" + text)
        row += height(case)


def shown(cell):
    return ("error", cell.getError()) if cell.getError() else \
        cell.getString() if cell.FormulaResultType2 == TEXT else cell.getValue()


FAILED, ANY = (uno.getConstantByName(f"com.sun.star.sheet.FormulaResult.{name}")
               for name in ("ERROR", "STRING"))
ANY |= FAILED | uno.getConstantByName("com.sun.star.sheet.FormulaResult.VALUE")
TEXT = uno.getConstantByName("com.sun.star.sheet.FormulaResult.STRING")


def same(got, want, within):
    if isinstance(want, int):  # an error
        return got == ("error", want)
    if isinstance(want, str):
        return got.startswith(want[:-1]) if want.endswith("*") else got == want
    return isinstance(got, float) and abs(got - want) <= max(within, 1e-15) * abs(want)


def hold(checks, sheet, cases, where):
    for case in cases:
        told = f"{where}: row {case.row + 1}, VQ.{case.name}"
        first = sheet.getCellByPosition(0, case.row)
        if case.error:
            why = sheet.getCellByPosition(1, case.row).getString()
            checks.that(shown(first) == ("error", case.error) and (
                why and (not case.words or case.words in why)), f"{told}: {shown(first)}, {why}")
            continue
        if case.wanted is None:
            checks.that(not first.getError(), f"{told}: {shown(first)}")
            continue
        got = [[shown(sheet.getCellByPosition(j, case.row + k)) for j in range(len(row))]
               for k, row in enumerate(case.wanted)]
        checks.that(all(same(g, w, case.within) for gs, ws in zip(got, case.wanted)
                        for g, w in zip(gs, ws)), f"{told}: {got}, not {case.wanted}")


def exact(checks, sheet, cases):
    """Cells have the very digits that Python has (files keep some fifteen of an argument's)."""
    for case in cases:
        if case.wanted and not case.error and isinstance(case.wanted[0][0], float):
            given = [None if g is None else tuple(map(tuple, g or [[""]])) if isinstance(g, list)
                     else g for g in case.given]
            rows = addin.functions()[case.name].evaluate(given)
            got = [[shown(sheet.getCellByPosition(j, case.row + k)) for j in range(len(row))]
                   for k, row in enumerate(rows)]
            checks.that(got == rows, f"VQ.{case.name}: {got!r}, in Python {rows!r}")


def worked(checks, office, folder, cases):
    document = office.open(None)
    write(document.Sheets.getByIndex(0), cases)
    exact(checks, document.Sheets.getByIndex(0), cases)
    saved = folder / "calls.ods"
    office.save(document, saved, FILTERS[".ods"])
    document.close(True)
    for suffix in (".xlsx", ""):
        document = office.open(saved)
        document.calculateAll()
        sheet = document.Sheets.getByIndex(0)
        hold(checks, sheet, cases, saved.name)
        if suffix:
            saved = saved.with_suffix(suffix)
            office.save(document, saved, FILTERS[suffix])
        document.close(True)


def shapes(checks, office):
    cases = []
    for name, given, wanted in SHAPES:
        error, words = wanted if isinstance(wanted, tuple) else (0, "")
        cases.append(Case(name, given, None if error else wanted, error, words))
        cases[-1].within = 3e-6 if name in ("DECLINE", "FIT") else 1e-6
    document = office.open(None)
    sheet = document.Sheets.getByIndex(0)
    write(sheet, cases)
    hold(checks, sheet, cases, "shapes")
    # Dates count from the document's own first day: day 0 is 1904-01-01 here, so that January is whole.
    first = uno.createUnoStruct("com.sun.star.util.Date")
    first.Day, first.Month, first.Year = 1, 1, 1904
    document.setPropertyValue("NullDate", first)
    cell = sheet.getCellByPosition(0, 9000)
    cell.setFormula("=ROWS(VQ.PERIODS({0|31};{1|2}))")
    checks.that(cell.getValue() == 1, f"days of 1904: {shown(cell)} periods")
    # A million rows, and a whole column of which three cells are filled.
    million = document.Sheets.getByIndex(0).getCellRangeByName("AA1:AA1000000")
    sheet.getCellRangeByName("AA1").setValue(1)
    million.fillSeries(*[uno.Enum(f"com.sun.star.sheet.{n}", v) for n, v in (
        ("FillDirection", "TO_BOTTOM"), ("FillMode", "LINEAR"), ("FillDateMode", "FILL_DATE_DAY"))],
        1, 1e7)
    sheet.getCellRangeByName("AB1:AB3").setDataArray(((7.0,), (9.0,), (8.0,)))
    for text, wanted in (("=VQ.MAXIMUM(AA1:AA1000000)", 1e6),
                         ("=VQ.MEDIAN(AB1:AB1048576)", 8.0),
                         ("=SUM(VQ.SIGN(AA1:AA1000000;-1))", -500000500000.0)):
        begun = time.monotonic()
        cell.setFormula(text)
        checks.that(cell.getValue() == wanted, f"{text}: {shown(cell)}")
        print(f"{text}: {time.monotonic() - begun:.1f} s")
    document.close(True)


def wizard(checks, office):
    """Each function is there with its name and words, and those of its arguments."""
    found = {}
    described = office.make("com.sun.star.sheet.FunctionDescriptions")
    for k in range(described.getCount()):
        each = {p.Name: p.Value for p in described.getByIndex(k)}
        if each["Name"].startswith(addin.PREFIX):
            found[each["Name"].removeprefix(addin.PREFIX)] = each
    checks.that(set(found) == {*addin.functions(), addin.WHY}, "the wizard's functions")
    for name, function in addin.functions().items():
        each = found.get(name)
        if each:
            arguments = [(a.Name, a.IsOptional) for a in each["Arguments"] or ()]
            checks.that(each["Description"] == function.help
                        and [a[0] for a in arguments] == [p.name for p in function.parameters]
                        and all(len(a.Description) > 3 for a in each["Arguments"] or ()),
                        f"the wizard's words of VQ.{name}")


def speed(office):
    document = office.open(None)
    sheet = document.Sheets.getByIndex(0)
    sheet.getCellRangeByName("A1:A10010").setArrayFormula("=ROW()/10000")
    for text in ("VQ.ERF(A{0})", "ERF(A{0})", "VQ.INTEGRAL(A{0}:A{1};A{0}:A{1})",
                 "SUMPRODUCT(A{0}:A{1};A{0}:A{1})"):
        sheet.getCellRangeByName("B1:B10000").setFormulaArray(
            tuple(("=" + text.format(k, k + 9),) for k in range(1, 10001)))
        times = []
        for _ in range(5):
            begun = time.monotonic()
            document.calculateAll()
            times.append(time.monotonic() - begun)
        print(f"10 000 cells of {text}: {min(times):.2f} s")
    document.close(True)


def pages(checks, office):
    """The formulas in the pages of which one number is told."""
    document = office.open(None)
    sheet = document.Sheets.getByIndex(0)
    sheet.getCellRangeByName("A1:B3").setDataArray(((0.0, 0.0), (1.0, 1.0), (2.0, 4.0)))
    for name in ("docs/spreadsheet.md", "docs/guide/first_numbers.md"):
        text = (worked_calls.ROOT / name).read_text(encoding="utf-8")
        told = re.findall(r"^(=VQ.*\))  +([\d.]+)$", text, re.M)
        for formula_text, number in told:
            cell = sheet.getCellRangeByName("D1")
            cell.setFormula(formula_text)
            checks.that(same(shown(cell), float(number), 0), f"{name}: {formula_text}: {shown(cell)}")
        checks.that(told, f"{name}: no formula")
    document.close(True)


def sample(checks, office, path):
    """The sample opens and recalculates without an error."""
    document = office.open(path)
    document.calculateAll()
    count = 0
    for sheet in document.Sheets:
        count += sum((a.EndColumn - a.StartColumn + 1) * (a.EndRow - a.StartRow + 1)
                     for a in sheet.queryFormulaCells(ANY).getRangeAddresses())
        failed = sheet.queryFormulaCells(FAILED).getRangeAddressesAsString()
        checks.that(not failed, f"{path.name}: errors in {failed}")
    checks.that(count > 50, f"{path.name} has {count} formulas")
    document.close(True)


def main():
    words = [word for word in sys.argv[1:] if word != "--speed"]
    if len(words) not in (2, 3):
        sys.exit(__doc__)
    folder = pathlib.Path(words[1])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    checks = Checks()
    cases, left_out = worked_calls.cases()
    print(f"{len(cases)} worked calls as formulas; {left_out} act on what an object keeps")
    members = {f.name for f in addin.functions().values() if hasattr(f, "member")}
    checks.that(members <= {case.name for case in cases}, "every member has a formula")
    with Office(words[0]) as office:
        wizard(checks, office)
        worked(checks, office, folder, cases)
        shapes(checks, office)
        pages(checks, office)
        if len(words) == 3:
            sample(checks, office, pathlib.Path(words[2]))
        if "--speed" in sys.argv:
            speed(office)
    print(f"spreadsheet: {checks.count} checks, {checks.failures} failures")
    sys.exit(1 if checks.failures else 0)


main()
