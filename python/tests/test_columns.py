# SPDX-License-Identifier: Apache-2.0
"""Columns of odd datatypes and odd buffers say what single values say."""

import mmap
import random
import struct
from typing import Any

import pyarrow as pa
import pytest
from conftest import grow
from test_agreement import plain, same

import omtreader as omt


def record(name: str, *fields: tuple[str, str]) -> str:
    inside = "".join(f"<field><name>{field}</name><dataType>{kind}</dataType></field>"
                     for field, kind in fields)
    return f"<fixedRecordData><name>{name}</name><encoding>HLAfixedRecord</encoding>{inside}</fixedRecordData>"


def array(name: str, of: str) -> str:
    return f"<arrayData><name>{name}</name><dataType>{of}</dataType><cardinality>Dynamic</cardinality>" \
           f"<encoding>HLAvariableArray</encoding></arrayData>"


# A tree holds trees; nothing has no octets, also as an element; texts are long.
MODEL = ("<objectModel xmlns='http://standards.ieee.org/IEEE1516-2010'><dataTypes><arrayDataTypes>"
         + array("Trees", "Tree") + array("Nothings", "Nothing") + array("Texts", "HLAASCIIstring")
         + "</arrayDataTypes><fixedRecordDataTypes>" + record("Nothing")
         + record("Tree", ("Weight", "HLAinteger16BE"), ("Below", "Trees"))
         + record("Odd", ("First", "Nothing"), ("All", "Nothings"), ("Note", "HLAASCIIstring"),
                  ("Last", "Nothing"))
         + "</fixedRecordDataTypes></dataTypes></objectModel>").encode()
NAMES = ["Tree", "Trees", "Nothing", "Nothings", "Odd", "Texts", "HLAASCIIstring"]


@pytest.fixture(scope="module")
def codec() -> omt.Codec:
    return omt.load(MODEL, mim=True).codec()


def values_of(codec: omt.Codec, name: str, column: Any, **options: Any) -> tuple[list[Any], list[Any]]:
    table = pa.table(codec.decode_column(name, column, **options))
    table.validate(full=True)
    return table["value"].to_pylist(), table["fault"].to_pylist()


@pytest.mark.parametrize("name", NAMES)
def test_odd_datatypes(codec: omt.Codec, name: str) -> None:
    source = random.Random(name)
    rows: list[bytes | None] = [None]
    for size in range(24):
        octets = grow(codec, name, source.randbytes(size), source)
        if octets is not None and len(octets) < 2000:
            rows += [octets, octets[:-1], None]
    if name == "Tree":
        rows.append(b"\0\1\0\0" + struct.pack(">i", 1) + struct.pack(">hhi", 7, 0, 0))
    values, faults = values_of(codec, name, rows)
    for row, value, fault in zip(rows, values, faults):
        if row is None:
            assert (value, fault) == (None, None)
            continue
        try:
            single = codec.decode(name, row)
        except omt.DecodeError as error:
            assert fault in (str(error), error.what)
            continue
        assert fault is None and same(plain(value, True), plain(single, True))
    # The same rows from the middle of others, in pieces, and in as many batches as a small limit makes.
    column = pa.array([b"x", None, *rows, b"y"], pa.binary())
    for given in (column.slice(2, len(rows)), column.cast(pa.large_binary()).slice(2, len(rows)),
                  pa.chunked_array([column[2:5], column[5:5], column[5:2 + len(rows)]])):
        for most in (0x7FFFFFFF, 5000):
            assert values_of(codec, name, given, most_in_batch=most) == (values, faults)
    # Values that are slices too go back to the same octets.
    table = pa.table(codec.decode_column(name, column)).combine_chunks()
    part = table["value"].chunk(0).slice(2, len(rows))
    again = pa.table(codec.encode_column(name, part))
    whole = pa.table(codec.encode_column(name, pa.table(codec.decode_column(name, rows))["value"]))
    assert again["octets"].to_pylist() == whole["octets"].to_pylist()


def test_batches_end_before_offsets_do(codec: omt.Codec) -> None:
    text = struct.pack(">i", 1000) + b"a" * 1000
    table = codec.decode_column("HLAASCIIstring", [text] * 1000, most_in_batch=200_000)
    batches = pa.table(table).to_batches()
    assert len(batches) > 4 and len(table) == 1000
    assert all(batch["value"].nbytes <= 210_000 for batch in batches)
    assert pa.table(table)["value"].unique().to_pylist() == ["a" * 1000]


def test_octets_past_two_gigaoctets(codec: omt.Codec) -> None:
    """Rows at both ends of 2^31 octets and more, of which only the ends take memory."""
    size = (1 << 31) + 100
    octets = mmap.mmap(-1, size, flags=mmap.MAP_PRIVATE)
    first, last = (struct.pack(">i", 2) + one for one in (b"ab", b"yz"))
    octets[:6], octets[size - 6:] = first, last
    offsets = pa.array([0, 6, size - 6, size], pa.int64())
    column = pa.Array.from_buffers(pa.large_binary(), 3, [
        pa.py_buffer(b"\5"), offsets.buffers()[1], pa.py_buffer(octets)])
    assert values_of(codec, "HLAASCIIstring", column) == (["ab", None, "yz"], [None] * 3)
    short = pa.Array.from_buffers(pa.binary(), 2, [
        None, pa.py_buffer(struct.pack("=iii", 0, -2147483647, 6)), pa.py_buffer(octets)])
    with pytest.raises(ValueError):
        codec.decode_column("HLAASCIIstring", short)
