"""The tables of docs/performance.md, made of what was measured. The page's own text stands in the
page; what lies between <!-- table: NAME --> and <!-- end --> is made here."""
import math
import pathlib
import re
import statistics

import rows

PAGE = pathlib.Path(__file__).resolve().parents[1] / "docs" / "performance.md"


class Measured:
    """Medians in nanoseconds of what one program has measured."""

    def __init__(self, benchmarks):
        times = {}
        units = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
        for row in benchmarks:
            if row.get("run_type", "iteration") == "iteration" and not row.get("error_occurred"):
                name = re.sub(r"/repeats:\d+", "", row.get("run_name", row["name"]))
                times.setdefault(name, []).append(row["cpu_time"] * units[row["time_unit"]])
        self.times = {name: statistics.median(values) for name, values in times.items()}

    def get(self, name, n=None):
        return self.times.get(name if n is None else name.format(n=n))


def shown_time(nanoseconds):
    if nanoseconds is None:
        return "-"
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}" if nanoseconds < 1e3 * size else f"{nanoseconds / size:.0f} {unit}"
    return f"{nanoseconds:.3g} ns"


def shown_ratio(ratio):
    return f"{ratio:.2g}" if ratio < 0.095 else f"{ratio:.2f}"


def shown_size(n):
    return f"{n:,}".replace(",", " ")


def growth(points):
    """The exponent e of a cost that grows as n^e, by least squares on logarithms."""
    known = [(math.log(n), math.log(t)) for n, t in points if t]
    if len(known) < 2:
        return "-"
    mx, my = (sum(column) / len(known) for column in zip(*known))
    slope = sum((x - mx) * (y - my) for x, y in known) / sum((x - mx) ** 2 for x, _ in known)
    return f"n^{slope:.2f}"


def line(cells):
    return "| " + " | ".join(cells) + " |"


def beside(ours, theirs):
    if ours is None or theirs is None:
        return shown_time(theirs)
    return f"{shown_time(theirs)} ({shown_ratio(ours / theirs)})"


def sized_table(table, measured):
    yield line(["Job", "Beside", *(shown_size(n) for n in table.sizes), "Growth"])
    yield line(["---"] * (len(table.sizes) + 3))
    for row in table.rows:
        ours = [measured.get(row.ours, n) for n in table.sizes]
        yield line([row.name, "", *map(shown_time, ours), growth(zip(table.sizes, ours))])
        for peer, name in row.peers.items():
            theirs = [measured.get(name, n) for n in table.sizes]
            yield line(["", peer, *map(beside, ours, theirs), growth(zip(table.sizes, theirs))])


def call_table(table, measured):
    yield line(["Call", "ours", *table.columns, "of the fastest"])
    yield line(["---"] * (len(table.columns) + 3))
    for row in table.rows:
        ours = measured.get(row.ours)
        theirs = [measured.get(row.peers.get(column)) for column in table.columns]
        fastest = min((t for t in theirs if t), default=None)
        ratio = "-" if ours is None or fastest is None else shown_ratio(ours / fastest)
        yield line([row.name, shown_time(ours), *(shown_time(t) if t else "" for t in theirs), ratio])


def table_lines(name, measured):
    table = rows.TABLES[name]
    return list((sized_table if table.sizes else call_table)(table, measured))


def found_for(goal, measured):
    """Each ratio, or price in nanoseconds, that the goal looks at."""
    table = rows.TABLES[goal.table]
    for row in table.rows:
        if goal.rows and row.name not in goal.rows:
            continue
        for n in goal.sizes or table.sizes or (None,):
            ours = measured.get(row.ours, n)
            if goal.over:
                theirs = [measured.get(goal.over)]
            else:
                theirs = [measured.get(name, n) for peer, name in row.peers.items()
                          if not goal.peers or peer in goal.peers]
            theirs = [t for t in theirs if t]
            if ours and theirs:
                yield ours - theirs[0] if goal.over else ours / min(theirs)


def goal_line(goal, measured):
    found = sorted(found_for(goal, measured))
    if not found:
        return None
    show = (lambda x: f"{x:.1f}") if goal.over else shown_ratio
    seen = show(found[0]) if len(found) == 1 else f"{show(found[0])} to {show(found[-1])}"
    met = sum(float(show(x)) <= goal.most for x in found)
    word = "met" if met == len(found) else "missed" if met == 0 else f"{met} of {len(found)} rows"
    return line([goal.job, goal.beside, f"{goal.most:g}", seen, word, goal.why if met < len(found) else ""])


GOALS_HEAD = [line(["Job", "Beside", "Goal", "Seen", "", "Why not"]), line(["---"] * 6)]


def goal_lines(measured, before):
    """`measured` by program; goals whose programs did not run keep the line that they have."""
    known = {tuple(row.split(" | ")[:2]): row for row in before}
    for goal in rows.GOALS:
        program = rows.TABLES[goal.table].program
        made = goal_line(goal, measured[program]) if program in measured else None
        made = made or known.get(("| " + goal.job, goal.beside))
        if made:
            yield made


def replace(tables):
    """Puts {name: lines, or a function of the lines before} into the page."""
    text = PAGE.read_text(encoding="utf-8")
    for name, lines in tables.items():
        pattern = re.compile(rf"(<!-- table: {re.escape(name)} -->\n)(.*?)(<!-- end -->)", re.S)
        found = pattern.search(text)
        if found is None:
            raise SystemExit(f"{PAGE.name} has no place for the table {name}")
        made = lines(found[2].splitlines()) if callable(lines) else lines
        # Headings of a table need the empty lines around it.
        text = text[:found.start()] + found[1] + "\n" + "\n".join(made) + "\n\n" + found[3] + text[found.end():]
    PAGE.write_text(text, encoding="utf-8")
