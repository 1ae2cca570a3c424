#!/usr/bin/env python3
"""Runs the tests of the code pages once for each page, and prints the result of each.

  run_pages.py FOLDER PROGRAM                       on Linux
  run_pages.py FOLDER PROGRAM tools/wine ARCH DLL   under Wine, against the DLL, which it registers for that
  ... --write                                       also writes tests/vectors/code_pages.txt from what Wine has

LATCHKEY_TEST_CODE_PAGE=NUMBER runs the tests of that page only.

FOLDER is for locales. Wine takes the code page from the locale's name when its server starts, so the server of a
session that no other test uses is started for each page. The locale itself is C.UTF-8 under that name.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys

TESTS = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(TESTS / "support"))
from vectors import encryptions  # noqa: E402

LOCALES = {
    1250: "cs_CZ", 1251: "ru_RU", 1252: "en_US", 1253: "el_GR", 1254: "tr_TR", 1255: "he_IL", 1256: "ar_EG",
    1257: "lt_LT", 1258: "vi_VN", 874: "th_TH", 932: "ja_JP", 936: "zh_CN", 949: "ko_KR", 950: "zh_TW", 65001: "hi_IN",
}
VECTOR_COUNT = len(encryptions())
VECTORS = """\
# The results of Wine 8.0's WideCharToMultiByte (WC_NO_BEST_FIT_CHARS) and MultiByteToWideChar, for each page, 32-bit and
# 64-bit alike. Every byte has a character: that of the plain conversion if it converts back, otherwise the one with the
# same number. Written by tests/system/code_pages/run_pages.py --write.
# page  characters of bytes 80 to FF  characters of several bytes  characters that it does not have
# 64-bit FNV-1a of the codes of all 65,536 characters (tests/system/code_pages/visible_page.h)  source
"""


class Linux:
    def __init__(self, program):
        self.command = [program]

    def start(self, page):
        return {}

    def stop(self):
        pass


class Wine:
    def __init__(self, folder, program, wine, arch, library):
        self.folder, self.wine, self.arch, self.library = folder, wine, arch, library
        self.command = [wine, arch, program]
        os.environ["LATCHKEY_WINE_SESSION"] = f"code-pages-{arch}"
        self.registered = False

    def start(self, page):
        locale = f"{LOCALES[page]}.UTF-8"
        target = self.folder / locale
        if not target.exists():
            shutil.copytree("/usr/lib/locale/C.utf8", target)
        self.stop()
        environment = {"LOCPATH": str(self.folder), "LATCHKEY_WINE_LOCALE": locale}
        if not self.registered:
            subprocess.run([self.wine, self.arch, "regsvr32", "/s", self.library], check=True,
                           env=os.environ | environment)
            self.registered = True
        return environment

    def stop(self):
        subprocess.run([self.wine, "stop"], check=True)


def run(system, page):
    """The program's exit status, and its output."""
    environment = os.environ | system.start(page) | {"LATCHKEY_TEST_CODE_PAGE": str(page)}
    done = subprocess.run(system.command + ["--gtest_brief=1"], cwd=TESTS, env=environment, capture_output=True,
                          text=True)
    return done.returncode, done.stdout + done.stderr


def counted(what, output):
    found = re.search(rf"^counted: {what} (\d+) (\d+)\s*$", output, re.M)
    return f"{found[1]} of {found[2]}" if found else "-"


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--write"]
    folder = pathlib.Path(arguments[0]).resolve()
    system = Linux(*arguments[1:]) if len(arguments) == 2 else Wine(folder, *arguments[1:])
    pages = [int(number)] if (number := os.environ.get("LATCHKEY_TEST_CODE_PAGE")) else LOCALES
    failures, measured = [], []
    print("page   vectors     characters as on the platform  tests")
    try:
        for page in pages:
            status, output = run(system, page)
            passed = re.search(r"\[  PASSED  \] (\d+) test", output)
            vectors = counted("vectors", output)
            failed = status or not passed or vectors != f"{VECTOR_COUNT} of {VECTOR_COUNT}"
            if failed:
                failures.append(f"== {page}: exit status {status}, {vectors} vectors\n{output[-4000:]}")
            verdict = f"{passed[1] if passed else 0} passed" + (", FAILED" if failed else "")
            print(f"{page:<6} {vectors:<11} {counted('platform', output):<30} {verdict}", flush=True)
            measured += re.findall(r"^measured: (.*?)\s*$", output, re.M)
    finally:
        system.stop()
    if "--write" in sys.argv and len(measured) == len(LOCALES):
        (TESTS / "vectors/code_pages.txt").write_text(VECTORS + "\n".join(measured) + "\n", encoding="ascii")
    sys.exit("\n".join(failures) or None)


if __name__ == "__main__":
    main()
