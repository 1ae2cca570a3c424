"""The Dask sample on a scheduler and three workers of this machine, one of which is killed in the middle of a file.

    /usr/bin/python3 dask_test.py

Python finds the package latchkey, and Debian's Dask.
"""
import csv
import io
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import unittest

import latchkey
from distributed import Client

SAMPLE = pathlib.Path(__file__).resolve().parents[3] / "examples/dask"
SETTINGS = {"hash": "md5", "cipher": "rc2", "key_bits": 80}
PASSWORD = b"PNEMAIL"
FILES, ROWS = 12, 5000  # half a file is more than a pipe holds
NAMES = [f"part-{number:02}.csv" for number in range(FILES)]
PUBLISHED = ("DC3D962329DD1B2F", "BF0AC41", "")  # from another program
DAMAGED = ("DC3D96", "", "Error decrypting data (location 717, number 120)")
NO_HEX = ("no ciphertext", "", "not hexadecimal text")
LIMIT = 120  # seconds for anything that is waited for


def rows_of(name):
    """The ciphertext, plaintext and error of each row of a file."""
    texts = [f"{name}, row {row}" for row in range(ROWS)]
    with latchkey.Key(PASSWORD, **SETTINGS) as key:
        ciphertexts = key.encrypt_many([text.encode() for text in texts])
    return [PUBLISHED, DAMAGED, NO_HEX, *((data.hex(), text, "") for data, text in zip(ciphertexts, texts))]


def source_of(rows):
    file = io.StringIO()
    csv.writer(file).writerows([("id", "ciphertext"), *((number, row[0]) for number, row in enumerate(rows))])
    return file.getvalue().encode()


def result_of(rows):
    return [["id", "plaintext", "error"], *([str(number), *row[1:]] for number, row in enumerate(rows))]


class Cluster:
    """A scheduler and three workers of one thread each."""

    def __init__(self, folder):
        file = folder / "scheduler.json"
        self._log = open(folder / "cluster.log", "wb")
        self._processes = [self._start("dask_scheduler", "--port", "0", "--scheduler-file", file)]
        self.workers = [
            self._start("dask_worker", "--scheduler-file", file, "--no-nanny", "--nthreads", "1",
                        "--memory-limit", "0", "--local-directory", folder, "--death-timeout", str(LIMIT))
            for _ in range(3)]
        self._processes += self.workers
        with Client(scheduler_file=str(file), timeout=LIMIT) as client:
            client.wait_for_workers(3, timeout=LIMIT)
            self.address = client.scheduler.address

    def _start(self, module, *arguments):
        # The processes end with this one.
        command = ["setpriv", "--pdeathsig", "KILL", sys.executable, "-m", f"distributed.cli.{module}",
                   "--host", "127.0.0.1", "--no-dashboard", *arguments]
        return subprocess.Popen(command, stdout=self._log, stderr=self._log)

    def reader_of(self, path):
        """The worker that has the file open."""
        return next(worker for worker in self.workers
                    if str(path) in [os.readlink(link) for link in pathlib.Path(f"/proc/{worker.pid}/fd").iterdir()])

    def close(self):
        for process in self._processes:
            process.kill()
            process.wait()
        self._log.close()


class DecryptCsvTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.source, self.target = self.folder / "source", self.folder / "target"
        self.source.mkdir()
        (self.folder / "password").write_bytes(PASSWORD + b"\n")
        self.cluster = Cluster(self.folder)
        self.addCleanup(self.cluster.close)

    def start(self):
        self.errors = open(self.folder / "errors", "w+", encoding="utf-8")
        self.addCleanup(self.errors.close)
        return subprocess.Popen(
            [sys.executable, SAMPLE / "decrypt_csv.py", "--scheduler", self.cluster.address, "--password-file",
             self.folder / "password", "--hash", "md5", "--cipher", "rc2", "--key-bits", "80",
             self.source, self.target],
            stdout=subprocess.PIPE, stderr=self.errors, text=True)

    def finish(self, program, status=0):
        """The names that the program reports from now on, and its errors."""
        with program.stdout as output:
            names = [line.split(":")[0] for line in output]
        program.wait(timeout=LIMIT)
        self.errors.seek(0)
        errors = self.errors.read()
        self.assertEqual(program.returncode, status, errors)
        return names, errors

    def assert_results(self, rows):
        self.assertEqual(sorted(os.listdir(self.target)), sorted(rows))
        for name, expected in rows.items():
            with open(self.target / name, newline="", encoding="utf-8") as file:
                self.assertEqual(list(csv.reader(file)), result_of(expected), name)

    def test_writes_every_file_once_when_a_worker_is_killed_in_the_middle_of_one(self):
        rows = {name: rows_of(name) for name in NAMES}
        interrupted = self.source / NAMES[FILES // 2]
        for name in NAMES:
            (self.source / name).write_bytes(source_of(rows[name]))
        content = interrupted.read_bytes()
        interrupted.unlink()
        os.mkfifo(interrupted)

        program = self.start()
        with open(interrupted, "wb", buffering=0) as pipe:  # waits until a worker opens it
            pipe.write(content[:len(content) // 2])  # waits until it has read a part
            worker = self.cluster.reader_of(interrupted)
            reported = [program.stdout.readline().split(":")[0] for _ in range(FILES // 2)]
            self.assertEqual(len(list(self.target.glob(f".{interrupted.name}.*.tmp"))), 1)

            (self.folder / "whole").write_bytes(content)
            os.replace(self.folder / "whole", interrupted)  # the next worker reads this one
            worker.send_signal(signal.SIGKILL)
            worker.wait(timeout=LIMIT)
        names, errors = self.finish(program)

        self.assertNotIn(interrupted.name, reported)
        self.assertEqual(sorted(reported + names), NAMES, errors)
        self.assert_results(rows)

    def test_reports_a_file_that_fails_and_completes_the_run_when_repeated(self):
        rows = {name: rows_of(name) for name in NAMES[:3]}
        for name in NAMES[:3]:
            (self.source / name).write_bytes(source_of(rows[name]))
        (self.source / NAMES[1]).write_bytes(b"id,text\n1,DC3D962329DD1B2F\n")
        names, errors = self.finish(self.start(), status=1)
        self.assertEqual(sorted(names), [NAMES[0], NAMES[2]])
        self.assertIn(f"{NAMES[1]}: no column ciphertext", errors)
        self.assert_results({name: rows[name] for name in (NAMES[0], NAMES[2])})

        (self.source / NAMES[1]).write_bytes(source_of(rows[NAMES[1]]))
        names, errors = self.finish(self.start())
        self.assertEqual(names, [NAMES[1]], errors)
        self.assert_results(rows)


class DocumentTest(unittest.TestCase):
    def test_the_function_for_spark_adds_the_columns(self):
        """The document's block, with dictionaries of lists for frames of pandas."""
        block = re.search(r"^```python\n(.*?)^```$", (SAMPLE / "README.md").read_text(), re.M | re.S)[1]
        frame = {"id": [1, 2], "ciphertext": [PUBLISHED[0], DAMAGED[0]]}
        functions = {}
        with tempfile.TemporaryDirectory() as folder:
            password = pathlib.Path(folder, "password")
            password.write_bytes(PASSWORD)
            sys.path.insert(0, str(SAMPLE))
            exec(block.replace("/etc/latchkey/password", str(password)), functions)
            frames = list(functions["decrypt_frames"](iter([frame])))
        _, plaintexts, errors = zip(PUBLISHED, DAMAGED)
        self.assertEqual(frames, [{"id": [1, 2], "plaintext": list(plaintexts), "error": list(errors)}])


if __name__ == "__main__":
    unittest.main(warnings="ignore")  # Debian's Dask uses deprecated parts of Debian's Tornado
