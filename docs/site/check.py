#!/usr/bin/env python3
"""Looks at a site that is made: no broken link, nothing fetched from elsewhere, and in a headless
Chromium no console message, and a search that finds a member from disk. Where there are forms beside the
members, each brings its worked call's result, and a browser without WebAssembly says so.

usage: check.py FOLDER        the folder html that docs/site/build has made
                              (PROGRAM chromium has to be installed)
The last line counts: "site: C checks, F failures"."""

import html.parser
import pathlib
import re
import subprocess
import sys
import tempfile
import urllib.parse

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


# Page -> what its forms show of the first worked calls: the error function at 0.7, an area, a table.
FORMS = {"ztMathLib": ["0.677801193837418", "<svg"], "ztIntegrate": ["<code>10</code>"],
         "ztAccumulate": ["<td>28</td><td>20</td>"], "ztStatistics": ["<code>5.5</code>"]}


def forms(folder):
    """What is wrong with the forms."""
    for name, wanted in FORMS.items():
        url = (folder / f"reference/{name}.html").as_uri() + "#try-all"
        shown, said = look(url, [])
        answered = shown.count('class="vq-output"')
        if answered != shown.count('class="vq-live"') or answered == 0:
            said.append(f"{answered} forms of {shown.count('vq-live')}")
        said += [f"no {words}" for words in wanted if words not in shown]
        said += re.findall(r'<p class="vq-error">(?!Error:)(.*?)</p>', shown)
        yield from (f"forms of {name}: {problem}" for problem in said)
    page = folder / f"reference/{name}.html"
    without = page.with_suffix(".without.html")
    without.write_text(page.read_text(encoding="utf-8").replace(
        "<head>", "<head><script>delete window.WebAssembly</script>", 1), encoding="utf-8")
    shown, _ = look(without.as_uri() + "#try-all", [])
    without.unlink()
    if "has no WebAssembly" not in shown:
        yield "without WebAssembly nothing is said"


def main():
    if len(sys.argv) != 2:
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
    if (folder / "_static/live.js").exists():
        problems += forms(folder)
        checks += len(FORMS) + 1
    print("\n".join([*problems, f"site: {checks} checks, {len(problems)} failures"]))
    sys.exit(1 if problems or not pages else 0)


main()
