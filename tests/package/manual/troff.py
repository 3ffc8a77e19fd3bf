"""What the makers of manual pages share: text as troff takes it."""
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[3]


def escape(text):
    """Text in which backslashes, quotes, and hyphens that are minus signs or dashes stay what they are."""
    text = text.replace("\\", r"\e").replace("'", r"\(aq")
    return re.sub(r"(?<![\w)])-(?=[\w-])", r"\-", text)


def shield(line):
    """A source line that is not taken for a request."""
    return r"\&" + line if line.startswith((".", "'")) else line


def sentences(text):
    """A paragraph of escaped text as source lines, one a sentence."""
    return [shield(line) for line in re.sub(r"(?<=[.:]) (?=[A-Z\\])", "\n", text).split("\n")]


def code_lines(text):
    """Lines of an example (.EX), as they are."""
    return [shield(text_line.replace("\\", r"\e").replace("'", r"\(aq").replace("-", r"\-"))
            for text_line in text.expandtabs().split("\n")]
