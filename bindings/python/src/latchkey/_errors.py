"""The exceptions, made from the failures of the C interface."""
from __future__ import annotations

import enum
from typing import Any

from ._latchkey import ffi
from ._native import status_text


class Status(enum.IntEnum):
    """Why a function of the library failed."""

    OK = 0
    BAD_OBJECT = 1
    BAD_ARGUMENT = 2
    BUFFER_TOO_SMALL = 3
    NO_MEMORY = 4
    BAD_HASH = 5
    BAD_CIPHER = 6
    NO_PROVIDER = 7
    KEY_FAILED = 8
    CIPHER_FAILED = 9
    BAD_HEX = 10
    PROVIDER_REFUSED = 11
    FAULT = 12


class LatchkeyError(Exception):
    """A failure that the library reports.

    status    why it failed, a Status
    location  the place that the component records: 718 to 724 encrypting, 711 to 717 decrypting; or 0
    number    the number of the failed check or of the fault; or 0
    index     the record that failed, counted from 0, if the call was for many; otherwise None
    """

    def __init__(self, text: str, status: int, location: int = 0, number: int = 0, index: int | None = None) -> None:
        super().__init__(text, status, location, number, index)
        self.text = text
        self.status = Status(status)
        self.location = location
        self.number = number
        self.index = index

    def __str__(self) -> str:
        record = "" if self.index is None else f"record {self.index}: "
        place = f" (location {self.location}, number {self.number})" if self.location else ""
        return f"{record}{self.text}{place}"


class CipherError(LatchkeyError):
    """The data cannot be decrypted: the password or a setting is wrong, or the data is damaged."""


class ArgumentError(LatchkeyError, ValueError):
    """The library refuses an argument, such as key bits that the provider does not support."""


class ProviderError(LatchkeyError):
    """The cryptographic provider cannot be opened, or returns nothing."""


_CLASSES = {
    Status.BAD_OBJECT: ArgumentError,
    Status.BAD_ARGUMENT: ArgumentError,
    Status.BAD_HASH: ArgumentError,
    Status.BAD_CIPHER: ArgumentError,
    Status.KEY_FAILED: ArgumentError,
    Status.CIPHER_FAILED: CipherError,
    Status.NO_PROVIDER: ProviderError,
    Status.PROVIDER_REFUSED: ProviderError,
}


def error_of(failure: Any, index: int | None = None) -> Exception:
    """The exception for a filled latchkey_failure."""
    text = ffi.string(failure.text).decode("ascii") or status_text(failure.status)
    if failure.status == Status.NO_MEMORY:
        return MemoryError(text)
    kind = _CLASSES.get(failure.status, LatchkeyError)
    return kind(text, failure.status, failure.location, failure.number, index)


def check(status: int, failure: Any) -> None:
    """Raises the exception for a status other than OK."""
    if status != 0:
        raise error_of(failure)
