#!/usr/bin/env python3
"""Runs the shell lines of docs/interoperability.md and checks their results.

`openssl` and `latchkey` are those that the PATH finds.
"""
import collections
import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[3]
sys.dont_write_bytecode = True
sys.path.insert(0, str(PROJECT / "tests/support"))
from vectors import CIPHERS, HASHES, PROVIDERS, encryptions  # noqa: E402

NUMBERS = {name: number for names in (CIPHERS, PROVIDERS) for number, name in names.items()}
MISSING_HASH = "md2"  # openssl lacks it
BASE_RC2 = ("base", "rc2")  # openssl enc cannot do it


def read_blocks():
    """The marked blocks by their marks."""
    document = (PROJECT / "docs/interoperability.md").read_text(encoding="utf-8")
    blocks = {}
    for marks, block in re.findall(r"<!-- (.*?) -->\n```(?:sh)?\n(.*?)```", document, re.S):
        kind, _, names = marks.partition(": ")
        for name in names.split("; "):
            assert (kind, name) not in blocks, f"two blocks are marked {name}"
            blocks[kind, name] = block
    return blocks


def read_vectors():
    """CryptoAPI's ciphertext for each password and plaintext, for the algorithms that openssl has."""
    return [vector for vector in encryptions()
            if vector.hash != MISSING_HASH and (vector.provider, vector.cipher) != BASE_RC2]


def block_of(vector):
    """The document's name for the block that decrypts a vector."""
    return f"provider {NUMBERS[vector.provider]}, cipher {NUMBERS[vector.cipher]}"


def run(script, files):
    """The files that a script leaves, and its output."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for file, content in files.items():
            (folder / file).write_bytes(content)
        ended = subprocess.run(["bash", "-euo", "pipefail", "-c", script], cwd=folder, capture_output=True, text=True)
        assert ended.returncode == 0, f"{script}\n{ended.stderr}"
        return {file.name: file.read_bytes() for file in folder.iterdir()}, ended.stdout


def vectors_of(vectors, provider, hash_name, cipher):
    return [vector for vector in vectors if vector[:3] == (provider, hash_name, cipher)]


def replace_once(text, old, new):
    assert text.count(old) == 1, f"not once in the block: {old}\n{text}"
    return text.replace(old, new)


class DocumentedLines(unittest.TestCase):
    blocks = read_blocks()
    vectors = read_vectors()

    def script(self, vector):
        value = replace_once(self.blocks["checked", "value"], "hash=md5\n", f"hash={vector.hash}\n")
        return value + self.blocks["checked", block_of(vector)]

    def encrypting(self, script):
        """The lines with the document's changes for encryption."""
        script = replace_once(script, "enc -d ", "enc -e ")
        return replace_once(script, "-in secret.bin -out plain.bin", "-in plain.bin -out secret.bin")

    def each_vector(self, check):
        self.assertTrue(self.vectors)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for vector, got, expected in pool.map(check, self.vectors):
                with self.subTest(vector):
                    self.assertEqual(got, expected)

    def test_every_cipher_block_has_vectors_of_every_hash(self):
        documented = {name for kind, name in self.blocks if kind == "checked" and name.startswith("provider")}
        covered = collections.defaultdict(set)
        for vector in self.vectors:
            covered[block_of(vector)].add(vector.hash)
        self.assertEqual(dict(covered), {name: set(HASHES.values()) - {MISSING_HASH} for name in documented})

    def test_openssl_decrypts_what_cryptoapi_encrypted(self):
        def check(vector):
            files, _ = run(self.script(vector), {"password.bin": vector.password, "secret.bin": vector.ciphertext})
            return vector, files["plain.bin"], vector.plaintext

        self.each_vector(check)

    def test_openssl_encrypts_as_cryptoapi_does(self):
        def check(vector):
            files, _ = run(self.encrypting(self.script(vector)),
                           {"password.bin": vector.password, "plain.bin": vector.plaintext})
            return vector, files["secret.bin"], vector.ciphertext

        self.each_vector(check)

    @staticmethod
    def for_password(lines, vector):
        """The lines of the command with the option that an empty password requires."""
        if vector.password:
            return lines
        return replace_once(lines, "--password-file password.bin --password-exact", "--no-password")

    def test_the_command_decrypts_what_cryptoapi_encrypted(self):
        vectors = vectors_of(self.vectors, "base", "md5", "rc4")
        self.assertTrue(vectors)
        for vector in vectors:
            with self.subTest(vector):
                files, _ = run(self.for_password(self.blocks["checked", "command"], vector),
                               {"password.bin": vector.password, "secret.bin": vector.ciphertext})
                self.assertEqual(files["plain.bin"], vector.plaintext)

    def test_the_command_reads_rc2_of_40_effective_bits(self):
        decrypting = self.blocks["checked", "command for old RC2"]
        encrypting = replace_once(decrypting, "latchkey decrypt ", "latchkey encrypt ")
        encrypting = replace_once(encrypting, "-o plain.bin secret.bin", "-o secret.bin plain.bin")
        vectors = vectors_of(self.vectors, "enhanced", "md5", "rc2")
        self.assertTrue(vectors)
        for vector in vectors:
            with self.subTest(vector):
                old, _ = run(self.for_password(encrypting, vector), {"password.bin": vector.password, "plain.bin": vector.plaintext})
                self.assertNotEqual(old["secret.bin"], vector.ciphertext)
                del old["plain.bin"]
                files, _ = run(self.for_password(decrypting, vector), old)
                self.assertEqual(files["plain.bin"], vector.plaintext)

    def test_the_example_prints_what_the_document_shows(self):
        _, printed = run(self.blocks["checked", "example"], {})
        self.assertEqual(printed, self.blocks["printed", "example"])


if __name__ == "__main__":
    unittest.main()
