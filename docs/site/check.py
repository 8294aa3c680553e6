#!/usr/bin/env python3
"""Looks at a site that is made: no broken link, nothing fetched from elsewhere, and in a headless
Chromium no console message, and a search that finds a member from disk. Where there are forms beside the
members, each makes the worked calls of its member and shows what the table of calls has, error lines too;
in each field bad input is refused with that field's name; and a browser without WebAssembly says so.

usage: check.py FOLDER [DIGITS]   FOLDER: the folder html that docs/site/build has made
                                  DIGITS: a file for the results that the forms show
                                  (the program chromium has to be installed)
The last line counts: "site: C checks, F failures"."""

import html
import html.parser
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import urllib.parse

import calls

# What somebody may type -> a member that has to be among the first three.
TASKS = {
    "monthly totals": "Accumulate", "fit a decline": "Regression", "is this point in the cell": "Point_In_Cube",
    "area under a curve": "Integral", "well path crosses cell": "Line_Through_Cube",
    "bubble point": "GetVolumeCorrectionLive",
    "missing values": "RemoveNulls", "confidence of a mean": "ConfidenceInterval", "error function": "Erf",
    "normalize": "Normalise", "degrees to radians": "RTD", "rates from cumulative volumes": "FirstDerivative",
    "median": "Median", "histogram": "BinVector", "slope of the fitted line": "B"}
SEARCHES = {"Erf": "ztMathLib &gt; Erf", "decline": "Reference of the members", "LineIntersect": "LineIntersect"}
SCREENS = {"light": [], "dark": ["--blink-settings=preferredColorScheme=0"], "narrow": ["--window-size=500,900"]}


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.places, self.links, self.fetched = set(), [], []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        words = dict(attributes)
        self.places.update(words[key] for key in ("id", "name") if key in words)
        if tag == "a" and words.get("href"):
            self.links.append(words["href"])
        elif words.get("src") or tag == "link" and words.get("href"):
            self.fetched.append(words.get("src") or words["href"])


