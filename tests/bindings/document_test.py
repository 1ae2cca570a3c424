#!/usr/bin/python3
"""Runs the SQL of docs/databases.md in order and checks what it prints: document_test.py postgresql|sqlite

For postgresql run it with tools/with_postgresql; for sqlite LD_LIBRARY_PATH names the folder of mod_latchkey.so. The
table has the rows that the document describes: one ciphertext is cut, one is under another password, and one plaintext
is not text.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

DATABASE = sys.argv.pop(1)
DOCUMENT = pathlib.Path(__file__).resolve().parents[2] / "docs" / "databases.md"
PASSWORD = "Zoë's \\ horse" if DATABASE == "postgresql" else "correct horse"
KEY = "'sha1', '3des'"
PROGRAMS = {
    "postgresql": ["psql", "-X", "-q", "-v", "ON_ERROR_STOP=1", "-f", "-"],
    "sqlite": ["sqlite3", "-bail", "-init", "/dev/null", "customers.db"],
}
FIRST = {"postgresql": "CREATE EXTENSION latchkey;", "sqlite": ".load mod_latchkey"}


def read_blocks():
    """The marked blocks for this database, in order: name, SQL, and the output that the document shows, if any."""
    text = DOCUMENT.read_text(encoding="utf-8")
    blocks = re.findall(r"<!-- (checked|printed): (\w+) (.*?) -->\n```(?:sql)?\n(.*?)```", text, re.S)
    assert len(blocks) == text.count("```") // 2, "a block is not marked"
    printed = {(database, name): block for kind, database, name, block in blocks if kind == "printed"}
    return [(name, block, printed.get((database, name))) for kind, database, name, block in blocks
            if kind == "checked" and database == DATABASE]


def customers():
    """Statements that make the table, with the rows that the document shows. Customer i has the text of its number."""
    quoted = PASSWORD.replace("'", "''")
    password = {"postgresql": f"convert_to('{quoted}', 'WIN1252')", "sqlite": f"'{quoted}'"}[DATABASE]
    text = {"postgresql": "convert_to({}, 'WIN1252')", "sqlite": "{}"}[DATABASE].format("'The text of row ' || {}")
    secret = f"latchkey_encrypt({text}, {password}, {KEY})"
    values = {i: secret.format(i) for i in range(1, 31)}
    values[4] = f"substr({secret.format(4)}, 1, 23)"
    values[7] = f"latchkey_encrypt({text.format(7)}, 'another password', {KEY})"
    values[9] = {"postgresql": f"latchkey_encrypt('\\x0107f3', {password}, {KEY})",
                 "sqlite": f"latchkey_encrypt(x'0107f3', {password}, {KEY})"}[DATABASE]
    values[12] = "NULL"
    column = {"postgresql": "bytea", "sqlite": "BLOB"}[DATABASE]
    rows = "".join(f"INSERT INTO customers VALUES ({i}, {value});\n" for i, value in values.items())
    return f"{FIRST[DATABASE]}\nCREATE TABLE customers (id integer, secret {column});\n{rows}"


class DocumentTest(unittest.TestCase):
    def run_sql(self, folder, text):
        done = subprocess.run(PROGRAMS[DATABASE], input=text, capture_output=True, text=True, cwd=folder, timeout=100,
                              check=False, env={**os.environ, "PGOPTIONS": "-c client_min_messages=warning"})
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
        return done.stdout

    def test_the_blocks_in_order(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        (pathlib.Path(folder) / "password.txt").write_text(PASSWORD + "\n", encoding="utf-8")
        self.run_sql(folder, customers())
        blocks = read_blocks()
        mark = {"postgresql": "\\echo == {}\n", "sqlite": ".print == {}\n"}[DATABASE]
        last = "SELECT 'last: ' || count(*) FROM customers WHERE plain = 'The text of row ' || id;\n"
        printed = self.run_sql(folder, "".join(mark.format(name) + block for name, block, _ in blocks) + last)
        sections = dict(re.findall(r"^== (.*)\n((?:(?!== ).*\n)*)", printed, re.M))
        self.assertIn("last: 26", printed)
        for name, _, expected in blocks:
            if expected is not None:
                with self.subTest(name):
                    self.assertEqual([line.rstrip() for line in sections[name].splitlines() if line], expected.splitlines())


if __name__ == "__main__":
    unittest.main()
