#!/usr/bin/env python3
# Writes the seeds that are property files, and those with bytes that no editor shows, into corpus/:
# make_seeds.py. The other seeds are texts and stand there by hand, found inputs as "crash-..." too.
import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))


def header(rw=0, limit=0, hide=0, key=0, pnoe=b"", device=0, count=0):
    data = bytearray(184)
    data[4] = count & 0xFF
    data[5] = limit
    data[6] = device
    data[8] = hide << 7 | rw << 4 | key
    data[76:76 + len(pnoe)] = pnoe
    return bytes(data)


def record(name, check=0, rw=1, key=0, hide=0, noti=0, access=b"", area=b""):
    data = bytearray(124)
    data[4] = rw << 6 | key << 2
    data[5] = noti << 4 | hide << 2
    data[8:8 + len(name)] = name
    data[72:72 + len(access)] = access
    data[88:88 + len(area)] = area
    data[116:120] = struct.pack(">I", check)
    return bytes(data)


def file_of(records, values, head=None, length=None):
    head = header(count=len(records)) if head is None else head
    body = b"".join(records)
    length = 184 + len(body) if length is None else length
    return struct.pack(">I", length) + head + body + values


def lines(*values):
    return b"".join((value or b"\r") + b"\n" for value in values)


def property_files():
    two = [record(b"Name"), record(b"Count")]
    whole = file_of(two, lines(b"one", b"2"))
    yield "two-values", whole
    yield "empty-value", file_of(two, lines(b"", b""))
    yield "no-record", file_of([], b"")
    yield "no-value", file_of(two, b"")
    yield "one-value-too-few", file_of(two, lines(b"one"))
    yield "one-value-too-many", file_of(two, lines(b"one", b"2", b"three"))
    yield "no-last-line-feed", file_of(two, b"one\n2")
    yield "empty-lines", file_of(two, b"\n\none\n\n\n2\n")
    yield "returns-in-values", file_of(two, b"\rone\n2\r\n")
    yield "zero-in-values", file_of(two, b"o\0ne\n2\n")
    yield "line-of-255", file_of(two, lines(b"v" * 255, b"2"))
    yield "line-of-256", file_of(two, lines(b"v" * 256, b"2"))
    yield "line-of-2000", file_of(two, lines(b"v" * 2000, b"2"))
    yield "cut-in-length-word", whole[:3]
    yield "cut-in-header", whole[:100]
    yield "cut-in-record", whole[:4 + 184 + 150]
    yield "cut-behind-records", whole[:4 + 184 + 248]
    yield "empty", b""
    for name, length in (("0", 0), ("183", 183), ("184", 184), ("odd", 184 + 130),
                         ("one-more", 184 + 3 * 124), ("64k", 0x10000), ("16m-and-one", 0x1000001),
                         ("highest", 0xFFFFFFFF)):
        yield "length-word-" + name, file_of(two, lines(b"one", b"2"), length=length)
    yield "name-of-64", file_of([record(b"n" * 64)], lines(b"one"))
    yield "name-empty", file_of([record(b"")], lines(b"one"))
    yield "names-alike", file_of([record(b"Name"), record(b"Name")], lines(b"one", b"two"))
    yield "hidden", file_of([record(b"Name", hide=1), record(b"Count")], lines(b"one", b"2"),
                            header(hide=1, count=2))
    yield "fields-full", file_of([record(b"Name", access=b"a" * 16, area=b"b" * 28, noti=15)],
                                 lines(b"one"))
    yield "filters", file_of([record(b"Name", check=1), record(b"Count", check=9)],
                             lines(b"one", b"2"))
    yield "filter-of-missing-value", file_of(
        [record(b"Name"), record(b"Level", check=1), record(b"Text", check=9)], lines(b"one", b"2"))
    yield "table", file_of(two, lines(b"one", b"2"), header(rw=1, limit=12, pnoe=b"OfHeader/Count",
                                                          key=7, count=2))
    yield "table-fixed", file_of([], b"", header(limit=12, pnoe=b"OfHeader/Count"))
    yield "table-counter-missing", file_of([], b"", header(rw=1, limit=12, pnoe=b"OfHeader/None"))
    yield "table-counter-field-full", file_of([], b"", header(rw=1, limit=255, pnoe=b"/" * 64))
    yield "counter-no-number", file_of(two, lines(b"one", b"x"))
    yield "counter-highest", file_of(two, lines(b"one", b"2147483647"))
    yield "records-255", file_of([record(b"P%d" % i) for i in range(255)], lines(*[b"v"] * 255))
    yield "records-256", file_of([record(b"P%d" % i) for i in range(256)], lines(*[b"v"] * 256))
    yield "records-257", file_of([record(b"P%d" % i) for i in range(257)], lines(*[b"v"] * 257))
    yield "only-line-feeds", b"\n" * 700
    yield "all-ones", b"\xff" * 700


def codecs():
    yield "all-bytes", bytes(range(256))
    yield "zero-bytes", bytes(7)
    yield "high-bytes", b"\x80\xff\xfe\x00\x7f"


def paths():
    yield "longest-url", b"A" * 126 + b"." + b"B" * 127 + b".\nName\nvalue"
    yield "too-long-url", b"A" * 300 + b".\nName\nvalue"
    yield "value-of-255", b"Top.Tab.1.\nName\n" + b"v" * 255
    yield "value-of-256", b"Top.Tab.1.\nName\n" + b"v" * 256
    yield "name-of-63", b"Top.Tab.1.\n" + b"n" * 63 + b"\nvalue"
    yield "name-of-64", b"Top.Tab.1.\n" + b"n" * 64 + b"\nvalue"
    yield "bytes-in-url", b"T\xf6p.\xff.\nN\x01me\nv\x7fl\xfce"


def uci_files():
    yield "zero-byte", b"config a 'b'\n\toption c 'd\0e'\n"
    yield "no-last-line-feed", b"config a 'b'\n\toption value 'd'"
    yield "byte-order-mark", b"\xef\xbb\xbfconfig a 'b'\n"
    yield "returns", b"config a 'b'\r\n\toption value 'c'\r\n"


def scripts():
    yield "control-bytes", b"set Top.Name=a\x01b\nget\tTop.Name\n"
    yield "long-line", b"set Top.Name=" + b"v" * 300 + b"\nget Top.Name\n"


def texts():
    yield "control-bytes", b"Top.Name=a\x01b\n"
    yield "zero-byte", b"Top.Name=a\0b\n"
    yield "long-value", b"Top.Name=" + b"v" * 256 + b"\n"


def write(target, seeds):
    folder = os.path.join(HERE, "corpus", target)
    os.makedirs(folder, exist_ok=True)
    for name, data in seeds:
        with open(os.path.join(folder, name), "wb") as out:
            out.write(data)


write("property_file", property_files())
write("store_check", ((name, data) for name, data in property_files() if len(data) < 3000))
write("codec", codecs())
write("paths", paths())
write("uci_file", uci_files())
write("batch_script", scripts())
write("apply_text", texts())
