"""Passwords with non-ASCII characters, in the encoding that the old program used."""
import codecs
import hashlib
import os
import subprocess

from command import IS_EMULATED, IS_WINDOWS, CommandTest

OPTIONS = ["--hash", "md5", "--cipher", "rc4", "--key-bits", "128"]
PLAIN = bytes(64)

# A password of each encoding and Python's name of it, which has the same bytes for these characters.
PASSWORDS = {
    "windows-1250": ("Žluťoučký", "cp1250"), "windows-1251": ("Пароль", "cp1251"),
    "windows-1252": ("Größe€", "cp1252"), "windows-1253": ("Ωμέγα", "cp1253"), "windows-1254": ("şifreİ", "cp1254"),
    "windows-1255": ("שלום", "cp1255"), "windows-1256": ("سلام", "cp1256"), "windows-1257": ("Ąžuolas", "cp1257"),
    "windows-1258": ("đươ", "cp1258"), "windows-874": ("รหัส", "cp874"), "windows-932": ("パスワード", "cp932"),
    "windows-936": ("密码", "cp936"), "windows-949": ("암호", "cp949"), "windows-950": ("密碼", "cp950"),
    "utf-8": ("Größe🔑", "utf-8"), "utf-16le": ("Größe🔑", "utf-16-le")}


def rc4(key, data):
    state = list(range(256))
    j = 0
    for i in range(256):
        j = (j + state[i] + key[i % len(key)]) & 0xFF
        state[i], state[j] = state[j], state[i]
    i = j = 0
    result = bytearray()
    for byte in data:
        i = (i + 1) & 0xFF
        j = (j + state[i]) & 0xFF
        state[i], state[j] = state[j], state[i]
        result.append(byte ^ state[(state[i] + state[j]) & 0xFF])
    return bytes(result)


def expected(password):
    """The ciphertext under these bytes, by an independent implementation."""
    return rc4(hashlib.md5(password).digest(), PLAIN)


