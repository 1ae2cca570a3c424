"""Sources of the password, and that every byte of it counts."""
import os
import pty
import select
import termios
import time

from command import IS_WINDOWS, NO_RETRY, PROGRAM, CommandTest

OPTIONS = ["--hash", "md5", "--cipher", "des"]
PLAIN = b"the quick brown fox"


class PasswordTest(CommandTest):
    def ciphertext(self, *arguments, **options):
        return self.run_well("encrypt", *OPTIONS, *arguments, self.plain(), **options).out

    def plain(self):
        return self.write("plain", PLAIN)

    def from_file(self, password, *more):
        return self.ciphertext("--password-file", self.write("password", password), *more)

    def test_one_line_end_at_the_end_of_a_file_is_dropped(self):
        bare = self.from_file(b"secret")
        self.assertEqual(self.from_file(b"secret\n"), bare)
        self.assertEqual(self.from_file(b"secret\r\n"), bare)
        for other in (b"secret\r", b"secret \n", b"secret ", b"secret\0", b"Secret"):
            self.assertNotEqual(self.from_file(other), bare, other)

    def test_exact_keeps_every_byte(self):
        texts = [b"secret", b"secret\n", b"secret\r\n", b"secret\n\n", b"secret\0", b"secret ", b"\n"]
        self.assertEqual(len({self.from_file(text, "--password-exact") for text in texts}), len(texts))

    def test_a_password_of_any_bytes_and_any_length(self):
        for password in (bytes(range(256)), b"\xff", b"x" * 100_000):
            self.write("password", password)
            options = ["--password-file", "password", "--password-exact"]
            ciphertext = self.ciphertext(*options)
            self.assertEqual(self.run_well("decrypt", *OPTIONS, *options, data=ciphertext).out, PLAIN)

    def test_standard_input_is_read(self):
        self.assertEqual(self.ciphertext("--password-file", "-", data=b"secret\n"), self.from_file(b"secret"))

    def test_a_variable_is_used_unchanged(self):
        self.assertEqual(self.ciphertext("--password-env", "LK_TEST", environment={"LK_TEST": "secret"}),
                         self.from_file(b"secret"))
        self.assertEqual(self.ciphertext("--password-env", "LK_TEST", environment={"LK_TEST": "secret "}),
                         self.from_file(b"secret "))

    def test_a_missing_variable_is_reported(self):
        result = self.run_command("encrypt", *OPTIONS, "--password-env", "LK_NOWHERE", self.plain())
        self.assertEqual((result.status, result.lines),
                         (1, ["latchkey: environment variable LK_NOWHERE is not set"]))

    def test_a_descriptor_is_read(self):
        expected = self.from_file(b"secret")
        self.assertEqual(self.ciphertext("--password-fd", "0", data=b"secret\n"), expected)
        self.assertNotEqual(self.ciphertext("--password-fd", "0", "--password-exact", data=b"secret\n"), expected)

    def test_a_closed_descriptor_is_reported(self):
        result = self.run_command("encrypt", *OPTIONS, "--password-fd", "77", self.plain())
        self.assertEqual(result.status, 1)
        self.assertRegex(result.lines[0], "^latchkey: cannot read: .*: descriptor 77$")

    def test_a_missing_password_file_is_reported(self):
        result = self.run_command("encrypt", *OPTIONS, "--password-file", "nowhere", self.plain())
        self.assertEqual(result.status, 1)
        self.assertRegex(result.lines[0], "^latchkey: cannot open: .*: nowhere$")

    def test_several_lines_are_refused_unless_exact(self):
        for password in (b"secret\n\n", b"\nsecret", b"secret\nother", b"secret\r\nother\r\n"):
            self.write("password", password)
            for source in (["--password-file", "password"], ["--password-fd", "0"]):
                arguments = ["encrypt", *OPTIONS, *source, self.plain()]
                result = self.run_command(*arguments, data=password)
                self.assertEqual((result.status, result.out, result.lines), (1, b"", [
                    "latchkey: the password has several lines",
                    "hint: keep only the password in the file, or use --password-exact for all of it"]))
                self.run_well(*arguments, "--password-exact", data=password)

    def test_an_empty_password_is_refused_except_by_no_password(self):
        self.write("empty", b"")
        self.write("line", b"\r\n")
        self.write("mark", b"\xef\xbb\xbf\n")
        for source in (["--password-file", "empty"], ["--password-file", "line"], ["--password-fd", "0"],
                       ["--password-file", "empty", "--password-exact"], ["--password-env", "LK_TEST"],
                       ["--password-file", "mark", "--password-encoding", "windows-1252"]):
            result = self.run_command("encrypt", *OPTIONS, *source, self.plain(), environment={"LK_TEST": ""})
            if self.is_unset(result):
                continue
            self.assertEqual((result.status, result.out, result.lines), (1, b"", [
                "latchkey: the password is empty", "hint: use --no-password for an empty password"]), source)
        self.ciphertext("--no-password")

    @staticmethod
    def is_unset(result):
        """On Windows an empty variable is not set."""
        return IS_WINDOWS and result.lines == ["latchkey: environment variable LK_TEST is not set"]

    def test_the_default_password_is_another_and_always_the_same(self):
        default = self.ciphertext("--default-password")
        self.assertEqual(self.ciphertext("--default-password"), default)
        self.assertNotEqual(default, self.ciphertext("--no-password"))
        self.assertEqual(self.run_well("decrypt", *OPTIONS, "--default-password", data=default).out, PLAIN)

    def test_without_a_terminal_a_missing_password_is_wrong_usage(self):
        program = ["setsid", "--wait", *PROGRAM]  # a new session has no terminal
        result = self.run_command("encrypt", *OPTIONS, self.plain(), program=program)
        self.assertEqual(result.status, 2, result)
        self.assertEqual(result.lines[0], "latchkey: no password given, and no terminal to ask for one")

    def test_the_secret_is_not_in_any_output(self):
        self.write("password", b"hunter2-secret")
        for arguments in (["encrypt", *OPTIONS, "--json", "-o", "c", self.plain()],
                          ["decrypt", *OPTIONS, "--json", "-o", "p", "plain"],
                          ["identify", "--json", "plain"]):
            result = self.run_command(*arguments, "--password-file", "password")
            self.assertNotIn(b"hunter2", result.out + result.err)
            self.assertNotIn(PLAIN, result.out + result.err)


