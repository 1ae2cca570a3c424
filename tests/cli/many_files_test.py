"""Many files in one run of encrypt and decrypt. LATCHKEY_LONG kills the command 200 times."""
import os
import select
import shutil
import signal
import stat
import subprocess
import time

from command import CIPHERS, IS_WINDOWS, MEMORY_FOLDER, SETTINGS, CommandTest, setting_options

LONG = bool(os.environ.get("LATCHKEY_LONG"))
KEY = ["--hash", "sha1", "--cipher", "3des", "--no-password"]
UNFINISHED = ".latchkey-*"
PLAIN = {"a.txt": b"some text", "b": b"x" * 5000, "sub/c": bytes(range(256)) * 9, "sub/deep/d": b"12345678",
         "sub/deep/big": bytes(i * i % 251 for i in range(3 << 20))}


class ManyFilesTest(CommandTest):
    PARENT = MEMORY_FOLDER

    def make(self, files, below="."):
        for name, data in files.items():
            path = self.folder / below / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(data)

    def files(self, below=".", finished=False):
        """The content of all files, by name. With `finished`, leaves out unfinished files, which may vanish."""
        top = self.folder / below
        return {path.relative_to(top).as_posix(): path.read_bytes() for path in top.rglob("*")
                if not (finished and path.name.startswith(".latchkey-")) and path.is_file() and not path.is_symlink()}

    def single(self, command, data, key=KEY):
        """What the command makes of one stream, or None if it refuses."""
        result = self.run_command(command, *key, data=data)
        return result.out if result.status == 0 else None

    def assert_refused(self, arguments, text, status=2):
        """Refused with that text, without any change."""
        before = self.files()
        result = self.run_command(*arguments)
        self.assertEqual(result.status, status, result)
        self.assertIn(text, result.lines[0])
        self.assertEqual(self.files(), before)


