"""Builds the extension module latchkey._latchkey: cffi's functions for the C interface, read from its header."""
import pathlib
import re
import subprocess

import cffi


def pkg_config(option):
    """What pkg-config prints about the library."""
    command = ["pkg-config", option, "latchkey"]
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout.strip()


def declarations(header):
    """The header's declarations as cffi reads them: without comments, macros and the braces for C++."""
    text = re.sub(r"/\*.*?\*/", "", header, flags=re.S)
    text = re.sub(r"^#ifdef __cplusplus\n.*?^#endif$", "", text, flags=re.S | re.M)
    text = re.sub(r"^#(.*\\\n)*.*$", "", text, flags=re.M)
    return re.sub(r"\bLATCHKEY_C_API\s+", "", text)


include_folder = pkg_config("--variable=includedir")
builder = cffi.FFI()
builder.cdef(declarations((pathlib.Path(include_folder) / "latchkey.h").read_text(encoding="ascii")))
builder.set_source(
    "latchkey._latchkey",
    "#include <latchkey.h>",
    include_dirs=[include_folder],
    library_dirs=[pkg_config("--variable=libdir")],
    libraries=["latchkey"],
    py_limited_api=True,
    extra_compile_args=["-g0"],  # debugging information contains the path of the build folder
    extra_link_args=["-s"],
)
