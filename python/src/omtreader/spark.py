# SPDX-License-Identifier: Apache-2.0
"""Decodes columns of octets on Spark. Each worker takes this package, and pyarrow, to be installed."""

from collections.abc import Callable, Iterator
from hashlib import sha256
from typing import Any

import pyarrow as pa
from pyspark.sql.pandas.types import from_arrow_schema

from ._core import Model
from ._packing import codec_of, pack
from ._types import OmtError

__all__ = ["decode"]


def _decoder(packed: str, member: str, column: str) -> Callable[[Iterator[Any]], Iterator[Any]]:
    """What a worker runs. The model travels with it, and is loaded by the first batch of a process."""
    key = sha256(packed.encode()).hexdigest()

    def run(batches: Iterator[pa.RecordBatch]) -> Iterator[pa.RecordBatch]:
        for batch in batches:
            codec = codec_of(key, packed)
            results = pa.table(codec.decode_column(member, batch.column(column), labels="string",
                                                   widen_unsigned=True))
            first = 0
            for part in results.to_batches():
                rows = batch.slice(first, len(part))
                first += len(part)
                yield pa.RecordBatch.from_arrays([*rows.columns, *part.columns],
                                                 names=[*rows.schema.names, "value", "fault"])

    return run


def decode(df: Any, member: str, model: Model, *, column: str = "octets") -> Any:
    """A data frame with `value` and `fault` after the columns of `df`, one row for each.

    `value` has the columns of the attribute, parameter or datatype `member`, labels as texts and
    unsigned numbers as wider signed ones, as Spark has none. Where the octets are none it is null,
    and `fault` says why; where they are null both are.
    """
    if column not in df.columns:
        raise OmtError(f"there is no column {column!r}")
    for name in ("value", "fault"):
        if name in df.columns:
            raise OmtError(f"the column {name!r} has the name of a result")
    empty = model.codec().decode_column(member, [], labels="string", widen_unsigned=True)
    results = from_arrow_schema(pa.table(empty).schema)
    # Fields of results may be null, whatever the rows of a batch say.
    schema = df.schema.__class__([*df.schema.fields, *results.fields])
    return df.mapInArrow(_decoder(pack(model), member, column), schema)
