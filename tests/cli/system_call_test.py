"""The command when system calls fail, are interrupted or deliver a signal, each call from main on in turn.

strace injects the failures; where the system permits no tracing, these tests fail rather than skip.
"""
import concurrent.futures
import json
import os
import pathlib
import re
import resource
import signal
import stat
import subprocess
import tempfile

from command import ENDING_SIGNALS, MEMORY_FOLDER, PROGRAM, CommandTest

LONG = bool(os.environ.get("LATCHKEY_LONG"))
KEY = ["--hash", "sha1", "--cipher", "des", "--no-password"]

# Calls that are not made to fail, each with the reason.
LEFT_OUT = {
    "exit_group": "does not return",
    "exit": "does not return",
    "umask": "cannot fail",
    "futex": "fails only for wrong usage, and the C library then ends the process",
    "rseq": "is the C library's at a thread's start, and it ends the process",
    "rt_sigreturn": "does not return",
}
# The errnos of the other calls, the likeliest first. A call that is not listed fails with EIO.
FAILURES = {
    "brk": ["retval=0"],  # has no errno: it fails by not moving the end
    "mmap": ["ENOMEM"], "mprotect": ["ENOMEM"], "munmap": ["ENOMEM"], "madvise": ["EINVAL"],
    "openat": ["EACCES", "EMFILE", "EIO", "EINTR"], "open": ["EACCES"],
    "read": ["EIO", "EAGAIN"], "write": ["ENOSPC", "EIO", "EDQUOT"], "fsync": ["EIO", "EINVAL", "EINTR"],
    "newfstatat": ["EIO", "EACCES"], "lstat": ["EIO"], "stat": ["EIO"],
    "renameat2": ["EACCES", "EINVAL", "ENOSYS", "EEXIST"], "rename": ["EACCES", "EXDEV"],
    "rt_sigaction": ["EINVAL"], "rt_sigprocmask": ["EINVAL"], "sched_getaffinity": ["EINVAL"],
    "getxattr": ["EIO", "EOPNOTSUPP", "EACCES"], "fremovexattr": ["EIO", "EPERM"], "fchmod": ["EPERM"],
    "fchown": ["EPERM"], "ioctl": ["EIO"], "fcntl": ["EBADF", "EMFILE"],
    "clone3": ["EAGAIN"], "clone": ["EAGAIN"],
}
# These calls are repeated if interrupted before they transferred anything.
REPEATED = ("read", "write", "poll")
# The scenario in which threads share the calls, so that a number may not occur in this run.
THREADS = "several threads"
MOST = 60  # calls of a scenario that the short form tries; only that one has more
# The handlers of signals are set by one loop: the short form tries some of these calls.
LOOPED = "rt_sigaction"

# strace has no names for real-time signals.
SIGNALS = [number.name for number in ENDING_SIGNALS if number < signal.SIGRTMIN]


def setUpModule():
    resource.setrlimit(resource.RLIMIT_CORE, (0, resource.getrlimit(resource.RLIMIT_CORE)[1]))
    process = subprocess.run(["strace", "-qq", "-o", "/dev/null", "true"], capture_output=True, text=True, check=False)
    if process.returncode != 0:
        raise AssertionError("strace cannot trace programs here, so these tests cannot run; a container needs the "
                             f"capability SYS_PTRACE, or yama's ptrace_scope is 3: {process.stderr}")


class Call:
    def __init__(self, line):
        self.line = line
        self.name = re.match(r"(?:\d+ +)?(\w+)\(", line)
        self.name = self.name and self.name[1]


