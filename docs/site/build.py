#!/usr/bin/env python3
"""Makes the site: the pages of docs/ and the README as HTML that is read from disk, with search.

usage: docs/site/build [FOLDER [WASM]]   by default build/site; the first page is FOLDER/html/index.html
    WASM   vqmath63.wasm of the preset "wasm": with it each member has a form that calls it

Sphinx makes the pages, with the theme Furo; find.js puts the members that a task leads to before the results
of its search. Before that each page is made to fit: formulas become MathML, the same program in several
languages tabs, and links to what is no page of the site text."""

import base64
import json
import pathlib
import re
import shutil
import subprocess
import sys

DOCS = pathlib.Path(__file__).resolve().parent.parent
ROOT = DOCS.parent
sys.path.insert(0, str(ROOT / "tools"))
import calls  # noqa: E402
from check_links import places  # noqa: E402
from reference.examples import LANGUAGES  # noqa: E402

CONTENTS = [
    ("Guide", ["guide/first_numbers", "guide/arrays", "guide/failures", "guide/accuracy",
               "guide/hosts_and_threads", "guide/large_data"]),
    ("Reference", ["reference", "reference/*"]),
    ("Hosts", ["hosts", "windows", "python", "spreadsheet"]),
    ("Behind it", None),  # all other pages
]


def formula(found):
    """The MathML of a formula in TeX."""
    made = subprocess.run(["blahtexml", "--mathml"], input=found[1], capture_output=True, text=True,
                          check=True).stdout
    markup = re.search(r"<markup>\n(.*)\n</markup>", made)
    if not markup:
        sys.exit(f"no formula: {found[1]}\n{made}")
    return f'```{{raw}} html\n<math display="block">{markup[1]}</math>\n```\n'


def tabs(found):
    """The programs of an example, which stand one after the other, as tabs."""
    parts = re.findall(r"^```(\w+)\n(.*?)^```\n", found[0], re.M | re.S)
    made = [f"````{{tab}} {LANGUAGES[language]}\n```{language}\n{program}```\n````\n"
            for language, program in parts]
    return "\n".join(made)


def heading_ids(text):
    """An anchor of the name that code hosts give it before each heading whose own is another."""
    lines, fenced = [], False
    for line in text.splitlines():
        fenced ^= line.startswith("```")
        if line.startswith("#") and not fenced:
            for name in places(line):
                own = re.sub(r"^[^a-z]+|-+$", "", re.sub(r"[^a-z0-9]+", "-", name))
                if name != own:
                    lines += [f'<a id="{name}"></a>', ""]
        lines.append(line)
    return "\n".join(lines) + "\n"


def fitted(path, text, pages):
    """A page's text as Sphinx is to read it; pages: path -> name in the site."""
    def link(found):
        words, target = found.groups()
        if re.match(r"[a-z]+:", target):
            return found[0]
        name, _, place = target.partition("#")
        to = (path.parent / name).resolve() if name else path
        if to not in pages:
            return words
        depth = pages[path].count("/")
        href = "../" * depth + pages[to] + ".html" if to != path else ""
        return f"[{words}]({href}{'#' + place if place else ''})"

    several = "(?:" + "|".join(LANGUAGES) + ")"
    text = re.sub(r"^\$\$(.*)\$\$\n", formula, text, flags=re.M)
    text = heading_ids(text)
    text = re.sub(rf"(?:^```{several}\n(?:(?!```).*\n)*```\n){{2,}}", tabs, text, flags=re.M)
    text = re.sub("^```vb$", "```vbnet", text, flags=re.M)
    parts = re.split(r"(^```.*?^```$|`[^`\n]+`(?!\]))", text, flags=re.M | re.S)
    parts[::2] = [re.sub(r"\[((?:[^\]`]|`[^`]*`)*)\]\(([^)\s]+)\)", link, part) for part in parts[::2]]
    return "".join(parts)


def contents(names):
    """The table of contents behind the first page."""
    lines, left = [], [name for name in sorted(names) if name != "index"]
    for caption, patterns in CONTENTS:
        group = []
        for pattern in patterns or ["*"]:
            matching = [n for n in left if pathlib.PurePath(n).match(pattern) and
                        (patterns is None or n.count("/") == pattern.count("/"))]
            group += matching
            left = [name for name in left if name not in matching]
        lines += ["", "```{toctree}", ":hidden:", f":caption: {caption}", "", *group, "```"]
    return "\n".join(lines) + "\n"


