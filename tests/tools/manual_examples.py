"""Takes the examples out of a manual page: runs their commands, and prints what differs.

Usage: manual_examples.py PAGE. Every line of an example (.EX to .EE) that begins with "$ " is a
command, with the lines behind it up to where it is complete; what follows is what it prints.
"""
import re
import subprocess
import sys

ESCAPES = {r"\-": "-", r"\e": "\\", r"\(aq": "'", r"\(dq": '"', r"\(ga": "`", r"\&": ""}


def plain(line):
    return re.sub(r"\\(\(..|.)", lambda match: ESCAPES[match.group(0)], line)


def examples(page):
    """Yields lists of (command, output)."""
    block = None
    for line in page:
        line = line.rstrip("\n")
        if line == ".EX":
            block = []
        elif line == ".EE":
            yield block
            block = None
        elif block is not None:
            block.append(plain(line))


def is_complete(command):
    check = subprocess.run(["bash", "-n"], input=command, capture_output=True, text=True)
    return check.returncode == 0 and not check.stderr and not command.endswith("\\\n")


def commands(block):
    command, output = "", []
    for line in block:
        if line.startswith("$ "):
            if command:
                yield command, output
            command, output = line[2:] + "\n", []
            complete = is_complete(command)
        elif not complete:
            command += line + "\n"
            complete = is_complete(command)
        else:
            output.append(line)
    if command:
        yield command, output


def main():
    script, wanted = "", []
    with open(sys.argv[1], encoding="utf-8") as page:
        for block in examples(page):
            for command, output in commands(block):
                script += "echo '$ '\n" + command
                wanted.append((command, "".join(line + "\n" for line in output)))
    result = subprocess.run(["bash", "-c", script], stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL)
    seen = result.stdout.decode("utf-8").split("$ \n")[1:]
    same = 0
    for (command, output), text in zip(wanted, seen):
        # Output may end without a line end.
        if text.rstrip("\n") == output.rstrip("\n"):
            same += 1
        else:
            print("%sprints\n%sthe page has\n%s" % (command, text, output))
    print("%d of %d examples as in the page" % (same, len(wanted)))


if __name__ == "__main__":
    main()
