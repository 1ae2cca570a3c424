"""Inherited streams in non-blocking mode, and partly written JSON."""
import json
import os
import subprocess
import threading

from command import CommandTest, system_call

NAMES = 1500  # their digests as JSON are longer than a pipe holds
POLLS = ("7", "73", "168", "271")  # poll and ppoll on the systems of Debian


class NonBlockingTest(CommandTest):
    def pipe(self, end):
        """The reading and the writing end of a pipe; `end` is non-blocking."""
        ends = os.pipe()
        os.set_blocking(ends[end], False)
        return ends

    def output(self, *arguments):
        """The output of a command into a full non-blocking pipe that is read only afterwards."""
        reader, writer = self.pipe(1)
        filler = b""
        try:
            while True:
                filler += b" " * os.write(writer, b" " * 4096)
        except BlockingIOError:
            pass
        process = self.start_command(*arguments, stdout=writer, stderr=subprocess.PIPE)
        os.close(writer)
        self.wait_for_end_or_poll(process)
        with open(reader, "rb") as pipe:
            received = pipe.read()
        self.assertTrue(received.startswith(filler))
        self.assertEqual((process.communicate()[1], process.returncode), (b"", 0))
        return received[len(filler):]

    def wait_for_end_or_poll(self, process):
        """Waits until the command waits for the pipe or has ended."""
        while process.poll() is None:
            if system_call(process.pid)[0] in POLLS:
                return
            os.sched_yield()

    def test_json_is_written_whole(self):
        self.write("in", b"abc")
        result = json.loads(self.output("hash", "--json", *["in"] * NAMES))
        self.assertEqual(len(result["results"]), NAMES)

    def test_lines_are_written_whole(self):
        self.write("in", b"abc")
        self.assertEqual(self.output("hash", *["in"] * NAMES), b"900150983cd24fb0d6963f7d28e17f72  in\n" * NAMES)

    def test_data_is_written_whole(self):
        data = self.random.randbytes(1 << 20)
        self.write("in", data)
        self.assertEqual(self.output("hex", "in"), data.hex().upper().encode() + b"\n")

    def test_data_that_comes_later_is_read(self):
        data = self.random.randbytes(1 << 20)
        for arguments, expected in ((["hex"], data.hex().upper().encode() + b"\n"),
                                    (["hash"], self.run_well("hash", data=data).out),
                                    (["encrypt", "--hash", "md5", "--cipher", "rc4", "--password-file", "password"],
                                     self.encrypt(data, ["--hash", "md5", "--cipher", "rc4"]))):
            reader, writer = self.pipe(0)
            process = self.start_command(*arguments, stdin=reader, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            os.close(reader)
            self.wait_for_end_or_poll(process)

            def give(end=writer):
                with open(end, "wb") as pipe:
                    pipe.write(data)

            giver = threading.Thread(target=give)
            giver.start()
            output, error = process.communicate()
            giver.join()
            self.assertEqual((process.returncode, output, error), (0, expected, b""), arguments)


class PartialTest(CommandTest):
    LIBRARY = r"""
    #include <errno.h>
    #include <sys/syscall.h>
    #include <unistd.h>
    /* The second write to standard output fails; the first is short, those after the second succeed. */
    ssize_t write(int file, const void* bytes, size_t size) {
      static int calls;
      if (file == 1 && ++calls == 2) { errno = EIO; return -1; }
      return syscall(SYS_write, file, bytes, file == 1 && calls == 1 ? 10 : size);
    }
    """

    def test_no_second_document_follows_one_that_was_written_in_part(self):
        self.write("in", b"abc")
        subprocess.run(["cc", "-shared", "-fPIC", "-D_GNU_SOURCE", "-o", self.folder / "failing.so", "-x", "c", "-"],
                       input=self.LIBRARY.encode(), check=True)
        whole = self.run_well("hash", "--json", "in").out
        result = self.run_command("hash", "--json", "in", environment={"LD_PRELOAD": str(self.folder / "failing.so")})
        self.assertEqual((result.status, result.out), (1, whole[:10]))
        self.assertEqual(result.lines, ["latchkey: cannot write: standard output"])
