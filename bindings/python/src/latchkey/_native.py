"""Access to the C interface: its buffers, structs and texts."""
from __future__ import annotations

import functools
from typing import TYPE_CHECKING, Any

from ._latchkey import ffi, lib

if TYPE_CHECKING:
    from _typeshed import ReadableBuffer

# For memory that a function fills: cffi does not clear it first.
_allocate = ffi.new_allocator(should_clear_after_alloc=False)


def allocate(length: int) -> Any:
    """An output buffer of `length` bytes."""
    return _allocate("uint8_t[]", length)


def input_bytes(data: ReadableBuffer) -> Any:
    """The bytes of an object with the buffer protocol, not copied. A `with` block releases the object at its end."""
    if isinstance(data, str):
        raise TypeError("bytes are required, not str")
    return ffi.from_buffer("uint8_t[]", data)


def struct(name: str) -> Any:
    """A struct of the C interface, with its size set and all other members 0."""
    return ffi.new(*_initial(name))


@functools.cache
def _initial(name: str) -> tuple[Any, tuple[int]]:
    """The pointer type and the first member of a struct."""
    return ffi.typeof(f"{name} *"), (ffi.sizeof(name),)


def unsigned(name: str, value: int, bits: int = 32) -> int:
    """The value, if it fits an unsigned C type of that many bits; otherwise raises ValueError."""
    if not 0 <= value < 1 << bits:
        raise ValueError(f"{name}: {value} is not a number from 0 to 2**{bits} - 1")
    return value


def version() -> str:
    return _text(lib.latchkey_version())


def status_text(status: int) -> str:
    return _text(lib.latchkey_status_text(status))


def _text(pointer: Any) -> str:
    text: bytes = ffi.string(pointer)
    return text.decode("ascii")