class SystemCallTest(CommandTest):
    PARENT = MEMORY_FOLDER

    def traced(self, folder, arguments, *options, stdin=b""):
        """The run of the command under strace and its calls."""
        trace = folder.with_suffix(".trace")
        process = subprocess.run(["strace", "-f", "-qq", "-o", trace, *options, *PROGRAM, *arguments], cwd=folder,
                                 input=stdin, capture_output=True, timeout=200, check=False)
        self.assertTrue(trace.exists(), process.stderr)  # strace has begun
        calls = [Call(line) for line in trace.read_text(errors="replace").splitlines()]
        return process, [call for call in calls if call.name]

    def new_folder(self, before):
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        for name, data in before.items():
            if isinstance(data, str):
                (folder / name).symlink_to(data)
            else:
                (folder / name).write_bytes(data)
                (folder / name).chmod(0o600)
        return folder

    def files(self, folder):
        return {path.name: os.readlink(path) if path.is_symlink() else path.read_bytes() for path in folder.iterdir()}

    def rights(self, folder):
        return stat.S_IMODE((folder / "out").stat().st_mode) if (folder / "out").exists() else 0

    def places(self, arguments, before, stdin):
        """(name of the call, its number among those of the name) of all calls from main on, and the whole result."""
        folder = self.new_folder(before)
        process, calls = self.traced(folder, arguments, stdin=stdin)
        # The first call of main, which nothing before it makes.
        start = next(i for i, call in enumerate(calls) if "fcntl(0, F_GETFD)" in call.line)
        seen, places = {}, []
        for i, call in enumerate(calls):
            seen[call.name] = seen.get(call.name, 0) + 1
            if i >= start and call.name not in LEFT_OUT:
                places.append((call.name, seen[call.name]))
        self.widest = self.rights(folder)
        return places, (process.returncode, self.files(folder), process.stdout)

    def chosen(self, places):
        if LONG:
            return places
        looped = [place for place in places if place[0] == LOOPED]
        kept = {looped[0], looped[-1], self.random.choice(looped)} if looped else ()
        chosen = [place for place in places if place[0] != LOOPED or place in kept]
        return self.random.sample(chosen, min(len(chosen), MOST))

    def each(self, attempts, attempt):
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            return list(pool.map(lambda each: attempt(*each), attempts))

    def inject(self, name, number, what, arguments, before, stdin):
        folder = self.new_folder(before)
        process, calls = self.traced(folder, arguments, "-e", f"trace={name}", "-e",
                                     f"inject={name}:{what}:when={number}", stdin=stdin)
        after = self.files(folder)
        details = (f"{name} {number} {what} in {arguments}: status {process.returncode}, {process.stderr}, "
                   f"{sorted(after)}")
        self.assertEqual(self.rights(folder) & ~self.widest, 0, details)
        return process, calls, after, details

    SCENARIOS = {
        "encrypt a file": (["encrypt", *KEY, "-o", "out", "in"], {"in": b"some text" * 50}, b""),
        "replace by ciphertext": (["encrypt", *KEY, "--force", "-o", "out", "in"],
                                  {"in": b"some text", "out": b"precious"}, b""),
        "replace through a link": (["encrypt", *KEY, "--force", "-o", "out", "in"],
                                  {"in": b"some text", "out": "target", "target": b"precious" * 10}, b""),
        "keep an existing file": (["encrypt", *KEY, "-o", "out", "in"], {"in": b"text", "out": b"precious"}, b""),
        "encrypt with JSON": (["encrypt", *KEY, "--json", "-o", "out", "in"], {"in": b"some text"}, b""),
        "encrypt a stream": (["encrypt", *KEY], {}, b"some text"),
        "decrypt a file": (["decrypt", *KEY, "-o", "out", "in"], None, b""),
        "replace by plaintext": (["decrypt", *KEY, "--force", "-o", "out", "in"], None, b""),
        "refuse bad ciphertext": (["decrypt", *KEY, "-o", "out", "in"], {"in": b"x" * 17}, b""),
        "encrypt with a suffix": (["encrypt", *KEY, "--suffix", "ut", "o"], {"o": b"some text"}, b""),
        "replace in a run for many files": (["encrypt", *KEY, "--suffix", "ut", "--force", "--keep-times", "-r", "."],
                                            {"o": b"some text", "out": b"precious"}, b""),
        THREADS: (["encrypt", *KEY, "-o", "out"], {}, bytes(3 << 20)),
        "hash": (["hash", "in", "other"], {"in": b"abc", "other": b""}, b""),
        "check digests": (["hash", "--check", "sums"],
                          {"in": b"abc", "sums": b"900150983cd24fb0d6963f7d28e17f72  in\n"}, b""),
    }

    def scenarios(self):
        ciphertext = self.run_well("encrypt", *KEY, data=b"some text").out
        for what, (arguments, before, stdin) in self.SCENARIOS.items():
            if before is None:
                before = {"in": ciphertext, **({"out": b"precious"} if "--force" in arguments else {})}
            yield what, arguments, before, stdin

    def check(self, process, after, before, whole, details):
        self.assertIn(after, (before, whole[1]), details)
        if process.returncode == whole[0] == 0:
            self.assertEqual((after, process.stdout), whole[1:], details)
        else:
            self.assertEqual(process.returncode, 1, details)  # also never by a signal
        if "--json" in process.args and process.stdout:
            json.loads(process.stdout)  # one document

    def test_no_failed_call_loses_data_or_leaves_a_file(self):
        for what, arguments, before, stdin in self.scenarios():
            places, whole = self.places(arguments, before, stdin)

            def attempt(name, number, error):
                failure = error if "=" in error else f"error={error}"
                process, calls, after, details = self.inject(name, number, failure, arguments, before, stdin)
                self.assertTrue(what == THREADS or any("INJECTED" in call.line for call in calls), details)
                if name == "unlink" and process.returncode == 1:  # nothing else can remove a file
                    after = {file: data for file, data in after.items() if not file.startswith(".latchkey-")}
                self.check(process, after, before, whole, details)
                return process.returncode

            attempts = [(name, number, error) for name, number in self.chosen(places)
                        for error in FAILURES.get(name, ["EIO"])[:None if LONG else 1]]
            statuses = self.each(attempts, attempt)
            self.assertIn(1, statuses, what)
            print(f"{what}: {len(attempts)} calls failed, {statuses.count(1)} runs with them", flush=True)

    def test_an_output_name_that_cannot_be_examined_is_an_error(self):
        before = {"in": b"some text"}
        folder = self.new_folder(before)
        process, _ = self.traced(folder, ["encrypt", *KEY, "-o", "out", "in"], "-P", "out", "-e",
                                 "inject=newfstatat,lstat:error=EIO")
        self.assertEqual(process.stderr, b"latchkey: cannot create: Input/output error: out\n")
        self.assertEqual((process.returncode, self.files(folder)), (1, before))

    def order(self, *arguments, options=()):
        """The calls on the output's file and its folder, in order."""
        folder = self.new_folder({"in": b"some text", **({"out": b"precious"} if "--force" in arguments else {})})
        process, calls = self.traced(folder, ["encrypt", *KEY, "-o", "out", *arguments, "in"], "-y", *options)
        self.assertEqual(process.returncode, 0, process.stderr)
        kinds = [("written", r"write\(\d+<.*/\.latchkey-"), ("file synced", r"fsync\(\d+<.*/\.latchkey-"),
                 ("renamed", r"rename(at2?)?\(.* = 0"), ("linked", r"link(at)?\(.* = 0"),
                 ("folder synced", rf"fsync\(\d+<{folder}>\) += 0")]
        return [kind for call in calls for kind, form in kinds if re.match(r"(\d+ +)?" + form, call.line)]

    def test_the_file_is_flushed_before_its_name_and_the_name_before_the_end(self):
        renamed = ["written", "file synced", "renamed", "folder synced"]
        self.assertEqual(self.order(), renamed)
        self.assertEqual(self.order("--force"), renamed)
        # A file system that cannot refuse an existing name in a rename.
        self.assertEqual(self.order(options=["-e", "inject=renameat2:error=EINVAL"]),
                         ["written", "file synced", "linked", "folder synced"])

    def test_an_interrupted_call_is_repeated(self):
        for what, arguments, before, stdin in self.scenarios():
            places, whole = self.places(arguments, before, stdin)

            def attempt(name, number):
                process, _, after, details = self.inject(name, number, "error=EINTR", arguments, before, stdin)
                self.assertEqual((process.returncode, after, process.stdout), whole, details)

            attempts = [place for place in self.chosen(places) if place[0] in REPEATED]
            self.assertTrue(attempts, what)
            self.each(attempts, attempt)

    def test_a_signal_at_any_call_removes_the_output(self):
        used = set()
        for what, arguments, before, stdin in self.scenarios():
            many = "--suffix" in arguments
            if not LONG and "-o" not in arguments and not many:
                continue
            places, whole = self.places(arguments, before, stdin)
            names = self.random.sample(SIGNALS, len(SIGNALS))
            if many:
                names.remove("SIGXFSZ")  # ignored, since it concerns one file

            def attempt(name, number, signal_name):
                process, _, after, details = self.inject(name, number, f"signal={signal_name}", arguments, before,
                                                         stdin)
                self.assertIn(after, (before, whole[1]), details)
                if what != THREADS or process.returncode != 0:
                    self.assertEqual(process.returncode, -signal.Signals[signal_name], details)

            attempts = [(*place, names[i % len(names)]) for i, place in enumerate(self.chosen(places))]
            used.update(name for *_, name in attempts)
            self.each(attempts, attempt)
            print(f"{what}: {len(attempts)} runs ended by a signal", flush=True)
        self.assertEqual(used, set(SIGNALS))
