"""latchkey hash: the lines and the checks of md5sum and sha1sum."""
import hashlib
import subprocess

from command import IS_WINDOWS, CommandTest

# Windows allows no such names, and Wine in the C locale only ASCII.
NAMES_WITH_ESCAPES = () if IS_WINDOWS else ("b\\c", "d\ne")


class HashTest(CommandTest):
    # RFC 1319, A.5; RFC 1320, A.5; RFC 1321, A.5; RFC 3174, 7.3.
    KNOWN = {"md2": "da853b0d3f88d99b30283a69e6ded6bb", "md4": "a448017aaf21d8525fc10ae87aa6729d",
             "md5": "900150983cd24fb0d6963f7d28e17f72", "sha1": "a9993e364706816aba3e25717850c26c9cd0d89d"}
    EMPTY = {"md2": "8350e5a3e24c153df2275c9f80692773", "md4": "31d6cfe0d16ae931b73c59d7e0c089c0",
             "md5": "d41d8cd98f00b204e9800998ecf8427e", "sha1": "da39a3ee5e6b4b0d3255bfef95601890afd80709"}

    def test_known_answers(self):
        for algorithm, digest in self.KNOWN.items():
            self.assertEqual(self.run_well("hash", "-a", algorithm, data=b"abc").text, digest + "  -\n")
        for algorithm, digest in self.EMPTY.items():
            self.assertEqual(self.run_well("hash", "-a", algorithm, "-").text, digest + "  -\n")

    def test_the_lines_are_those_of_md5sum(self):
        data = self.random.randbytes(700_001)
        names = [self.write("one", data), self.write("two words", b"abc\n"), self.write("three", b"")]
        for algorithm, tool in (("md5", "md5sum"), ("sha1", "sha1sum")):
            expected = subprocess.run([tool, *names], cwd=self.folder, capture_output=True, check=True).stdout
            self.assertEqual(self.run_well("hash", "-a", algorithm, *names).out, expected)

    def test_tagged_lines_and_lines_that_end_with_nul(self):
        names = [self.write(name, name.encode()) for name in ("a", "two words", *NAMES_WITH_ESCAPES)]
        for options in (["--tag"], ["-z"], ["--zero", "--tag"]):
            expected = subprocess.run(["md5sum", *options, *names], cwd=self.folder, capture_output=True, check=True).stdout
            self.assertEqual(self.run_well("hash", *options, *names).out, expected, options)

    def test_a_file_longer_than_a_piece(self):
        for length in ((1 << 18) - 1, 1 << 18, (1 << 18) + 1, 3 << 18):
            data = self.random.randbytes(length)
            self.write("file", data)
            self.assertEqual(self.run_well("hash", "file").text, hashlib.md5(data).hexdigest() + "  file\n")

    def test_a_missing_file_does_not_stop_the_others(self):
        self.write("abc", b"abc")
        result = self.run_command("hash", "missing", "abc")
        self.assertEqual(result.status, 1)
        self.assertEqual(result.text, self.KNOWN["md5"] + "  abc\n")
        self.assertRegex(result.lines[0], "^latchkey: cannot open: .*: missing$")

    def test_json(self):
        self.write("abc", b"abc")
        result = self.run_command("hash", "--json", "missing", "abc")
        self.assertEqual(result.status, 1)
        missing, abc = result.json["results"]
        self.assertEqual(abc, {"file": "abc", "digest": self.KNOWN["md5"]})
        self.assertEqual(missing["error"]["file"], "missing")


