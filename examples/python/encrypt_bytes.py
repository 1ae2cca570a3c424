#!/usr/bin/env python3
"""Hashes, encrypts and decrypts bytes through ctypes, and reads the failure after a wrong password.

    encrypt_bytes.py [LIBRARY]      LIBRARY defaults to the installed liblatchkey.so.1
"""
import ctypes
import sys

SHA1, TRIPLE_DES, ENHANCED = 4, 4, 1
CIPHER_FAILED = 12
RUN_TIME = 1  # an error_type; 2 is a failure that the operation found itself


class Key(ctypes.Structure):
    _fields_ = [("flags", ctypes.c_uint32), ("hash", ctypes.c_int32), ("cipher", ctypes.c_int32),
                ("rc2_effective_bits", ctypes.c_uint32), ("password", ctypes.c_char_p),
                ("password_length", ctypes.c_size_t)]


class Error(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int32) for name in (
        "error_exists", "error_type", "location_id", "app_error_number", "rt_error_number", "machine_state")]


class LatchkeyError(Exception):
    def __init__(self, status, text):
        super().__init__(text)
        self.status = status


class Latchkey:
    """One thread's use of the library; a context manager."""

    def __init__(self, path="liblatchkey.so.1"):
        self._library = ctypes.CDLL(path)
        self._library.latchkey_status_text.restype = ctypes.c_char_p
        self._thread, self._crypto = ctypes.c_void_p(), ctypes.c_void_p()
        self._call("latchkey_thread_open", ctypes.byref(self._thread))
        self._call("latchkey_crypto_open", ctypes.byref(self._crypto))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._call("latchkey_crypto_close", self._crypto)
        self._call("latchkey_thread_close", self._thread)

    def _call(self, name, *arguments):
        status = getattr(self._library, name)(*arguments)
        if status != 0:
            raise LatchkeyError(status, self._library.latchkey_status_text(status).decode())

    def _bytes(self, name, room, *arguments):
        buffer, length = ctypes.create_string_buffer(room), ctypes.c_size_t(room)
        self._call(name, *arguments, buffer, ctypes.byref(length))
        return buffer.raw[:length.value]

    def hash(self, number, data):
        return self._bytes("latchkey_hash", 20, self._crypto, number, data, ctypes.c_size_t(len(data)))

    def encrypt(self, key, data):
        return self._bytes("latchkey_encrypt", len(data) + 8, self._crypto, ctypes.byref(key), data,
                           ctypes.c_size_t(len(data)))

    def decrypt(self, key, data):
        return self._bytes("latchkey_decrypt", len(data), self._crypto, ctypes.byref(key), data,
                           ctypes.c_size_t(len(data)))

    def error(self):
        """The error record of the last failure."""
        error = Error()
        self._call("latchkey_error_read", self._thread, ctypes.byref(error))
        run_time = error.error_type == RUN_TIME
        name = "latchkey_error_rt_description" if run_time else "latchkey_error_app_description"
        number = error.rt_error_number if run_time else error.app_error_number
        text = self._bytes(name, 256, self._thread)
        return f"{text[:-1].decode()} (location {error.location_id}, number {number})"


def key_of(password):
    return Key(flags=ENHANCED, hash=SHA1, cipher=TRIPLE_DES, password=password, password_length=len(password))


def main():
    with Latchkey(*sys.argv[1:2]) as latchkey:
        print("digest    ", latchkey.hash(SHA1, b"abc").hex().upper())
        ciphertext = latchkey.encrypt(key_of(b"correct horse"), b"attack at dawn")
        print("ciphertext", ciphertext.hex().upper())
        print("plaintext ", latchkey.decrypt(key_of(b"correct horse"), ciphertext).decode())
        try:
            latchkey.decrypt(key_of(b"correct hors"), ciphertext)
        except LatchkeyError as error:
            if error.status != CIPHER_FAILED:
                raise
            print("failure   ", latchkey.error())


if __name__ == "__main__":
    main()
