"""latchkey identify finds unknown settings of ciphertexts."""
import pathlib
import random

from command import BLOCK_CIPHERS, IS_WINDOWS, SETTINGS, CommandTest, setting_options

CORPUS = (pathlib.Path(__file__).parent / "corpus.txt").read_bytes()
KEYS = 224  # of an ASCII password in its four forms
TEXTS = 15 if IS_WINDOWS else 100
BLOCK_SETTINGS = [settings for settings in SETTINGS if settings[2] in BLOCK_CIPHERS]


class IdentifyTest(CommandTest):
    def text(self, shortest, longest):
        length = self.random.randrange(shortest, longest)
        start = self.random.randrange(len(CORPUS) - length)
        return CORPUS[start:start + length]

    def identify(self, data, password=b"secret"):
        self.write("password", password)
        self.write("ciphertext", data)
        result = self.run_command("identify", "--json", "--password-file", "password", "ciphertext")
        self.assertEqual(result.status, 0 if result.json["candidates"][0]["certain"] else 3, result)
        return result.json

    def assert_first(self, result, provider, hash_, cipher):
        first = result["candidates"][0]
        self.assertEqual((first["hash"], first["cipher"], provider in first["providers"]), (hash_, cipher, True),
                         result)
        return first

    def test_finds_texts_of_64_bytes_and_more_under_block_ciphers(self):
        for _ in range(TEXTS):
            provider, hash_, cipher = self.random.choice(BLOCK_SETTINGS)
            text = self.text(64, 400)
            result = self.identify(self.encrypt(text, setting_options(provider, hash_, cipher)))
            first = self.assert_first(result, provider, hash_, cipher)
            self.assertEqual(first["padding"], 8 - len(text) % 8)
            self.assertGreater(first["probability"], 0.9999)
            self.assertEqual(first["confidence"], "practically certain")

    def test_rc4_has_no_padding_and_is_found_by_its_text(self):
        for provider in ("base", "enhanced"):
            result = self.identify(self.encrypt(self.text(64, 400), setting_options(provider, "md4", "rc4")))
            first = self.assert_first(result, provider, "md4", "rc4")
            self.assertNotIn("padding", first)
            self.assertGreater(first["probability"], 0.9999)

    def test_rc2_of_windows_2000(self):
        ciphertext = self.encrypt(self.text(64, 400), ["--hash", "md5", "--cipher", "rc2", "--rc2-effective-bits", "40"])
        first = self.assert_first(self.identify(ciphertext), "enhanced", "md5", "rc2")
        self.assertEqual(first["rc2_effective_bits"], 40)

    def test_providers_with_the_same_key_are_one_candidate(self):
        result = self.identify(self.encrypt(self.text(64, 400), setting_options("base", "md5", "des")))
        self.assertEqual(result["candidates"][0]["providers"], ["base", "enhanced"])
        self.assertEqual(result["keys_tried"], KEYS)

    def test_probabilities_are_shares_of_one_and_fall(self):
        for data in (self.encrypt(b"abc", setting_options("base", "md5", "rc4")), self.random.randbytes(8)):
            self.write("password", b"secret")
            result = self.run_command("identify", "--json", "--password-file", "password", "-", data=data)
            if result.status != 1:
                probabilities = [candidate["probability"] for candidate in result.json["candidates"]]
                self.assertEqual(probabilities, sorted(probabilities, reverse=True))
                self.assertAlmostEqual(sum(probabilities) + result.json["none_probability"], 1)
        self.assertLess(max(self.identify(self.encrypt(b"abc", setting_options("base", "md5", "rc4")))
                            ["candidates"][0]["probability"], 0), 0.9999)

    def test_a_wrong_password_is_never_found_with_certainty(self):
        for _ in range(3 if IS_WINDOWS else 20):
            ciphertext = self.encrypt(self.text(64, 400), setting_options(*self.random.choice(BLOCK_SETTINGS)))
            self.write("password", b"wrong")
            result = self.run_command("identify", "--json", "--password-file", "password", "-", data=ciphertext)
            if result.status == 3:
                self.assertLess(result.json["candidates"][0]["probability"], 0.99, result)
            else:
                self.assertEqual(result.status, 1, result)
                self.assertIn("no provider, hash and cipher fit", result.json["error"]["text"])

    def test_a_long_ciphertext_is_judged_by_its_beginning_and_its_end(self):
        for length in ((1 << 16) - 1, 1 << 16, (1 << 16) + 1, 400_003):
            text = (CORPUS * (length // len(CORPUS) + 1))[:length]
            result = self.identify(self.encrypt(text, setting_options("enhanced", "sha1", "3des")))
            first = self.assert_first(result, "enhanced", "sha1", "3des")
            self.assertEqual(first["padding"], 8 - length % 8)
            self.assertEqual(result["bytes"], length // 8 * 8 + 8)

    def test_the_text_form_names_the_options_to_decrypt_with(self):
        self.write("password", b"secret")
        self.write("c", self.encrypt(CORPUS[:100], setting_options("enhanced", "sha1", "3des-112")))
        lines = self.run_well("identify", "--password-file", "password", "c").text.splitlines()
        self.assertEqual(lines[0], "PROBABILITY  PROVIDER        HASH  CIPHER            PADDING  PASSWORD")
        self.assertRegex(lines[1], r"^100\.0000 %   enhanced        sha1  3des-112          4        bytes$")
        self.assertRegex(lines[-2], r"^< 0\.0001 %   none of the " + str(KEYS) + " keys tried$")
        self.assertEqual(lines[-1], "practically certain: --provider enhanced --hash sha1 --cipher 3des-112")

    def test_the_other_two_passwords(self):
        for option in ("--default-password", "--no-password"):
            ciphertext = self.run_well("encrypt", "--hash", "md5", "--cipher", "3des", option, data=CORPUS[:80]).out
            result = self.run_well("identify", "--json", option, "-", data=ciphertext).json
            self.assert_first(result, "enhanced", "md5", "3des")


class PasswordFormTest(CommandTest):
    OPTIONS = ["--hash", "sha1", "--cipher", "3des"]

    def identify(self, password, ciphertext, *more):
        self.write("password", password)
        return self.run_well("identify", "--json", "--password-file", "password", *more,
                             self.write("ciphertext", ciphertext)).json["candidates"][0]

    def test_the_encoding_and_a_trailing_zero_are_found(self):
        for text, encoding, python in (("Größe", "windows-1252", "cp1252"), ("Žluťoučký", "windows-1250", "cp1250"),
                                       ("Пароль", "windows-1251", "cp1251"), ("パスワード", "windows-932", "cp932"),
                                       ("Größe", "utf-8", "utf-8"), ("Größe", "utf-16le", "utf-16-le"),
                                       ("secret", "bytes", "ascii"), ("secret", "utf-16le", "utf-16-le")):
            for nul in ("", "\0"):
                ciphertext = self.encrypt(CORPUS[:80], self.OPTIONS, (text + nul).encode(python))
                best = self.identify(text.encode() + b"\n", ciphertext)
                self.assertEqual((best["password_encoding"], best["password_nul"], best["certain"]),
                                 (encoding, nul != "", True), best)
                options = best["options"].split()
                self.write("password", text.encode())
                self.assertEqual(self.run_well("decrypt", *options, "--password-file", "password", data=ciphertext).out,
                                 CORPUS[:80])

    def test_a_named_encoding_is_the_only_one_tried(self):
        ciphertext = self.encrypt(CORPUS[:80], self.OPTIONS, "Größe".encode("cp1252"))
        self.write("password", "Größe".encode())
        self.write("c", ciphertext)
        options = ["identify", "--password-file", "password", "c", "--password-encoding"]
        self.assertEqual([self.run_command(*options, name).status for name in ("1252", "utf-8", "bytes")], [0, 1, 1])

    def test_usual_key_lengths_are_found(self):
        for cipher in ("rc2", "rc4"):
            for bits in ("40", "56", "64", "80", "128"):
                options = ["--hash", "md5", "--cipher", cipher, "--provider", "enhanced", "--key-bits", bits]
                ciphertext = self.encrypt(CORPUS[:80], options)
                best = self.identify(b"secret", ciphertext)
                self.assertTrue(best["certain"], best)
                self.assertEqual(self.decrypt(ciphertext, best["options"].split()), CORPUS[:80])


class ManyTest(CommandTest):
    DES = ["--hash", "md5", "--cipher", "des"]
    RC4 = ["--hash", "sha1", "--cipher", "rc4", "--key-bits", "64"]

    def identify(self, *arguments, **options):
        self.write("password", b"secret")
        return self.run_command("identify", "--json", "--password-file", "password", *arguments, **options)

    def rows(self, count, options):
        """Ciphertexts that say too little for a certain answer: random bytes with one of padding, or short words."""
        words = sorted({word for word in CORPUS.split() if len(word) == 3})
        texts = self.random.sample(words, count) if "rc4" in options else \
            [self.random.randbytes(7) for _ in range(count)]
        return [self.encrypt(text, options) for text in texts]

    def write_all(self, prefix, ciphertexts):
        return [self.write(f"{prefix}{i:03}", ciphertext) for i, ciphertext in enumerate(ciphertexts)]

    def test_the_evidence_of_many_short_ones_adds_up(self):
        for options in (self.DES, self.RC4):
            names = self.write_all("c", self.rows(16, options))
            self.assertEqual(self.identify(names[0]).status, 3)
            result = self.identify(*names)
            self.assertEqual(result.status, 0, result)
            self.assertEqual(result.json["ciphertexts"], 16)
            self.assertEqual(result.json["candidates"][0]["cipher"], options[3])

    def test_copies_of_a_ciphertext_add_no_evidence(self):
        names = self.write_all("c", self.rows(1, self.DES) * 50)
        self.assertIn(self.identify(*names).status, (1, 3))

    def test_records_are_lines_of_hexadecimal_in_several_forms(self):
        rows = [row.hex() for row in self.rows(16, self.DES)]
        rows = [rows[0], "0x" + rows[1].upper(), "\\x" + rows[2], "\\\\x" + rows[3], "", f' "{rows[4]}" ',
                rows[5] + "\r", f'"0x{rows[6]}"', *rows[7:]]
        result = self.identify("--records", "-", data="\n".join(rows).encode())
        self.assertEqual((result.status, result.json["ciphertexts"]), (0, 16), result)
        self.write("rows", "\n".join(rows).encode())
        self.assertEqual(self.identify("--records", "rows").json["candidates"], result.json["candidates"])

    def test_other_lines_are_reported_by_number(self):
        for line in (b"abc", b"xyz", b"00,11", b"'00'"):
            result = self.identify("--records", "-", data=b"00112233\n\n" + line)
            self.assertEqual((result.status, result.json["error"]["text"]),
                             (1, "line 3 is not a record of hexadecimal digits"))
            result = self.identify("--records", "-", data=b"00\n\n" + line + b"\n11\n")
            self.assertEqual(result.json["error"]["text"], "line 3 is not a record of hexadecimal digits")
        self.assertEqual(self.identify("--records", "-", data=b"\n\n").status, 1)

    def test_ciphertexts_of_different_settings_are_sorted(self):
        kinds = {"des": self.DES, "rc4": self.RC4, "3des": ["--hash", "sha1", "--cipher", "3des"]}
        for kind, options in kinds.items():
            texts = [CORPUS[start:start + 90 + start] for start in (0, 7, 30)]
            self.write_all(kind + "-", [self.encrypt(text, options) for text in texts])
        self.write("3des-short", self.encrypt(b"Anna and Bob", kinds["3des"]))
        self.write("junk", self.random.randbytes(100))
        self.write("zeros", bytes(800))
        names = [name for name in self.names() if name != "password"]
        result = self.identify(*names)
        self.assertEqual(result.status, 3)
        for group in result.json["groups"]:
            expected = [name for name in names if name.startswith(group["cipher"] + "-")]
            self.assertEqual([each["file"] for each in group["ciphertexts"]], expected, result)
        self.assertEqual([each["file"] for each in result.json["not_identified"]], ["junk", "zeros"])
        for name in ("junk", "zeros"):
            (self.folder / name).unlink()
            names.remove(name)
        self.assertEqual(self.identify(*names).status, 0)
        text = self.run_well("identify", "--password-file", "password", *names).text
        self.assertIn("4 practically certain: --provider enhanced --hash sha1 --cipher 3des\n  3des-000\n  3des-001\n", text)

    def test_a_long_text_under_rc4_does_not_answer_for_the_others(self):
        self.write("a", self.encrypt(CORPUS[:400], self.RC4))
        self.write("b", self.encrypt(CORPUS[:90], self.DES))
        self.write("c", self.random.randbytes(60))
        self.write("d", self.encrypt(b"then", self.RC4))
        self.assertEqual(self.identify("d").status, 3)
        result = self.identify("a", "b", "c", "d")
        self.assertEqual(result.status, 3)
        self.assertEqual([[each["file"] for each in group["ciphertexts"]] for group in result.json["groups"]],
                         [["a", "d"], ["b"]])

    def test_random_data_and_zeros_are_never_certain(self):
        for data in [bytes(length) for length in (8, 64, 800)] + [self.random.randbytes(8 * i) for i in range(1, 20)]:
            self.assertIn(self.identify(self.write("c", data)).status, (1, 3), data)


def ending_in_space(test, options, text):
    """A text that begins with `text`, and its ciphertext without the bytes of value 20 (hexadecimal) at its end."""
    whole = len(text) // 8 * 8
    source = random.Random(7)
    ends = [text[whole:] + source.randbytes(4).hex().encode() for _ in range(3000)]
    # The end of a CBC ciphertext is that of a message whose first block has the ciphertext block before it added.
    feedback = test.encrypt(text[:whole], options)[whole - 8:whole]
    messages = [bytes(a ^ b for a, b in zip(end, feedback)) + end[8:] for end in ends]
    test.write("password", b"secret")
    rows = test.run_well("records", "encrypt", "--format", "lines", "--from", "hex", *options, "--password-file",
                         "password", data=b"\n".join(message.hex().encode() for message in messages)).out.split()
    plain = text[:whole] + next(end for end, row in zip(ends, rows) if row.endswith(b"20"))
    ciphertext = test.encrypt(plain, options)
    test.assertEqual(ciphertext[-1:], b" ")
    return plain, ciphertext.rstrip(b" ")


class CutTest(CommandTest):
    """Block ciphertexts whose trailing bytes of value 20 a client cut."""
    OPTIONS = ["--hash", "md5", "--cipher", "3des"]

    def setUp(self):
        super().setUp()
        self.plain, self.cut = ending_in_space(self, self.OPTIONS, CORPUS[:90])
        self.write("cut", self.cut)
        self.password = ["--password-file", self.write("password", b"secret")]

    def test_decrypt_reports_the_length_and_puts_the_spaces_back(self):
        result = self.run_command("decrypt", *self.OPTIONS, *self.password, "cut")
        self.assertEqual((result.status, result.lines[0]),
                         (1, "latchkey: Error decrypting data (location 717, number 120): cut"))
        self.assertIn(f"the ciphertext has {len(self.cut)} bytes, not a multiple of 8", result.lines[1])
        self.assertIn("--restore-spaces", result.lines[1])
        restore = ["decrypt", *self.OPTIONS, *self.password, "--restore-spaces"]
        self.assertEqual(self.run_well(*restore, "cut").out, self.plain)
        self.assertEqual(self.run_well(*restore, data=self.cut).out, self.plain)
        self.write("whole", self.encrypt(self.plain, self.OPTIONS))
        self.assertEqual(self.run_well(*restore, "whole").out, self.plain)
        self.assertEqual(self.run_well("decrypt", *self.OPTIONS, *self.password, "whole").out, self.plain)
        result = self.run_well(*restore, "--json", "-o", "out", "cut").json
        self.assertEqual(result["restored_spaces"], 8 - len(self.cut) % 8)

    def test_a_whole_length_gets_no_such_advice(self):
        result = self.run_command("decrypt", *self.OPTIONS, *self.password, data=bytes(16))
        self.assertNotIn("--restore-spaces", result.lines[-1])

    def test_the_stream_cipher_has_no_missing_bytes(self):
        options = ["--hash", "md5", "--cipher", "rc4"]
        ciphertext = self.encrypt(b"abc", options)
        self.assertEqual(self.run_well("decrypt", *options, *self.password, "--restore-spaces", data=ciphertext).out,
                         b"abc")

    def test_identify_puts_the_spaces_back_and_says_so(self):
        result = self.run_well("identify", *self.password, "--json", "cut").json
        self.assertEqual((result["candidates"][0]["restored"], result["candidates"][0]["cipher"]), (1, "3des"))
        text = self.run_well("identify", *self.password, "cut").text
        self.assertIn("trailing spaces put back: 1\n", text)
        self.assertTrue(text.endswith("--cipher 3des --restore-spaces\n"), text)

    def test_auto_puts_them_back(self):
        self.assertEqual(self.run_well("decrypt", "--auto", *self.password, "cut").out, self.plain)

    def test_large_pieces_and_their_borders(self):
        for length in ((1 << 20) - 9, (1 << 20) - 1, 1 << 20, (3 << 20) - 1):
            text = (CORPUS * (length // len(CORPUS) + 1))[:length - 8]
            plain, cut = ending_in_space(self, self.OPTIONS, text)
            self.write("large", cut)
            self.assertEqual(self.run_well("decrypt", *self.OPTIONS, *self.password, "--restore-spaces", "large").out,
                             plain)


class AutoTest(CommandTest):
    def decrypt_auto(self, ciphertext, password, *more):
        self.write("password", password)
        self.write("c", ciphertext)
        return self.run_command("decrypt", "--auto", "--password-file", "password", *more, "c")

    def test_a_certain_answer_is_used(self):
        for options, password, typed in ((["--hash", "md4", "--cipher", "des"], b"secret", b"secret"),
                                         (["--hash", "sha1", "--cipher", "rc4", "--key-bits", "64"],
                                          "Größe\0".encode("cp1252"), "Größe".encode())):
            ciphertext = self.encrypt(CORPUS[:100], options, password)
            result = self.decrypt_auto(ciphertext, typed)
            self.assertEqual((result.status, result.out, result.err), (0, CORPUS[:100], b""))

    def test_a_guess_is_refused_and_writes_nothing(self):
        ciphertext = self.encrypt(b"abc", ["--hash", "md5", "--cipher", "rc4"])
        result = self.decrypt_auto(ciphertext, b"secret", "-o", "out")
        self.assertEqual((result.status, (self.folder / "out").exists()), (1, False), result)
        self.assertEqual(result.lines[0], "latchkey: the settings are not certain: c")
        self.assertIn("'latchkey identify' lists the guesses", result.lines[1])

    def test_no_answer_is_refused(self):
        result = self.decrypt_auto(self.random.randbytes(101), b"secret")
        self.assertEqual(result.status, 1)
        self.assertRegex(result.lines[0], "no settings fit under this password: c$|not certain: c$")

    def test_other_settings_and_pipes_are_wrong_usage(self):
        self.write("password", b"secret")
        for more in (["--hash", "md5"], ["--cipher", "rc4"], ["--provider", "base"], ["--key-bits", "40"]):
            self.assertEqual(self.decrypt_auto(b"abc", b"secret", *more).status, 2, more)
        result = self.run_command("decrypt", "--auto", "--password-file", "password", data=b"abc")
        self.assertEqual((result.status, result.lines[0]),
                         (2, "latchkey: --auto requires a named file, since it reads the data twice"))
        self.assertEqual(self.run_command("decrypt", "--hash", "md5", "--no-password", data=b"abc").lines[0],
                         "latchkey: --cipher is required")
