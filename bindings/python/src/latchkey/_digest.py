"""Digests."""
from __future__ import annotations

import threading
from typing import TYPE_CHECKING, Any

from ._errors import check
from ._latchkey import ffi, lib
from ._names import Hash, HashName, find
from ._native import allocate, input_bytes, struct

if TYPE_CHECKING:
    from _typeshed import ReadableBuffer

_LONGEST = 20


def digest(data: ReadableBuffer, hash: HashName) -> bytes:
    """The digest of data of any length: 16 bytes; 20 for SHA-1.

    >>> latchkey.digest(b"abc", "md2").hex()
    'da853b0d3f88d99b30283a69e6ded6bb'
    """
    number, failure = find(Hash, hash), struct("latchkey_failure")
    output, length = allocate(_LONGEST), ffi.new("size_t *", _LONGEST)
    with input_bytes(data) as source:
        check(lib.latchkey_digest(number, source, len(source), output, length, failure), failure)
    result: bytes = ffi.buffer(output, length[0])[:]
    return result


class Hasher:
    """Hashes data in pieces. Has the members of hashlib's objects, except copy.

    >>> hasher = latchkey.Hasher("sha1", b"a")
    >>> hasher.update(b"bc")
    >>> hasher.hexdigest()
    'a9993e364706816aba3e25717850c26c9cd0d89d'

    After the first digest or hexdigest, update raises ValueError. Threads that share a Hasher take turns.
    """

    def __init__(self, hash: HashName, data: ReadableBuffer = b"") -> None:
        self._hash = find(Hash, hash)
        self._digest: bytes | None = None
        pointer, failure = ffi.new("latchkey_hash **"), struct("latchkey_failure")
        check(lib.latchkey_hash_open(self._hash, pointer, failure), failure)
        self._pointer: Any = ffi.gc(pointer[0], lib.latchkey_hash_close)
        self._lock = threading.Lock()
        self.update(data)

    @property
    def name(self) -> str:
        """The name of the hash in lower case, such as "md5"."""
        return self._hash.name.lower()

    @property
    def digest_size(self) -> int:
        """The length of the digest in bytes."""
        return 20 if self._hash == Hash.SHA1 else 16

    @property
    def block_size(self) -> int:
        """The length of the hash's block in bytes."""
        return 16 if self._hash == Hash.MD2 else 64

    def update(self, data: ReadableBuffer) -> None:
        """Adds data."""
        failure = struct("latchkey_failure")
        with input_bytes(data) as source, self._lock:
            if self._digest is not None:
                raise ValueError("the digest was read: make another Hasher")
            check(lib.latchkey_hash_update(self._pointer, source, len(source), failure), failure)

    def digest(self) -> bytes:
        """The digest of all data added."""
        with self._lock:
            if self._digest is None:
                self._digest = self._finish()
            return self._digest

    def hexdigest(self) -> str:
        """The digest as hexadecimal text in lower case."""
        return self.digest().hex()

    def _finish(self) -> bytes:
        output, length, failure = allocate(_LONGEST), ffi.new("size_t *", _LONGEST), struct("latchkey_failure")
        check(lib.latchkey_hash_finish(self._pointer, output, length, failure), failure)
        result: bytes = ffi.buffer(output, length[0])[:]
        return result
