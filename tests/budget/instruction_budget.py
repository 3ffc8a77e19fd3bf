#!/usr/bin/env python3
"""Compares the instructions of each operation under callgrind with the committed limits.

usage: instruction_budget.py LIMITS COMPILER PROGRAM [--print] [INSTANCES RECORDS REQUESTS]

LIMITS names the compiler it was made with, then a line for each operation: name and instructions.
With that compiler 5 % more are allowed, with another one 25 %. To be run by scripts/with-store.
"""
import os
import re
import subprocess
import sys
import tempfile

COUNT = 10
SLACK = 0.05
OTHER_COMPILER_SLACK = 0.25

# libc chooses its text functions by the processor; these limits are for the plain ones.
TUNABLES = "glibc.cpu.hwcaps=-AVX2,-AVX,-BMI2,-ERMS,-SSE4_2,-SSSE3"


def count_instructions(program, sizes, emulator_arguments=()):
    """Instructions for one operation, by the operation's name."""
    with tempfile.TemporaryDirectory() as scratch:
        environment = dict(os.environ, GLIBC_TUNABLES=TUNABLES, LC_ALL="C")
        subprocess.run(["valgrind", "-q", "--tool=callgrind", "--collect-atstart=no",
                        "--callgrind-out-file=%s/out" % scratch, *emulator_arguments,
                        program, str(COUNT), *sizes], check=True, env=environment)
        found = {}
        for name in os.listdir(scratch):
            with open(os.path.join(scratch, name)) as dump:
                text = dump.read()
            trigger = re.search(r"^desc: Trigger: Client Request: (\S+)$", text, re.M)
            totals = re.search(r"^(?:totals|summary): (\d+)", text, re.M)
            if trigger and totals:
                found[trigger.group(1)] = int(totals.group(1)) // COUNT
        return found


def read_limits(path):
    with open(path) as lines:
        words = [line.split() for line in lines if line.strip() and not line.startswith("#")]
    compiler = next(" ".join(w[1:]) for w in words if w[0] == "compiler")
    return compiler, {w[0]: int(w[1]) for w in words if w[0] != "compiler"}


def main():
    arguments = sys.argv[1:]
    printing = "--print" in arguments
    if printing:
        arguments.remove("--print")
    if len(arguments) not in (3, 6):
        sys.exit(__doc__)
    limits_path, compiler, program = arguments[:3]
    found = count_instructions(program, arguments[3:])
    if printing:
        print("compiler " + compiler)
        for name in sorted(found):
            print(name, found[name])
        return
    limits_compiler, limits = read_limits(limits_path)
    slack = SLACK if compiler == limits_compiler else OTHER_COMPILER_SLACK
    failed = sorted(set(limits) ^ set(found))
    for name in failed:
        print("%s: has no %s" % (name, "limit" if name in found else "figure"))
    for name in sorted(set(limits) & set(found)):
        good = found[name] <= limits[name] * (1 + slack)
        print("%-4s %8d of %8d %+5.1f %%%s" % (name, found[name], limits[name],
              100.0 * found[name] / limits[name] - 100, "" if good else "  TOO MANY"))
        if not good:
            failed.append(name)
    if failed:
        sys.exit("over the budget (with %s, %d %% slack): %s"
                 % (compiler, slack * 100, " ".join(failed)))


main()
