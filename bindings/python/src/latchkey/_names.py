"""The algorithms and providers, by name and by number."""
from __future__ import annotations

import enum
from typing import TypeVar, Union


class Hash(enum.IntEnum):
    """A hash. Functions also take its name, in any case and with or without a hyphen: "md5", "SHA-1"."""

    MD5 = 1
    MD4 = 2
    MD2 = 3
    SHA1 = 4


class Cipher(enum.IntEnum):
    """A cipher. Functions also take its name: "rc4", "rc2", "des", "3des", "3des-112" (two-key 3DES)."""

    RC4 = 1
    RC2 = 2
    DES = 3
    TRIPLE_DES = 4
    TRIPLE_DES_112 = 5


class Provider(enum.IntEnum):
    """The provider of CryptoAPI whose key lengths are used: 40 bits (base) or 128 bits (enhanced) for RC4 and RC2.

    Functions also take its name: "any", "base" or "enhanced". ANY is base, or enhanced if base lacks the cipher or the
    bits.
    """

    ANY = 0
    BASE = 1
    ENHANCED = 2


Choice = TypeVar("Choice", Hash, Cipher, Provider)
HashName = Union[Hash, str, int]
CipherName = Union[Cipher, str, int]
ProviderName = Union[Provider, str, int, None]

_OTHER_NAMES = {"3des": "tripledes", "3des112": "tripledes112"}


def _plain(name: str) -> str:
    return name.lower().replace("-", "").replace("_", "")


def find(kind: type[Choice], name: str | int) -> Choice:
    """The member with a name or a number."""
    if isinstance(name, str):
        wanted = _OTHER_NAMES.get(_plain(name), _plain(name))
        matching = [member for member in kind if _plain(member.name) == wanted]
    else:
        matching = [member for member in kind if member == name]
    if not matching:
        names = ", ".join(member.name for member in kind)
        raise ValueError(f"{name!r} is not a {kind.__name__.lower()}: use one of {names}")
    return matching[0]
