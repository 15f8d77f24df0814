"""Receives scanned identity documents from an input module.

    with Module() as module:
        for document in module.run("scans"):
            print(document.codeline.surname)
"""

from ._library import media_type, version
from .document import Barcode, Codeline, Document, Licence, Swipe
from .errors import (
    ClosedError,
    ConduitError,
    LoadError,
    OrderError,
    RefusedError,
    SessionError,
    StartError,
    UnknownParameterError,
)
from .happenings import Begin, End, Error, Event, Happening, Item, ReaderLine, Script, State
from .module import DEFAULT_MODULE, Module

__version__ = version()

__all__ = [
    "DEFAULT_MODULE",
    "Barcode",
    "Begin",
    "ClosedError",
    "Codeline",
    "ConduitError",
    "Document",
    "End",
    "Error",
    "Event",
    "Happening",
    "Item",
    "Licence",
    "LoadError",
    "Module",
    "OrderError",
    "ReaderLine",
    "RefusedError",
    "Script",
    "SessionError",
    "StartError",
    "State",
    "Swipe",
    "UnknownParameterError",
    "media_type",
    "version",
]
