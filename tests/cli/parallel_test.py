"""Many files at once, with GNU parallel and xargs: 300, or 1,000 with LATCHKEY_LONG."""
import os
import subprocess

from command import MEMORY_FOLDER, PROGRAM, SETTINGS, CommandTest, setting_options

FILES = 1000 if os.environ.get("LATCHKEY_LONG") else 300


class ParallelTest(CommandTest):
    PARENT = MEMORY_FOLDER

    def setUp(self):
        super().setUp()
        self.write("password", b"secret")
        for folder in ("in", "out", "back"):
            (self.folder / folder).mkdir()
        for number in range(FILES):
            self.write(f"in/file {number}", self.random.randbytes(self.random.randrange(2000)))

    def run_tool(self, *arguments, data=b""):
        process = subprocess.run(arguments, cwd=self.folder, input=data, capture_output=True, check=False)
        self.assertEqual((process.returncode, process.stderr), (0, b""), process)

    def assert_same(self):
        self.run_tool("diff", "-r", "in", "back")
        self.assertEqual(len(list((self.folder / "back").iterdir())), FILES)

    def test_gnu_parallel_encrypts_and_decrypts_many_files(self):
        options = [*setting_options(*SETTINGS[-1]), "--password-file", "password"]
        names = "\0".join(f"file {number}" for number in range(FILES)).encode()
        for command, source, target in (("encrypt", "in", "out"), ("decrypt", "out", "back")):
            self.run_tool("parallel", "--will-cite", "-0", "-j", "4", "-q", *PROGRAM, command, *options, "-o",
                          target + "/{}", source + "/{}", data=names)
        self.assert_same()

    def test_find_and_xargs(self):
        options = " ".join(setting_options(*SETTINGS[0]))
        script = "find {0} -type f -print0 | xargs -0 -P 4 -n 50 sh -c 'for file; do {1} {2} {3} --password-file " \
                 "password -o {4}/\"${{file##*/}}\" \"$file\" || exit 255; done' sh"
        for command, source, target in (("encrypt", "in", "out"), ("decrypt", "out", "back")):
            self.run_tool("sh", "-c", script.format(source, PROGRAM[0], command, options, target))
        self.assert_same()
