"""Numerical routines for petroleum-engineering analysis.

    import numpy as np
    import vqmath63 as vq

    vq.MathLib().Erf(np.linspace(-3, 3, 1_000_000))    # an array in, an array out
    vq.Statistics().Median([3, 1, 2])

Each class of the component is a class here, under its own name (`ztMathLib`) and without the prefix
(`MathLib`), with its methods and properties under their own names. Arguments that a member only
writes are left out and come back: after the result, as a named tuple. Single numbers may be arrays.
Sample 1 of the component is element 0 of an array. Numbers that have names are enumerations here,
such as `IntegrationRule.Simpson`.

`errors` chooses how errors are told, `conversions` whether an array that has to be converted is.
"""

from importlib.util import find_spec as _find_spec
from typing import Any as _Any

from ._arrays import ConversionWarning, conversions
from ._arrays import numpy as _numpy
from ._enumerations import all_made as _all_made
from ._messages import Error, ErrorWarning, Line, errors, lines
from ._objects import Object
from ._objects import make_classes as _make_classes

for _each in (ConversionWarning, Error, ErrorWarning, Line, Object, conversions, errors, lines):
    _each.__module__ = __name__  # where programs have them from

_classes = _make_classes()
_numbers = _all_made()
globals().update(_classes, **_numbers)

# The functions over frames, which need pandas, and where they are.
_FRAMES = {"accumulate": "_accumulation", "statistics": "_tables", "fit": "_tables",
           "Fit": "_tables", "derivative": "_tables", "volume_factor": "_tables",
           "inside": "_tables"}

__all__ = ["ConversionWarning", "Error", "ErrorWarning", "Line", "Object", "conversions", "errors",
           "lines", *(_FRAMES if _numpy and _find_spec("pandas") else ()), *_classes, *_numbers]


def __dir__() -> list[str]:
    return sorted({*globals(), *__all__, "__version__"})


def __getattr__(name: str) -> _Any:
    import importlib
    import importlib.metadata

    from ._names import nearest
    if name == "__version__":
        try:
            return importlib.metadata.version(__package__)
        except importlib.metadata.PackageNotFoundError:
            raise AttributeError("vqmath63 is not installed, and so has no version") from None
    if name in _FRAMES:
        try:
            module = importlib.import_module("." + _FRAMES[name], __package__)
        except ModuleNotFoundError as error:
            raise ImportError(f"{name} works on frames and needs {error.name}, which is not "
                              "installed: pip install numpy pandas") from None
        return getattr(module, name)
    raise AttributeError(f"vqmath63 has no '{name}'" + nearest(name, [*__all__, *_FRAMES]))
