# SPDX-License-Identifier: Apache-2.0
"""HLA object models, and the octets of the values that they describe.

    model = load("RPR_FOM_v2.0_1516-2010.xml", mim=True)
    codec = model.codec()
    value = codec.decode("BaseEntity.Spatial", octets)

omtreader.recording keeps updates as Parquet and decodes them to tables; omtreader.spark does so on a
cluster. The first takes pyarrow, the second pyspark too.
"""

import os
from collections.abc import Iterable

from ._core import (Codec, Field, Model, Table, __version__, check_documents, diff,
                    read_documents)
from ._types import (DecodeError, Detail, Difference, Differences, EncodeError, Enumerator,
                     Finding, ModelError, OctetChange, OmtError, UnknownName)

__all__ = ["Codec", "DecodeError", "Detail", "Difference", "Differences", "EncodeError",
           "Enumerator", "Field", "Finding", "Model", "ModelError", "OctetChange", "OmtError",
           "Table", "UnknownName", "__version__", "check", "diff", "load"]


Source = str | os.PathLike[str] | bytes | bytearray | memoryview


def _documents(sources: Iterable[Source]) -> list[tuple[str, bytes]]:
    documents = []
    for place, source in enumerate(sources, 1):
        if isinstance(source, (bytes, bytearray, memoryview)):
            documents.append((f"document {place}", bytes(source)))
        elif isinstance(source, (str, os.PathLike)):
            with open(source, "rb") as file:
                documents.append((os.fspath(source), file.read()))
        else:
            raise TypeError(f"document {place} is of type {type(source).__name__}, and takes to be a "
                            "path, or bytes")
    return documents


def _words(names: Iterable[str]) -> list[str]:
    return [names] if isinstance(names, str) else list(names)


def load(*sources: Source, mim: bool = False, strict: bool = False) -> Model:
    """Reads documents, given by path or as octets, and merges them in this order.

    With `mim` the standard MIM of the newest edition among them stands before them. What is wrong is
    in `findings` of the model; with `strict` an error among them raises ModelError.
    """
    model = read_documents(_documents(sources), mim)
    if strict and not model.is_sound:
        raise ModelError(model.findings)
    return model


def check(*sources: Source, mim: bool = False, enable: Iterable[str] = (),
          disable: Iterable[str] = ()) -> list[Finding]:
    """All that is wrong with documents that are loaded together, by the rules of `omt check`.

    Documents are given as for load(): rules look at them as they are written. `enable` and `disable`
    are names of rules or groups; "lint" is off unless it is enabled. Raises ValueError for others.
    """
    return check_documents(_documents(sources), mim, _words(enable), _words(disable))


def _read_again(documents: tuple[tuple[str, bytes], ...], mim: bool) -> Model:
    """What a model that was pickled becomes."""
    return read_documents(documents, mim)
