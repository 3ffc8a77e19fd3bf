#!/usr/bin/env python3
"""Prints every object and parameter of a data model document as path<TAB>rw, in order.

The right is the one that docs/store-builder.md promises for the store. An independent reading:
nothing is shared with the sources of the store builder.
"""
import sys
import xml.etree.ElementTree as ElementTree


def object_right(obj):
    if not obj.attrib["name"].strip().endswith("{i}."):
        return 0
    if obj.attrib.get("minEntries", "0") == obj.attrib.get("maxEntries", "unbounded"):
        return 0
    return 1 if obj.attrib["access"] == "readWrite" else 2


def main():
    root = ElementTree.parse(sys.argv[1]).getroot()
    for model in root.findall("model"):
        for obj in model.findall("object"):
            path = obj.attrib["name"].strip()
            print(f"{path}\t{object_right(obj)}")
            for parameter in obj.findall("parameter"):
                right = 1 if parameter.attrib["access"] == "readWrite" else 0
                print(f"{path}{parameter.attrib['name'].strip()}\t{right}")


if __name__ == "__main__":
    main()
