#!/usr/bin/env python3
"""c_interface_test.py LIBRARY: the C interface as a program in another language sees it, through ctypes.

Every function is given random garbage in every argument that it takes; the process must live on.
"""
import ctypes
import pathlib
import random
import re
import sys
import unittest

HEADER = pathlib.Path(__file__).resolve().parents[2] / "include/latchkey.h"
SAMPLE = HEADER.parents[1] / "examples/python"
sys.path.insert(0, str(SAMPLE))
import encrypt_bytes  # noqa: E402
from encrypt_bytes import Error, Key, Latchkey, LatchkeyError  # noqa: E402

LIBRARY = ctypes.CDLL(sys.argv.pop(1))
LIBRARY.latchkey_status_text.restype = ctypes.c_char_p
LIBRARY.latchkey_version.restype = ctypes.c_char_p


def numbers(enumeration):
    """The names and values of an enumeration of the header."""
    body = re.search(rf"enum {enumeration} {{(.*?)}}", HEADER.read_text(), re.S)[1]
    return {name: int(value) for name, value in re.findall(r"(LATCHKEY_\w+) = (\d+)", body)}


STATUS = numbers("latchkey_status")


def new_latchkey():
    return Latchkey(LIBRARY._name)


class Statuses(unittest.TestCase):
    def test_every_status_has_a_text_of_its_own(self):
        count = STATUS["LATCHKEY_STATUS_COUNT"]
        self.assertEqual(sorted(STATUS.values()), list(range(count + 1)))
        texts = {LIBRARY.latchkey_status_text(status) for status in range(-1, count)}
        self.assertEqual(len(texts), count + 1)
        self.assertNotIn(b"", texts)
        self.assertEqual(LIBRARY.latchkey_status_text(count), LIBRARY.latchkey_status_text(-1))

    def test_the_sample_knows_the_numbers(self):
        self.assertEqual(encrypt_bytes.CIPHER_FAILED, STATUS["LATCHKEY_CIPHER_FAILED"])
        self.assertEqual(encrypt_bytes.SHA1, numbers("latchkey_hash_number")["LATCHKEY_SHA1"])
        self.assertEqual(encrypt_bytes.TRIPLE_DES, numbers("latchkey_cipher_number")["LATCHKEY_3DES"])
        self.assertEqual(encrypt_bytes.ENHANCED, numbers("latchkey_key_flags")["LATCHKEY_ENHANCED"])

    def test_the_version_is_the_projects(self):
        project = (HEADER.parents[1] / "CMakeLists.txt").read_text()
        self.assertEqual(LIBRARY.latchkey_version().decode(), re.search(r"VERSION (\d+\.\d+\.\d+)", project)[1])


class RoundTrips(unittest.TestCase):
    def test_random_bytes_come_back(self):
        generator = random.Random(1)
        with new_latchkey() as latchkey:
            for _ in range(100_000):
                enhanced = generator.randrange(2)
                password = generator.randbytes(generator.randrange(40))
                key = Key(flags=enhanced, hash=generator.randint(1, 4), cipher=generator.randint(1, 5 if enhanced else 3),
                          password=password, password_length=len(password))
                data = generator.randbytes(generator.randrange(300)) + generator.choice([b"", b" ", b"\0", b"   "])
                ciphertext = latchkey.encrypt(key, data)
                if len(data) >= 16:  # a short ciphertext can equal its plaintext
                    self.assertNotEqual(ciphertext[:len(data)], data, f"{key.hash} {key.cipher}")
                self.assertEqual(latchkey.decrypt(key, ciphertext), data)

    def test_a_large_input_comes_back(self):
        data = bytes(range(256)) * 65536
        with new_latchkey() as latchkey:
            key = encrypt_bytes.key_of(b"secret")
            self.assertEqual(latchkey.decrypt(key, latchkey.encrypt(key, data)), data)

    def test_a_failure_says_which(self):
        with new_latchkey() as latchkey:
            with self.assertRaises(LatchkeyError) as caught:
                latchkey.encrypt(Key(hash=9, cipher=1), b"data")
            self.assertEqual(caught.exception.status, STATUS["LATCHKEY_BAD_HASH"])
            self.assertEqual(latchkey.error(), "Bad hash type (location 718, number 115)")
            with self.assertRaises(LatchkeyError):
                latchkey._bytes("latchkey_create_salt", 64, latchkey._crypto, 0, -1)
            self.assertEqual(latchkey.error(), "Invalid procedure call or argument (location 434, number 5)")


