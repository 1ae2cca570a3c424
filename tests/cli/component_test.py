"""The commands for single operations of the component (random, salt, online, errors), and the program itself."""
import re

from command import CommandTest


class RandomTest(CommandTest):
    def test_n_bytes_that_differ_each_time(self):
        # 65,536 is one piece.
        for length in (0, 1, 32, 65536, 65537, 200000):
            self.assertEqual(len(self.run_well("random", length).out), length)
        self.assertEqual(len({self.run_well("random", 16).out for _ in range(5)}), 5)

    def test_hexadecimal_has_two_digits_for_each_byte(self):
        for length in (0, 5, 70000):
            self.assertRegex(self.run_well("random", length, "--hex").text, "^[0-9A-F]{%d}\n\\Z" % (2 * length))

    def test_a_file_that_its_owner_may_read(self):
        self.run_well("random", 32, "-o", "key")
        self.assertEqual(len(self.read("key")), 32)
        self.assertEqual(self.run_command("random", 32, "-o", "key").status, 1)
        self.assertEqual(self.run_well("random", 8, "--json", "-o", "key", "--force").json, {"output": "key"})
        self.assertEqual(len(self.read("key")), 8)

    def test_invalid_lengths_are_refused(self):
        for length in ("-1", "x", "1.5", "99999999999999999999"):
            self.assertEqual(self.run_command("random", length).status, 2, length)


class ComponentRandomTest(CommandTest):
    def test_exact_hexadecimal_is_n_digits_and_differs_each_time(self):
        lines = {self.run_well("random", 32, "--component", "--hex", "--exact").text for _ in range(5)}
        self.assertEqual(len(lines), 5)
        for line in lines:
            self.assertRegex(line, r"^[0-9A-F]{32}\n\Z")

    def test_exact_bytes_are_n_bytes_except_spaces_at_both_ends(self):
        self.assertIn(len(self.run_well("random", 1000, "--component", "--exact").out), range(990, 1001))

    def test_without_exact_the_rest_of_the_seed_text_follows_a_short_result(self):
        # The seed text is one digit twice at least. The random byte is trimmed away when it is a space.
        digits = self.run_well("random", 1, "--component", "--hex").text
        self.assertRegex(digits, r"^([0-9A-F]{2})?(3[0-9])+\n\Z")

    def test_its_options_and_limits(self):
        self.assertEqual(self.run_command("random", 8, "--exact").status, 2)
        self.assertEqual(self.run_command("random", 1 << 31, "--component").status, 2)


class SaltTest(CommandTest):
    def test_zero_characters_give_empty_output(self):
        self.assertEqual(self.run_well("random", 0, "--component", "--exact").out, b"")
        self.assertEqual(self.run_well("salt", 0).out, b"")

    def test_letters_of_a_salt(self):
        salts = {self.run_well("salt", 40, "--letters").text for _ in range(3)}
        self.assertEqual(len(salts), 3)
        for salt in salts:
            self.assertRegex(salt, r"^[A-Za-z]{40}\n\Z")

    def test_a_raw_salt_is_n_bytes_except_spaces_at_both_ends(self):
        self.assertIn(len(self.run_well("salt", 100).out), range(90, 101))

    def test_json(self):
        self.assertRegex(self.run_well("random", 8, "--hex", "--json").json["text"], "^[0-9A-F]{16}$")
        self.assertRegex(self.run_well("random", 16, "--json").json["hex"], "^[0-9a-f]{32}$")
        self.assertRegex(self.run_well("salt", 16, "--letters", "--json").json["text"], "^[A-Za-z]{16}$")


class OnlineTest(CommandTest):
    def test_the_exit_status_agrees_with_the_word(self):
        result = self.run_command("online")
        self.assertIn((result.status, result.text), ((0, "connected\n"), (1, "not connected\n")))
        self.assertEqual(result.err, b"")
        quiet = self.run_command("online", "--quiet")
        self.assertEqual((quiet.status, quiet.out), (result.status, b""))
        self.assertEqual(self.run_command("online", "--json").json, {"connected": result.status == 0})


