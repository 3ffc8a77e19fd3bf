"""Changes the library in one place at a time and sees whether the tests notice.

    mutate.py BUILD_DIRECTORY WORK_DIRECTORY [--count N] [--seed N] [--file PATTERN] [--jobs N]
              [--known FILE]

BUILD_DIRECTORY is a build of library and tests, the library without debugging information. A mutant costs the objects that change, a link and,
until one fails, the test programs. One that is compiled to the same code, or not at all, does not count.
Survivors are printed; those of FILE (FILE: OLD => NEW, with a reason above) change nothing that can be
seen. Fails when less than 95 % of the others are noticed.
"""

import argparse
import concurrent.futures
import itertools
import json
import os
import pathlib
import queue
import random
import re
import shlex
import subprocess
import sys

import mutants

PASS_MARK = 95
TEST_SECONDS = 120
# The programs in the order in which they are tried: those of the changed folder come first.
TESTS = ("core", "values", "attr", "lifecycle", "enum", "wan", "config", "log", "lock", "device",
         "every_call", "fault", "every_call_fault")
OWN_TESTS = {"log": ("log",), "lock": ("lock", "core"), "config": ("config",)}


class Build:
    """What is known of the build: commands, sources, test programs."""

    def __init__(self, directory):
        self.directory = directory
        commands = json.loads((directory / "compile_commands.json").read_text())
        self.commands = {}
        for entry in commands:
            arguments = shlex.split(entry["command"])
            output = arguments[arguments.index("-o") + 1]
            if output.startswith("CMakeFiles/zrcfg.dir/"):
                self.commands[entry["file"]] = (arguments, output)
        first = next(iter(self.commands))
        folder = next(iter(self.commands.values()))[1].removeprefix("CMakeFiles/zrcfg.dir/")
        self.root = pathlib.Path(first[: -len(folder.removesuffix(".o")) - 1])
        lines = subprocess.run(["ninja", "-C", directory, "-t", "commands", "zrcfg"],
                               capture_output=True, text=True, check=True).stdout.splitlines()
        self.link = next(line for line in lines if " -shared " in line and "zrcfg.dir/" in line)
        self.library = re.search(r"-o (libzrcfg\.so\S*)", self.link).group(1)
        self.texts = {path: path.read_text() for path in self.root.glob("*/*.[ch]*")}

    def name(self, path):
        return str(pathlib.Path(path).relative_to(self.root))

    def dependents(self, name):
        """The sources that a changed file is part of."""
        changed, grown = {name}, True
        while grown:
            grown = False
            for path, text in self.texts.items():
                own = self.name(path)
                if own not in changed and any(f'#include "{header}"' in text for header in changed):
                    changed.add(own)
                    grown = True
        return [file for file in self.commands if self.name(file) in changed]

    def sources(self, pattern):
        folders = {self.name(file).partition("/")[0] for file in self.commands}
        names = sorted(self.name(path) for path in self.texts)
        return [name for name in names if name.partition("/")[0] in folders and re.search(pattern, name)]


def compile_mutant(build, name, text, work):
    """Builds the changed library in `work`. False when it is none or the same as before."""
    overlay = work / "overlay"
    changed = overlay / name
    changed.parent.mkdir(parents=True, exist_ok=True)
    changed.write_text(text)
    link, same = build.link, True
    try:
        for file in build.dependents(name):
            arguments, output = build.commands[file]
            arguments = [argument for argument in arguments if not argument.endswith("ccache")]
            own = work / output.replace("/", "_")
            arguments[arguments.index("-o") + 1] = str(own)
            source = str(changed) if build.name(file) == name else file
            arguments = [source if argument == file else argument for argument in arguments]
            # Removed uses are no reason to refuse the mutant.
            arguments.insert(1, f"-I{overlay}")
            if subprocess.run(arguments + ["-w"], cwd=build.directory, capture_output=True).returncode:
                return False
            same = same and own.read_bytes() == (build.directory / output).read_bytes()
            link = link.replace(output + " ", str(own) + " ")
        if same:
            return False
        link = link.replace(f"-o {build.library}", f"-o {work}/libzrcfg.so.0")
        return subprocess.run(link, shell=True, cwd=build.directory, capture_output=True).returncode == 0
    finally:
        changed.unlink()


def program(build, test):
    return next(build.directory.glob(f"tests/*/{test}_test"))