class PasswordEncodingTest(CommandTest):
    def encrypt_under(self, source, *more, command="encrypt", **options):
        return self.run_command(command, *OPTIONS, *source, *more, self.write("plain", PLAIN), **options)

    def from_file(self, data, *more, **options):
        return self.encrypt_under(["--password-file", self.write("password", data)], *more, **options)

    def assert_bytes(self, result, password):
        self.assertEqual((result.status, result.out), (0, expected(password)), result)

    def assert_refused(self, result, text, hint):
        self.assertEqual((result.status, result.out), (1, b""), result)
        self.assertEqual(result.lines[0], "latchkey: " + text)
        self.assertIn(hint, result.lines[1])

    def test_text_is_converted_to_each_encoding(self):
        for encoding, (text, python) in PASSWORDS.items():
            self.assert_bytes(self.from_file(text.encode(), "--password-encoding", encoding), text.encode(python))

    def test_a_file_is_used_as_it_is_unless_an_encoding_is_named(self):
        for data in ("Größe".encode("cp1252"), "Größe".encode(), codecs.BOM_UTF8 + b"abc"):
            self.assert_bytes(self.from_file(data), data)
            self.assert_bytes(self.from_file(data, "--password-encoding", "bytes"), data)

    def test_a_bom_chooses_the_encoding_of_the_file_and_is_dropped(self):
        text = "Größe\r\n"
        for data in (codecs.BOM_UTF8 + text.encode(), codecs.BOM_UTF16_LE + text.encode("utf-16-le"),
                     codecs.BOM_UTF16_BE + text.encode("utf-16-be")):
            self.assert_bytes(self.from_file(data, "--password-encoding", "1252"), b"Gr\xf6\xdfe")
            self.assert_bytes(self.from_file(data, "--password-encoding", "cp1252", "--password-exact"),
                              b"Gr\xf6\xdfe\r\n")
        self.assert_refused(self.from_file(codecs.BOM_UTF16_LE + "a\nb".encode("utf-16-le"), "--password-encoding",
                                           "utf-8"), "the password has several lines", "--password-exact")

    def test_a_file_that_is_not_text_is_refused(self):
        for data in (b"Gr\xf6\xdfe", codecs.BOM_UTF16_LE + b"a", codecs.BOM_UTF16_BE + b"\xdc\x00"):
            self.assert_refused(self.from_file(data, "--password-encoding", "windows-1252"),
                                "the password is not UTF-8, or UTF-16 with a BOM, so it cannot be converted",
                                "--password-encoding bytes")

    def test_a_character_that_the_encoding_lacks_is_refused(self):
        for text, encoding in (("Ωμέγα", "1252"), ("Größe", "932"), ("Ａ", "1252")):
            self.assert_refused(self.from_file(text.encode(), "--password-encoding", encoding),
                                f"the password has a character that windows-{encoding} lacks", "encrypted the data")

    def test_other_sources_are_converted_too(self):
        options = ["--password-encoding", "windows-1250"]
        result = self.encrypt_under(["--password-fd", "0"], *options, data="Žluť\n".encode())
        self.assert_bytes(result, "Žluť".encode("cp1250"))
        text = "abc" if IS_WINDOWS else "Žluť"  # Wine's locale has only ASCII here
        result = self.encrypt_under(["--password-env", "LK_TEST"], "--password-encoding", "utf-16le",
                                    environment={"LK_TEST": text})
        self.assert_bytes(result, text.encode("utf-16-le"))

    def test_names_that_do_not_exist_are_wrong_usage(self):
        for name in ("latin1", "1259", "utf-16", ""):
            self.assertEqual(self.from_file(b"abc", "--password-encoding", name).status, 2, name)
        for other in ("--no-password", "--default-password"):
            result = self.encrypt_under([other], "--password-encoding", "utf-8")
            self.assertEqual(result.lines[0],
                             "latchkey: --password-encoding requires a password that is given as text")

    def test_a_zero_character_is_appended(self):
        self.assert_bytes(self.from_file(b"abc\n", "--password-nul"), b"abc\0")
        self.assert_bytes(self.from_file(b"abc\n", "--password-nul", "--password-encoding", "utf-16le"),
                          "abc\0".encode("utf-16-le"))

    def test_a_failed_decryption_names_the_option_and_the_likely_page(self):
        for encoding, (text, _) in PASSWORDS.items():
            if encoding in ("utf-8", "windows-1254", "windows-1257", "windows-1258", "windows-950"):
                continue  # other pages have the same characters
            self.write("password", text.encode())
            result = self.run_command("decrypt", "--hash", "md5", "--cipher", "des", "--password-file", "password",
                                      data=bytes(16))
            self.assertEqual((result.status, result.lines[0]),
                             (1, "latchkey: Error decrypting data (location 717, number 120): standard input"))
            self.assertIn("most likely --password-encoding " + encoding, result.lines[1])
            records = self.run_command("records", "decrypt", "--format", "lines", "--hash", "md5", "--cipher", "des",
                                       "--password-file", "password", data=b"00" * 16)
            self.assertEqual(records.lines[1], result.lines[1])

    def test_the_hint_is_only_for_other_than_ascii_without_an_encoding(self):
        for data, more, hint in ((b"abc", [], False), ("ö".encode(), ["--password-encoding", "1252"], False),
                                 ("ö".encode(), ["--password-encoding", "bytes"], False), (b"\xf6", [], True)):
            self.write("password", data)
            result = self.run_command("decrypt", "--hash", "md5", "--cipher", "des", "--password-file", "password",
                                      *more, data=bytes(16))
            self.assertEqual((result.status, "--password-encoding" in result.lines[1]), (1, hint), (data, more))

    def test_verbose_prints_encoding_and_length_and_never_the_password(self):
        result = self.from_file("Größe".encode(), "--password-encoding", "1252", "--verbose")
        self.assertEqual(result.lines, ["latchkey: password of 5 bytes, encoding windows-1252"])
        result = self.from_file("Größe".encode(), "-v")
        self.assertEqual(result.lines, ["latchkey: password of 7 bytes, encoding bytes"])
        self.assertEqual(self.from_file("Größe".encode()).lines, [])


if not IS_WINDOWS and not IS_EMULATED:
    class LocaleTest(CommandTest):
        def test_a_variable_is_in_the_encoding_of_the_locale(self):
            locales = self.folder / "locales"
            locales.mkdir()
            subprocess.run(["localedef", "-i", "de_DE", "-f", "ISO-8859-1", locales / "de_DE.ISO-8859-1"], check=False,
                           capture_output=True)
            environment = {"LOCPATH": str(locales), "LC_ALL": "de_DE.ISO-8859-1",
                           "LK_TEST": os.fsdecode("Größe".encode("latin-1"))}
            result = self.run_well("encrypt", *OPTIONS, "--password-env", "LK_TEST", "--password-encoding", "utf-8",
                                   environment=environment, data=PLAIN)
            self.assertEqual(result.out, expected("Größe".encode()))
