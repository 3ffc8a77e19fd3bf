#!/usr/bin/env python3
"""Prints every object and parameter of a data model document as path<TAB>access, in order.

An independent reading for the tests of the store builder: nothing is shared with its sources.
"""
import sys
import xml.etree.ElementTree as ElementTree


def main():
    root = ElementTree.parse(sys.argv[1]).getroot()
    for model in root.findall("model"):
        for obj in model.findall("object"):
            path = obj.attrib["name"].strip()
            print(f"{path}\t{obj.attrib['access']}")
            for parameter in obj.findall("parameter"):
                print(f"{path}{parameter.attrib['name'].strip()}\t{parameter.attrib['access']}")


if __name__ == "__main__":
    main()
