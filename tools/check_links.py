#!/usr/bin/env python3
"""Follows the links of the Markdown pages: each file has to be there, and each place in a page.

usage: check_links.py            places are named as code hosts name headings, or by <a id="...">
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")


def without_programs(text):
    return re.sub(r"`[^`\n]+`", "", re.sub(r"^```.*?^```$", "", text, flags=re.M | re.S))


def places(text):
    """The anchors of a page."""
    plain = re.sub(r"^```.*?^```$", "", text, flags=re.M | re.S)
    found = set(re.findall(r'<a id="([^"]+)">', plain))
    for heading in re.findall(r"^#+ (.*)$", plain, re.M):
        words = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading)
        name = re.sub(r"[^\w\- ]", "", words.strip().lower()).replace(" ", "-")
        while name in found and f"{name}-1" not in found:
            name += "-1"
        found.add(name)
    return found


def main():
    rooms = [each for each in ROOT.iterdir() if each.is_dir() and each.name[0] != "." and each.name[:5] != "build"]
    paths = [*ROOT.glob("*.md"), *(path for room in rooms for path in sorted(room.rglob("*.md")))]
    pages = {path: path.read_text(encoding="utf-8") for path in paths}
    known = {path: places(text) for path, text in pages.items()}
    count, problems = 0, []
    for path, text in pages.items():
        for link in LINK.findall(without_programs(text)):
            if re.match(r"[a-z]+:", link):
                continue
            count += 1
            name, _, place = link.partition("#")
            target = (path.parent / name).resolve() if name else path
            if not target.exists():
                problems.append(f"{path.relative_to(ROOT)}: there is no {name}")
            elif place and place not in known.get(target, ()):
                problems.append(f"{path.relative_to(ROOT)}: {link} leads to no place in that page")
    print("\n".join(problems + [f"links: {count} checks, {len(problems)} failures"]))
    sys.exit(1 if problems or not count else 0)


if __name__ == "__main__":
    main()
