"""Keys, and the operations that use them."""
from __future__ import annotations

from collections.abc import Iterable
from typing import TYPE_CHECKING, Any, BinaryIO, Literal, NoReturn, overload

from . import _batch, _stream
from ._errors import LatchkeyError, check
from ._latchkey import ffi, lib
from ._names import Cipher, CipherName, Hash, HashName, Provider, ProviderName, find
from ._native import allocate, input_bytes, struct, unsigned
from ._password import BUILT_IN_PASSWORD, password_bytes

if TYPE_CHECKING:
    from _typeshed import ReadableBuffer

    from ._batch import Errors, Records
    from ._password import Password, _BuiltIn

_PADDING = 8  # most bytes that encrypting adds


class Key:
    """A key, derived from a password as CryptDeriveKey does. Without a random salt, equal arguments give equal keys.

    password            exact bytes, or text with its `encoding`: Windows programs often used the system's code page
                        ("cp1252") or "utf-16-le". BUILT_IN_PASSWORD is the library's built-in password.
    hash, cipher        members of Hash and Cipher, or their names
    provider            a member of Provider or its name; None is base, or enhanced if base lacks the cipher or key bits
                        or for any rc2_effective_bits
    key_bits            the length of an RC4 or RC2 key: 40 to 56, with the enhanced provider up to 128, in steps of 8.
                        Exactly 40 adds 11 zero bytes of salt, as CryptoAPI does.
    rc2_effective_bits  RC2: 1 to 1024; None is the length of the key. Data that Windows 2000 and earlier encrypted with
                        the enhanced provider has 40.

    RC4 does not detect a wrong password, hash or provider: the result is garbage without an error. The other ciphers
    detect it in 254 of 255 cases. For RC4 and RC2 the provider matters: base keys have 40 bits, enhanced ones 128:

    >>> base = latchkey.Key(b"secret", hash="md5", cipher="rc4")
    >>> enhanced = latchkey.Key(b"secret", hash="md5", cipher="rc4", provider="enhanced")
    >>> enhanced.decrypt(base.encrypt(b"attack at dawn")) == b"attack at dawn"
    False

    A key is closed by close(), at the end of a `with` block, or by the garbage collector. Its memory is then wiped, after
    calls of other threads have finished. A text password is encoded into a copy that is wiped. Python's own str and bytes
    cannot be wiped: if that matters, pass a bytearray and wipe it. A Key cannot be pickled.
    """

    __slots__ = ("_cipher", "_hash", "_pointer", "__weakref__")

    def __init__(self, password: Password | _BuiltIn, *, hash: HashName, cipher: CipherName, provider: ProviderName = None,
                 encoding: str | None = None, key_bits: int | None = None, rc2_effective_bits: int | None = None) -> None:
        self._pointer: Any = None
        self._hash, self._cipher = find(Hash, hash), find(Cipher, cipher)
        settings = struct("latchkey_settings")
        settings.hash, settings.cipher = self._hash, self._cipher
        settings.provider = Provider.ANY if provider is None else find(Provider, provider)
        settings.key_bits = unsigned("key_bits", key_bits or 0)
        settings.rc2_effective_bits = unsigned("rc2_effective_bits", rc2_effective_bits or 0)
        if password is BUILT_IN_PASSWORD:
            settings.flags, password = lib.LATCHKEY_DEFAULT_PASSWORD, b""
        pointer, failure = ffi.new("latchkey_key **"), struct("latchkey_failure")
        with password_bytes(password, encoding) as secret:
            check(lib.latchkey_key_open(settings, secret, len(secret), pointer, failure), failure)
        self._pointer = ffi.gc(pointer[0], lib.latchkey_key_close)

    def close(self) -> None:
        """Wipes the key as soon as no thread and no stream uses it. Closing again does nothing."""
        self._pointer = None

    def __enter__(self) -> Key:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __repr__(self) -> str:
        closed = "" if self._pointer else ", closed"
        return f"<latchkey.Key {self._hash.name} {self._cipher.name}{closed}>"

    def __reduce__(self) -> NoReturn:
        raise TypeError("a Key cannot be pickled: make it from the password in each process")

    def _open_pointer(self) -> Any:
        """The key's pointer. The reference that the caller gets keeps the key open during a call."""
        pointer = self._pointer
        if pointer is None:
            raise ValueError("the key is closed")
        return pointer

    def _transform(self, function: Any, data: ReadableBuffer, extra: int) -> bytes:
        key, failure = self._open_pointer(), struct("latchkey_failure")
        with input_bytes(data) as source:
            room = len(source) + extra
            output, length = allocate(room), ffi.new("size_t *", room)
            check(function(key, source, len(source), output, length, failure), failure)
        result: bytes = ffi.buffer(output, length[0])[:]
        return result

    def encrypt(self, data: ReadableBuffer) -> bytes:
        """The ciphertext of a message of less than 4 GiB. Block ciphers make it 1 to 8 bytes longer.

        >>> latchkey.Key(b"secret", hash="md5", cipher="des").encrypt(b"").hex()
        '7a26956e5220dc1a'
        """
        return self._transform(lib.latchkey_encrypt, data, _PADDING)

    def decrypt(self, data: ReadableBuffer) -> bytes:
        """The plaintext of a whole message. Raises CipherError.

        >>> key = latchkey.Key(b"PNEMAIL", hash="md5", cipher="rc2", key_bits=80)
        >>> key.decrypt(bytes.fromhex("DC3D962329DD1B2F"))
        b'BF0AC41'
        >>> key.decrypt(b"damaged")
        Traceback (most recent call last):
        latchkey.CipherError: Error decrypting data (location 717, number 120)
        """
        return self._transform(lib.latchkey_decrypt, data, 0)

    @overload
    def encrypt_many(self, records: Iterable[ReadableBuffer | None], *, errors: Literal["raise", "null"] = ...,
                     threads: int = ...) -> list[bytes | None]: ...

    @overload
    def encrypt_many(self, records: Iterable[ReadableBuffer | None], *, errors: Literal["return"],
                     threads: int = ...) -> list[bytes | LatchkeyError | None]: ...

    @overload
    def encrypt_many(self, records: ReadableBuffer, offsets: ReadableBuffer, *, errors: Literal["raise", "null"] = ...,
                     threads: int = ...) -> Records: ...

    def encrypt_many(self, records: Any, offsets: Any = None, *, errors: Errors = "raise", threads: int = 0) -> Any:
        """The ciphertext of each record; see decrypt_many."""
        return self._many(lib.latchkey_encrypt_records, _PADDING, records, offsets, errors, threads)

    @overload
    def decrypt_many(self, records: Iterable[ReadableBuffer | None], *, errors: Literal["raise", "null"] = ...,
                     threads: int = ...) -> list[bytes | None]: ...

    @overload
    def decrypt_many(self, records: Iterable[ReadableBuffer | None], *, errors: Literal["return"],
                     threads: int = ...) -> list[bytes | LatchkeyError | None]: ...

    @overload
    def decrypt_many(self, records: ReadableBuffer, offsets: ReadableBuffer, *, errors: Literal["raise", "null"] = ...,
                     threads: int = ...) -> Records: ...

    def decrypt_many(self, records: Any, offsets: Any = None, *, errors: Errors = "raise", threads: int = 0) -> Any:
        """Decrypts each record as a separate message, on up to `threads` threads (0: one for each processor).

        For an iterable of bytes it returns a list; None stays None. If a record fails,

        errors="raise"   raises its exception, with the record's `index`
        errors="null"    puts None into the list
        errors="return"  puts its exception into the list

        >>> key = latchkey.Key(b"secret", hash="md5", cipher="des")
        >>> records = [key.encrypt(b"one"), None, b"damaged"]
        >>> key.decrypt_many(records, errors="null")
        [b'one', None, None]

        With `offsets` the records are in one buffer, as in a binary column of Apache Arrow: record i is the bytes from
        offsets[i] up to offsets[i + 1]. The offsets are int32 or int64, one more than there are records. The result is a
        Records of views, with offsets of the same width, for numpy.frombuffer and pyarrow.py_buffer; nothing is copied.
        errors="null" leaves a failed record empty, with its status in `statuses`.

        >>> import array
        >>> column = key.encrypt_many([b"one", b"three"])
        >>> offsets = array.array("i", [0, 8, 16])
        >>> result = key.decrypt_many(b"".join(column), offsets)
        >>> bytes(result.data), result.offsets.tolist()
        (b'onethree', [0, 3, 8])
        """
        return self._many(lib.latchkey_decrypt_records, 0, records, offsets, errors, threads)

    def _many(self, function: Any, extra: int, records: Any, offsets: Any, errors: Errors, threads: int) -> Any:
        batch = _batch.Batch(self._open_pointer(), function, extra, unsigned("threads", threads))
        if offsets is not None:
            return _batch.process_buffers(batch, records, offsets, errors)
        again = self.encrypt if extra else self.decrypt
        return _batch.process_list(batch, records, errors, again)

    def encryptor(self) -> _stream.Stream:
        """A stream that encrypts one message in pieces."""
        return _stream.Stream(self._open_pointer(), lib.LATCHKEY_ENCRYPT)

    def decryptor(self) -> _stream.Stream:
        """A stream that decrypts one message in pieces."""
        return _stream.Stream(self._open_pointer(), lib.LATCHKEY_DECRYPT)

    def encrypt_file(self, source: BinaryIO, target: BinaryIO, chunk_size: int = _stream.CHUNK_SIZE) -> int:
        """Encrypts the rest of a binary file object, of any length, into another one. Returns the bytes written."""
        with self.encryptor() as stream:
            return stream.copy(source, target, chunk_size)

    def decrypt_file(self, source: BinaryIO, target: BinaryIO, chunk_size: int = _stream.CHUNK_SIZE) -> int:
        """Decrypts the rest of a binary file object into another one. Returns the bytes written.

        A CipherError is raised at the end; after it, do not trust what was written.
        """
        with self.decryptor() as stream:
            return stream.copy(source, target, chunk_size)