class Terminal:
    """The command with a private terminal for all its streams."""

    def __init__(self, test, *arguments):
        self.seen = b""
        pid, self.master = pty.fork()
        if pid == 0:
            os.chdir(test.folder)
            os.execvpe(PROGRAM[0], [*PROGRAM, *arguments], {**os.environ, **NO_RETRY})
        self.pid = pid

    def read_until(self, text, seconds=60):
        deadline = time.monotonic() + seconds
        while text not in self.seen:
            ready, _, _ = select.select([self.master], [], [], max(0, deadline - time.monotonic()))
            if not ready:
                raise AssertionError(f"no {text!r} in {self.seen!r}")
            try:
                piece = os.read(self.master, 4096)
            except OSError:  # the other end is closed
                piece = b""
            if not piece:
                raise AssertionError(f"no {text!r} before the end of {self.seen!r}")
            self.seen += piece
        before, self.seen = self.seen.split(text, 1)
        return before

    def echoes(self):
        return bool(termios.tcgetattr(self.master)[3] & termios.ECHO)

    def wait_for_silence(self):
        """Until typed characters are no longer shown. Wine sees to that after the prompt."""
        deadline = time.monotonic() + 60
        while self.echoes():
            if time.monotonic() > deadline:
                raise AssertionError("the terminal still echoes")
            os.sched_yield()

    def type(self, text):
        os.write(self.master, text)

    def wait(self):
        """The exit status; everything shown is in `seen`."""
        try:
            while piece := os.read(self.master, 4096):
                self.seen += piece
        except OSError:
            pass
        _, status = os.waitpid(self.pid, 0)
        os.close(self.master)
        return os.waitstatus_to_exitcode(status)


class PromptTest(CommandTest):
    ENTER = b"\r"

    def ask(self, command, *answers):
        """Runs a command that asks; gives the exit status and all that the terminal showed."""
        terminal = Terminal(self, command, *OPTIONS, "-o", command + ".out", "in")
        shown = b""
        for number, answer in enumerate(answers):
            shown += terminal.read_until(b"again:" if number else b"Password:")
            terminal.wait_for_silence()
            terminal.type(answer + self.ENTER)
        status = terminal.wait()
        return status, shown + terminal.seen

    def test_encrypting_asks_twice_decrypting_once_and_neither_shows_the_answer(self):
        self.write("in", PLAIN)
        status, shown = self.ask("encrypt", b"secret", b"secret")
        self.assertEqual(status, 0, shown)
        self.assertNotIn(b"secret", shown)
        self.assertEqual(self.read("encrypt.out"),
                         self.encrypt(PLAIN, OPTIONS))
        (self.folder / "encrypt.out").rename(self.folder / "in")
        status, shown = self.ask("decrypt", b"secret")
        self.assertEqual(status, 0, shown)
        self.assertNotIn(b"secret", shown)
        self.assertEqual(self.read("decrypt.out"), PLAIN)

    def test_two_different_answers_leave_no_file(self):
        self.write("in", PLAIN)
        status, shown = self.ask("encrypt", b"secret", b"secreT")
        self.assertEqual(status, 1)
        self.assertIn(b"latchkey: the two passwords differ", shown)
        self.assertEqual(self.names(), ["in"])
