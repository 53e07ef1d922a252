# SPDX-License-Identifier: Apache-2.0
from collections.abc import Callable, Iterable, Sequence
from typing import Any, Literal, Protocol

from typing_extensions import Buffer

from ._types import Differences, Finding

__version__: str

class ArrowColumn(Protocol):
    def __arrow_c_array__(self, requested_schema: object = None) -> tuple[object, object]: ...

class ArrowStream(Protocol):
    def __arrow_c_stream__(self, requested_schema: object = None) -> object: ...

class Model:
    """What documents say, merged; made by load()."""

    @property
    def findings(self) -> list[Finding]:
        """What was found in the documents."""
    @property
    def is_sound(self) -> bool:
        """Whether no finding is an error."""
    @property
    def documents(self) -> tuple[tuple[str, bytes], ...]:
        """What it was read from: names and octets."""
    @property
    def mim(self) -> bool:
        """Whether the standard MIM was merged before the documents."""
    def standard_mim(self) -> bytes:
        """The standard MIM of its edition."""
    def codec(self) -> Codec:
        """Compiles all datatypes."""

class Field:
    """One part of the values of a type; made by Codec.field()."""

    def __call__(self, octets: Buffer) -> Any:
        """Reads the part out of a value; None where the value does not have it."""

class Table:
    """Batches of two columns; for whatever takes Arrow arrays or streams of them."""

    def __len__(self) -> int: ...
    def __arrow_c_schema__(self) -> object: ...
    @property
    def __arrow_c_array__(self) -> Callable[..., tuple[object, object]]:
        """Of a table of one batch; others do not have it."""
    def __arrow_c_stream__(self, requested_schema: object = None) -> object: ...

class Codec:
    """Datatypes of a model, by member ("BaseEntity.Spatial") or by name."""

    @property
    def findings(self) -> list[Finding]:
        """What no octets can be made of."""
    def decode(self, name: str, octets: Buffer) -> Any:
        """One value: dicts, lists, numbers, str, bytes, Enumerator. Raises DecodeError."""
    def encode(self, name: str, value: Any) -> bytes:
        """The octets of a value. Raises EncodeError."""
    def decode_json(self, name: str, octets: Buffer) -> str:
        """One value as JSON. Raises DecodeError."""
    def encode_json(self, name: str, json: str) -> bytes:
        """The octets of a value that is JSON. Raises EncodeError."""
    def field(self, name: str, path: str) -> Field:
        """One part of a value, read without decoding the rest."""
    def decode_column(
        self,
        name: str,
        column: ArrowColumn | ArrowStream | Iterable[Buffer | None],
        *,
        labels: Literal["dictionary", "string", "number"] = "dictionary",
        widen_unsigned: bool = False,
        most_in_batch: int = 0x7FFFFFFF,
    ) -> Table:
        """Decodes a column of octets to "value" and "fault", row by row the same.

        A batch ends before a text, or a list, of it would have more octets, or elements, than
        `most_in_batch`.
        """
    def encode_column(self, name: str, column: ArrowColumn | ArrowStream) -> Table:
        """Encodes a column of values to "octets" and "fault"."""
    def layout(self, name: str) -> str:
        """Where the octets of a datatype stand."""
    def members(self, path: str) -> list[str]:
        """The members that a path may mean, as the class that declares each, a period and its name."""

class Rows:
    """Reads lines of a recording into columns, each (name, kind, rows, valid, offsets, data)."""

    def __init__(self, start: bytes) -> None: ...
    def read(
        self, block: bytes, is_first: bool
    ) -> list[tuple[str, str, int, bytes, bytes, bytes]]: ...

def read_documents(documents: Sequence[tuple[str, bytes]], mim: bool) -> Model: ...
def check_documents(
    documents: Sequence[tuple[str, bytes]], mim: bool, enable: list[str], disable: list[str]
) -> list[Finding]: ...
def diff(before: Model, after: Model) -> Differences:
    """What changed between two models, and which octets did."""
