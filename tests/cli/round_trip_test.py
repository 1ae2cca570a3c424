"""Random files through every provider, hash and cipher, compared by cmp."""
import subprocess

from command import BLOCK_CIPHERS, IS_WINDOWS, MEMORY_FOLDER, SETTINGS, CommandTest, setting_options

FILES = 34 if IS_WINDOWS else 1000  # a process start costs much more under Wine
LEAST_ROUNDS = 0 if IS_WINDOWS else 2  # in which each setting has a file of 0 to 3 bytes
OLD_RC2 = [("enhanced", hash_, "rc2") for hash_ in ("md5", "sha1")]
ENDS = (b"", b" ", b"   ", b"\0", b"\0\0\0", b"\n", b"\r\n", b" \n ", b"\x08" * 8, b"\x01")


class RoundTripTest(CommandTest):
    PARENT = MEMORY_FOLDER

    def settings(self, number):
        """Each in turn; the last ones are RC2 as Windows 2000 had it."""
        all_settings = [(settings, []) for settings in SETTINGS] + \
                       [(settings, ["--rc2-effective-bits", "40"]) for settings in OLD_RC2]
        settings, more = all_settings[number % len(all_settings)]
        return settings[2], setting_options(*settings) + more, number // len(all_settings)

    def content(self, round_):
        """First 0 to 3 bytes, then any length up to 100,000, with ends that text would lose."""
        end = self.random.choice(ENDS)
        if round_ < LEAST_ROUNDS:
            return (b" " * 4 + end)[-self.random.randrange(4):] if round_ else self.random.randbytes(
                self.random.randrange(4))
        length = self.random.choice((self.random.randrange(100), self.random.randrange(100_001)))
        return (self.random.randbytes(length) + end)[-100_000:]

    def test_random_files(self):
        self.write("password", self.random.randbytes(20))
        password = ["--password-file", "password", "--password-exact"]
        for number in range(FILES):
            cipher, options, round_ = self.settings(number)
            plain = self.content(round_)
            self.write("plain", plain)
            self.run_well("encrypt", *options, *password, "--force", "-o", "cipher", "plain")
            length = len(self.read("cipher"))
            self.assertEqual(length, len(plain) // 8 * 8 + 8 if cipher in BLOCK_CIPHERS else len(plain), options)
            self.run_well("decrypt", *options, *password, "--force", "-o", "back", "cipher")
            compared = subprocess.run(["cmp", "plain", "back"], cwd=self.folder, capture_output=True, check=False)
            self.assertEqual(compared.returncode, 0, (number, options, compared))

    def test_the_shortest_inputs_under_every_setting(self):
        self.write("password", b"secret")
        for number in range(len(SETTINGS) + len(OLD_RC2)):
            _, options, _ = self.settings(number)
            plain = b" \0\n"[:number % 4]
            self.assertEqual(self.decrypt(self.encrypt(plain, options), options), plain, options)

    def test_standard_streams_carry_every_byte(self):
        for _, options, _ in map(self.settings, (0, 2, 15)):
            data = bytes(range(256)) * 40 + b"\r\n\x1a \n"
            self.assertEqual(self.decrypt(self.encrypt(data, options), options), data)
