"""latchkey and openssl decrypt each other's output, with keys as Microsoft documents CryptDeriveKey."""
import hashlib
import subprocess

import rc2
from command import IS_WINDOWS, CommandTest

PASSWORD = b"correct horse\0battery staple \xe4"


def digest(hash_, data):
    if hash_ in ("md5", "sha1"):
        return hashlib.new(hash_, data).digest()
    process = subprocess.run(["openssl", "dgst", "-md4", "-binary", "-provider", "legacy", "-provider", "default"],
                             input=data, capture_output=True, check=True)
    return process.stdout


def derived(hash_, length):
    """The first bytes of the password's hash, expanded if it is too short."""
    value = digest(hash_, PASSWORD)
    if len(value) < length:
        block = value + bytes(64 - len(value))
        value = b"".join(digest(hash_, bytes(byte ^ mask for byte in block)) for mask in (0x36, 0x5C))
    return value[:length]


# Provider, cipher, openssl's name, and length of the derived key; the base provider extends 5 bytes to 16.
CASES = [
    ("base", "rc4", "-rc4", 5), ("enhanced", "rc4", "-rc4", 16),
    ("base", "des", "-des-cbc", 8), ("enhanced", "des", "-des-cbc", 8),
    ("enhanced", "3des", "-des-ede3-cbc", 24), ("enhanced", "3des-112", "-des-ede-cbc", 16),
    ("enhanced", "rc2", "-rc2-cbc", 16),
]
HASHES = ("md5", "sha1", "md4")
# The command holds a piece of 1 MiB at a time.
PIECES = ((1 << 20, (2 << 20) + 5) if IS_WINDOWS else (1000, (1 << 20) - 1, 1 << 20, (1 << 20) + 1, (2 << 20) + 5))
LENGTHS = (0, 1, 7, 8, 1000, (1 << 20) - 1, 1 << 20, (2 << 20) + 5)


class OpensslTest(CommandTest):
    def openssl(self, direction, hash_, case, data):
        _, cipher, name, length = case
        key = derived(hash_, length)
        if length == 5:
            key += bytes(11)
        vector = [] if cipher == "rc4" else ["-iv", "0" * 16]
        process = subprocess.run(
            ["openssl", "enc", direction, name, "-K", key.hex(), *vector, "-provider", "legacy",
             "-provider", "default"], input=data, capture_output=True, check=False)
        self.assertEqual(process.returncode, 0, process.stderr)
        return process.stdout

    def options(self, hash_, case):
        return ["--provider", case[0], "--hash", hash_, "--cipher", case[1]]

    def test_both_directions(self):
        for case_number, case in enumerate(CASES):
            for hash_number, hash_ in enumerate(HASHES):
                data = self.random.randbytes(LENGTHS[(case_number + hash_number) % len(LENGTHS)])
                with self.subTest(case=case, hash=hash_, length=len(data)):
                    ciphertext = self.encrypt(data, self.options(hash_, case), PASSWORD)
                    self.assertTrue(ciphertext == self.openssl("-e", hash_, case, data))
                    self.assertTrue(self.openssl("-d", hash_, case, ciphertext) == data)
                    self.assertTrue(self.decrypt(ciphertext, self.options(hash_, case), PASSWORD) == data)

    def test_pieces_give_the_same_bytes_as_one_call(self):
        for case in CASES:
            for length in PIECES:
                with self.subTest(case=case, length=length):
                    data = self.random.randbytes(length)
                    ciphertext = self.encrypt(data, self.options("md5", case), PASSWORD)
                    self.assertTrue(ciphertext == self.openssl("-e", "md5", case, data))


class OldRc2Test(CommandTest):
    """RC2 under 16 key bytes of which 40 bits count; openssl enc has no option for that."""

    def test_the_reference_itself(self):  # RFC 2268, section 5
        for key, bits, plain, cipher in (
                ("0000000000000000", 63, "0000000000000000", "ebb773f993278eff"),
                ("ffffffffffffffff", 64, "ffffffffffffffff", "278b27e42e2f0d49"),
                ("88bca90e90875a7f0f79c384627bafb2", 64, "0000000000000000", "1a807d272bbe5db1"),
                ("88bca90e90875a7f0f79c384627bafb2", 128, "0000000000000000", "2269552ab0f85ca6")):
            words = rc2.expand_key(bytes.fromhex(key), bits)
            self.assertEqual(rc2.encrypt_block(words, bytes.fromhex(plain)).hex(), cipher)

    def test_both_directions(self):
        for hash_ in HASHES:
            for bits in (40, 1, 56, 127, 128, 1024):
                data = self.random.randbytes(self.random.randrange(100))
                options = ["--hash", hash_, "--cipher", "rc2", "--rc2-effective-bits", str(bits)]
                reference = rc2.encrypt_cbc(derived(hash_, 16), bits, data)
                self.assertEqual(self.encrypt(data, options, PASSWORD), reference, (hash_, bits))
                self.assertEqual(self.decrypt(reference, options, PASSWORD), data)

    def test_the_base_provider_has_another_key_of_40_bits(self):
        data = b"some text"
        base = self.encrypt(data, ["--hash", "md5", "--cipher", "rc2", "--provider", "base"], PASSWORD)
        self.assertEqual(base, rc2.encrypt_cbc(derived("md5", 5) + bytes(11), 40, data))
        same = self.encrypt(data, ["--hash", "md5", "--cipher", "rc2", "--provider", "base", "--rc2-effective-bits",
                                   "40"], PASSWORD)
        self.assertEqual(same, base)
