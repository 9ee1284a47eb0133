#!/usr/bin/python3
"""The straightforward way to merge the PMML files of splits with lxml: the second yardstick of rqxml_bench_combiner.

usage: combine_lxml.py OUTPUT SPLIT...       Prints the milliseconds that the merge took.
       combine_lxml.py --version             Tells whether lxml is there.
"""

import copy
import sys
import time

from lxml import etree


def named(parent, name):
    """The first child of that name, whatever its namespace."""
    return next((child for child in parent if etree.QName(child).localname == name), None)


def merge_fields(dictionary, known, source):
    for field in source:
        if field.get("name") not in known:
            known[field.get("name")] = (field_copy := copy.deepcopy(field)), {v.get("value") for v in field}
            dictionary.append(field_copy)
            continue
        target, values = known[field.get("name")]
        for value in field:
            if value.get("value") not in values:
                values.add(value.get("value"))
                target.append(copy.deepcopy(value))


def add_segment(segmentation, model, split, tag):
    segment = etree.SubElement(segmentation, tag("Segment"))
    etree.SubElement(segment, tag("SimplePredicate"), field="split", operator="equal", value=split)
    segment.append(copy.deepcopy(model))


def merge(output, files):
    root = None
    for number, file in enumerate(files):
        source = etree.parse(file, etree.XMLParser(huge_tree=True)).getroot()
        dictionary = named(source, "DataDictionary")
        model = dictionary.getnext()
        if root is None:
            namespace = etree.QName(source).namespace
            tag = lambda name: f"{{{namespace}}}{name}"
            root = etree.Element(source.tag, source.attrib, source.nsmap)
            root.append(copy.deepcopy(named(source, "Header")))
            merged = etree.SubElement(root, tag("DataDictionary"))
            mining = etree.SubElement(root, tag("MiningModel"), functionName=model.get("functionName"))
            mining.append(copy.deepcopy(named(model, "MiningSchema")))
            segmentation = etree.SubElement(mining, tag("Segmentation"), multipleModelMethod="selectFirst")
            known = {}
        merge_fields(merged, known, dictionary)
        add_segment(segmentation, model, str(number), tag)
    merged.set("numberOfFields", str(len(merged)))
    etree.ElementTree(root).write(output, xml_declaration=True, encoding="UTF-8")


def main():
    if sys.argv[1:] == ["--version"]:
        print(etree.LXML_VERSION)
        return
    start = time.perf_counter()
    merge(sys.argv[1], sys.argv[2:])
    print((time.perf_counter() - start) * 1000)


if __name__ == "__main__":
    main()
