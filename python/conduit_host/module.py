"""A module, loaded and driven."""

from __future__ import annotations

import atexit
import ctypes
import logging
import os
import time
import weakref
from collections.abc import Callable, Generator, Iterator, MutableMapping
from pathlib import Path
from threading import Lock, Thread, local
from types import TracebackType
from typing import Any, Concatenate, ParamSpec, TypeVar

from . import _library
from ._channel import Channel
from ._library import WINDOWS, library
from .document import Document, DocumentBuilder
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
from .happenings import (
    Begin,
    End,
    Error,
    Event,
    Happening,
    Item,
    ReaderLine,
    Script,
    State,
    decode,
    encode,
)

Path_ = str | os.PathLike[str]
Arguments = ParamSpec("Arguments")
Result = TypeVar("Result")

DEFAULT_MODULE = "FullPageInputModule" + (".dll" if WINDOWS else ".so")

log = logging.getLogger("conduit_host")

#: The module's levels: failures, unknown parameters, items and events, configuration.
LOG_LEVELS = {0: logging.ERROR, 1: logging.WARNING, 2: logging.DEBUG, 3: logging.DEBUG}

#: The modules that are to be closed before the interpreter ends: their readers' threads
#: must not find it gone. One that is dropped before is ended by then.
_open: weakref.WeakSet[Module] = weakref.WeakSet()

_thread = local()


def _in_callback() -> bool:
    return getattr(_thread, "in_callback", False)


