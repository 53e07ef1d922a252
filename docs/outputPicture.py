#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Draws what omt prints for some commands, as the README shows it.

outputPicture.py OMT EXAMPLES            prints the picture, as SVG
outputPicture.py OMT EXAMPLES PICTURE    tells whether a picture is up to date
"""
import html
import shlex
import subprocess
import sys

MODEL = "models/HarbourBase.xml models/HarbourTraffic.xml --mim"
COMMANDS = [
    f"omt decode {MODEL} --hex --member Vessel.Cargo "
    "00 01 00 00 00 00 01 9C 00 00 02 60 00 00 00 25",
    f"omt decode {MODEL} --hints harbourHints.json --geodetic --member Vessel.Position "
    "41 4C 81 14 60 00 00 00 41 1D 02 72 00 00 00 00 41 53 91 F5 08 00 00 00",
    "omt entity entity-types.csv 1:3:999:1:1:2:0",
    "omt encode models/HarbourBase.xml --mim --member Berth.Identifier "
    "--from \"42 00 00 07\" --set Number=8",
]
COLUMNS, CHARACTER, LINE, MARGIN = 92, 8.4, 18, 16
STYLE = "font: 14px 'DejaVu Sans Mono', Menlo, Consolas, monospace; white-space: pre"


def folded(command):
    """The lines of a command, broken between words."""
    lines = ["$"]
    for word in command.split(" "):
        if len(lines[-1]) + len(word) + 3 > COLUMNS:
            lines[-1] += " \\"
            lines.append("   ")
        lines[-1] += " " + word
    return lines


def shown(omt, examples):
    """All lines with their colours."""
    for command in COMMANDS:
        yield from ((line, "#8fd18f") for line in folded(command))
        words = [omt, *shlex.split(command)[1:]]
        output = subprocess.run(words, cwd=examples, check=True, capture_output=True, text=True)
        yield from ((line, "#e6e6e6") for line in output.stdout.rstrip("\n").split("\n"))
        yield "", ""


def picture(lines):
    width, height = COLUMNS * CHARACTER + 2 * MARGIN, len(lines) * LINE + 2 * MARGIN
    yield f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width:.0f} {height}">'
    yield '<rect width="100%" height="100%" rx="8" fill="#20242b"/>'
    yield f'<g style="{STYLE}">'
    for number, (line, colour) in enumerate(lines):
        if line:
            place = f'x="{MARGIN}" y="{MARGIN + LINE * (number + 0.75):g}"'
            yield f'<text {place} fill="{colour}" xml:space="preserve">{html.escape(line)}</text>'
    yield "</g></svg>"


def main(omt, examples, old=None):
    text = "\n".join(picture(list(shown(omt, examples))[:-1])) + "\n"
    if old is None:
        sys.stdout.write(text)
    elif open(old, encoding="utf-8").read() != text:
        sys.exit(f"{old} does not show what omt prints; make it anew with {sys.argv[0]}")


if __name__ == "__main__":
    main(*sys.argv[1:])
