#!/usr/bin/env python3
"""Counts instructions of each operation against the size of what it works on.

usage: count_growth.py PROGRAM FILE     (PROGRAM: count_instructions; run it through scripts/bench-i386)

Every point runs in a store of its own, made by scripts/with-store. Exit code 1 when a curve bends
upwards: when its last stretch is steeper than its middle one by half.
"""
import json
import os
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
BUDGET = os.path.join(HERE, "..", "tests", "budget", "instruction_budget.py")
LAUNCHER = os.path.join(HERE, "..", "scripts", "with-store")

BASE = {"instances": 4, "records": 40, "requests": 40}

# Axis, points, and what follows each point.
CURVES = {
    "instances": ("instances in the table", [2, 32, 64, 128, 254], ["instances"],
                  ["W1", "W2", "W6", "W7"]),
    "parameters": ("parameters in the object", [10, 32, 64, 128, 255], ["records", "requests"],
                   ["W1", "W2", "W3", "W4", "W4l", "W5"]),
    "list": ("nodes in the request list", [10, 128, 256, 512, 1001], ["requests"], ["W4"]),
}


def count(program, size):
    arguments = [str(size[key]) for key in ("instances", "records", "requests")]
    output = subprocess.run([LAUNCHER, "--temp", sys.executable, BUDGET, "-", "-", program, "--print",
                             *arguments], check=True, stdout=subprocess.PIPE, text=True).stdout
    return {name: int(figure) for name, figure in
            (line.split() for line in output.splitlines() if line.startswith("W"))}


def bends_upwards(points, figures):
    """Whether the last stretch is steeper than the one before the middle."""
    def slope(i, j):
        return (figures[j] - figures[i]) / (points[j] - points[i])
    early, late = slope(1, -2), slope(-2, -1)
    return late > 1.5 * max(early, 0) + 0.01 * figures[-1] / points[-1]


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    program, path = sys.argv[1:]
    result = {"base": count(program, BASE), "curves": {}}
    bent = []
    for curve, (axis, points, keys, names) in CURVES.items():
        base = dict(BASE, records=255) if curve == "list" else BASE
        counted = [count(program, dict(base, **{key: point for key in keys})) for point in points]
        result["curves"][curve] = {"axis": axis, "points": [
            dict({"x": point}, **{name: figures[name] for name in names})
            for point, figures in zip(points, counted)]}
        for name in names:
            figures = [figure[name] for figure in counted]
            worse = bends_upwards(points, figures)
            print("%-10s %-3s %s%s" % (curve, name, figures, "  BENDS UPWARDS" if worse else ""))
            if worse:
                bent.append("%s %s" % (curve, name))
    with open(path, "w") as out:
        json.dump(result, out, indent=1)
        out.write("\n")
    if bent:
        sys.exit("worse than linear: " + ", ".join(bent))


main()
