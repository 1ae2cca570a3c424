"""Keys and single messages."""
import array
import mmap
import pickle

import pytest
from hypothesis import given
from hypothesis import strategies as st
from vectors import PNEMAIL, encryptions

import latchkey
from latchkey import Cipher, Hash, Key, Provider

SETTINGS = [{"hash": hash, "cipher": cipher, "provider": provider} for hash in Hash for cipher in Cipher
            for provider in Provider if provider != Provider.BASE or cipher <= Cipher.DES]
MESSAGE = b"attack at dawn"


@pytest.mark.parametrize("file", ["encryption.txt", "key_derivation.txt"])
def test_messages_are_those_of_crypto_api(file):
    for vector in encryptions(file):
        key = Key(vector.password, hash=vector.hash, cipher=vector.cipher, provider=vector.provider)
        assert key.encrypt(vector.plaintext) == vector.ciphertext, vector
        assert key.decrypt(vector.ciphertext) == vector.plaintext, vector


@pytest.mark.parametrize("password", [{"password": b"PNEMAIL"}, {"password": "PNEMAIL", "encoding": "cp1252"}])
def test_key_bits_set_the_length_of_the_key(password):
    key = Key(**password, hash="md5", cipher="rc2", key_bits=80)
    assert key.decrypt(PNEMAIL.ciphertext) == PNEMAIL.plaintext


def test_40_key_bits_are_the_key_of_the_base_provider():
    base, enhanced = (Key(b"secret", hash="md5", cipher="rc4", **settings)
                      for settings in ({"provider": "base"}, {"provider": "enhanced", "key_bits": 40}))
    assert base.encrypt(MESSAGE) == enhanced.encrypt(MESSAGE)


def test_effective_bits_follow_the_key_bits_unless_given():
    plain, same, other = (Key(b"secret", hash="md5", cipher="rc2", key_bits=80, rc2_effective_bits=bits).encrypt(MESSAGE)
                          for bits in (None, 80, 40))
    assert plain == same != other


@given(data=st.binary(max_size=100), password=st.binary(max_size=20), settings=st.sampled_from(SETTINGS))
def test_decrypt_is_the_inverse_of_encrypt(data, password, settings):
    key = Key(password, **settings)
    assert key.decrypt(key.encrypt(data)) == data


@pytest.mark.parametrize("kind", [bytes, bytearray, memoryview, lambda data: array.array("B", data)])
def test_any_buffer_is_a_message_and_a_password(kind):
    expected = Key(b"secret", hash="md5", cipher="des").encrypt(MESSAGE)
    key = Key(kind(b"secret"), hash="md5", cipher="des")
    assert key.encrypt(kind(MESSAGE)) == expected
    assert key.decrypt(kind(expected)) == MESSAGE


def test_a_buffer_of_wide_items_counts_bytes():
    key = Key(b"secret", hash="md5", cipher="rc4")
    assert key.encrypt(array.array("q", [1, 2])) == key.encrypt(array.array("q", [1, 2]).tobytes())


@pytest.mark.parametrize("password", ["geheim", "αβγ", "𝄞x", ""])
@pytest.mark.parametrize("encoding", ["utf-8", "utf-16", "utf-16-le", "utf-8-sig"])
def test_a_text_password_is_its_encoded_bytes(password, encoding):
    by_text = Key(password, encoding=encoding, hash="md5", cipher="rc4")
    by_bytes = Key(password.encode(encoding), hash="md5", cipher="rc4")
    assert by_text.encrypt(MESSAGE) == by_bytes.encrypt(MESSAGE)


def test_the_built_in_password_differs_from_the_empty_one():
    built_in = Key(latchkey.BUILT_IN_PASSWORD, hash="md5", cipher="rc4")
    assert built_in.encrypt(MESSAGE) != Key(b"", hash="md5", cipher="rc4").encrypt(MESSAGE)
    assert built_in.decrypt(built_in.encrypt(MESSAGE)) == MESSAGE


@pytest.mark.parametrize("names", [("SHA-1", "3DES", "Enhanced"), ("sha1", "triple_des", "ENHANCED"), (4, 4, 2),
                                   (Hash.SHA1, Cipher.TRIPLE_DES, Provider.ENHANCED), ("Sha1", "3des", None)])
def test_names_are_found_in_any_form(names):
    key = Key(b"secret", **dict(zip(("hash", "cipher", "provider"), names)))
    assert repr(key) == "<latchkey.Key SHA1 TRIPLE_DES>"


