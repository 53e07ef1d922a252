# SPDX-License-Identifier: Apache-2.0
"""Recordings: lines to Parquet and back, against the tool, and files that lie."""

import json
import os
import random
import subprocess
import sys
import time
import xml.etree.ElementTree as ElementTree
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pyarrow as pa
import pyarrow.parquet as pq
import pytest
from conftest import EXAMPLES, Loaded, grow
from test_package import MODEL, STATE

import omtreader as omt
from omtreader import recording

LINES = {
    "csv": b'\xef\xbb\xbftime;octets;member;note\r\n1;"01 000000-0000";Ship.State;a\n'
           b'x;0x00,0x01;Ship.State;"b;""c"""\n\n3;012;Ship.State;\xff\n4;01\n;;;\n5;;Ship.State;\n',
    "json": b'{"time":1,"octets":"01:00","member":"Ship.State","note":"a"}\n[\n'
            b'{"time":2.5,"octets":null,"member":"Ship.State"}\n'
            b'{"octets":"00","member":"Ship.State","other":1}\n',
}
ROWS = {
    "csv": [(1.0, "010000000000", "a", None), (None, "0001", 'b;"c"', 'time: "x" is none'),
            (3.0, None, "\ufffd", "octets: character 3 is alone, and an octet has two digits"),
            (None, None, None, "2 cells, and the header has 4; 4;01"), (None, None, "", None),
            (5.0, "", "", None)],
    "json": [(1.0, "0100", "a", None), (None, None, None, "no JSON object"), (2.5, "", None, None),
             (None, "00", None, 'the key "other"')],
}


@pytest.fixture
def ships() -> omt.Model:
    return omt.load(MODEL, mim=True)


@pytest.mark.parametrize("form", LINES)
def test_lines(form: str, tmp_path: Path) -> None:
    (tmp_path / "lines").write_bytes(LINES[form])
    rows = recording.read(tmp_path / "lines").read_all()
    rows.validate(full=True)
    assert rows.num_rows == len(ROWS[form])
    for row, (seconds, octets, note, problem) in zip(rows.to_pylist(), ROWS[form]):
        assert (row["time"], row["octets"], row["note"]) == \
            (seconds, None if octets is None else bytes.fromhex(octets), note), row
        assert (row["problem"] or "").startswith(problem or "") and bool(row["problem"]) == bool(problem)
        assert row["problem"] is None or form == "csv" or row["class"] in ("Ship", None)


def test_what_is_no_recording(tmp_path: Path, ships: omt.Model) -> None:
    for text, match in ((b"", "empty"), (b"a,b\n", "member"), (b"member,octets,fault\n", "result"),
                        (b"[]\n{}", "member")):
        (tmp_path / "none").write_bytes(text)
        with pytest.raises(recording.RecordingError, match=match):
            recording.read(tmp_path / "none")
    good = {"member": ["a"], "octets": [b""]}
    rows: list[Any] = [pa.table({"octets": [b""]}), pa.table(dict(good, octets=["00"])),
                       pa.table(dict(good, value=[1])), pa.table(dict(good, time=["x"])),
                       [{"member": "a", "octets": b""}] * 40000 + [{"member": 1}],
                       [{"member": "a", "octets": "00"}], {"member": "a", "octets": b""}, None, [5]]
    for one in rows:
        with pytest.raises((ValueError, TypeError)):
            recording.write(one, tmp_path / "out", ships)
    assert not [one for one in (tmp_path / "out").rglob("*") if one.is_file()]


def test_a_folder_decodes_with_nothing_but_itself(tmp_path: Path) -> None:
    names = ["HarbourBase.xml", "HarbourTraffic.xml"]
    for name in names:
        (tmp_path / name).write_bytes((EXAMPLES / name).read_bytes())
    model = omt.load(*(tmp_path / name for name in names), mim=True)
    assert recording.write(EXAMPLES.parent / "updates.csv", tmp_path / "kept", model) == 14
    expected = recording.decode(tmp_path / "kept", "PortEntity.Position").to_pylist()
    assert [row["object"] for row in expected] == ["Tilda", "Patient Ox"]
    for name in names:
        (tmp_path / name).unlink()
    code = "import sys; from omtreader import recording as r; " \
           "print(r.decode(sys.argv[1], 'PortEntity.Position').to_pylist())"
    again = subprocess.run([sys.executable, "-c", code, tmp_path / "kept"], capture_output=True,
                           text=True, check=True, env=dict(os.environ, PYTHONPATH=":".join(sys.path)))
    assert eval(again.stdout) == expected
    late = recording.decode(tmp_path / "kept", "PortEntity.Name", where=[("time", ">", 60)],
                            columns=["time", "octets"])
    assert late.column_names == ["time", "octets", "value", "fault"] and late.num_rows == 0
    assert recording.write([], tmp_path / "kept", model) == 0
    assert recording.write([{"member": "Tug.Name", "octets": b"!"}], tmp_path / "kept", model) == 1
    wrong: list[tuple[dict[str, Any], type[Exception], str]] = [
        (dict(columns=["tag"]), recording.RecordingError, "a column 'tag'; there are time, "),
        (dict(member="GeocentricPosition"), omt.UnknownName, "CLASS.MEMBER"),
        (dict(member="PortEntity.Nane"), omt.UnknownName, "did you mean Name"),
        (dict(where="time > 60"), TypeError, "where is"),
        (dict(where=[("tme", ">", 60)]), recording.RecordingError, "tme")]
    for arguments, error, match in wrong:
        with pytest.raises(error, match=match):
            recording.decode(tmp_path / "kept", **{"member": "PortEntity.Name", **arguments})


