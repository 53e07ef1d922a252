# SPDX-License-Identifier: Apache-2.0
"""HLA object models, and the octets of the values that they describe."""

import os
from pathlib import Path

from ._core import Codec, Field, Model, Table, read_documents
from ._types import (DecodeError, EncodeError, Enumerator, Finding, ModelError, OmtError,
                     UnknownName)

__all__ = ["Codec", "DecodeError", "EncodeError", "Enumerator", "Field", "Finding", "Model",
           "ModelError", "OmtError", "Table", "UnknownName", "load"]


def load(*sources: str | os.PathLike[str] | bytes, mim: bool = False,
         strict: bool = False) -> Model:
    """Reads documents, given by path or as octets, and merges them in this order.

    With `mim` the standard MIM of the newest edition among them stands before them. What is wrong is
    in `findings` of the model; with `strict` an error among them raises ModelError.
    """
    documents = []
    for place, source in enumerate(sources, 1):
        if isinstance(source, bytes):
            documents.append((f"document {place}", source))
        else:
            documents.append((os.fspath(source), Path(source).read_bytes()))
    model = read_documents(documents, mim)
    if strict and not model.is_sound:
        raise ModelError(model.findings)
    return model
