#!/usr/bin/python3
"""The functions in queries of many rows: keys, plans, cancellation, memory. Run by tools/with_postgresql."""
import os
import resource
import subprocess
import threading
import time
import unittest

from postgresql_server import ServerTest, connect

ROWS = 20000
SUM = """SELECT sum(('x' || encode(substr(latchkey_digest(latchkey_decrypt(secret, 'horse', 'sha1', '3des'), 'md5'),
                                          1, 4), 'hex'))::bit(32)::bigint) FROM secrets"""
ENDLESS = """SELECT count(latchkey_encrypt(int8send(i * j), 'x', 'md5', 'des'))
             FROM generate_series(1, 100000) AS i, generate_series(1, 100000) AS j"""
SOON = 60  # seconds within which a test's condition becomes true, even on a busy machine
# Deriving a key from such a long password takes milliseconds; deriving one for each row would exceed this limit.
SLOW_PASSWORD, SLOW_TIME = 100_000, 20
LONG_VALUE = 100_000_000


def virtual_memory(process):
    with open(f"/proc/{process}/statm", encoding="ascii") as file:
        return int(file.read().split()[0]) * resource.getpagesize()


def limit_memory(process, limit):
    owner = os.stat(f"/proc/{process}")
    subprocess.run(["prlimit", f"--pid={process}", f"--as={limit}:unlimited"], check=True,
                   user=owner.st_uid, group=owner.st_gid)


