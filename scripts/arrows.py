#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Checks the arrows between the folders: what each may include, and what the public headers may.

    arrows.py [ROOT]            exits with 1, and says where, if an include goes where none may go
    arrows.py --public [ROOT]   lists the public headers, which are the FILE_SETs of the build
"""
import os
import pathlib
import re
import sys

# A folder and the folders that it may include besides itself. A folder without a row belongs to
# the nearest one above that has one. "public" stands for the public headers, wherever they lie,
# "public:FOLDER" for those below a folder.
ROWS = {
    "libsrc/files": "",
    "libsrc/util": "libsrc/files",
    "libsrc/sexp": "libsrc/util",
    "libsrc/geometry": "libsrc/util",
    "libsrc/omtReader": "libsrc/omtReader/formats libsrc/omtReader/values libsrc/geometry "
                        "libsrc/sexp libsrc/util",
    "libsrc/omtReader/formats": "libsrc/omtReader libsrc/sexp libsrc/util",
    "libsrc/omtReader/values": "libsrc/omtReader libsrc/geometry libsrc/sexp libsrc/util",
    "libsrc/omt": "libsrc/omt/recording libsrc/omt/columns libsrc/omt/check libsrc/omt/codec "
                  "libsrc/omt/model libsrc/omt/base",
    "libsrc/omt/base": "",
    "libsrc/omt/model": "libsrc/omt/base",
    "libsrc/omt/codec": "libsrc/omt/model libsrc/omt/base",
    "libsrc/omt/check": "libsrc/omt/codec libsrc/omt/model libsrc/omt/base",
    "libsrc/omt/recording": "libsrc/omt/codec libsrc/omt/model libsrc/omt/base",
    "libsrc/omt/columns": "libsrc/omt/codec libsrc/omt/model libsrc/omt/base",
    "tools": "public:libsrc/omt libsrc/files",
    "examples": "public",
    "benchmarks": "public",
    "fuzz": "public tests",
    "python": "public",
    "tests": "libsrc fuzz public",
    "tests/consumer": "public",
}
# libomt stands without the classes of libomtReader.
APART = "libsrc/omt"
INCLUDE_ROOTS = ("libsrc", "")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*(?:include|include_next|import)\b[ \t]*(.*)', re.M)
STANDARD = re.compile(r"[a-z_0-9]+|std(int|def|bool)\.h")
SUFFIXES = {".h", ".hpp", ".hh", ".inc", ".c", ".cc", ".cpp", ".cxx"}


def is_below(path, folder):
    return path == folder or path.startswith(folder + "/")


def row_of(path):
    """The row that a file belongs to; None outside of all rows."""
    return max((row for row in ROWS if is_below(path, row)), key=len, default=None)


def is_allowed(row, path, public):
    """Whether a file of a row may include the file of ours at a path."""
    owner = row_of(path)
    for allowed in [row, *ROWS[row].split()]:
        name, _, folder = allowed.partition(":")
        if name == "public" and path in public and is_below(path, folder or "libsrc"):
            return True
        # "libsrc" is no row: it stands for all that lies below it.
        if owner == allowed or (allowed == "libsrc" and is_below(path, allowed)):
            return True
    return False


def read_public(root):
    """The headers of all FILE_SETs below libsrc."""
    public = set()
    for lists in sorted(root.glob("libsrc/**/CMakeLists.txt")):
        folder = lists.parent.relative_to(root).as_posix()
        text = re.sub(r"#.*", "", lists.read_text())
        for files in re.findall(r"FILE_SET HEADERS\b.*?\bFILES\b([^)]*?)(?=\bPRIVATE\b|\))", text,
                                flags=re.S):
            public.update(os.path.normpath(f"{folder}/{name}") for name in files.split())
    return public


def resolve(root, file, name):
    """The path below the root that an include of a file means; None if it is none of ours."""
    for folder in (os.path.dirname(file), *INCLUDE_ROOTS):
        path = os.path.normpath(os.path.join(folder, name))
        if not path.startswith("..") and (root / path).is_file():
            return path
    # What is not there is still known by its folder.
    start = os.path.dirname(file) if name.startswith(".") else "libsrc"
    path = os.path.normpath(os.path.join(start, name))
    return path if row_of(path) else None


def faults_of(root, file, public):
    """What is wrong in one file, as (line, text)."""
    text = (root / file).read_text(errors="replace")
    row = row_of(file)

    def line_at(match):
        return text.count("\n", 0, match.start()) + 1

    for match in INCLUDE.finditer(text):
        included = re.match(r'"([^"]+)"|<([^>]+)>', match[1])
        if not included:
            yield line_at(match), f"includes {match[1].strip()}, which names no file"
            continue
        name = included[1] or included[2]
        path = resolve(root, file, name)
        if path is None:
            if file in public and not STANDARD.fullmatch(name):
                yield line_at(match), f"includes {name}; public headers show no other library"
        elif not is_allowed(row, path, public):
            others = ROWS[row] or "nothing of ours"
            yield line_at(match), f"includes {name}; {row} may include, besides itself: {others}"
        elif file in public and path not in public:
            yield line_at(match), f"includes {name}; a public header includes public ones only"
        if is_below(file, APART) and os.path.basename(name).lower().startswith("dt"):
            yield line_at(match), f"includes {name}; {APART} takes no header named dt"
    if is_below(file, APART):
        for match in re.finditer(r"\bDt[A-Z]\w*", text):
            yield line_at(match), f"names {match[0]}; {APART} has no class named Dt"


def check(root):
    public = read_public(root)
    faults = count = 0
    for row in (row for row in ROWS if (root / row).is_dir()):
        for path in sorted((root / row).rglob("*")):
            file = path.relative_to(root).as_posix()
            if path.suffix not in SUFFIXES or row_of(file) != row or not path.is_file():
                continue
            count += 1
            for line, fault in faults_of(root, file, public):
                print(f"{file}:{line}: {fault}")
                faults += 1
    print(f"{count} files, {faults} arrows where none may go")
    return 0 if count and not faults else 1


def main(words):
    is_list = words[:1] == ["--public"]
    root = pathlib.Path((words[is_list:] or [pathlib.Path(__file__).resolve().parent.parent])[0])
    if not is_list:
        return check(root.resolve())
    print("\n".join(sorted(path.removeprefix("libsrc/") for path in read_public(root.resolve()))))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
