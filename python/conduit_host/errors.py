"""What goes wrong, as exceptions."""

from __future__ import annotations


class ConduitError(Exception):
    """A call that failed; the text says why."""

    def __init__(self, result: int, reason: str) -> None:
        super().__init__(reason)
        #: As the library answered: positive from the module, negative of its own.
        self.result = result

    def __str__(self) -> str:
        return str(self.args[0])


class LoadError(ConduitError):
    """There is no module to be had from the file."""


class SessionError(ConduitError):
    """The session is neither a file nor a folder that can be read."""


class StartError(ConduitError):
    """The reader did not start."""


class RefusedError(ConduitError, ValueError):
    """The module refuses a parameter's value, a condition or an action."""


class UnknownParameterError(RefusedError, KeyError):
    """The module has no parameter of that name."""


class OrderError(ConduitError):
    """A call that cannot be done now: the reader runs, or does not, or this is a callback."""


class ClosedError(OrderError):
    """The module has been closed."""
