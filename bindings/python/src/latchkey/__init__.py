"""Encryption and hashing as the Windows CryptoAPI does, for data of programs that use it.

>>> import latchkey
>>> key = latchkey.Key("secret", encoding="cp1252", hash="sha1", cipher="3des")
>>> key.decrypt(key.encrypt(b"attack at dawn"))
b'attack at dawn'

Data and passwords are exact bytes: nothing is trimmed, added or converted. The algorithms are old; use them to exchange
data with systems that already use them.

Errors: a LatchkeyError has the library's status and the numbers that the Windows component records, which
`latchkey errors NUMBER` explains. MemoryError, TypeError and ValueError have their usual meaning.

Threads: any number of threads may use all functions and keys at once. The library runs without the global interpreter
lock. Do not change an input buffer during a call.
"""
from ._batch import Records
from ._digest import Hasher, digest
from ._errors import ArgumentError, CipherError, LatchkeyError, ProviderError, Status
from ._identify import Candidate, identify
from ._key import Key
from ._names import Cipher, Hash, Provider
from ._native import version as _version
from ._password import BUILT_IN_PASSWORD
from ._random import random_bytes, salt
from ._stream import Stream

__version__ = _version()
__all__ = [
    "BUILT_IN_PASSWORD", "ArgumentError", "Candidate", "Cipher", "CipherError", "Hash", "Hasher", "Key", "LatchkeyError",
    "Provider", "ProviderError", "Records", "Status", "Stream", "digest", "identify", "random_bytes", "salt",
]

# Tracebacks and documentation show the public names.
for _public in (ArgumentError, Candidate, Cipher, CipherError, Hash, Hasher, Key, LatchkeyError, Provider, ProviderError,
                Records, Status, Stream, digest, identify, random_bytes, salt):
    _public.__module__ = __name__
