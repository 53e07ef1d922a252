#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Runs what the documents show, and compares what it prints.

checkCommands.py console OMT   blocks of `console`: commands after "$ ", and what they print; of the
                               manual page that its examples are no wrong usage
checkCommands.py python        blocks of `python`, each with the block of `text` right after it

The blocks of a page run one after the other in a folder that has the examples and, from OMT_MODELS,
the published RPR FOM; "./run" and "omt" are the tool there. A line "..." stands for any lines.
Not run is what has a comment `<!-- not run: REASON -->` above it, and, without OMT_MODELS, what
names the RPR FOM; if there is such a block the status is 77.
"""
import difflib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import textwrap

ROOT = pathlib.Path(__file__).resolve().parent.parent
MODELS = os.environ.get("OMT_MODELS")
BLOCK = re.compile(r"^(?:<!-- not run: (?P<reason>.*?) -->\n)?```(?P<language>\w+)\n(?P<text>.*?)^```$",
                   re.M | re.S)
OUTPUT = re.compile(r"\s*```text\n(.*?)^```$", re.M | re.S)
PAGES = ["*.md", "docs/*.md", "python/README.md", "examples/*/README.md"]
PUBLISHED = re.compile(r"\bRPR[-_]\w|\brpr\b")
# What a block prints before its own output, and after each command.
MARK = "\x1e\n"


class Block:
    """One block of a page: pairs of a command and its output, which is None where none is shown."""

    def __init__(self, page, found, text):
        self.place = f"{page}:{text.count(chr(10), 0, found.start('language')) + 1}"
        self.language, self.text = found["language"], found["text"]
        self.is_left_out = found["reason"]
        if not MODELS and PUBLISHED.search(self.text):
            self.is_left_out = "needs OMT_MODELS"
        after = OUTPUT.match(text, found.end())
        self.output = after[1] if after else None

    def commands(self):
        """Of a block of the shell; a command that ends with a backslash goes on."""
        pairs = []
        for line in self.text.splitlines(keepends=True):
            if line.startswith("$ "):
                pairs.append([line[2:], ""])
            elif not pairs:
                sys.exit(f"{self.place}: a block of console begins with a command")
            else:
                is_command = pairs[-1][0].endswith("\\\n") and not pairs[-1][1]
                pairs[-1][0 if is_command else 1] += line
        return pairs


def blocks_of(page, language):
    text = (ROOT / page).read_text()
    return [Block(page, found, text) for found in BLOCK.finditer(text)
            if found["language"] == language]


def furnish(folder, omt):
    """The examples, flat and as they lie in the project, what was published, and the tool."""
    shutil.copytree(ROOT / "examples", folder / "examples")
    for source in [ROOT / "examples", ROOT / "examples/models"]:
        for file in source.iterdir():
            if file.is_dir():
                (folder / file.name).symlink_to(folder / file.relative_to(ROOT))
            else:
                shutil.copy(file, folder)
    if MODELS:
        (folder / "rpr").mkdir()
        for file in pathlib.Path(MODELS, "evolved").glob("RPR*.xml"):
            (folder / file.name).symlink_to(file)
            if not file.name.startswith("RPR_FOM"):
                (folder / "rpr" / file.name).symlink_to(file)
    (folder / "tool").mkdir()
    if omt:
        for name in ["run", "tool/omt"]:
            (folder / name).symlink_to(os.path.abspath(omt))


def run(words, folder):
    """What one process prints for all blocks of a page, cut at the marks."""
    environment = {**os.environ, "PATH": f"{folder / 'tool'}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}
    environment.pop("RTI_CONFIG", None)
    done = subprocess.run(words, cwd=folder, env=environment, text=True, timeout=300,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT)
    return done.stdout.split(MARK)


def agrees(printed, shown):
    """Whether lines are what is shown, where "..." stands for any."""
    lines = [line.rstrip() for line in shown.splitlines()]
    pattern = "".join(r"(?:.*\n)*?" if line.strip() == "..." else re.escape(line) + r"\n"
                      for line in lines)
    return re.fullmatch(pattern, "".join(line.rstrip() + "\n" for line in printed.splitlines()))


def differences(place, printed, shown):
    """What is to be said of one output: nothing where it is right or none is shown."""
    if shown is None or agrees(printed, shown):
        return []
    lines = difflib.unified_diff(shown.splitlines(), printed.splitlines(), "shown", "printed",
                                 lineterm="", n=1)
    return [f"{place}: prints something else:", *lines]


def check_console(page, blocks, folder):
    pairs = [(block.place, *pair) for block in blocks for pair in block.commands()]
    script = "".join(f"{command}was=$?; printf '\\x1e\\n'; (exit $was)\n" for _, command, _ in pairs)
    printed = run(["bash", "-c", script], folder)
    if len(printed) != len(pairs) + 1:
        return [f"{page}: the shell ended early:", printed[-1]]
    return [line for (place, command, shown), text in zip(pairs, printed)
            for line in differences(f"{place}: {command.splitlines()[0]}", text, shown)]


def check_python(_, blocks, folder):
    mark = f"print({MARK[:-1]!r}, flush=True)\n"
    program = "".join(block.text + mark for block in blocks)
    printed = run([sys.executable, "-B", "-c", program], folder)
    if len(printed) != len(blocks) + 1:
        return [f"{blocks[len(printed) - 1].place}: does not run:", printed[-1]]
    return [line for block, text in zip(blocks, printed)
            for line in differences(block.place, text, block.output)]


def check_manual(folder):
    """The examples of the manual page, whose output it does not show."""
    examples = re.findall(r"^\.EX\n(.*?)^\.EE$", (ROOT / "docs/omt.1").read_text(), re.M | re.S)
    commands = textwrap.dedent("".join(examples)).replace(r"\-", "-").replace(r"\e", "\\")
    script = f"trap '[[ $? -lt 2 ]] || echo wrong usage: $BASH_COMMAND' ERR\n{commands}"
    printed = run(["bash", "-c", script], folder)[0]
    return [line for line in printed.splitlines() if line.startswith("wrong usage")]


def main(language, omt=None):
    check = {"console": check_console, "python": check_python}[language]
    pages = [str(file.relative_to(ROOT)) for place in PAGES
             for file in sorted(ROOT.glob(place))]
    faults, run_blocks, left_out = [], 0, []
    for page in pages:
        blocks = blocks_of(page, language)
        left_out += [block for block in blocks if block.is_left_out]
        blocks = [block for block in blocks if not block.is_left_out]
        run_blocks += len(blocks)
        if blocks:
            with tempfile.TemporaryDirectory() as folder:
                furnish(pathlib.Path(folder), omt)
                faults += check(page, blocks, pathlib.Path(folder))
    if language == "console":
        with tempfile.TemporaryDirectory() as folder:
            furnish(pathlib.Path(folder), omt)
            faults += check_manual(pathlib.Path(folder))
    for block in left_out:
        print(f"{block.place}: not run: {block.is_left_out}")
    print(f"{run_blocks} blocks of {language} run, {len(left_out)} left out")
    if faults:
        sys.exit("\n".join(faults))
    sys.exit(77 if any(block.is_left_out == "needs OMT_MODELS" for block in left_out) else 0)


if __name__ == "__main__":
    main(*sys.argv[1:])
