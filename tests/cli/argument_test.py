"""Arguments: names that look like something else, and the options that apply in a usage error."""
import json

from command import CommandTest

ABC = "900150983cd24fb0d6963f7d28e17f72"
RC4 = ["--hash", "md5", "--cipher", "rc4", "--no-password"]
# Names that a parser may take for a list, an end, a command, a map, a comment, an option.
NAMES = ["[1]", "[a,b]", "[]", "++", "hash", "random", "{x}", "%%", "#c", "'q'", "@f", "a b", "a=b", "-5"]


class NameTest(CommandTest):
    def setUp(self):
        super().setUp()
        for name in NAMES:
            self.write(name, b"abc")

    def test_several_files_of_any_name(self):
        expected = "".join(f"{ABC}  {name}\n" for name in NAMES)
        self.assertEqual(self.run_well("hash", *NAMES).text, expected)
        self.assertEqual(self.run_well("hash", "--", *NAMES).text, expected)
        listed = self.run_well("hash", "--json", *NAMES).json["results"]
        self.assertEqual([result["file"] for result in listed], NAMES)

    def test_input_output_and_password_file_of_any_name(self):
        for name in NAMES:
            self.run_well("encrypt", *RC4, "-o", "out", name)
            self.run_well("decrypt", *RC4, "--force", "-o", name, "out")
            self.assertEqual(self.read(name), b"abc", name)
            (self.folder / "out").unlink()
            self.run_well("encrypt", *RC4[:-1], "--password-file", name, "-o", "out", name)
            (self.folder / "out").unlink()

    def test_a_name_that_begins_with_a_dash_follows_two_dashes(self):
        self.write("-x", b"abc")
        self.assertEqual(self.run_well("hash", "--", "-x").text, f"{ABC}  -x\n")
        self.run_well("encrypt", *RC4, "-o", "-out", "--", "-x")
        self.run_well("encrypt", *RC4, "--output=-out2", "--", "-x")
        self.assertEqual(self.read("-out"), self.read("-out2"))
        result = self.run_command("hash", "-x")
        self.assertEqual((result.status, result.lines[0]),
                         (2, "latchkey: no such option: -x"))

    def test_a_failure_shows_the_name_as_given(self):
        for name in ("[none]", "++"):
            (self.folder / name).unlink(missing_ok=True)
            line = self.run_command("hash", "--", name).lines[0]
            self.assertTrue(line.startswith("latchkey: cannot open: ") and line.endswith(f": {name}"), line)
            result = self.run_command("random", "1", name)
            self.assertEqual((result.status, result.lines[0]),
                             (2, f"latchkey: unexpected argument: {name}"))


class EmptyNameTest(CommandTest):
    def test_an_empty_name_is_neither_a_file_nor_the_default(self):
        self.write("in", b"abc")
        for arguments in (["encrypt", *RC4, ""], ["encrypt", *RC4, "-o", "", "in"], ["hash", ""],
                          ["encrypt", *RC4[:-1], "--password-file", "", "in"],
                          ["encrypt", *RC4[:-1], "--password-env", "", "in"]):
            result = self.run_command(*arguments)
            self.assertEqual((result.status, result.out), (1, b""), (arguments, result))
            self.assertEqual(self.names(), ["in"])


class JsonOfWrongUsageTest(CommandTest):
    def test_it_applies_wherever_the_parser_stopped(self):
        for arguments in (["bogus", "--json"], ["--bogus", "--json"], ["encrypt", "-o", "out", "--json", "--hash"],
                          ["encrypt", "-oout", "--hash", "md5", "--json", "--cipher"], ["hash", "--bogus", "--json"],
                          ["encrypt", "--json", "--cipher", "rc4", "--cipher", "rc2", "--output=out"],
                          ["hex", "--json", "-fo", "out", "one", "two"], ["identify", "--json"], ["random", "--json"],
                          ["decrypt", "--json", "--cipher", "nope", "-o", "[out]"]):
            result = self.run_command(*arguments)
            self.assertEqual((result.status, result.err), (2, b""), arguments)
            self.assertTrue(result.json["error"]["text"], arguments)

    def test_it_is_not_on_standard_output_if_the_data_would_be_there(self):
        for arguments in (["encrypt", "--json", "--hash"], ["encrypt", "--hash", "md5", "--json", "--cipher"],
                          ["encrypt", "--json", "--hash", "md5", "--cipher", "nope", "--no-password", "f"],
                          ["decrypt", "--bogus", "--json", "-o", "-"], ["hex", "one", "two", "--json"],
                          ["hex", "--json", "-o", "out", "-o", "-"], ["hex", "--json", "-o"]):
            result = self.run_command(*arguments)
            self.assertEqual((result.status, result.out), (2, b""), arguments)
            self.assertTrue(json.loads(result.err)["error"]["text"], arguments)

    def test_after_two_dashes_it_is_a_name(self):
        result = self.run_command("salt", "--bogus", "--", "--json")
        self.assertEqual((result.status, result.out), (2, b""))
        self.assertTrue(result.lines[0].startswith("latchkey: "), result)


