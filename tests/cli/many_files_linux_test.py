"""Many files on Linux: links and pipes, limits, the order of flushes, signals, several processes.

LATCHKEY_LONG lists a million names.
"""
import os
import pathlib
import re
import resource
import select
import signal
import subprocess

from command import ENDING_SIGNALS, PROGRAM
from many_files_test import KEY, LONG, UNFINISHED, ManyFilesTest, UnfinishedTest

RC4 = ["--hash", "md5", "--cipher", "rc4", "--no-password"]


class SpecialFilesTest(ManyFilesTest):
    def test_links_and_pipes_in_folders_are_left_out(self):
        self.make({"outside/secret": b"precious", "tree/a": b"some text"})
        os.mkfifo(self.folder / "tree" / "pipe")
        (self.folder / "tree" / "link").symlink_to("a")
        (self.folder / "tree" / "folder").symlink_to("../outside")
        (self.folder / "tree" / "nothing").symlink_to("none")
        result = self.run_well("encrypt", *KEY, "-r", "--output-dir", "out", "tree")
        self.assertEqual(result.text, "1 file encrypted (9 bytes), 4 left out\n")
        self.assertEqual([path.name for path in (self.folder / "out" / "tree").iterdir()], ["a"])

    def test_a_named_link_is_read_and_a_named_pipe_is_not(self):
        self.make({"a": b"some text"})
        os.mkfifo(self.folder / "pipe")
        (self.folder / "link").symlink_to("a")
        result = self.run_command("encrypt", *KEY, "--output-dir", "out", "link", "pipe")
        self.assertEqual((result.status, result.lines), (1, ["latchkey: not a regular file: pipe"]))
        self.assertEqual(self.files("out"), {"link": self.single("encrypt", b"some text")})

    def test_an_output_that_is_a_link_is_not_followed(self):
        self.make({"a": b"some text", "b": b"some text", "precious": b"precious"})
        (self.folder / "out").mkdir()
        (self.folder / "out" / "a").symlink_to("../precious")
        result = self.run_command("encrypt", *KEY, "--force", "--output-dir", "out", "a", "b")
        self.assertEqual((result.status, self.read("precious")), (1, b"precious"))
        self.assertEqual(result.lines, ["latchkey: cannot replace: not a regular file: out/a"])
        self.assertEqual(set(self.files("out")), {"b"})

    def test_one_folder_with_two_names_has_one_output(self):
        self.make({"a/x": b"some text"})
        (self.folder / "b").symlink_to("a")
        self.assert_refused(["encrypt", *KEY, "--suffix", ".lk", "a/x", "b/x"], "two inputs have the output")

    def test_names_of_any_bytes(self):
        names = [b"\xff\xfe", b"line\nend", b"sp ace", b"-o"]
        for name in names:
            (self.folder / os.fsdecode(name)).write_bytes(b"text " + name)
        listed = b"".join(b"./" + name + b"\0" for name in names)
        self.run_well("encrypt", *KEY, "--output-dir", "out", "--files0-from", "-", data=listed)
        self.run_well("decrypt", *KEY, "-r", "--output-dir", "back", "out/.")
        for name in names:
            self.assertEqual((self.folder / "back" / os.fsdecode(name)).read_bytes(), b"text " + name)

    def test_a_folder_that_cannot_be_read_is_a_failure(self):
        if os.geteuid() == 0:
            user = ["setpriv", "--reuid", "65534", "--clear-groups", *PROGRAM]
        else:
            user = PROGRAM
        self.make({"tree/a": b"some text", "tree/closed/b": b"some text", "tree/secret": b"some text"})
        (self.folder / "out").mkdir()
        for name, mode in ((".", 0o755), ("out", 0o777), ("tree/closed", 0o300), ("tree/secret", 0o200)):
            (self.folder / name).chmod(mode)
        self.addCleanup((self.folder / "tree" / "closed").chmod, 0o700)
        result = self.run_command("encrypt", *KEY, "-r", "--output-dir", "out", "tree", program=user)
        (self.folder / "tree" / "closed").chmod(0o700)
        self.assertEqual(result.status, 1, result)
        self.assertEqual(sorted(result.lines), ["latchkey: cannot open: Permission denied: tree/closed",
                                                "latchkey: cannot open: Permission denied: tree/secret"])
        self.assertEqual(set(self.files("out")), {"tree/a"})


