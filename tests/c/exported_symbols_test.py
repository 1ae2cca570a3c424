#!/usr/bin/env python3
"""exported_symbols_test.py LIBRARY: checks that the library exports what its public headers declare, and nothing else."""
import pathlib
import re
import subprocess
import sys

PROJECT = pathlib.Path(__file__).resolve().parents[2]
VERSION = "LATCHKEY_1"


def exported(library):
    lines = subprocess.run(["nm", "-DC", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    names = [line.split(" ", 2)[2] for line in lines.splitlines()]
    unversioned = [name for name in names if not name.endswith("@@" + VERSION) and name != VERSION]
    assert not unversioned, f"without the version {VERSION}: {unversioned}"
    return {name.removesuffix("@@" + VERSION) for name in names} - {VERSION}


def soname(library):
    text = subprocess.run(["readelf", "-d", library], check=True, capture_output=True, text=True).stdout
    return re.search(r"SONAME.*\[(.*)\]", text)[1]


def declared_c():
    return set(re.findall(r"LATCHKEY_C_API [\w* ]*?(latchkey_\w+)\(", (PROJECT / "include/latchkey.h").read_text()))


def declared_cpp():
    """Public classes and functions, without their namespace."""
    text = "".join(header.read_text() for header in (PROJECT / "include/latchkey").glob("*.h"))
    classes = set(re.findall(r"^class LATCHKEY_API (\w+)", text, re.M))
    functions = set(re.findall(r"^(?:\[\[nodiscard\]\] )?LATCHKEY_API [\w:<>]+ (\w+)\(", text, re.M))
    return classes, functions


def main():
    library = sys.argv[1]
    names, c_functions, (classes, functions) = exported(library), declared_c(), declared_cpp()
    assert len(c_functions) > 20 and {"clsMain", "clsCryptoAPI", "clsTimer"} <= classes and functions

    cpp = {name for name in names if "::" in name}
    assert names - cpp == c_functions, f"C: {(names - cpp) ^ c_functions}"

    data = r"(?:typeinfo for |typeinfo name for |vtable for )?"
    owner = re.compile(data + r"latchkey::(\w+)")
    owners = {owner.match(name) and owner.match(name)[1] for name in cpp}
    assert owners == classes | functions, f"C++: {owners ^ (classes | functions)}"
    nested = [name for name in cpp if re.match(r"latchkey::\w+::\w+::", name)]
    assert not nested, f"classes inside classes: {nested}"

    assert soname(library) == "liblatchkey.so.1", soname(library)
    print(f"{len(c_functions)} C functions, {len(classes)} classes, {len(functions)} functions, {len(names)} names")


if __name__ == "__main__":
    main()
