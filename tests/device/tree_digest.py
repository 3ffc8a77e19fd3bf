"""Prints what a store tree holds, one line an entry, without the bytes that have no meaning on disk.

    tree_digest.py DIRECTORY

A line is kind, permissions, path below DIRECTORY, size and a digest of the bytes. In property files
the address slots are left out: the header's bytes 0-3 and 180-183, each record's bytes 120-123.
"""

import hashlib
import os
import stat
import sys

HEADER_AT = 4
HEADER_SIZE = 184
RECORD_SIZE = 124
SLOT_SIZE = 4


def slots(data):
    """The offsets of the address slots of a property file."""
    length = int.from_bytes(data[:HEADER_AT], "big")
    yield HEADER_AT
    yield HEADER_AT + 180
    for record in range(HEADER_SIZE, length, RECORD_SIZE):
        yield HEADER_AT + record + 120


def masked(data):
    result = bytearray(data)
    for at in slots(data):
        result[at : at + SLOT_SIZE] = bytes(SLOT_SIZE)
    if len(result) != len(data):
        sys.exit("a property file ends within its records")
    return bytes(result)


def describe(path, name):
    status = os.lstat(path)
    mode = stat.S_IMODE(status.st_mode)
    if stat.S_ISDIR(status.st_mode):
        return f"d {mode:04o} {name}/"
    if not stat.S_ISREG(status.st_mode):
        return f"? {mode:04o} {name}"
    with open(path, "rb") as file:
        data = file.read()
    if os.path.basename(path) == "property.conf":
        data = masked(data)
    return f"f {mode:04o} {name} {len(data)} {hashlib.sha256(data).hexdigest()[:24]}"


def main(root):
    lines = []
    for directory, folders, files in os.walk(root):
        for entry in folders + files:
            path = os.path.join(directory, entry)
            lines.append(describe(path, os.path.relpath(path, root)))
    if not lines:
        sys.exit(f"{root} is empty")
    print("\n".join(sorted(lines)))


main(sys.argv[1])