class Module:
    """A module: configured, then run any number of times.

    Used as a context manager, or closed by close(). Its methods may be called from any
    thread but not from within on_item and on_script; what is called beside another call
    raises an OrderError.
    """

    #: How many happenings wait for the consumer before the reader has to.
    QUEUE_LIMIT = 64

    def __init__(self, file: Path_ = DEFAULT_MODULE) -> None:
        """Loads the module's library: of the path, or of the package when the name is
        that of the module in it."""
        self._handle = ctypes.c_uint64(0)
        self._channel: Channel | None = None
        self._on_item: Callable[[Item], object] | None = None
        self._on_script: Callable[[str], object] | None = None
        self._error_stands = False
        self._failure: BaseException | None = None
        self._ending = Lock()
        self._own_log = ""
        self._callbacks = self._make_callbacks()

        created = library.conduit_host_create(
            ctypes.byref(self._callbacks), ctypes.byref(self._handle)
        )
        if created != _library.SUCCESS:
            raise OrderError(created, "a module cannot be loaded within a callback")
        _open.add(self)
        self._dropped = weakref.finalize(self, _destroy_dropped, self._handle, self._callbacks)
        self._dropped.atexit = False  # _close_all does it
        try:
            self._check(library.conduit_host_load(self._handle, encode(_find(file))))
        except BaseException:
            self.close()
            raise

    def __enter__(self) -> Module:
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        problem: BaseException | None,
        traceback: TracebackType | None,
    ) -> None:
        self.close()

    def close(self) -> None:
        """Stops the reader if it runs, and ends the module. May be called twice."""
        if _in_callback():
            raise OrderError(_library.IN_CALLBACK, "a module cannot be closed within a callback")
        if self._channel is not None:
            self._channel.close()
        with self._ending:
            self._end(library.conduit_host_destroy)
        _open.discard(self)
        self._dropped.detach()

    @property
    def parameters(self) -> MutableMapping[str, str]:
        """The module's parameters: those that were not set yet have the empty text. They
        are set while the reader is stopped."""
        return _Parameters(self)

    @property
    def conditions(self) -> list[tuple[str, str]]:
        """The conditions that were added, each with its operand."""
        return self._list(library.conduit_host_list_conditions)

    def add_condition(self, kind: str, operand: str) -> None:
        self._check(library.conduit_host_add_condition(self._handle, encode(kind), encode(operand)))

    def add_action(self, kind: str, operand: str, action: str, action_operand: str) -> None:
        """Attaches an action to the first condition of that kind and operand."""
        texts = [encode(text) for text in (kind, operand, action, action_operand)]
        self._check(library.conduit_host_add_action(self._handle, *texts))

    def on(self, event: str, script: str) -> None:
        """Asks for a script whenever the event comes: see Script, and on_script of run()."""
        if ("ReceiveEvent", event) not in self.conditions:
            self.add_condition("ReceiveEvent", event)
        self.add_action("ReceiveEvent", event, "SetActiveScript", script)

    def run(
        self,
        session: Path_ | None = None,
        *,
        watch: bool = False,
        on_item: Callable[[Item], object] | None = None,
        on_script: Callable[[str], object] | None = None,
    ) -> Generator[Document, None, None]:
        """Starts the reader, gives the documents as they come, and stops it at the end.

        An error of the reader is in the document that it belongs to; outside of any it
        comes as a document of its own, without items. For the arguments see stream().
        """
        builder = DocumentBuilder()
        happenings = self.stream(session, watch=watch, on_item=on_item, on_script=on_script)
        try:
            for happening in happenings:
                yield from builder.take(happening)
            yield from builder.finish()
        finally:
            happenings.close()

    def stream(
        self,
        session: Path_ | None = None,
        *,
        watch: bool = False,
        on_item: Callable[[Item], object] | None = None,
        on_script: Callable[[str], object] | None = None,
    ) -> Generator[Happening, None, None]:
        """Starts the reader, gives everything that comes, and stops it at the end.

        The reader starts with the first next(). It is stopped when it has ended, when the
        generator is closed, as a `for` does that is left, and when a callback raises: its
        exception comes out here.

        :param session: what the virtual reader plays, a file or a folder of scans; None: what
            the environment says, or a real reader
        :param watch: goes on with what comes into the folder
        :param on_item: called on the reader's thread before the item is given out; when it
            returns True for "UNKNOWN_DOCUMENT" or "BAD_CHARS", nothing more of that
            codeline comes
        :param on_script: called on the reader's thread; when it returns False, the
            remaining actions of the same condition are left out
        """
        channel = Channel(self.QUEUE_LIMIT)
        self._start(channel, session, watch, on_item, on_script)
        try:
            while (happening := channel.get()) is not None:
                yield happening
        finally:
            self._stop(channel)

    def _start(
        self,
        channel: Channel,
        session: Path_ | None,
        watch: bool,
        on_item: Callable[[Item], object] | None,
        on_script: Callable[[str], object] | None,
    ) -> None:
        if self._channel is not None:
            self._reap()
        if session is not None:
            location = ("watch:" if watch else "") + os.fspath(session)
            self._check(library.conduit_host_set_session(self._handle, encode(location)))
        elif watch:
            raise ValueError("watch needs a session")
        self._follow_reader_log()
        self._on_item, self._on_script = on_item, on_script
        self._error_stands = False
        self._channel = channel
        try:
            self._check(library.conduit_host_initialise(self._handle))
        except BaseException:
            self._stop(channel)
            raise
        channel.bound()

    def _reap(self) -> None:
        """Stops a reader that could not be stopped when its generator was closed, for that
        was done from within a callback."""
        channel = self._channel
        if channel is not None and channel.closed:
            self._stop(channel)
        else:
            raise OrderError(_library.RUNNING, "the reader runs; close its generator first")

    def _stop(self, channel: Channel) -> None:
        channel.close()
        # A generator may be collected on any thread, and so on a reader's that is within
        # a callback. The reader goes on into nothing until it is run again, or closed.
        if _in_callback():
            return
        with self._ending:
            if self._channel is channel:
                self._end(library.conduit_host_shutdown)
                self._channel = None

    def _end(self, function: Any) -> None:
        """Shuts down or destroys, once the short call is over that may be under way."""
        while (result := function(self._handle)) == _library.BUSY:
            time.sleep(0.001)
        if result not in (_library.SUCCESS, _library.NOT_RUNNING, _library.NO_SUCH_HOST):
            self._check(result)

    def _follow_reader_log(self) -> None:
        """Has the reader library's log written where the user wants it, or where it goes
        with this module: it says what each document comes from."""
        file = self.parameters.get("LogFileName")
        if file is None:
            return
        own = file in ("", self._own_log)
        name = None if own else encode(file)
        self._check(library.conduit_host_follow_reader_log(self._handle, name))
        if own:
            self._own_log = self.parameters["LogFileName"]

    def _list(self, function: Any) -> list[tuple[str, str]]:
        entries: list[tuple[str, str]] = []

        def take(_context: int | None, name: bytes, value: bytes) -> None:
            entries.append((decode(name), decode(value)))

        self._check(function(self._handle, _library.EntryCallback(take), None))
        return entries

    def _last_error(self) -> str:
        length = library.conduit_host_last_error(self._handle, None, 0)
        text = ctypes.create_string_buffer(length + 1)
        library.conduit_host_last_error(self._handle, text, len(text))
        return decode(text.value)

    def _check(self, result: int) -> None:
        if self._failure is not None:
            failure, self._failure = self._failure, None
            raise failure
        if result == _library.SUCCESS:
            return
        if result == _library.NO_SUCH_HOST:
            raise ClosedError(result, "the module has been closed")
        kinds: dict[int, type[ConduitError]] = {
            _library.CANNOT_LOAD: LoadError,
            _library.CANNOT_READ: SessionError,
            _library.UNKNOWN_PARAMETER: UnknownParameterError,
            _library.READER_NOT_STARTED: StartError,
            _library.RUNNING: OrderError,
            _library.BUSY: OrderError,
            _library.IN_CALLBACK: OrderError,
        }
        kind = kinds.get(result, RefusedError if result > 0 else ConduitError)
        raise kind(result, self._last_error())

    def _make_callbacks(self) -> _library.Callbacks:
        lib = _library
        return lib.Callbacks(
            size=ctypes.sizeof(lib.Callbacks),
            log=lib.LogCallback(self._caught(Module._take_log, None)),
            item=lib.ItemCallback(self._caught(Module._take_item, 0)),
            event=lib.TextCallback(self._caught(Module._take_event, None)),
            begin=lib.PlainCallback(self._caught(Module._take_begin, None)),
            end=lib.PlainCallback(self._caught(Module._take_end, None)),
            script=lib.ScriptCallback(self._caught(Module._take_script, 0)),
            state=lib.TextCallback(self._caught(Module._take_state, None)),
            error=lib.TextCallback(self._caught(Module._take_error, None)),
            ended=lib.PlainCallback(self._caught(Module._take_end_of_session, None)),
            reader_log=lib.ReaderLogCallback(self._caught(Module._take_reader_line, None)),
        )

    def _caught(
        self, callback: Callable[Concatenate[Module, Arguments], Result], otherwise: Result
    ) -> Callable[Arguments, Result]:
        """The callback, with what it raises kept for the consumer. It does not keep the
        module alive, to which it belongs."""
        reference = weakref.ref(self)

        def guarded(*args: Arguments.args, **kwargs: Arguments.kwargs) -> Result:
            module = reference()
            if module is None:
                return otherwise
            _thread.in_callback = True
            try:
                return callback(module, *args, **kwargs)
            except BaseException as failure:
                if module._channel is not None:
                    module._channel.fail(failure)
                else:
                    module._failure = failure
                return otherwise
            finally:
                _thread.in_callback = False

        return guarded

    def _put(self, happening: Happening) -> None:
        if self._channel is not None:
            self._channel.put(happening)

    def _take_log(self, _context: int | None, level: int, tag: bytes, message: bytes) -> None:
        log.log(LOG_LEVELS.get(level, logging.DEBUG), "%s: %s", decode(tag), decode(message))

    def _take_item(self, _context: int | None, pointer: Any) -> int:
        lent = pointer.contents
        item = Item(
            decode(lent.name),
            lent.type,
            lent.length,
            None if lent.data is None else ctypes.string_at(lent.data, lent.length),
            None if lent.feature is None else decode(lent.feature),
            bool(lent.last),
        )
        answer = self._on_item(item) if self._on_item is not None else None
        self._put(item)
        return 1 if answer is True else 0

    def _take_event(self, _context: int | None, name: bytes) -> None:
        self._put(Event(decode(name)))

    def _take_begin(self, _context: int | None) -> None:
        self._put(Begin())

    def _take_end(self, _context: int | None) -> None:
        self._put(End())

    def _take_state(self, _context: int | None, text: bytes) -> None:
        self._put(State(decode(text)))

    def _take_script(self, _context: int | None, name: bytes) -> int:
        script = decode(name)
        answer = self._on_script(script) if self._on_script is not None else None
        self._put(Script(script))
        return 1 if answer is False else 0

    def _take_error(self, _context: int | None, text: bytes) -> None:
        # Every event says that no error stands.
        if text or self._error_stands:
            self._put(Error(decode(text)))
        self._error_stands = bool(text)

    def _take_reader_line(self, _context: int | None, pointer: Any) -> None:
        lent = pointer.contents
        texts = (decode(text) for text in (lent.text, lent.document, lent.warning))
        self._put(ReaderLine(lent.level, *texts))

    def _take_end_of_session(self, _context: int | None) -> None:
        if self._channel is not None:
            self._channel.end()