def test_reading_waits_for_who_takes_the_rows(tmp_path: Path, ships: omt.Model) -> None:
    rows = [{"class": "Ship", "member": "State", "octets": STATE, "tag": at.to_bytes(1000, "big")} for at in range(20_000)]
    recording.write(rows, tmp_path / "kept", ships)
    file, = (tmp_path / "kept").rglob("*.parquet")
    pq.write_table(pq.ParquetFile(file).read(), file, row_group_size=500)
    before = pa.total_allocated_bytes()
    batches = recording.batches(file, "Ship.State")
    assert len(batches.read_next_batch()) == 500
    time.sleep(0.5)
    assert pa.total_allocated_bytes() - before < 4_000_000, "20 MB are in the file"
    assert sum(len(batch) for batch in batches) == 19_500


def test_names_of_classes_stay_in_the_folder(tmp_path: Path, ships: omt.Model) -> None:
    names = ["../../x", "..", "/etc", "a=b/c", "\u00e4\n\0%", "", None, "Ship", "x" * 5000, "CON"]
    rows = [{"class": name, "member": "State", "octets": STATE} for name in names * 2]
    recording.write(rows, tmp_path / "kept", ships)
    folders = [one for one in tmp_path.rglob("*") if one.is_dir()]
    assert len(folders) == len(names) and all(len(one.name) < 250 for one in folders)
    assert sorted(one.parent.name for one in folders if one.name != "kept") == ["kept"] * 9
    read = pa.concat_tables([pq.ParquetFile(one).read() for one in tmp_path.rglob("*.parquet")])
    assert set(read["class"].to_pylist()) == set(names)
    assert recording.decode(tmp_path / "kept", "Ship.State")["class"].to_pylist() == ["Ship"] * 2


def test_metadata_that_lies(tmp_path: Path, ships: omt.Model) -> None:
    recording.write([{"class": "Ship", "member": "State", "octets": STATE}], tmp_path, ships)
    path = next(tmp_path.rglob("*.parquet"))
    rows = pq.ParquetFile(path).read().replace_schema_metadata()
    good = json.loads(pq.read_metadata(path).metadata[recording.KEY])
    document = good["documents"][1]
    other = rows.set_column(rows.column_names.index("octets"), "octets", [["x"]])
    cases = [(rows, None, "no models"), (other, good, "octets"), (rows.drop_columns(["time"]), good, "time"),
             (rows, [], "no documents"), (rows, dict(good, form=2), "form"), (rows, "[" * 100000, "JSON"),
             (rows, dict(good, sha256="0"), "hash"), (rows, dict(good, documents=[{}]), "name"),
             (rows, dict(good, documents=[dict(document, octets="AAAA")]), "unpacked"),
             (rows, dict(good, documents=[dict(document, octets=document["octets"][:400])]), "whole")]
    for table, metadata, match in cases:
        text = metadata if isinstance(metadata, str) else json.dumps(metadata)
        with pq.ParquetWriter(path, table.schema) as writer:
            writer.write_table(table)
            writer.add_key_value_metadata({recording.KEY.decode(): text} if metadata is not None else {})
        with pytest.raises(recording.RecordingError, match=match):
            recording.decode(tmp_path, "Ship.State")
    path.write_bytes(path.read_bytes()[:-9])
    with pytest.raises(recording.RecordingError, match="no Parquet"):
        recording.decode(tmp_path, "Ship.State")


def members(element: Any, path: str = "") -> Iterator[tuple[str, str]]:
    """Attributes and parameters below an element, each with the full name of its class."""
    for one in element:
        kind, name = one.tag.rpartition("}")[2], (one.findtext("{*}name") or "").strip()
        if kind in ("attribute", "parameter"):
            yield path, name
        else:
            yield from members(one, f"{path}.{name}".strip(".") if kind.endswith("Class") else path)


def test_the_tool_says_the_same(model: Loaded, tmp_path: Path) -> None:
    """Lines of all members with random octets: as the tool has them, and decoded out of Parquet."""
    if "OMT_TOOL" not in os.environ:
        pytest.skip("OMT_TOOL is not set")
    source, codec = random.Random(4), model.codec
    rows: dict[str, list[bytes]] = {}
    trees = [ElementTree.parse(file).getroot() for file in model.files]
    for owner, name in (one for tree in trees for one in members(tree)):
        path = f"{owner}.{name}"
        if len(codec.members(path)) == 1 and path not in rows:
            made = [grow(codec, path, source.randbytes(size), source) or b"" for size in (0, 30)]
            rows[path] = [octets[:cut] for octets in made for cut in (None, -1)]
    lines = tmp_path / "lines.csv"
    lines.write_text("member,octets\n" + "".join(f"{path},{octets.hex()}\n" for path in rows
                                                 for octets in rows[path]))
    run = subprocess.run([os.environ["OMT_TOOL"], "decode", "--mim", "--updates", lines, *model.files],
                         capture_output=True, text=True)
    told = map(json.loads, run.stdout.split("\n")[:-1])
    for path, row in ((path, row) for path in rows for row in rows[path]):
        line = next(told)
        try:
            assert json.loads(codec.decode_json(path, row)) == line["value"]
        except omt.DecodeError as error:
            assert (line["fault"]["path"], line["fault"]["left"]) == (error.path, error.left)
    assert not list(told)
    recording.write(lines, tmp_path / "kept", omt.load(*model.files, mim=True))
    for path in list(rows)[::20]:
        kept = recording.decode(tmp_path / "kept", path, columns=[])
        assert repr(kept.to_pylist()) == repr(pa.table(codec.decode_column(path, rows[path])).to_pylist())
