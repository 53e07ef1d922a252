# SPDX-License-Identifier: Apache-2.0
"""Dicts, JSON of the C interface, columns and the way back through Arrow say the same."""

import contextlib
import ctypes
import json
import math
import os
import random
import struct
from typing import Any

import pyarrow as pa
import pytest
from conftest import Loaded, grow
from hypothesis import given, settings
from hypothesis import strategies as st

import omtreader as omt

settings.register_profile("omt", deadline=None, derandomize=True, database=None, max_examples=150)
settings.load_profile("omt")


def plain(value: Any, is_column: bool = False) -> Any:
    """A value as JSON has it."""
    if isinstance(value, dict):
        if set(value) == {"name", "value"}:
            return value["name"]
        if "nan" in value or "rest" in value:
            return value.get("text", "NaN")
        some = {key: plain(one, is_column) for key, one in value.items()}
        return {key: one for key, one in some.items() if one is not None}
    if isinstance(value, list):
        return [plain(one, is_column) for one in value]
    if isinstance(value, bytes):
        return value.hex()
    if value is True and is_column:
        return {}
    if isinstance(value, float) and not math.isfinite(value):
        return "NaN" if math.isnan(value) else "Infinity" if value > 0 else "-Infinity"
    if isinstance(value, str):
        # Half of a surrogate pair has no UTF-8.
        text = value.encode("utf-16-le", "surrogatepass").decode("utf-16-le", "replace")
        if is_column and text.startswith("#") and text[1:].lstrip("-").isdigit():
            return int(text[1:])
        if is_column and text.startswith(("{", "[")):
            with contextlib.suppress(ValueError):
                return plain(json.loads(text))
        return text
    return value


def same(left: Any, right: Any) -> bool:
    """Whether two plain values are equal; numbers of 32 bits have many texts."""
    if isinstance(left, dict) and isinstance(right, dict):
        return left.keys() == right.keys() and all(same(left[key], right[key]) for key in left)
    if isinstance(left, list) and isinstance(right, list):
        return len(left) == len(right) and all(map(same, left, right))
    if isinstance(left, float) != isinstance(right, float) or isinstance(left, float):
        return left == right or struct.pack("f", left) == struct.pack("f", right)
    return left == right


class FromC:
    """The C interface, as any language would call it."""

    def __init__(self, files: list[str]) -> None:
        self.lib = ctypes.CDLL(os.environ["OMT_LIBRARY"])
        paths = (ctypes.c_char_p * len(files))(*(file.encode() for file in files))
        model, self.codec = ctypes.c_void_p(), ctypes.c_void_p()
        self.call("omt_read_files", paths, ctypes.c_size_t(len(files)), 1, ctypes.byref(model))
        self.call("omt_codec_new", model, ctypes.byref(self.codec))
        self.lib.omt_model_free(model)

    def call(self, name: str, *arguments: Any) -> None:
        assert getattr(self.lib, name)(*arguments, None) == 0

    def decode(self, name: str, octets: bytes) -> dict[str, Any]:
        kind, text = ctypes.c_void_p(), ctypes.c_char_p()
        self.call("omt_find_type", self.codec, name.encode(), ctypes.byref(kind))
        self.call("omt_decode_json", kind, octets, ctypes.c_size_t(len(octets)), ctypes.byref(text))
        result = json.loads(text.value)
        self.lib.omt_free(text)
        self.lib.omt_type_free(kind)
        return result


@pytest.fixture(scope="session")
def from_c(model: Loaded) -> FromC:
    if "OMT_LIBRARY" not in os.environ:
        pytest.skip("OMT_LIBRARY is not set")
    return FromC(model.files)


def check(model: Loaded, from_c: FromC, name: str, rows: list[bytes | None],
          labels: str = "dictionary") -> None:
    codec = model.codec
    table = pa.record_batch(codec.decode_column(name, rows, labels=labels))
    table.validate(full=True)
    values, faults = table["value"].to_pylist(), table["fault"].to_pylist()
    assert len(values) == len(rows)
    # The same rows from the middle of others, in pieces, and in as many batches as a small limit makes.
    column = pa.array([b"x", None, *rows, b"y"], pa.binary())
    for given in (column.slice(2, len(rows)), column.cast(pa.large_binary()).slice(2, len(rows)),
                  pa.chunked_array([column[2:3], column[3:3], column[3:2 + len(rows)]])):
        part = pa.table(codec.decode_column(name, given, labels=labels, most_in_batch=2000))
        part.validate(full=True)
        assert repr(part.to_pydict()) == repr(table.to_pydict())
    again = pa.record_batch(codec.encode_column(name, table["value"]))
    again.validate(full=True)
    whole = pa.record_batch(codec.decode_column(name, column, labels=labels))["value"]
    slices = pa.record_batch(codec.encode_column(name, whole.slice(2, len(rows))))
    assert slices["octets"] == again["octets"]
    for row, value, fault, octets, wrong in zip(rows, values, faults, again["octets"].to_pylist(),
                                                again["fault"].to_pylist()):
        if row is None:
            assert (value, fault, octets) == (None, None, None)
            continue
        c = from_c.decode(name, row)
        try:
            single = codec.decode(name, row)
        except omt.DecodeError as error:
            single = error.partial
            assert fault and error.left == (c["faults"] or [c])[0]["left"]
            assert fault == str(error) or fault == error.what
            assert same(plain(c.get("value")), plain(single))
            assert (value is None) == bool(c["faults"])
            continue
        assert fault is None and not c["faults"]
        assert same(plain(single), plain(c["value"]))
        if labels != "number":
            assert same(plain(value, True), plain(json.loads(codec.decode_json(name, row)), True))
        if octets is None:
            # What can be read need not be what may be written.
            with pytest.raises(omt.EncodeError):
                codec.encode(name, single)
            assert wrong
        elif "\\ud" not in codec.decode_json(name, row):
            assert same(plain(codec.decode(name, octets)), plain(single))
            assert same(plain(codec.decode(name, codec.encode(name, single))), plain(single))


def test_every_datatype(model: Loaded, from_c: FromC) -> None:
    source = random.Random(1516)
    for place, name in enumerate(model.names):
        rows: list[bytes | None] = [None]
        for size in (0, 8, 40):
            octets = grow(model.codec, name, source.randbytes(size), source)
            if octets is not None:
                rows += [octets, octets[: len(octets) // 2], octets + b"\1"]
        check(model, from_c, name, rows, ("dictionary", "string", "number")[place % 3])


@given(data=st.data(), octets=st.binary(max_size=200), seed=st.integers(0, 1 << 16))
def test_any_octets(model: Loaded, from_c: FromC, data: st.DataObject, octets: bytes,
                    seed: int) -> None:
    name = data.draw(st.sampled_from(model.names))
    whole = grow(model.codec, name, octets, random.Random(seed))
    cut = data.draw(st.integers(0, len(octets)))
    check(model, from_c, name, [octets, whole, octets[:cut], None])
