"""Words for names that do not exist: the nearest that does."""

from __future__ import annotations

import difflib
from collections.abc import Iterable


def nearest(name: str, known: Iterable[str]) -> str:
    """" (did you mean 'Erf'?)", or nothing where no name is near."""
    spelt: dict[str, str] = {}
    for each in known:
        spelt.setdefault(each.lower(), each)
    found = difflib.get_close_matches(name.lower(), spelt, n=1, cutoff=0.6)
    return f" (did you mean '{spelt[found[0]]}'?)" if found else ""


def listed(names: Iterable[str]) -> str:
    """"a, b and c"."""
    all_names = list(names)
    if len(all_names) < 2:
        return "".join(all_names)
    return ", ".join(all_names[:-1]) + " and " + all_names[-1]
