"""The password prompt on Linux: stopped and continued, and with non-ASCII characters."""
import os
import shlex

import pexpect
from command import PROGRAM, CommandTest, wait_for_read

OPTIONS = ["--hash", "md5", "--cipher", "des"]
PLAIN = b"the quick brown fox"
COMMAND = PROGRAM[0]


class PromptTest(CommandTest):
    def setUp(self):
        super().setUp()
        self.write("in", PLAIN)

    def spawn(self, program, arguments):
        child = pexpect.spawn(program, arguments, cwd=self.folder, timeout=60, encoding="utf-8")
        self.addCleanup(child.close, force=True)
        return child

    def ask(self, *arguments, answers):
        """Runs the command and answers its prompts; returns the exit status and all that was shown."""
        child = self.spawn(COMMAND, [*arguments, *OPTIONS, "in"])
        shown = ""
        for answer in answers:
            child.expect("assword[a-z ]*: ")
            self.assertTrue(child.waitnoecho(60))
            shown += child.before
            child.sendline(answer)
        child.expect(pexpect.EOF)
        child.close()
        return child.exitstatus, shown + child.before

    def test_after_a_stop_the_prompt_is_repeated_and_nothing_is_echoed(self):
        shell = self.spawn("/bin/bash", ["--norc", "--noediting", "-i"])
        shell.sendline("stty -echo; PS1='ready'$': '; set +o history")
        shell.expect("ready: ")
        shell.sendline(shlex.join([COMMAND, "encrypt", *OPTIONS, "-o", "out", "in"]))
        for prompt in ("Password: ", "Password again: "):
            shell.expect_exact(prompt)
            shell.send("hidden")
            wait_for_read(os.tcgetpgrp(shell.child_fd))
            shell.send("\x1a")
            shell.expect_exact("Stopped")
            self.assertNotIn("hidden", shell.before)
            shell.expect_exact("ready: ")
            shell.sendline("stty echo; fg")
            shell.expect_exact(prompt)
            self.assertTrue(shell.waitnoecho(60))
            shell.sendline("secret")
        shell.expect_exact("ready: ")
        self.assertNotIn("secret", shell.before)
        self.assertEqual(self.read("out"), self.encrypt(PLAIN, OPTIONS))

    def test_other_than_ascii_must_name_its_encoding(self):
        status, shown = self.ask("encrypt", "-o", "out", answers=["Größe", "Größe"])
        self.assertEqual((status, self.names()), (1, ["in"]))
        self.assertIn("a typed password with non-ASCII characters requires --password-encoding", shown)
        self.assertIn("most likely --password-encoding windows-1252", shown.replace("\r\n", " "))
        self.assertNotIn("Gr", shown)

    def test_a_typed_password_is_converted(self):
        for encoding, password in (("windows-1252", b"Gr\xf6\xdfe"), ("utf-8", "Größe".encode()),
                                   ("bytes", "Größe".encode())):
            status, shown = self.ask("encrypt", "-f", "-o", "out", "--password-encoding", encoding,
                                     answers=["Größe", "Größe"])
            self.assertEqual(status, 0, shown)
            self.assertEqual(self.read("out"), self.encrypt(PLAIN, OPTIONS, password))

    def test_an_empty_answer_is_refused(self):
        status, shown = self.ask("decrypt", answers=[""])
        self.assertEqual(status, 1)
        self.assertIn("the password is empty", shown)

    def test_a_line_of_the_longest_length_is_read_whole(self):
        password = "x" * 4000
        status, shown = self.ask("encrypt", "-o", "out", answers=[password, password])
        self.assertEqual(status, 0, shown)
        self.assertEqual(self.read("out"), self.encrypt(PLAIN, OPTIONS, password.encode()))
