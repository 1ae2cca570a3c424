#!/usr/bin/python3
"""What the functions return and raise. Run by tools/with_postgresql."""
import hashlib
import pathlib
import sys
import unittest

from postgresql_server import ServerTest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from vectors import PNEMAIL, digests, encryptions  # noqa: E402

SECRET = "\\xdecafbad5ec2e7da7a00"  # a data argument that messages must not show
DIAGNOSTICS = ("message_primary", "message_detail", "message_hint", "context", "internal_query")


def triple_des_key(password):
    """The key that CryptDeriveKey makes for 3DES from SHA-1."""
    value = hashlib.sha1(password).digest()
    return b"".join(
        hashlib.sha1(bytes(mask ^ byte for byte in value.ljust(64, b"\0"))).digest() for mask in (0x36, 0x5C))[:24]


class AnswersTest(ServerTest):
    def test_every_known_ciphertext(self):
        vectors = encryptions()
        for vector in vectors:
            settings = (vector.password, vector.hash, vector.cipher, vector.provider)
            with self.subTest(vector):
                self.assertEqual(self.rows(
                    """SELECT latchkey_encrypt(%s, %s, %s, %s, %s), latchkey_decrypt(%s, %s, %s, %s, %s),
                              latchkey_try_decrypt(%s, %s, %s, %s, %s)""",
                    vector.plaintext, *settings, vector.ciphertext, *settings, vector.ciphertext, *settings),
                    [(vector.ciphertext, vector.plaintext, vector.plaintext)])

    def test_every_known_digest(self):
        for vector in digests():
            with self.subTest(hash=vector.hash, length=len(vector.text)):
                self.assertEqual(self.value("SELECT latchkey_digest(%s, %s)", vector.text, vector.hash), vector.value)

    def test_a_key_of_80_bits_by_named_arguments(self):
        self.assertEqual(self.value(
            "SELECT latchkey_decrypt('\\xDC3D962329DD1B2F', 'PNEMAIL', hash => 'MD5', cipher => 'RC2', key_bits => 80)"),
            PNEMAIL.plaintext)
        self.assertEqual(self.value(
            "SELECT latchkey_encrypt(key_bits => 80, cipher => 'rc2', hash => 'md5', password => %s, data => %s)",
            PNEMAIL.password, PNEMAIL.plaintext), PNEMAIL.ciphertext)

    def test_rc2_effective_bits_follow_the_key_bits_unless_given(self):
        query = "SELECT latchkey_encrypt('abcdefgh', 'x', 'md5', 'rc2', 'enhanced', {})"
        default = self.value(query.format("0"))
        self.assertEqual(self.value(query.format("128, 128")), default)
        self.assertEqual(self.value(query.format("rc2_effective_bits => 128")), default)
        self.assertNotEqual(self.value(query.format("rc2_effective_bits => 40")), default)

    def test_any_provider_is_base_unless_only_enhanced_can(self):
        query = "SELECT latchkey_encrypt('abcdefgh', 'x', 'sha1', '{}' {})"
        for cipher, provider in (("rc4", "base"), ("rc2", "base"), ("3des", "enhanced"), ("3des-112", "enhanced")):
            with self.subTest(cipher):
                expected = self.value(query.format(cipher, f", '{provider}'"))
                self.assertEqual(self.value(query.format(cipher, "")), expected)
                self.assertEqual(self.value(query.format(cipher, ", 'any'")), expected)

    def test_null_for_each_argument(self):
        arguments = ["'\\x00'", "'x'", "'md5'", "'rc4'", "'any'", "0", "0"]
        for function in ("encrypt", "decrypt", "try_decrypt"):
            for i in range(len(arguments)):
                given = ", ".join("NULL" if i == j else argument for j, argument in enumerate(arguments))
                self.assertIsNone(self.value(f"SELECT latchkey_{function}({given})"), (function, i))
        self.assertIsNone(self.value("SELECT latchkey_digest(NULL, 'md5')"))
        self.assertIsNone(self.value("SELECT latchkey_digest('', NULL)"))
        self.assertEqual(self.rows("SELECT * FROM latchkey_identify(NULL, 'x')"), [])

    def test_empty_values(self):
        self.assertEqual(self.value("SELECT latchkey_encrypt('', '', 'md5', 'rc4')"), b"")
        self.assertEqual(self.value("SELECT latchkey_decrypt(latchkey_encrypt('', '', 'md5', 'des'), '', 'md5', 'des')"),
                         b"")
        self.fails("22000", "SELECT latchkey_decrypt('', '', 'md5', 'des')")

    def test_data_that_does_not_decrypt(self):
        call = "('\\x0011223344556677', 'wrong', 'sha1', '3des')"
        error = self.fails("22000", f"SELECT latchkey_decrypt{call}")
        self.assertRegex(error.message_detail, r"^Location 717, number \d{3}\.$")
        self.assertIsNone(self.value(f"SELECT latchkey_try_decrypt{call}"))

    def test_settings_that_the_library_refuses(self):
        for function in ("encrypt", "decrypt", "try_decrypt"):
            for settings, location in (("'md6', 'rc4'", "718"), ("'md5', 'aes'", "719"), ("'', ''", "718"),
                                       ("'md5', '3des', 'base'", "7(16|19|23)"), ("'md5', 'rc4', 'other'", None),
                                       ("'md5', 'rc2', key_bits => 41", "723"),
                                       ("'md5', 'rc2', key_bits => -1", "723"),
                                       ("'md5', 'rc2', rc2_effective_bits => 1025", "72[123]"),
                                       ("'md5', 'des', key_bits => 56", "723")):
                with self.subTest(function=function, settings=settings):
                    error = self.fails("22023", f"SELECT latchkey_{function}('\\x00', 'x', {settings})")
                    if location:
                        self.assertRegex(error.message_detail, rf"^Location {location}, number \d+\.$")
        error = self.fails("22023", "SELECT latchkey_digest('', 'md6')")
        self.assertEqual(error.message_hint, "The hash is one of md5, md4, md2, sha1.")

    def test_no_message_shows_data_or_password(self):
        for sqlstate, arguments in (("22000", "'open sesame', 'md5', 'des'"), ("22023", "'md5', 'open sesame', 'des'"),
                                    ("22023", "'md5', 'md5', 'open sesame'"),
                                    ("22023", "'md5', 'md5', 'rc4', 'open sesame'")):
            error = self.fails(sqlstate, f"SELECT latchkey_decrypt('{SECRET}', {arguments})")
            texts = " ".join(str(getattr(error, name)) for name in DIAGNOSTICS)
            self.assertNotIn("open sesame", texts)
            self.assertNotIn(SECRET[2:], texts)

    def test_the_functions_are_immutable_strict_and_parallel_safe(self):
        self.assertEqual(
            self.rows("""SELECT proname::text, provolatile::text, proisstrict, proparallel::text FROM pg_proc
                         WHERE proname LIKE 'latchkey%%' ORDER BY proname"""),
            [(f"latchkey_{name}", "i", True, "s")
             for name in ("decrypt", "digest", "encrypt", "identify", "try_decrypt")])