def broken(path, pages):
    """The links of a page that lead nowhere, and what it would fetch from elsewhere."""
    for link in pages[path].links + pages[path].fetched:
        parts = urllib.parse.urlsplit(link)
        if parts.scheme or parts.netloc:
            if link in pages[path].fetched:
                yield f"fetches {link}"
            continue
        target = (path.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else path
        if not target.exists():
            yield f"there is no {link}"
        elif parts.fragment and target in pages and parts.fragment not in pages[target].places:
            yield f"{link} leads to no place"


def look(url, options):
    """What Chromium has of a page in the end, and what it says on the console."""
    with tempfile.TemporaryDirectory() as profile:
        done = subprocess.run(
            ["chromium", "--headless=new", "--no-sandbox", "--disable-gpu", f"--user-data-dir={profile}",
             "--enable-logging=stderr", "--virtual-time-budget=3000", *options, "--dump-dom", url],
            capture_output=True, text=True, timeout=120)
    return done.stdout, [line for line in done.stderr.splitlines() if ":CONSOLE:" in line]


def numbers(shown):
    """What a form shows, as the table of calls has it: rows of numbers, truths and texts."""
    return [[float(cell) if re.match(r"[-+]?[\d.]", cell) and not re.match(r"\d+-", cell) else cell for cell in row]
            for row in (shown if isinstance(shown, list) else [[shown]])]


def wanted_rows(text):
    if not text.startswith("["):
        return numbers(text.strip('"').replace("True", "true").replace("False", "false"))
    rows = [row.split() for row in text[1:-1].lower().split(";")]
    return numbers(rows if len(rows) > 1 else [[cell] for cell in rows[0]])


def same(got, want, within):
    if isinstance(want, list):
        return isinstance(got, list) and len(got) == len(want) and all(map(same, got, want, [within] * len(want)))
    if isinstance(want, str):
        return isinstance(got, str) and (got.startswith(want[:-1]) if want.endswith("*") else got == want)
    return isinstance(got, float) and abs(got - want) <= max(within, 1e-15) * abs(want)


def call_problems(call, seen, arguments, read):
    """How what a form shows of a call differs from the table; the properties that it shows are put into read."""
    if seen["error"] != call.failure:
        yield f"says '{seen['error']}'"
    wanted = dict(call.read) if call.result == "-" else {**call.read, "result": call.result}
    for (name, way, _), (before, after) in zip(arguments, call.cells):
        if way in ("out", "in,out") and not (way == "out" and before == after):
            wanted[name] = after
    for name, want in wanted.items():
        if name in seen["shown"]:
            read.add((call.line, name))
            if not same(numbers(seen["shown"][name]), wanted_rows(want), call.within):
                yield f"{name} is {seen['shown'][name]}, not {want}"
        elif name not in call.read:
            yield f"does not show {name}"


def run_forms(page, worked):
    """What the forms of a page bring of its class's calls, and what the console says."""
    jobs = {}
    for call in worked:
        jobs.setdefault(call.member, []).append({**calls.as_typed(call), "line": call.line})
    script = (pathlib.Path(__file__).parent / "check_forms.js").read_text(encoding="utf-8")
    shown, said = look_changed(page, f"window.vqJobs = {json.dumps(jobs)};\n{script}", "")
    report = re.search(r'<pre id="vq-report">(.*?)</pre>', shown, re.S)
    return json.loads(html.unescape(report[1])) if report else [], said


def look_changed(page, script, place):
    """Looks at a page with a script of ours before all others."""
    trial = page.with_suffix(".trial.html")
    trial.write_text(page.read_text(encoding="utf-8").replace("<head>", f"<head><script>{script}</script>", 1),
                     encoding="utf-8")
    try:
        return look(trial.as_uri() + place, [])
    finally:
        trial.unlink()


def bad_input_problems(form):
    for field, text, error in form["bad"]:
        wanted = "two columns" if "\t" in text and "\n" in text else ""
        if not error.startswith(f"{field}: ") or wanted and "2 columns" not in error:
            yield f"{field} takes {text!r}: '{error}'"


def forms(folder, digits):
    """How many calls the forms made, and what is wrong."""
    made, problems = 0, []
    for name, worked in calls.read().items():
        page = folder / f"reference/{name}.html"
        text = page.read_text(encoding="utf-8")
        worked = [call for call in worked if call.whole]
        by_line, shown = {call.line: call for call in worked}, set()
        report, said = run_forms(page, worked)
        problems += [f"{name}: {each}" for each in said]
        headings = len(re.findall("<h3>", text))
        if len({form["title"] for form in report}) != headings or headings == 0:
            problems.append(f"{name}: {len(report)} forms of {headings} headings")
        for form in report:
            where = f"{name}: {form['title']}, {form['member']}"
            made += len(form["calls"]) + len(form["bad"]) + 1
            if form["first"]["error"] or not form["first"]["shown"] and form["arguments"]:
                problems.append(f"{where}: at first '{form['first']['error']}'")
            kinds = [kind for _, _, kind in form["arguments"]]
            if kinds in (["Double0"], ["Long0"]) and "M" not in form["first"]["plot"]:
                problems.append(f"{where}: no plot")
            for seen in form["calls"]:
                call = by_line[seen["line"]]
                problems += [f"{where}, line {call.line}: {problem}"
                             for problem in call_problems(call, seen, form["arguments"], shown)]
                if digits and form["title"].split(", ")[0] not in call.settings:
                    for part, value in seen["shown"].items():
                        if not call.failure:
                            digits.write(f"{call.line}\t{part}\t{json.dumps(sum(numbers(value), []))}\n")
            problems += [f"{where}: {problem}" for problem in bad_input_problems(form)]
            if form.get("million", "500000.5") != "500000.5":
                problems.append(f"{where}: a million rows give {form['million']}")
        for call in worked:
            unseen = [part for part in call.read if (call.line, part) not in shown]
            if not any(seen["line"] == call.line for form in report for seen in form["calls"]) or unseen:
                problems.append(f"{name}: line {call.line} is made by no form {unseen}")
    shown, _ = look_changed(page, "delete window.WebAssembly", "#try-all")
    if "has no WebAssembly" not in shown:
        problems.append("without WebAssembly nothing is said")
    return made + 1, problems


def tasks(folder):
    """What does not lead from a task to its member."""
    script = f"""addEventListener('load', () => setTimeout(() => document.body.append(Object.assign(
        document.createElement('pre'), {{ id: 'found', textContent: JSON.stringify({json.dumps(list(TASKS))}.map(
        (query) => window.vqFind(query, window.vqMembers).map((m) => m.name))) }})), 500));"""
    shown, said = look_changed(folder / "search.html", script, "?q=fit+a+decline")
    yield from said
    if 'reference/ztRegression.html#regression">ztRegression' not in shown:
        yield "the members found are not shown"
    found = re.search(r'<pre id="found">(.*?)</pre>', shown, re.S)
    for query, names in zip(TASKS, json.loads(html.unescape(found[1])) if found else [[]] * len(TASKS)):
        if TASKS[query] not in names[:3]:
            yield f"the task '{query}' leads to {names}"


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1]).resolve()
    pages = {path: Page(path) for path in sorted(folder.rglob("*.html"))}
    checks, problems = 0, []
    for at, path in enumerate(pages):
        name = path.relative_to(folder).as_posix()
        found = list(broken(path, pages))
        checks += len(pages[path].links)
        screen = list(SCREENS)[at % len(SCREENS)]
        shown, said = look(path.as_uri(), SCREENS[screen])
        checks += 1
        if "</article>" not in shown:
            found.append("it shows no article")
        problems += [f"{name}: {problem}" for problem in found + said]
    for words, wanted in SEARCHES.items():
        shown, said = look((folder / "search.html").as_uri() + "?q=" + words, [])
        checks += 1
        results = shown.partition('id="search-results"')[2]
        problems += [f"search for {words}: {problem}" for problem in said]
        if wanted not in results:
            problems.append(f"search for {words}: does not find {wanted}")
    problems += tasks(folder)
    checks += len(TASKS) + 1
    if (folder / "_static/live.js").exists():
        with open(sys.argv[2] if len(sys.argv) > 2 else os.devnull, "w", encoding="utf-8") as digits:
            made, found = forms(folder, digits)
        problems += found
        checks += made
    print("\n".join([*problems, f"site: {checks} checks, {len(problems)} failures"]))
    sys.exit(1 if problems or not pages else 0)


main()
