"""Builds the package; its version is that of the library that pkg-config finds.

LATCHKEY_BUNDLE=1 puts the library and Nettle into the wheel, so that it needs neither on the machine where it is used.
"""
import os
import pathlib
import re
import shutil
import subprocess

from setuptools import setup
from setuptools.command.build_ext import build_ext

BUNDLED = ("liblatchkey", "libnettle")
NETTLE_LICENSE = (
    pathlib.Path("/usr/share/doc/libnettle8/copyright"),
    pathlib.Path("/usr/share/common-licenses/LGPL-3"),
    pathlib.Path("/usr/share/common-licenses/GPL-3"),
)


def printed_by(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout.strip()


def version():
    """The version in a source distribution, otherwise that of the library."""
    note = pathlib.Path(__file__).with_name("PKG-INFO")
    if note.exists():
        return re.search(r"^Version: (.+)$", note.read_text(encoding="utf-8"), re.M)[1]
    return printed_by("pkg-config", "--modversion", "latchkey")


def needed_libraries(binary):
    """The file names and paths of the libraries to bundle that a binary loads."""
    libraries = re.findall(r"^\s*(\S+) => (\S+) ", printed_by("ldd", str(binary)), re.M)
    return {name: pathlib.Path(path) for name, path in libraries if name.startswith(BUNDLED)}


def redirect(binary, renamed, run_path):
    """Makes a binary load the libraries by their new names, from the folder `run_path`."""
    for name, new_name in renamed.items():  # one option per run: patchelf 0.14 mixes up the values of several
        printed_by("patchelf", "--replace-needed", name, new_name, str(binary))
    printed_by("patchelf", "--set-rpath", run_path, str(binary))


def bundle(extension):
    """Copies the libraries that the extension loads into the package, under unique names."""
    folder = extension.parent / "libraries"
    folder.mkdir(exist_ok=True)
    libraries = needed_libraries(extension)
    if len(libraries) != len(BUNDLED):
        raise RuntimeError(f"found only {sorted(libraries)} of {BUNDLED}: is the library in the loader's path?")
    renamed = {name: name.replace(".so", "-python.so", 1) for name in libraries}
    for name, path in libraries.items():
        copy = folder / renamed[name]
        shutil.copyfile(path, copy)
        printed_by("patchelf", "--set-soname", copy.name, str(copy))
        redirect(copy, renamed, "$ORIGIN")
    redirect(extension, renamed, "$ORIGIN/libraries")
    for text in NETTLE_LICENSE:
        shutil.copyfile(text, folder / f"libnettle-{text.name}")


class BuildExtension(build_ext):
    def run(self):
        super().run()
        if os.environ.get("LATCHKEY_BUNDLE") == "1":
            for output in self.get_outputs():
                bundle(pathlib.Path(output))


setup(
    version=version(),
    cffi_modules=["binding.py:builder"],
    cmdclass={"build_ext": BuildExtension},
    options={"bdist_wheel": {"py_limited_api": "cp311"}},
)
