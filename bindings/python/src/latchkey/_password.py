"""Passwords for the C interface, without a copy that stays in memory."""
from __future__ import annotations

import codecs
import contextlib
import enum
from collections.abc import Iterator
from typing import TYPE_CHECKING, Any, Final, Union

from ._latchkey import ffi
from ._native import input_bytes

if TYPE_CHECKING:
    from _typeshed import ReadableBuffer

    Password = Union[str, ReadableBuffer]


class _BuiltIn(enum.Enum):
    """The library's built-in password, which the component uses if no password is set."""

    PASSWORD = "the library's built-in password"


BUILT_IN_PASSWORD: Final = _BuiltIn.PASSWORD


def _pieces(password: str, encoding: str) -> Iterator[bytes]:
    """The encoded password, one character at a time, so that no object contains more than one."""
    encoder = codecs.getincrementalencoder(encoding)()
    for character in password:
        yield encoder.encode(character)
    yield encoder.encode("", True)


def _encode(password: str, encoding: str) -> bytearray:
    encoded = bytearray(sum(map(len, _pieces(password, encoding))))
    end = 0
    for piece in _pieces(password, encoding):
        start, end = end, end + len(piece)
        encoded[start:end] = piece
    return encoded


def _copy(password: str, encoding: str) -> bytearray:
    try:
        return _encode(password, encoding)
    except UnicodeEncodeError:
        pass  # the exception contains a character of the password: raise another one outside this block
    raise ValueError(f"{encoding} lacks a character of the password")


@contextlib.contextmanager
def password_bytes(password: Password, encoding: str | None) -> Iterator[Any]:
    """The password's bytes: the caller's own memory or, for text, a copy that is wiped afterwards."""
    if not isinstance(password, str):
        if encoding is not None:
            raise TypeError("an encoding is only for a password of type str")
        with input_bytes(password) as secret:
            yield secret
        return
    if encoding is None:
        raise TypeError('a password of type str needs its encoding, such as "cp1252" or "utf-16-le"')
    copy = _copy(password, encoding)
    try:
        with input_bytes(copy) as secret:
            yield secret
    finally:
        ffi.memmove(copy, bytes(len(copy)), len(copy))
