"""The tour in docs/python.md: each block is run, and prints what stands below it."""

import contextlib
import io
import os
import re

from conftest import PACKAGE

ROOT = PACKAGE.parent


def test_each_block_of_the_tour_prints_what_it_says(vq, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    os.symlink(ROOT / "samples", tmp_path / "samples")
    text = (ROOT / "docs" / "python.md").read_text(encoding="utf-8")
    blocks = re.findall(r"```python\n(.*?)```\n\n(?:```text\n(.*?)```)?", text, re.S)
    names = {"__name__": "__main__"}
    for code, wanted in blocks:
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            exec(compile(code, "docs/python.md", "exec"), names)
        assert printed.getvalue().rstrip() == wanted.rstrip(), code
    assert len(blocks) >= 10