class LimitTest(ManyFilesTest):
    def limited(self, number, value):
        return {"preexec_fn": lambda: resource.setrlimit(number, (value, value))}

    def test_a_file_that_grows_beyond_its_limit_fails_alone(self):
        self.make({"in/big": bytes(1 << 16), "in/huge": bytes(3 << 20), "in/small": b"some text"})
        result = self.run_command("encrypt", *KEY, "-r", "--output-dir", "out", "in", **self.limited(
            resource.RLIMIT_FSIZE, 4096))
        self.assertEqual((result.status, set(self.files("out"))), (1, {"in/small"}), result)
        self.assertEqual(sorted(result.lines), ["latchkey: cannot write: File too large: out/in/big",
                                                "latchkey: cannot write: File too large: out/in/huge"])

    def test_few_open_files_are_enough(self):
        self.make({f"in/{'/'.join('d' * (i // 20))}/{i}": b"text %d" % i for i in range(800)})
        self.run_well("encrypt", *KEY, "-r", "--output-dir", "out", "in", **self.limited(resource.RLIMIT_NOFILE, 24))
        self.assertEqual(set(self.files("out/in")), set(self.files("in")))

    def peak(self, count):
        """KiB that the command uses for so many files, all links to one."""
        top = self.folder / str(count)
        for i in range(count):
            if i % 5000 == 0:
                (top / str(i // 5000)).mkdir(parents=True)
                source = top / str(i // 5000) / "source"
                source.write_bytes(b"some text")
            os.link(source, top / str(i // 5000) / f"a long name of a file with the number {i}")
        process = self.start_command("encrypt", *RC4, "--json", "-r", "--sync", "never", "--output-dir",
                                     f"out {count}", str(count), stdout=subprocess.DEVNULL)
        most = 0
        while process.poll() is None:  # the system's own figure includes the memory of this process
            status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
            most = max([most, *map(int, re.findall(r"VmHWM:\s+(\d+) kB", status))])
            select.select([], [], [], 0.001)
        self.assertEqual(process.returncode, 0)
        return most

    def test_memory_does_not_grow_with_the_number_of_files(self):
        few, many = self.peak(1000), self.peak(1_000_000 if LONG else 30_000)
        print(f"{few} KiB, {many} KiB", flush=True)
        # Facts about files are sorted in memory, at most 24 MiB of them at once.
        self.assertLess(many, few + (30 << 10 if LONG else 6 << 10))


class ThreadTest(ManyFilesTest):
    def test_each_processor_gets_a_thread(self):
        self.make({f"in/{i}": b"text %d" % i for i in range(20)})
        self.run_well("encrypt", *KEY, "-r", "--output-dir", "out", "in", program=[
            "strace", "-f", "-qq", "-o", "trace", "-e", "trace=clone,clone3", *PROGRAM])
        started = self.read("trace").count(b"CLONE_THREAD")
        self.assertGreaterEqual(started, len(os.sched_getaffinity(0)) - 1)


class SyncTest(ManyFilesTest):
    PARENT = None  # a file system on a disk

    def calls(self, *arguments):
        """The kinds of calls on outputs, without repetitions."""
        self.make({f"in/{i}": b"text %d" % i for i in range(20)})
        trace = self.folder / "trace"
        subprocess.run(["strace", "-f", "-qq", "-y", "-o", trace, *PROGRAM, "encrypt", *KEY, "-r", *arguments,
                        "--output-dir", "out", "in"], cwd=self.folder, capture_output=True, check=True, timeout=200,
                       preexec_fn=lambda: os.sched_setaffinity(0, {min(os.sched_getaffinity(0))}))
        kinds = [("write", r"write\(\d+<.*/\.latchkey-"), ("sync all", r"syncfs\(.* = 0"),
                 ("sync file", r"fsync\(\d+<.*/\.latchkey-"), ("name", r"rename(at2?)?\(.* = 0"),
                 ("sync folder", r"fsync\(\d+<.*/out/in>\) += 0")]
        found = []
        for line in trace.read_text(errors="replace").splitlines():
            for kind, form in kinds:
                if re.match(r"(\d+ +)?" + form, line):
                    found.append(kind)
        return [kind for i, kind in enumerate(found) if i == 0 or kind != found[i - 1]], found

    def test_a_group_is_flushed_before_its_names_and_the_names_at_the_end(self):
        order, found = self.calls()
        self.assertEqual(order, ["write", "sync all", "name", "sync all"])
        self.assertEqual((found.count("write"), found.count("name")), (20, 20))

    def test_each_output_is_flushed_before_its_name(self):
        _, found = self.calls("--sync", "each")
        self.assertEqual(found, ["write", "sync file", "name", "sync folder"] * 20)

    def test_nothing_is_flushed(self):
        _, found = self.calls("--sync", "never")
        self.assertEqual(found, ["write", "name"] * 20)

    def test_a_failed_flush_falls_back_to_each_file(self):
        self.make({f"in/{i}": b"text %d" % i for i in range(20)})
        # On one processor there is one thread, and strace counts the calls of each.
        injected = ["taskset", "--cpu-list", str(min(os.sched_getaffinity(0))), "strace", "-f", "-qq", "-o", "/dev/null",
                    "-e", "inject=syncfs:error=EIO", *PROGRAM]
        self.run_well("encrypt", *KEY, "-r", "--output-dir", "out", "in", program=injected)
        self.assertEqual(len(self.files("out")), 20)
        injected[8:8] = ["-e", "inject=fsync:error=ENOSPC:when=3"]
        result = self.run_command("encrypt", *KEY, "-r", "--output-dir", "new", "in", program=injected)
        self.assertEqual(result.status, 1, result)
        self.assertRegex(result.text, r"^19 files encrypted \(\d+ bytes\), 1 failed\n$")
        self.assertEqual(len(self.files("new")), 19)
        self.assertEqual(list(self.folder.rglob(UNFINISHED)), [])

    def test_lists_that_cannot_be_written_leave_no_folder(self):
        self.make({"a": self.single("encrypt", b"some text " * 20)})
        result = self.run_command("identify", "--no-password", "--lists", "lists", "a", program=[
            "strace", "-f", "-qq", "-o", "/dev/null", "-e", "inject=fsync:error=EIO:when=2", *PROGRAM])
        self.assertEqual((result.status, self.names()), (1, ["a"]), result)
        self.assertIn("lists/", result.lines[0])


class EndTest(UnfinishedTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        resource.setrlimit(resource.RLIMIT_CORE, (0, resource.getrlimit(resource.RLIMIT_CORE)[1]))

    def test_a_signal_leaves_only_whole_outputs(self):
        expected = self.expected()
        interrupted = 0
        for number in [signal.SIGINT] * 8 + self.random.sample(ENDING_SIGNALS, 8):
            process = self.start()
            self.await_files(process)
            select.select([], [], [], self.random.random() * 0.02)
            process.send_signal(number)
            status = process.wait()
            self.assertIn(status, (0, -number))
            interrupted += status != 0
            self.assertEqual(self.unfinished(), [], number)
            self.assertLessEqual(self.files("out").items(), expected.items())
            subprocess.run(["rm", "-rf", self.folder / "out"], check=True)
        self.assertGreater(interrupted, 3)

    def test_running_processes_do_not_harm_each_other(self):
        expected = self.expected()
        parts = ["in/big", *(f"in/{i}" for i in range(5))]
        for _ in range(4):
            processes = [self.start_command("encrypt", *KEY, "-r", "--output-dir", "out/in", part,
                                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE) for part in parts]
            while any(process.poll() is None for process in processes):  # each start looks for leftovers
                self.make({"one": b"some text", "two": b"some text"})
                for i in range(5):
                    self.run_well("encrypt", *KEY, "--quiet", "--force", "--output-dir", f"out/in/{i}", "one")
            for process in processes:
                with process.stderr:
                    self.assertEqual((process.wait(), process.stderr.read()), (0, b""))
            found = {name: data for name, data in self.files("out").items() if not name.endswith("/one")}
            self.assertEqual(found, expected)
            self.assertEqual(self.unfinished(), [])
            subprocess.run(["rm", "-rf", self.folder / "out"], check=True)

    def test_a_leftover_is_removed_and_that_of_a_running_process_is_not(self):
        os.mkfifo(self.folder / "pipe")
        (self.folder / "out" / "in" / "0").mkdir(parents=True)
        running = self.start_command("encrypt", *KEY, "-o", "out/in/0/slow", "pipe")
        pipe = open(self.folder / "pipe", "wb", buffering=0)
        self.await_files(running)
        kept = self.unfinished()
        self.assertEqual(len(kept), 1)
        killed = self.start_command("encrypt", *KEY, "-o", "out/in/0/other", stdin=subprocess.PIPE)
        while len(self.unfinished()) < 2:
            self.assertIsNone(killed.poll())
        killed.kill()
        with killed.stdin:
            killed.wait()
        self.assertEqual(len(self.unfinished()), 2)
        self.run_well(*self.command, "--quiet")
        self.assertEqual(self.unfinished(), kept)
        with pipe:
            pipe.write(b"some text")
        self.assertEqual(running.wait(), 0)
        self.assertEqual(self.read("out/in/0/slow"), self.single("encrypt", b"some text"))
