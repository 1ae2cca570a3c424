"""Finding the settings of ciphertexts."""
from __future__ import annotations

import array
from collections.abc import Iterable
from itertools import accumulate
from typing import TYPE_CHECKING, Any, NamedTuple, TypedDict

from ._errors import check
from ._latchkey import ffi, lib
from ._names import Cipher, Hash, Provider
from ._native import input_bytes, struct
from ._password import password_bytes

if TYPE_CHECKING:
    from _typeshed import ReadableBuffer

    from ._password import Password

_ALL = 64  # room for candidates: more than there are settings


class Settings(TypedDict):
    """The arguments of Key, except the password."""

    hash: Hash
    cipher: Cipher
    provider: Provider
    key_bits: int | None
    rc2_effective_bits: int | None


class Candidate(NamedTuple):
    """Settings that ciphertexts may have been made with.

    padding      bytes of padding of the first sample; None for RC4
    probability  that these settings are the right ones, 0 to 1
    """

    hash: Hash
    cipher: Cipher
    provider: Provider
    key_bits: int | None
    rc2_effective_bits: int | None
    padding: int | None
    probability: float

    @property
    def settings(self) -> Settings:
        """The arguments of Key: Key(password, **candidate.settings)."""
        return {"hash": self.hash, "cipher": self.cipher, "provider": self.provider, "key_bits": self.key_bits,
                "rc2_effective_bits": self.rc2_effective_bits}


def identify(samples: bytes | bytearray | memoryview | Iterable[ReadableBuffer], password: Password, *,
             encoding: str | None = None) -> list[Candidate]:
    """The settings that fit ciphertexts under a password, the most probable first; an empty list if none do.

    All samples must have been encrypted under the same settings. More and longer samples give a more certain answer.

    >>> key = latchkey.Key(b"secret", hash="sha1", cipher="3des")
    >>> samples = [key.encrypt(text) for text in (b"The first letter", b"and the second one", b"both in English")]
    >>> best = latchkey.identify(samples, b"secret")[0]
    >>> best.hash.name, best.cipher.name
    ('SHA1', 'TRIPLE_DES')
    >>> latchkey.Key(b"secret", **best.settings).decrypt(samples[0])
    b'The first letter'
    """
    items: list[ReadableBuffer]
    items = [samples] if isinstance(samples, (bytes, bytearray, memoryview)) else list(samples)
    data, offsets = b"".join(items), array.array("q", accumulate(map(_length, items), initial=0))
    records, failure = struct("latchkey_records"), struct("latchkey_failure")
    records.offset_size, records.count = offsets.itemsize, len(items)
    records.data_length = len(data)
    found, count = ffi.new("latchkey_candidate[]", _ALL), ffi.new("size_t *", _ALL)
    size = ffi.sizeof("latchkey_candidate")
    with input_bytes(data) as records.data, input_bytes(offsets) as records.offsets, \
            password_bytes(password, encoding) as secret:
        check(lib.latchkey_identify(records, secret, len(secret), size, found, count, failure), failure)
    return [_candidate(found[index]) for index in range(count[0])]


def _length(item: ReadableBuffer) -> int:
    return memoryview(item).nbytes


def _candidate(found: Any) -> Candidate:
    settings = found.settings
    return Candidate(Hash(settings.hash), Cipher(settings.cipher), Provider(settings.provider), settings.key_bits or None,
                     settings.rc2_effective_bits or None, found.padding if found.padding >= 0 else None,
                     found.probability)
