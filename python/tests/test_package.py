# SPDX-License-Identifier: Apache-2.0
"""The surface: loading, values, fields, errors, and columns of every kind that Python has."""

import ast
import gc
import mmap
import pickle
import random
import struct
from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor
from functools import partial
from pathlib import Path
from types import SimpleNamespace
from typing import Any

import pyarrow as pa
import pytest
from conftest import EXAMPLES

import omtreader as omt
from omtreader import _core

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
    for path, expected in value.items():
        assert codec.field("Ship.State", path)(STATE) == expected
    assert codec.field("State", "Name")(STATE[:20]) is None
    assert "Speed: HLAfloat64BE" in codec.layout("State")


def test_errors(codec: omt.Codec, tmp_path: Path) -> None:
    with pytest.raises(omt.DecodeError) as fault:
        codec.decode("Ship.State", STATE[:12])
    assert (fault.value.path, fault.value.offset, fault.value.needed, fault.value.left,
            fault.value.partial) == ("Speed", 8, 8, 4, {"Flag": "Red"})
    recursive: list[object] = []
    recursive.append(recursive)
    swapped = pa.array([STATE]).__arrow_c_array__()[::-1]
    used = pa.chunked_array([[STATE]]).__arrow_c_stream__()
    pa.chunked_array(SimpleNamespace(__arrow_c_stream__=lambda _=None: used))
    whole = dict(Flag="Red", Speed=1, Name="")
    wrong: list[tuple[Callable[..., object], tuple[Any, ...], type[Exception], str]] = [
        (codec.decode, ("State", STATE + b"!"), omt.DecodeError, "1 octets are left over"),
        (codec.decode, ("Ship.Stat", STATE), omt.UnknownName, "did you mean State"),
        (codec.decode, ("State", "00"), TypeError, "bytes-like"),
        (codec.field, ("State", "Sped"), omt.UnknownName, 'no "Sped"; did you mean Speed'),
        (codec.encode, ("State", dict(whole, Flag="Rde")), omt.EncodeError, "did you mean Red"),
        (codec.encode, ("State", {}), omt.EncodeError, "missing"),
        (codec.encode, ("State", None), omt.EncodeError, "expected"),
        (codec.encode, ("State", recursive), ValueError, ""),
        (codec.encode, ("State", object()), TypeError, ""),
        (codec.encode, ("State", {1: 2}), TypeError, ""),
        (codec.decode_column, ("State", pa.array([1])), ValueError, "format"),
        (codec.decode_column, ("State", [1]), TypeError, "bytes-like"),
        (codec.decode_column, ("State", SimpleNamespace(__arrow_c_array__=lambda: 5)), TypeError, "capsules"),
        (codec.decode_column, ("State", SimpleNamespace(__arrow_c_array__=lambda: swapped)), ValueError, ""),
        (codec.decode_column, ("State", SimpleNamespace(__arrow_c_stream__=lambda: used)), ValueError, "taken"),
        (partial(codec.decode_column, labels="none"), ("State", []), ValueError, "labels"),
        (codec.encode_column, ("State", pa.array([{"Speed": "fast", "Flag": [1]}])), ValueError, "Flag"),
        (omt.load, (tmp_path / "none.xml",), FileNotFoundError, "none.xml"),
        (omt.load, (MODEL, [MODEL]), TypeError, "document 2 is of type list"),
        (partial(omt.load, strict=True), (b"no model",), omt.ModelError, "."),
        (partial(omt.check, enable="lnit"), (MODEL,), ValueError, "lnit.*lint"),
    ]
    for function, arguments, error, match in wrong:
        with pytest.raises(error, match=match or None):
            function(*arguments)
    assert not omt.load(b"no model").is_sound
    assert not omt.load(EXAMPLES / "HarbourBase.xml", mim=True, strict=True).codec().findings


