"""Pages with blocks of Python: each is run, and prints what stands below it."""

import contextlib
import importlib.util
import io
import os
import re
import subprocess
import sys

import pytest
from conftest import PACKAGE

ROOT = PACKAGE.parent
PAGES = {"docs/python.md": 10, "README.md": 1}
PAGES.update((str(path.relative_to(ROOT)), 0) for path in (ROOT / "docs" / "guide").glob("*.md"))


@pytest.mark.parametrize("page", PAGES)
def test_each_block_of_a_page_prints_what_it_says(vq, tmp_path, monkeypatch, page):
    monkeypatch.chdir(tmp_path)
    os.symlink(ROOT / "samples", tmp_path / "samples")
    text = (ROOT / page).read_text(encoding="utf-8")
    blocks = re.findall(r"```python\n(.*?)```\n\n(?:```text\n(.*?)```)?", text, re.S)
    names = {"__name__": "__main__"}
    for code, wanted in blocks:
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            exec(compile(code, page, "exec"), names)
        assert not wanted or printed.getvalue().rstrip() == wanted.rstrip(), code
    assert len(blocks) >= PAGES[page]


def test_the_example_of_many_wells_is_the_same_however_it_is_spread(vq, capfd):
    ways = [[], ["--jobs", "2"]]
    if importlib.util.find_spec("distributed"):
        ways.append(["--cluster", "local"])
    for way in ways:
        subprocess.run([sys.executable, ROOT / "examples" / "ten_thousand_wells.py", "--wells=50",
                        "--years=1", *way], check=True,
                       env={**os.environ, "PYTHONPATH": os.pathsep.join(filter(None, sys.path))})
    told = re.findall("50 wells, 200 quarters, bits (.*)", capfd.readouterr().out)
    assert len(told) == len(ways) and len(set(told)) == 1
