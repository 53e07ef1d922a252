# SPDX-License-Identifier: Apache-2.0
"""How the documents become a site; scripts/site.sh runs it.

The documents stay what they are, pages that any forge shows. Two things are added on the way: the
contents, and tabs where a recipe has one part for each language.
"""
import re

from pygments.lexers import SchemeLexer

project = "omtReader"
author = copyright = "the omtReader developers"
extensions = ["myst_parser", "sphinx_design"]
myst_enable_extensions = ["colon_fence"]
# Links to headings are checked, and are those that forges make.
myst_heading_anchors = 4
root_doc = "README"
include_patterns = ["*.md", "docs/*.md", "docs/site/*.md", "python/README.md", "examples/models/README.md"]
exclude_patterns = ["build"]
html_theme = "furo"
html_title = "omtReader"
html_copy_source = False
html_use_index = False
pygments_style = "friendly"

CONTENTS = """
```{toctree}
:hidden:
:caption: Use

docs/traces
docs/cookbook
python/README
docs/recordings
docs/ci
docs/scale
examples/models/README
```

```{toctree}
:hidden:
:caption: Look up

docs/rules
docs/published-models
docs/diff
docs/values-json
docs/model-json
docs/hints
docs/formats
docs/performance
docs/site/headers
```

```{toctree}
:hidden:
:caption: The project

ARCHITECTURE
CONTRIBUTING
CHANGELOG
SECURITY
```
"""
# A part of a recipe: its first line, and all up to the next part or heading.
PART = re.compile(r"^\*\*(C\+\+|Python|Shell)\*\*\n(.*?)(?=^\*\*(?:C\+\+|Python|Shell)\*\*\n|^#+ |\Z)",
                  re.M | re.S)
PARTS = re.compile(rf"(?:{PART.pattern.replace('(C', '(?:C', 1)})+", re.M | re.S)


def tabs(parts):
    items = "".join(f"\n:::{{tab-item}} {language}\n:sync: {language}\n\n{text.strip()}\n:::\n"
                    for language, text in PART.findall(parts[0]))
    return f"::::{{tab-set}}\n:sync-group: language\n{items}::::\n\n"


def change(app, name, source):
    """Sphinx hands over the text of each page in a list of one."""
    if name == "README":
        # What is there, so that a page may come or go.
        known = [line for line in CONTENTS.splitlines()
                 if not re.fullmatch(r"[\w/]+", line) or line in app.env.found_docs]
        source[0] += "\n".join(known)
    if name == "docs/site/headers":
        source[0] += '\n<a href="../../api/index.html">All of them, with a search of their own</a>\n'
    source[0] = PARTS.sub(tabs, source[0])


def setup(app):
    app.connect("source-read", change)
    app.add_lexer("omd", SchemeLexer)
