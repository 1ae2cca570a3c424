"""Messages in pieces, and files."""
import io

import pytest
from hypothesis import given
from hypothesis import strategies as st

import latchkey
from latchkey import Cipher, Key

KEYS = [Key(b"secret", hash="sha1", cipher=cipher) for cipher in Cipher]
DES = KEYS[Cipher.DES - 1]
PIECES = st.lists(st.binary(max_size=30), max_size=10)


class Slow(io.RawIOBase):
    """A file that reads and writes at most 3 bytes at a time."""

    def __init__(self, data=b""):
        self.data = bytearray(data)

    def read(self, size=-1):
        taken = bytes(self.data[:min(3, size)])
        del self.data[:3]
        return taken

    def write(self, data):
        self.data += data[:3]
        return min(3, len(data))


def join(stream, pieces):
    return b"".join([stream.update(piece) for piece in pieces] + [stream.finish()])


@given(pieces=PIECES, key=st.sampled_from(KEYS))
def test_a_stream_makes_what_one_call_makes(pieces, key):
    message = b"".join(pieces)
    assert join(key.encryptor(), pieces) == key.encrypt(message)


@given(message=st.binary(max_size=200), size=st.integers(1, 40), key=st.sampled_from(KEYS))
def test_a_stream_reads_what_one_call_makes(message, size, key):
    ciphertext = key.encrypt(message)
    pieces = [ciphertext[start:start + size] for start in range(0, len(ciphertext), size)]
    assert join(key.decryptor(), pieces) == message


def test_finish_begins_a_new_message():
    stream = DES.encryptor()
    assert join(stream, [b"one"]) == DES.encrypt(b"one")
    assert join(stream, [b"two"]) == DES.encrypt(b"two")


def test_a_damaged_message_fails_at_its_end_and_ends_the_stream():
    stream = DES.decryptor()
    stream.update(b"1234567")
    for _ in range(2):
        with pytest.raises(latchkey.CipherError):
            stream.finish()


def test_a_closed_stream_refuses_work():
    with DES.encryptor() as stream:
        stream.update(b"one")
    stream.close()
    for operation in (lambda: stream.update(b""), stream.finish):
        with pytest.raises(ValueError, match="the stream is closed"):
            operation()


@given(message=st.binary(max_size=100), chunk_size=st.integers(1, 50), key=st.sampled_from(KEYS))
def test_files_of_any_kind_are_copied(message, chunk_size, key):
    ciphertext, plaintext = Slow(), io.BytesIO()
    assert key.encrypt_file(io.BytesIO(message), ciphertext, chunk_size) == len(ciphertext.data)
    assert ciphertext.data == key.encrypt(message)
    assert key.decrypt_file(Slow(ciphertext.data), plaintext) == len(message)
    assert plaintext.getvalue() == message


def test_a_file_on_disk_is_copied_from_its_position(tmp_path):
    (tmp_path / "plain").write_bytes(b"head" + b"body" * 1000000)
    with open(tmp_path / "plain", "rb") as source, open(tmp_path / "cipher", "wb", buffering=0) as target:
        source.seek(4)
        DES.encrypt_file(source, target)
    assert DES.decrypt((tmp_path / "cipher").read_bytes()) == b"body" * 1000000


def test_a_file_that_does_not_wait_is_an_error():
    source = io.BytesIO(b"data")
    source.read = lambda size: None
    with pytest.raises(BlockingIOError):
        DES.encrypt_file(source, io.BytesIO())
    target = io.BytesIO()
    target.write = lambda data: None
    with pytest.raises(BlockingIOError):
        DES.encrypt_file(io.BytesIO(b"data"), target)


def test_a_text_file_is_a_type_error():
    with pytest.raises(TypeError):
        DES.encrypt_file(io.StringIO("text"), io.BytesIO())


def test_a_chunk_size_below_one_is_a_value_error():
    with pytest.raises(ValueError, match="chunk_size"):
        DES.encrypt_file(io.BytesIO(), io.BytesIO(), 0)
