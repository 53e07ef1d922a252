#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Writes what omt check finds in published files: data/knownFaults.json, by their hashes, and the
list of it in docs/published-models.md.

    knownFaults.py OMT MODELS       OMT is the tool, MODELS the folder of published models

Each list below is a set that is loaded together; what is found in one of its files is known to be in
it. Findings are judged by hand before the file is committed.
"""
import hashlib
import json
import pathlib
import subprocess
import sys

RPR = [f"evolved/RPR-{name}_v2.0.xml" for name in (
    "Foundation Enumerations Base Physical Aggregate Warfare Communication DER Logistics Minefield "
    "SE SIMAN UA Switches").split()]
NETN = [f"2025/NETN-{name}.xml" for name in "BASE SMC ORG ETR COM SE METOC".split()]
# A set, and whether the MIM belongs to it.
SETS = [
    (["mim/HLAstandardMIM.xml"], False),
    (["2025/HLAstandardMIM-2025.xml"], False),
    (["evolved/RPR_FOM_v2.0_1516-2010.xml"], True),
    (RPR, True),
    ([RPR[0], RPR[1], RPR[2], "evolved/RPR-SE_v2.0.xml", *NETN], True),
    (["evolved/RestaurantFOMmodule.xml"], True),
    (["evolved/RestaurantSOMmodule.xml"], True),
    ([f"evolved/Restaurant{name}.xml" for name in "Processes Food Drinks Soup".split()], True),
    (["2025/RestaurantFOMmodule-2025.xml", "2025/RestaurantExtensionFOMmodule-2025.xml"], True),
    (["2025/RestaurantSOMmodule-2025.xml"], True),
    (["x2000/RPR2-D17.xml"], False),
    (["hla13/RPR2-D17.omd"], False),
]


def main(tool, folder):
    files = {}
    for names, with_mim in SETS:
        run = subprocess.run([tool, "check", "--all", "--json", *["--mim"] * with_mim, *names],
                             cwd=folder, capture_output=True, text=True, check=False)
        known = {name: {} for name in names}
        for finding in json.loads(run.stdout)["findings"]:
            lines = known.get(finding["file"], {}).setdefault(finding["rule"], [])
            if finding.get("line", 0) not in lines:
                lines.append(finding.get("line", 0))
        for name, rules in known.items():
            octets = (folder / name).read_bytes()
            entry = files.setdefault(hashlib.sha256(octets).hexdigest(),
                                     {"name": pathlib.Path(name).name, "known": {}})
            for rule, lines in rules.items():
                entry["known"][rule] = sorted({*entry["known"].get(rule, []), *lines})
    rows = ",\n".join(f'"{key}": {json.dumps(entry, sort_keys=True)}'
                      for key, entry in sorted(files.items(), key=lambda item: item[1]["name"])
                      if entry["known"])
    root = pathlib.Path(__file__).resolve().parent.parent
    (root / "data" / "knownFaults.json").write_text(f'{{"files": {{\n{rows}\n}}}}\n')
    (root / "docs" / "published-models.md").write_text(page(files.values()))


INTRODUCTION = """# What omt check finds in published models

Each file is loaded with the modules that it needs and, but for the oldest formats, with the standard
MIM; no lint is enabled. `omt check` knows these findings by the hashes of the files and shows them
with `--all` only. [rules.md](rules.md) says what each rule is about. The page is written by
`scripts/knownFaults.py`.

| file | rule | findings | lines |
| --- | --- | --- | --- |
"""


def page(files):
    """A row for each rule that fires on a file, with the lines of the first few findings."""
    most = 8
    text = INTRODUCTION
    for entry in sorted(files, key=lambda each: each["name"]):
        for rule, lines in sorted(entry["known"].items()):
            shown = ", ".join(map(str, lines[:most])) + (", ..." if len(lines) > most else "")
            text += f"| {entry['name']} | {rule} | {len(lines)} | {shown} |\n"
        if not entry["known"]:
            text += f"| {entry['name']} | none | 0 | |\n"
    return text


main(pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve())
