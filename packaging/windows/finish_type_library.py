"""Puts right in a compiled type library what widl cannot write.

usage: finish_type_library.py LIBRARY INTERFACE_TEXT

- The default of a text by reference: widl refuses "" there, so the interface text has a whole number
  in its place, which becomes the empty text.
- The time of compilation, as text and as a number: set to the beginning of 1970, so that the same
  sources give the same bytes.

Defaults and both times stand in the segment of custom data, as records of a type (16 bits), a value
(32 bits) and padding.
"""

import re
import struct
import sys

MARK = 0x7A7A7A7A
VT_BSTR = 8
VT_UI4 = 19
PADDING = b"WW"
CUSTOM_DATA = 11  # in the list of segments
STAMP = re.compile(rb"(Created by WIDL version [^ ]+ at )(.{24})\n")


def custom_data(library):
    """Begin and end of the segment of custom data."""
    if library[:4] != b"MSFT":
        raise ValueError("not a type library")
    (flags,) = struct.unpack_from("<I", library, 0x14)
    (types,) = struct.unpack_from("<I", library, 0x20)
    segments = 0x54 + (4 if flags & 0x100 else 0) + 4 * types
    begin, length = struct.unpack_from("<II", library, segments + 16 * CUSTOM_DATA)
    if begin + length > len(library):
        raise ValueError("the segment of custom data is not where it should be")
    return begin, begin + length


def finished(library, interface_text):
    begin, end = custom_data(library)
    data = library[begin:end]

    mark = struct.pack("<HI", VT_BSTR, MARK) + PADDING
    if (mark in data) != (f"defaultvalue(0x{MARK:X})" in interface_text):
        raise ValueError("the defaults of texts are not where they should be")
    data = data.replace(mark, struct.pack("<HI", VT_BSTR, 0) + PADDING)

    stamp = STAMP.search(data)
    if not stamp:
        raise ValueError("no time of compilation")
    data = STAMP.sub(rb"\g<1>Thu Jan 01 00:00:00 1970\n", data, count=1)
    # The number follows the text, padded to the next fourth byte.
    number = (stamp.end() + 3) // 4 * 4
    if data[number : number + 2] != struct.pack("<H", VT_UI4) or data[number + 6 : number + 8] != PADDING:
        raise ValueError("the time of compilation is no number")
    data = data[: number + 2] + bytes(4) + data[number + 6 :]
    return library[:begin] + data + library[end:]


def main(path, interface_path):
    with open(path, "rb") as file:
        library = file.read()
    with open(interface_path, encoding="utf-8") as file:
        interface_text = file.read()
    with open(path, "wb") as file:
        file.write(finished(library, interface_text))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    try:
        main(*sys.argv[1:])
    except ValueError as error:
        sys.exit(f"{sys.argv[1]}: {error}")
