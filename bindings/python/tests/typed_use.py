"""A program that uses the types; checked by mypy, not run."""
import array
from typing import List, Optional, Union, assert_type

import latchkey

key = latchkey.Key("secret", encoding="cp1252", hash="md5", cipher=latchkey.Cipher.RC2, provider=None, key_bits=80)
assert_type(key.encrypt(bytearray(b"text")), bytes)
assert_type(key.decrypt_many([b"a", None]), List[Optional[bytes]])
assert_type(key.decrypt_many([b"a"], errors="null"), List[Optional[bytes]])
assert_type(key.decrypt_many([b"a"], errors="return"), List[Union[bytes, latchkey.LatchkeyError, None]])
assert_type(key.decrypt_many(b"ab", array.array("i", [0, 2])), latchkey.Records)
assert_type(key.decrypt_many(b"ab", array.array("i", [0, 2])).offsets, memoryview)
assert_type(latchkey.digest(b"", "md5"), bytes)
assert_type(latchkey.Hasher("md5").hexdigest(), str)
assert_type(latchkey.salt(8), str)
assert_type(latchkey.identify([b""], b"")[0].padding, Optional[int])
latchkey.Key(b"", **latchkey.identify(b"", b"")[0].settings)
latchkey.Key(latchkey.BUILT_IN_PASSWORD, hash=1, cipher=1)
with open("a", "rb") as source, open("b", "wb") as target:
    assert_type(key.encrypt_file(source, target), int)

key.encrypt("text")  # type: ignore[arg-type]
key.decrypt_many(b"ab", array.array("i", [0, 2]), errors="return")  # type: ignore[call-overload]
latchkey.Key(None, hash="md5", cipher="rc4")  # type: ignore[arg-type]
