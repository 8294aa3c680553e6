"""Programs that the component's fuzzer begins with: the tables of tests/data in every form, each argument
spoiled, memory refused, companions that do odd things (fuzz_corpus.py seeds writes them)."""

import datetime
import pathlib
import random
import re
import struct

DATA = pathlib.Path(__file__).resolve().parent.parent / "tests" / "data"


def fields_of(name):
    for line in (DATA / name).read_text(encoding="utf-8").splitlines():
        if line and line[0] not in "#[":
            yield line.split("\t")


def members():
    """Class and place in its table of every member, and the types of the arguments."""
    classes, rows = [], {}
    for fields in fields_of("interface.tsv"):
        if len(fields) == 3 and fields[0] != "class":
            classes.append(fields[0])
        elif len(fields) == 7 and fields[0] != "class":
            name, slot, kind, member, _, _, arguments = fields
            types = [] if arguments == "-" else [a.split("=")[0].split()[-1] for a in arguments.split(";")]
            row = (classes.index(name), int(slot) - 7, types)
            rows[name, "call" if kind == "method" else kind, member] = row
    return rows


def number(cell):
    if len(cell) == 10 and cell[4] == cell[7] == "-":
        return float((datetime.date.fromisoformat(cell) - datetime.date(1899, 12, 30)).days)
    return float(cell)


def scalar(cell, kind):
    """A value as fuzz/values.cpp reads it; kind 0 is the argument's own type."""
    if kind == "String":
        text = cell[1:-1].encode("latin-1")
        return b"\xfe" + bytes([len(text)]) + text
    if kind == "Boolean":
        return b"\xff\xff" if cell == "True" else b"\0\0"
    x = number(cell)
    if kind == "Long" and -128 <= x <= 127:
        return b"\xfd" + struct.pack("<b", int(x))
    if kind == "Long":
        return b"\xfb" + struct.pack("<i", int(x))
    if kind == "Single":
        return b"\xff" + struct.pack("<f", x)
    return b"\xfe" + struct.pack("<d", x)


def value(cell, kind):
    if not cell.startswith("["):
        return b"\0" + scalar(cell, kind)
    rows = [row.split() for row in cell[1:-1].split(";")]
    if not any(rows):
        return b"\0\x04"
    shape = bytes([len(rows), len(rows[0])]) if kind.endswith("(,)") else bytes([len(rows[0])])
    elements = [row[c] for c in range(len(rows[0])) for row in rows]
    if kind.startswith("Boolean"):
        packed = b"\x02" + bytes(255 if e == "True" else 0 for e in elements)
    else:
        packed = b"\x00" + b"".join(struct.pack("<f", number(e)) for e in elements)
    return b"\0\0" + shape + packed


def operation(*chunks):
    data = bytes([len(chunks)])
    for chunk in chunks:
        data += bytes([len(chunk)]) if len(chunk) < 255 else b"\xff" + struct.pack("<H", len(chunk))
        data += chunk
    return data


# Numbers of fuzz/values.cpp: of types, of ways to send, of operations.
R8, I2, OBJECT, TEXT, VARIANT, ARRAY = 0, 3, 9, 8, 22, 0x80
BY_VALUE, BY_REF, IN_VARIANT, IN_REF, NESTED, MISSING = range(6)
CALL, ASSIGN, STATE, COMPANIONS, OBJECTS, SYSTEM, ASK, LATER, PREPARE, ELEMENTARY = range(10)
BY_NAME, BY_VTABLE, AT_ONCE = range(3)
NUMBERS = range(82)  # of the list of numbers
EXTREMES = (0, 1, 2, 28, 3, 4, 24, 36, 44, 55, 45, 46, 47, 52)
RANGE, MOMENT = 0xF0, 0xF1  # kinds of script objects beside an array, 0 or 1, a box, 2, and others


def double(x):
    return b"\xfe" + struct.pack("<d", x)


