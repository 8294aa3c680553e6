#!/usr/bin/env python3
"""Makes samples/field_production.ods, a workbook of a field's production, from the tables in samples/:
the wells by calendar periods, their declines, and the volume factors of their fluid.

usage: make_sample.py ADDIN.oxt        needs libreoffice-calc and python3-uno
"""

import csv
import datetime
import pathlib
import sys

import uno
from office import Office

from com.sun.star.awt import Rectangle

ROOT = pathlib.Path(__file__).resolve().parent.parent
SAMPLES = ROOT / "samples"
DATE, NUMBER, RATE, RATIO = "YYYY-MM-DD", "#,##0", "#,##0.0", "0.000"
NO_LINE = uno.Enum("com.sun.star.drawing.LineStyle", "NONE")
RIGHT = uno.Enum("com.sun.star.table.CellHoriJustify", "RIGHT")
HEAD, GIVEN, NOTE = 0xDDE7F0, 0xFFF6D5, 0x555555
COLOURS = (0x1B6CA8, 0xD1602B, 0x3A8F5C, 0x8B5FA8, 0xB8912A, 0x5B6B7A)


class Sheet:
    """A sheet that is written from the top."""

    def __init__(self, document, name, at):
        document.Sheets.insertNewByName(name, at)
        self.document, self.sheet = document, document.Sheets.getByName(name)

    def cells(self, name):
        return self.sheet.getCellRangeByName(name)

    def put(self, name, rows, kind=None, **look):
        area = self.cells(name)
        area.setDataArray(tuple(map(tuple, rows)))
        return self.look(area, kind, **look)

    def formula(self, name, text, kind=None, matrix=False, **look):
        area = self.cells(name)
        if matrix:
            area.setArrayFormula(text)
        else:
            area.setFormula(text)
        return self.look(area, kind, **look)

    def look(self, area, kind=None, **look):
        if kind:
            formats, locale = self.document.NumberFormats, uno.createUnoStruct("com.sun.star.lang.Locale")
            locale.Language, locale.Country = "en", "US"
            key = formats.queryKey(kind, locale, False)
            area.NumberFormat = key if key >= 0 else formats.addNew(kind, locale)
        for name, value in look.items():
            area.setPropertyValue(name, value)
        return area

    def head(self, name, words):
        self.put(name, [words], CellBackColor=HEAD, CharWeight=150.0, HoriJustify=RIGHT)

    def title(self, words, note):
        self.put("A1", [[words]], CharWeight=150.0, CharHeight=14.0)
        self.put("A2", [[note]], CharColor=NOTE)

    def widths(self, **widths):
        for column, width in widths.items():
            self.sheet.Columns.getByName(column).Width = width

    def chart(self, name, title, place, source, across, down, least=0.0):
        """Lines over the first column of a range with heads."""
        box = Rectangle(*place)
        area = self.cells(source).getRangeAddress()
        self.sheet.Charts.addNewByName(name, box, (area,), True, True)
        chart = self.sheet.Charts.getByName(name).getEmbeddedObject()
        diagram = chart.createInstance("com.sun.star.chart.LineDiagram")
        chart.setDiagram(diagram)
        diagram.SymbolType = -3  # none
        chart.HasMainTitle, chart.HasLegend = True, True
        chart.Title.String = title
        for has, of, words in (("HasXAxisTitle", "XAxisTitle", across),
                               ("HasYAxisTitle", "YAxisTitle", down)):
            setattr(diagram, has, True)
            getattr(diagram, of).String = words
        system = chart.getFirstDiagram().getCoordinateSystems()[0]
        for line, colour in zip(system.getChartTypes()[0].getDataSeries(), COLOURS):
            line.Color, line.LineWidth = colour, 60
        diagram.Wall.FillColor, chart.Legend.LineStyle = 0xFFFFFF, NO_LINE
        diagram.YAxis.AutoMin, diagram.YAxis.Min = False, least
        chart.Legend.FillColor = 0xFFFFFF
        axis = system.getAxisByDimension(0, 0)
        scale = axis.getScaleData()
        scale.AutoDateAxis, scale.AxisType = False, uno.getConstantByName(
            "com.sun.star.chart2.AxisType.CATEGORY")
        axis.setScaleData(scale)
        diagram.XAxis.TextRotation = 4500
        diagram.XAxis.LinkNumberFormatToSource = True


def value(text):
    try:
        return float(text)
    except ValueError:
        pass
    try:
        return float((datetime.date.fromisoformat(text) - datetime.date(1899, 12, 30)).days)
    except ValueError:
        return text


def rows_of(name):
    with open(SAMPLES / name, newline="", encoding="utf-8") as file:
        head, *rows = csv.reader(file)
    return head, [[value(cell) for cell in row] for row in rows]


def production(document):
    sheet = Sheet(document, "Production", 0)
    head, rows = rows_of("field_wells.csv")
    sheet.head("A1:I1", [name.replace("_", " ") for name in head])
    last = len(rows) + 1
    sheet.put(f"A2:I{last}", rows, NUMBER)
    sheet.look(sheet.cells(f"A2:A{last}"), DATE)
    sheet.look(sheet.cells(f"B2:H{last}"), RATE)
    sheet.widths(A=2400, I=2800)
    return last


