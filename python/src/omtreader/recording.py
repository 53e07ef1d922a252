# SPDX-License-Identifier: Apache-2.0
"""Recordings of updates: read from CSV or JSON lines, kept as Parquet, decoded to Arrow tables.

A recording that is kept is a folder of Parquet files, a folder in it for each class. Every file has
the octets of the models in its metadata, so that it can be decoded with nothing but itself.
"""

import contextlib
import hashlib
import os
import uuid
from collections.abc import Callable, Iterable, Iterator, Mapping
from pathlib import Path
from typing import TYPE_CHECKING, Any, Literal, Union
from urllib.parse import quote

import pyarrow as pa
import pyarrow.compute as pc
import pyarrow.dataset as ds
import pyarrow.parquet as pq

from ._core import Codec, Model, Rows, read_documents
from ._packing import PackingError, codec_of, pack, unpack
from ._types import OmtError, UnknownName

if TYPE_CHECKING:
    from ._core import ArrowStream

__all__ = ["RecordingError", "batches", "decode", "model", "read", "write"]

KEY = b"omtreader.recording"
COLUMNS = {"time": pa.float64(), "event": pa.int64(), "kind": pa.string(), "object": pa.string(),
           "class": pa.string(), "member": pa.string(), "octets": pa.binary()}
OPTIONAL = {"sender": pa.string(), "tag": pa.binary(), "problem": pa.string()}
RESULTS = {"value", "fault", "notes", "left", "overlays"}
MOST_IN_LINE = 1 << 28
# Of a batch that is decoded.
MOST_ROWS, MOST_OCTETS = 1 << 16, 1 << 23
Labels = Literal["dictionary", "string", "number"]
Updates = Union[str, os.PathLike[str], "ArrowStream", Iterable[Mapping[str, Any]]]


class RecordingError(OmtError):
    """Files that are no recording, or rows that cannot be one."""


# Lines -----------------------------------------------------------------------------------------


def _blocks(file: str | os.PathLike[str], size: int = 1 << 22) -> Iterator[bytes]:
    """Whole lines, about as many octets at a time."""
    rest = b""
    with open(file, "rb") as stream:
        while block := stream.read(size):
            end = block.rfind(b"\n") + 1
            if end == 0:
                rest += block
                if len(rest) > MOST_IN_LINE:
                    raise RecordingError(f"{os.fspath(file)}: a line of more than {MOST_IN_LINE} octets")
                # Ever larger pieces, so that joining them takes no time by their square.
                size = max(size, len(rest))
                continue
            yield rest + block[:end]
            rest = block[end:]
    if rest:
        yield rest


def _array(kind: str, rows: int, valid: bytes, offsets: bytes, data: bytes) -> pa.Array:
    if kind in "dl":
        number = pa.float64() if kind == "d" else pa.int64()
        return pa.Array.from_buffers(number, rows, [pa.py_buffer(valid), pa.py_buffer(data)])
    buffers = [pa.py_buffer(valid), pa.py_buffer(offsets), pa.py_buffer(data)]
    octets = pa.Array.from_buffers(pa.large_binary(), rows, buffers)
    if kind == "z":
        return octets.cast(pa.binary())
    try:
        return octets.cast(pa.string())
    except pa.ArrowInvalid:
        return pa.array([one and one.decode("utf-8", "replace") for one in octets.to_pylist()],
                        pa.string())


def read(file: str | os.PathLike[str]) -> pa.RecordBatchReader:
    """The rows of a recording in CSV or JSON lines, with the octets as binary.

    One row comes for each line. What cannot be read of it is null, and a column "problem" says why.
    """
    blocks = _blocks(file)
    first = next(blocks, b"")
    try:
        rows = Rows(first)
    except ValueError as error:
        raise RecordingError(f"{os.fspath(file)}: {error}") from None

    def batch(block: bytes, is_first: bool) -> pa.RecordBatch:
        columns = rows.read(block, is_first)
        return pa.record_batch([_array(*one[1:]) for one in columns], [one[0] for one in columns])

    begun = batch(first, True)

    def rest() -> Iterator[pa.RecordBatch]:
        yield begun
        for block in blocks:
            yield batch(block, False)

    return pa.RecordBatchReader.from_batches(begun.schema, rest())


# Writing ---------------------------------------------------------------------------------------


