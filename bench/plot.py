#!/usr/bin/env python3
"""Draws the growth curves as SVG.

usage: plot.py TIMES.json INSTRUCTIONS.json OUTDIR
       TIMES from scripts/bench --growth, INSTRUCTIONS from scripts/bench-i386
"""
import json
import os
import sys

WIDTH, HEIGHT = 300, 190  # Of one panel.
LEFT, RIGHT, TOP, BOTTOM = 58, 12, 30, 40
COLORS = ["#1f5fa8", "#c0641c"]


def nice_step(span):
    step = 1.0
    while step * 10 < span:
        step *= 10
    for part in (0.2, 0.5, 1, 2, 5):
        if span / (step * part) <= 5:
            return step * part
    return step * 10


def text(x, y, content, anchor="middle", extra=""):
    return '<text x="%.1f" y="%.1f" text-anchor="%s"%s>%s</text>' % (x, y, anchor, extra, content)


def number(value):
    return "%g" % round(value, 2) if value < 10000 else "%gk" % round(value / 1000, 1)


def panel(x0, y0, title, axis, unit, xs, lines):
    """One diagram; `lines` are lists of values for `xs`, both axes begin at 0."""
    top_x, top_y = max(xs), max(max(line) for line in lines) * 1.08
    inner_w, inner_h = WIDTH - LEFT - RIGHT, HEIGHT - TOP - BOTTOM

    def at(x, y):
        return x0 + LEFT + inner_w * x / top_x, y0 + TOP + inner_h * (1 - y / top_y)

    out = [text(x0 + LEFT, y0 + 16, title, "start", ' font-weight="bold"')]
    step = nice_step(top_y)
    y = 0.0
    while y <= top_y:
        px, py = at(0, y)
        out.append('<path d="M%.1f %.1fh%.1f" stroke="#ddd"/>' % (px, py, inner_w))
        out.append(text(px - 5, py + 3.5, number(y), "end"))
        y += step
    step = nice_step(top_x)
    x = 0.0
    while x <= top_x:
        px, py = at(x, 0)
        out.append(text(px, py + 14, number(x)))
        x += step
    out.append(text(x0 + LEFT + inner_w / 2, y0 + HEIGHT - 10, axis))
    out.append('<text transform="translate(%.1f %.1f) rotate(-90)" text-anchor="middle">%s</text>'
               % (x0 + 12, y0 + TOP + inner_h / 2, unit))
    for line, color in zip(lines, COLORS):
        points = [at(x, y) for x, y in zip(xs, line)]
        out.append('<polyline fill="none" stroke="%s" stroke-width="1.6" points="%s"/>'
                   % (color, " ".join("%.1f,%.1f" % p for p in points)))
        out.extend('<circle cx="%.1f" cy="%.1f" r="2.4" fill="%s"/>' % (p[0], p[1], color)
                   for p in points)
    return out


def picture(panels, legend):
    """Panels in rows of three, with a line that says which colour is what."""
    columns = min(3, len(panels))
    rows = (len(panels) + columns - 1) // columns
    width, height = columns * WIDTH, rows * HEIGHT + 24
    out = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 %d %d" width="%d" height="%d" '
           'font-family="sans-serif" font-size="11" fill="#222">' % (width, height, width, height),
           '<rect width="%d" height="%d" fill="#fff"/>' % (width, height)]
    for i, (title, axis, unit, xs, lines) in enumerate(panels):
        out += panel(i % columns * WIDTH, i // columns * HEIGHT, title, axis, unit, xs, lines)
    x = LEFT
    for name, color in zip(legend, COLORS):
        out.append('<path d="M%d %dh18" stroke="%s" stroke-width="2"/>' % (x, height - 12, color))
        out.append(text(x + 23, height - 8, name, "start"))
        x += 120
    return "\n".join(out + ["</svg>", ""])


def names_of(points):
    return [name for name in points[0] if name != "x"]


def write(outdir, name, panels, legend):
    with open(os.path.join(outdir, name), "w") as out:
        out.write(picture(panels, legend))


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    outdir = sys.argv[3]
    with open(sys.argv[1]) as file:
        times = json.load(file)
    with open(sys.argv[2]) as file:
        counts = json.load(file)
    for curve, data in times["curves"].items():
        points = data["points"]
        xs = [point["x"] for point in points]
        panels = [(name, data["axis"].split(",")[0], "microseconds", xs,
                   [[point[name][i] for point in points] for i in range(len(times["stores"]))])
                  for name in names_of(points)]
        write(outdir, "growth-%s.svg" % curve, panels, times["stores"])
    panels = []
    for curve, data in counts["curves"].items():
        xs = [point["x"] for point in data["points"]]
        panels += [(name, data["axis"], "thousand instructions", xs,
                    [[point[name] / 1000 for point in data["points"]]])
                   for name in names_of(data["points"])]
    write(outdir, "growth-i386.svg", panels, ["zrcfg, 32 bit"])


main()
