#!/usr/bin/python3
"""What the SQLite functions return and raise. LD_LIBRARY_PATH names the folder of the extension."""
import json
import pathlib
import re
import sqlite3
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from vectors import PNEMAIL, digests, encryptions  # noqa: E402

ROWS = 10000
# Deriving a key from such a long password takes milliseconds; deriving one for each row would exceed this limit.
SLOW_PASSWORD, SLOW_TIME = 100_000, 20
MESSAGES = ("latchkey_encrypt", "latchkey_decrypt", "latchkey_try_decrypt")


def resident():
    return int(re.search(r"VmRSS:\s+(\d+) kB", pathlib.Path("/proc/self/status").read_text(encoding="utf-8"))[1]) << 10


class DatabaseTest(unittest.TestCase):
    def setUp(self):
        self.database = sqlite3.connect(":memory:")
        self.addCleanup(self.database.close)
        self.database.enable_load_extension(True)
        self.database.load_extension("mod_latchkey")

    def rows(self, query, *parameters):
        return self.database.execute(query, parameters).fetchall()

    def value(self, query, *parameters):
        ((value,),) = self.rows(query, *parameters)
        return value

    def message(self, query, *parameters):
        """The message of the error that the query ends with."""
        with self.assertRaises(sqlite3.Error) as caught:
            self.rows(query, *parameters)
        return str(caught.exception)


class AnswersTest(DatabaseTest):
    def test_every_known_ciphertext(self):
        for vector in encryptions():
            settings = (vector.password, vector.hash, vector.cipher, vector.provider)
            with self.subTest(vector):
                self.assertEqual(self.rows(
                    """SELECT latchkey_encrypt(?, ?, ?, ?, ?), latchkey_decrypt(?, ?, ?, ?, ?),
                              latchkey_try_decrypt(?, ?, ?, ?, ?)""",
                    vector.plaintext, *settings, vector.ciphertext, *settings, vector.ciphertext, *settings),
                    [(vector.ciphertext, vector.plaintext, vector.plaintext)])

    def test_every_known_digest(self):
        for vector in digests():
            with self.subTest(hash=vector.hash, length=len(vector.text)):
                self.assertEqual(self.value("SELECT latchkey_digest(?, ?)", vector.text, vector.hash), vector.value)

    def test_a_key_of_80_bits(self):
        self.assertEqual(self.value(
            "SELECT latchkey_decrypt(x'DC3D962329DD1B2F', 'PNEMAIL', 'MD5', 'RC2', 'any', 80)"), PNEMAIL.plaintext)

    def test_the_last_arguments_have_defaults(self):
        for cipher, provider in (("rc4", "base"), ("rc2", "base"), ("3des", "enhanced")):
            results = {self.value(f"SELECT latchkey_encrypt('text', 'x', 'md5', '{cipher}' {more})")
                       for more in ("", ", 'any'", f", '{provider}'", ", 'any', 0", ", 'any', 0, 0")}
            self.assertEqual(len(results), 1, cipher)

    def test_null_for_each_argument(self):
        arguments = ["x'00'", "'x'", "'md5'", "'rc4'", "'any'", "0", "0"]
        for function in MESSAGES:
            for i in range(len(arguments)):
                given = ", ".join("NULL" if i == j else argument for j, argument in enumerate(arguments))
                self.assertIsNone(self.value(f"SELECT {function}({given})"), (function, i))
        self.assertEqual(self.rows("SELECT latchkey_digest(NULL, 'md5'), latchkey_digest('', NULL)"), [(None, None)])

    def test_empty_values(self):
        self.assertEqual(self.value("SELECT latchkey_encrypt('', x'', 'md5', 'rc4')"), b"")
        self.assertEqual(self.value("SELECT latchkey_decrypt(latchkey_encrypt('', '', 'md5', 'des'), '', 'md5', 'des')"),
                         b"")
        self.assertIn("(location 717", self.message("SELECT latchkey_decrypt('', '', 'md5', 'des')"))

    def test_texts_are_their_bytes_in_utf_8_in_a_database_of_utf_16(self):
        query = "SELECT latchkey_encrypt(?, ?, 'sha1', 'rc2')"
        expected = self.value(query, "Zürich".encode(), "Köln".encode())
        self.setUp()  # another database
        self.database.execute("PRAGMA encoding = 'UTF-16'")
        self.assertEqual(self.value("PRAGMA encoding"), "UTF-16le")
        self.assertEqual(self.value(query, "Zürich", "Köln"), expected)
        self.assertEqual(self.value("SELECT latchkey_encrypt('Zürich', 'Köln', 'sha1', 'rc2')"), expected)

    def test_use_in_a_view_that_is_not_trusted_and_in_an_index(self):
        self.database.executescript("""
            PRAGMA trusted_schema = OFF;
            CREATE TABLE secrets (secret);
            INSERT INTO secrets VALUES (latchkey_encrypt('text', 'x', 'md5', 'des'));
            CREATE VIEW plain AS SELECT latchkey_decrypt(secret, 'x', 'md5', 'des') AS text FROM secrets;
            CREATE INDEX decrypted ON secrets (latchkey_decrypt(secret, 'x', 'md5', 'des'));""")
        self.assertEqual(self.value("SELECT text FROM plain"), b"text")


