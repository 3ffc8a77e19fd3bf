"""Makes zrcfg(3) from man/zrcfg.3.in, the public header and the example clients.

The header's comments are the text of the page: a comment describes the declarations that stand
directly below it, and the section when none do.
"""
import re

from troff import ROOT, code_lines, escape, sentences

RULER = re.compile(r"/\* ---- (.*?) -+ \*/$")
POINTER_BYTES = (4, 8)


def prose(text):
    """A paragraph of the header as source lines, one a sentence; locks and results begin a line."""
    text = escape(" ".join(text.split()))
    text = re.sub(r"`([^`]*)`", r"\\fI\1\\fR", text)
    text = re.sub(r"\b(ZRCFG_[A-Z_]*[A-Z]|zrcfg_\w+|free\(\)|destroyObj)(?![\w*/])", r"\\fB\1\\fR", text)
    out = []
    for line in sentences(text):
        out += [".br"] if line.startswith(("Lock: ", "Locks ", "Lock and ", "Results")) else []
        out.append(line)
    return out


def comment_text(lines):
    """The text of a C comment, without its marks."""
    text = "\n".join(lines).strip()
    return "\n".join(re.sub(r"^ ?\* ?", "", line).rstrip() for line in text[2:-2].split("\n")).strip()


def blocks(lines):
    """Yields (comment, code lines) of a section: what stands between empty lines."""
    comment, code, inside = [], [], False
    for line in lines + [""]:
        if inside or (line.startswith("/*") and not code):
            comment.append(line)
            inside = "*/" not in line
        elif line:
            code.append(line)
        elif comment or code:
            yield comment_text(comment) if comment else "", code
            comment, code = [], []


def macro_table(code):
    """Rows of "#define NAME VALUE /* meaning */" as a table; meanings may stand without value marks."""
    rows = []
    for line in code:
        match = re.match(r"#define (\w+) +(\S+)(?: +/\* (.*) \*/)?$", line)
        if not match:
            raise ValueError(f"not a macro with a value: {line}")
        value = match[2].strip("()").rstrip("u")
        rows.append(f"\\fB{match[1]}\\fR\t{escape(value)}\tT{{\n" + "\n".join(prose(match[3] or "")) + "\nT}")
    return [".TS", "l r lx."] + rows + [".TE"]


def result_list(text):
    """The paragraphs of a description, with the codes behind "Results:" set apart where all have one."""
    match = re.search(r"Results: (.*?)\.(?= [A-Z`]|$)", " ".join(text.split()))
    if not match:
        return prose(text)
    items = re.split(r"; (?![^(]*\))", match[1])
    if not all(re.match(r"-?\d+( |$)", item) for item in items):
        return prose(text)
    text = " ".join(text.split())
    out = prose(text[: match.start()]) if match.start() else []
    out += [".br", "Results:", ".TS", "r lx."]
    for item in items:
        code, _, meaning = item.partition(" ")
        meaning = meaning or "done"
        out += [f"{escape(code)}\tT{{", *prose(meaning), "T}"]
    out.append(".TE")
    rest = text[match.end() :].strip()
    return out + (prose(rest) if rest else [])


def declaration(code):
    """Prototypes and variables in bold, their parameters in italics."""
    text = re.sub(r"\s+", " ", " ".join(code)).replace("; ", ";\n")
    assert "/*" not in text, text
    text = re.sub(r" __attribute__\(\(.*?\)\)\)?", "", text)
    lines = []
    for statement in text.split("\n"):
        statement = escape(statement)
        statement = re.sub(r"(\w+)(\[\d*\])?(?=[,)])(?<!void)", r"\\fI\1\\fB\2", statement)
        lines += [".PP", rf"\fB{statement}\fR"]
    return lines


def variables(code):
    """Variables with a comment that ends in their first value."""
    out = []
    for line in code:
        name, note = re.match(r"extern (.*); +/\* (.*) \*/", line).groups()
        meaning, _, first = note.rpartition("; ")
        text = f"{meaning}; initially {first}." if meaning else f"Initially {first}."
        out += [".TP", rf"\fBextern {escape(name)};\fR", escape(text[0].upper() + text[1:])]
    return out


def calls_section(lines):
    out = []
    for comment, code in blocks(lines):
        if code and code[0].startswith("#define"):
            out += [".PP", *prose(comment), *macro_table(code)]
        elif code and code[0].startswith("extern"):
            out += [".PP", *prose(comment), *variables(code)]
        elif code:
            out += [*declaration(code), ".RS 4", *result_list(comment), ".RE"]
        else:
            out += [".PP", *prose(comment)]
    return out


def codes_section(lines):
    out = []
    for comment, code in blocks(lines):
        out += ([".PP", *prose(comment)] if comment else []) + macro_table(code)
    return out


def records_section(lines, sizes):
    out = []
    for comment, code in blocks(lines):
        if code and code[0].startswith("ZRCFG_STATIC_ASSERT"):
            continue
        out += [".PP", *prose(comment)] if comment else []
        if code:
            out += [".PP", ".EX", *code_lines("\n".join(code)), ".EE"]
    rows = [f"\\fB{name}\\fR\t{small}\t{large}" for name, small, large in sizes]
    return out + [".PP", "Sizes in bytes:", ".TS", "lb rb rb", "l r r.", "Record\t32 bit\t64 bit", *rows,
                  ".TE"]


def record_sizes():
    """Sizes from the table of the layout test, which is compared with the compiler's on each target."""
    text = (ROOT / "tests/device/record_layout.h").read_text(encoding="utf-8")
    for name, count, words in re.findall(r"ZRCFG_SIZE\((\w+), (\d+), (\d+)\)", text):
        yield name, *(int(count) + int(words) * size for size in POINTER_BYTES)


def conventions(lines):
    """The numbered list of the header's first comment."""
    text = comment_text(lines).split("Conventions", 1)[1]
    items = re.split(r"\n *\d+\. ", text)[1:]
    out = []
    for number, item in enumerate(items, 1):
        out += [f".IP {number}. 4", *prose(item)]
    return out


def page():
    lines = (ROOT / "include/zrcfg.h").read_text(encoding="utf-8").split("\n")
    starts = [i for i, line in enumerate(lines) if RULER.match(line)]
    end = max(i for i, line in enumerate(lines) if line == "#ifdef __cplusplus")
    sections = []
    for start, stop in zip(starts, starts[1:] + [end]):
        title, body = RULER.match(lines[start])[1], lines[start + 1 : stop]
        sections += [f".SH {title.upper()}"]
        if title == "Exchange records":
            sections += records_section(body, record_sizes())
        elif any(line.startswith("#define") for line in body) and not any(line.endswith(");") for line in body):
            sections += codes_section(body)
        else:
            sections += calls_section(body)
    text = (ROOT / "man/zrcfg.3.in").read_text(encoding="utf-8")
    head = lines[: lines.index(" */") + 1]
    text = text.replace("@CONVENTIONS@", "\n".join(conventions(head)))
    text = text.replace("@SECTIONS@", "\n".join(sections))
    for client in (ROOT / "examples/client").glob("*.c"):
        code = client.read_text(encoding="utf-8").rstrip("\n")
        text = text.replace(f"@{client.stem.upper()}@", "\n".join(code_lines(code)))
    return re.sub(r"^(\.S[HS] .*\n)\.PP\n(?:\.br\n)?|(\.PP\n)\.br\n", r"\1\2", text, flags=re.M)