def disguised(cell, kind, way):
    """A value in another form than its own type: as scripts, sheets and text have it."""
    if not cell.startswith("["):
        if kind == "String":
            return value(cell, kind)
        if kind == "Boolean":
            cell = "-1" if cell == "True" else "0"
        text = repr(number(cell)).encode()
        return [
            bytes([TEXT, 0xFE, len(text)]) + text,
            bytes([I2]) + double(number(cell)),
            bytes([OBJECT, 2, R8 + 27]) + double(number(cell)),  # a box
            bytes([OBJECT, 3, R8 + 27]) + double(number(cell)),  # an object with a default value
        ][way]
    rows = [row.split() for row in cell[1:-1].split(";")]
    rank = 2 if kind.endswith("(,)") else 1
    lines = [[-1.0 if e == "True" else 0.0 if e == "False" else number(e) for e in row] for row in rows]
    if not any(lines):
        return value(cell, kind) if way < 2 else bytes([OBJECT, 0, 0])
    line = lambda numbers: bytes([0, len(numbers)]) + b"".join(map(double, numbers))
    if way == 3 and rank == 2:
        return bytes([OBJECT, 1, len(lines)]) + b"".join(b"\0" + line(one) for one in lines)
    if way >= 2:
        return bytes([OBJECT]) + line(lines[0])
    shape = bytes([len(lines), len(lines[0])]) if rank == 2 else bytes([len(lines[0])])
    elements = [row[c] for c in range(len(lines[0])) for row in lines]
    if way == 0:
        mixed = (bytes([kind_of]) + double(e) for kind_of, e in zip([R8 + 27, I2, 5, 7, 6] * 99, elements))
        return bytes([ARRAY | VARIANT, 1]) + shape + b"\0" + b"".join(mixed)
    return bytes([ARRAY | R8, 1]) + shape + b"\1" + b"".join(map(double, elements))


def each_worked_call(rows):
    """Class, place, types and cells of each worked call, and what was set before it."""
    name, before = "", b""
    for fields in fields_of("calls.tsv"):
        if fields[0] == "new":
            name, before = fields[1], b""
        if fields[0] not in ("call", "get", "let"):
            continue
        of_class, place, types = rows[name, fields[0], fields[1]]
        cells = list(zip([cell.split(">")[0] for cell in fields[3:]], types))
        yield of_class, place, cells, before
        if fields[0] == "let" or not types:
            own = [b"\0" + value(*cell) for cell in cells]
            before = (before + operation(bytes([CALL, of_class, place, BY_VTABLE]), *own))[-2000:]


def worked_calls(rows):
    """The worked calls in every form, each behind the properties that were set before it."""
    for of_class, place, cells, before in each_worked_call(rows):
        own = [value(*cell) for cell in cells]
        other = [[disguised(*cell, way) for cell in cells] for way in range(4)] if cells else []
        plans = [(BY_NAME, IN_VARIANT, own), (BY_VTABLE, 0, own), (AT_ONCE, 0, own)]
        plans += [(BY_NAME, BY_REF, own), (BY_NAME, IN_REF, own)]
        plans += [(BY_NAME, form, values) for form in (BY_VALUE, IN_VARIANT) for values in other]
        for k, (way, form, values) in enumerate(plans):
            arguments = [bytes([form]) + v for v in values]
            head = bytes([CALL, of_class, place, way]) + b"\3\0" * (way == AT_ONCE)
            yield before + operation(head, *arguments)
            for skipped in range(len(arguments)):  # and once with each argument left out
                if k == 0:
                    some = arguments[:skipped] + [bytes([MISSING])] + arguments[skipped + 1 :]
                    yield operation(bytes([CALL, of_class, place, BY_NAME]), *some)


