"""Small changes to a C++ source, each of which the tests should notice."""

import re

# What a change looks for, what it puts there, and its kind. Operators have spaces around them, as the
# formatter writes them, so that template brackets and pointers are left alone.
REPLACEMENTS = (
    (" == ", (" != ",), "operator"),
    (" != ", (" == ",), "operator"),
    (" <= ", (" < ", " > "), "operator"),
    (" >= ", (" > ", " < "), "operator"),
    (" < ", (" <= ", " >= "), "operator"),
    (" > ", (" >= ", " <= "), "operator"),
    (" && ", (" || ",), "operator"),
    (" || ", (" && ",), "operator"),
    (" + ", (" - ",), "operator"),
    (" - ", (" + ",), "operator"),
    (" += ", (" -= ",), "operator"),
    (" & ", (" | ",), "operator"),
    (" | ", (" & ",), "operator"),
    (" << ", (" >> ",), "operator"),
    (" >> ", (" << ",), "operator"),
)
RESULT = re.compile(r"\bZRCFG_(?:OK|E_[A-Z_]+)\b")
NUMBER = re.compile(r"(?<![\w.\"'])(\d+)(?=[uU]?\b)(?![\w.]*[.x])")
TRUTH = re.compile(r"\b(true|false)\b")
CONDITION = re.compile(r"^(\s*(?:\} else )?(?:if|while) \()(.*)(\) \{)$")
STATEMENT = re.compile(r"^\s+(?:\(void\))?[a-zA-Z_][\w.>:\[\]*-]*(?:\(.*\)| [-+|&]?= .+);$|^\s+\+\+[\w.>-]+;$")
NO_STATEMENT = re.compile(r"^\s+(?:return|break|continue|using|static|const|constexpr|goto|throw)\b")
TEXT = re.compile(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)+\'|//.*$')


def blank_texts(line):
    """The line with blanks in the place of strings and comments."""
    return TEXT.sub(lambda match: " " * len(match.group()), line)


def changes_of_line(line):
    """Yields (kind, changed line) for one source line."""
    code = blank_texts(line)
    if not code.strip() or code.lstrip().startswith(("#", "static_assert", "namespace")):
        return
    for wanted, others, kind in REPLACEMENTS:
        at = code.find(wanted)
        while at >= 0:
            for other in others:
                yield kind, line[:at] + other + line[at + len(wanted):]
            at = code.find(wanted, at + 1)
    for match in RESULT.finditer(code):
        other = "ZRCFG_E_MEMORY" if match.group() != "ZRCFG_E_MEMORY" else "ZRCFG_E_FILE"
        yield "result", line[:match.start()] + other + line[match.end():]
    for match in NUMBER.finditer(code):
        number = str(int(match.group(1)) + 1)
        yield "constant", line[:match.start()] + number + line[match.end():]
    for match in TRUTH.finditer(code):
        other = "false" if match.group() == "true" else "true"
        yield "constant", line[:match.start()] + other + line[match.end():]
    match = CONDITION.match(line)
    if match:
        yield "condition", f"{match.group(1)}!({match.group(2)}){match.group(3)}"
    if STATEMENT.match(line) and not NO_STATEMENT.match(line):
        yield "statement", re.match(r"\s*", line).group() + ";"


def mutants_of(text):
    """All (line number, kind, old line, new line) of a source."""
    found = []
    for number, line in enumerate(text.splitlines(), 1):
        for kind, changed in changes_of_line(line):
            found.append((number, kind, line, changed))
    return found
