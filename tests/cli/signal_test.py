"""Signals on Linux: those that end the process remove the output; those that the parent ignores stay ignored."""
import os
import pathlib
import resource
import signal
import subprocess

from command import ENDING_SIGNALS, CommandTest

OPTIONS = ["--hash", "md5", "--cipher", "rc4", "--no-password"]


class SignalTest(CommandTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        resource.setrlimit(resource.RLIMIT_CORE, (0, resource.getrlimit(resource.RLIMIT_CORE)[1]))

    def start_half(self, *more, **options):
        """An encryption that has its temporary file and waits for its input, a pipe that is open for writing."""
        os.mkfifo(self.folder / "data")
        process = self.start_command("encrypt", *OPTIONS, "-o", "out", *more, "data", stderr=subprocess.DEVNULL,
                                     **options)
        pipe = open(self.folder / "data", "wb", buffering=0)  # opens once the command has opened it
        pipe.write(b"text")
        while not any(name.startswith(".latchkey-") for name in self.names()):
            self.assertIsNone(process.poll())
        while self.held(process):  # until the handlers are there
            self.assertIsNone(process.poll())
        (self.folder / "data").unlink()
        return process, pipe

    def held(self, process):
        """The mask of the signals that the process blocks."""
        status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
        return next(int(line.split()[1], 16) for line in status.splitlines() if line.startswith("SigBlk"))

    def test_every_signal_that_ends_the_process_removes_the_output(self):
        self.write("out", b"precious")
        for number in ENDING_SIGNALS:
            process, pipe = self.start_half("--force")
            with pipe:
                process.send_signal(number)
                self.assertEqual(process.wait(), -number)
            self.assertEqual((self.names(), self.read("out")), (["out"], b"precious"), number)

    def test_a_file_that_grows_beyond_its_limit_is_removed(self):
        self.write("in", bytes(1 << 16))
        process = self.start_command("encrypt", *OPTIONS, "-o", "out", "in", stderr=subprocess.DEVNULL,
                                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (4096, 4096)))
        self.assertEqual((process.wait(), self.names()), (-signal.SIGXFSZ, ["in"]))

    def test_a_signal_that_the_parent_ignores_stays_ignored(self):
        def ignore():
            for number in ENDING_SIGNALS:
                signal.signal(number, signal.SIG_IGN)

        process, pipe = self.start_half(preexec_fn=ignore)
        with pipe:
            for number in ENDING_SIGNALS:
                process.send_signal(number)
            pipe.write(b"more")
        self.assertEqual((process.wait(), self.names(), len(self.read("out"))), (0, ["out"], 8))
