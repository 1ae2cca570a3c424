"""The samples in other languages print what their README says, run by the commands that it gives.

    languages_test.py LIBRARY-FOLDER LanguagesTest.test_LANGUAGE

The library is used as it was built. The packages of Node are those that tools/setup downloaded.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[3]
README = (PROJECT / "examples/README.md").read_text()
CACHE = pathlib.Path(os.environ.get("LATCHKEY_CACHE", pathlib.Path.home() / ".cache/latchkey"))
LIBRARIES = ""


def block(first_line):
    """The README's block of that first line."""
    return next(found for found in re.findall(r"^```(?:sh)?\n(.*?)^```$", README, re.M | re.S)
                if found.startswith(f"{first_line}\n"))


class LanguagesTest(unittest.TestCase):
    def run_sample(self, language):
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(PROJECT / "examples" / language, pathlib.Path(folder, language),
                            ignore=shutil.ignore_patterns("node_modules"))
            environment = {**os.environ, "CPATH": str(PROJECT / "include"), "LIBRARY_PATH": LIBRARIES,
                           "LD_LIBRARY_PATH": LIBRARIES, "GOCACHE": f"{folder}/cache", "GOPROXY": "off",
                           "npm_config_cache": str(CACHE / "npm"), "npm_config_offline": "true"}
            run = subprocess.run(["bash", "-euc", block(f"cd {language}")], cwd=folder, env=environment, text=True,
                                 capture_output=True, check=False)
        self.assertEqual(run.returncode, 0, run.stderr)
        expected = block("text     BF0AC41")
        self.assertEqual(run.stdout[-len(expected):], expected)

    def test_csharp(self):
        self.run_sample("csharp")

    def test_java(self):
        self.run_sample("java")

    def test_node(self):
        self.run_sample("node")

    def test_go(self):
        self.run_sample("go")


if __name__ == "__main__":
    LIBRARIES = sys.argv.pop(1)
    unittest.main()
