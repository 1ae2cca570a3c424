"""The known answers of tests/vectors."""
import pathlib

FOLDER = pathlib.Path(__file__).resolve().parents[3] / "tests" / "vectors"


def lines_of(name):
    """The fields of each line of a file."""
    lines = (FOLDER / name).read_text(encoding="ascii").splitlines()
    return [line.split() for line in lines if line and not line.startswith("#")]


def data_of(field):
    return b"" if field == "-" else bytes.fromhex(field)


def settings_of(fields):
    """The arguments of Key from the first fields of a line: provider (0 base, 1 enhanced), hash, cipher, password."""
    provider, hash_number, cipher, password = fields[:4]
    return {"provider": int(provider) + 1, "hash": int(hash_number), "cipher": int(cipher),
            "password": data_of(password)}
