# SPDX-License-Identifier: Apache-2.0
"""What values and errors are made of."""

from typing import Any, NamedTuple


class Enumerator(str):
    """The name of a number; a str in every other way."""

    __slots__ = ("value",)
    value: int

    def __new__(cls, name: str, value: int) -> "Enumerator":
        self = super().__new__(cls, name)
        self.value = value
        return self

    def __reduce__(self) -> tuple[Any, ...]:
        return (Enumerator, (str(self), self.value))


class Finding(NamedTuple):
    """One thing that was found in a model."""

    severity: str
    """"error", "warning" or "note"."""
    name: str
    text: str
    file: str
    line: int
    whole: str

    def __str__(self) -> str:
        return self.whole


class OctetChange(NamedTuple):
    """What became of the octets of an attribute, a parameter or a datatype."""

    change: str
    """"same", "compatible" (for what both know), "unknown" or "different"."""
    octet: int | None
    """The first that differs, where it is known."""
    path: str
    why: str


class Detail(NamedTuple):
    """One property or part of a definition that is not as it was."""

    change: str
    part_kind: str
    part: str
    property: str
    before: str
    after: str


class Difference(NamedTuple):
    """One definition that is not as it was."""

    change: str
    """"added", "removed", "renamed", "moved" or "changed"."""
    kind: str
    name: str
    name_before: str
    details: list[Detail]
    octets: OctetChange | None
    """Of attributes, parameters and datatypes that both models have."""
    before: str | None
    """FILE:LINE."""
    after: str | None


class Differences(list[Difference]):
    """All of two models, empty where they say the same."""

    def __init__(self) -> None:
        super().__init__()
        self.octets: dict[str, int] = {}
        """Of how many attributes, parameters and datatypes octets are the same, and so on."""


class OmtError(ValueError):
    """What all errors of this package are."""


class ModelError(OmtError):
    """A model that contradicts itself, or could not be read; `findings` say where."""

    def __init__(self, findings: list[Finding]) -> None:
        errors = [str(one) for one in findings if one.severity == "error"]
        super().__init__("\n".join(errors))
        self.findings = findings


class UnknownName(OmtError):
    """Nothing has this name; the text has the nearest ones."""


class DecodeError(OmtError):
    """Octets that are no value of their datatype."""

    def __init__(self, what: str, path: str, offset: int, needed: int, left: int,
                 partial: Any) -> None:
        super().__init__(f"{path + ': ' if path else ''}octet {offset}: {what}")
        self.what = what
        self.path = path
        self.offset = offset
        self.needed = needed
        self.left = left
        self.partial = partial
        """What was decoded up to there; None where that is nothing."""


class EncodeError(OmtError):
    """A value that its datatype cannot have."""

    def __init__(self, what: str, path: str) -> None:
        super().__init__(f"{path + ': ' if path else ''}{what}")
        self.what = what
        self.path = path
