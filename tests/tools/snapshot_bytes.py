"""An encoder of snapshots of its own, for the tests, and what spoils a snapshot.

snapshot_bytes.py encode SCOPE FILE     writes what zrcfg snapshot has to write of /var
snapshot_bytes.py set FILE TEXT         replaces the first value of a property file, in place
snapshot_bytes.py craft FILE DIR        writes snapshots with a right checksum and something wrong
"""
import os
import struct
import sys
import zlib

MAGIC = b"ZRSNAP\r\n"


def block(data):
    return struct.pack(">I", len(data)) + data


def encode(scope, objects, version=1, count=None):
    body = struct.pack(">I", len(objects) if count is None else count) + block(scope)
    body += b"".join(block(url) + block(data) for url, data in objects)
    whole = MAGIC + struct.pack(">II", version, len(MAGIC) + 8 + len(body) + 4) + body
    return whole + struct.pack(">I", zlib.crc32(whole))


def decode(data):
    def take():
        nonlocal at
        (size,) = struct.unpack_from(">I", data, at)
        at += 4 + size
        return data[at - size:at]
    at = len(MAGIC) + 12
    scope, objects = take(), []
    while at < len(data) - 4:
        objects.append((take(), take()))
    return scope, objects


def order(name):
    return (0, int(name), "") if name.isdigit() else (1, 0, name)


def walk(path):
    """The objects below a directory: numbers by value, then names."""
    file = os.path.join(path, "property.conf")
    if os.path.isfile(file):
        with open(file, "rb") as stream:
            yield (path[len("/var/"):].replace("/", ".") + ".").encode(), stream.read()
        for name in sorted(os.listdir(path), key=order):
            if os.path.isdir(os.path.join(path, name)):
                yield from walk(os.path.join(path, name))


def store(scope):
    if scope:
        return list(walk("/var/" + scope.rstrip(".").replace(".", "/")))
    return [item for name in sorted(os.listdir("/var")) for item in walk("/var/" + name)]


def with_lines(data, lines):
    (length,) = struct.unpack_from(">I", data)
    return data[:4 + length] + lines


def crafted(scope, objects):
    """What only an attacker, or a defect, would write, by kind."""
    url, data = objects[-1]
    names = {"up": b"P...", "slash": b"Q./etc.", "empty": b".", "dotless": b"Q", "none": b"",
             "zero": b"Q\0x.", "long": b"Q." + b"x" * 300 + b".", "twice": objects[-2][0], "before": b"A."}
    spoilt = {"surplus": data + b"x\n", "short": data[:-3], "line": with_lines(data, b"\n"),
              "length": b"\0\0\0\1" + data[4:], "nothing": b"", "lines": with_lines(data, b"x" * 256 + b"\n")}
    for kind, name in names.items():
        yield kind, encode(scope, objects[:-1] + [(name, data)])
    for kind, bytes_ in spoilt.items():
        yield kind, encode(scope, objects[:-1] + [(url, bytes_)])
    yield "version", encode(scope, objects, version=2)
    yield "fewer", encode(scope, objects, count=len(objects) + 1)
    yield "more", encode(scope, objects, count=len(objects) - 1)
    yield "many", encode(scope, objects, count=0xFFFFFFFF)
    yield "no-objects", encode(scope, [])
    yield "elsewhere", encode(b"P.T.", objects)
    yield "scope", encode(b"../etc.", objects)
    yield "headless", encode(b"P.", [item for item in objects[1:] if item[0].startswith(b"P.")])


def main():
    command, first, second = sys.argv[1:4]
    if command == "encode":
        with open(second, "wb") as file:
            file.write(encode(first.encode(), store(first)))
    elif command == "set":
        with open(first, "r+b") as file:
            data = file.read()
            (length,) = struct.unpack_from(">I", data)
            lines = data[4 + length:].split(b"\n")
            lines[0] = second.encode()
            file.seek(0)
            file.write(with_lines(data, b"\n".join(lines)))
            file.truncate()
    else:
        with open(first, "rb") as file:
            scope, objects = decode(file.read())
        for kind, data in crafted(scope, objects):
            with open(os.path.join(second, kind), "wb") as file:
                file.write(data)


if __name__ == "__main__":
    main()