class _Parameters(MutableMapping[str, str]):
    """The parameters as a mapping that cannot be made longer or shorter."""

    def __init__(self, module: Module) -> None:
        self._module = module

    def _all(self) -> dict[str, str]:
        return dict(self._module._list(library.conduit_host_list_parameters))

    def __getitem__(self, name: str) -> str:
        values = self._all()
        if name not in values:
            raise UnknownParameterError(
                _library.UNKNOWN_PARAMETER,
                f"no parameter is named {name}; there are: {', '.join(values)}",
            )
        return values[name]

    def __setitem__(self, name: str, value: str) -> None:
        module = self._module
        module._check(
            library.conduit_host_set_parameter(module._handle, encode(name), encode(value))
        )

    def __delitem__(self, name: str) -> None:
        raise TypeError("a module keeps its parameters")

    def __iter__(self) -> Iterator[str]:
        return iter(self._all())

    def __len__(self) -> int:
        return len(self._all())


def _find(file: Path_) -> str:
    path = Path(file)
    packaged = _library.FOLDER / path
    if path.name == os.fspath(file) and not path.exists() and packaged.exists():
        return str(packaged)
    return os.fspath(file)


def _destroy_dropped(handle: ctypes.c_uint64, callbacks: _library.Callbacks) -> None:
    """Ends a module that nobody refers to any more. Takes the callbacks, which the library
    calls until then.

    What is dropped is collected on any thread, and so on a reader's that is within a
    callback, from which no module can be ended.
    """
    while (result := library.conduit_host_destroy(handle)) == _library.BUSY:
        time.sleep(0.001)
    if result == _library.IN_CALLBACK:
        Thread(target=_destroy_dropped, args=(handle, callbacks)).start()


@atexit.register
def _close_all() -> None:
    for module in list(_open):
        module.close()
