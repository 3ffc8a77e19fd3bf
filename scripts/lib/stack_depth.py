"""The deepest stack of every exported function, from the call graphs that the compiler writes.

    stack_depth.py LIMIT TREE_LIMIT SYMBOLS DIRECTORY

DIRECTORY holds the .ci files of a build with -fcallgraph-info=su, SYMBOLS the names of the exported
functions. What libc and other libraries use is not counted. Functions that call themselves (walks
along the directory tree) are taken 30 levels deep and have TREE_LIMIT, all others LIMIT bytes. Prints
the deepest calls, and fails over a limit, for a frame of unknown size and for a pointer call that is
not known here.
"""

import os
import re
import sys

LEVELS = 30
CALLED = re.compile(r"([A-Za-z_]\w*)(?:\(|(?:\.\w+)*$)")
NODE = re.compile(r'^node: \{ title: "([^"]*)" label: "(.*)"(.*) \}$')
EDGE = re.compile(r'^edge: \{ sourcename: "([^"]*)" targetname: "([^"]*)"')
# Where a function calls through a pointer, and what it may reach there.
POINTER_CALLS = (
    (re.compile("export_instance"), re.compile("add_selected|delete_selected")),
    (re.compile("write_values"), re.compile("apply_values|apply_checked_values|restore_values|_FUN")),
)
FRAME = re.compile(r"\\n(\d+) bytes \(([a-z,]+)\)")


def read_graph(directory):
    """Frame sizes, calls, and readable names of all functions."""
    frames, calls, names = {}, {}, {}
    for folder, _, files in os.walk(directory):
        if "CompilerId" in folder:
            continue
        for file in files:
            if file.endswith(".ci"):
                with open(os.path.join(folder, file), encoding="utf-8") as lines:
                    read_unit(lines, frames, calls, names)
    return frames, calls, names


def read_unit(lines, frames, calls, names):
    for line in lines:
        node = NODE.match(line)
        if node:
            frame = FRAME.search(node[2])
            if frame:
                if "dynamic" in frame[2] and "bounded" not in frame[2]:
                    sys.exit(f"{node[1]}: the frame has no known size")
                frames[node[1]] = max(frames.get(node[1], 0), int(frame[1]))
                # A split-off part of a function has no name of its own in the label.
                label = node[2].split("\\n")[0]
                names[node[1]] = label if CALLED.search(label) else node[1].split(":")[-1]
            continue
        edge = EDGE.match(line)
        if edge:
            calls.setdefault(edge[1], set()).add(edge[2])


def resolve_pointers(frames, calls, names):
    """Puts what may be reached in the place of calls through pointers; whether all are known."""
    complete = True
    for caller in sorted(name for name in calls if "__indirect_call" in calls[name]):
        reached = set()
        for where, targets in POINTER_CALLS:
            if where.search(caller):
                reached.update(name for name in frames if targets.search(name))
        if not reached:
            print(f"  a call through a pointer of unknown depth: {names.get(caller, caller)}")
            complete = False
        calls[caller] |= reached
    return complete


class Depths:
    """The deepest stack below a function, and the calls that lead there."""

    def __init__(self, frames, calls, names):
        self.frames = frames
        self.calls = calls
        self.names = names
        self.known = {}
        self.groups = {}
        self.find_groups()

    def find_groups(self):
        """Functions that call each other in a circle (Tarjan's components)."""
        order, low, stack, on_stack = {}, {}, [], set()

        def visit(name):
            order[name] = low[name] = len(order)
            stack.append(name)
            on_stack.add(name)
            for called in self.calls.get(name, ()):
                if called not in self.frames:
                    continue
                if called not in order:
                    visit(called)
                    low[name] = min(low[name], low[called])
                elif called in on_stack:
                    low[name] = min(low[name], order[called])
            if low[name] == order[name]:
                group = set()
                while name not in group:
                    member = stack.pop()
                    on_stack.discard(member)
                    group.add(member)
                for member in group:
                    self.groups[member] = frozenset(group)

        for name in self.frames:
            if name not in order:
                visit(name)

    def describe(self, group, first):
        """The names of functions that call each other, the one called from outside first."""
        return ", ".join(CALLED.search(self.names[name])[1]
                         for name in sorted(group, key=lambda name: (name != first, name)))

    def recursive(self, name):
        return len(self.groups[name]) > 1 or name in self.calls.get(name, ())

    def below(self, name):
        """Bytes, the calls that lead there as lines, and whether a recursion is part of it."""
        if name not in self.frames:
            return 0, [], False
        group = self.groups[name]
        if group in self.known:
            return self.known[group]
        inside = sum(self.frames[member] for member in group)
        deep = self.recursive(name)
        best = (0, [], False)
        for member in group:
            for called in self.calls.get(member, ()):
                if called not in group:
                    best = max(best, self.below(called), key=lambda found: found[0])
        size = inside * (LEVELS if deep else 1) + best[0]
        step = f"{inside:6}{f' x {LEVELS}' if deep else ''} {self.describe(group, name)}"
        self.known[group] = (size, [step] + best[1], deep or best[2])
        return self.known[group]


def main(limit, tree_limit, symbols, directory):
    frames, calls, names = read_graph(directory)
    complete = resolve_pointers(frames, calls, names)
    depths = Depths(frames, calls, names)
    exported = [name for name in symbols.split() if name in frames]
    if len(exported) < 80:
        sys.exit(f"only {len(exported)} exported functions found in {directory}")
    results = sorted(((*depths.below(name), name) for name in exported), reverse=True,
                     key=lambda found: found[0])
    failed = not complete
    for deep, title, bound in ((False, "single objects", limit), (True, "tree walks", tree_limit)):
        chosen = [found for found in results if found[2] == deep]
        for size, path, _, name in chosen[:3]:
            print(f"  stack, {title}: {size:6} of {bound} bytes: {name}")
            for step in path:
                print(f"      {step}")
        failed = failed or any(found[0] > bound for found in chosen)
    return failed


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    sys.setrecursionlimit(10000)
    sys.exit(main(int(sys.argv[1]), int(sys.argv[2]), sys.argv[3], sys.argv[4]))
