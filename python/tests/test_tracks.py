# SPDX-License-Identifier: Apache-2.0
"""The example that draws a recording: what it draws is where the plan of its ships led."""

import importlib.util
from pathlib import Path

import pyarrow as pa
import pytest

pytest.importorskip("matplotlib")


def test_tracks(tmp_path: Path) -> None:
    file = Path(__file__).parents[2] / "examples" / "tracks.py"
    spec = importlib.util.spec_from_file_location("tracks", file)
    assert spec and spec.loader
    tracks = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(tracks)
    place = {"X": 1.0, "Y": 2.0, "Z": 3.0}
    variants = [{"One": {"At": place}, "Two": None}, {"One": None, "Two": {"Is": True, "At": place}}]
    assert tracks.positions(pa.array(variants)).to_pylist() == [place, place]
    tracks.main(["--make", str(tmp_path / "hour")])
    found = tracks.tracks_of(tmp_path / "hour", "PortEntity.Position")
    assert set(found) == set(tracks.PLANS) and all(len(times) == 361 for times, _ in found.values())
    latitude, longitude = tracks.geodetic(found["Ferry Anna"][1])
    assert (latitude[0], longitude[0]) == pytest.approx((53.53493, 6.74323), abs=1e-4)
    assert tracks.speeds(*found["Tilda"])[1][[0, -1]] == pytest.approx([11.6, 0], abs=0.5)
    tracks.main([str(tmp_path / "hour"), str(tmp_path / "hour.png")])
    assert (tmp_path / "hour.png").read_bytes().startswith(b"\x89PNG")
