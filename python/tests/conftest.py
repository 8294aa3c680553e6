import os
import pathlib
import sys

import pytest

PACKAGE = pathlib.Path(__file__).resolve().parents[1]
if os.environ.get("VQMATH63_INSTALLED") != "1":  # else the tests look at what is installed
    sys.path.insert(0, str(PACKAGE))
DATA = PACKAGE.parent / "tests" / "data"


@pytest.fixture
def vq():
    import vqmath63
    with vqmath63.errors("raise"):
        yield vqmath63
