"""Digests, identification and random data."""
import hashlib
import io

import pytest
from hypothesis import given
from hypothesis import strategies as st
from vectors import digests

import latchkey
from latchkey import Hash, Hasher, Key


def test_digests_are_those_published():
    assert {Hash[vector.hash.upper()] for vector in digests()} == set(Hash)
    for vector in digests():
        assert latchkey.digest(vector.text, vector.hash) == vector.value, vector.hash


@given(pieces=st.lists(st.binary(max_size=100), max_size=10), hash=st.sampled_from(Hash))
def test_pieces_have_the_digest_of_the_whole(pieces, hash):
    hasher = Hasher(hash, b"first")
    for piece in pieces:
        hasher.update(piece)
    assert hasher.digest() == latchkey.digest(b"first" + b"".join(pieces), hash)


@pytest.mark.parametrize("name", ["md5", "sha1"])
def test_a_hasher_has_the_members_of_hashlib(name):
    ours, theirs = Hasher(name, b"abc"), hashlib.new(name, b"abc")
    for member in ("name", "digest_size", "block_size"):
        assert getattr(ours, member) == getattr(theirs, member)
    assert (ours.hexdigest(), ours.digest()) == (theirs.hexdigest(), theirs.digest())


def test_a_hasher_digests_a_file_for_hashlib():
    assert hashlib.file_digest(io.BytesIO(b"abc"), lambda: Hasher("md2")).digest() == latchkey.digest(b"abc", "md2")


def test_a_hasher_is_at_its_end_after_the_digest():
    hasher = Hasher("md5")
    assert hasher.digest() == hasher.digest()
    with pytest.raises(ValueError, match="the digest was read"):
        hasher.update(b"more")


def test_an_unknown_hash_is_a_value_error():
    for function in (Hasher, lambda hash: latchkey.digest(b"", hash)):
        with pytest.raises(ValueError, match="'sha256' is not a hash: use one of MD5, MD4, MD2, SHA1"):
            function("sha256")


TEXTS = [b"Dear Sir or Madam, the order was sent today.", b"The second letter is longer than the first one was.",
         b"Thank you for your answer of last week."]


@pytest.mark.parametrize("settings", [{"hash": "sha1", "cipher": "3des"}, {"hash": "md5", "cipher": "rc4"},
                                      {"hash": "md4", "cipher": "rc2", "provider": "enhanced"}])
def test_settings_are_identified(settings):
    key = Key("geheim", encoding="utf-16-le", **settings)
    samples = key.encrypt_many(TEXTS)
    found = latchkey.identify(samples, "geheim", encoding="utf-16-le")
    best = found[0]
    assert Key("geheim".encode("utf-16-le"), **best.settings).decrypt_many(samples) == TEXTS
    assert best.padding == (None if best.cipher == latchkey.Cipher.RC4 else len(samples[0]) - len(TEXTS[0]))
    assert 0.5 < best.probability <= 1
    assert [each.probability for each in found] == sorted((each.probability for each in found), reverse=True)


def test_one_sample_needs_no_list():
    sample = Key(b"secret", hash="sha1", cipher="3des").encrypt(TEXTS[0])
    assert latchkey.identify(sample, b"secret") == latchkey.identify([sample], b"secret")


def test_settings_that_fit_nothing_are_an_empty_list():
    assert latchkey.identify([b"\xff" * 8] * 3 + [bytes(16)] * 3, b"another") == []


def test_random_data_has_the_length_and_differs():
    assert latchkey.random_bytes(0) == b""
    first, second = latchkey.random_bytes(32), latchkey.random_bytes(32)
    assert len(first) == 32 and first != second
    salt = latchkey.salt(500)
    assert len(salt) == 500 and salt.isascii() and salt.isalpha()
    assert salt != salt.upper() and salt != salt.lower()


def test_a_negative_length_is_a_value_error():
    for function in (latchkey.random_bytes, latchkey.salt):
        with pytest.raises(ValueError, match="length"):
            function(-1)
