"""The commands for records in docs/using.md, with the programs that they name.

Those for PostgreSQL run by tools/with_postgresql, in PostgresqlTest.
"""
import json
import os
import pathlib
import re
import shutil
import subprocess

from command import PROGRAM, PROJECT, CommandTest

KEY = ["--hash", "sha1", "--cipher", "3des"]


def example(name):
    text = (PROJECT / "docs" / "using.md").read_text(encoding="utf-8")
    return re.search(rf"<!-- checked: records {name} -->\n```sh\n(.*?)```", text, re.S)[1]


class ExampleTest(CommandTest):
    def setUp(self):
        super().setUp()
        (self.folder / "bin").mkdir(mode=0o755)
        shutil.copy(PROGRAM[0], self.folder / "bin" / "latchkey")
        self.write("key", b"secret\n")
        self.texts = [f"The text of row {number}" for number in range(20_000)]
        lines = self.run_well("records", "encrypt", "--format", "lines", *KEY, "--password-file", "key",
                              data="\n".join(self.texts).encode()).text.splitlines()
        self.rows = [{"id": number, "secret": line} for number, line in enumerate(lines)]

    def run_script(self, script, status=0, errors=""):
        environment = {**os.environ, "PATH": f"{self.folder}/bin:{os.environ['PATH']}"}
        done = subprocess.run(["bash", "-eo", "pipefail", "-c", script], cwd=self.folder, env=environment, timeout=200,
                              capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (status, errors), script)
        return done.stdout


class ProgramsTest(ExampleTest):
    def test_csv(self):
        text = "Zoë".encode("cp1252")
        self.write("old.csv", f'id,secret\n1,\\x{self.encrypt(text, KEY).hex()}\n2,\n3,"00"\n'.encode())
        self.run_script(example("csv"), 1, "latchkey: 1 of 3 records failed\n"
                        "hint: wrong password or settings, or damaged data; 'latchkey identify' tries all settings\n")
        self.assertEqual(self.read("plain.csv").decode(), "id,secret\n1,Zoë\n2,\n3,\n")
        self.assertEqual(json.loads(self.read("failed.jsonl"))["line"], 4)

    def test_jq(self):
        self.write("export.json", json.dumps({"customers": self.rows}).encode())
        self.run_script(example("jq"))
        self.assertEqual(json.loads(self.read("plain.json")),
                         {"customers": [{"id": number, "secret": text} for number, text in enumerate(self.texts)]})

    def test_parallel(self):
        self.write("old.jsonl", "".join(json.dumps(row) + "\n" for row in self.rows).encode())
        self.run_script("parallel() { command parallel --will-cite \"$@\"; }\n" + example("parallel"))
        self.assertEqual([json.loads(line)["secret"] for line in self.read("plain.jsonl").splitlines()], self.texts)


class PostgresqlTest(ExampleTest):
    def setUp(self):
        super().setUp()
        values = ",".join(f"({row['id']}, '\\x{row['secret']}')" for row in self.rows)
        self.write("table.sql", f"CREATE TABLE customers (id integer, secret bytea);\nINSERT INTO customers VALUES {values},"
                                "(-1, NULL);\nCREATE TABLE plain (id integer, secret text);".encode())
        self.run_script("psql -Xqf table.sql")
        self.addCleanup(self.run_script, "psql -Xqc 'DROP TABLE customers, plain'")

    def check_rows(self, rows):
        expected = sorted([f"{number},{text}" for number, text in enumerate(self.texts)] + ["-1,"])
        self.assertEqual(sorted(rows.splitlines()), expected)

    def test_pipe(self):
        self.run_script(example("pipe"))
        self.check_rows(self.run_script("psql -Xqc 'COPY plain TO STDOUT (FORMAT csv)'"))

    def test_program(self):
        """The server may run as a user who cannot enter the build folder."""
        for path in (self.folder, self.folder / "bin"):
            path.chmod(0o777)
        script = example("program").replace("'latchkey", f"'{self.folder}/bin/latchkey").replace(
            "/etc/latchkey", str(self.folder)).replace("/tmp/plain.csv", f"{self.folder}/plain.csv")
        self.run_script(script)
        self.assertEqual(self.run_script("stat -c %a plain.csv"), "600\n")
        self.check_rows(pathlib.Path(self.folder / "plain.csv").read_text())
        self.run_script("echo wrong >key")
        (self.folder / "plain.csv").unlink()
        with self.assertRaises(AssertionError):
            self.run_script(script)
        self.assertFalse((self.folder / "plain.csv").exists())
