"""encrypt and decrypt with data as hexadecimal digits and Base64."""
import base64
import shutil
import subprocess

from command import IS_WINDOWS, CommandTest

DES = ["--hash", "md5", "--cipher", "des", "--no-password"]
RC4 = ["--hash", "md5", "--cipher", "rc4", "--no-password"]
LARGE = 2_500_000  # several pieces of the cipher
PROGRAMS = {"hex": (["xxd", "-p"], ["xxd", "-r", "-p"]), "base64": (["base64"], ["base64", "-d"])}


def hex_text(data):
    """The digits and the line end that latchkey hex writes."""
    return data.hex().upper().encode() + (b"\n" if data else b"")


TEXTS = {"hex": hex_text, "base64": base64.encodebytes}


class DataFormTest(CommandTest):
    def cipher(self, data, key=DES):
        return self.run_well("encrypt", *key, data=data).out

    def test_results_are_written_in_the_form(self):
        for length in (0, 1, 2, 3, 40, 56, 57, 58, 200_000):
            data = self.random.randbytes(length)
            for form, text in TEXTS.items():
                ciphertext = self.cipher(data, RC4)
                self.assertEqual(self.run_well("encrypt", *RC4, "--to", form, data=data).out, text(ciphertext), length)
                self.assertEqual(self.run_well("decrypt", *RC4, "--to", form, data=ciphertext).out, text(data), length)

    def test_data_is_read_in_the_form(self):
        for length in (0, 1, 2, 3, 40, 56, 57, 58, 200_000):
            data = self.random.randbytes(length)
            ciphertext = self.cipher(data, RC4)
            for form, text in TEXTS.items():
                self.assertEqual(self.run_well("encrypt", *RC4, "--from", form, data=text(data)).out, ciphertext)
                self.assertEqual(self.run_well("decrypt", *RC4, "--from", form, data=text(ciphertext)).out, data)

    def test_one_form_is_read_and_the_other_written(self):
        data = self.random.randbytes(LARGE)
        text = self.run_well("encrypt", *DES, "--from", "hex", "--to", "BASE64", data=hex_text(data)).out
        self.assertEqual(text, base64.encodebytes(self.cipher(data)))
        self.assertEqual(self.run_well("decrypt", *DES, "--from", "base64", "--to", "Hex", data=text).out,
                         hex_text(data))

    def test_white_space_and_prefixes_are_skipped(self):
        data = bytes(range(256)) * 300
        digits = data.hex()
        lines = "\r\n ".join(digits[i:i + 77] for i in range(0, len(digits), 77))
        spaced = " ".join(digits[i:i + 2] for i in range(0, len(digits), 2))
        for text in (lines, "\\x" + digits, "0x" + lines, spaced, "\\x" + spaced.replace(" ", "\\x")):
            self.assertEqual(self.run_well("encrypt", *RC4, "--from", "hex", data=text.encode()).out,
                             self.cipher(data, RC4))
        characters = base64.b64encode(data).decode()
        for size in (1, 2, 3, 5, 64, 70_001):
            text = "\r\n ".join(characters[i:i + size] for i in range(0, len(characters), size)) + "\t\n"
            self.assertEqual(self.run_well("encrypt", *RC4, "--from", "base64", data=text.encode()).out,
                             self.cipher(data, RC4))

    def test_a_wrong_text_is_refused_and_writes_nothing(self):
        good = "A" * 200_000
        for form, text, failure in (
                ("hex", "41zz", "not a hexadecimal digit: 'z' at position 3"),
                ("hex", good + "A", "Error converting data (location 727, number 123)"),
                ("hex", good + "\n,", "not a hexadecimal digit: ',' at position 200002"),
                ("base64", "QUJD\nQ-==", "not Base64: '-' at position 7"),
                ("base64", "QUI=QUJD", "not Base64: 'Q' at position 5"),
                ("base64", "QQ=Q", "not Base64: 'Q' at position 4"),
                ("base64", "QQ===", "not Base64: '=' at position 5"),
                ("base64", "Q===", "not Base64: '=' at position 2"),
                ("base64", "=", "not Base64: '=' at position 1"),
                ("base64", good + "\n\0", "not Base64: byte 00 at position 200002"),
                ("base64", good + "QQ", "the Base64 text ends within a group of four characters"),
                ("base64", "QQ=", "the Base64 text ends within a group of four characters"),
                ("base64", "QR==", "the last character of the Base64 text is not one that an encoder writes")):
            self.write("in", text.encode())
            result = self.run_command("encrypt", *RC4, "--from", form, "-o", "out", "in")
            self.assertEqual((result.status, result.lines[0]), (1, f"latchkey: {failure}: in"), text[-20:])
            self.assertTrue(result.lines[1].startswith("hint: "), result)
            self.assertEqual(self.names(), ["in"])

    def test_other_words_are_wrong_usage(self):
        for option in ("--from", "--to"):
            result = self.run_command("encrypt", *DES, option, "text")
            self.assertEqual(result.status, 2)
            self.assertIn("text not in {hex|base64}", result.lines[0])

    def test_other_programs_read_and_write_the_same(self):
        if IS_WINDOWS:
            self.skipTest("needs programs of Linux")
        data = self.random.randbytes(100_001)
        for form, (encode, decode) in PROGRAMS.items():
            if not shutil.which(encode[0]):
                self.skipTest(f"{encode[0]} is not installed")
            text = self.run_well("encrypt", *RC4, "--to", form, data=data).out
            self.assertEqual(subprocess.run(decode, input=text, stdout=subprocess.PIPE, check=True).stdout,
                             self.cipher(data, RC4))
            text = subprocess.run(encode, input=data, stdout=subprocess.PIPE, check=True).stdout
            self.assertEqual(self.run_well("encrypt", *RC4, "--from", form, data=text).out, self.cipher(data, RC4))

    def test_json_counts_the_bytes_that_the_cipher_reads_and_writes(self):
        for form, text in TEXTS.items():
            self.write("in", text(b"some text"))
            result = self.run_well("encrypt", *DES, "--json", "--from", form, "--to", form, "-o", "out", "-f", "in").json
            self.assertEqual((result["bytes_in"], result["bytes_out"]), (9, 16))
            self.assertEqual(self.read("out"), text(self.cipher(b"some text")))

    def test_many_files(self):
        plain = {"a": b"", "b": b"some text", "c": self.random.randbytes(LARGE), "d": self.random.randbytes(700_000)}
        for name, data in plain.items():
            self.write(name, hex_text(data))
        self.run_well("encrypt", *DES, "--quiet", "--from", "hex", "--to", "base64", "--output-dir", "text", *plain)
        for name, data in plain.items():
            self.assertEqual(self.read(f"text/{name}"), base64.encodebytes(self.cipher(data)), name)
        (self.folder / "text/e").write_bytes(b"QUI=\n-")
        result = self.run_command("decrypt", *DES, "--json", "--from", "base64", "--to", "hex", "--output-dir", "back",
                                  *(f"text/{name}" for name in [*plain, "e"]))
        self.assertEqual((result.status, result.json["failed"]), (1, 1), result)
        for name in plain:
            self.assertEqual(self.read(f"back/{name}"), self.read(name), name)
        self.assertFalse((self.folder / "back/e").exists())

    def test_automatic_settings_and_restored_spaces(self):
        plain = b"The quick brown fox jumps over the lazy dog, and then it sleeps. " * 2
        options = ["--hash", "sha1", "--cipher", "3des"]
        ciphertext = self.encrypt(plain, options)
        password = ["--password-file", "password"]
        for form, text in TEXTS.items():
            self.write("c", text(ciphertext))
            self.assertEqual(self.run_well("decrypt", "--auto", *password, "--from", form, "c").out, plain)
            self.write("cut", text(ciphertext[:-1]))
            result = self.run_command("decrypt", *options, *password, "--from", form, "cut")
            self.assertIn(f"the ciphertext has {len(ciphertext) - 1} bytes, not a multiple of 8", result.lines[1])
            result = self.run_command("decrypt", *options, *password, "--from", form, "--restore-spaces", "cut")
            expected = self.run_command("decrypt", *options, *password, data=ciphertext[:-1] + b" ")
            self.assertEqual((result.status, result.out), (expected.status, expected.out))
