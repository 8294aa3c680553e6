"""Chooses among the worked calls those that show what a member does.

A step is a worked call with what it needs before it on a new object: settings, and for a property
whose value a call makes, that call."""

from dataclasses import dataclass, field

DULL = {"0", "1e308", "False", "0.0", "7", "[]"}


@dataclass
class Step:
    call: object  # whose results are told
    lets: list = field(default_factory=list)
    before: object = None


def is_date(value):
    return len(value) == 10 and value[4] == value[7] == "-"


def useful(call):
    """Whether a call shows what its member does; a lone minus is an option on a command line."""
    minus = '"-"' in [given for given, _ in call.arguments]
    return not call.failed and not minus and not (call.values and set(call.values) <= DULL)


def states(rows, idle):
    """Each call with the settings in force, without those of members that have no effect, and the
    last call that succeeded since anything was set."""
    lets, before = [], None
    for row in rows:
        if row.kind == "let":
            lets = [each for each in lets if each.member != row.member] + [row]
            before = None
        else:
            yield row, [each for each in lets if each.member not in idle], before
            if row.kind == "call":
                before = None if row.failed else row


def property_steps(names, rows, idle):
    """For properties that are read as many as possible after one call, or after they were set."""
    by_need = {}
    for row, lets, before in states(rows, idle - set(names)):
        if row.kind != "get" or row.member not in names or row.arguments or row.type == "Date":
            continue
        own = [each for each in lets if each.member == row.member]
        if own:
            by_need.setdefault(("set", id(own[0])), []).append(Step(row, own))
        elif before is not None:
            by_need.setdefault(("call", id(before)), []).append(Step(row, lets, before))
        else:
            by_need.setdefault(("new", 0), []).append(Step(row))
    steps, missing = [], list(names)
    # A value that was set tells most; then one that a call has made, 0 and 1 last.
    for need, untelling in (("set", ()), ("call", ("0", "1")), ("call", ()), ("new", ())):
        groups = [group for key, group in by_need.items() if key[0] == need]
        for group in sorted(groups, key=lambda each: -len({step.call.member for step in each})):
            for step in group:
                if step.call.member in missing and step.call.result not in untelling:
                    missing.remove(step.call.member)
                    steps.append(step)
    return steps, missing


def call_step(name, is_method, rows, idle, prefer_settings):
    """The first useful call of a method, or that one with most settings; the same of the calls that
    have a property set which nobody can read. None where there is none."""
    found = []
    for row, lets, _ in states(rows, idle - {name}):
        shows = row.member == name if is_method else (
            row.kind == "call" and any(each.member == name for each in lets)
            or row.kind == "get" and row.member == name and row.arguments)
        if shows and row.kind in ("call", "get"):
            found.append(Step(row, lets))
    best = [step for step in found if useful(step.call)] or found
    if prefer_settings and name not in idle:
        best.sort(key=lambda step: -len(step.lets))
    return best[0] if best else None


def steps_for(members, rows, all_members):
    """For members that share a section, the steps that show them."""
    idle = {each.name for each in all_members if "without effect" in each.help}
    readable = {each.name for each in all_members if each.kind == "get"}
    set_only = {each.name for each in all_members if each.kind == "let"} - readable - idle
    steps, missing = property_steps(
        [each.name for each in members if each.kind == "get" and not each.arguments], rows, idle)
    wanted = [(each.name, each.kind == "method") for each in members
              if each.kind == "method" or each.arguments and each.kind == "get"
              or each.kind == "let" and each.name not in readable]
    for name, is_method in [*wanted, *((name, False) for name in missing)]:
        step = call_step(name, is_method, rows, idle, len(set_only) > 2)
        if step is None:
            raise SystemExit(f"the worked calls show nothing of {name}")
        if not any(each.call is step.call for each in steps):
            steps.append(step)
    return steps
