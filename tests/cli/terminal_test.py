"""Data on a terminal: binary data only if it was sent there by name."""
import os
import pty

from command import CommandTest

RC4 = ["--hash", "md5", "--cipher", "rc4", "--no-password"]


class TerminalTest(CommandTest):
    def run_on_terminal(self, *arguments, data=b""):
        """The exit status and the standard output of the command, whose standard output is a terminal."""
        master, slave = pty.openpty()
        try:
            self.write("data", data)
            with open(self.folder / "data", "rb") as source:
                result = self.run_command(*arguments, stdin=source, stdout=slave)
            os.set_blocking(master, False)
            try:
                shown = os.read(master, 65536)
            except BlockingIOError:
                shown = b""
            return result.status, shown.replace(b"\r\n", b"\n")
        finally:
            os.close(slave)
            os.close(master)

    def test_random_data_and_ciphertexts_are_refused(self):
        for arguments in (["random", 16], ["salt", 16], ["encrypt", *RC4]):
            self.assertEqual(self.run_on_terminal(*arguments, data=b"text"), (2, b""), arguments)
            status, shown = self.run_on_terminal(*arguments, "-o", "-", data=b"text")
            self.assertEqual((status, bool(shown)), (0, True), arguments)

    def test_digits_letters_and_json_are_text(self):
        for arguments in (["random", 16, "--hex"], ["salt", 16, "--letters"], ["random", 16, "--json"]):
            status, shown = self.run_on_terminal(*arguments)
            self.assertEqual((status, bool(shown)), (0, True), arguments)

    def test_ciphertexts_as_text_are_shown(self):
        for form in ("hex", "base64"):
            status, shown = self.run_on_terminal("encrypt", *RC4, "--to", form, data=b"text")
            self.assertEqual((status, shown), (0, self.run_well("encrypt", *RC4, "--to", form, data=b"text").out))

    def test_files_are_written_to_a_folder(self):
        self.write("large", bytes(3 << 20))
        for arguments in (["encrypt", "--output-dir", "out", "large"], ["decrypt", "--output-dir", "back", "out/large"]):
            self.assertEqual(self.run_on_terminal(*arguments, *RC4)[0], 0, arguments)
        self.assertEqual(self.read("back/large"), bytes(3 << 20))

    def test_a_result_with_control_characters_is_refused(self):
        for text, is_text in ((b"Gr\xfc\xdfe, \ttabs,\r\n\f lines", True), (b"a\0b", False), (b"a\x1b[2Jb", False)):
            self.write("c", self.run_well("encrypt", *RC4, data=text).out)
            for arguments, data in ((["decrypt", *RC4, "c"], b""), (["hex", "-d"], text.hex().encode())):
                status, shown = self.run_on_terminal(*arguments, data=data)
                self.assertEqual((status, b"a" in shown or b"Gr" in shown), (0, True) if is_text else (2, False), text)
                self.assertEqual(self.run_on_terminal(*arguments, "-o", "-", data=data)[0], 0, text)