class NamesTest(ManyFilesTest):
    def test_several_inputs_go_into_a_folder(self):
        self.make(PLAIN)
        result = self.run_well("encrypt", *KEY, "--output-dir", "new/out", "a.txt", "b", "sub/c")
        self.assertEqual(result.text, "3 files encrypted (7313 bytes)\n")
        self.assertEqual(set(self.files("new/out")), {"a.txt", "b", "c"})
        self.run_well("decrypt", *KEY, "--quiet", "--output-dir", "back", "new/out/a.txt", "new/out/b", "new/out/c")
        self.assertEqual(self.files("back"), {"a.txt": PLAIN["a.txt"], "b": PLAIN["b"], "c": PLAIN["sub/c"]})

    def test_a_suffix_is_added_and_removed(self):
        self.make(PLAIN)
        self.run_well("encrypt", *KEY, "--suffix", ".lk", "a.txt", "sub/c")
        self.assertEqual(set(self.files()), {*PLAIN, "a.txt.lk", "sub/c.lk"})
        self.run_well("decrypt", *KEY, "--suffix", ".lk", "--output-dir", "out", "a.txt.lk", "sub/c.lk")
        self.assertEqual(self.files("out"), {"a.txt": PLAIN["a.txt"], "c": PLAIN["sub/c"]})
        (self.folder / "a.txt").unlink()
        result = self.run_command("decrypt", *KEY, "--suffix", ".lk", "b", "a.txt.lk", ".lk")
        self.assertEqual((result.status, self.read("a.txt")), (1, PLAIN["a.txt"]))
        self.assertIn("latchkey: the name does not end in .lk: b", result.lines)

    def test_a_list_keeps_the_folders(self):
        self.make(PLAIN)
        names = b"./a.txt\0sub//c\0./sub/deep/d"
        self.write("list", names)
        self.run_well("encrypt", *KEY, "--output-dir", "one", "--files0-from", "list")
        self.run_well("encrypt", *KEY, "--output-dir", "two", "--files0-from", "-", data=names + b"\0")
        self.assertEqual(set(self.files("one")), {"a.txt", "sub/c", "sub/deep/d"})
        self.assertEqual(self.files("one"), self.files("two"))
        whole = os.fsencode(self.folder / "b")
        if not IS_WINDOWS:
            self.run_well("encrypt", *KEY, "--output-dir", "three", "--files0-from", "-", data=whole)
            self.assertEqual(set(self.files("three")), {str(self.folder / "b").lstrip("/")})

    def test_a_list_does_not_lead_out_of_the_folder(self):
        self.make({"a": b"some text", "in/b": b"some text"})
        result = self.run_command("encrypt", *KEY, "--output-dir", "out", "--files0-from", "-", data=b"in/../a\0in/b\0")
        self.assertEqual((result.status, set(self.files("out"))), (1, {"in/b"}))
        self.assertIn("latchkey: the name leaves the output folder: in/../a", result.lines)
        self.run_well("encrypt", *KEY, "--output-dir", "out", "in/../a")  # an argument gives its last part
        self.assertEqual(set(self.files("out")), {"in/b", "a"})

    def test_a_bad_list_is_refused(self):
        self.make({"a": b"some text", "list": b"a\0\0", "lines": b"a\n" * (1 << 16)})
        for name, text in (("list", "an empty name in the list: list"), ("lines", "a name in the list is too long")):
            self.assert_refused(["encrypt", *KEY, "--output-dir", "out", "--files0-from", name], text)
        self.assert_refused(["encrypt", *KEY, "--output-dir", "out", "--files0-from", "none"], "cannot open", 1)

    def test_folders_are_made_again(self):
        self.make(PLAIN, "tree")
        (self.folder / "tree" / "empty" / "er").mkdir(parents=True)
        self.run_well("encrypt", *KEY, "-r", "--output-dir", "out", "--suffix", ".lk", "tree/")
        self.assertEqual(set(self.files("out")), {f"tree/{name}.lk" for name in PLAIN})
        self.assertTrue((self.folder / "out" / "tree" / "empty" / "er").is_dir())
        result = self.run_well("decrypt", *KEY, "-r", "--output-dir", "back", "--suffix", ".lk", "out/tree/.")
        self.assertEqual(self.files("back"), PLAIN)
        self.assertEqual(result.text.split(" (")[0], f"{len(PLAIN)} files decrypted")

    def test_the_output_folder_is_no_input(self):
        self.make(PLAIN)
        for _ in range(2):
            self.run_well("encrypt", *KEY, "-r", "--force", "--output-dir", "sub/out", ".")
            self.assertEqual(set(self.files("sub/out")), set(PLAIN))

    def test_a_second_run_in_the_same_folders_changes_nothing(self):
        self.make(PLAIN)
        self.run_well("encrypt", *KEY, "-r", "--suffix", ".lk", ".")
        once = self.files()
        self.assertEqual(len(once), 2 * len(PLAIN))
        result = self.run_well("encrypt", *KEY, "-r", "--suffix", ".lk", "--skip-existing", ".")
        self.assertEqual(result.text, "0 files encrypted (0 bytes), 5 skipped (output exists), 5 left out\n")
        self.run_well("decrypt", *KEY, "-r", "--suffix", ".lk", "--force", ".")
        self.assertEqual(self.files(), once)

    def test_a_folder_needs_recursive(self):
        self.make({"tree/a": b"some text", "b": b"some text"})
        result = self.run_command("encrypt", *KEY, "--output-dir", "out", "tree", "b")
        self.assertEqual((result.status, set(self.files("out"))), (1, {"b"}))
        self.assertEqual(result.lines, ["latchkey: this is a folder: tree",
                                        "hint: use --recursive for the files in it"])

    def test_a_name_like_standard_input_is_a_file(self):
        self.make({"-": b"some text"})
        self.run_well("encrypt", *KEY, "--suffix", ".lk", "--files0-from", "list" if self.write("list", b"-") else "")
        self.assertEqual(self.read("-.lk"), self.single("encrypt", b"some text"))
        (self.folder / "-").unlink()
        self.run_well("decrypt", *KEY, "--suffix", ".lk", "./-.lk")
        self.assertEqual(self.read("-"), b"some text")


