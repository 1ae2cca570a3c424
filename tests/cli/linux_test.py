"""Tests for Linux only: names of any bytes, the process's environment in /proc, standard streams."""
import hashlib
import os
import pathlib
import select
import signal
import stat
import subprocess
import time

from command import CIPHERS, PROGRAM, CommandTest, system_call, wait_for_read
from password_test import Terminal

OPTIONS = ["--hash", "md5", "--cipher", "des"]


class NameTest(CommandTest):
    def test_names_that_md5sum_escapes(self):
        for name in (b"back\\slash", b"line\nend", b"return\rname", b"\xff\xfe"):
            (self.folder / os.fsdecode(name)).write_bytes(b"abc")
            expected = subprocess.run(["md5sum", name], cwd=self.folder, capture_output=True, check=True).stdout
            self.assertEqual(self.run_well("hash", os.fsdecode(name)).out, expected)
            self.write("sums", expected)
            self.run_well("hash", "--check", "--quiet", "sums")
            report = subprocess.run(["md5sum", "-c", "sums"], cwd=self.folder, capture_output=True, check=True).stdout
            self.assertEqual(self.run_well("hash", "--check", "sums").out, report)

    def test_a_listed_name_with_a_nul_is_an_error(self):
        self.write("in", b"abc")
        digest = b"900150983cd24fb0d6963f7d28e17f72"
        self.write("sums", digest + b"  in\0other\n" + digest + b"  in\n")
        result = self.run_command("hash", "--check", "sums")
        self.assertEqual((result.status, result.out), (1, b"in\0other: FAILED open or read\nin: OK\n"))
        self.assertEqual(result.lines, [r"latchkey: cannot open: Invalid argument: in\x00other",
                                        "latchkey: WARNING: 1 listed file could not be read"])
        result = self.run_command("hash", "--check", "--json", "sums")
        self.assertEqual((result.status, result.json["unread"]), (1, 1))

    def test_json_of_a_name_that_is_not_utf8(self):
        (self.folder / os.fsdecode(b"\xff")).write_bytes(b"abc")
        self.assertEqual(self.run_well("hash", "--json", os.fsdecode(b"\xff")).json["results"][0]["file"], "\ufffd")

    def test_json_is_ascii_without_control_characters_of_names(self):
        name = "a\x9b31m\u202e\x7f\u20ac\U0001f511"
        self.write(name, b"abc")
        done = self.run_well("hash", "--json", name)
        failed = self.run_command("hex", "--json", "-o", "out", name + "?")
        for result, shown in ((done, done.json["results"][0]["file"]), (failed, failed.json["error"]["file"][:-1])):
            self.assertEqual((result.out.isascii(), b"\x7f" in result.out, shown), (True, False, name))


