"""Runs the command under test. Imported by the tests of this folder.

LATCHKEY_COMMAND names the program, LATCHKEY_WINE the Wine to run it on (x86, x64) or nothing. LATCHKEY_EMULATED is not
empty if the program runs under an emulator, where it cannot read the locales of this machine. Each test works in a
separate folder, which is also the working directory of the command. To run one in this folder:
LATCHKEY_COMMAND=../../build/linux/latchkey python3 -m unittest hash_test.CheckTest.test_json
"""
import json
import os
import pathlib
import random
import shutil
import signal
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
WINE = os.environ.get("LATCHKEY_WINE", "")
IS_WINDOWS = bool(WINE)
IS_EMULATED = bool(os.environ.get("LATCHKEY_EMULATED"))
PREFIX = [str(PROJECT / "tools" / "wine"), WINE] if IS_WINDOWS else []
PROGRAM = PREFIX + [str(pathlib.Path(os.environ["LATCHKEY_COMMAND"]).resolve())]

# For a command that may fail silently, or whose streams and process are needed while it runs.
NO_RETRY = {"LATCHKEY_WINE_RETRY": ""}

HASHES = ("md5", "md4", "md2", "sha1")
BASE_CIPHERS = ("rc4", "rc2", "des")
CIPHERS = BASE_CIPHERS + ("3des", "3des-112")
BLOCK_CIPHERS = CIPHERS[1:]
# Every valid combination of provider, hash and cipher.
SETTINGS = [("base", hash_, cipher) for hash_ in HASHES for cipher in BASE_CIPHERS] + \
           [("enhanced", hash_, cipher) for hash_ in HASHES for cipher in CIPHERS]

# The signals that end a process; the others stop it or do nothing by default, or cannot be caught.
ENDING_SIGNALS = sorted(signal.valid_signals() - {
    signal.SIGCHLD, signal.SIGCONT, signal.SIGKILL, signal.SIGSTOP, signal.SIGTSTP, signal.SIGTTIN, signal.SIGTTOU,
    signal.SIGURG, signal.SIGWINCH})
if IS_EMULATED:
    # QEMU 7.2 ends a program with SIGSEGV if another process sends it SIGILL or SIGFPE during a system call, and gives
    # real-time signals other numbers.
    ENDING_SIGNALS = [number for number in ENDING_SIGNALS
                      if number not in (signal.SIGILL, signal.SIGFPE) and number < signal.SIGRTMIN]

# The command would also ignore signals that the shell or nohup ignores. Python restores its own two itself.
for number in set(ENDING_SIGNALS) - {signal.SIGPIPE, signal.SIGXFSZ}:
    if signal.getsignal(number) == signal.SIG_IGN:
        signal.signal(number, signal.SIG_DFL)

SEED = int(os.environ.get("LATCHKEY_TEST_SEED", "20260117"))


# For tests that write thousands of small files: flushing each to the disk costs nothing here.
MEMORY_FOLDER = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None


def setting_options(provider, hash_, cipher):
    return ["--provider", provider, "--hash", hash_, "--cipher", cipher]


def system_call(pid):
    """The system call that a process on Linux is in: its number and arguments, as strings."""
    return pathlib.Path(f"/proc/{pid}/syscall").read_text().split()


def wait_for_read(pid):
    """Waits until a process is in a read. A signal that arrives earlier does not wake readpassphrase."""
    while system_call(pid)[0] not in ("0", "3", "63"):  # read() on x86-64, s390x and ARM64
        os.sched_yield()


class Result:
    def __init__(self, process):
        self.status = process.returncode
        self.out = process.stdout
        self.err = process.stderr

    @property
    def text(self):
        return self.out.decode()

    @property
    def lines(self):
        return self.err.decode().splitlines()

    @property
    def json(self):
        return json.loads(self.out)

    def __repr__(self):
        return f"status {self.status}\n--- out, {len(self.out)} bytes\n{self.out[:500]!r}\n--- err\n{self.err.decode(errors='replace')}"


class CommandTest(unittest.TestCase):
    PARENT = None  # of the test's folder

    @classmethod
    def setUpClass(cls):
        print(f"seed {SEED}", flush=True)

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="latchkey-test-", dir=self.PARENT))
        self.addCleanup(shutil.rmtree, self.folder)
        self.random = random.Random(f"{SEED} {self.id()}")

    def run_command(self, *arguments, data=b"", environment=None, program=PROGRAM, **options):
        """Runs the command to its end; `data` is its standard input."""
        environment = dict(environment or {})
        if {"--quiet", "--status"}.intersection(arguments):
            environment |= NO_RETRY
        if "stdin" not in options:
            options["input"] = data
        process = subprocess.run(
            [*program, *map(str, arguments)], cwd=self.folder, env={**os.environ, **environment}, timeout=200,
            check=False, **{"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options})
        return Result(process)

    def run_well(self, *arguments, **options):
        """Runs a command that must succeed with empty standard error."""
        result = self.run_command(*arguments, **options)
        self.assertEqual((result.status, result.err), (0, b""), f"{arguments}: {result}")
        return result

    def start_command(self, *arguments, env=os.environ, **options):
        return subprocess.Popen([*PROGRAM, *map(str, arguments)], cwd=self.folder, env={**env, **NO_RETRY},
                                **options)

    def write(self, name, data):
        (self.folder / name).write_bytes(data)
        return name

    def read(self, name):
        return (self.folder / name).read_bytes()

    def names(self):
        return sorted(path.name for path in self.folder.iterdir())

    def encrypt(self, data, options, password=b"secret"):
        self.write("password", password)
        return self.run_well("encrypt", *options, "--password-file", "password", "--password-exact", data=data).out

    def decrypt(self, data, options, password=b"secret"):
        self.write("password", password)
        return self.run_well("decrypt", *options, "--password-file", "password", "--password-exact", data=data).out
