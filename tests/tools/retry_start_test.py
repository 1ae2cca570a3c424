#!/usr/bin/env python3
"""Tests of tools/retry_start, and of tools/wine, which uses it.

    retry_start_test.py                             with programs of this system
    retry_start_test.py PATH/TO/tools/wine x86|x64  with Wine's cmd
"""
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(__file__).resolve().parents[2] / "tools/retry_start"
wine = sys.argv[1:]
COUNT = "echo x >>starts; "


class FolderTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.log = self.folder / "log"

    def lines(self, name):
        file = self.folder / name
        return file.read_text().splitlines() if file.exists() else []

    def run_in_folder(self, *command, **options):
        return subprocess.run(command, cwd=self.folder, capture_output=True, **options)


class RetryStartTest(FolderTest):
    def retry(self, script, **options):
        return self.run_in_folder(TOOL, self.log, "the name", "sh", "-c", COUNT + script, **options)

    def expect(self, script, starts, status, out=b"", err=b""):
        done = self.retry(script)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (status, out, err))
        self.assertEqual(len(self.lines("starts")), starts)
        self.assertEqual(len(self.lines("log")), starts - 1)

    def test_silent_status_1_starts_again_once(self):
        self.expect("exit 1", 2, 1)

    def test_second_start_counts(self):
        self.expect("test -e again && { echo out; echo err >&2; exit 3; }; touch again; exit 1", 2, 3, b"out\n", b"err\n")

    def test_output_shows_a_start(self):
        self.expect("echo out; exit 1", 1, 1, b"out\n")

    def test_errors_show_a_start(self):
        self.expect("echo err >&2; exit 1", 1, 1, b"", b"err\n")

    def test_success_is_not_repeated(self):
        self.expect("exit 0", 1, 0)

    def test_other_failure_is_not_repeated(self):
        self.expect("exit 2", 1, 2)

    def test_a_signal_is_a_shells_status(self):
        self.expect("kill -TERM $$", 1, 128 + signal.SIGTERM)

    def test_output_passes_byte_for_byte(self):
        every_byte = bytes(range(256)) * 5000
        (self.folder / "data").write_bytes(every_byte)
        self.expect("cat data", 1, 0, every_byte)

    def test_standard_input_is_the_programs(self):
        self.assertEqual(self.retry("cat", input=b"some\0bytes").stdout, b"some\0bytes")

    def test_the_log_names_what_was_started_again(self):
        self.retry("exit 1")
        self.retry("exit 1")
        self.assertEqual(len(self.lines("log")), 2)
        self.assertRegex(self.lines("log")[0], r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d the name$")

    def test_missing_arguments_are_refused(self):
        self.assertNotEqual(self.run_in_folder(TOOL, self.log, "the name").returncode, 0)


class WineTest(FolderTest):
    def starts_of(self, **environment):
        self.run_in_folder(*wine, "cmd", "/c", "echo x>>starts& exit 1", stdin=subprocess.DEVNULL,
                           env={**os.environ, "LATCHKEY_WINE_RETRY": "", **environment})
        return len(self.lines("starts"))

    def test_wine_retries_when_it_has_a_log(self):
        self.assertEqual(self.starts_of(LATCHKEY_WINE_RETRY=str(self.log)), 2)
        self.assertEqual(len(self.lines("log")), 1)

    def test_wine_does_not_retry_without_a_log(self):
        self.assertEqual(self.starts_of(), 1)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "WineTest" if wine else "RetryStartTest"])
