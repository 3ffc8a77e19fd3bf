"""Sets the values that an upgrade's report calls refused, and prints those that the library takes.

Usage: refused_values.py ZRCFG REPORT
"""
import re
import subprocess
import sys

LINE = re.compile(rb'refused value (\S+): "((?:[^"\\]|\\.)*)": ')
ESCAPE = re.compile(rb'\\(x[0-9A-F]{2}|.)')


def plain(text):
    return ESCAPE.sub(lambda m: bytes.fromhex(m[1][1:].decode()) if m[1][:1] == b"x" else m[1], text)


with open(sys.argv[2], "rb") as report:
    lines = [line for line in report if line.startswith(b"refused value ")]
for line in lines:
    path, value = LINE.match(line).groups()
    result = subprocess.run([sys.argv[1].encode(), b"set", path + b"=" + plain(value)],
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if result.returncode != 1:
        print("taken:", line)
