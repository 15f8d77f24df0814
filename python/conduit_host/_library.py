"""The C library, as its header declares it."""

from __future__ import annotations

import ctypes
import sys
from ctypes import CFUNCTYPE, POINTER, c_char_p, c_int32, c_size_t, c_uint64, c_void_p
from pathlib import Path

WINDOWS = sys.platform == "win32"
LIBRARY = "conduit_host.dll" if WINDOWS else "libconduit_host.so.1"
#: Of the wheel: beside the library stand the module and the virtual reader.
FOLDER = Path(__file__).with_name("lib")

SUCCESS = 0
NO_SUCH_HOST = -1
IN_CALLBACK = -4
BUSY = -5
RUNNING = -8
NOT_RUNNING = -9
CANNOT_LOAD = -10
CANNOT_READ = -11
BUFFER_TOO_SMALL = -12

UNKNOWN_PARAMETER = 2
READER_NOT_STARTED = 13


class ItemStructure(ctypes.Structure):
    _fields_ = [
        ("size", c_size_t),
        ("name", c_char_p),
        ("type", c_int32),
        ("length", c_int32),
        ("data", c_void_p),
        ("feature", c_char_p),
        ("last", c_int32),
    ]


class ReaderLineStructure(ctypes.Structure):
    _fields_ = [
        ("size", c_size_t),
        ("level", c_int32),
        ("text", c_char_p),
        ("document", c_char_p),
        ("warning", c_char_p),
    ]


LogCallback = CFUNCTYPE(None, c_void_p, c_int32, c_char_p, c_char_p)
ItemCallback = CFUNCTYPE(c_int32, c_void_p, POINTER(ItemStructure))
TextCallback = CFUNCTYPE(None, c_void_p, c_char_p)
PlainCallback = CFUNCTYPE(None, c_void_p)
ScriptCallback = CFUNCTYPE(c_int32, c_void_p, c_char_p)
ReaderLineCallback = CFUNCTYPE(None, c_void_p, c_int32, c_char_p, c_char_p)
ReaderLogCallback = CFUNCTYPE(None, c_void_p, POINTER(ReaderLineStructure))
EntryCallback = CFUNCTYPE(None, c_void_p, c_char_p, c_char_p)


class Callbacks(ctypes.Structure):
    _fields_ = [
        ("size", c_size_t),
        ("context", c_void_p),
        ("log", LogCallback),
        ("item", ItemCallback),
        ("event", TextCallback),
        ("begin", PlainCallback),
        ("end", PlainCallback),
        ("script", ScriptCallback),
        ("state", TextCallback),
        ("error", TextCallback),
        ("reader_line", ReaderLineCallback),
        ("ended", PlainCallback),
        ("reader_log", ReaderLogCallback),
    ]


def _load() -> ctypes.CDLL:
    beside = FOLDER / LIBRARY
    library = ctypes.CDLL(str(beside) if beside.exists() else LIBRARY)
    host = c_uint64
    signatures: dict[str, tuple[object, list[object]]] = {
        "version": (c_char_p, []),
        "create": (c_int32, [POINTER(Callbacks), POINTER(host)]),
        "load": (c_int32, [host, c_char_p]),
        "set_session": (c_int32, [host, c_char_p]),
        "follow_reader_log": (c_int32, [host, c_char_p]),
        "set_parameter": (c_int32, [host, c_char_p, c_char_p]),
        "get_parameter": (c_int32, [host, c_char_p, c_char_p, c_size_t, POINTER(c_size_t)]),
        "list_parameters": (c_int32, [host, EntryCallback, c_void_p]),
        "add_condition": (c_int32, [host, c_char_p, c_char_p]),
        "add_action": (c_int32, [host, c_char_p, c_char_p, c_char_p, c_char_p]),
        "list_conditions": (c_int32, [host, EntryCallback, c_void_p]),
        "initialise": (c_int32, [host]),
        "shutdown": (c_int32, [host]),
        "destroy": (c_int32, [host]),
        "last_error": (c_size_t, [host, c_char_p, c_size_t]),
        "media_type": (c_char_p, [c_char_p, c_size_t]),
    }
    for name, (result, arguments) in signatures.items():
        function = getattr(library, f"conduit_host_{name}")
        function.restype = result
        function.argtypes = arguments
    return library


try:
    library = _load()
except (OSError, AttributeError) as problem:  # missing, or older than this package
    raise ImportError(f"cannot use the library of conduit_host: {problem}") from problem


def version() -> str:
    return str(library.conduit_host_version().decode())


def media_type(data: bytes) -> str:
    """The media type of a picture that browsers show, "image/png"; empty for other data."""
    return str(library.conduit_host_media_type(data, len(data)).decode())
