"""The Linux sample, decrypt_file: reads what encrypt_file.vbs writes.

    decrypt_file_test.py PROGRAM
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = ""
# Measured on CryptoAPI under Wine 8.0 (tests/vectors/encryption.txt): SHA-1, 3DES, the enhanced provider.
PASSWORD = "correct horse battery staple"
PLAINTEXT = bytes.fromhex("10121416181A1C1E20222426282A2C2E")
CIPHERTEXT = "E6E3768981F57C976668E8139A6C4CFC4CBE71D34425227C"
MARK_LENGTH = 4


class DecryptFileTest(unittest.TestCase):
    def run_sample(self, password, text=CIPHERTEXT):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder, "ciphertext.hex")
            file.write_text(text, encoding="ascii")
            return subprocess.run([PROGRAM, file, "4", "4", "enhanced"], env={**os.environ, "LATCHKEY_PASSWORD": password},
                                  capture_output=True, check=False)

    def test_gives_the_content_without_the_mark_behind_it(self):
        run = self.run_sample(PASSWORD)
        self.assertEqual((run.returncode, run.stdout), (0, PLAINTEXT[:-MARK_LENGTH]))

    def test_tells_why_it_failed(self):
        run = self.run_sample("another")
        self.assertEqual((run.returncode, run.stdout), (1, b""))
        self.assertIn(b"717", run.stderr)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop()
    unittest.main()
