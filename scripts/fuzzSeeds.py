#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""fuzzSeeds.py MODELS FOLDER: makes seeds for the fuzz targets from every model below a folder.

A model is thinned, as a fuzzer gets nowhere with megabytes: of the parts that stand side by side
under one name only the first few stay. Seeds hold what others wrote, so they never go into the
project: FOLDER is outside of it or below its build folder. It gets a folder for each target.
"""
import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(__file__).resolve().parent.parent
KEPT_OF_A_NAME = 3
KEPT_ROWS = 200
RECORD = bytes.fromhex("0103004E3D020000") + bytes(16)  # what fuzzRecords takes before the table

OCTETS = bytes.fromhex("0001000200030000000148454c4c4f00000000103fc00000c0000000") * 2


def thin(element):
    """Takes off all but the first few of the children of one name, at every depth."""
    pending = [element]
    while pending:
        parent = pending.pop()
        count = {}
        for child in list(parent):
            count[child.tag] = count.get(child.tag, 0) + 1
            if count[child.tag] > KEPT_OF_A_NAME:
                parent.remove(child)
            else:
                pending.append(child)


def thin_clauses(text):
    """A model of HLA 1.3 without all but the first few of the clauses of one keyword, likewise."""
    kept, counts, skipped_at = [], [{}], 0
    for piece in re.finditer(r'"(?:\\.|[^"\\])*"|;[^\n]*|\(\s*([^\s()"]*)|\)|[^"();]+', text):
        if piece[0][0] == "(":
            count = counts[-1][piece[1]] = counts[-1].get(piece[1], 0) + 1
            counts.append({})
            if count > KEPT_OF_A_NAME and not skipped_at:
                skipped_at = len(counts)
        if not skipped_at:
            kept.append(piece[0])
        if piece[0] == ")" and len(counts) > 1:
            if skipped_at == len(counts):
                skipped_at = 0
            counts.pop()
    return re.sub(r"\n\s*\n", "\n", "".join(kept))


def seeds_of_xml(model):
    root = ElementTree.parse(model).getroot()
    namespace = re.match(r"\{(.*)\}", root.tag)
    ElementTree.register_namespace("", namespace[1] if namespace else "")
    thin(root)
    text = ElementTree.tostring(root, encoding="utf-8", xml_declaration=True)
    yield "xmlReader", b"0" + text
    yield "xmlReader", b"4" + text  # merged with the standard MIM
    yield "readWriteRead", text
    yield "modelRead", text
    yield "modelWrite", text
    yield "modelDiff", text
    yield "codec", text + b"\0\0" + OCTETS


def seeds_of_hla13(model):
    text = thin_clauses(model.read_text(encoding="latin-1")).encode("latin-1")
    yield "omtReader", text
    yield "readWriteRead", text
    yield "modelRead", text
    yield "modelWrite", text
    yield "modelDiff", text
    yield "codec", text + b"\0\0" + OCTETS


def seeds_of_table(model):
    rows = model.read_bytes().splitlines(keepends=True)
    yield "codecTexts", b"\5" + b"".join(rows[:KEPT_ROWS])
    yield "records", RECORD + b"".join(rows[::max(1, len(rows) // KEPT_ROWS)])


MAKERS = {".xml": seeds_of_xml, ".omd": seeds_of_hla13, ".csv": seeds_of_table}


def main(models, folder):
    if folder.is_relative_to(ROOT) and not folder.is_relative_to(ROOT / "build"):
        sys.exit(f"{folder}: seeds do not go into the project")
    total = 0
    for model in sorted(path for path in models.rglob("*") if path.suffix in MAKERS):
        for count, (target, seed) in enumerate(MAKERS[model.suffix](model)):
            file = folder / target / f"{model.stem}-{count}"
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(seed)
            total += 1
    print(f"{total} seeds from {models}")
    return 0 if total else 1


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(*(pathlib.Path(word).resolve() for word in sys.argv[1:])))