def mend_theme(static):
    """Debian's build of Furo 2022.12 has its script in parts that no page read from disk may import,
    and lost the rules for systems that prefer dark pages."""
    script = static / "scripts/furo.js"
    text = script.read_text(encoding="utf-8")
    if text.startswith("import Gumshoe from"):
        parts = (static / "scripts/gumshoe-patched.js").read_text(encoding="utf-8")
        script.write_text(parts + text.partition("\n")[2], encoding="utf-8")
    sheet = static / "styles/furo.css"
    text = sheet.read_text(encoding="utf-8")
    dark = re.search(r'body\[data-theme="dark"\] \{(.*?)\}', text, re.S)
    if "prefers-color-scheme" not in text and dark:
        text += f"""
@media screen and (prefers-color-scheme: dark) {{
  body[data-theme="auto"] {{{dark[1]}}}
}}
"""
        sheet.write_text(text, encoding="utf-8")


def members():
    """Class, name, help and tasks of each member, as the pages of the reference have them, and whether it is
    a property."""
    tasks = {}
    for line in (DOCS / "reference.md").read_text(encoding="utf-8").splitlines():
        for page, place in re.findall(r"\(reference/(\w+)\.md#(\w+)\)", line):
            tasks.setdefault((page, place), []).append(line.split("|")[1].strip())
    made = {}
    for path in sorted((DOCS / "reference").glob("*.md")):
        text = path.read_text(encoding="utf-8")
        for name, kind, words in re.findall(r"^\| \d+ \| \[(\w+)\]\(\S+\)(.*?) \| (.*) \|$", text, re.M):
            words = re.sub(r"\\(.)", r"\1", words)
            made.setdefault((path.stem, name), [
                path.stem, name, words, "; ".join(tasks[path.stem, name.lower()]), kind != ""])
    return list(made.values())


def live(static, wasm):
    """What the forms need: their script, the component and its module as scripts that a page read from
    disk may load, and what stands in the forms at first."""
    shutil.copy(DOCS / "site/live.js", static)
    module = (ROOT / "javascript/component.mjs").read_text(encoding="utf-8")
    module = re.sub(r"^export ", "", module, flags=re.M)
    (static / "vqmath63.js").write_text(
        f"window.vqComponent = (() => {{\n{module}\nreturn {{ load, VqError }};\n}})();\n", encoding="utf-8")
    text = base64.b64encode(pathlib.Path(wasm).read_bytes()).decode()
    (static / "vqmath63_wasm.js").write_text(f"window.vqWasm = '{text}';\n", encoding="utf-8")
    (static / "calls.js").write_text(f"window.vqCalls = {json.dumps(calls.examples())};\n", encoding="utf-8")


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/site").resolve()
    source = folder / "source"
    shutil.rmtree(folder, ignore_errors=True)
    paths = [*DOCS.glob("*.md"), *(DOCS / "guide").glob("*.md"), *(DOCS / "reference").glob("*.md")]
    pages = {path: path.relative_to(DOCS).with_suffix("").as_posix() for path in paths}
    pages[ROOT / "README.md"] = "index"
    for path, name in pages.items():
        text = fitted(path, path.read_text(encoding="utf-8"), pages)
        if name == "index":
            text += contents(pages.values())
        (source / name).parent.mkdir(parents=True, exist_ok=True)
        (source / f"{name}.md").write_text(text, encoding="utf-8")
    shutil.copy(DOCS / "site/conf.py", source)
    (source / "_static").mkdir()
    shutil.copy(DOCS / "site/site.css", source / "_static")
    shutil.copy(DOCS / "site/find.js", source / "_static")
    (source / "_static/members.js").write_text(f"window.vqMembers = {json.dumps(members())};\n", encoding="utf-8")
    options = []
    if len(sys.argv) > 2:
        live(source / "_static", sys.argv[2])
        options = ["-D", "html_js_files=find.js,calls.js,live.js"]
    subprocess.run(["/usr/bin/python3", "-m", "sphinx", "-q", "-W", "--keep-going", "-b", "html", *options,
                    str(source), str(folder / "html")], check=True)
    mend_theme(folder / "html/_static")
    print(f"{len(pages)} pages: {folder}/html/index.html")


main()
