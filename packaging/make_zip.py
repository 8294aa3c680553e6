"""Packs a folder so that the same files give the same zip, byte for byte.

usage: make_zip.py ZIP FOLDER EPOCH [--inside]

The folder's name stands before each file's, but with --inside; EPOCH, in seconds, is the time that
every file bears.
"""

import os
import sys
import time
import zipfile

EARLIEST = 315532800  # 1980-01-01: a zip knows no time before


def main(path, folder, epoch, *inside):
    folder = os.path.abspath(folder)
    above = folder if inside else os.path.dirname(folder)
    names = sorted(
        os.path.relpath(os.path.join(place, name), above).replace(os.sep, "/")
        for place, _, files in os.walk(folder)
        for name in files
    )
    moment = time.gmtime(max(int(epoch), EARLIEST))[:6]
    with zipfile.ZipFile(path, "w") as archive:
        for name in names:
            entry = zipfile.ZipInfo(name, moment)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 0  # no permissions of this machine's
            with open(os.path.join(above, name), "rb") as file:
                archive.writestr(entry, file.read(), compresslevel=9)


if __name__ == "__main__":
    if len(sys.argv) != 4 and sys.argv[4:] != ["--inside"]:
        sys.exit(__doc__)
    main(*sys.argv[1:])