def spoiled(cell, kind):
    """What else may stand for an argument: the way of the call, the form, and the value."""
    if not cell.startswith("["):
        if kind == "String":
            return [(BY_VTABLE, 0, b"\0" + bytes([word])) for word in range(60)]
        moments = [bytes([OBJECT, MOMENT, methods]) + b"\0\x45" * 3 for methods in (1, 2, 3, 6, 7)]
        return [(BY_VTABLE, 0, b"\0" + bytes([n])) for n in NUMBERS] + [(BY_NAME, 0, m) for m in moments]
    plain = value(cell, kind)
    if plain == b"\0\x04":
        return []
    rank = 2 if kind.endswith("(,)") else 1
    shape, elements = plain[2 : 2 + rank], plain[3 + rank :]
    size = 1 if kind.startswith("Boolean") else 4
    made = [b"\0\x04"]
    for form in (1, 8, 16, 32, 128):  # from 0; fixed, static, locked, locked as often as can be
        made.append(b"\0" + bytes([form]) + plain[2:])
    for lower in (2, -3):
        moved = b"".join(bytes([count]) + struct.pack("<b", lower) for count in shape)
        made.append(b"\0\x02" + moved + plain[2 + rank :])
    for far in (52, 54, 55):  # whose upper bound is near the largest, or negative
        made.append(b"\0\x03" + b"".join(bytes([count, far]) for count in shape) + plain[2 + rank :])
    for d in range(rank):
        for count in (0, 1, 2, max(shape[d] - 1, 0), shape[d] + 1):
            made.append(b"\0\0" + shape[:d] + bytes([count]) + shape[d + 1 :] + plain[2 + rank :])
    if size == 4:  # one number of the list at one place, and all alike
        for n in EXTREMES:
            some = b"".join(b"\xff" + elements[i : i + 4] for i in range(0, len(elements), 4))
            for at in (0, 5, len(some) - 5):
                made.append(b"\0\0" + shape + b"\1" + some[:at] + bytes([n]) + some[at + 5 :])
            made.append(b"\0\0" + shape + b"\3" + bytes([n]))
    both = [(way, form, v) for v in made for way, form in ((BY_VTABLE, 0), (BY_NAME, IN_VARIANT))]
    numbers = [number(e) if e[-1] != "e" else -1.0 for row in cell[1:-1].split(";") for e in row.split()]
    doubles = b"".join(map(double, numbers))
    mixed = b"".join(bytes([27]) + double(x) for x in numbers)
    count = bytes([len(numbers)])
    for form, sizes in ((64, b"\1" + count + b"\1"), (64, b"\1\1" + count), (65, b"\1" + count + b"\1")):
        for of, filled in ((R8, b"\1" + doubles), (VARIANT, b"\1" + mixed)):
            block = bytes([ARRAY | of, form]) + sizes + filled
            cells = bytes([OBJECT, RANGE]) + block
            both += [(BY_NAME, how, v) for how in (BY_VALUE, IN_VARIANT) for v in (block, cells)]
    strange = [bytes([OBJECT, 6, 0, n]) for n in NUMBERS] + [bytes([OBJECT, 6, 1, R8 + 27, 4, n]) for n in NUMBERS]
    holes = b"".join(b"\x25\1" if i % 2 else bytes([R8 + 27]) + double(numbers[i % len(numbers)]) for i in range(11))
    strange += [bytes([OBJECT, 1, 11]) + holes, bytes([OBJECT, 0, 3]) + b"\4\5\6", bytes([OBJECT, 5, 0]), bytes([OBJECT, 5, 1])]
    if rank == 2:
        strange += [bytes([OBJECT, 1, 2]) + row * 2 for row in list(strange)]
    both += [(BY_NAME, how, v) for how in (BY_VALUE, IN_VARIANT) for v in strange]
    for lower in (1, 2):
        both.append((BY_NAME, IN_VARIANT, bytes([OBJECT, RANGE, ARRAY | VARIANT, lower]) + shape + b"\1" + mixed))
    for inner in (bytes([OBJECT, MOMENT, 1, 0, 5]), bytes([OBJECT, MOMENT, 6, 0, 5, 0, 5]), bytes([OBJECT, 5, 1])):
        both.append((BY_NAME, IN_VARIANT, bytes([ARRAY | VARIANT, 1]) + count + b"\1" + (b"\x09" + inner[1:]) * len(numbers)))
        both.append((BY_NAME, IN_VARIANT, bytes([OBJECT, 1]) + count + inner * min(len(numbers), 11)))
    return both


def spoiled_calls(rows):
    """The worked calls, one or two of their arguments spoiled."""
    for of_class, place, cells, before in each_worked_call(rows):
        own = [b"\0" + value(*cell) for cell in cells]
        # The second call of a program goes the quick ways: companions are there.
        first = before + operation(bytes([CALL, of_class, place, BY_VTABLE]), *own)
        one = lambda way, arguments: first + operation(bytes([CALL, of_class, place, way]), *arguments)
        for i, cell in enumerate(cells):
            for way, form, spoilt in spoiled(*cell):
                yield one(way, own[:i] + [bytes([form]) + spoilt] + own[i + 1 :])
        scalars = [i for i, (cell, kind) in enumerate(cells) if "[" not in cell and kind != "String"]
        for i, j in zip(scalars, scalars[1:]):
            for x in EXTREMES[::2]:
                for y in EXTREMES[::2]:
                    some = list(own)
                    some[i], some[j] = b"\0\0" + bytes([x]), b"\0\0" + bytes([y])
                    yield one(BY_VTABLE, some)


