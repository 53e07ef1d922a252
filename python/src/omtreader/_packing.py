# SPDX-License-Identifier: Apache-2.0
"""Models as one text that says all: for the metadata of files, and for workers on other machines."""

import base64
import binascii
import hashlib
import json
import threading
import zlib
from collections.abc import Sequence
from typing import Any

from ._core import Codec, Model, read_documents
from ._types import OmtError

FORM = 1
"""Grows where texts are no longer read by what was written before."""
MOST_OCTETS = 1 << 28
"""Of all documents of a text; a few octets may claim to unpack to any number."""


class PackingError(OmtError):
    """A text that holds no model."""


def digest(documents: Sequence[tuple[str, bytes]]) -> str:
    """A hash of names and octets, in this order."""
    whole = hashlib.sha256()
    for name, octets in documents:
        for part in (name.encode("utf-8", "surrogateescape"), octets):
            whole.update(len(part).to_bytes(8, "big"))
            whole.update(part)
    return whole.hexdigest()


def pack(model: Model) -> str:
    """A model with the octets of all its documents, the MIM too, as JSON."""
    documents = list(model.documents)
    if model.mim:
        documents.insert(0, ("HLAstandardMIM.xml", model.standard_mim()))
    return json.dumps({"form": FORM, "sha256": digest(documents), "documents": [
        {"name": name.encode("utf-8", "surrogateescape").decode("utf-8", "replace"),
         "octets": base64.b64encode(zlib.compress(octets)).decode()}
        for name, octets in documents]})


def _document(one: Any, room: int) -> tuple[str, bytes]:
    if not isinstance(one, dict) or not isinstance(one.get("name"), str):
        raise PackingError("a document has no name")
    try:
        unpacking = zlib.decompressobj()
        octets = unpacking.decompress(base64.b64decode(one["octets"], validate=True), room + 1)
    except (KeyError, TypeError, binascii.Error, ValueError, zlib.error) as error:
        raise PackingError(f"the octets of {one['name']!r} cannot be unpacked: {error}") from None
    if len(octets) > room:
        raise PackingError(f"the documents have more than {MOST_OCTETS} octets")
    if not unpacking.eof:
        raise PackingError(f"the octets of {one['name']!r} are not whole")
    return one["name"], octets


def unpack(text: str | bytes) -> tuple[str, list[tuple[str, bytes]]]:
    """The hash and the documents of what pack() made. Raises PackingError for all else."""
    try:
        packed = json.loads(text)
    except (ValueError, RecursionError) as error:
        raise PackingError(f"no JSON: {error}") from None
    if not isinstance(packed, dict) or not isinstance(packed.get("documents"), list):
        raise PackingError("it has no documents")
    if packed.get("form") != FORM:
        raise PackingError(f"its form is {packed.get('form')!r}, and this package reads {FORM}")
    documents: list[tuple[str, bytes]] = []
    room = MOST_OCTETS
    for one in packed["documents"]:
        documents.append(_document(one, room))
        room -= len(documents[-1][1])
    found = digest(documents)
    if packed.get("sha256") != found:
        raise PackingError("the documents are not those that its hash is of")
    return found, documents


_lock = threading.Lock()
_codecs: dict[str, Codec] = {}


def codec_of(key: str, text: str | bytes) -> Codec:
    """The codec of a packed model. Kept by its key, a few at most, so that a worker makes it once."""
    with _lock:
        codec = _codecs.get(key)
        if codec is None:
            codec = read_documents(unpack(text)[1], False).codec()
            while len(_codecs) >= 8:
                del _codecs[next(iter(_codecs))]
            _codecs[key] = codec
        return codec
