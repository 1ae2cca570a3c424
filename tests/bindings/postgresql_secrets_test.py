#!/usr/bin/python3
"""Keys and passwords that remain in the server process and its log. Run by tools/with_postgresql."""
import pathlib
import re
import unittest

import psycopg

from postgresql_server import ServerTest, connect

# Stored compressed, so the repeated text is in memory only after a function has decompressed the password.
PHRASE = b"correct horse battery staple "
PASSWORD = 300 * PHRASE
DECRYPT = "latchkey_decrypt(secret, password, 'sha1', '3des')"


def holds(process, text):
    """Whether the writable memory of a process contains the text."""
    with open(f"/proc/{process}/maps", encoding="utf-8") as maps, open(f"/proc/{process}/mem", "rb", 0) as memory:
        for line in maps:
            start, end, mode = re.match(r"(\w+)-(\w+) (\S+)", line).groups()
            if mode.startswith("rw") and "/dev/" not in line:
                memory.seek(int(start, 16))
                if text in memory.read(int(end, 16) - int(start, 16)):
                    return True
    return False


def resident(process):
    with open(f"/proc/{process}/status", encoding="utf-8") as file:
        return int(re.search(r"VmRSS:\s+(\d+) kB", file.read())[1]) << 10


class PasswordTest(ServerTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        with connect() as connection:
            connection.execute("DROP TABLE IF EXISTS vault")
            connection.execute("""CREATE TABLE vault AS SELECT latchkey_encrypt(int4send(i), p, 'sha1', '3des') AS secret,
                                  p AS password FROM generate_series(1, 100) AS i, (VALUES (%b::bytea)) AS given (p)""",
                               (PASSWORD,))

    def setUp(self):
        super().setUp()
        self.process = self.connection.info.backend_pid

    def is_in_memory(self):
        return holds(self.process, 10 * PHRASE)

    def test_it_is_in_memory_until_the_query_ends(self):
        with self.connection.transaction():
            self.connection.execute(f"DECLARE messages CURSOR FOR SELECT {DECRYPT} FROM vault")
            self.assertEqual(self.value("FETCH 1 FROM messages"), b"\0\0\0\1")
            self.assertTrue(self.is_in_memory())
            self.connection.execute("CLOSE messages")
            self.assertFalse(self.is_in_memory())

    def test_it_is_wiped_after_an_error(self):
        self.fails("22000", f"SELECT {DECRYPT} FROM (SELECT password, substr(secret, i) AS secret "
                            "FROM vault, generate_series(1, 2) AS i) AS damaged")
        self.assertFalse(self.is_in_memory())
        self.fails("22023", "SELECT latchkey_decrypt(secret, password, 'sha1', 'rc4', key_bits => 1) FROM vault")
        self.assertFalse(self.is_in_memory())

    def test_it_is_wiped_after_a_cancelled_query(self):
        with self.assertRaises(psycopg.errors.QueryCanceled), self.connection.transaction():
            self.connection.execute(f"""DECLARE messages CURSOR FOR
                                        SELECT {DECRYPT} FROM vault, generate_series(1, 100000)""")
            self.rows("FETCH 1 FROM messages")
            self.assertTrue(self.is_in_memory())
            self.connection.execute("SET LOCAL statement_timeout = '200ms'")
            self.connection.execute("MOVE ALL FROM messages")
        self.assertEqual(self.value("SELECT pg_backend_pid()"), self.process)
        self.assertFalse(self.is_in_memory())

    def test_it_is_wiped_after_identifying(self):
        self.assertNotEqual(self.rows("SELECT c.* FROM vault, latchkey_identify(secret, password) AS c LIMIT 1"), [])
        self.assertFalse(self.is_in_memory())

    def test_it_is_wiped_when_the_next_row_has_another(self):
        with self.connection.transaction():
            self.connection.execute("""DECLARE messages CURSOR FOR SELECT latchkey_encrypt('abc', p, 'md5', 'rc2')
                                       FROM ((SELECT password FROM vault LIMIT 1) UNION ALL VALUES ('short'::bytea))
                                       AS passwords (p)""")
            self.rows("FETCH 1 FROM messages")
            self.assertTrue(self.is_in_memory())
            self.rows("FETCH 1 FROM messages")
            self.assertFalse(self.is_in_memory())

    def test_keys_do_not_collect_in_memory(self):
        keys = """DO $$ BEGIN FOR i IN 1..{} LOOP
                    BEGIN
                      PERFORM latchkey_decrypt('\\x00', int4send(i), 'md5', 'rc2') FROM generate_series(1, 1);
                    EXCEPTION WHEN data_exception THEN NULL;
                    END;
                    PERFORM latchkey_encrypt('\\x00', int4send(i), 'md5', 'rc2') FROM generate_series(1, 1);
                  END LOOP; END $$"""
        self.connection.execute(keys.format(1000))
        before = resident(self.process)
        self.connection.execute(keys.format(30000))
        self.assertLess(resident(self.process) - before, 4 << 20)


class LogTest(ServerTest):
    FAILING = "SELECT latchkey_decrypt('\\x00', {}, 'md5', 'des')"

    def log(self):
        folder = pathlib.Path(self.value("SHOW data_directory")).parents[2] / "log"
        (file,) = folder.glob("*.log")
        return file.read_text(encoding="utf-8", errors="replace")

    def test_a_password_in_the_statement_is_logged_when_it_fails(self):
        self.fails("22000", self.FAILING.format("'logged password'"))
        self.assertIn("logged password", self.log())

    def test_a_parameter_is_not_logged_when_the_statement_fails(self):
        self.fails("22000", self.FAILING.format("%b"), b"a parameter's value")
        self.assertIn("latchkey_decrypt('\\x00', $1", self.log())
        self.assertNotIn("a parameter's value", self.log())
        self.assertNotIn(b"a parameter's value".hex(), self.log())


if __name__ == "__main__":
    unittest.main()