class TablesTest(ServerTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        with connect() as connection:
            connection.execute("DROP TABLE IF EXISTS secrets, long_values")
            connection.execute(f"""CREATE TABLE secrets AS SELECT i, convert_to('text ' || i, 'UTF8') AS plain,
                latchkey_encrypt(convert_to('text ' || i, 'UTF8'), 'horse', 'sha1', '3des') AS secret
                FROM generate_series(1, {ROWS}) AS i""")
            connection.execute("ANALYZE secrets")
            # PostgreSQL compresses it, so it needs little space.
            connection.execute(f"CREATE TABLE long_values AS SELECT convert_to(repeat('a', {LONG_VALUE}), 'UTF8') AS d")

    def rows(self, query, *parameters):
        """The rows of the last statement."""
        cursor = self.connection.execute(query, parameters or None)
        while cursor.nextset():
            pass
        return cursor.fetchall()


class QueriesTest(TablesTest):
    def test_a_column_is_migrated_in_one_statement(self):
        self.assertEqual(self.rows(
            """SELECT count(*), count(*) FILTER (WHERE latchkey_decrypt(secret, 'horse', 'sha1', '3des') = plain)
               FROM secrets"""), [(ROWS, ROWS)])

    def test_the_key_is_derived_once_for_a_query(self):
        start = time.monotonic()
        for password in ("%s", "(SELECT %s::bytea)"):
            self.rows(f"SELECT count(latchkey_encrypt(plain, {password}, 'md2', 'rc2')) FROM secrets",
                      bytes(SLOW_PASSWORD))
        self.assertLess(time.monotonic() - start, SLOW_TIME)

    def test_settings_and_passwords_that_change_from_row_to_row(self):
        self.assertEqual(self.rows(
            """WITH given AS (SELECT plain, convert_to(repeat('p', i % 7) || i % 3, 'UTF8') AS password,
                                     (ARRAY['md5', 'md4', 'md2', 'sha1'])[1 + i / 21 % 4] AS hash,
                                     (ARRAY['rc4', 'rc2', 'des'])[1 + i / 84 % 3] AS cipher,
                                     (ARRAY['base', 'enhanced'])[1 + i / 252 % 2] AS provider FROM secrets),
                    made AS (SELECT *, latchkey_encrypt(plain, password, hash, cipher, provider) AS e FROM given)
               SELECT count(*), count(*) FILTER (WHERE latchkey_decrypt(e, password, hash, cipher, provider) = plain),
                      count(DISTINCT latchkey_encrypt('the same text', password, hash, cipher, provider)) FROM made"""),
            # DES has the same keys under both providers.
            [(ROWS, ROWS, 21 * 4 * 5)])

    def test_rows_that_fail_leave_the_others_alone(self):
        self.assertEqual(self.rows(
            """SELECT count(*), count(latchkey_try_decrypt(damaged, 'horse', 'sha1', '3des'))
               FROM (SELECT CASE WHEN i % 10 = 0 THEN substr(secret, 2) ELSE secret END AS damaged FROM secrets) AS s"""),
            [(ROWS, ROWS * 9 // 10)])

    def test_a_parallel_plan_gives_the_same_sum(self):
        self.connection.execute("SET max_parallel_workers_per_gather = 0")
        expected = self.value(SUM)
        for setting in ("parallel_setup_cost = 0", "parallel_tuple_cost = 0", "min_parallel_table_scan_size = 0",
                        "max_parallel_workers_per_gather = 2"):
            self.connection.execute(f"SET {setting}")
        plan = "\n".join(line for line, in self.rows(f"EXPLAIN (ANALYZE, VERBOSE, TIMING OFF) {SUM}"))
        self.assertRegex(plan, r"Partial Aggregate .*\n *Output: .*latchkey_decrypt")
        self.assertIn("Parallel Seq Scan", plan)
        self.assertRegex(plan, "Workers Launched: [12]")
        self.assertEqual(self.value(SUM), expected)

    def test_an_index_on_the_decrypted_value(self):
        call = "latchkey_try_decrypt(secret, 'horse', 'sha1', '3des')"
        self.connection.execute(f"CREATE INDEX decrypted ON secrets ({call})")
        self.connection.execute("SET enable_seqscan = off")
        query = f"SELECT i FROM secrets WHERE {call} = 'text 77'"
        self.assertIn("decrypted", str(self.rows(f"EXPLAIN {query}")))
        self.assertEqual(self.value(query), 77)

    def test_a_prepared_statement_with_one_password_after_the_other(self):
        self.connection.execute("""PREPARE made(bytea) AS
                                   SELECT latchkey_digest(latchkey_encrypt('abc', $1, 'sha1', 'rc2'), 'md5')""")
        results = [self.value(f"EXECUTE made('{i % 3}')") for i in range(12)]
        self.assertEqual(len(set(results)), 3)
        self.assertEqual(results[:3] * 4, results)

    def test_a_loop_with_one_password_after_the_other(self):
        self.assertEqual(self.rows("""
            CREATE FUNCTION pg_temp.loop() RETURNS SETOF bytea LANGUAGE plpgsql AS $$
            BEGIN
              FOR i IN 1..9 LOOP
                RETURN NEXT latchkey_decrypt(latchkey_encrypt('abc', int4send(i % 2), 'sha1', 'rc2'), int4send(i % 2),
                                             'sha1', 'rc2');
              END LOOP;
            END $$; SELECT DISTINCT * FROM pg_temp.loop()"""), [(b"abc",)])


class EndOfQueryTest(TablesTest):
    """A query that ends early leaves its server process working: fails() checks this."""

    def test_cancelling_a_query(self):
        process = self.connection.info.backend_pid
        query = threading.Thread(target=self.fails, args=("57014", ENDLESS))
        query.start()
        with connect() as other:
            end = time.monotonic() + SOON
            active = "SELECT count(*) FROM pg_stat_activity WHERE pid = %s AND state = 'active' AND query = %s"
            while other.execute(active, (process, ENDLESS)).fetchone() == (0,):
                self.assertLess(time.monotonic(), end)
            self.assertEqual(other.execute("SELECT pg_cancel_backend(%s)", (process,)).fetchone(), (True,))
        query.join(SOON)
        self.assertFalse(query.is_alive())
        self.assertEqual(self.value("SELECT count(latchkey_encrypt(secret, 'x', 'md5', 'des')) FROM secrets"), ROWS)

    def test_a_timeout_of_a_statement(self):
        self.connection.execute("SET statement_timeout = '500ms'")
        self.fails("57014", ENDLESS)

    def test_a_timeout_in_one_long_value(self):
        self.connection.execute("SET statement_timeout = '1s'")
        for call in ("latchkey_digest(d, 'md2')", "latchkey_encrypt(d || d || d, 'x', 'md5', '3des')"):
            start = time.monotonic()
            self.fails("57014", f"SELECT {call} FROM long_values")
            self.assertLess(time.monotonic() - start, 4, "the whole value takes more than twice as long")

    def test_running_out_of_memory_for_a_result_is_an_error(self):
        process = self.connection.info.backend_pid
        # Enough for the value, not for the result.
        limit_memory(process, virtual_memory(process) + LONG_VALUE * 3 // 2)
        for function in ("encrypt", "try_decrypt"):
            error = self.fails("53200", f"SELECT latchkey_{function}(d, 'x', 'md5', 'des') FROM long_values")
            self.assertIn(f"request of size {LONG_VALUE + 12} ", error.message_detail)
        limit_memory(process, "unlimited")
        self.assertEqual(self.value("SELECT length(latchkey_encrypt(d, 'x', 'md5', 'des')) FROM long_values"),
                         LONG_VALUE + 8)


if __name__ == "__main__":
    unittest.main()