class Garbage(unittest.TestCase):
    """Handles, numbers and flags may be anything. Pointers point to memory, as they must, or are null."""

    ROOM = 64

    def setUp(self):
        self.generator = random.Random(2)
        self.buffer = ctypes.create_string_buffer(self.ROOM)
        self.handles = []
        for kind in ("thread", "crypto", "timer"):
            handle = ctypes.c_void_p()
            getattr(LIBRARY, f"latchkey_{kind}_open")(ctypes.byref(handle))
            self.handles.append(handle.value)

    def tearDown(self):
        for kind, handle in zip(("thread", "crypto", "timer"), self.handles):
            getattr(LIBRARY, f"latchkey_{kind}_close")(ctypes.c_void_p(handle))

    def handle(self, kind):
        """Half the time the right one: 0 thread, 1 crypto, 2 timer."""
        anything = [*self.handles, None, 1, 2, 3, self.generator.getrandbits(64), ctypes.addressof(self.buffer)]
        return ctypes.c_void_p(self.generator.choice([*anything, *[self.handles[kind]] * len(anything)]))

    def number(self, kind):
        return kind(self.generator.choice([0, 1, 2, 3, 4, 5, -1, 2**15, 2**31 - 1, self.generator.getrandbits(32)]))

    def input(self):
        length = self.generator.randrange(self.ROOM)
        data = self.generator.choice([None, self.generator.randbytes(length)])
        return ctypes.c_char_p(data), ctypes.c_size_t(length)

    def output(self):
        room = ctypes.c_size_t(self.generator.randrange(self.ROOM))
        return (self.generator.choice([None, self.buffer, self.buffer]),
                self.generator.choice([None, ctypes.byref(room), ctypes.byref(room)]))

    def key(self):
        password = self.generator.choice([None, self.generator.randbytes(self.generator.randrange(self.ROOM))])
        length = 9 if password is None else len(password)
        key = Key(flags=self.number(ctypes.c_uint32).value % 8, hash=self.number(ctypes.c_int32).value,
                  cipher=self.number(ctypes.c_int32).value, password=password, password_length=length)
        key.rc2_effective_bits = self.generator.choice([*[0] * 9, 40, 128, 2**32 - 1])
        return self.generator.choice([None, *[ctypes.byref(key)] * 7])

    def call(self, name, *arguments):
        status = getattr(LIBRARY, name)(*arguments)
        self.assertIn(status, range(STATUS["LATCHKEY_STATUS_COUNT"]))
        self.seen.add(status)
        return status

    def one_round(self):
        for name in ("latchkey_encrypt", "latchkey_decrypt"):
            self.call(name, self.handle(1), self.key(), *self.input(), *self.output())
        self.call("latchkey_hash", self.handle(1), self.number(ctypes.c_int32), *self.input(), *self.output())
        length = ctypes.c_int32(self.generator.randint(-5, 60))
        for name in ("latchkey_create_random", "latchkey_create_salt"):
            self.call(name, self.handle(1), self.number(ctypes.c_uint32), length, *self.output())
        for name in ("latchkey_hex_encode", "latchkey_hex_decode"):
            self.call(name, *self.input(), *self.output())
        for name in ("latchkey_error_app_description", "latchkey_error_rt_description"):
            self.call(name, self.handle(0), *self.output())
        self.call("latchkey_random_bytes", self.handle(1), self.buffer, ctypes.c_size_t(self.ROOM))
        self.call("latchkey_error_read", self.handle(0), self.generator.choice([None, ctypes.byref(Error())]))
        for name, kind in (("latchkey_connection_exists", 0), ("latchkey_timer_elapsed", 2)):
            self.call(name, self.handle(kind), self.generator.choice([None, ctypes.byref(ctypes.c_int32())]))
        self.call("latchkey_timer_start", self.handle(2))

    def test_the_process_lives_on(self):
        self.seen = set()
        for _ in range(2000):
            self.one_round()
        expected = {"OK", "BAD_HANDLE", "BAD_ARGUMENT", "BAD_FLAGS", "BUFFER_TOO_SMALL", "BAD_HASH", "BAD_CIPHER",
                    "KEY_FAILED", "CIPHER_FAILED", "BAD_HEX", "FAULT"}
        self.assertEqual({STATUS["LATCHKEY_" + name] for name in expected} - self.seen, set())


if __name__ == "__main__":
    unittest.main()
