#!/usr/bin/python3
"""Runs the sqlite3 program with the extension while each of its allocations fails in turn.

LD_LIBRARY_PATH names the folder of the extension.
"""
import concurrent.futures
import os
import pathlib
import subprocess
import tempfile
import unittest

PRELOADED = pathlib.Path(__file__).resolve().parents[1] / "cli" / "failing_memory.c"
SCRIPT = """.load mod_latchkey
SELECT hex(latchkey_encrypt('text', 'x', 'md5', '3des'));
SELECT latchkey_try_decrypt(x'00', 'x', 'md5', 'des') IS NULL;
SELECT hex(latchkey_digest('text', 'sha1'));
SELECT latchkey_identify(secret, 'x') FROM (SELECT latchkey_encrypt('some text ' || value, 'x', 'sha1', 'des') AS secret
                                            FROM json_each('[1, 2, 3, 4, 5, 6, 7, 8, 9]'));
SELECT latchkey_decrypt(x'00', 'x', 'md5', 'des');
"""
# The loader's exit status if memory for an extension or its thread-local data runs out.
NOT_CAUGHT = (127,)


class MemoryTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.library = self.folder / "failing_memory.so"
        subprocess.run(["cc", "-O2", "-shared", "-fPIC", "-o", self.library, PRELOADED], check=True)

    def run_script(self, script, **variables):
        return subprocess.run(["sqlite3", "-init", "/dev/null", ":memory:"], input=script, capture_output=True, text=True,
                              timeout=60, check=False,
                              env={**os.environ, "LD_PRELOAD": str(self.library), **variables})

    def count(self, script):
        file = self.folder / "count"
        self.run_script(script, LATCHKEY_COUNT_FILE=str(file))
        return int(file.read_text(encoding="ascii"))

    def attempt(self, number, whole):
        """Whether the failure of this allocation is reported: otherwise the output is that of the whole run."""
        done = self.run_script(SCRIPT, LATCHKEY_FAIL_ALLOCATION=str(number))
        details = f"allocation {number}: status {done.returncode}\n{done.stdout}{done.stderr}"
        self.assertIn(done.returncode, (0, 1, *NOT_CAUGHT), details)
        if done.returncode in NOT_CAUGHT:
            self.assertRegex(done.stderr, r"(out of memory|thread-local data: ABORT)\n$", details)
        if done.stderr == whole.stderr:
            self.assertEqual(done.stdout, whole.stdout, details)
        self.assertLessEqual(set(done.stdout.splitlines()), set(whole.stdout.splitlines()), details)
        return done.stderr != whole.stderr

    def test_each_failing_allocation_is_reported_or_does_not_matter(self):
        whole = self.run_script(SCRIPT)
        self.assertEqual(len(whole.stdout.splitlines()), 4, whole)
        self.assertIn("location 717", whole.stderr)
        first, count = self.count("\n"), self.count(SCRIPT)
        self.assertGreater(count, first + 200)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            reported = list(pool.map(lambda number: self.attempt(number, whole), range(first, count + 1)))
        self.assertGreater(sum(reported), 100)


if __name__ == "__main__":
    unittest.main()