def _from_mappings(updates: Iterable[Mapping[str, Any]]) -> Iterator[pa.RecordBatch]:
    known = COLUMNS | OPTIONAL
    schema = None
    chunk: list[Mapping[str, Any]] = []

    def batch() -> pa.RecordBatch:
        nonlocal schema
        if schema is None:
            names = list(dict.fromkeys(key for one in chunk for key in one))
            others = pa.RecordBatch.from_pylist([{name: one.get(name) for name in names
                                                  if name not in known} for one in chunk]).schema
            schema = pa.schema([(name, known[name] if name in known else others.field(name).type)
                                for name in names])
        try:
            return pa.RecordBatch.from_pylist(chunk, schema=schema)
        except (pa.ArrowInvalid, pa.ArrowTypeError) as error:
            raise RecordingError(f"rows that fit into no columns: {error}") from None

    for update in updates:
        if not isinstance(update, Mapping):
            raise TypeError(f"an update of type {type(update).__name__}, and not a mapping")
        for name in ("octets", "tag"):
            if isinstance(update.get(name), str):
                # pyarrow would take the letters for octets.
                raise RecordingError(f"{name} are bytes, and not a text such as {update[name]!r:.40}")
        chunk.append(update)
        if len(chunk) == 1 << 15:
            yield batch()
            chunk = []
    if chunk:
        yield batch()


def _batches_of(updates: Any) -> Any:
    if isinstance(updates, (str, os.PathLike)):
        return read(updates)
    if hasattr(updates, "__arrow_c_stream__"):
        return pa.RecordBatchReader.from_stream(updates)
    if hasattr(updates, "__arrow_c_array__"):
        return [pa.record_batch(updates)]
    if not isinstance(updates, Iterable) or isinstance(updates, Mapping):
        raise TypeError(f"updates of type {type(updates).__name__}, and not a file, Arrow columns or mappings")
    return _from_mappings(updates)


def _cast(name: str, column: pa.Array, wanted: pa.DataType) -> pa.Array:
    if isinstance(column.type, pa.DictionaryType):
        column = column.dictionary_decode()
    is_octets = wanted == pa.binary()
    kind = column.type
    are_octets = (pa.types.is_binary(kind) or pa.types.is_large_binary(kind)
                  or pa.types.is_fixed_size_binary(kind) or kind == pa.binary_view()
                  or pa.types.is_null(kind))
    if is_octets and not are_octets:
        raise RecordingError(f"the column {name!r} is {kind}, and not binary; "
                             "recording.read() reads hexadecimal digits")
    try:
        return column.cast(wanted)
    except (pa.ArrowInvalid, pa.ArrowNotImplementedError) as error:
        raise RecordingError(f"the column {name!r}: {error}") from None


def _normal(batch: pa.RecordBatch) -> pa.RecordBatch:
    """A batch with all columns of a recording, by their types."""
    given = {name: batch.column(at) for at, name in enumerate(batch.schema.names)}
    if len(given) < batch.num_columns or RESULTS & given.keys():
        wrong = sorted(RESULTS & given.keys()) or ["two of one name"]
        raise RecordingError(f"columns that a recording cannot have: {', '.join(wrong)}")
    for name in ("member", "octets"):
        if name not in given:
            raise RecordingError(f"there is no column {name!r}")
    columns = {name: _cast(name, given.pop(name), wanted)
               if name in given else pa.nulls(len(batch), wanted)
               for name, wanted in COLUMNS.items()}
    if "class" not in batch.schema.names:
        parts = pc.extract_regex(columns["member"], r"(?s)^(?P<owner>.*)\.(?P<name>[^.]*)$")
        columns["class"] = pc.struct_field(parts, "owner")
        columns["member"] = pc.coalesce(pc.struct_field(parts, "name"), columns["member"])
    for name, column in given.items():
        columns[name] = _cast(name, column, OPTIONAL[name]) if name in OPTIONAL else column
    return pa.RecordBatch.from_pydict(columns)


def _folder_of(class_name: str) -> str:
    """A folder that no name of a class leads out of."""
    if not class_name:
        return "class=__HIVE_DEFAULT_PARTITION__"
    name = quote(class_name, safe="")
    if len(name) > 200:
        name = name[:120] + "~" + hashlib.sha256(class_name.encode()).hexdigest()[:32]
    return "class=" + name


