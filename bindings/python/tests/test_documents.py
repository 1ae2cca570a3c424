"""The types, the documentation and the numbers agree with the code."""
import doctest
import pathlib
import subprocess
import sys

import pytest

import latchkey
from latchkey._latchkey import lib

HERE = pathlib.Path(__file__).resolve().parent
DOCUMENT = HERE.parents[2] / "docs" / "python.md"
PACKAGE = pathlib.Path(latchkey.__file__).parent


def run_mypy(*arguments):
    return subprocess.run([sys.executable, "-m", "mypy", "--strict", "--warn-unused-ignores", "--cache-dir=/dev/null",
                           *map(str, arguments)], cwd=PACKAGE.parent, capture_output=True, text=True)


def test_the_package_passes_mypy():
    ran = run_mypy("-p", "latchkey")
    assert ran.returncode == 0, ran.stdout


def test_a_typed_program_passes_mypy():
    ran = run_mypy(HERE / "typed_use.py")
    assert ran.returncode == 0, ran.stdout


def test_the_examples_of_the_package_are_right():
    ran = doctest.testmod(latchkey, extraglobs={"latchkey": latchkey})
    assert ran.failed == 0 and ran.attempted > 10


def test_the_document_is_right():
    ran = doctest.testfile(str(DOCUMENT), module_relative=False)
    assert ran.failed == 0 and ran.attempted > 10


@pytest.mark.parametrize("name", latchkey.__all__)
def test_every_public_name_is_described(name):
    thing = getattr(latchkey, name)
    assert thing.__doc__
    if isinstance(thing, type) and not issubclass(thing, (int, tuple, Exception)):
        assert [member for member, value in vars(thing).items() if not member.startswith("_") and not value.__doc__] == []


@pytest.mark.parametrize("kind", [latchkey.Status, latchkey.Hash, latchkey.Cipher, latchkey.Provider])
def test_the_numbers_are_those_of_the_library(kind):
    other_names = {"TRIPLE_DES": "3DES", "TRIPLE_DES_112": "3DES_112", "ANY": "ANY_PROVIDER"}
    for member in kind:
        assert getattr(lib, f"LATCHKEY_{other_names.get(member.name, member.name)}") == member


def test_every_status_has_its_number():
    assert len(latchkey.Status) == lib.LATCHKEY_STATUS_COUNT