class OutputTest(CommandTest):
    def test_a_pipe_or_device_is_refused_without_force(self):
        os.mkfifo(self.folder / "pipe")
        for name in ("pipe", "/dev/full", "/dev/zero"):
            result = self.run_command("hex", "-o", name, data=b"A")  # would wait for a reader of the pipe
            self.assertEqual((result.status, result.lines), (
                1, [f"latchkey: cannot create: File exists: {name}",
                    "hint: use --force to replace a file, or to write to a device or pipe"]))
        self.assertTrue(stat.S_ISFIFO((self.folder / "pipe").stat().st_mode))

    def test_a_link_to_a_device_is_that_device(self):
        (self.folder / "link").symlink_to("/dev/full")
        self.assertIn("File exists", self.run_command("hex", "-o", "link", data=b"A").lines[0])
        self.assertIn("No space", self.run_command("hex", "--force", "-o", "link", data=b"A").lines[0])
        (self.folder / "null").symlink_to("/dev/null")
        self.run_well("hex", "-o", "null", data=b"A")
        self.assertEqual(self.names(), ["link", "null"])

    def test_an_open_descriptor_of_any_kind_is_written_without_force(self):
        for name in ("/dev/stdout", "/dev/fd/1"):
            self.assertEqual(self.run_well("hex", "-o", name, data=b"A").out, b"41\n")  # a pipe

    def test_a_pipe_is_written_directly(self):
        os.mkfifo(self.folder / "pipe")
        process = self.start_command("hex", "--force", "-o", "pipe", stdin=subprocess.PIPE)
        process.stdin.write(b"A")
        process.stdin.close()
        self.assertEqual(self.read("pipe"), b"41\n")
        self.assertEqual(process.wait(), 0)

    def test_a_full_disk_is_reported(self):
        result = self.run_command("hex", "--force", "-o", "/dev/full", data=b"A")
        self.assertEqual((result.status, result.lines),
                         (1, ["latchkey: cannot write: No space left on device: /dev/full"]))

    def test_every_command_fails_on_a_full_disk(self):
        self.write("in", b"abc")
        for arguments in (["--version"], ["--help"], ["hash", "--help"], ["hash", "in"], ["hash", "--json", "in"],
                          ["errors"], ["online"], ["random", 5], ["salt", 5, "--json"], ["hex", "in"],
                          ["encrypt", *OPTIONS, "--no-password", "in"],
                          ["records", "encrypt", "--format", "lines", *OPTIONS, "--no-password", "in"]):
            with open("/dev/full", "wb") as full:
                process = self.start_command(*arguments, stdout=full, stderr=subprocess.PIPE)
                error = process.communicate()[1]
            self.assertEqual(process.returncode, 1, (arguments, error))
            self.assertRegex(error.decode(), "^latchkey: cannot write: .*standard output\n$", arguments)

    def test_an_unprintable_result_is_a_failure_and_leaves_the_complete_output(self):
        self.write("in", b"abc")
        for force in ([], ["--force"]):
            for redirection in (">/dev/full", ">&-"):
                if force:
                    self.write("out", b"precious")
                script = f'exec "$0" "$@" {redirection}'
                result = self.run_command(script, *PROGRAM, "hex", *force, "-o", "out", "--json", "in",
                                          program=["bash", "-c"])
                self.assertEqual((result.status, result.lines), (1, ["latchkey: cannot write: standard output"]))
                self.assertEqual((self.names(), self.read("out")), (["in", "out"], b"616263\n"))
                (self.folder / "out").unlink()


class StreamNameTest(CommandTest):
    """The names under which a process finds its own descriptors."""

    def run_into(self, mode, *arguments):
        """Runs with a regular file as standard output."""
        with open(self.folder / "target", mode) as target:
            process = self.start_command(*arguments, stdin=subprocess.PIPE, stdout=target, stderr=subprocess.PIPE)
            error = process.communicate(b"A")[1]
        return process.returncode, error

    def test_an_open_file_is_written_at_its_position(self):
        for name in ("/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"):
            for force in ([], ["--force"]):
                self.write("target", b"before ")
                before = (self.folder / "target").stat().st_ino
                self.assertEqual(self.run_into("ab", "hex", *force, "-o", name), (0, b""))
                self.assertEqual(self.read("target"), b"before 41\n", name)
                self.assertEqual((self.folder / "target").stat().st_ino, before)

    def test_an_unlinked_open_file_is_written_at_its_position(self):
        # Not /dev/stdout: a command that is broken and run by root would replace that link of the machine's.
        script = 'exec >gone; rm gone; "$0" hex --force -o /proc/self/fd/1; cat /proc/$$/fd/1 >&2'
        process = subprocess.run(["bash", "-c", script, *PROGRAM], input=b"A", cwd=self.folder, capture_output=True,
                                 check=False)
        self.assertEqual(process.stderr, b"41\n")
        self.assertEqual(self.names(), [])

    def test_json_is_not_written_to_it(self):
        for name in ("/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"):
            result = self.run_command("hex", "--json", "-o", name, data=b"A")
            self.assertEqual((result.status, result.out), (0, b"41\n"))
            self.assertIn(b'"output"', result.err)

    def test_standard_input_works_under_all_its_names(self):
        for password in ("-", "/dev/stdin", "/dev/fd/0", "/proc/self/fd/0"):
            for data in ("-", "/dev/stdin", "/dev/fd/0"):
                for command in (["encrypt", *OPTIONS], ["identify"]):
                    result = self.run_command(*command, "--password-file", password, data, data=b"secret\n")
                    self.assertEqual((result.status, result.out), (2, b""), (command, password, data))
        result = self.run_command("encrypt", *OPTIONS, "--password-fd", "0", "/dev/stdin", data=b"secret\n")
        self.assertEqual((result.status, result.out), (2, b""))