class _Part:
    """A file that is being written, and the rows that wait for the next row group."""

    def __init__(self, path: Path, schema: pa.Schema, packed: str) -> None:
        path.parent.mkdir(parents=True, exist_ok=True)
        self.path = path
        self.hidden = path.with_name("." + path.name + ".tmp")
        self.waiting: list[pa.RecordBatch] = []
        self.rows = 0
        self.writer = pq.ParquetWriter(self.hidden, schema, compression="zstd", use_dictionary=[
            name for name in ("kind", "object", "class", "member", "sender") if name in schema.names])
        self.writer.add_key_value_metadata({KEY.decode(): packed})

    def add(self, batch: pa.RecordBatch) -> None:
        self.waiting.append(batch)
        self.rows += len(batch)

    def flush(self) -> None:
        if self.rows:
            self.writer.write_table(pa.Table.from_batches(self.waiting))
        self.waiting = []
        self.rows = 0

    def close(self) -> None:
        self.flush()
        self.writer.close()


class _Writer:
    """Rows to a file for each class; all files appear together at the end."""

    ROWS_OF_GROUP = 1 << 17
    MOST_WAITING = 1 << 26
    MOST_OPEN = 100
    MOST_CLASSES = 10_000

    def __init__(self, folder: Path, packed: str) -> None:
        self.folder = folder
        self.packed = packed
        self.run = uuid.uuid4().hex[:12]
        self.open: dict[str, _Part] = {}
        self.classes: set[str] = set()
        self.done: list[_Part] = []
        self.waiting = 0
        self.rows = 0

    def add(self, batch: pa.RecordBatch) -> None:
        self.rows += len(batch)
        classes = pc.fill_null(batch.column("class"), "").dictionary_encode()
        names = classes.dictionary.to_pylist()
        places = classes.indices
        if len(names) > 1:
            # A stable sort, which leaves the rows of a class in their order.
            order = pc.sort_indices(places)
            batch, places = batch.take(order), places.take(order)
        first = 0
        runs = pc.run_end_encode(places)
        for end, place in zip(runs.run_ends.to_pylist(), runs.values.to_pylist()):
            self.put(names[place], batch.slice(first, end - first))
            first = end

    def put(self, name: str, rows: pa.RecordBatch) -> None:
        part = self.open.pop(name, None)
        if part is None:
            self.classes.add(name)
            if len(self.classes) > self.MOST_CLASSES:
                raise RecordingError(f"more than {self.MOST_CLASSES} classes, each of which takes a file")
            if len(self.open) >= self.MOST_OPEN:
                self.finish(next(iter(self.open)))
            number = len(self.open) + len(self.done)
            path = self.folder / _folder_of(name) / f"part-{self.run}-{number}.parquet"
            part = _Part(path, rows.schema, self.packed)
        # The one that was used last stands last.
        self.open[name] = part
        part.add(rows)
        self.waiting += rows.nbytes
        if part.rows >= self.ROWS_OF_GROUP:
            self.waiting -= sum(one.nbytes for one in part.waiting)
            part.flush()
        elif self.waiting > self.MOST_WAITING:
            for one in self.open.values():
                one.flush()
            self.waiting = 0

    def finish(self, name: str) -> None:
        part = self.open.pop(name)
        self.waiting -= sum(one.nbytes for one in part.waiting)
        self.done.append(part)
        part.close()

    def close(self) -> None:
        while self.open:
            self.finish(next(iter(self.open)))
        for part in self.done:
            part.hidden.rename(part.path)

    def abandon(self) -> None:
        for part in [*self.open.values(), *self.done]:
            # The disk may be full, which is what has been told already.
            with contextlib.suppress(OSError, pa.ArrowException):
                part.writer.close()
            part.hidden.unlink(missing_ok=True)


def write(updates: Updates, folder: str | os.PathLike[str], model: Model) -> int:
    """Writes rows into a folder as Parquet, and returns how many; what is there already stays.

    Updates are the file of a recording, anything that speaks the Arrow interface, or mappings, with
    the columns of a recording and `octets` as bytes; others are kept too. No file of them is there
    before all of them are whole.
    """
    if not isinstance(model, Model):
        raise TypeError(f"a model of type {type(model).__name__}, and not what load() makes")
    writer = _Writer(Path(folder), pack(model))
    schema = None
    try:
        for batch in _batches_of(updates):
            batch = _normal(batch)
            schema = schema or batch.schema
            if batch.schema != schema:
                raise RecordingError(f"batches differ: {batch.schema} after {schema}")
            writer.add(batch)
        writer.close()
    except BaseException:
        writer.abandon()
        raise
    return writer.rows


# Reading ---------------------------------------------------------------------------------------


