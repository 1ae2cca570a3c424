"""The Linux sample decrypt_file reads the output of encrypt_file.vbs.

    decrypt_file_test.py PROGRAM
"""
import hashlib
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = ""
PASSWORD = "correct horse battery staple"


def rc4(key, data):
    """RC4 of RFC 6229's kind, apart from the component's."""
    state, j = list(range(256)), 0
    for i in range(256):
        j = (j + state[i] + key[i % len(key)]) % 256
        state[i], state[j] = state[j], state[i]
    result, i, j = bytearray(), 0, 0
    for byte in data:
        i = (i + 1) % 256
        j = (j + state[i]) % 256
        state[i], state[j] = state[j], state[i]
        result.append(byte ^ state[(state[i] + state[j]) % 256])
    return bytes(result)


def ciphertext_of(plaintext):
    """SHA-1 of the password, RC4 with the 128-bit key of the enhanced provider."""
    return rc4(hashlib.sha1(PASSWORD.encode()).digest()[:16], plaintext).hex().upper()


class DecryptFileTest(unittest.TestCase):
    def run_sample(self, text, password=PASSWORD, cipher="1"):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder, "ciphertext.hex")
            file.write_text(text, encoding="ascii")
            return subprocess.run([PROGRAM, file, "4", cipher, "enhanced"], env={**os.environ, "LATCHKEY_PASSWORD": password},
                                  capture_output=True, check=False)

    def assert_content(self, plaintext, content):
        run = self.run_sample(ciphertext_of(plaintext))
        self.assertEqual((run.returncode, run.stdout, run.stderr), (0, content, b""))

    def test_removes_the_end_mark(self):
        for content in (b"", b"a", b"ends in 20  ", b"ends in 00\0", b"ends with a mark~lkend~5", b"weekend!"):
            # The writer uses the first digit whose ciphertext does not end in 20.
            mark = next(mark for mark in (b"~lkend~0", b"~lkend~1") if not ciphertext_of(content + mark).endswith("20"))
            with self.subTest(content):
                self.assert_content(content + mark, content)

    def test_removes_the_marks_of_earlier_versions(self):
        for last in b"|!#$%&*+":
            self.assert_content(b"content  end" + bytes([last]), b"content  ")

    def test_leaves_content_without_a_mark_whole(self):
        for content in (b"attack at dawn", b"a", b"~lkend~", b"like a mark~lkend~x", b"7", b"xlkend~7"):
            with self.subTest(content):
                self.assert_content(content, content)

    def test_says_why_it_failed(self):
        run = self.run_sample(ciphertext_of(b"no block"), cipher="4", password="another")
        self.assertEqual((run.returncode, run.stdout), (1, b""))
        self.assertIn(b"Error decrypting data (location 717, number 120)", run.stderr)

    def test_refuses_a_password_that_is_not_ascii(self):
        for password in ("\xe9", "\u20ac"):
            run = self.run_sample(ciphertext_of(b"content"), password=password)
            self.assertEqual((run.returncode, run.stdout, run.stderr),
                             (2, b"", b"LATCHKEY_PASSWORD has characters that are not ASCII\n"))

    def test_refuses_text_of_odd_length(self):
        run = self.run_sample("414")
        self.assertEqual((run.returncode, run.stdout), (1, b""))
        self.assertIn(b"727", run.stderr)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop()
    unittest.main()
