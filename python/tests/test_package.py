# SPDX-License-Identifier: Apache-2.0
"""The surface: loading, values, fields, errors, and columns of every kind that Python has."""

import gc
import pickle
import threading
from pathlib import Path

import pyarrow as pa
import pytest
from conftest import EXAMPLES

import omtreader as omt

MODEL = b"""<objectModel xmlns='http://standards.ieee.org/IEEE1516-2010'><objects><objectClass>
<name>HLAobjectRoot</name><objectClass><name>Ship</name><attribute><name>State</name>
<dataType>State</dataType></attribute></objectClass></objectClass></objects><dataTypes>
<enumeratedDataTypes><enumeratedData><name>Flag</name><representation>HLAoctet</representation>
<enumerator><name>Red</name><value>1</value></enumerator>
<enumerator><name>Blue</name><value>2</value></enumerator></enumeratedData></enumeratedDataTypes>
<fixedRecordDataTypes><fixedRecordData><name>State</name><encoding>HLAfixedRecord</encoding>
<field><name>Flag</name><dataType>Flag</dataType></field>
<field><name>Speed</name><dataType>HLAfloat64BE</dataType></field>
<field><name>Name</name><dataType>HLAunicodeString</dataType></field>
</fixedRecordData></fixedRecordDataTypes></dataTypes></objectModel>"""
STATE = bytes.fromhex("01 00000000000000 4024000000000000 00000002 00410042")


@pytest.fixture(scope="module")
def codec() -> omt.Codec:
    return omt.load(MODEL, mim=True, strict=True).codec()


def test_values(codec: omt.Codec) -> None:
    value = codec.decode("Ship.State", STATE)
    assert value == {"Flag": "Red", "Speed": 10.0, "Name": "AB"}
    assert value["Flag"].value == 1 and pickle.loads(pickle.dumps(value))["Flag"].value == 1
    assert codec.encode("Ship.State", value) == codec.encode("State", dict(value, Flag=1)) == STATE
    assert codec.decode("State", b"\x07" + STATE[1:])["Flag"] == 7
    assert codec.decode("State", memoryview(bytearray(STATE))) == value
    for path, expected in {"Flag": "Red", "Speed": 10.0, "Name": "AB", "Name[1]": None}.items():
        if expected is not None:
            assert codec.field("Ship.State", path)(STATE) == expected
    assert codec.field("State", "Name")(STATE[:20]) is None
    assert "Speed: HLAfloat64BE" in codec.layout("State")


def test_errors(codec: omt.Codec, tmp_path: Path) -> None:
    with pytest.raises(omt.DecodeError) as fault:
        codec.decode("Ship.State", STATE[:12])
    assert (fault.value.path, fault.value.offset, fault.value.needed, fault.value.left,
            fault.value.partial) == ("Speed", 8, 8, 4, {"Flag": "Red"})
    with pytest.raises(omt.DecodeError, match="1 octets are left over"):
        codec.decode("State", STATE + b"!")
    for value, match in ((dict(Flag="Rde", Speed=1, Name=""), "Flag"), ({}, "missing"), (None, "expected")):
        with pytest.raises(omt.EncodeError, match=match):
            codec.encode("State", value)
    recursive: list[object] = []
    recursive.append(recursive)
    with pytest.raises(ValueError):
        codec.encode("State", recursive)
    for wrong in (object(), {1: 2}):
        with pytest.raises(TypeError):
            codec.encode("State", wrong)
    with pytest.raises(omt.UnknownName, match="State"):
        codec.decode("Ship.Stat", STATE)
    with pytest.raises(omt.UnknownName):
        codec.field("State", "Sped")
    with pytest.raises(FileNotFoundError):
        omt.load(tmp_path / "none.xml")
    with pytest.raises(omt.ModelError) as model:
        omt.load(b"no model", strict=True)
    assert model.value.findings and not omt.load(b"no model").is_sound
    assert not omt.load(EXAMPLES / "HarbourBase.xml", mim=True, strict=True).codec().findings


def test_columns(codec: omt.Codec) -> None:
    rows = [STATE, None, STATE[:3], b"\x09" + STATE[1:]]
    column = pa.array(rows, pa.binary())
    padded = pa.array([b"x", *rows], pa.large_binary())
    expected = pa.record_batch(codec.decode_column("Ship.State", rows)).to_pylist()
    assert [one["fault"] is None for one in expected] == [True, True, False, True]
    assert expected[3]["value"]["Flag"] == "#9"
    for given in (column, padded[1:], column.view(pa.binary()), column.cast(pa.binary_view()),
                  pa.chunked_array([column]), (row for row in rows)):
        assert pa.table(codec.decode_column("Ship.State", given)).to_pylist() == expected
    chunked = codec.decode_column("Ship.State", pa.chunked_array([column[:1], column[1:]]))
    assert len(chunked) == 4 and pa.table(chunked).to_pylist() == expected
    with pytest.raises(ValueError, match="stream"):
        chunked.__arrow_c_array__()
    number = pa.record_batch(
        codec.decode_column("State", rows, labels="number", widen_unsigned=True))
    assert number["value"].field("Flag").type == pa.int16()
    with pytest.raises(ValueError, match="format"):
        codec.decode_column("State", pa.array([1]))
    with pytest.raises(ValueError):
        codec.decode_column("State", rows, labels="none")  # type: ignore[arg-type]
    with pytest.raises(TypeError):
        codec.decode_column("State", [1])  # type: ignore[list-item]
    with pytest.raises(ValueError, match="Flag"):
        codec.encode_column("State", pa.array([{"Speed": "fast", "Flag": [1]}]))


def test_a_table_outlives_what_it_was_made_of(codec: omt.Codec) -> None:
    table = codec.decode_column("State", [STATE] * 1000)
    first, second = pa.record_batch(table), pa.record_batch(table)
    value = first["value"].field("Speed")
    del table, first
    gc.collect()
    assert value[999].as_py() == 10.0 and second.validate(full=True) is None


def test_threads_share_a_codec(codec: omt.Codec) -> None:
    column = pa.array([STATE] * 20000)
    results: list[int] = []

    def work() -> None:
        batch = pa.record_batch(codec.decode_column("State", column))
        results.append(sum(batch["value"].field("Speed").to_pylist()))

    threads = [threading.Thread(target=work) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert results == [200000.0] * 4


def test_checks_and_differences() -> None:
    wider = MODEL.replace(b"<name>Blue</name><value>2<", b"<name>Blue</name><value>3<")
    before, after = omt.load(MODEL, mim=True), omt.load(wider, mim=True)
    assert not omt.diff(before, before)
    found = omt.diff(before, after)
    assert [(row.change, row.kind, row.name) for row in found] == [
        ("changed", "attribute", "Ship.State"), ("changed", "enumerated datatype", "Flag"),
        ("changed", "fixed record", "State")]
    assert found[0].octets == omt.OctetChange(
        "different", 0, "Flag", "the enumerator `Blue` is 3, and was 2")
    assert found[1].details == [omt.Detail("changed", "enumerator", "Blue", "value", "2", "3")]
    assert found.octets["different"] == 3 and found[1].after == "document 1:4"

    gone = MODEL.replace(b"HLAfloat64BE", b"Speed")
    assert "unknown-datatype" in [one.name for one in omt.check(gone, mim=True)]
    assert "unknown-datatype" not in [
        one.name for one in omt.check(gone, mim=True, disable=["unknown-datatype"])]
    with pytest.raises(ValueError, match="lnit"):
        omt.check(MODEL, enable=["lnit"])