class RefusalTest(ManyFilesTest):
    def test_two_inputs_with_one_output(self):
        self.make({"a/x": b"some text", "b/x": b"some text", "c/y": b"some text"})
        text = "two inputs have the output out/x: a/x and b/x"
        self.assert_refused(["encrypt", *KEY, "--output-dir", "out", "c/y", "a/x", "b/x"], text)
        self.assertFalse((self.folder / "out").exists())
        self.assert_refused(["encrypt", *KEY, "--suffix", ".lk", "a/x", "c/y", "./a//x"], "two inputs have the output")
        self.write("list", b"a/x\0./a/x")
        self.assert_refused(["encrypt", *KEY, "--output-dir", "out", "--files0-from", "list"], "two inputs have")
        self.assert_refused(["encrypt", *KEY, "-r", "--output-dir", "out", "a", "a/"], "two inputs have the output")
        self.make({"d/a": b"a file, where the other input is a folder"})
        self.assert_refused(["encrypt", *KEY, "-r", "--output-dir", "out", "a", "d/a"], "two inputs have the output")

    def test_names_that_differ_by_case(self):
        self.make({"a/x": b"some text", "b/X": b"some text"})
        command = ["encrypt", *KEY, "--output-dir", "out", "a/x", "b/X"]
        if IS_WINDOWS:
            self.assert_refused(command, "two inputs have the output")
        else:
            self.run_well(*command)

    def test_an_output_that_is_an_input(self):
        self.make({"x": b"some text", "x.lk": b"other text", "out/y": b"some text"})
        text = "an output is one of the inputs"
        for more in ([], ["--force"], ["--skip-existing"]):
            self.assert_refused(["encrypt", *KEY, *more, "--suffix", ".lk", "x", "x.lk"], text)
            self.assert_refused(["encrypt", *KEY, *more, "--output-dir", "out", "out/y"], text)
            self.assert_refused(["encrypt", *KEY, *more, "--output-dir", ".", "x"], text)

    def test_usage(self):
        self.make({"a": b"some text", "b": b"some text"})
        for arguments, text in (
                (["a", "b"], "several files need --output-dir or --suffix"),
                (["-r", "a"], "several files need"), (["--skip-existing", "a"], "need --output-dir or --suffix"),
                (["--keep-times", "a"], "need --output-dir"), (["--sync", "each", "a"], "need --output-dir"),
                (["--output-dir", "out"], "need the names of files"),
                (["--output-dir", "out", "a", "-"], "standard input has no name"),
                (["--suffix", "/x", "a"], "separator"), (["--output-dir", "", "a"], "--output-dir is empty"),
                (["--output-dir", "a", "b"], "--output-dir is not a folder"),
                (["--output-dir", "out", "--sync", "now", "a"], "--sync"),
                (["--output-dir", "out", "-o", "c", "a"], "excludes"),
                (["--output-dir", "out", "--files0-from", "a", "b"], "excludes"),
                (["--output-dir", "out", "--skip-existing", "--force", "a"], "--skip-existing excludes --force")):
            self.assert_refused(["encrypt", *KEY, *arguments], text)


