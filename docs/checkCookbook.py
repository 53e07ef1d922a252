#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Checks docs/cookbook.md against the programs in examples/cookbook.

checkCookbook.py page RECIPE...         the page has these recipes in this order, and there are no
                                        other programs
checkCookbook.py recipe RECIPE PROGRAM  the recipe's code is in the program's source, and its output
                                        is what the program prints when it is run in examples
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import textwrap

ROOT = pathlib.Path(__file__).resolve().parent.parent
EXAMPLES = ROOT / "examples"


def recipes():
    """The text of every recipe by the name in the link below its heading."""
    page = (ROOT / "docs/cookbook.md").read_text()
    sections = re.split(r"^## ", page, flags=re.M)[1:]
    link = re.compile(r"\(\.\./examples/cookbook/(\w+)\.cpp\)")
    return {found[1]: section for section in sections if (found := link.search(section))}


def blocks(section, language):
    return re.findall(rf"^```{language}\n(.*?)^```$", section, flags=re.M | re.S)


def stands_in(block, source):
    """Whether the lines follow each other in the source, all of them indented by the same."""
    return any(textwrap.indent(block, " " * depth) in source for depth in (0, 4, 8))


def output_of(program):
    """What a program prints; its own files go to a folder of its own."""
    with tempfile.TemporaryDirectory() as folder:
        environment = {**os.environ, "TMPDIR": folder}
        environment.pop("RTI_CONFIG", None)
        run = subprocess.run([os.path.abspath(program)], cwd=EXAMPLES, env=environment,
                             capture_output=True, text=True, timeout=120)
    if run.returncode or run.stderr:
        sys.exit(f"{program} ended with {run.returncode}\n{run.stderr}")
    return run.stdout


def check_page(*names):
    programs = {source.stem for source in (EXAMPLES / "cookbook").glob("*.cpp")}
    if list(recipes()) != list(names) or programs != set(names):
        sys.exit(f"Built: {names}\non the page: {list(recipes())}\nin the folder: {programs}")


def check_recipe(name, program):
    recipe = recipes().get(name, "")
    source = "\n" + (EXAMPLES / f"cookbook/{name}.cpp").read_text()
    code, output = blocks(recipe, "cpp"), blocks(recipe.split("\n**Python**\n")[0], "text")
    if not code or len(output) != 1:
        sys.exit(f"{name}: a recipe has code, and one block of text for the output")
    for block in code:
        if not stands_in("\n" + block, source):
            sys.exit(f"{name}.cpp does not have these lines:\n{block}")
    if (printed := output_of(program)) != output[0]:
        sys.exit(f"{name} prints:\n{printed}and the page says:\n{output[0]}")


{"page": check_page, "recipe": check_recipe}[sys.argv[1]](*sys.argv[2:])