def run_tests(build, work, order, skipped):
    """The first test that fails, or None."""
    environment = dict(os.environ, LD_LIBRARY_PATH=str(work))
    for test in order:
        command = [str(build.root / "scripts/with-store"), "--temp", str(program(build, test)),
                   "--gtest_fail_fast", "--gtest_brief=1"]
        if skipped.get(test):
            command.append("--gtest_filter=-" + ":".join(skipped[test]))
        try:
            done = subprocess.run(["timeout", "-k", "1", str(TEST_SECONDS)] + command, env=environment,
                                  stdin=subprocess.DEVNULL, capture_output=True, text=True,
                                  errors="replace")
        except OSError as error:
            sys.exit(f"{command[0]}: {error}")
        if done.returncode:
            found = re.search(r"^\[  FAILED  \] (\S+)", done.stdout, re.MULTILINE)
            return f"{test}/{found.group(1) if found else done.returncode}"
    return None


def order_for(name):
    folder = name.partition("/")[0]
    first = [test for test in TESTS if test in OWN_TESTS.get(folder, (folder,))]
    return first + [test for test in TESTS if test not in first]


def cases_of_their_own(build, work):
    """The cases that fail in the unchanged library once others of their program have run."""
    skipped = {}
    work.mkdir(parents=True, exist_ok=True)
    for test in TESTS:
        skipped[test] = []
        while (found := run_tests(build, build.directory, [test], skipped)) is not None:
            case = found.partition("/")[2]
            if case.isdigit() or case in skipped[test] or len(skipped[test]) > 20:
                sys.exit(f"{test}_test fails without a mutant: {found}")
            skipped[test].append(case)
    return skipped


def read_known(path):
    known = set()
    for line in pathlib.Path(path).read_text().splitlines() if path else ():
        if line.strip() and not line.startswith("#"):
            known.add(line.strip())
    return known


def choose(build, options):
    """The mutants to try: of every source some, drawn at random."""
    draw = random.Random(options.seed)
    chosen = []
    for name in build.sources(options.file):
        found = mutants.mutants_of(build.texts[build.root / name])
        draw.shuffle(found)
        chosen.append([(name,) + mutant for mutant in found])
    # In turn, so that a short run has touched every source.
    longest = max((len(found) for found in chosen), default=0)
    in_turn = [found[i] for i in range(longest) for found in chosen if i < len(found)]
    return in_turn


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("work", type=pathlib.Path)
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--file", default="")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--known")
    options = parser.parse_args()
    build = Build(options.build.resolve())
    work = options.work.resolve()
    known = read_known(options.known)
    skipped = cases_of_their_own(build, work)
    print("left out, since they need a process of their own:",
          " ".join(case for cases in skipped.values() for case in cases) or "none", flush=True)
    folders = queue.Queue()
    for job in range(options.jobs):
        folder = work / str(job)
        folder.mkdir(parents=True, exist_ok=True)
        folders.put(folder)

    def try_one(mutant):
        name, number, kind, old, new = mutant
        folder = folders.get()
        try:
            lines = build.texts[build.root / name].splitlines()
            lines[number - 1] = new
            if not compile_mutant(build, name, "\n".join(lines) + "\n", folder):
                return mutant, None, False
            return mutant, run_tests(build, folder, order_for(name), skipped), True
        finally:
            folders.put(folder)

    sys.exit(judge(try_one, choose(build, options), known, options))


def judge(try_one, candidates, known, options):
    """Tries mutants until enough have counted."""
    noticed = survived = explained = 0
    left = iter(candidates)
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        running = {pool.submit(try_one, mutant) for mutant in itertools.islice(left, options.jobs)}
        while running:
            done, running = concurrent.futures.wait(
                running, return_when=concurrent.futures.FIRST_COMPLETED)
            for task in done:
                (name, number, kind, old, new), found, counts = task.result()
                change = f"{name}: {old.strip()} => {new.strip()}"
                if counts and found:
                    noticed += 1
                    print(f"noticed {name}:{number} {kind} by {found}", flush=True)
                elif counts and change in known:
                    explained += 1
                elif counts:
                    survived += 1
                    print(f"SURVIVED {number} {kind}\n{change}", flush=True)
            if noticed + survived + explained < options.count:
                more = itertools.islice(left, len(done))
                running |= {pool.submit(try_one, mutant) for mutant in more}
    total = noticed + survived
    share = 100 * noticed / total if total else 0
    print(f"{noticed} of {total} mutants noticed: {share:.1f} %; {explained} more change nothing visible")
    return 0 if share >= PASS_MARK else 1


if __name__ == "__main__":
    main()