class CheckTest(CommandTest):
    def setUp(self):
        super().setUp()
        self.names_ = [self.write("one", b"first"), self.write("two words", b"second")]

    def sums(self, tool):
        return subprocess.run([tool, *self.names_], cwd=self.folder, capture_output=True, check=True).stdout

    def test_lists_of_md5sum_and_sha1sum_in_both_cases(self):
        for algorithm, tool in (("md5", "md5sum"), ("sha1", "sha1sum")):
            sums = self.sums(tool)
            upper = b"".join(line[:sums.index(b" ")].upper() + line[sums.index(b" "):]
                             for line in sums.splitlines(True))
            for text in (sums, upper, sums.replace(b"  ", b" *"), sums.replace(b"\n", b"\r\n")):
                self.write("sums", text)
                result = self.run_well("hash", "-a", algorithm, "--check", "sums")
                self.assertEqual(result.text, "one: OK\ntwo words: OK\n")

    def test_tagged_lists(self):
        sums = subprocess.run(["md5sum", "--tag", *self.names_], cwd=self.folder, capture_output=True, check=True)
        self.assertEqual(self.run_well("hash", "-c", data=sums.stdout).text, "one: OK\ntwo words: OK\n")

    def test_the_tag_of_another_algorithm_is_refused(self):
        digest = hashlib.md5(b"first").hexdigest()
        for tag in ("SHA1", "MD4", "md5", "MD55", "XMD5", ""):
            line = f"{tag} (one) = {digest}\n".encode()
            checked = subprocess.run(["md5sum", "--check"], input=line, cwd=self.folder, capture_output=True, check=False)
            self.assertEqual(checked.returncode, 1, line)
            result = self.run_command("hash", "--check", data=line)
            self.assertEqual((result.status, result.out), (1, b""), line)
            self.assertEqual(result.lines[0], "latchkey: no properly formatted checksum line: standard input")

    def test_each_algorithm_has_its_tag(self):
        self.write("abc", b"abc")
        for algorithm, digest in HashTest.KNOWN.items():
            line = f"{algorithm.upper()} (abc) = {digest}\n".encode()
            self.assertEqual(self.run_well("hash", "-a", algorithm, "--check", data=line).text, "abc: OK\n")

    def test_its_own_lists_satisfy_md5sum(self):
        self.write("sums", self.run_well("hash", *self.names_).out)
        checked = subprocess.run(["md5sum", "--check", "--strict", "sums"], cwd=self.folder, capture_output=True,
                                 check=False)
        self.assertEqual(checked.returncode, 0, checked)

    def test_a_mismatch(self):
        self.write("sums", self.sums("md5sum"))
        self.write("one", b"changed")
        result = self.run_command("hash", "--check", "sums")
        self.assertEqual((result.status, result.text), (1, "one: FAILED\ntwo words: OK\n"))
        self.assertEqual(result.lines, ["latchkey: WARNING: 1 computed checksum did NOT match"])

    def test_quiet_prints_only_failures_and_status_prints_nothing(self):
        self.write("sums", self.sums("md5sum"))
        self.assertEqual(self.run_well("hash", "-c", "--quiet", "sums").out, b"")
        self.assertEqual(self.run_well("hash", "-c", "--status", "sums").out, b"")
        self.write("one", b"changed")
        self.assertEqual(self.run_command("hash", "-c", "--quiet", "sums").text, "one: FAILED\n")
        result = self.run_command("hash", "-c", "--status", "sums")
        self.assertEqual((result.status, result.out, result.err), (1, b"", b""))

    def test_a_listed_file_that_is_missing(self):
        self.write("sums", self.sums("md5sum"))
        (self.folder / "one").unlink()
        result = self.run_command("hash", "--check", "sums")
        self.assertEqual((result.status, result.text), (1, "one: FAILED open or read\ntwo words: OK\n"))
        self.assertIn("latchkey: WARNING: 1 listed file could not be read", result.lines)

    def test_improper_lines_are_counted(self):
        self.write("sums", b"rubbish\n" + self.sums("md5sum") + b"0123  short\n")
        result = self.run_command("hash", "--check", "sums")
        self.assertEqual((result.status, result.text), (0, "one: OK\ntwo words: OK\n"))
        self.assertEqual(result.lines, ["latchkey: WARNING: 2 lines are improperly formatted"])

    def test_warn_names_each_improper_line_and_strict_fails(self):
        self.write("sums", b"rubbish\n" + self.sums("md5sum") + b"0123  short\n")
        result = self.run_command("hash", "--check", "--warn", "sums")
        self.assertEqual((result.status, result.lines[:2]), (0, [
            "latchkey: sums: 1: improperly formatted MD5 checksum line",
            "latchkey: sums: 4: improperly formatted MD5 checksum line"]))
        self.assertEqual(self.run_command("hash", "--check", "--strict", "sums").status, 1)

    def test_missing_files_are_ignored_if_asked_and_one_is_verified(self):
        self.write("sums", self.sums("md5sum"))
        (self.folder / "one").unlink()
        self.assertEqual(self.run_well("hash", "-c", "--ignore-missing", "sums").text, "two words: OK\n")
        (self.folder / "two words").unlink()
        result = self.run_command("hash", "-c", "--ignore-missing", "sums")
        self.assertEqual((result.status, result.lines), (1, ["latchkey: no file was verified: sums"]))
        (self.folder / "one").mkdir()
        self.assertEqual(self.run_command("hash", "-c", "--ignore-missing", "sums").status, 1)

    def test_lists_with_a_byte_order_mark_and_in_utf_16(self):
        name = self.write("greeting" if IS_WINDOWS else "gr\u00fc\u00df", b"first")
        text = f"{hashlib.md5(b'first').hexdigest()}  {name}\r\n"
        for encoding in ("utf-8-sig", "utf-16", "utf-16-le", "utf-16-be"):
            mark = "\ufeff" if encoding.endswith("e") else ""
            result = self.run_well("hash", "-c", data=(mark + text).encode(encoding))
            self.assertEqual(result.text, f"{name}: OK\n", encoding)

    def test_options_of_the_other_mode_are_refused(self):
        for options in (["--warn"], ["--strict"], ["--ignore-missing"], ["--status"], ["-c", "--tag"], ["-c", "-z"]):
            self.assertEqual(self.run_command("hash", *options).status, 2, options)

    def test_a_line_that_begins_with_a_number_sign_is_a_comment(self):
        self.write("sums", b"# made by md5sum\n" + self.sums("md5sum") + b"\n#\n")
        self.assertEqual(self.run_well("hash", "--check", "sums").text, "one: OK\ntwo words: OK\n")

    def test_a_tagged_name_ends_at_the_last_sign_of_the_digest(self):
        name = self.write("a) = b", b"first")
        sums = subprocess.run(["md5sum", "--tag", name], cwd=self.folder, capture_output=True, check=True)
        self.assertEqual(self.run_well("hash", "--check", data=sums.stdout).text, "a) = b: OK\n")

    def test_a_list_without_a_proper_line_fails(self):
        for text in (b"", b"rubbish\n", self.sums("sha1sum")):
            result = self.run_command("hash", "--check", data=text)
            self.assertEqual(result.status, 1, result)
            self.assertEqual(result.lines[0], "latchkey: no properly formatted checksum line: standard input")

    def test_a_list_that_fails_does_not_stop_the_others(self):
        self.write("sums", self.sums("md5sum"))
        self.write("rubbish", b"rubbish\n")
        result = self.run_command("hash", "--check", "nolist", "rubbish", "sums")
        self.assertEqual((result.status, result.text), (1, "one: OK\ntwo words: OK\n"))
        self.assertRegex(result.lines[0], "^latchkey: cannot open: .*: nolist$")
        self.assertEqual(result.lines[1], "latchkey: no properly formatted checksum line: rubbish")

    def test_json_of_a_list_that_fails(self):
        self.write("sums", self.sums("md5sum"))
        self.write("rubbish", b"rubbish\n")
        result = self.run_command("hash", "--check", "--json", "nolist", "rubbish", "sums")
        self.assertEqual((result.status, result.err), (1, b""))
        nolist, rubbish, one, two = result.json["results"]
        self.assertIn("cannot open", nolist["error"]["text"])
        self.assertEqual(rubbish["error"]["text"], "no properly formatted checksum line")
        self.assertEqual((one["ok"], two["ok"], result.json["improper_lines"]), (True, True, 1))

    def test_json(self):
        self.write("sums", self.sums("md5sum"))
        self.write("one", b"changed")
        result = self.run_command("hash", "--check", "--json", "sums")
        self.assertEqual(result.status, 1)
        self.assertEqual(result.json, {
            "algorithm": "md5", "results": [{"file": "one", "ok": False}, {"file": "two words", "ok": True}],
            "mismatches": 1, "unread": 0, "improper_lines": 0})
        self.assertEqual(result.err, b"")