class _File:
    """A file of a recording, of which only the metadata was read."""

    def __init__(self, path: Path) -> None:
        self.path = path
        try:
            self.metadata = pq.read_metadata(path)
            self.schema = self.metadata.schema.to_arrow_schema().remove_metadata()
        except (pa.ArrowException, OSError) as error:
            raise RecordingError(f"{path} is no Parquet file: {error}") from None
        self.packed = (self.metadata.metadata or {}).get(KEY, b"")
        if not self.packed:
            raise RecordingError(f"{path} has no models in its metadata, so it is no recording")
        for name, wanted in COLUMNS.items():
            at = self.schema.get_field_index(name)
            if at < 0 or self.schema.field(at).type != wanted:
                found = "not there" if at < 0 else str(self.schema.field(at).type)
                raise RecordingError(f"{path}: the column {name!r} is {found}, and not {wanted}")
        for name in RESULTS & set(self.schema.names):
            raise RecordingError(f"{path}: the column {name!r} has the name of a result")

    def codec(self) -> Codec:
        try:
            return codec_of(hashlib.sha256(self.packed).hexdigest(), self.packed)
        except PackingError as error:
            raise RecordingError(f"{self.path}: the models in its metadata: {error}") from None

    def rows_in(self, octets: int) -> int:
        """How many rows come to about so many octets unpacked, by the mean of the file; one at least."""
        groups = map(self.metadata.row_group, range(self.metadata.num_row_groups))
        whole = max(sum(int(group.total_byte_size) for group in groups), 1)
        return max(1, octets * int(self.metadata.num_rows) // whole)

    def only_class(self) -> str | None:
        """The class of all rows, where the file says that it is one."""
        at = self.metadata.schema.names.index("class")
        found = set()
        for group in range(self.metadata.num_row_groups):
            known = self.metadata.row_group(group).column(at).statistics
            if known is None or not known.has_min_max or known.null_count:
                return None
            found |= {known.min, known.max}
        return found.pop() if len(found) == 1 else None


def _files(folder: str | os.PathLike[str]) -> list[_File]:
    place = Path(folder)
    if not place.exists():
        raise FileNotFoundError(f"{place} is not there")
    paths = [place] if place.is_file() else sorted(place.rglob("*.parquet"))
    files = [_File(path) for path in paths if not path.name.startswith((".", "_"))]
    if not files:
        raise RecordingError(f"{place} has no Parquet files in it")
    return files


def model(folder: str | os.PathLike[str]) -> Model:
    """The model of a recording, out of its metadata."""
    found: dict[bytes, list[tuple[str, bytes]]] = {}
    for file in _files(folder):
        try:
            found[file.packed] = found.get(file.packed) or unpack(file.packed)[1]
        except PackingError as error:
            raise RecordingError(f"{file.path}: the models in its metadata: {error}") from None
    if len(found) > 1:
        raise RecordingError(f"{folder} has files of {len(found)} different models")
    return read_documents(found.popitem()[1], False)


def _is_wanted(codec: Codec, member: str) -> Callable[[str | None], bool]:
    """Whether the member of a class is the one that is wanted, or is inherited from it."""
    wanted = set(codec.members(member))
    if not wanted:
        raise UnknownName(f"{member!r} is no attribute or parameter, which is CLASS.MEMBER")
    name = member.rpartition(".")[2]
    known: dict[str | None, bool] = {}

    def ask(class_name: str | None) -> bool:
        if class_name not in known:
            known[class_name] = not wanted.isdisjoint(codec.members(f"{class_name}.{name}"))
        return known[class_name]

    return ask


class _Member:
    """A member by one of the models of a recording."""

    def __init__(self, codec: Codec, member: str, labels: Labels) -> None:
        self.codec = codec
        self.name = member
        self.labels = labels
        self.results = pa.table(codec.decode_column(member, [], labels=labels)).schema
        self.is_wanted = _is_wanted(codec, member)

    def decode(self, octets: pa.Array) -> pa.Table:
        return pa.table(self.codec.decode_column(self.name, octets, labels=self.labels))


class _Decoder:
    """Rows of one member out of one file."""

    def __init__(self, file: _File, member: _Member) -> None:
        self.file = file
        self.member = member

    def batches(self, schema: pa.Schema, where: pc.Expression | None) -> Iterator[pa.RecordBatch]:
        only = self.file.only_class()
        if only is not None and not self.member.is_wanted(only):
            return
        there = self.file.schema.names
        # What is needed for decoding comes too, and goes again.
        read = list(dict.fromkeys([*(name for name in schema.names[:-2] if name in there), "class", "octets",
                                   *(name for name in ("problem",) if name in there)]))
        filter = pc.field("member") == self.member.name.rpartition(".")[2]
        if where is not None:
            filter = filter & where
        # Buffering ahead keeps what was read until the end of the file. Row groups are scanned one by
        # one, as a scanner of several reads on and on while whoever takes the batches is busy.
        options = ds.ParquetFragmentScanOptions(pre_buffer=False)
        form = ds.ParquetFileFormat(default_fragment_scan_options=options)
        data = ds.dataset(self.file.path, format=form, partitioning=None)
        most = min(MOST_ROWS, self.file.rows_in(MOST_OCTETS))
        try:
            for fragment in data.get_fragments():
                for group in fragment.split_by_row_group(filter, schema=data.schema):
                    for rows in group.to_batches(schema=data.schema, columns=read, filter=filter,
                                                 batch_size=most, batch_readahead=1):
                        yield from self.decoded(rows, schema)
        except (pa.ArrowInvalid, OSError) as error:
            raise RecordingError(f"{self.file.path}: {error}") from None

    def decoded(self, rows: pa.RecordBatch, schema: pa.Schema) -> Iterator[pa.RecordBatch]:
        classes = rows.column("class").dictionary_encode()
        wanted = [self.member.is_wanted(name) for name in classes.dictionary.to_pylist()]
        if not all(wanted) or classes.null_count:
            rows = rows.filter(pc.fill_null(pa.array(wanted, pa.bool_()).take(classes.indices), False))
        if not len(rows):
            return
        table = self.member.decode(rows.column("octets"))
        first = 0
        for results in table.to_batches():
            part = rows.slice(first, len(results))
            first += len(results)
            fault = results.column("fault")
            if "problem" in part.schema.names:
                fault = pc.coalesce(part.column("problem"), fault)
            kept = [part.column(field.name) if field.name in part.schema.names
                    else pa.nulls(len(part), field.type) for field in [*schema][:-2]]
            yield pa.RecordBatch.from_arrays([*kept, results.column("value"), fault], schema=schema)


def _schema_of(decoders: list[_Decoder], columns: Iterable[str] | None) -> pa.Schema:
    """The columns of what comes out: those that are kept, and the results."""
    fields: dict[str, pa.Field] = {}
    for one in decoders:
        if one.member.results != decoders[0].member.results:
            raise RecordingError(f"{one.file.path} and {decoders[0].file.path} have other models of "
                                 f"{one.member.name}: decode them one by one")
        for field in one.file.schema:
            if fields.setdefault(field.name, field).type != field.type:
                raise RecordingError(f"{one.file.path}: the column {field.name!r} is {field.type}, and "
                                     f"{fields[field.name].type} in other files")
    if columns is None:
        columns = [name for name in fields if name not in ("octets", "problem")]
    kept = [columns] if isinstance(columns, str) else list(dict.fromkeys(columns))
    for name in kept:
        if name not in fields:
            raise RecordingError(f"no file has a column {name!r}; there are {', '.join(fields)}")
    return pa.schema([*(fields[name] for name in kept), *decoders[0].member.results])


def batches(folder: str | os.PathLike[str], member: str, *, where: Any = None,
            columns: Iterable[str] | None = None,
            labels: Labels = "dictionary") -> pa.RecordBatchReader:
    """Decodes one member of a recording, batch by batch, so that memory does not grow with it.

    `member` is "CLASS.MEMBER"; rows of classes below it are there too. `where` is an expression of
    pyarrow on the columns of the recording, or a list such as [("time", ">", 60)]. `columns` are
    those to keep; without it all but `octets`. After them come `value`, and `fault` where the octets
    are none.
    """
    if isinstance(where, str):
        raise TypeError("where is an expression of pyarrow, or a list of (column, comparison, value)")
    if where is not None and not isinstance(where, pc.Expression):
        where = pq.filters_to_expression(where)
    members: dict[bytes, _Member] = {}
    decoders = []
    for file in _files(folder):
        if file.packed not in members:
            members[file.packed] = _Member(file.codec(), member, labels)
        decoders.append(_Decoder(file, members[file.packed]))
    schema = _schema_of(decoders, columns)

    def rows() -> Iterator[pa.RecordBatch]:
        for one in decoders:
            yield from one.batches(schema, where)

    return pa.RecordBatchReader.from_batches(schema, rows())


def decode(folder: str | os.PathLike[str], member: str, *, where: Any = None,
           columns: Iterable[str] | None = None, labels: Labels = "dictionary") -> pa.Table:
    """What batches() gives, as one table."""
    return batches(folder, member, where=where, columns=columns, labels=labels).read_all()