class ResultTest(ManyFilesTest):
    def test_each_file_is_that_of_a_single_run(self):
        plain = {f"in/{length}": self.random.randbytes(length)
                 for length in (*range(18), 4095, (1 << 20) - 1, 1 << 20, (1 << 20) + 1)}
        self.make(plain)
        # The settings do not depend on the system, and processes take long to start on Wine.
        others = [] if IS_WINDOWS else self.random.sample(SETTINGS, 3)
        for settings in others + [("enhanced", "sha1", cipher) for cipher in CIPHERS[:2]]:
            key = [*setting_options(*settings), "--no-password"]
            for command, source in (("encrypt", "in"), ("decrypt", "in"), ("decrypt", f"encrypt-{settings}")):
                target = f"{command}-{settings}" if source == "in" else "back"
                done = self.run_command(command, *key, "-r", "--force", "--output-dir", target, f"{source}/.")
                expected = {name: self.single(command, data, key) for name, data in self.files(source).items()}
                whole = {name: data for name, data in expected.items() if data is not None}
                self.assertEqual(self.files(target), whole, (settings, command, source))
                self.assertEqual(done.status, 0 if len(whole) == len(expected) else 1, done)

    def test_a_failure_does_not_stop_the_others(self):
        self.make({"bad": b"x" * 9, "good": b"", "empty": b""})
        self.write("good", self.single("encrypt", b"some text"))
        result = self.run_command("decrypt", *KEY, "--output-dir", "out", "none", "bad", "good", "other")
        self.assertEqual((result.status, self.files("out")), (1, {"good": b"some text"}))
        self.assertEqual(result.text, "1 file decrypted (16 bytes), 3 failed\n")
        failures = [line for line in result.lines if line.startswith("latchkey: ")]
        self.assertEqual(len(failures), 3)
        self.assertTrue(any("(location 717, number " in line and line.endswith(": bad") for line in failures), failures)
        self.assertTrue(any(line.startswith("latchkey: cannot open: ") and line.endswith(": none")
                            for line in failures), failures)

    def test_json(self):
        self.make({"in/good": b"some text", "in/old": b"some text", "out/in/old": b"precious"})
        result = self.run_command("encrypt", *KEY, "--json", "-r", "--skip-existing", "--output-dir", "out", "in", "none")
        document = result.json
        self.assertEqual((result.status, result.err), (1, b""))
        found = {entry["input"]: entry for entry in document.pop("results")}
        self.assertEqual(found["in/good"], {"input": "in/good", "output": "out/in/good", "bytes_in": 9,
                                            "bytes_out": 16})
        self.assertEqual(found["in/old"], {"input": "in/old", "output": "out/in/old", "skipped": True})
        self.assertEqual((found["none"]["error"]["file"], len(found)), ("none", 3))
        self.assertEqual({name: document[name] for name in ("done", "skipped", "failed", "left_out", "bytes_in",
                                                            "bytes_out", "hash", "cipher")},
                         {"done": 1, "skipped": 1, "failed": 1, "left_out": 0, "bytes_in": 9, "bytes_out": 16,
                          "hash": "sha1", "cipher": "3des"})
        refused = self.run_command("encrypt", *KEY, "--json", "--suffix", ".lk", "in/good", "./in/good")
        self.assertEqual((refused.status, list(refused.json)), (2, ["error"]))
        (self.folder / "nothing").mkdir()
        nothing = self.run_well("encrypt", *KEY, "--json", "-r", "--suffix", ".lk", "nothing").json
        self.assertEqual((nothing["results"], nothing["done"]), ([], 0))

    def test_existing_outputs(self):
        self.make({"a": b"some text", "b": b"some text", "out/a": b"precious"})
        result = self.run_command("encrypt", *KEY, "--output-dir", "out", "a", "b")
        self.assertEqual((result.status, self.read("out/a")), (1, b"precious"))
        self.assertIn("hint: use --skip-existing to leave such outputs as they are, or --force", result.lines)
        (self.folder / "out" / "b").unlink()
        result = self.run_well("encrypt", *KEY, "--skip-existing", "--output-dir", "out", "a", "b")
        self.assertEqual((result.text, self.read("out/a")),
                         ("1 file encrypted (9 bytes), 1 skipped (output exists)\n", b"precious"))
        self.run_well("encrypt", *KEY, "--force", "--output-dir", "out", "a", "b")
        self.assertEqual(self.read("out/a"), self.single("encrypt", b"some text"))

    def test_times_are_kept_if_asked(self):
        self.make({"a": b"some text", "big": bytes(2 << 20)})
        times = {"a": 1_000_000_000_123_456_700, "big": 1_500_000_000_987_654_300}
        for name, time in times.items():
            os.utime(self.folder / name, ns=(time + 10 ** 9, time))
        self.run_well("encrypt", *KEY, "--output-dir", "kept", "--keep-times", *times)
        self.run_well("encrypt", *KEY, "--output-dir", "new", *times)
        for name, time in times.items():
            self.assertEqual((self.folder / "kept" / name).stat().st_mtime_ns, time)
            self.assertGreater((self.folder / "new" / name).stat().st_mtime_ns, times["big"])

    def test_only_the_owner_can_read_decrypted_files(self):
        self.make({"a": b"some text", "b": b"some text"})
        old = os.umask(0o022)
        self.addCleanup(os.umask, old)
        self.run_well("encrypt", *KEY, "--output-dir", "c", "a", "b")
        self.run_well("decrypt", *KEY, "--output-dir", "p", "c/a", "c/b")
        for name in "ab":
            self.assertEqual(stat.S_IMODE((self.folder / "c" / name).stat().st_mode) & 0o777, 0o644)
            self.assertEqual(stat.S_IMODE((self.folder / "p" / name).stat().st_mode) & 0o007, 0)

    def test_each_way_to_sync_gives_the_same(self):
        self.make(PLAIN, "in")
        for sync in ("each", "end", "never"):
            self.run_well("encrypt", *KEY, "-r", "--sync", sync, "--output-dir", sync, "in/.")
        self.assertEqual(self.files("each"), self.files("end"))
        self.assertEqual(self.files("each"), self.files("never"))
        self.assertEqual(set(self.files("each")), set(PLAIN))

    def test_more_files_than_a_group_holds(self):
        self.make({f"in/{i % 7}/{i}": b"text %d" % i for i in range(1500)})
        self.run_well("encrypt", *KEY, "-r", "--output-dir", "out", "in")
        self.run_well("decrypt", *KEY, "-r", "--output-dir", "back", "out/in")
        self.assertEqual(self.files("back/in"), self.files("in"))
        names = {path.name for path in self.folder.rglob(".latchkey-*")}
        self.assertEqual(names, set())


