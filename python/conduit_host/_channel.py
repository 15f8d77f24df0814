"""The way from the reader's threads to the consumer's."""

from __future__ import annotations

from collections import deque
from threading import Condition

from .errors import ClosedError
from .happenings import Happening
from ._library import NO_SUCH_HOST

#: How long a Ctrl-C may go unnoticed where a wait cannot be interrupted.
POLL_SECONDS = 0.5


class Channel:
    """Holds what has come and was not taken yet, up to a limit, at which the reader waits."""

    def __init__(self, limit: int) -> None:
        self._limit = limit
        self._waiting: deque[Happening] = deque()
        self._changed = Condition()
        self._bounded = False
        self._ended = False
        self._closed = False
        self._failure: BaseException | None = None

    @property
    def closed(self) -> bool:
        return self._closed

    def bound(self) -> None:
        """From now on the reader waits at the limit. Until then it must not: it starts, and
        whoever starts it consumes nothing meanwhile."""
        with self._changed:
            self._bounded = True

    def put(self, happening: Happening) -> None:
        with self._changed:
            self._changed.wait_for(
                lambda: self._closed or not self._bounded or len(self._waiting) < self._limit
            )
            if not self._closed:
                self._waiting.append(happening)
                self._changed.notify_all()

    def get(self) -> Happening | None:
        """The next; None when the reader has ended and everything has been taken."""
        with self._changed:
            while True:
                if self._failure is not None:
                    raise self._failure
                if self._closed:
                    raise ClosedError(NO_SUCH_HOST, "the module has been closed")
                if self._waiting:
                    happening = self._waiting.popleft()
                    self._changed.notify_all()
                    return happening
                if self._ended:
                    return None
                self._changed.wait(POLL_SECONDS)

    def end(self) -> None:
        """The reader has nothing more to give."""
        with self._changed:
            self._ended = True
            self._changed.notify_all()

    def fail(self, failure: BaseException) -> None:
        """A callback raised this: the consumer gets it in place of what is waiting."""
        with self._changed:
            self._failure = self._failure or failure
            self._closed = True
            self._changed.notify_all()

    def close(self) -> None:
        """The consumer is gone: nothing is kept, and the reader waits no more."""
        with self._changed:
            self._closed = True
            self._waiting.clear()
            self._changed.notify_all()