def periods(document, last):
    sheet = Sheet(document, "Periods", 1)
    sheet.title("The wells by calendar periods", "Means of the rates a day, and the field's total at the "
                "end of each: VQ.PERIODS over the sheet Production. Another word in B4 makes other periods.")
    sheet.put("A4:B4", [["Period", "half-year"]])
    sheet.look(sheet.cells("B4"), CellBackColor=GIVEN)
    sheet.head("A6:J6", ["from", "to", *[f"W-{k}" for k in range(1, 7)], "water", "oil in total"])
    sheet.formula("A7:J22", f"=VQ.PERIODS($Production.A2:A{last};$Production.B2:I{last};B4;"
                  "{0;0;0;0;0;0;0;1})", NUMBER, matrix=True)
    sheet.look(sheet.cells("A7:B22"), DATE)
    sheet.look(sheet.cells("C7:I22"), RATE)
    sheet.widths(A=2400, B=2400, J=2800)
    sheet.chart("rates", "Oil of the wells", (0, 10600, 23000, 9000), "B6:H22", "end of the period",
                "rate a day")


def declines(document, last):
    sheet = Sheet(document, "Declines", 2)
    sheet.title("Declines of the wells since 2019", "ln rate is a line of time: VQ.DECLINE over rows from "
                "B4 on. Reserves are what is left above the rate in E4, along that line.")
    begin = next(k for k, row in enumerate(rows_of("field_wells.csv")[1], 2) if row[0] >= 43466)
    sheet.put("A4:E4", [["From row", float(begin), "", "Last rate", 20.0]])
    sheet.look(sheet.cells("B4"), CellBackColor=GIVEN)
    sheet.look(sheet.cells("E4"), CellBackColor=GIVEN)
    sheet.head("A6:H6", ["well", "rate at first", "a year", "R", "rate at last", "reserves",
                         "mean rate", "median rate"])
    for k in range(6):
        row, column = 7 + k, "BCDEFG"[k]
        dates, rates = (f"OFFSET($Production.{c}1;$B$4-1;0;{last + 1}-$B$4;1)" for c in ("A", column))
        sheet.put(f"A{row}", [[f"W-{k + 1}"]])
        sheet.formula(f"B{row}:D{row}", f"=VQ.DECLINE({dates};{rates})", RATIO, matrix=True)
        sheet.formula(f"E{row}", f"=B{row}*VQ.ALOG(-C{row}*($Production.A{last}-"
                      f"INDEX($Production.A1:A{last};$B$4))/365.25)", RATE)
        sheet.formula(f"F{row}", f"=MAX(0;E{row}-$E$4)/C{row}*365.25", NUMBER)
        sheet.formula(f"G{row}", f'=VQ.STATISTICS({rates};"xBar")', RATE)
        sheet.formula(f"H{row}", f"=VQ.MEDIAN({rates})", RATE)
    sheet.look(sheet.cells("B7:B12"), RATE)
    sheet.look(sheet.cells("C7:C12"), "0.0%")
    sheet.put("A13", [["all"]], CharWeight=150.0)
    sheet.formula("F13", "=SUM(F7:F12)", NUMBER, CharWeight=150.0)
    sheet.put("A15", [["Where a cell has an error, VQ.WHY tells of it in words:"]], CharColor=NOTE)
    sheet.formula("A16", f'=VQ.WHY("VQ.FIT";$Production.A2:A{last};$Production.E2:E{last};"exponential")')
    sheet.widths(A=2000, B=2600, E=2600, F=2400, G=2400, H=2700)


def fluid(document):
    sheet = Sheet(document, "Fluid", 3)
    sheet.title("Volume factors", "Pressures down, by the tables to the right: dead oil, water, and live "
                "oil at two values of dissolved gas.")
    dead, live, water = (rows_of(f"{name}.csv") for name in ("dead_oil", "live_oil", "water"))
    sheet.head("H4:I4", ["dead: p", "factor"])
    sheet.put(f"H5:I{4 + len(dead[1])}", dead[1])
    sheet.head("K4:M4", ["live: gas", "p", "factor"])
    sheet.put(f"K5:M{4 + len(live[1])}", live[1])
    sheet.head("O4:Q4", ["water: p", "factor", "compr."])
    sheet.put("O5:Q5", water[1])
    sheet.head("A4:E4", ["pressure", "dead oil", "water", "live 0.6", "live 0.75"])
    sheet.put("A5:A16", [[500.0 * (k + 1)] for k in range(12)], NUMBER)
    sheet.formula("B5:B16", f"=VQ.DEADOILFACTOR(H5:H{4 + len(dead[1])};I5:I{4 + len(dead[1])};A5:A16)",
                  "0.0000", matrix=True)
    sheet.formula("C5:C16", "=VQ.WATERFACTOR(O5;P5;Q5;A5:A16)", "0.0000", matrix=True)
    n = 4 + len(live[1])
    for column, gas in (("D", 0.6), ("E", 0.75)):
        sheet.formula(f"{column}5:{column}16", f"=VQ.LIVEOILFACTOR(K5:K{n};L5:L{n};M5:M{n};{gas};A5:A16)",
                      "0.0000", matrix=True)
    sheet.look(sheet.cells("Q5"), "0.0000000")
    sheet.chart("factors", "Volume factors", (0, 9000, 17000, 8500), "A4:E16", "pressure", "factor", 0.9)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    path = SAMPLES / "field_production.ods"
    path.unlink(missing_ok=True)
    with Office(sys.argv[1]) as office:
        document = office.open(None)
        last = production(document)
        periods(document, last)
        declines(document, last)
        fluid(document)
        document.Sheets.removeByName("Sheet1")
        document.calculateAll()
        office.save(document, path, "calc8")
        document.close(True)
    print(path.relative_to(ROOT))


main()
