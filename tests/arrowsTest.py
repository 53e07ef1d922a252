#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""arrowsTest.py: sees that scripts/arrows.py finds the arrows that go where none may go."""
import pathlib
import subprocess
import sys
import tempfile

SCRIPT = pathlib.Path(__file__).resolve().parent.parent / "scripts/arrows.py"
LISTS = "target_sources(omtReader PUBLIC FILE_SET HEADERS BASE_DIRS .. FILES shown.h PRIVATE hidden.h)"
# File, text, and whether there is a fault.
CASES = [
    ("libsrc/omtReader/a.cpp", '#include "omtReader/values/there.h"', False),
    ("libsrc/omtReader/a.cpp", '#include "omt/c.h"', True),
    ("libsrc/omtReader/formats/a.h", '#include "omtReader/hidden.h"', False),
    ("libsrc/omtReader/formats/a.h", '  #  include <omtReader/values/there.h>', True),
    ("libsrc/omtReader/values/a.h", '#include "../formats/there.h"', True),
    ("libsrc/omtReader/shown.h", '#include "omtReader/hidden.h"', True),
    ("libsrc/omtReader/shown.h", '#include <libxml/tree.h>', True),
    ("libsrc/omtReader/shown.h", '#include <string>', False),
    ("libsrc/util/a.cpp", '#define NAME "x.h"\n#include NAME', True),
    ("libsrc/omt/model/deep/a.cpp", '#include "omt/base/view.h"', False),
    ("libsrc/omt/base/a.cpp", '#include "omt/model/model.h"', True),
    ("libsrc/omt/check/a.cpp", '#include "omt/columns/columns.h"', True),
    ("libsrc/omt/codec/a.cpp", '#include "dtString.h"', True),
    ("libsrc/omt/codec/a.cpp", "class DtValue;", True),
    ("tools/omt/a.cpp", '#include "files/there.h"', False),
    ("tools/omt/a.cpp", '#include "omtReader/shown.h"', True),
    ("examples/a.cpp", '#include "omtReader/shown.h"', False),
    ("examples/a.cpp", '#include "omtReader/hidden.h"', True),
    ("tests/a.cpp", '#include "omtReader/hidden.h"', False),
    ("tests/consumer/a.cpp", '#include "omtReader/hidden.h"', True),
]

wrong = 0
for file, text, is_fault in CASES:
    with tempfile.TemporaryDirectory() as folder:
        for name, content in {"libsrc/omtReader/CMakeLists.txt": LISTS,
                              "libsrc/omtReader/shown.h": "", "libsrc/omtReader/hidden.h": "",
                              file: text}.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(content + "\n")
        run = subprocess.run([sys.executable, SCRIPT, folder], capture_output=True, text=True)
    if run.returncode != is_fault or (f"{file}:" in run.stdout) != is_fault or run.stderr:
        print(f"{file}: {text}: fault expected: {is_fault}\n{run.stdout}{run.stderr}")
        wrong += 1
sys.exit(wrong > 0)