class UnfinishedTest(ManyFilesTest):
    """Runs that end too early."""

    def setUp(self):
        super().setUp()
        self.count = 200 if IS_WINDOWS else 600
        self.make({f"in/{i % 5}/{i}": self.random.randbytes(self.random.choice((1, 100, 5000))) + b"text"
                   for i in range(self.count)})
        self.make({"in/big": bytes(5 << 20)})
        self.command = ["encrypt", *KEY, "-r", "--output-dir", "out", "in"]

    def unfinished(self):
        return list(self.folder.rglob(UNFINISHED))

    def start(self, *more):
        return self.start_command(*self.command, *more, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def await_files(self, process):
        """Waits until there are unfinished files, or the process has ended."""
        deadline = time.monotonic() + 60
        while process.poll() is None and not self.unfinished():
            self.assertLess(time.monotonic(), deadline)
            select.select([], [], [], 0.001)

    def expected(self):
        self.run_well(*self.command, "--quiet")
        expected = self.files("out")
        self.assertEqual(len(expected), self.count + 1)
        shutil.rmtree(self.folder / "out")
        return expected


class KillTest(UnfinishedTest):
    def test_a_second_run_finishes_what_a_killed_one_began(self):
        expected = self.expected()
        start = time.monotonic()
        self.run_well(*self.command, "--quiet")
        usual = time.monotonic() - start
        killed = left = 0
        for _ in range(200 if LONG else 6 if IS_WINDOWS else 15):
            shutil.rmtree(self.folder / "out")
            strangers = {"out/in/0/.latchkey-abcdef": b"not ours", "out/in/1/.latchkey-" + "a" * 24: b"not ours",
                         "out/in/.latchkey-notes.txt": b"not ours"}
            self.make(strangers)
            for _ in range(self.random.choice((1, 1, 2))):
                process = self.start("--skip-existing")
                select.select([], [], [], self.random.random() * usual)
                process.kill()
                killed += process.wait() != 0
            found = self.files("out", finished=True)
            self.assertLessEqual(found.items(), expected.items())
            left += len(self.unfinished()) > len(strangers)
            result = self.run_well(*self.command, "--skip-existing")
            self.assertIn(f"{self.count + 1 - len(found)} file", result.text)
            if IS_WINDOWS:
                self.await_removal(len(strangers))
            after = self.files("out")
            self.assertEqual({name: after.pop(name[4:]) for name in strangers}, strangers)
            self.assertEqual(after, expected)
        print(f"{killed} runs killed, {left} left unfinished files", flush=True)
        self.assertGreater(killed, 3)
        if not IS_WINDOWS:
            self.assertGreater(left, 3)

    def test_an_interruption_leaves_no_unfinished_file(self):
        expected = self.expected()
        for _ in range(4):
            process = self.start()
            self.await_files(process)
            process.send_signal(signal.SIGINT)
            process.wait()
            if IS_WINDOWS:
                self.run_well(*self.command, "--skip-existing", "--quiet")
                self.await_removal(0)
            self.assertEqual(self.unfinished(), [])
            self.assertLessEqual(self.files("out").items(), expected.items())
            shutil.rmtree(self.folder / "out")

    def await_removal(self, rest):
        """Windows removes unfinished files when the process has ended, and the next run those that had no mark then."""
        deadline = time.monotonic() + 60
        while len(self.unfinished()) > rest:
            self.assertLess(time.monotonic(), deadline)
            select.select([], [], [], 0.01)