def troubled_calls(rows):
    """The worked calls while memory is refused, with companions that do odd things, in a log."""
    log = rows["ztAnalyseInfo", "get", "DLLVersion"]
    text = lambda words: b"\0\0\xfe" + bytes([len(words)]) + words
    for of_class, place, cells, before in each_worked_call(rows):
        own = [value(*cell) for cell in cells]
        for way, form in ((BY_VTABLE, 0), (BY_NAME, IN_VARIANT), (AT_ONCE, 0)):
            one = operation(bytes([CALL, of_class, place, way]) + b"\3\0" * (way == AT_ONCE),
                            *(bytes([form]) + v for v in own))
            for request in (*range(1, 7), 129, 130, 131):
                yield before + operation(bytes([STATE, 128, request])) + one
            if way != BY_VTABLE:
                continue
            for what in (17, 33, 18, 34, 20, 36, 24, 40, 19, 35, 22, 38, 37):
                for n in (0, 3, 56):
                    yield operation(bytes([COMPANIONS, 15, 6, what, n])) + before + one
    scripts = [disguised("[1 2 3 4]", "Single()", way) for way in range(4)]
    for script in scripts:
        for request in (*range(1, 20), *range(129, 148)):
            state = operation(bytes([STATE, 128, request]))
            yield operation(bytes([ASSIGN, 0]), script) + state + b"".join(
                operation(bytes([CALL, of_class, 0, BY_NAME]), bytes([0x10, 0])) for of_class in range(9))
    bad = b"\0\0\4"
    for what in range(64):
        for ending in (b"", b"torn", b"whole\n"):
            for callback in (3, 1):
                yield (operation(bytes([PREPARE, what]), b"\x13" + ending) + operation(bytes([STATE, callback]))
                       + operation(bytes([CALL, log[0], log[1], BY_VTABLE]), b"\0\0\x13", text(b"a\r\nb\rc\nd"), b"\0\0\xff\xff")
                       + b"".join(operation(bytes([CALL, of_class, 3, BY_VTABLE]), bad, bad) for of_class in range(9)) * 2)


def interrupted_calls(rows):
    """The worked calls, and such that fail, while the host gives their variables other values."""
    others = [b"\0", bytes([TEXT, 20]), b"\0\1\1\1\4", bytes([R8 + 27, 6])]
    for of_class, place, cells, before in each_worked_call(rows):
        own = [value(*cell) for cell in cells]
        script = [disguised(*cell, 2) for cell in cells]
        broken = [b"\0\x04" if cell.startswith("[") else v for (cell, _), v in zip(cells, own)]
        for values in (script, broken):
            for way, form in ((BY_VTABLE, 0), (BY_NAME, IN_VARIANT), (BY_NAME, BY_REF)):
                call = operation(bytes([CALL, of_class, place, way]), *(bytes([form]) + v for v in values))
                for other in others:
                    for moment in (0, 1):
                        changes = b"".join(operation(bytes([LATER, moment]), bytes([ASSIGN, 64 + i]), other) for i in range(len(own)))
                        yield before + changes + call


def texts():
    """Dates and numbers as text, whole, cut short and misspelt."""
    whole = ["2023-01-31T12:30:15", "2023-01-31 12:30:15", "-1234.5678e-12", "+1.5E+3", "922337203685477.58075"]
    made = {text[:end] for text in whole for end in range(len(text) + 1)}
    made |= {text[:at] + wrong + text[at + 1 :] for text in whole for at in range(len(text)) for wrong in "x9-"}
    made |= set("""0099-12-31 0000-01-01 2023-13-01 2023-02-29 9999-12-31T23:59:59.9 1899-12-29T06:00:00 inf -inf nan
        -1 +1 -0 1e 1e+ . -. e5 1e400 -1e400 1e-400 -1e-400 0e999 1e99999999999999999999 0.00005 0.00015 -0.00005 0x10
        &HFF &H80000000 12345678901234567890123456789 0.1234567890123456789012345678901 True false 1,000 --1 1..2 1e1.5
        79228162514264337593543950335 79228162514264337593543950336 .5 5. 00012 1_000 #NULL# 100000000000000000000e-5
        9223372036854775807 9223372036854775808 18446744073709551615 18446744073709551616""".split())
    return sorted(made)


