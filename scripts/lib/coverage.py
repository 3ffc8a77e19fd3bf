"""Lines and branches of the library that no test runs, from GCC's counts.

    coverage.py SOURCE_DIRECTORY OBJECT_DIRECTORY UNREACHED

OBJECT_DIRECTORY holds the .gcno and .gcda files. Prints figures by folder, and fails for a line or
branch that is neither run nor listed in UNREACHED with its reason, and for figures below those that
stand there. A listed line is known by its file and its text, so that it may move.
"""

import collections
import json
import pathlib
import subprocess
import sys


def read_counts(source, objects):
    """How often each (file, line) ran, and how often each of its branches was taken."""
    lines = collections.Counter()
    branches = {}
    names = sorted(str(path) for path in objects.rglob("*.gcno"))
    if not names:
        sys.exit(f"{objects}: nothing was compiled for coverage")
    for name in names:
        output = subprocess.run(["gcov", "--json-format", "--branch-probabilities", "--stdout", name],
                                capture_output=True, check=True).stdout
        for document in output.splitlines():
            for entry in json.loads(document)["files"]:
                path = pathlib.Path(entry["file"])
                if path.is_relative_to(source) and not path.is_relative_to(source / "tests"):
                    add_file(str(path.relative_to(source)), entry["lines"], lines, branches)
    return lines, branches


def add_file(name, entries, lines, branches):
    """Adds one object's counts; a header's function counts once, whoever includes it."""
    for entry in entries:
        place = (name, entry["line_number"])
        lines[place] += entry["count"]
        taken = [branch["count"] for branch in entry["branches"] if not branch["throw"]]
        if taken:
            # Instances of a template have the same branches; a line with two functions has not.
            known = branches.setdefault(place, {}).setdefault(len(taken), [0] * len(taken))
            for i, count in enumerate(taken):
                known[i] += count


def read_unreached(path):
    """The figures to be kept, and the reason of each listed (file, text)."""
    minimum, listed, reason = {}, {}, []
    in_entries = False
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if line.startswith("#"):
            reason = [] if in_entries else reason
            in_entries = False
            reason.append(line[1:].strip())
        elif line.startswith("at least "):
            kind, figure = line.split()[2:4]
            minimum[kind] = float(figure)
        elif line.strip():
            name, separator, text = line.partition(": ")
            if not separator or not reason:
                sys.exit(f"{path}:{number}: neither a reason nor FILE: TEXT with a reason above")
            in_entries = True
            listed[(name, text.strip())] = " ".join(reason)
    return minimum, listed


def report(lines, branches):
    """Prints the figures by folder and returns those in all."""
    folders = collections.defaultdict(lambda: [0, 0, 0, 0])
    for (name, _), count in lines.items():
        for folder in (name.partition("/")[0], "all"):
            folders[folder][0] += count > 0
            folders[folder][1] += 1
    for (name, _), instances in branches.items():
        for taken in instances.values():
            for folder in (name.partition("/")[0], "all"):
                folders[folder][2] += sum(count > 0 for count in taken)
                folders[folder][3] += len(taken)
    print(f"{'':10} {'lines':>18} {'branches':>20}")
    for folder in sorted(folders, key=lambda name: (name == "all", name)):
        run, all_lines, taken, all_branches = folders[folder]
        print(f"{folder:10} {run:5} of {all_lines:5} {percent(run, all_lines):6.2f}"
              f" {taken:6} of {all_branches:5} {percent(taken, all_branches):6.2f}")
    run, all_lines, taken, all_branches = folders["all"]
    return {"lines": percent(run, all_lines), "branches": percent(taken, all_branches)}


def percent(part, whole):
    return int(10000 * part / whole) / 100 if whole else 100.0


def main():
    source, objects, unreached = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    lines, branches = read_counts(source, objects)
    minimum, listed = read_unreached(unreached)
    figures = report(lines, branches)
    failed = False
    used = set()
    for name, number in sorted(set(lines) | set(branches)):
        place = (name, number)
        missed = [f"{taken.count(0)} of {len(taken)} branches not taken"
                  for taken in branches.get(place, {}).values() if 0 in taken]
        if lines[place] == 0:
            missed = ["not run"]
        if not missed:
            continue
        text = (source / name).read_text().splitlines()[number - 1].strip()
        if text == "}":
            continue  # The end of a function, which its other lines speak for.
        used.add((name, text))
        if (name, text) not in listed:
            failed = True
            print(f"{name}:{number}: {missed[0]}: {text}")
    for name, text in sorted(set(listed) - used):
        print(f"note: listed in {unreached.name}, but run now or gone: {name}: {text}")
    print(f"listed as unreached: {len(used & set(listed))} lines")
    for kind, figure in minimum.items():
        if figures[kind] < figure:
            failed = True
            print(f"{kind}: {figures[kind]:.2f} %, less than the {figure:.2f} % of before")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