def test_columns(codec: omt.Codec) -> None:
    rows = [STATE, None, STATE[:3], b"\x09" + STATE[1:]]
    column = pa.array(rows, pa.binary())
    expected = pa.record_batch(codec.decode_column("Ship.State", rows)).to_pylist()
    assert [one["fault"] is None for one in expected] == [True, True, False, True]
    assert expected[3]["value"]["Flag"] == "#9"
    for given in (column.cast(pa.binary_view()), (row for row in rows)):
        assert pa.table(codec.decode_column("Ship.State", given)).to_pylist() == expected
    chunked = codec.decode_column("Ship.State", pa.chunked_array([column[:1], column[1:]]))
    assert not hasattr(chunked, "__arrow_c_array__")  # some would take it and no stream
    assert pa.table(chunked).to_pylist() == expected
    number = codec.decode_column("State", rows, labels="number", widen_unsigned=True)
    value = pa.record_batch(number)["value"].field("Flag")
    del number, chunked
    gc.collect()  # what was handed out outlives what it was made of
    assert value.type == pa.int16() and value.to_pylist()[::3] == [1, 9]


def test_octets_past_two_gigaoctets(codec: omt.Codec) -> None:
    """Rows at both ends of 2^31 octets and more, of which only the ends take memory."""
    size = (1 << 31) + 100
    octets = mmap.mmap(-1, size, flags=mmap.MAP_PRIVATE)
    first, last = (struct.pack(">i", 2) + one for one in (b"ab", b"yz"))
    octets[:6], octets[size - 6:] = first, last
    offsets = pa.array([0, 6, size - 6, size], pa.int64())
    column = pa.Array.from_buffers(pa.large_binary(), 3, [
        pa.py_buffer(b"\5"), offsets.buffers()[1], pa.py_buffer(octets)])
    table = pa.table(codec.decode_column("HLAASCIIstring", column))
    assert table.to_pydict() == {"value": ["ab", None, "yz"], "fault": [None] * 3}
    short = pa.Array.from_buffers(pa.binary(), 2, [
        None, pa.py_buffer(struct.pack("=iii", 0, -2147483647, 6)), pa.py_buffer(octets)])
    with pytest.raises(ValueError):
        codec.decode_column("HLAASCIIstring", short)


def test_threads_share_a_codec(codec: omt.Codec) -> None:
    """Octets may change while they are read; what comes out is an array all the same."""
    octets = bytearray(STATE * 5000)
    ends = pa.array(range(0, len(octets) + 1, len(STATE)), pa.int32()).buffers()[1]
    column = pa.Array.from_buffers(pa.binary(), 5000, [None, ends, pa.py_buffer(octets)])

    def work(seed: int) -> int:
        source = random.Random(seed)
        for _ in range(1000 * (seed % 2)):
            octets[source.randrange(len(octets))] = source.randrange(256)
        table = pa.table(codec.decode_column("State", column))
        table.validate(full=True)
        return len(table)

    with ThreadPoolExecutor(4) as pool:
        assert list(pool.map(work, range(8))) == [5000] * 8


def test_checks_and_differences() -> None:
    wider = MODEL.replace(b"<name>Blue</name><value>2<", b"<name>Blue</name><value>3<")
    before, after = omt.load(MODEL, mim=True), omt.load(wider, mim=True)
    assert not omt.diff(before, before)
    found = omt.diff(before, after)
    assert [(row.change, row.kind, row.name) for row in found][0] == ("changed", "attribute", "Ship.State")
    assert found[0].octets == omt.OctetChange(
        "different", 0, "Flag", "the enumerator `Blue` is 3, and was 2")
    assert found[1].details == [omt.Detail("changed", "enumerator", "Blue", "value", "2", "3")]
    assert found.octets["different"] == 3 and found[1].after == "document 1:4"
    gone = MODEL.replace(b"HLAfloat64BE", b"Speed")
    found_by = [{one.name for one in omt.check(gone, mim=True, disable=disabled)}
                for disabled in ([], "unknown-datatype")]
    assert found_by[0] - found_by[1] == {"unknown-datatype"}


def test_version_is_that_of_the_build() -> None:
    lists = Path(__file__).parents[2] / "CMakeLists.txt"
    assert f"set(OMT_VERSION {omt.__version__})" in lists.read_text()


def test_help_says_what_the_stubs_say() -> None:
    stubs = ast.parse(Path(omt.__file__).with_name("_core.pyi").read_text())
    for node in ast.walk(stubs):
        if isinstance(node, (ast.ClassDef, ast.FunctionDef)) and (words := ast.get_docstring(node)):
            owners = [one for one in ast.walk(stubs) if isinstance(one, ast.ClassDef) and node in one.body]
            owner = getattr(_core, owners[0].name) if owners else _core
            assert (getattr(owner, node.name).__doc__ or "").endswith(words), node.name
