"""Passwords do not stay in memory and do not appear in texts."""
import re
import subprocess
import sys

import pytest

import latchkey
from latchkey import Key

PASSWORD = "Zx9-geheimes Wort-7q"
ENCODING = "utf-16-le"
LONG_PASSWORD = "-".join(str(number * number) for number in range(1000, 1200))
FRAGMENT = 32  # bytes of it that are searched for: freed memory is partly overwritten

# Takes the password as numbers, which are not its bytes, and waits while its memory is searched.
CHILD = """
import sys, latchkey
password = "".join(chr(int(number) - 1) for number in sys.argv[2:])
key = latchkey.Key(password, encoding="utf-16-le", hash="sha1", cipher="rc4")
latchkey.identify([key.encrypt(b"a sample of a text")], password, encoding="utf-16-le")
if sys.argv[1] == "keep":
    kept = password.encode("utf-16-le")
key.close()
print("ready", flush=True)
sys.stdin.read()
"""


def memory_of(process):
    """Each writable part of a process's memory."""
    with open(f"/proc/{process}/maps", encoding="ascii") as maps, open(f"/proc/{process}/mem", "rb", 0) as memory:
        for line in maps:
            start, end, access = re.match(r"(\w+)-(\w+) (\S+)", line).groups()
            if access.startswith("rw"):
                memory.seek(int(start, 16))
                yield memory.read(int(end, 16) - int(start, 16))


def password_is_found(mode):
    numbers = [str(ord(character) + 1) for character in LONG_PASSWORD]
    encoded = LONG_PASSWORD.encode(ENCODING)
    fragments = [encoded[start:start + FRAGMENT] for start in range(0, len(encoded) - FRAGMENT, FRAGMENT)]
    with subprocess.Popen([sys.executable, "-c", CHILD, mode, *numbers], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE) as child:
        assert child.stdout.readline() == b"ready\n"
        found = any(fragment in part for part in memory_of(child.pid) for fragment in fragments)
        child.stdin.close()
    return found


def test_the_encoded_password_is_wiped():
    assert not password_is_found("wipe")


def test_the_search_finds_a_password_that_is_kept():
    assert password_is_found("keep")


def texts_of(error):
    """The texts of an exception and of the exceptions that it follows."""
    while error is not None:
        yield from (str(error), repr(error), repr(vars(error)), repr(getattr(error, "object", None)))
        error = error.__cause__ or error.__context__


@pytest.mark.parametrize("arguments", [
    {"password": PASSWORD + "€", "encoding": "ascii"}, {"password": PASSWORD}, {"password": PASSWORD, "encoding": "none"},
    {"password": PASSWORD, "encoding": "hex_codec"}, {"password": PASSWORD, "encoding": "rot13"},
    {"password": PASSWORD.encode(), "encoding": "ascii"}, {"password": PASSWORD.encode(), "key_bits": 7}])
def test_no_exception_shows_the_password(arguments):
    with pytest.raises((TypeError, ValueError, LookupError)) as raised:
        Key(**arguments, hash="md5", cipher="rc4")
    shown = "".join(texts_of(raised.value))
    assert PASSWORD not in shown and "€" not in shown


def test_no_representation_shows_the_password():
    key = Key(PASSWORD, encoding=ENCODING, hash="md5", cipher="rc4")
    for thing in (key, key.encryptor(), latchkey.BUILT_IN_PASSWORD):
        assert PASSWORD not in repr(thing) + str(thing)
    assert not any(PASSWORD in repr(getattr(key, name, None)) for name in dir(key))
