"""Random data."""
from __future__ import annotations

from ._errors import check
from ._latchkey import ffi, lib
from ._native import allocate, struct, unsigned


def random_bytes(length: int) -> bytes:
    """Random bytes from the cryptographic provider, less than 4 GiB.

    >>> len(latchkey.random_bytes(16))
    16
    """
    output, failure = allocate(unsigned("length", length, 63)), struct("latchkey_failure")
    check(lib.latchkey_random_bytes(output, length, failure), failure)
    result: bytes = ffi.buffer(output)[:]
    return result


def salt(length: int) -> str:
    """Random letters A to Z and a to z, each equally likely.

    >>> latchkey.salt(8).isalpha()
    True
    """
    output, failure = allocate(unsigned("length", length, 63)), struct("latchkey_failure")
    check(lib.latchkey_salt(ffi.cast("char *", output), length, failure), failure)
    letters: bytes = ffi.buffer(output)[:]
    return letters.decode("ascii")
