# SPDX-License-Identifier: Apache-2.0
"""The recipes of docs/scale.md, each run as it stands there, give what a recording decodes to."""

import importlib.util
import re
import sys
from pathlib import Path
from typing import Any

import pyarrow as pa
import pytest
from conftest import EXAMPLES

import omtreader as omt
from omtreader import recording

PAGE = Path(__file__).parents[2] / "docs" / "scale.md"
RECIPES = dict(re.findall(r"^\*\*(\w+)\*\*\n+<!--[^\n]*\n```python\n(.*?)^```$", PAGE.read_text(), re.M | re.S))


@pytest.mark.parametrize("name", ["Polars", "DuckDB", "Dask"])
def test_recipe(name: str, tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    if importlib.util.find_spec(name.lower()) is None:
        pytest.skip(f"{name} is not installed")
    files = [EXAMPLES / one for one in ("HarbourBase.xml", "HarbourTraffic.xml")]
    recording.write(EXAMPLES.parent / "updates.csv", tmp_path / "exercise",
                    omt.load(*files, mim=True))
    monkeypatch.chdir(tmp_path)
    seen: dict[str, Any] = {}
    exec(RECIPES[name], seen)
    found = seen["result"]
    assert len(RECIPES) == 4 and all(len(text.splitlines()) <= 10 for text in RECIPES.values())
    if name == "Polars":
        found = found.select("time", "object", "X").rows()
    elif name == "Dask":
        found = found[["time", "object", "X"]].itertuples(index=False, name=None)
    expected = recording.decode("exercise", "PortEntity.Position").to_pylist()
    assert sorted(found) == sorted((row["time"], row["object"], row["value"]["X"])
                                   for row in expected)
