"""Descriptors that a command accepts: those it was started with, and never a file that it opened itself.

A process's new file gets the lowest free number. A number that the user names, and a standard stream that was closed
at the start, must not denote a file that the command has opened meanwhile.
"""
import os
import pathlib
import subprocess

from command import PROGRAM, CommandTest

RC4 = ["--hash", "md5", "--cipher", "rc4"]
BAD = "Bad file descriptor"
CLOSE_ON_EXEC = 0o2000000


class DescriptorTest(CommandTest):
    def setUp(self):
        super().setUp()
        self.write("f", b"precious\n")

    def shell(self, redirections, *arguments):
        """Runs the command from a shell with those redirections, and only the streams open."""
        return self.run_command(f'exec "$0" "$@" {redirections}', *PROGRAM, *arguments, program=["bash", "-c"])

    def assert_refused(self, result, line, kept=b"precious\n"):
        self.assertEqual((result.status, result.out, result.lines), (1, b"", [line]))
        self.assertEqual(self.read("f"), kept)


class NotOpenTest(DescriptorTest):
    def test_a_closed_password_descriptor_is_not_a_file_of_the_command(self):
        for number in range(3, 12):
            for arguments in (["encrypt", *RC4, "--force", "-o", "f", "f"], ["encrypt", *RC4], ["identify", "f"]):
                result = self.shell("", *arguments, "--password-fd", number)
                self.assert_refused(result, f"latchkey: cannot read: {BAD}: descriptor {number}")

    def test_the_name_of_a_closed_descriptor_is_not_a_file_of_the_command(self):
        for folder in ("/dev/fd", "/proc/self/fd"):
            name = f"{folder}/3"
            self.assert_refused(self.shell("", "encrypt", *RC4, "--password-file", name, "f"),
                                f"latchkey: cannot open: {BAD}: {name}")
            self.assert_refused(self.shell("", "encrypt", *RC4, "--no-password", name),
                                f"latchkey: cannot open: {BAD}: {name}")
            self.assert_refused(self.shell("", "encrypt", *RC4, "--no-password", "--force", "-o", name, "f"),
                                f"latchkey: cannot write: {BAD}: {name}")

    def test_an_output_does_not_grow_its_own_input(self):
        self.assert_refused(self.shell("0<>f", "hex", "-o", "/dev/fd/3"), f"latchkey: cannot write: {BAD}: /dev/fd/3")

    def test_an_open_descriptor_works_with_any_number(self):
        self.write("password", b"secret\n")
        expected = self.encrypt(b"precious\n", RC4)
        for number in (3, 4, 5, 9):
            result = self.shell(f"{number}<password", "encrypt", *RC4, "--password-fd", number, "f")
            self.assertEqual((result.status, result.out), (0, expected), number)
            result = self.shell(f"{number}<password", "encrypt", *RC4, "--password-file", f"/dev/fd/{number}", "f")
            self.assertEqual((result.status, result.out), (0, expected), number)
            result = self.shell(f"{number}>>out", "encrypt", *RC4, "--password-file", "password", "-o",
                                f"/dev/fd/{number}", "f")
            self.assertEqual((result.status, self.read("out")), (0, expected), number)
            (self.folder / "out").unlink()

    def test_one_descriptor_cannot_have_both_password_and_data(self):
        for password in (["--password-fd", 3], ["--password-file", "/dev/fd/3"], ["--password-file", "/proc/self/fd/3"]):
            for command in (["encrypt", *RC4], ["identify"]):
                result = self.shell("3<f", *command, *password, "/dev/fd/3")
                self.assertEqual((result.status, result.out, result.lines),
                                 (2, b"", ["latchkey: descriptor 3 cannot give both the password and the data"]))

    def test_all_files_of_the_command_close_on_exec(self):
        # This distinguishes them from the descriptors that the command was started with.
        os.mkfifo(self.folder / "data")
        process = self.start_command("decrypt", *RC4, "--no-password", "-o", "out", "data", stdin=subprocess.DEVNULL)
        with open(self.folder / "data", "wb"):  # opens once the command has opened it
            while not any(name.startswith(".latchkey") for name in self.names()):
                self.assertIsNone(process.poll())
            folder = pathlib.Path(f"/proc/{process.pid}/fdinfo")
            flags = {int(path.name): int(path.read_text().split("flags:")[1].split()[0], 8)
                     for path in folder.iterdir()}
        self.assertEqual(process.wait(), 0)
        self.assertGreaterEqual(len(flags), 5)  # the streams, the input, the output
        self.assertEqual({number for number, each in flags.items() if not each & CLOSE_ON_EXEC}, {0, 1, 2})


class ClosedStreamTest(DescriptorTest):
    def test_a_closed_input_is_no_password(self):
        self.assert_refused(self.shell("<&-", "encrypt", *RC4, "--password-fd", 0, "--force", "-o", "f", "f"),
                            f"latchkey: cannot read: {BAD}: descriptor 0")
        self.assert_refused(self.shell("<&-", "encrypt", *RC4, "--password-file", "-", "f"),
                            f"latchkey: cannot read: {BAD}: standard input")
        self.assert_refused(self.shell("<&-", "encrypt", *RC4, "--password-file", "/dev/stdin", "f"),
                            f"latchkey: cannot open: {BAD}: /dev/stdin")

    def test_a_closed_input_is_no_data(self):
        for arguments in (["encrypt", *RC4, "--no-password"], ["hex"], ["hash"]):
            result = self.shell("<&-", *arguments)
            self.assert_refused(result, f"latchkey: cannot read: {BAD}: standard input")

    def test_a_closed_output_fails(self):
        for arguments in (["encrypt", *RC4, "--no-password", "f"], ["hex", "f"], ["random", 5]):
            self.assert_refused(self.shell(">&-", *arguments), f"latchkey: cannot write: {BAD}: standard output")
        for arguments in (["hash", "f"], ["errors"], ["--help"]):
            self.assert_refused(self.shell(">&-", *arguments), "latchkey: cannot write: standard output")

    def test_a_closed_output_is_not_the_input(self):
        for name in ("-", "/dev/stdout", "/dev/fd/1"):
            result = self.shell("0<>f >&-", "hex", "-o", name)
            shown = "standard output" if name == "-" else name
            self.assert_refused(result, f"latchkey: cannot write: {BAD}: {shown}")

    def test_messages_are_not_written_into_the_commands_files(self):
        # A closed stream's number would be the input's or the output's.
        for closed in ("<&-", ">&-", "2>&-", "<&- >&-", "<&- 2>&-", ">&- 2>&-", "<&- >&- 2>&-"):
            failed = self.shell(closed, "hex", "-d", "--force", "-o", "f", "f")
            self.assertEqual((failed.status, self.read("f")), (1, b"precious\n"), closed)
            self.run_well("hex", "--force", "-o", "digits", "f")
            done = self.shell(closed, "hex", "-d", "--json", "--force", "-o", "digits", "digits")
            can_tell = ">&-" not in closed.split()
            self.assertEqual((done.status, self.names()), (0 if can_tell else 1, ["digits", "f"]), closed)
            self.assertEqual(self.read("digits"), b"precious\n", closed)  # whole, whether that could be printed or not
