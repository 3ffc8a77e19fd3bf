"""Runs the examples of one document, a manual page or a Markdown file, and prints what differs.

Usage: document_examples.py FILE NOT_RUN, in a folder with the example model, the example store as /var.
Every block of code of the document is one of
  a session      lines "$ COMMAND" with what they print,
  a C program    compiled without warnings; the sessions behind it find it as its first comment names
                 it, and one that has no name there is run and has to succeed,
  a shell script its first line is "#!/bin/sh": checked for its syntax,
  scripts        lines that begin with scripts/: they exist,
  declarations   as they stand in the public header,
or its first line stands in the list NOT_RUN, "FILE: LINE", of what is no example.
"""
import os
import pathlib
import re
import subprocess
import sys

# No compiled modules beside the sources.
sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/tools"))
import manual_examples  # noqa: E402  The folder is known only now.


def markdown_blocks(lines):
    """The indented blocks of a Markdown file, without their indentation."""
    block, before = [], ""
    for line in [*lines, "\n"]:
        line = line.rstrip("\n")
        if line.startswith("    ") and (block or not before):
            block.append(line[4:])
        elif block and line:
            yield block
            block = []
        elif block:
            block.append("")
        before = line
    if block:
        yield block


def document_blocks(path):
    with open(path, encoding="utf-8") as lines:
        blocks = markdown_blocks(lines) if path.suffix == ".md" else manual_examples.examples(lines)
        return ["\n".join(block).strip("\n").split("\n") for block in blocks]


def run(command, text=None):
    return subprocess.run(command, input=text, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, errors="surrogateescape")


def c_problem(block):
    """Compiles a program; runs it unless sessions do."""
    name = re.match(r"/\* (\w+) ", block[0])
    file = pathlib.Path((name[1] if name else "program") + ".c")
    file.write_text("\n".join(block) + "\n", encoding="utf-8")
    flags = run(["pkg-config", "--cflags", "--libs", "zrcfg"]).stdout.split()
    built = run(["cc", "-std=c11", "-Wall", "-Wextra", "-Werror", str(file), "-o", "program", *flags])
    if built.returncode != 0:
        return built.stdout
    result = None if name else run([os.path.abspath("program")])
    return f"exit code {result.returncode}\n{result.stdout}" if result and result.returncode else None


def script_problem(block):
    named = [line.split()[0] for line in block if line.startswith("scripts/")]
    missing = [name for name in named if not os.access(ROOT / name, os.X_OK)]
    return f"not there: {missing}" if missing else None


def declaration_problem(block):
    header = (ROOT / "include/zrcfg.h").read_text(encoding="utf-8")
    return None if "\n".join(block) + "\n" in header else "not in the header"


def shell_problem(block):
    checked = run(["sh", "-n"], "\n".join(block) + "\n")
    return checked.stdout if checked.returncode else None


def session_counts(session, problems):
    """Runs the commands of all sessions in one shell; how many there are, and how many print the same."""
    script = "".join("echo '$ '\n" + command for command, _ in session)
    printed = run(["bash", "-c", script + "\n"]).stdout.split("$ \n")[1:]
    same = 0
    for (command, output), text in zip(session, printed):
        if text.rstrip("\n") == "\n".join(output).rstrip("\n"):
            same += 1
        else:
            problems.append(f"{command}prints\n{text}in place of\n" + "\n".join(output))
    return same


def main(path, not_run):
    session, problems, kinds = [], [], {}
    name = str(path.resolve().relative_to(ROOT))
    listed = [line[len(name) + 2:] for line in not_run.read_text(encoding="utf-8").splitlines()
              if line.startswith(name + ": ")]
    for block in document_blocks(path):
        problem, kind = None, "not run"
        if block[0].startswith("$ "):
            kind = "sessions"
            session += manual_examples.commands(block)
        elif any("int main(" in line for line in block):
            kind, problem = "C programs", c_problem(block)
        elif block[0] == "#!/bin/sh":
            kind, problem = "shell scripts", shell_problem(block)
        elif block[0].startswith("typedef "):
            kind, problem = "declarations", declaration_problem(block)
        elif block[0].startswith("scripts/"):
            kind, problem = "lists of scripts", script_problem(block)
        elif block[0] in listed:
            listed.remove(block[0])
        else:
            problem = "neither run nor in the list of what is no example"
        kinds[kind] = kinds.get(kind, 0) + 1
        if problem:
            problems.append(f"{block[0]}\n{problem}")
    problems += [f"in the list, but not in the document: {line}" for line in listed]
    same = session_counts(session, problems)
    if same != len(session):
        problems.append(f"{len(session) - same} of {len(session)} commands print something else")
    print(f"{name}: {len(session)} commands; " + ", ".join(f"{n} {kind}" for kind, n in kinds.items()))
    for problem in problems:
        print(problem)
    return bool(problems)


if len(sys.argv) != 3:
    sys.exit(__doc__)
sys.exit(main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])))