class WordTest(CommandTest):
    def test_names_are_taken_in_any_case_with_or_without_hyphens_and_as_numbers(self):
        self.write("in", b"abc")
        for algorithm in ("sha1", "SHA1", "SHA-1", "sha-1", "4"):
            digest = self.run_well("hash", "--json", "-a", algorithm, "in").json
            self.assertEqual((digest["algorithm"], digest["results"][0]["digest"][:8]), ("sha1", "a9993e36"), algorithm)
        for cipher in ("3des-112", "3DES-112", "3des112", "5"):
            result = self.run_well("encrypt", "--json", "--hash", "MD5", "--provider", "Enhanced", "--cipher", cipher,
                                   "--no-password", "--force", "-o", "out", "in").json
            self.assertEqual((result["provider"], result["hash"], result["cipher"]), ("enhanced", "md5", "3des-112"))

    def test_other_words_are_refused(self):
        right = {"--hash": "md5", "--cipher": "rc4", "--provider": "base"}
        wrong = [("--hash", "0"), ("--hash", "5"), ("--hash", "sha 1"), ("--cipher", "04"), ("--cipher", ""),
                 ("--provider", "1")]
        for change, status in [({}, 0)] + [({option: word}, 2) for option, word in wrong]:
            options = [word for pair in (right | change).items() for word in pair]
            self.assertEqual(self.run_command("encrypt", *options, "--no-password").status, status, change)


class KeyBitsTest(CommandTest):
    # A known sample of another program: 10 key bytes, no salt, 80 effective bits.
    SAMPLE = bytes.fromhex("DC3D962329DD1B2F")

    def decrypt(self, *options):
        self.write("password", b"PNEMAIL")
        self.write("in", self.SAMPLE)
        return self.run_command("decrypt", "--hash", "md5", *options, "--password-file", "password", "in")

    def test_data_of_another_program_with_80_bits(self):
        self.assertEqual(self.decrypt("--cipher", "rc2", "--key-bits", "80").out, bytes.fromhex("42463041433431"))
        self.assertEqual(self.decrypt("--cipher", "rc2").status, 1)

    def test_lengths_that_do_not_exist_are_refused(self):
        for options in (["--cipher", "des", "--key-bits", "56"], ["--cipher", "rc2", "--key-bits", "84"],
                        ["--cipher", "rc2", "--key-bits", "136"], ["--cipher", "rc4", "--key-bits", "32"]):
            self.assertEqual(self.decrypt(*options).status, 2, options)


class MisspelledWordTest(CommandTest):
    def complaint(self, *arguments):
        result = self.run_command(*arguments)
        self.assertEqual((result.status, result.out), (2, b""), arguments)
        return result.lines

    def test_an_unknown_option_is_named_before_a_missing_one(self):
        for option, nearest in (("--hahs", "--hash"), ("--pasword-file", "--password-file"), ("--forse=1", "--force")):
            lines = self.complaint("encrypt", option, "md5")
            self.assertEqual(lines[0], f"latchkey: no such option: {option.split('=')[0]}")
            self.assertIn(f"did you mean {nearest}? run 'latchkey encrypt --help'", lines[1])

    def test_a_word_that_resembles_none_gets_no_proposal(self):
        for arguments in (["encrypt", "--frobnicate"], ["frobnicate"]):
            self.assertNotIn("did you mean", " ".join(self.complaint(*arguments)))

    def test_an_unknown_command(self):
        lines = self.complaint("encript", "--hash", "md5")
        self.assertEqual(lines[0], "latchkey: no such command: encript")
        self.assertIn("did you mean encrypt? run 'latchkey --help'", lines[1])

    def test_a_missing_option_is_named_if_all_words_are_known(self):
        self.assertEqual(self.complaint("encrypt", "--cipher", "rc4")[0], "latchkey: --hash is required")


class HelpTest(CommandTest):
    def test_help_of_a_command_has_two_forms(self):
        self.assertEqual(self.run_well("help", "encrypt").text, self.run_well("encrypt", "--help").text)
        self.assertEqual(self.run_well("help").text, self.run_well("--help").text)
        self.assertIn("no such command: bogus", self.run_command("help", "bogus").lines[0])

    def test_version(self):
        self.assertEqual(self.run_well("-V").text, self.run_well("--version").text)