class LongValuesTest(ServerTest):
    """Values of several megabytes are processed in pieces; pgcrypto and hashlib give the expected results."""
    PASSWORD = b"a long password"

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.data = bytes(range(251)) * 14000

    def setUp(self):
        super().setUp()
        self.connection.execute("CREATE EXTENSION IF NOT EXISTS pgcrypto")

    def test_encryption_and_decryption_in_pieces(self):
        key = triple_des_key(self.PASSWORD)
        for length in (1 << 20, (1 << 20) + 1, (2 << 20) - 1, 2 << 20, len(self.data)):
            with self.subTest(length):
                self.assertEqual(self.rows(
                    """SELECT e = encrypt(d, %s, '3des-cbc/pad:pkcs'), latchkey_decrypt(e, p, 'sha1', '3des') = d
                       FROM (SELECT d, p, latchkey_encrypt(d, p, 'sha1', '3des') AS e
                             FROM (SELECT %s::bytea AS d, %s::bytea AS p) AS given) AS made""",
                    key, self.data[:length], self.PASSWORD), [(True, True)])

    def test_a_long_value_that_does_not_decrypt(self):
        error = self.fails("22000", "SELECT latchkey_decrypt(%s, 'x', 'md5', 'des')", self.data[:-1])
        self.assertIn("717", error.message_detail)
        self.assertIsNone(self.value("SELECT latchkey_try_decrypt(%s, 'x', 'md5', 'des')", self.data[:-1]))

    def test_digests_in_pieces(self):
        for length in ((1 << 20) + 1, len(self.data)):
            self.assertEqual(self.value("SELECT latchkey_digest(%s, 'sha1')", self.data[:length]),
                             hashlib.sha1(self.data[:length]).digest())
        self.fails("22023", "SELECT latchkey_digest(%s, 'sha2')", self.data)

    def test_values_and_passwords_that_the_server_stores_compressed_or_apart(self):
        self.connection.execute("CREATE TEMPORARY TABLE stored (d bytea, p bytea)")
        incompressible = hashlib.shake_256(b"").digest(5000)
        for d, p in ((bytes(100000), b"short"), (incompressible, b"a" * 50000), (b"abc", incompressible)):
            self.connection.execute("INSERT INTO stored VALUES (%s, %s)", (d, p))
        self.assertEqual(self.rows(
            """SELECT latchkey_decrypt(latchkey_encrypt(d, p, 'md5', 'rc2'), p, 'md5', 'rc2') = d,
                      latchkey_encrypt(d, p, 'md5', '3des-112')
                        = encrypt(d, digest(p, 'md5') || substr(digest(p, 'md5'), 1, 8), '3des-cbc/pad:pkcs'),
                      latchkey_digest(d, 'md5') = digest(d, 'md5')
               FROM stored"""), 3 * [(True, True, True)])