def converted_values():
    """Texts, and numbers at the edges of types, in each of the system's types."""
    values = [bytes([TEXT, 0xFE, len(t)]) + t.encode() for t in texts()]
    edges = [x + d for x in (-2147483648, 2147483647, 4294967295, 32767, -32768, 255, 65535, 127, -128, 9.2e18, 1.8e19,
                             922337203685477, 2958465, -657434, 0) for d in (-0.5, 0, 0.5, 0.75, 1)]
    edges += [1e-5, 5e-5, 1.5e-4, -5e-5, 0.99999, 1e28, 1e29, 7.9e28, -7.9e28, 45000.999999, 1 / 3, -1.75, -0.25]
    values += [bytes([kind + 27]) + double(x) for kind in (0, 5, 6, 7) for x in edges]
    for v in values:
        program = operation(bytes([ASSIGN, 0]), v)
        for kind in range(27):
            program += operation(bytes([SYSTEM, 0, 1, 0, 0, 0, 0, kind])) + operation(bytes([SYSTEM, 1, 2, 2, 0, 0, 0, kind // 2]))
        yield program
        for request in (1, 2, 129):
            yield operation(bytes([STATE, 128, request])) + program


def function_calls(rows):
    """Functions at the numbers of the tables of special cases."""
    families = {"jy": "J0 J1 y0 y1 Jbn Ybn", "ik": "I0 i1 K0 K1 Ibn Kbn"}
    for name in ("special_cases.tsv", "edge_cases.tsv", "bessel_cases.tsv"):
        for fields in fields_of(name):
            words = " ".join(families.get(field, field) for field in fields[:2]).split()
            numbers = [float(x) for x in re.findall(r"[-+]?\d+(?:\.\d+)?(?:e[-+]?\d+)?", " ".join(fields[1:]))]
            for member in words:
                of_class, place, types = rows.get(("ztMathLib", "call", member), (0, 0, []))
                program = b""
                for at in range(len(numbers) - len(types) + 1 if types else 0):
                    values = [b"\0\0" + (scalar(str(int(max(-2e9, min(x, 2e9)))), kind) if kind == "Long" else double(x))
                              for x, kind in zip(numbers[at:], types)]
                    program += operation(bytes([CALL, of_class, place, 1]), *values)
                yield program[:3000]


def elementary_calls():
    """The elementary functions at the arguments that are hard for them, and at special ones."""
    functions = "exp log log1p log10 sin cos tan atan pow atan2 hypot".split()
    call = lambda of, *numbers: operation(bytes([ELEMENTARY, of]) + b"".join(map(double, numbers)))
    for fields in fields_of("elementary_cases.tsv"):
        if fields[0] in functions:
            numbers = [float.fromhex(x) for x in fields[1:3]] + [0.0, 0.0]
            yield call(functions.index(fields[0]), *numbers[:2])
            yield call(functions.index(fields[0]), *[-x for x in numbers[:2]])
    special = [0.0, -0.0, 1.0, -1.0, 0.5, -2.0, 3.0, 1e5, 2.0**53, 1e22, 1e23, 707.5, -745.5, 5e-324, 2e-308, 2.0**-60, 1 + 2.0**-52,
               1e-300, 1.7e308, -1.7e308, float("inf"), float("-inf"), float("nan")]
    for of in range(len(functions)):
        for x in special:
            for y in special if of >= functions.index("pow") else (0.0,):
                yield call(of, x, y)


def blocks(rows, chance):
    """Special functions by blocks: several calls at once, each lane another way through the function."""
    near = [1e-120, 1e-17, 0.1, 0.3, 0.46875, 0.5, 0.6, 0.68, 1.0, 1.5, 1.7, 2.0, 3.9, 4.0, 4.5, 5.9, 6.0, 11.9, 12.0, 13.0]
    far = [25.0, 80.0, 171.7, 1e3, 1e60, 1e77, 1e120, 1e306, -0.0, 0.0, -1.0, -2.5, float("inf"), float("nan")]
    for member in ("Erf", "Gamma", "LoGamma", "beta", "Gamma_P", "BetaI"):
        of_class, place, types = rows["ztMathLib", "call", member]
        for case in range(150):
            pool = near if case % 3 else near + far
            draw = lambda k: chance.choice(pool) if k < 2 or case % 5 == 0 else chance.random()
            columns = [[draw(k) for _ in range(6)] for k in range(len(types))]
            head = bytes([CALL, of_class, place, AT_ONCE, chance.choice((4, 5, 6, 6)), chance.choice((0, 0, 0x40, 0x60))])
            head += b"".join(b"\0" + double(x) for column in columns for x in column[1:])
            yield operation(head, *(b"\0\0" + double(column[0]) for column in columns))


def polynomials(rows, chance):
    """Fits of so many coefficients that their systems are solved in groups and by wide registers."""
    call = lambda kind, name, *values: operation(bytes([CALL, *rows["ztRegression", kind, name][:2], BY_VTABLE]), *(b"\0" + v for v in values))
    for order in (2, 7, 8, 9, 16, 17, 23, 24, 25, 42):
        samples = order + 5
        ramp = [float(i) for i in range(samples)]
        noise = [chance.uniform(-9, 9) for _ in ramp]
        ones = [1.0] * samples
        far = [x * 3e36 for x in noise]
        lost = ramp[:-1] + [float("nan")]
        for x, y, weights in ((ramp, noise, ones), (noise, ramp, ramp), (ramp, far, ones), (far, ramp, ones), (ramp, noise, far),
                              (ramp, lost, ones), (lost, ramp, ones), (ramp, ones, lost), (ones, ramp, ones), (ramp, ones, noise)):
            arrays = [b"\0\0" + bytes([samples]) + b"\0" + struct.pack(f"<{samples}f", *numbers) for numbers in (x, y, weights)]
            yield (call("let", "RegressionType", value('"Polynomial"', "String")) + call("let", "RegressionOrder", value(str(order), "Long"))
                   + call("call", "Regression", *arrays, value("False", "Boolean")) * 2)


def system_calls(chance):
    """Variables of every type, and what the system's functions make of them."""
    for kind in range(27):
        for array in (0, ARRAY):
            for _ in range(40):
                random_bytes = lambda count: bytes(chance.choice((0, 1, 2, 3, 255, chance.randrange(256))) for _ in range(count))
                program = operation(bytes([ASSIGN, 0]), bytes([kind + 27 * (array == 0) | array, 0, 3]) + random_bytes(24))
                program += operation(bytes([ASSIGN, 1]), bytes([chance.randrange(27)]) + random_bytes(9))
                for _ in range(8):
                    what = chance.choice((3, 4)) if array else chance.randrange(8)
                    program += operation(bytes([SYSTEM, chance.randrange(2), chance.randrange(2), chance.randrange(3), what]) + random_bytes(12))
                yield program
    values = [bytes([TEXT, word]) for word in range(40)]
    values += [bytes([kind + 27]) + double(x) for kind in range(27) for x in (0, -7.5, 2.5e9, 44957.3, 1e300)]
    values += [bytes([OBJECT, 3]) + v for v in values[::9]]
    for v in values:
        program = operation(bytes([ASSIGN, 0]), v)
        for kind in range(27):
            program += operation(bytes([SYSTEM, 0, 1 + kind % 2, kind % 3, 0, 0, 0, kind]))
        yield program
    for request in (0, 1, 2, 3, 4, 129, 130):
        yield operation(bytes([STATE, 128, request])) + operation(bytes([SYSTEM, 0, 0, 0, 8]))
    for word in ["", "vq140Analyse.ztIntegrate", "vq140Analyse.ztAccumulate.Period", "USER"]:
        yield operation(bytes([ASK, 1]), b"\xfe" + bytes([len(word)]) + word.encode())
    for of_class in range(9):
        for what in range(6):
            yield operation(bytes([STATE, 128, what])) + operation(bytes([OBJECTS, of_class, 3, 5, 1])) * 2
            yield b"".join(operation(bytes([OBJECTS, of_class, what]) + chance.randbytes(8)) for _ in range(8))


def programs():
    """All of them, each once."""
    rows, chance = members(), random.Random(1)
    inputs = {*worked_calls(rows), *spoiled_calls(rows), *troubled_calls(rows), *function_calls(rows), *elementary_calls(), *polynomials(rows, chance), *blocks(rows, chance)}
    inputs |= {*interrupted_calls(rows), *system_calls(chance), *converted_values()}
    return {data for data in inputs if 0 < len(data) <= 4096}
