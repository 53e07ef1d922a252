# SPDX-License-Identifier: Apache-2.0
"""Recordings: lines to Parquet and back, against the tool, and files that lie."""

import json
import os
import random
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path
from typing import Any

import pyarrow as pa
import pyarrow.parquet as pq
import pytest
from conftest import EXAMPLES, Loaded, grow
from test_agreement import plain, same
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
    for row, (time, octets, note, problem) in zip(rows.to_pylist(), ROWS[form]):
        assert (row["time"], row["octets"], row["note"]) == \
            (time, None if octets is None else bytes.fromhex(octets), note), row
        assert (row["problem"] or "").startswith(problem or "") and bool(row["problem"]) == bool(problem)
        assert row["problem"] is None or form == "csv" or row["class"] in ("Ship", None)


def test_what_is_no_recording(tmp_path: Path, ships: omt.Model) -> None:
    for text, match in ((b"", "empty"), (b"a,b\n", "member"), (b"member,octets,fault\n", "result"),
                        (b"[]\n{}", "member")):
        (tmp_path / "none").write_bytes(text)
        with pytest.raises(recording.RecordingError, match=match):
            recording.read(tmp_path / "none")
    rows: list[Any] = [pa.table({"octets": [b""]}), pa.table({"member": ["a"], "octets": ["00"]}),
                       pa.table({"member": ["a"], "octets": [b""], "value": [1]}),
                       pa.table({"member": ["a"], "octets": [b""], "time": ["x"]}),
                       [{"member": "a", "octets": b""}] * 40000 + [{"member": 1}]]
    for one in rows:
        with pytest.raises(ValueError):
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
    with pytest.raises(recording.RecordingError, match="has a column"):
        recording.decode(tmp_path / "kept", "PortEntity.Name", columns=["tag"])


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


def members(files: list[str]) -> list[tuple[str, str]]:
    """Attributes and parameters, each with the full name of its class."""
    found: list[tuple[str, str]] = []

    def walk(element: Any, path: str) -> None:
        kind = element.tag.rpartition("}")[2]
        name = next(((one.text or "").strip() for one in element if one.tag.endswith("}name")), "")
        if kind in ("objectClass", "interactionClass"):
            path = f"{path}.{name}" if path else name
        elif kind in ("attribute", "parameter"):
            found.append((path, name))
        for one in element:
            walk(one, path)

    for file in files:
        walk(ElementTree.parse(file).getroot(), "")
    return list(dict.fromkeys(found))


def test_the_tool_says_the_same(model: Loaded, tmp_path: Path) -> None:
    """Lines of all members with random octets: values of the tool, dicts, and Parquet decoded."""
    if "OMT_TOOL" not in os.environ:
        pytest.skip("OMT_TOOL is not set")
    source, codec = random.Random(4), model.codec
    rows = []
    for owner, name in members(model.files):
        if len(codec.members(f"{owner}.{name}")) != 1:
            continue
        for size in (0, 30):
            octets = grow(codec, f"{owner}.{name}", source.randbytes(size), source) or b""
            rows += [(owner, name, octets), (owner, name, octets[:-1])]
    lines = tmp_path / "lines.csv"
    lines.write_text("event,class,member,octets\n" + "".join(
        f"{at},{owner},{name},{octets.hex()}\n" for at, (owner, name, octets) in enumerate(rows)))
    run = subprocess.run([os.environ["OMT_TOOL"], "decode", "--mim", "--updates", lines, *model.files],
                         capture_output=True, text=True)
    told = [json.loads(line) for line in run.stdout.split("\n")[:-1]]
    assert len(told) == len(rows), run.stderr
    recording.write(lines, tmp_path / "kept", omt.load(*model.files, mim=True))
    kept: dict[int, dict[str, Any]] = {}
    for owner, name in list(dict.fromkeys((owner, name) for owner, name, _ in rows))[::20]:
        for row in recording.decode(tmp_path / "kept", f"{owner}.{name}").to_pylist():
            kept[row["event"]] = row
    assert kept
    for at, (owner, name, octets) in enumerate(rows):
        try:
            value, fault = codec.decode(f"{owner}.{name}", octets), None
        except omt.DecodeError as error:
            value, fault = None, error
            assert told[at]["fault"]["path"] == error.path and told[at]["fault"]["left"] == error.left
            assert at not in kept or kept[at]["fault"] in (str(error), error.what)
        assert ("fault" in told[at]) == bool(fault)
        if at in kept:
            assert bool(kept[at]["fault"]) == bool(fault)
        if not fault:
            assert same(plain(value), plain(told[at]["value"]))
            if at in kept and "\\ud" not in codec.decode_json(f"{owner}.{name}", octets):
                assert same(plain(kept[at]["value"], True), plain(told[at]["value"], True))
