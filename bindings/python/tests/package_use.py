"""package_use.py PACKAGE_FOLDER LIBRARY...: uses the installed package, which must be the one in PACKAGE_FOLDER and have
loaded these libraries."""
import importlib.metadata
import pathlib
import sys

import latchkey

folder, *libraries = map(pathlib.Path, sys.argv[1:])
assert pathlib.Path(latchkey.__file__).parent == folder, latchkey.__file__
loaded = pathlib.Path("/proc/self/maps").read_text(encoding="utf-8")
for library in libraries:
    assert f"{library.resolve()}\n" in loaded, library
assert importlib.metadata.version("latchkey") == latchkey.__version__

with latchkey.Key("PNEMAIL", encoding="ascii", hash="md5", cipher="rc2", key_bits=80) as key:
    assert key.decrypt(bytes.fromhex("DC3D962329DD1B2F")) == b"BF0AC41"
    assert key.decrypt_many(key.encrypt_many([b"one", None]), threads=2) == [b"one", None]
assert latchkey.digest(b"abc", "md2").hex() == "da853b0d3f88d99b30283a69e6ded6bb"
print("used", folder)
