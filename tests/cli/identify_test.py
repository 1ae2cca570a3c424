"""latchkey identify finds unknown settings of ciphertexts."""
import pathlib

from command import BLOCK_CIPHERS, IS_WINDOWS, SETTINGS, CommandTest, setting_options

CORPUS = (pathlib.Path(__file__).parent / "corpus.txt").read_bytes()
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
        return self.run_well("identify", "--json", "--password-file", "password", "ciphertext").json

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
        self.assertEqual(result["keys_tried"], 32)

    def test_probabilities_are_shares_of_one_and_fall(self):
        for data in (self.encrypt(b"abc", setting_options("base", "md5", "rc4")), self.random.randbytes(8)):
            self.write("password", b"secret")
            result = self.run_command("identify", "--json", "--password-file", "password", "-", data=data)
            if result.status == 0:
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
            if result.status == 0:
                self.assertLess(result.json["candidates"][0]["probability"], 0.9, result)
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
        self.assertEqual(lines[0], "PROBABILITY  PROVIDER        HASH  CIPHER        PADDING")
        self.assertRegex(lines[1], r"^100\.0000 %   enhanced        sha1  3des-112      4$")
        self.assertRegex(lines[-2], r"^ +0\.0000 %   none of the 32 keys tried$")
        self.assertEqual(lines[-1], "practically certain: --provider enhanced --hash sha1 --cipher 3des-112")

    def test_the_other_two_passwords(self):
        for option in ("--default-password", "--no-password"):
            ciphertext = self.run_well("encrypt", "--hash", "md5", "--cipher", "3des", option, data=CORPUS[:80]).out
            result = self.run_well("identify", "--json", option, "-", data=ciphertext).json
            self.assert_first(result, "enhanced", "md5", "3des")
