"""What comes from a module, each as a value."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Union


@dataclass(frozen=True, slots=True)
class Item:
    name: str
    #: 4 text, 5 an image or binary; a barcode has 0 to 5, by its format.
    type: int
    #: As the module announced it.
    length: int
    #: None when the module announced bytes and gave none.
    data: bytes | None
    #: Of a barcode: its position among the barcodes of its read.
    feature: str | None
    #: False only for a barcode that is followed by another of the same read.
    last: bool

    @property
    def text(self) -> str:
        """The bytes as UTF-8; what is none becomes surrogates, as in os.fsdecode()."""
        return decode(self.data or b"")


@dataclass(frozen=True, slots=True)
class Event:
    """An event of the reader, "DOC_ON_WINDOW"."""

    name: str


@dataclass(frozen=True, slots=True)
class State:
    """The reader's state, "Reading"; empty for one without a name."""

    text: str


@dataclass(frozen=True, slots=True)
class Error:
    """The reader's error; empty when the one that stood is over."""

    text: str


@dataclass(frozen=True, slots=True)
class Begin:
    """The data of a document or a swipe begins."""


@dataclass(frozen=True, slots=True)
class End:
    """The data of the document or the swipe is complete."""


@dataclass(frozen=True, slots=True)
class Script:
    """A reaction asks for this script."""

    name: str


@dataclass(frozen=True, slots=True)
class ReaderLine:
    """A line of the reader library's own log, before what it is about."""

    #: -1 in a log of another form than the virtual reader's.
    level: int
    text: str
    #: What the document comes from that this line heads; else empty.
    document: str
    #: What the virtual reader doubts; empty in a line that is no warning.
    warning: str = ""


Happening = Union[Item, Event, State, Error, Begin, End, Script, ReaderLine]


def decode(text: bytes) -> str:
    """The module's bytes as text, from which encode() gets them back."""
    return text.decode("utf-8", "surrogateescape")


def encode(text: str) -> bytes:
    """A text for the library, which takes it up to a NUL."""
    data = text.encode("utf-8", "surrogateescape")
    if b"\0" in data:
        raise ValueError(f"a NUL within {text!r}")
    return data
