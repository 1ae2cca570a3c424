"""The known answers in tests/vectors/, with the names of the algorithms and providers instead of numbers."""
import collections
import pathlib

FOLDER = pathlib.Path(__file__).resolve().parents[1] / "vectors"
HASHES = {"1": "md5", "2": "md4", "3": "md2", "4": "sha1"}
CIPHERS = {"1": "rc4", "2": "rc2", "3": "des", "4": "3des", "5": "3des-112"}
PROVIDERS = {"0": "base", "1": "enhanced"}

Encryption = collections.namedtuple("Encryption", "provider hash cipher password plaintext ciphertext")
Digest = collections.namedtuple("Digest", "hash text value")

# MD5, RC2 with a key of 80 bits: a ciphertext from Windows.
PNEMAIL = Encryption("any", "md5", "rc2", b"PNEMAIL", b"BF0AC41", bytes.fromhex("DC3D962329DD1B2F"))


def read_fields(file):
    lines = (FOLDER / file).read_text(encoding="ascii").splitlines()
    vectors = [line.split() for line in lines if line and not line.startswith("#")]
    assert vectors, file
    return vectors


def read_bytes(field):
    return b"" if field == "-" else bytes.fromhex(field)


def encryptions(file="encryption.txt"):
    vectors = [Encryption(PROVIDERS[provider], HASHES[hash_number], CIPHERS[cipher], *map(read_bytes, data))
               for provider, hash_number, cipher, *data, _ in read_fields(file)]
    assert file != "encryption.txt" or len(vectors) > 300  # the file is whole
    return vectors


def digests():
    vectors = [Digest(name.lower(), int(count) * read_bytes(text), read_bytes(value))
               for name, count, text, value, _ in read_fields("hashes.txt")]
    assert {vector.hash for vector in vectors} == set(HASHES.values())
    return vectors
