"""The output file appears complete or not at all."""
import json
import os
import select
import signal
import stat
import subprocess
import time

from command import IS_WINDOWS, CommandTest

OPTIONS = ["--hash", "md5", "--cipher", "des", "--no-password"]


# Wine shows the rights of a file's owner for its group too.
OTHERS = 0o007 if IS_WINDOWS else 0o077


class OutputTest(CommandTest):
    def test_a_new_file_has_all_bytes(self):
        self.write("plain", b"some text")
        self.run_well("encrypt", *OPTIONS, "-o", "c", "plain")
        self.run_well("decrypt", *OPTIONS, "-o", "p", "c")
        self.assertEqual(self.read("p"), b"some text")
        self.assertEqual(self.names(), ["c", "p", "plain"])

    def test_an_existing_file_is_refused_and_unchanged(self):
        self.write("out", b"precious")
        for command in (["encrypt", *OPTIONS], ["hex"]):
            result = self.run_command(*command, "-o", "out", data=b"text")
            self.assertEqual(result.status, 1, result)
            self.assertRegex(result.lines[0], "^latchkey: cannot create: .*: out$")
            self.assertTrue(result.lines[1].startswith("hint: use --force to replace a file"), result)
            self.assertEqual(self.read("out"), b"precious")
            self.assertEqual(self.names(), ["out"])

    def test_force_replaces_it(self):
        self.write("out", b"precious" * 100)
        self.run_well("hex", "--force", "-o", "out", data=b"text")
        self.assertEqual(self.read("out"), b"74657874\n")

    def test_input_and_output_may_be_one_file(self):
        self.write("file", b"some text")
        self.run_well("encrypt", *OPTIONS, "--force", "-o", "file", "file")
        self.run_well("decrypt", *OPTIONS, "--force", "-o", "file", "file")
        self.assertEqual(self.read("file"), b"some text")

    def test_a_failure_leaves_no_file_and_keeps_the_old_one(self):
        self.write("bad", b"x" * (3 << 20))  # fails at its end, after much was written
        self.write("old", b"precious")
        for name, force in (("new", []), ("old", ["--force"])):
            result = self.run_command("decrypt", *OPTIONS, *force, "-o", name, "bad")
            self.assertEqual(result.status, 1, result)
        self.assertEqual(self.names(), ["bad", "old"])
        self.assertEqual(self.read("old"), b"precious")

    def test_a_missing_folder_is_reported(self):
        result = self.run_command("hex", "-o", "nowhere/out", data=b"text")
        self.assertEqual(result.status, 1)
        self.assertRegex(result.lines[0], "^latchkey: cannot create: .*: nowhere/out$")

    def test_a_folder_as_output_is_refused(self):
        (self.folder / "folder").mkdir()
        for force in ([], ["--force"]):
            result = self.run_command("hex", *force, "-o", "folder", data=b"text")
            self.assertEqual(result.status, 1, result)
            self.assertRegex(result.lines[0], "^latchkey: cannot (write|create): .*: folder$")

    def test_only_the_owner_can_read_a_decrypted_file(self):
        self.write("plain", b"some text")
        old = os.umask(0o022)
        self.addCleanup(os.umask, old)
        self.run_well("encrypt", *OPTIONS, "-o", "c", "plain")
        self.run_well("decrypt", *OPTIONS, "-o", "p", "c")
        modes = {name: stat.S_IMODE((self.folder / name).stat().st_mode) for name in ("c", "p")}
        self.assertEqual(modes["c"] & 0o777, 0o644, oct(modes["c"]))
        self.assertEqual(modes["p"] & OTHERS, 0, oct(modes["p"]))
        self.assertEqual(modes["p"] & 0o600, 0o600, oct(modes["p"]))

    def test_a_replaced_file_keeps_its_rights(self):
        for mode in (0o600, 0o644) if IS_WINDOWS else (0o600, 0o640, 0o644, 0o666, 0o755, 0o604, 0o400):
            path = self.folder / self.write("old", b"precious")
            path.chmod(mode)
            self.run_well("hex", "--force", "-o", "old", data=b"text")
            self.assertEqual(self.read("old"), b"74657874\n")
            shown = 0o006 if IS_WINDOWS else 0o777  # to Wine, who reads executes
            self.assertEqual(oct(path.stat().st_mode & shown), oct(mode & shown), oct(mode))
            path.unlink()

    def test_a_plaintext_has_no_more_rights_than_the_file_it_replaces(self):
        for mode, expected in ((0o666, 0o600), (0o644, 0o600), (0o600, 0o600), (0o400, 0o400)):
            path = self.folder / self.write("old", b"precious")
            path.chmod(mode)
            self.run_well("decrypt", "--hash", "md5", "--cipher", "rc4", "--no-password", "--force", "-o", "old",
                          data=b"text")
            shown = stat.S_IMODE(path.stat().st_mode)
            self.assertEqual(shown & OTHERS, 0, oct(mode))
            if not IS_WINDOWS:
                self.assertEqual(oct(shown), oct(expected))
            path.chmod(0o600)
            path.unlink()

    def test_a_device_is_written_directly(self):
        device = "NUL" if IS_WINDOWS else "/dev/null"
        self.run_well("hex", "-o", device, data=b"text")
        if not IS_WINDOWS:
            self.assertTrue(stat.S_ISCHR(os.stat("/dev/null").st_mode))
        self.assertEqual(self.names(), [])

    def test_empty_input_makes_an_empty_file(self):
        self.run_well("encrypt", "--hash", "md5", "--cipher", "rc4", "--no-password", "-o", "out", data=b"")
        self.assertEqual(self.read("out"), b"")


