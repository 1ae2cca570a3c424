"""The texts of failures and their exit status."""
from command import CommandTest

MD5_DES = ["--hash", "md5", "--cipher", "des"]


class FailureTest(CommandTest):
    def assert_fails(self, result, status, line):
        self.assertEqual(result.status, status, result)
        self.assertEqual(result.lines[0], line)
        self.assertEqual(result.out, b"")

    def test_a_wrong_password_is_reported_with_location_number_and_file(self):
        self.write("c", self.encrypt(b"some text", MD5_DES))
        result = self.run_command("decrypt", *MD5_DES, "--no-password", "c")
        self.assert_fails(result, 1, "latchkey: Error decrypting data (location 717, number 120): c")
        self.assertRegex(result.lines[1], "^hint: .*latchkey identify")
        self.assertEqual(len(result.lines), 2)

    def test_a_failure_in_standard_input_names_it(self):
        result = self.run_command("decrypt", *MD5_DES, "--no-password", data=b"1234567")
        self.assert_fails(result, 1, "latchkey: Error decrypting data (location 717, number 120): standard input")

    def test_an_empty_ciphertext_fails_under_a_block_cipher(self):
        for cipher in ("rc2", "des", "3des", "3des-112"):
            result = self.run_command("decrypt", "--hash", "md5", "--cipher", cipher, "--no-password")
            self.assert_fails(result, 1, "latchkey: Error decrypting data (location 717, number 120): standard input")

    def test_a_cipher_that_the_provider_lacks_is_a_bad_encryption_type(self):
        options = ["--hash", "md5", "--cipher", "3des", "--provider", "base", "--no-password"]
        result = self.run_command("encrypt", *options)
        self.assert_fails(result, 1, "latchkey: Bad encryption type (location 719, number 121): standard input")
        self.assertIn("enhanced provider", result.lines[1])
        result = self.run_command("decrypt", *options)
        self.assert_fails(result, 1, "latchkey: Bad encryption type (location 712, number 116): standard input")

    def test_effective_bits_that_the_provider_refuses_fail_as_the_key(self):
        options = ["--hash", "md5", "--cipher", "rc2", "--provider", "base", "--rc2-effective-bits", "64",
                   "--no-password"]
        result = self.run_command("encrypt", *options)
        self.assert_fails(result, 1, "latchkey: Error deriving key (location 723, number 119): standard input")
        result = self.run_command("decrypt", *options)
        self.assert_fails(result, 1, "latchkey: Error deriving key (location 716, number 119): standard input")

    def test_a_missing_file_is_reported_in_the_systems_words(self):
        result = self.run_command("decrypt", *MD5_DES, "--no-password", "missing")
        self.assertEqual(result.status, 1)
        self.assertRegex(result.lines[0], r"^latchkey: cannot open: .*\S.*: missing$")

    def test_a_folder_as_input_is_refused(self):
        (self.folder / "folder").mkdir()
        for command in (["encrypt", *MD5_DES, "--no-password"], ["hash"], ["hex"], ["identify", "--no-password"]):
            result = self.run_command(*command, "folder")
            self.assertEqual(result.status, 1, result)
            self.assertRegex(result.lines[0], "^latchkey: cannot (open|read): .*: folder$")

    def test_quiet_keeps_the_line_and_drops_the_hint(self):
        result = self.run_command("decrypt", *MD5_DES, "--no-password", "--quiet", data=b"x")
        self.assertEqual(result.lines, ["latchkey: Error decrypting data (location 717, number 120): standard input"])

    def test_wrong_usage_exits_with_2_and_names_the_help(self):
        wrong = [
            [], ["bogus"], ["--bogus"], ["encrypt"], ["encrypt", "--hash", "md5"],
            ["encrypt", "--hash", "md6", "--cipher", "des", "--no-password"],
            ["encrypt", "--hash", "md5", "--cipher", "aes", "--no-password"],
            ["encrypt", *MD5_DES, "--provider", "strong", "--no-password"],
            ["encrypt", *MD5_DES, "--password", "secret"],
            ["encrypt", "--hash", "md5", "--cipher", "rc2", "--rc2-effective-bits", "0", "--no-password"],
            ["encrypt", "--hash", "md5", "--cipher", "rc2", "--rc2-effective-bits", "1025", "--no-password"],
            ["encrypt", *MD5_DES, "--no-password", "one", "two"],
            ["random"], ["random", "-1"], ["random", "many"], ["random", "9223372036854775808"], ["salt"],
            ["identify"], ["hash", "-a", "sha256"], ["errors", "x"], ["online", "now"],
        ]
        for arguments in wrong:
            with self.subTest(arguments=arguments):
                result = self.run_command(*arguments)
                self.assertEqual(result.status, 2, result)
                self.assertTrue(result.lines[0].startswith("latchkey: "), result)
                self.assertRegex(result.lines[1], "^hint: .*run 'latchkey .*--help'")
                self.assertEqual(result.out, b"")

    def test_contradicting_options_are_wrong_usage(self):
        wrong = [
            ["encrypt", *MD5_DES, "--rc2-effective-bits", "40", "--no-password"],
            ["encrypt", *MD5_DES, "--no-password", "--default-password"],
            ["encrypt", *MD5_DES, "--password-file", "-"],
            ["encrypt", *MD5_DES, "--password-fd", "0"],
            ["identify", "--password-file", "-", "-"],
        ]
        for arguments in wrong:
            with self.subTest(arguments=arguments):
                self.assertEqual(self.run_command(*arguments).status, 2)

    def test_a_failure_is_one_line_with_any_name(self):
        for name, shown in (("no\nsuch", r"no\nsuch"), ("\x1b[31mred\x7f", r"\x1b[31mred\x7f"), ("back\\slash", r"back\slash")):
            for arguments in (["bogus", name], [name], ["hash", name], ["hex", "-o", "none/" + name]):
                result = self.run_command(*arguments)
                self.assertTrue(result.lines[0].startswith("latchkey: "), result)
                self.assertLessEqual(len(result.lines), 2, result)
                self.assertEqual(shown in result.lines[0], arguments[0] != "bogus", result)

    def test_json_has_the_error_record(self):
        self.write("c", b"1234567")
        result = self.run_command("decrypt", *MD5_DES, "--no-password", "--json", "-o", "out", "c")
        self.assertEqual(result.status, 1)
        error = result.json["error"]
        hint = error.pop("hint")
        self.assertEqual(error, {"text": "Error decrypting data", "type": 2, "location": 717, "number": 120,
                                 "file": "c"})
        self.assertIn("identify", hint)
        self.assertEqual(result.err, b"")

    def test_json_of_a_system_failure_has_no_location(self):
        result = self.run_command("hex", "--json", "-o", "out", "missing")
        self.assertEqual(result.status, 1)
        error = result.json["error"]
        self.assertEqual(sorted(error), ["file", "text"])
        self.assertEqual(error["file"], "missing")

    def test_json_of_wrong_usage(self):
        result = self.run_command("salt", "--json")
        self.assertEqual(result.status, 2)
        self.assertIn("N", result.json["error"]["text"])

    def test_json_is_not_on_standard_output_if_the_data_is_there(self):
        result = self.run_command("encrypt", *MD5_DES, "--no-password", "--json", data=b"abc")
        self.assertEqual(result.status, 0)
        self.assertEqual(len(result.out), 8)
        self.assertIn(b'"bytes_out": 8', result.err)
        result = self.run_command("decrypt", *MD5_DES, "--no-password", "--json", data=b"abc")
        self.assertEqual(result.status, 1)
        self.assertIn(b'"location": 717', result.err)

    def test_json_of_a_file_has_settings_and_counts(self):
        self.write("plain", b"x" * 20)
        result = self.run_well("encrypt", "--hash", "sha1", "--cipher", "rc2", "--rc2-effective-bits", "40",
                               "--no-password", "--json", "-o", "c", "plain")
        self.assertEqual(result.json, {
            "input": "plain", "output": "c", "provider": "enhanced", "hash": "sha1", "cipher": "rc2",
            "rc2_effective_bits": 40, "bytes_in": 20, "bytes_out": 24})

    def test_the_provider_defaults_to_base_or_to_enhanced_if_only_that_has_the_cipher(self):
        for cipher, provider in (("rc4", "base"), ("rc2", "base"), ("des", "base"), ("3des", "enhanced"),
                                 ("3des-112", "enhanced")):
            options = ["--hash", "md5", "--cipher", cipher]
            self.assertEqual(self.encrypt(b"text", options), self.encrypt(b"text", options + ["--provider", provider]))
