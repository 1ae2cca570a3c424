"""The command while each of its allocations fails in turn, from the loader's first one on."""
import concurrent.futures
import json
import os
import pathlib
import signal
import subprocess
import tempfile
import unittest

from command import MEMORY_FOLDER, PROGRAM, SEED, CommandTest

LONG = bool(os.environ.get("LATCHKEY_LONG"))
KEY = ["--hash", "sha1", "--cipher", "des", "--no-password"]
LINE = "latchkey: Out of memory (number 7)"
# The C library ends the process itself in one place, where it has no memory to note the destructor of a thread's first
# object. This cannot be caught, but no output has been started by then. All other failures, also before main, are.
NOT_CAUGHT = "Fatal glibc error: failed to register TLS destructor: out of memory"
CHOSEN = 120  # numbers of each scenario in the short form; the last ones are the command's own allocations

LIBRARY = None


def setUpModule():
    global LIBRARY
    folder = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(folder.cleanup)
    LIBRARY = pathlib.Path(folder.name) / "failing_memory.so"
    source = pathlib.Path(__file__).with_name("failing_memory.c")
    subprocess.run(["cc", "-O2", "-Wall", "-Wextra", "-Werror", "-shared", "-fPIC", "-o", LIBRARY, source], check=True)


class MemoryTest(CommandTest):
    PARENT = MEMORY_FOLDER

    def files(self, folder):
        return {path.name: path.read_bytes() for path in folder.iterdir()}

    def run_in(self, folder, arguments, **variables):
        return subprocess.run([*PROGRAM, *arguments], cwd=folder, capture_output=True, timeout=200, check=False,
                              stdin=subprocess.DEVNULL, env={**os.environ, "LD_PRELOAD": str(LIBRARY), **variables})

    def run_counted(self, folder, arguments):
        """A run without a failure, and the number of its allocations."""
        count_file = self.folder / "count"
        process = self.run_in(folder, arguments, LATCHKEY_COUNT_FILE=str(count_file))
        return process, int(count_file.read_text())

    def attempt(self, number, arguments, before, whole):
        """One run in a new folder with the files `before`; `whole` is the run without a failure: files and output."""
        with tempfile.TemporaryDirectory(dir=self.folder) as name:
            folder = pathlib.Path(name)
            for file, data in before.items():
                (folder / file).write_bytes(data)
            process = self.run_in(folder, arguments, LATCHKEY_FAIL_ALLOCATION=number)
            after = self.files(folder)
        lines = process.stderr.decode(errors="replace").splitlines()
        details = f"allocation {number} of {arguments}: status {process.returncode}, {lines}, {sorted(after)}"
        if process.returncode == 0:
            self.assertEqual((after, process.stdout), whole, details)
            self.assertEqual(lines, [], details)
        elif (process.returncode, lines) == (-signal.SIGABRT, [NOT_CAUGHT]):
            self.assertEqual(after, before, details)
        else:
            self.assertEqual(process.returncode, 1, details)
            self.assertIn(after, (before, whole[0]), details)
            if "--json" in arguments and not lines:
                self.assertEqual(json.loads(process.stdout)["error"]["number"], 7, details)
            else:
                self.assertEqual(lines, [LINE], details)
        return process.returncode

    def sweep(self, arguments, before):
        whole_folder = self.folder / "whole"
        whole_folder.mkdir()
        for file, data in before.items():
            (whole_folder / file).write_bytes(data)
        process, count = self.run_counted(whole_folder, arguments)
        self.assertEqual((process.returncode, process.stderr), (0, b""), arguments)
        whole = self.files(whole_folder), process.stdout
        numbers = range(1, count + 1)
        if not LONG:
            own = numbers[-CHOSEN // 2:]
            numbers = sorted({*own, *self.random.sample(numbers, CHOSEN // 2)})
        attempts = [f"{number}{plus}" for number in numbers for plus in ("", "+")]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            statuses = list(pool.map(lambda number: self.attempt(number, arguments, before, whole), attempts))
        # Most allocations are needed: a sweep that breaks nothing has not reached the command.
        self.assertGreater(statuses.count(1), len(statuses) // 2, arguments)
        uncaught = [number for number, status in zip(attempts, statuses) if status == -signal.SIGABRT]
        self.assertLessEqual(len([number for number in uncaught if not number.endswith("+")]), 1, uncaught)
        print(f"{arguments}: {len(attempts)} runs, {count} allocations, {statuses.count(1)} runs failed", flush=True)

    def test_an_encryption_that_makes_a_file(self):
        self.sweep(["encrypt", *KEY, "-o", "out", "in"], {"in": b"some text" * 100})

    def test_an_encryption_that_replaces_a_file(self):
        self.sweep(["encrypt", *KEY, "--force", "--json", "-o", "out", "in"], {"in": b"some text", "out": b"precious"})

    def test_a_decryption(self):
        self.sweep(["decrypt", *KEY, "-o", "out", "in"], {"in": self.run_well("encrypt", *KEY, data=b"some text").out})

    def test_an_encryption_on_several_threads(self):
        self.sweep(["encrypt", *KEY, "-o", "out", "in"], {"in": bytes((2 << 20) + 1)})

    def test_records(self):
        self.sweep(["records", "encrypt", *KEY, "--format", "csv", "--column", "b", "-o", "out", "in"],
                   {"in": b"a,b\n1,text\n2,\"more\n text\"\n"})

    def test_records_on_several_threads(self):
        self.sweep(["records", "encrypt", *KEY, "--format", "jsonl", "--field", "s", "--to", "base64", "-o", "out", "in"],
                   {"in": b'{"s":"some text"}\n' * 70_000})

    def test_a_run_for_many_files(self):
        self.sweep(["encrypt", *KEY, "-r", "--suffix", ".lk", "."], {"in": b"some text"})

    def test_a_check_of_digests(self):
        self.sweep(["hash", "--check", "sums"], {"in": b"abc", "sums": b"900150983cd24fb0d6963f7d28e17f72  in\n"})

    def test_a_help_text(self):
        self.sweep(["encrypt", "--help"], {})

    def test_wrong_usage(self):
        arguments = ["encrypt", "--bogus"]
        _, count = self.run_counted(self.folder, arguments)
        refusal = (2, "latchkey: no such option: --bogus")
        results = []
        for number in (*range(1, count + 1, 1 if LONG else 150), count + 1):  # the last number makes no allocation fail
            process = self.run_in(self.folder, arguments, LATCHKEY_FAIL_ALLOCATION=str(number))
            results.append((process.returncode, process.stderr.decode().splitlines()[0]))
            self.assertIn(results[-1], ((1, LINE), refusal), number)
        self.assertEqual((set(results), results[-1]), ({(1, LINE), refusal}, refusal))
