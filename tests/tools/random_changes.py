"""Makes random changes to the store through the command line: values and instances, seeded."""
import json
import random
import subprocess
import sys

zrcfg, root, count, seed = sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])
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


def change_value(tree):
    path = chance.choice([n["path"] for n in tree if n["kind"] == "parameter"])
    assert run("set", "--no-check", path.encode() + b"=" + random_value()).returncode == 0
    done["set"] += 1


def add_instance(tree):
    tables = [n["path"] for n in tree if n["kind"] == "object" and n["rw"]]
    tables = [t for t in tables if not t.split(".")[-2].isdigit()]
    done["add"] += run("add", chance.choice(tables)).returncode == 0


def delete_instance(tree):
    objects = {n["path"]: n["rw"] for n in tree if n["kind"] == "object"}
    instances = [p for p in objects if p.split(".")[-2].isdigit()]
    instances = [p for p in instances if objects.get(p[: p.rstrip(".").rindex(".") + 1])]
    if instances:
        done["del"] += run("del", chance.choice(instances)).returncode == 0


tree = nodes()
while sum(done.values()) < count:
    kind = chance.choice([change_value] * 6 + [add_instance] * 2 + [delete_instance])
    kind(tree)
    if kind is not change_value:
        tree = nodes()
print(" ".join(f"{name} {number}" for name, number in done.items()))
