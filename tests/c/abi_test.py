#!/usr/bin/env python3
"""abi_test.py LIBRARY COMPILER [--write|EMULATOR...]: checks that the binary interface of this version is unchanged.

abi_N.txt lists the exported symbols of version LATCHKEY_N, and the functions, structs and enums of latchkey.h as the
compiler lays them out. A change that clients would notice needs another version: raise it in
cmake/exported_symbols.map, and --write makes its list. An addition within a version needs --write only.
"""
import difflib
import pathlib
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
from exported_symbols_test import PROJECT, VERSION, exported

HEADER = PROJECT / "include/latchkey.h"
LIST = pathlib.Path(__file__).parent / f"abi_{VERSION.removeprefix('LATCHKEY_')}.txt"


def declarations():
    """The header's text without comments."""
    return re.sub(r"/\*.*?\*/", "", HEADER.read_text(), flags=re.S)


def functions(text):
    return sorted(" ".join(found.split()) for found in re.findall(r"^LATCHKEY_C_API ([^;]*\));", text, re.M))


def program(text):
    """A C program that prints the structs and enums, one member or value a line."""
    lines = []
    for body, name in re.findall(r"typedef struct latchkey_\w+ \{(.*?)\} (\w+);", text, re.S):
        lines.append(f'printf("struct {name}: size %zu, alignment %zu\\n", sizeof({name}), _Alignof({name}));')
        for kind, member in re.findall(r"([\w ]+\**) ?\b(\w+)(?:\[\d+\])?;", body):
            lines.append(f'printf("  {kind.strip()} {member}: offset %zu, size %zu\\n", offsetof({name}, {member}), '
                         f'sizeof((({name}*)0)->{member}));')
    for name, body in re.findall(r"enum (\w+) \{(.*?)\};", text, re.S):
        lines.append(f'puts("enum {name}");')
        lines += [f'printf("  {value} = %d\\n", {value});' for value in re.findall(r"(\w+) =", body)]
    return "#include <latchkey.h>\n#include <stdio.h>\nint main(void) {\n" + "\n".join(lines) + "\nreturn 0;\n}\n"


def layouts(text, compiler, emulator):
    with tempfile.TemporaryDirectory() as folder:
        source, printer = pathlib.Path(folder, "layouts.c"), pathlib.Path(folder, "layouts")
        source.write_text(program(text))
        subprocess.run([compiler, "-std=c11", "-pedantic-errors", f"-I{HEADER.parent}", source, "-o", printer], check=True)
        return subprocess.run([*emulator, printer], check=True, capture_output=True, text=True).stdout.splitlines()


def interface(library, compiler, emulator):
    text = declarations()
    symbols = sorted(exported(library))
    found = functions(text), layouts(text, compiler, emulator)
    assert all(len(each) > 20 for each in (symbols, *found)), "the header is written in another way"
    parts = {"functions": found[0], "structs and enums": found[1], f"symbols of version {VERSION}": symbols}
    return "".join(f"# {name}\n" + "\n".join(lines) + "\n" for name, lines in parts.items())


def main():
    library, compiler, *emulator = sys.argv[1:]
    writes = emulator == ["--write"]
    current = interface(library, compiler, [] if writes else emulator)
    if writes:
        LIST.write_text(current)
    listed = LIST.read_text() if LIST.exists() else ""
    for line in difflib.unified_diff(listed.splitlines(), current.splitlines(), str(LIST), "the library", lineterm=""):
        print(line)
    assert listed == current, "the library is not what clients of its version know; see the head of abi_test.py"
    print(f"{len(current.splitlines())} lines are those of {LIST.name}")


if __name__ == "__main__":
    main()