class SecretTest(CommandTest):
    PASSWORD = b"hunter2-a-long-secret"

    def in_memory(self, process, secret):
        """Whether the process has it in memory that can be read."""
        with open(f"/proc/{process.pid}/maps", encoding="utf-8") as maps, \
                open(f"/proc/{process.pid}/mem", "rb", buffering=0) as memory:
            for line in maps:
                span, rights, *_ = line.split()
                if not rights.startswith("r") or "[v" in line:
                    continue
                start, end = (int(each, 16) for each in span.split("-"))
                memory.seek(start)
                if secret in memory.read(end - start):
                    return True
        return False

    def writes_output(self, process):
        """Whether the process is in a system call on standard output."""
        return system_call(process.pid)[1:2] == ["0x1"]

    def started(self, source, data):
        """An encryption whose key is made and that waits for its data; open for writing in `data`."""
        arguments, more = {
            "file": (["--password-file", self.write("password", self.PASSWORD + b"\n")], {}),
            "stream": (["--password-file", "-"], {"stdin": subprocess.PIPE}),
            "descriptor": (["--password-fd", "0"], {"stdin": subprocess.PIPE}),
            "variable": (["--password-env", "LK_TEST"], {"env": {**os.environ, "LK_TEST": self.PASSWORD.decode()}}),
        }[source]
        process = self.start_command("encrypt", "--hash", "sha1", "--cipher", "3des", *arguments, "-o", "out", data,
                                     **more)
        if process.stdin:
            process.stdin.write(self.PASSWORD + b"\n")
            process.stdin.close()
        return process

    def test_no_password_and_no_digest_of_it_stays_in_memory(self):
        digest = hashlib.sha1(self.PASSWORD).digest()
        for source in ("file", "stream", "descriptor", "variable"):
            os.mkfifo(self.folder / "data")
            process = self.started(source, "data")
            with open(self.folder / "data", "wb"):  # opens once the command has opened it
                while not any(name.startswith(".latchkey") for name in self.names()):
                    self.assertIsNone(process.poll())
                self.assertTrue(self.in_memory(process, b"--cipher"))  # the search itself
                for secret in (self.PASSWORD, self.PASSWORD[:12], self.PASSWORD[8:], digest, digest[:8]):
                    self.assertFalse(self.in_memory(process, secret), (source, secret))
            self.assertEqual(process.wait(), 0)
            for name in ("data", "out"):
                (self.folder / name).unlink()

    def test_no_plaintext_stays_in_memory_after_the_command(self):
        text = b"PLAINTEXT-0123456789-" * 5000
        self.write("c", self.encrypt(text, OPTIONS))
        self.write("digits", text.hex().encode())
        self.write("rows", b"%s\n" % self.encrypt(text[:21], OPTIONS).hex().encode() * 50_000)
        for arguments in (["decrypt", *OPTIONS, "--password-file", "password", "-o", "p", "c"],
                          ["records", "decrypt", "--format", "lines", *OPTIONS, "--password-file", "password", "-o", "p",
                           "rows"],
                          ["hex", "-d", "-o", "p", "digits"]):
            reader, writer = os.pipe()  # full, so that the command stops with its result in hand
            os.set_blocking(writer, False)
            try:
                while os.write(writer, bytes(1 << 12)):
                    pass
            except BlockingIOError:
                os.set_blocking(writer, True)
            process = self.start_command(*arguments, "--json", stdout=writer)
            while not self.writes_output(process):
                self.assertIsNone(process.poll())
            for secret in (text[:21], text[:21].hex().encode(), text[:21].hex().upper().encode("utf-16-le")):
                self.assertFalse(self.in_memory(process, secret), (arguments, secret))
            os.close(writer)
            os.close(reader)
            process.kill()
            process.wait()
            for name in self.names():
                if name.startswith(".latchkey"):
                    (self.folder / name).unlink()

    def test_the_variable_is_wiped_from_the_environment_of_the_process(self):
        os.mkfifo(self.folder / "data")
        process = self.start_command("encrypt", *OPTIONS, "--password-env", "LK_TEST", "-o", "c", "data",
                                     env={**os.environ, "LK_TEST": "hunter2-secret"})
        with open(self.folder / "data", "wb") as pipe:  # opens once the command has opened it
            while not any(name.startswith(".latchkey") for name in self.names()):
                self.assertIsNone(process.poll())
            environment = pathlib.Path(f"/proc/{process.pid}/environ").read_bytes()
            pipe.write(b"text")
        self.assertEqual(process.wait(), 0)
        self.assertIn(b"LK_TEST", environment)  # the name may stay; its value is gone
        self.assertNotIn(b"hunter2", environment)

    def test_a_descriptor_of_a_shell(self):
        script = '"$0" encrypt --hash md5 --cipher des --password-fd 3 3<<<secret'
        process = subprocess.run(["bash", "-c", script, *PROGRAM], input=b"text", capture_output=True, check=True)
        self.assertEqual(process.stdout, self.encrypt(b"text", OPTIONS))

    def test_an_interruption_at_the_prompt_restores_the_echo(self):
        self.write("in", b"text")
        terminal = Terminal(self, "encrypt", *OPTIONS, "-o", "out", "in")
        terminal.read_until(b"Password: ")
        self.assertFalse(terminal.echoes())
        wait_for_read(terminal.pid)
        terminal.type(b"\x03")
        while not terminal.echoes():
            os.sched_yield()
        self.assertNotEqual(terminal.wait(), 0)
        self.assertEqual(self.names(), ["in"])