class FailuresTest(DatabaseTest):
    def test_data_that_does_not_decrypt(self):
        call = "(x'0011223344556677', 'wrong', 'sha1', '3des')"
        self.assertRegex(self.message(f"SELECT latchkey_decrypt{call}"),
                         r"^latchkey_decrypt: .* \(location 717, number \d{3}\)$")
        self.assertIsNone(self.value(f"SELECT latchkey_try_decrypt{call}"))

    def test_settings_that_the_library_refuses(self):
        for function in MESSAGES:
            for settings, text in (("'md6', 'rc4'", "718"), ("'md5', 'aes'", "719"), ("'', ''", "718"), ("1, 2", "718"),
                                   ("'md5', '3des', 'base'", "7(16|19|23)"), ("'md5', 'rc4', 'other'", "provider is one"),
                                   ("'md5', 'rc2', 'any', 41", "723"), ("'md5', 'rc2', 'any', -1", "723"),
                                   ("'md5', 'rc2', 'any', 4294967336", "723"), ("'md5', 'des', 'any', 56", "723"),
                                   ("'md5', 'rc2', 'any', 0, 1025", "723")):
                with self.subTest(function=function, settings=settings):
                    self.assertRegex(self.message(f"SELECT {function}(x'00', 'x', {settings})"), f"^{function}: .*{text}")
        self.assertRegex(self.message("SELECT latchkey_digest('', 'md6')"),
                         r"^latchkey_digest: .*\. The hash is one of md5, md4, md2, sha1\.$")

    def test_numbers_are_refused_as_data_and_passwords(self):
        for value in ("1", "1.5"):
            for call in (f"latchkey_encrypt({value}, 'x', 'md5', 'rc4')", f"latchkey_encrypt('x', {value}, 'md5', 'rc4')",
                         f"latchkey_digest({value}, 'md5')", f"latchkey_identify({value}, 'x')"):
                self.assertIn("blobs or texts", self.message(f"SELECT {call}"), call)

    def test_other_numbers_of_arguments(self):
        for arguments in ("", "1, 2, 3", "1, 2, 3, 4, 5, 6, 7, 8"):
            self.assertIn("wrong number of arguments", self.message(f"SELECT latchkey_decrypt({arguments})"))

    def test_no_message_shows_data_or_password(self):
        for arguments in ("'open sesame', 'md5', 'des'", "'md5', 'open sesame', 'des'", "'md5', 'md5', 'open sesame'",
                          "'md5', 'md5', 'rc4', 'open sesame'"):
            message = self.message(f"SELECT latchkey_decrypt('the data of it', {arguments})")
            self.assertNotIn("open sesame", message)
            self.assertNotIn("the data of it", message)

    def test_a_result_longer_than_the_database_allows(self):
        self.database.setlimit(sqlite3.SQLITE_LIMIT_LENGTH, 1000)
        self.assertEqual(len(self.value("SELECT latchkey_encrypt(zeroblob(990), 'x', 'md5', 'des')")), 992)
        self.assertIn("too big", self.message("SELECT latchkey_encrypt(zeroblob(1000), 'x', 'md5', 'des')"))


