"""Makes random changes to the store through the command line: values and instances, seeded.

Usage: random_changes.py ZRCFG ROOT COUNT SEED [checked]. With "checked" the store stays one that its
model permits: values pass their filters, counters are left alone, and tables keep an instance.
"""
import json
import random
import subprocess
import sys

zrcfg, root, count, seed = sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])
checked = sys.argv[5:] == ["checked"]
chance = random.Random(seed)
done = {"set": 0, "add": 0, "del": 0}


def run(*arguments):
    return subprocess.run([zrcfg, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE)


def nodes():
    result = run("tree", "--json", root)
    assert result.returncode == 0, result.stderr
    return json.loads(result.stdout.decode("utf-8", "surrogateescape"))


def random_value():
    alphabet = [bytes([c]) for c in range(1, 256) if c not in (10, 13)] + [b"\\", b"=", b" ", b"\t", b"#"] * 20
    value = b"".join(chance.choice(alphabet) for _ in range(chance.choice([0, 1, 3, 20, 255])))
    return value


def set_checked(path):
    words = [b"true", b"0", b"%d" % chance.randrange(10000), b"192.0.2.7", b"10.0", random_value()]
    done["set"] += run("set", path.encode() + b"=" + chance.choice(words)).returncode == 0


def change_value(tree):
    path = chance.choice([n["path"] for n in tree if n["kind"] == "parameter"])
    if checked:
        if not path.endswith("NumberOfEntries"):
            set_checked(path)
        return
    assert run("set", "--no-check", path.encode() + b"=" + random_value()).returncode == 0
    done["set"] += 1


def add_instance(tree):
    tables = [n["path"] for n in tree if n["kind"] == "object" and n["rw"]]
    tables = [t for t in tables if not t.split(".")[-2].isdigit()]
    done["add"] += run("add", chance.choice(tables)).returncode == 0


def delete_instance(tree):
    objects = {n["path"]: n["rw"] for n in tree if n["kind"] == "object"}
    instances = [p for p in objects if p.split(".")[-2].isdigit()]
    table_of = {p: p[: p.rstrip(".").rindex(".") + 1] for p in instances}
    instances = [p for p in instances if objects.get(table_of[p])]
    if checked:
        tables = list(table_of.values())
        instances = [p for p in instances if tables.count(table_of[p]) > 1]
    if instances:
        done["del"] += run("del", chance.choice(instances)).returncode == 0


tree = nodes()
while sum(done.values()) < count:
    kind = chance.choice([change_value] * 6 + [add_instance] * 2 + [delete_instance])
    kind(tree)
    if kind is not change_value:
        tree = nodes()
print(" ".join(f"{name} {number}" for name, number in done.items()))
