"""Damages a store at random and checks and repairs it, again and again.

Usage: check_random.py PROGRAM ROUNDS SEED. The store is /var/R, as make_store in check_common.sh makes it,
and /var/store.tar has it unharmed. Whatever the damage: a check changes nothing and agrees with itself;
a repair ends with the exit code for what it says, and after a few of them there is nothing more to
repair; no file gets another inode.
"""
import json
import os
import random
import shutil
import subprocess
import sys

PROGRAM, ROUNDS, SEED = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
BYTES = (0, 10, 13, 255, 1, 46, 48)


def reset():
    shutil.rmtree("/var/R")
    os.remove("/var/regex_file")
    subprocess.run(["tar", "-C", "/var", "-xf", "/var/store.tar"], check=True)


def entries():
    found = []
    for directory, names, files in os.walk("/var/R"):
        found += [os.path.join(directory, name) for name in names + files]
    return sorted(found)


def state(inodes_only=False):
    seen = {}
    for path in entries():
        status = os.lstat(path)
        content = None
        if not inodes_only and os.path.isfile(path) and not os.path.islink(path):
            with open(path, "rb") as file:
                content = file.read()
        seen[path] = (status.st_ino, status.st_mode) + (
            () if inodes_only else (status.st_mtime_ns, status.st_ctime_ns, content))
    return seen


def overwrite(path, choice):
    size = os.path.getsize(path)
    with open(path, "r+b") as file:
        for _ in range(choice.choice((1, 1, 2, 8))):
            # The length word and the values are where most can go wrong.
            low, high = choice.choice(((0, 4), (4, 188), (188, size), (max(0, size - 12), size + 8)))
            file.seek(choice.randrange(low, max(low + 1, high)))
            file.write(bytes([choice.choice(BYTES + (choice.randrange(256),))]))


def field(path, choice):
    """Changes a field of a record or of the header to something likely, and may take values away."""
    size = os.path.getsize(path)
    with open(path, "r+b") as file:
        length = int.from_bytes(file.read(4), "big")
        count = (length - 184) // 124
        if count > 0 and length + 4 <= size and choice.random() < 0.7:
            file.seek(188 + 124 * choice.randrange(count) + choice.choice((0, 116)))
            file.write(choice.choice((b"\0\0\0", b"\3\0\0", b"\x0c\0\0")) + choice.choice((b"\0", b"\1", b"\2", b"\7")))
        else:
            offset, value = choice.choice(((8, b"\0"), (8, b"\x10"), (5, b"\0"), (5, b"\1"), (76, b"\0"),
                                           (76, b"x/FixedNumberOfEntries\0"), (76, b"/InnerNumberOfEntries\0"),
                                           (76, b"/Alias\0"), (76, b"/Name\0")))
            file.seek(4 + offset)
            file.write(value)
    if choice.random() < 0.4 and length + 4 <= size:
        os.truncate(path, choice.randrange(length + 4, size + 1))


def resize(path, choice):
    size = os.path.getsize(path)
    os.truncate(path, choice.choice((0, size // 2, max(0, size - 1), size + 1, size + 5000,
                                     choice.randrange(size + 1))))


def remove(path, choice):
    if os.path.isdir(path) and not os.path.islink(path):
        shutil.rmtree(path)
    else:
        os.remove(path)


def copy_instance(path, choice):
    table = choice.choice(("/var/R/Table", "/var/R/Table/1/Sub/Inner", "/var/R/Table/0/Sub/Inner"))
    target = os.path.join(table, choice.choice(("1", "2", "3", "4", "7", "07", "300", "x", "a.b")))
    if os.path.isdir(table + "/0") and not os.path.lexists(target):
        try:
            shutil.copytree(table + "/0", target, symlinks=True)
        except shutil.Error:
            pass  # A FIFO; the rest is copied.
        inside = [os.path.join(where, name) for where, names, files in os.walk(target)
                  for name in names + files]
        if inside and choice.random() < 0.7:
            remove(choice.choice(sorted(inside)), choice)


def add_entry(path, choice):
    directory = path if os.path.isdir(path) else os.path.dirname(path)
    target = os.path.join(directory, choice.choice(("stray", "property.conf", "0", "5", "new\nline", "é")))
    if os.path.lexists(target):
        return
    kind = choice.randrange(5)
    if kind == 0:
        os.mkdir(target)
    elif kind == 1:
        os.mkfifo(target)
    elif kind == 2:
        os.symlink(choice.choice((".", "..", "nowhere", "/", target)), target)
    else:
        with open(target, "wb") as file:
            file.write(choice.randbytes(choice.choice((0, 3, 200, 700))))


def damage(choice):
    everything = entries()
    files = [path for path in everything if os.path.isfile(path) and not os.path.islink(path)]
    action = choice.choice((overwrite, overwrite, field, field, resize, resize, remove, copy_instance, add_entry))
    candidates = files if action in (overwrite, field, resize) else everything
    if candidates:
        action(choice.choice(candidates), choice)


def run(*arguments):
    result = subprocess.run([PROGRAM, "check", "--json", "--timeout", "0", *arguments],
                            stdin=subprocess.DEVNULL, capture_output=True, timeout=120)
    assert result.returncode in (0, 1, 3) and not result.stderr, (result.returncode, result.stderr)
    found = json.loads(result.stdout)
    assert (result.returncode == 0) == (not found), result
    return result.returncode, found


def main():
    repaired = left = 0
    for number in range(ROUNDS):
        choice = random.Random(SEED + number)
        reset()
        for _ in range(choice.choice((1, 1, 2, 4, 10))):
            damage(choice)
        before = state()
        code, found = run()
        assert code in (0, 1) and state() == before, number
        code_of_repair, said = run("--repair")
        remaining = [finding for finding in said if not finding["repaired"]]
        assert (code_of_repair == 3) == (said != [] and not remaining), number
        inodes = state(inodes_only=True)
        assert all(before[path][:2] == inodes[path] for path in inodes), number
        after = state()
        code_now, now = run()
        assert state() == after, number
        assert code_of_repair != 3 or not now, (number, said, now)
        # What is left may now look like something else, but it does not vanish.
        assert now or not remaining, (number, said)
        repaired += code_of_repair == 3 and not now
        left += bool(remaining)
        # One repair may open the way for another, a few times.
        for _ in range(4):
            last = state()
            run("--repair")
            if state() == last:
                break
        else:
            raise AssertionError("repairs without an end: %d" % number)
    print("%d rounds, %s repaired, %s left" % (ROUNDS, "some" if repaired else "none",
                                              "some" if left else "none"))


main()