class ManyRowsTest(DatabaseTest):
    def setUp(self):
        super().setUp()
        self.database.executescript(f"""
            CREATE TABLE secrets (i INTEGER, plain, secret);
            WITH RECURSIVE numbers (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM numbers WHERE i < {ROWS})
            INSERT INTO secrets
            SELECT i, CAST('text ' || i AS BLOB), latchkey_encrypt('text ' || i, 'horse', 'sha1', '3des') FROM numbers;""")

    def test_a_column_is_migrated_in_one_statement(self):
        self.database.execute("UPDATE secrets SET secret = latchkey_decrypt(secret, ?, 'sha1', '3des')", ("horse",))
        self.assertEqual(self.value("SELECT count(*) FROM secrets WHERE plain = secret"), ROWS)

    def test_settings_and_passwords_that_change_from_row_to_row(self):
        self.database.executescript("""
            CREATE TABLE hashes (hash); INSERT INTO hashes VALUES ('md5'), ('md4'), ('md2'), ('sha1');
            CREATE TABLE ciphers (cipher, provider);
            INSERT INTO ciphers VALUES ('rc4', 'base'), ('rc4', 'enhanced'), ('rc2', 'base'), ('rc2', 'enhanced'),
                                       ('des', 'base'), ('3des', 'enhanced'), ('3des-112', 'any');
            CREATE TABLE made AS SELECT plain, hash, cipher, provider, 'p' || (i % 21) AS password,
              latchkey_encrypt(plain, 'p' || (i % 21), hash, cipher, provider) AS e,
              latchkey_encrypt('the same text', 'p' || (i % 21), hash, cipher, provider) AS same,
              latchkey_encrypt('the same text', 'constant', hash, cipher, provider) AS constant
              FROM (SELECT * FROM secrets LIMIT 1000), hashes, ciphers;""")
        self.assertEqual(self.rows(
            """SELECT count(*), sum(latchkey_decrypt(e, password, hash, cipher, provider) = plain), count(DISTINCT same),
                      count(DISTINCT constant) FROM made"""), [(28000, 28000, 21 * 28, 28)])

    def test_rows_that_fail_leave_the_others_alone(self):
        self.assertEqual(self.rows(
            """SELECT count(*), count(latchkey_try_decrypt(CASE i % 10 WHEN 0 THEN substr(secret, 2) ELSE secret END,
                                                           'horse', 'sha1', '3des')) FROM secrets"""),
            [(ROWS, ROWS * 9 // 10)])

    def test_the_next_execution_of_a_statement_has_another_password(self):
        query = "SELECT latchkey_encrypt('text', ?, 'md5', 'rc2')"
        self.assertEqual(len({self.value(query, str(i % 3)) for i in range(12)}), 3)

    def test_the_key_of_a_constant_password_is_derived_once(self):
        start = time.monotonic()
        self.rows("SELECT count(latchkey_encrypt(plain, ?, 'md2', 'rc2')) FROM secrets", bytes(SLOW_PASSWORD))
        self.assertLess(time.monotonic() - start, SLOW_TIME)

    def test_keys_do_not_collect_in_memory(self):
        keys = "SELECT count(latchkey_try_decrypt(x'00', 'p' || i, 'md5', 'rc2')) FROM secrets"
        self.rows(keys)
        before = resident()
        for i in range(20):
            self.rows(keys)
            for _ in range(500):
                self.message("SELECT latchkey_decrypt(x'00', ?, 'md5', 'rc2')", str(i))
        self.assertLess(resident() - before, 8 << 20)


class IdentifyTest(DatabaseTest):
    def setUp(self):
        super().setUp()
        self.database.execute("CREATE TABLE secrets (plain, secret)")
        for text in ("The first text", "and another of the texts", "a third one, longer than the others were"):
            self.database.execute(
                "INSERT INTO secrets VALUES (?1, latchkey_encrypt(?1, 'horse', 'md2', 'rc2', 'enhanced'))", (text,))

    def candidates(self):
        return json.loads(self.value("SELECT latchkey_identify(secret, 'horse') FROM secrets"))

    def test_the_most_probable_candidate_comes_first(self):
        self.database.execute("INSERT INTO secrets VALUES (NULL, NULL)")
        candidates = self.candidates()
        best = candidates[0]
        self.assertEqual({**best, "probability": None},
                         {"hash": "md2", "cipher": "rc2", "provider": "enhanced", "key_bits": best["key_bits"],
                          "rc2_effective_bits": best["rc2_effective_bits"], "padding": 2, "probability": None})
        self.assertGreater(best["probability"], 0.9)
        probabilities = [candidate["probability"] for candidate in candidates]
        self.assertEqual(probabilities, sorted(probabilities, reverse=True))

    def test_padding_is_null_without_blocks(self):
        self.database.execute("UPDATE secrets SET secret = latchkey_encrypt(plain, 'horse', 'md5', 'rc4')")
        self.assertEqual([self.candidates()[0][name] for name in ("hash", "cipher", "provider", "padding")],
                         ["md5", "rc4", "base", None])

    def test_a_found_setting_decrypts(self):
        self.assertEqual(self.value(
            """WITH found AS (SELECT value AS best FROM json_each((SELECT latchkey_identify(secret, 'horse') FROM secrets))
                              LIMIT 1)
               SELECT sum(latchkey_decrypt(secret, 'horse', best ->> 'hash', best ->> 'cipher', best ->> 'provider',
                                           best ->> 'key_bits', best ->> 'rc2_effective_bits') = CAST(plain AS BLOB))
               FROM secrets, found"""), 3)

    def test_no_rows_and_no_settings(self):
        self.assertIsNone(self.value("SELECT latchkey_identify(secret, 'horse') FROM secrets WHERE secret IS NULL"))
        self.assertIsNone(self.value("SELECT latchkey_identify(secret, NULL) FROM secrets"))

    def test_rows_with_different_passwords(self):
        self.assertIn("the same password", self.message("SELECT latchkey_identify(secret, plain) FROM secrets"))


if __name__ == "__main__":
    unittest.main()
