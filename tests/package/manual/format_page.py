"""Makes property.conf(5) from docs/format.md."""
import re

from troff import ROOT, code_lines, escape, sentences

HEAD = r"""'\" t
.TH PROPERTY.CONF 5 "" "zrcfg" "File formats"
.nr HY 0
.nh
.ad l
.SH NAME
property.conf \- an object of the zrcfg store on disk
.SH DESCRIPTION
"""
TAIL = r""".SH SEE ALSO
.BR zrcfg (1),
.BR zrcfg\-mkstore (1),
.BR zrcfg (3)
"""


def inline(text):
    """Marked-up text of a paragraph or a cell."""
    text = escape(re.sub(r"\[([^]]*)\]\([^)]*\)", r"docs/\1", text))
    text = text.replace("−", r"\-").replace("×", r"\(mu").replace("…", "...")
    return re.sub(r"`([^`]*)`", lambda match: rf"\fB{match[1]}\fR", text)


def paragraph(lines):
    return [".PP", *sentences(inline(" ".join(lines)))]


def table(lines):
    """A table: its last column is wrapped, the others are as wide as their cells."""
    rows = [[inline(cell.strip()) for cell in line.strip("|").split("|")] for line in lines]
    head, body = rows[0], rows[2:]
    numeric = [all(row[i].isdigit() for row in body) for i in range(len(head) - 1)]
    formats = "".join("r " if right else "l " for right in numeric) + "lx."
    out = [".TS", "lb " * len(head), formats, "\t".join(head)]
    for row in body:
        out += ["\t".join(row[:-1] + ["T{"]), *(sentences(row[-1]) if row[-1] else []), "T}"]
    return out + [".TE"]


def groups(lines):
    """Lines that belong together: (kind, lines), the kind being that of their beginning."""
    kinds = (("##", "heading"), ("    ", "code"), ("|", "table"))
    group, kind = [], None
    for line in lines + [""]:
        found = next((name for mark, name in kinds if line.startswith(mark)), "text" if line else None)
        if found != kind or kind == "heading":
            if group:
                yield kind, group
            group, kind = [], found
        if found:
            group.append(line)


def page():
    lines = (ROOT / "docs/format.md").read_text(encoding="utf-8").split("\n")
    out = []
    for kind, group in groups(lines[1:]):
        if kind == "heading":
            level, _, title = group[0].partition(" ")
            out.append(f".SH {title.upper()}" if level == "##" else f".SS {title}")
        elif kind == "code":
            text = "\n".join(line[4:] for line in group).replace("−", "-").replace("×", "*").replace("…", "...")
            out += [".PP", ".EX", *code_lines(text), ".EE"]
        elif kind == "table":
            out += table(group)
        else:
            out += paragraph(group)
    text = HEAD + "\n".join(out) + "\n" + TAIL
    return re.sub(r"^(\.SH DESCRIPTION|\.S[HS] .*)\n\.PP$", r"\1", text, flags=re.M)
