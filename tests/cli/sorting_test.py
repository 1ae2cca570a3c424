"""Ciphertexts of unknown and different settings, sorted into lists and decrypted."""
import pathlib
import shlex
import subprocess

from command import IS_WINDOWS, PROGRAM, CommandTest

CORPUS = (pathlib.Path(__file__).parent / "corpus.txt").read_bytes()
PASSWORD = "Größe und Maß"
ENCODINGS = ("windows-1252", "utf-8")
SETTINGS = (["--hash", "md5", "--cipher", "des"], ["--hash", "md4", "--cipher", "rc2"],
            ["--hash", "sha1", "--cipher", "3des"], ["--hash", "md2", "--cipher", "3des-112"],
            ["--hash", "sha1", "--cipher", "rc4"])


class MixedTest(CommandTest):
    """A folder of 200 files: 195 ciphertexts, under two encodings of a password, and 5 other files."""

    def setUp(self):
        super().setUp()
        self.write("password", PASSWORD.encode())
        (self.folder / "mixed").mkdir()
        self.plain = {}
        self.groups = set()
        others = [self.random.randbytes(400), self.random.randbytes(77), bytes(640), CORPUS[:500], b"PK\3\4"]
        self.others = {self.add(data) for data in others}
        cut = 0
        for encoding in ENCODINGS:
            for settings in SETTINGS:
                texts, ciphertexts, ends = self.ciphertexts(encoding, settings)
                cut += sum(ends)
                names = [self.add(ciphertext) for ciphertext in ciphertexts]
                self.plain.update(zip(names, texts))
                self.groups.add(frozenset(names))
        while len(self.plain) > 195:
            name = max(self.plain)
            (self.folder / name).unlink()
            del self.plain[name]
        self.groups = {frozenset(group & self.plain.keys()) for group in self.groups}
        self.assertEqual(len(list((self.folder / "mixed").iterdir())), 200)
        self.assertGreaterEqual(cut, 4)

    def add(self, data):
        """The name of a new file; names in random order keep neighbors from being alike."""
        while True:
            name = f"mixed/{self.random.randrange(10_000):04}.dat"
            if not (self.folder / name).exists():
                return self.write(name, data)

    def ciphertexts(self, encoding, settings):
        """20 texts, their ciphertexts, and which of these lost bytes of value 20 (hexadecimal) at the end."""
        starts = [self.random.randrange(len(CORPUS) - 300) for _ in range(1500)]
        texts = [b" ".join(CORPUS[start:start + 80 + self.random.randrange(100)].split()) for start in starts]
        result = self.run_well("records", "encrypt", "--format", "lines", *settings, "--password-file", "password",
                               "--password-encoding", encoding, "--text-encoding", "bytes", data=b"\n".join(texts))
        pairs = list(zip(texts, map(bytes.fromhex, result.text.split())))
        ending = [pair for pair in pairs if pair[1].endswith(b" ") and "rc4" not in settings][:3]
        chosen = ending + [pair for pair in pairs if pair not in ending][:20 - len(ending)]
        ends = [pair in ending for pair in chosen]
        return ([text for text, _ in chosen],
                [data.rstrip(b" ") if end else data for (_, data), end in zip(chosen, ends)], ends)

    def names_in(self, name):
        return self.read(name).decode().split("\0")[:-1]

    def test_identify_writes_lists_that_decrypt_reads(self):
        names = sorted([*self.plain, *self.others])
        result = self.run_command("identify", "--password-file", "password", "--lists", "lists", *names)
        self.assertEqual((result.status, result.err), (3, b""), result)
        self.assertEqual(set(self.names_in("lists/others")), self.others)
        lines = self.read("lists/options").decode().splitlines()
        lists = {frozenset(self.names_in(f"lists/{number}")) for number in range(1, len(lines) + 1)}
        self.assertEqual(lists, self.groups)
        for line in lines:
            self.assertIn(f"certain: {line.partition(' --files0-from')[0]}\n", result.text)
        if IS_WINDOWS:
            for line in lines:
                self.run_well("decrypt", *shlex.split(line), "--quiet", "--password-file", "password",
                              "--output-dir", "plain")
        else:
            with open(self.folder / "lists/options", "rb") as options:
                subprocess.run(["xargs", "-L", "1", *PROGRAM, "decrypt", "--password-file", "password", "--output-dir",
                                "plain"], cwd=self.folder, stdin=options, check=True, timeout=200)
        for name, text in self.plain.items():
            self.assertEqual(self.read(f"plain/{name}"), text, name)
        self.assertEqual(len(list((self.folder / "plain/mixed").iterdir())), 195)


class ListsTest(CommandTest):
    KEY = ["--hash", "md5", "--cipher", "des"]

    def setUp(self):
        super().setUp()
        self.write("a", self.encrypt(CORPUS[:100], self.KEY))
        self.write("b", self.encrypt(CORPUS[50:180], self.KEY))
        self.password = ["--password-file", "password"]

    def test_files_of_the_same_settings_are_one_group(self):
        self.run_well("identify", *self.password, "--lists", "new/my lists/", "a", "b")
        line, = self.read("new/my lists/options").decode().splitlines()
        self.assertEqual(self.read("new/my lists/1"), b"a\0b\0")
        self.assertFalse((self.folder / "new/my lists/others").exists())
        self.run_well("decrypt", *self.password, "--quiet", "--output-dir", "plain", *shlex.split(line))
        self.assertEqual(self.read("plain/b"), CORPUS[50:180])

    def test_guesses_are_in_no_group(self):
        self.write("c", self.encrypt(b"abc", ["--hash", "md5", "--cipher", "rc4"]))
        self.assertEqual(self.run_command("identify", *self.password, "--lists", "lists", "c").status, 3)
        self.assertEqual((self.read("lists/options"), self.read("lists/others")), (b"", b"c\0"))

    def test_existing_names_and_data_without_a_name_are_refused(self):
        for arguments, text in ((["--lists", "a", "b"], "--lists makes a new folder, but this name exists: a"),
                                (["--lists", "x\"y", "b"], "--lists takes no name with a quotation mark or line end"),
                                (["--lists", "new", "-"], "--lists needs names of files, not standard input"),
                                (["--lists", "", "b"], "--lists needs the name of a folder"),
                                (["--lists", "new", "b", "a", "b"], "--lists takes each file once; named twice: b"),
                                (["--lists", "new", "--records", "a"], "--records excludes --lists")):
            before = self.names()
            result = self.run_command("identify", *self.password, *arguments)
            self.assertEqual((result.status, result.lines[0]), (2, f"latchkey: {text}"))
            self.assertEqual(self.names(), before)


class TableTest(CommandTest):
    def test_negligible_candidates_share_a_line(self):
        for length in range(800, 900):  # until the padding fits under a second key
            self.write("c", self.encrypt(CORPUS[:length], ["--hash", "sha1", "--cipher", "3des"]))
            result = self.run_well("identify", "--json", "--password-file", "password", "c").json
            others = len(result["candidates"]) - 1
            if others:
                break
        self.assertLess(result["candidates"][1]["probability"], 1e-6)
        text = self.run_well("identify", "--password-file", "password", "c").text
        lines = text.splitlines()
        self.assertRegex(lines[1], r"^100\.0000 %   enhanced  +sha1  3des ")
        self.assertEqual(lines[2], f"< 0.0001 %   each of the others that fit: {others}")
        self.assertRegex(lines[3], r"^< 0\.0001 %   none of the \d+ keys tried$")
        self.assertNotIn(" 0.0000 %", text)