def test_two_key_3des_has_its_name():
    assert repr(Key(b"", hash="md4", cipher="3des-112")) == "<latchkey.Key MD4 TRIPLE_DES_112>"


@pytest.mark.parametrize("wrong", [{"hash": "sha256"}, {"hash": 9}, {"cipher": "aes"}, {"cipher": 0},
                                   {"provider": "none"}, {"key_bits": -1}, {"key_bits": 1 << 32}, {"key_bits": 41},
                                   {"key_bits": 136}, {"rc2_effective_bits": 5000}, {"provider": "base", "cipher": "3des"},
                                   {"cipher": "des", "key_bits": 56}])
def test_a_setting_that_is_refused_is_a_value_error(wrong):
    with pytest.raises(ValueError):
        Key(b"secret", **{"hash": "md5", "cipher": "rc2", **wrong})


def test_a_refusal_of_the_library_has_its_numbers():
    with pytest.raises(latchkey.ArgumentError) as raised:
        Key(b"secret", hash="md5", cipher="3des", provider="base")
    assert raised.value.status == latchkey.Status.BAD_CIPHER
    assert raised.value.location == 719


@pytest.mark.parametrize("arguments", [("secret",), (b"secret", "cp1252"), (None,), (7,)])
def test_a_password_of_the_wrong_type_is_a_type_error(arguments):
    with pytest.raises(TypeError):
        Key(arguments[0], encoding=arguments[1] if arguments[1:] else None, hash="md5", cipher="rc4")


def test_an_unknown_encoding_is_a_lookup_error():
    with pytest.raises(LookupError):
        Key("secret", encoding="none", hash="md5", cipher="rc4")


@pytest.mark.parametrize("data", ["text", None, 5, [b"list"]])
def test_a_message_that_is_no_bytes_is_a_type_error(data):
    key = Key(b"secret", hash="md5", cipher="rc4")
    for operation in (key.encrypt, key.decrypt, key.encryptor().update, latchkey.Hasher("md5").update):
        with pytest.raises(TypeError):
            operation(data)


@pytest.mark.parametrize("damaged", [b"", b"seven b", b"12345678"])
def test_damaged_data_is_a_cipher_error(damaged):
    with pytest.raises(latchkey.CipherError, match=r"\(location 717, number \d+\)") as raised:
        Key(b"secret", hash="md5", cipher="des").decrypt(damaged)
    error = raised.value
    assert (error.status, error.location, error.index) == (latchkey.Status.CIPHER_FAILED, 717, None)
    assert 101 <= error.number <= 160


def test_an_error_can_be_pickled():
    error = latchkey.CipherError("text", 9, 717, 120, 3)
    copy = pickle.loads(pickle.dumps(error))
    assert (type(copy), str(copy), vars(copy)) == (type(error), str(error), vars(error))
    assert str(error) == "record 3: text (location 717, number 120)"


def test_a_key_cannot_be_pickled():
    with pytest.raises(TypeError, match="cannot be pickled"):
        pickle.dumps(Key(b"secret", hash="md5", cipher="rc4"))


def test_an_exception_does_not_hold_the_buffer():
    data = bytearray(b"damaged")
    with pytest.raises(latchkey.CipherError) as raised:
        Key(b"secret", hash="md5", cipher="des").decrypt(data)
    data.clear()  # a BufferError while a view exists
    assert raised.value.__traceback__


def test_a_closed_key_refuses_work():
    with Key(b"secret", hash="md5", cipher="rc4") as key:
        stream = key.encryptor()
    key.close()
    assert repr(key) == "<latchkey.Key MD5 RC4, closed>"
    for operation in (lambda: key.encrypt(b""), lambda: key.decrypt(b""), lambda: key.decrypt_many([b""]), key.encryptor):
        with pytest.raises(ValueError, match="the key is closed"):
            operation()
    assert len(stream.update(b"abc")) + len(stream.finish()) == 3


def test_a_size_beyond_the_limit_is_an_error():
    with mmap.mmap(-1, 1 << 32) as password, pytest.raises(latchkey.LatchkeyError) as raised:
        Key(password, hash="md5", cipher="rc4")
    assert (raised.value.status, raised.value.number) == (latchkey.Status.FAULT, 6)


def test_lack_of_memory_is_a_memory_error():
    with pytest.raises(MemoryError):
        latchkey.random_bytes(1 << 62)