class ProgressTest(CommandTest):
    def shown_by(self, command, most_pieces, *arguments, piece=bytes(1 << 20)):
        """What the terminal shows while the command works on data that is slow to come."""
        os.mkfifo(self.folder / "data")
        terminal = Terminal(self, command, *arguments, "data")
        with open(self.folder / "data", "wb") as pipe:
            shown, pieces = b"", 0
            while b"B/s" not in shown and pieces < most_pieces:
                pieces += 1
                pipe.write(piece)
                if select.select([terminal.master], [], [], 0.05)[0]:
                    shown += os.read(terminal.master, 4096)
        self.assertIn(terminal.wait(), (0, 1))
        for name in self.names():
            (self.folder / name).unlink()
        return shown + terminal.seen

    def test_progress_appears_after_a_second(self):
        rc4 = ["--hash", "md5", "--cipher", "rc4", "--no-password", "-o", "out"]
        for command, arguments in (("encrypt", rc4), ("decrypt", rc4), ("hash", []), ("hex", ["-o", "out"]),
                                   ("identify", ["--no-password"])):
            shown = self.shown_by(command, 10_000, *arguments)
            self.assertIn(b"B/s", shown, command)
            self.assertRegex(shown, rb"\r +\r", command)  # the line is gone at the end
        self.assertNotIn(b"B/s", self.shown_by("encrypt", 40, *rc4, "--quiet"))
        lines = (b"some text\n" * (1 << 17))[:1 << 20]
        self.assertIn(b"B/s", self.shown_by("records", 10_000, "encrypt", "--format", "lines", *rc4, piece=lines))

    def test_progress_of_many_files_appears_after_a_second(self):
        for name in ("a", "b"):
            with open(self.folder / name, "wb") as file:
                file.truncate(32 << 20)  # a second of work under 3DES
        terminal = Terminal(self, "encrypt", "--hash", "md5", "--cipher", "3des", "--no-password", "--suffix", ".out",
                            "a", "b")
        while len(self.names()) == 2:
            os.sched_yield()
        os.kill(terminal.pid, signal.SIGSTOP)
        time.sleep(1)  # of the command's time
        os.kill(terminal.pid, signal.SIGCONT)
        self.assertEqual(terminal.wait(), 0)
        self.assertIn(b"B/s", terminal.seen)
        self.assertRegex(terminal.seen, rb"\r +\r2 files encrypted")


class PiecesTest(CommandTest):
    PIECE = 1 << 20  # more than this, and several threads work
    KEY = ["--hash", "sha1", "--no-password"]

    def test_one_processor_gives_the_same_bytes_as_all(self):
        processor = min(os.sched_getaffinity(0))
        for cipher in CIPHERS:
            data = self.random.randbytes(5 * self.PIECE)
            for command in ("encrypt", "decrypt"):
                arguments = [command, *self.KEY, "--cipher", cipher]
                alone = self.run_well(*arguments, data=data, program=["taskset", "-c", str(processor), *PROGRAM]).out
                data = self.run_well(*arguments, data=data).out
                self.assertEqual(data, alone, (command, cipher))

    def test_a_failed_write_ends_a_command_that_waits_for_input(self):
        with open("/dev/full", "wb") as full:
            process = self.start_command("decrypt", *self.KEY, "--cipher", "des", stdin=subprocess.PIPE, stdout=full,
                                         stderr=subprocess.PIPE)
            try:
                process.stdin.write(bytes(3 * self.PIECE))
                process.stdin.flush()
            except BrokenPipeError:  # it has ended already
                pass
            self.assertEqual(process.wait(60), 1)  # its input is still open
        self.assertEqual(process.stderr.read(), b"latchkey: cannot write: No space left on device: standard output\n")
        process.stderr.close()
        try:
            process.stdin.close()
        except BrokenPipeError:
            pass