class ErrorsTest(CommandTest):
    # Location, number, text; the locations of traps have no number of their own.
    CHECKS = [
        (709, 117, "Error creating hash"), (710, 114, "Error acquiring provider"), (711, 115, "Bad hash type"),
        (712, 116, "Bad encryption type"), (713, 114, "Error acquiring provider"), (714, 117, "Error creating hash"),
        (715, 118, "Error creating hash data"), (716, 119, "Error deriving key"),
        (717, 120, "Error decrypting data"), (718, 115, "Bad hash type"), (719, 121, "Bad encryption type"),
        (720, 114, "Error acquiring provider"), (721, 117, "Error creating hash"),
        (722, 118, "Error creating hash data"), (723, 119, "Error deriving key"),
        (724, 122, "Error encrypting data"), (725, 121, "Bad encryption type"), (726, 121, "Bad encryption type"),
        (727, 123, "Error converting data"), (728, 124, "Error acquiring enhanced provider"),
        (729, 125, "Error acquiring standard provider"),
    ]
    TRAPS = {419: "connection-state query", 420: "connection-exists query", 432: "CreateHash", 433: "CreateRandom",
             434: "CreateSaltValue", 435: "Decrypt", 436: "DecryptData", 437: "Encrypt", 438: "EncryptData",
             439: "GetCipherAlgorithm", 440: "ConvertStringFromHex", 441: "ConvertStringToHex",
             442: "AcquireProvider"}
    FAULTS = {5: "Invalid procedure call or argument", 6: "Overflow", 7: "Out of memory", 9: "Subscript out of range",
              11: "Division by zero", 13: "Type mismatch", 53: "File not found",
              91: "Object variable or With block variable not set",
              94: "Invalid use of Null", 453: "Specified DLL function not found"}

    def test_the_table_is_complete(self):
        errors = self.run_well("errors", "--json").json["errors"]
        checks = [(entry["location"], entry["number"], entry["text"]) for entry in errors
                  if "location" in entry and "number" in entry]
        traps = {entry["location"]: entry["operation"] for entry in errors if "number" not in entry}
        faults = {entry["number"]: entry["text"] for entry in errors if "location" not in entry}
        self.assertEqual((checks, traps, faults), (self.CHECKS, self.TRAPS, self.FAULTS))
        for entry in errors:
            self.assertEqual(entry["type"], 2 if "location" in entry and "number" in entry else 1, entry)

    def test_the_text_has_one_line_for_each_entry(self):
        lines = self.run_well("errors").text.splitlines()
        self.assertEqual(len(lines), 1 + len(self.CHECKS) + len(self.TRAPS) + len(self.FAULTS))
        self.assertIn("     717       120  Decrypt: Error decrypting data", lines)
        self.assertIn("     436            DecryptData: run-time fault", lines)
        self.assertIn("                 7  any operation: Out of memory", lines)

    def test_a_location_has_a_hint(self):
        lines = self.run_well("errors", 717).text.splitlines()
        self.assertEqual(lines[1], "     717       120  Decrypt: Error decrypting data")
        self.assertRegex(lines[2], "^hint: .*identify")

    def test_a_number_lists_every_location_that_records_it(self):
        errors = self.run_well("errors", 121, "--json").json["errors"]
        self.assertEqual([entry["location"] for entry in errors], [719, 725, 726])

    def test_an_unknown_number_fails(self):
        for number in (0, 1, 700, 761, 999):
            result = self.run_command("errors", number)
            self.assertEqual(result.status, 1, result)
            self.assertEqual(result.lines[0], f"latchkey: not a location or error number of the component: {number}")


class ProgramTest(CommandTest):
    COMMANDS = ("encrypt", "decrypt", "identify", "hash", "random", "salt", "hex", "online", "errors")

    def test_the_version(self):
        self.assertRegex(self.run_well("--version").text, r"^latchkey \d+\.\d+\.\d+\n\Z")

    def test_help_lists_every_command(self):
        text = self.run_well("--help").text
        for command in self.COMMANDS:
            self.assertRegex(text, rf"(?m)^  {command} +[A-Z]")

    def test_help_of_each_command_ends_with_an_example_of_it(self):
        for command in self.COMMANDS:
            lines = self.run_well(command, "--help").text.rstrip("\n").splitlines()
            self.assertEqual(lines[-2], "Example:", command)
            self.assertTrue(lines[-1].startswith(f"  latchkey {command}"), lines[-1])

    def test_no_option_takes_a_password_as_its_value(self):
        for command in self.COMMANDS:
            text = self.run_well(command, "--help").text
            self.assertEqual(re.findall(r"--password[ =]", text), [], command)

    def test_a_name_beyond_ascii_is_found_as_argument_and_in_a_list(self):
        name = "sch\u00f6n \u20ac.txt"
        line = f"900150983cd24fb0d6963f7d28e17f72  {name}\n"
        utf8 = {"LC_ALL": "C.UTF-8", "LATCHKEY_WINE_LOCALE": "C.UTF-8"}
        (self.folder / name).write_bytes(b"abc")
        self.assertEqual(self.run_well("hash", name, environment=utf8).text, line)
        self.write("list", line.encode())
        self.assertEqual(self.run_well("hash", "-c", "list", environment=utf8).text, f"{name}: OK\n")