class IdentifyTest(ServerTest):
    PLAIN = [b"The first text", b"and another of the texts", b"a third one, longer than the others were"]

    def encrypted(self, settings):
        return [self.value(f"SELECT latchkey_encrypt(%s, 'horse', {settings})", text) for text in self.PLAIN]

    def test_the_most_probable_candidate_comes_first(self):
        samples = self.encrypted("'sha1', '3des'")
        rows = self.rows("SELECT * FROM latchkey_identify(%s, 'horse', %s, %s)", *samples)
        self.assertEqual(rows[0][:3], ("sha1", "3des", "enhanced"))
        self.assertEqual(rows[0][5], 8 - len(self.PLAIN[0]) % 8)
        self.assertGreater(rows[0][6], 0.9)
        self.assertEqual([row[6] for row in rows], sorted((row[6] for row in rows), reverse=True))

    def test_samples_of_a_column(self):
        self.connection.execute("CREATE TEMPORARY TABLE samples (secret bytea)")
        for sample in [None, *self.encrypted("'md2', 'rc4', 'enhanced'")]:
            self.connection.execute("INSERT INTO samples VALUES (%s)", (sample,))
        rows = self.rows("""SELECT c.* FROM (SELECT array_agg(secret ORDER BY secret) AS s FROM samples) AS all_samples,
                            latchkey_identify(s[1], 'horse', VARIADIC s) AS c""")
        self.assertEqual((*rows[0][:3], rows[0][5]), ("md2", "rc4", "enhanced", None))

    def test_a_found_setting_decrypts(self):
        samples = self.encrypted("'md4', 'rc2', 'base'")
        self.assertEqual(self.value(
            """SELECT latchkey_decrypt(%s, 'horse', hash, cipher, provider, key_bits, rc2_effective_bits)
               FROM latchkey_identify(%s, 'horse', %s, %s) LIMIT 1""", samples[0], *samples), self.PLAIN[0])

    def test_samples_that_are_too_long(self):
        self.fails("54000", "SELECT latchkey_identify(%s, 'x', %s)", bytes(16 << 20), b"\0")


if __name__ == "__main__":
    unittest.main()
