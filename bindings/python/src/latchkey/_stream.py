"""One message in pieces."""
from __future__ import annotations

import threading
from typing import TYPE_CHECKING, Any, BinaryIO

from ._errors import check
from ._latchkey import ffi, lib
from ._native import allocate, input_bytes, struct

if TYPE_CHECKING:
    from _typeshed import ReadableBuffer

CHUNK_SIZE = 1 << 20
_HELD_BACK = 8  # most bytes that a stream holds back


class Stream:
    """Encrypts or decrypts a message of any length in pieces. Key.encryptor and Key.decryptor make one.

    >>> key = latchkey.Key(b"secret", hash="sha1", cipher="3des")
    >>> stream = key.encryptor()
    >>> message = stream.update(b"attack ") + stream.update(b"at dawn") + stream.finish()
    >>> key.decrypt(message)
    b'attack at dawn'

    The key may be closed before the stream. A stream that failed can only be closed. Threads that share a stream take
    turns.
    """

    def __init__(self, key: Any, direction: int) -> None:
        pointer, failure = ffi.new("latchkey_stream **"), struct("latchkey_failure")
        check(lib.latchkey_stream_open(key, direction, pointer, failure), failure)
        self._pointer: Any = ffi.gc(pointer[0], lib.latchkey_stream_close)
        self._lock = threading.Lock()

    def update(self, data: ReadableBuffer) -> bytes:
        """Adds a piece and returns the part of the result that is ready. Up to 8 bytes are held back."""
        with input_bytes(data) as source:
            return self._call(lib.latchkey_stream_update, len(source), source, len(source))

    def finish(self) -> bytes:
        """Ends the message and returns the rest of its result. The next update begins a new message.

        Raises CipherError as Key.decrypt does; after that, do not trust what the stream returned before.
        """
        return self._call(lib.latchkey_stream_finish, 0)

    def close(self) -> None:
        """Wipes the stream. Closing again does nothing."""
        with self._lock:
            self._pointer = None

    def __enter__(self) -> Stream:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def copy(self, source: BinaryIO, target: BinaryIO, chunk_size: int = CHUNK_SIZE) -> int:
        """Adds the rest of a binary file object, finishes, and writes the result. Returns the bytes written."""
        if chunk_size < 1:
            raise ValueError(f"chunk_size: {chunk_size} is not positive")
        written = 0
        while chunk := _read(source, chunk_size):
            written += _write(target, self.update(chunk))
        return written + _write(target, self.finish())

    def _call(self, function: Any, length: int, *arguments: Any) -> bytes:
        room = length + _HELD_BACK
        output, made, failure = allocate(room), ffi.new("size_t *", room), struct("latchkey_failure")
        with self._lock:
            if self._pointer is None:
                raise ValueError("the stream is closed")
            check(function(self._pointer, *arguments, output, made, failure), failure)
        result: bytes = ffi.buffer(output, made[0])[:]
        return result


def _read(source: BinaryIO, size: int) -> bytes:
    chunk = source.read(size)
    if chunk is None:
        raise BlockingIOError("the source has no data yet: a file object that waits for data is required")
    return chunk


def _write(target: BinaryIO, data: bytes) -> int:
    """Writes all data; an unbuffered file may accept only a part at a time."""
    left = memoryview(data)
    while left:
        taken = target.write(left)
        if taken is None:
            raise BlockingIOError("the target takes no data now: a file object that waits is required")
        left = left[taken:]
    return len(data)
