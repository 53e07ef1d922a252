# SPDX-License-Identifier: Apache-2.0
# Compares the virtual tables that g++ makes of the public headers with slotOrder.txt.
"""slotOrder.py COMPILER INCLUDE_FOLDER: exits with 1, and says where, if a slot has moved."""
import pathlib
import re
import subprocess
import sys
import tempfile

THE_EXPECTED_FILE = pathlib.Path(__file__).with_suffix(".txt")


def read_expected():
    """The full slot list of each class: its base's slots, then its own."""
    text = re.sub(r"^#.*\n", "", THE_EXPECTED_FILE.read_text(), flags=re.M)
    text = re.sub(r"\n +", " ", text)
    expected = {}
    for name, base, slots in re.findall(r"^(\w+)(?: < (\w+))?: ?(.*)$", text, flags=re.M):
        own = [s for slot in slots.split() for s in ("~~" if slot == "~" else [slot])]
        expected[name] = expected[base] + own if base else own
    return expected


def header_of(name):
    """A header is named after its class: DtOMTTree is in omtTree.h."""
    stem = name.removeprefix("Dt")
    head = re.match(r"[A-Z]+(?=[A-Z][a-z])|[A-Z]+", stem).group()
    return f"omtReader/{head.lower()}{stem[len(head):]}.h"


def read_compiled(compiler, include_folder, names):
    """The slot list of each class as compiled, destructors as "~"."""
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder, "all.cpp")
        source.write_text("".join(f'#include "{header_of(name)}"\n' for name in names))
        subprocess.run([compiler, "-std=c++20", "-I", include_folder, "-fsyntax-only",
                        "-fdump-lang-class=all.class", source], cwd=folder, check=True)
        dump = pathlib.Path(folder, "all.class").read_text()
    compiled = {}
    for name, table in re.findall(r"^Vtable for (\w+)\n.*\n((?:\d+ .*\n)+)", dump, flags=re.M):
        # The first entry is no slot. The destructors of an abstract class are shown as 0.
        slots = re.findall(r"^\d+ +(?:\(.*\))?(?:\w+::)?(~|\w+)", table, flags=re.M)[1:]
        compiled[name] = ["~" if slot == "0" else slot for slot in slots]
    return compiled


def agree(expected, compiled):
    """A slot without a body has no name in the table; the classes that fill it have one."""
    is_pure = compiled == "__cxa_pure_virtual" and expected not in ("~", "nothing")
    return is_pure or compiled == expected


def first_difference(expected, compiled):
    length = max(len(expected), len(compiled))
    pairs = zip(expected + ["nothing"] * (length - len(expected)),
                compiled + ["nothing"] * (length - len(compiled)))
    return next(((at, *pair) for at, pair in enumerate(pairs) if not agree(*pair)), None)


def main(compiler, include_folder):
    include_folder = str(pathlib.Path(include_folder).resolve())
    expected = read_expected()
    compiled = read_compiled(compiler, include_folder, expected)
    failures = 0
    for name, slots in expected.items():
        difference = first_difference(slots, compiled.get(name, []))
        if difference:
            failures += 1
            print("{}: slot {} should be {} and is {}".format(name, *difference))
    print(f"{len(expected)} classes compared, {failures} differ")
    return 1 if failures or not expected else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