class InterruptionTest(CommandTest):
    def start_half(self, *more, stdout=subprocess.DEVNULL):
        """An encryption that has its temporary file and waits for more input."""
        process = self.start_command("encrypt", *OPTIONS, "-o", "out", *more, stdin=subprocess.PIPE,
                                     stdout=stdout, stderr=subprocess.DEVNULL, start_new_session=True)
        self.addCleanup(self.end, process)
        process.stdin.write(b"x" * (4 << 20))
        process.stdin.flush()
        self.wait_until(lambda: any(name.startswith(".latchkey-") for name in self.names()))
        return process

    def assert_ended(self, process):
        status = process.wait()
        self.assertTrue(status != 0 or IS_WINDOWS, status)  # Wine ends an interrupted program with 0

    def end(self, process):
        process.stdin.close()
        process.kill()
        process.wait()

    def wait_until(self, condition):
        deadline = time.monotonic() + 60
        while not condition():
            self.assertLess(time.monotonic(), deadline, self.names())
            select.select([], [], [], 0.01)

    def test_the_file_has_no_final_name_until_it_is_complete(self):
        process = self.start_half()
        self.assertNotIn("out", self.names())
        process.stdin.close()
        self.assertEqual(process.wait(), 0)
        self.assertEqual(self.names(), ["out"])

    def test_an_interruption_leaves_no_file(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(signal=number):
                process = self.start_half()
                process.send_signal(number)
                self.assert_ended(process)
                self.wait_until(lambda: not self.names())

    def test_an_interruption_keeps_the_old_file(self):
        self.write("out", b"precious")
        process = self.start_half("--force")
        process.send_signal(signal.SIGINT)
        self.assert_ended(process)
        self.wait_until(lambda: self.names() == ["out"])
        self.assertEqual(self.read("out"), b"precious")

    def test_json_of_an_output_that_appears_meanwhile_is_only_the_failure(self):
        process = self.start_half("--json", stdout=subprocess.PIPE)
        self.write("out", b"precious")
        process.stdin.close()
        with process.stdout:
            document = json.load(process.stdout)  # fails on a second one
        self.assertEqual((process.wait(), document["error"]["file"], list(document)), (1, "out", ["error"]))
        self.assertEqual(self.names(), ["out"])

    def test_a_file_that_appears_meanwhile_is_not_replaced(self):
        process = self.start_half()
        self.write("out", b"precious")
        process.stdin.close()
        self.assertEqual(process.wait(), 1)
        self.assertEqual(self.names(), ["out"])
        self.assertEqual(self.read("out"), b"precious")
