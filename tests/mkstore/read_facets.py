#!/usr/bin/env python3
"""Prints values that a data model document permits (A) and forbids (F), as path<TAB>A|F<TAB>value.

An independent reading for the tests of the filters: nothing is shared with the store builder. Only
values whose answer the builder's documentation promises are printed as forbidden.
"""
import sys
import xml.etree.ElementTree as ElementTree

LIMITS = {"int": (-(2**31), 2**31 - 1), "unsignedInt": (0, 2**32 - 1),
          "long": (-(2**63), 2**63 - 1), "unsignedLong": (0, 2**64 - 1)}


def live(elements):
    return [e for e in elements if e.attrib.get("status") != "deleted"]


class Reader:
    def __init__(self, root):
        self.types = {t.attrib["name"]: t for t in root.findall("dataType")}

    def resolve(self, holder):
        """The base type's name, and the facets that apply: ranges, sizes, enumerations, patterns."""
        facets = {"range": [], "size": [], "enumeration": [], "pattern": []}
        base = None
        if holder.attrib.get("base"):
            base, facets = self.resolve(self.types[holder.attrib["base"]])
        holders = [holder]
        for child in holder:
            if child.tag in LIMITS or child.tag in ("string", "boolean", "dateTime", "base64",
                                                    "hexBinary", "decimal"):
                base = child.tag
                holders.insert(0, child)
            elif child.tag == "dataType":
                base, facets = self.resolve(self.types[child.attrib["ref"]])
                holders.insert(0, child)
        for each in holders:
            for kind in ("range", "size"):
                found = live(each.findall(kind))
                if found:
                    facets[kind] = found
            for kind in ("enumeration", "pattern"):
                facets[kind] = facets[kind] + live(each.findall(kind))
        return base, facets


def integers(base, facets):
    low, high = LIMITS[base]
    ranges = [(max(low, int(r.attrib.get("minInclusive", low))),
               min(high, int(r.attrib.get("maxInclusive", high))),
               int(r.attrib.get("step", 1))) for r in facets["range"]] or [(low, high, 1)]
    for first, last, step in ranges:
        for number in (first, last, min(first + step, last)):
            yield "A", str(number)
        for number in (first - 1, last + 1):
            # Limits of more than ten digits are compared by their leading ones.
            if len(str(abs(number))) <= 10 and not any(a <= number <= b for a, b, _ in ranges):
                yield "F", str(number)
    for text in ("", "x", "1.5", " 1", "1 ", "--1", "1x"):
        yield "F", text


def values(base, facets):
    if base in LIMITS:
        yield from integers(base, facets)
    elif base == "boolean":
        yield from (("A", v) for v in ("0", "1", "true", "false"))
        yield from (("F", v) for v in ("", "2", "TRUE", "yes", "truefalse"))
    elif base == "dateTime":
        yield from (("A", v) for v in ("0001-01-01T00:00:00Z", "2024-02-29T12:34:56.789+01:00"))
        yield from (("F", v) for v in ("x", "2023-02-29T00:00:00Z", "2024-01-01"))
    elif base == "hexBinary":
        for size in facets["size"] or [ElementTree.Element("size")]:
            least = int(size.attrib.get("minLength", 0))
            most = min(int(size.attrib.get("maxLength", 127)), 127)
            yield "A", "a5" * least
            yield "A", "0F" * most
        yield from (("F", v) for v in ("0", "0g", "zz"))
    elif base == "string" and facets["enumeration"] and not facets["pattern"]:
        names = [e.attrib["value"] for e in facets["enumeration"]]
        sizes = [(int(s.attrib.get("minLength", 0)), int(s.attrib.get("maxLength", 10**9)))
                 for s in facets["size"]]
        for name in names:
            fits = not sizes or any(a <= len(name) <= b for a, b in sizes)
            yield ("A" if fits else "F"), name
            yield "F", name + "?"
            yield "F", "?" + name
    elif base == "string" and not facets["pattern"]:
        for size in facets["size"]:
            least = int(size.attrib.get("minLength", 0))
            most = int(size.attrib.get("maxLength", 255))
            yield "A", "x" * least
            yield "A", "y z" * (min(most, 255) // 3)
            if most <= 32 and len(facets["size"]) == 1:
                yield "F", "x" * (most + 1)


def main():
    root = ElementTree.parse(sys.argv[1]).getroot()
    reader = Reader(root)
    for model in root.findall("model"):
        # A counter takes any number, whatever its range.
        counters = {o.attrib.get("numEntriesParameter") for o in model.findall("object")}
        for obj in model.findall("object"):
            for parameter in obj.findall("parameter"):
                syntax = parameter.find("syntax")
                path = obj.attrib["name"].strip() + parameter.attrib["name"].strip()
                defaults = [d.attrib["value"] for d in live(syntax.findall("default"))]
                for default in defaults:
                    print(f"{path}\tA\t{default}")
                if syntax.find("list") is not None or parameter.attrib["name"] in counters:
                    continue
                for verdict, value in values(*reader.resolve(syntax)):
                    if verdict == "A" or value not in defaults:
                        print(f"{path}\t{verdict}\t{value}")


if __name__ == "__main__":
    main()
