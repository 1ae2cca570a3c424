"""A connection for each test to the server that the environment names (tools/with_postgresql)."""
import unittest

import psycopg


def connect():
    return psycopg.connect(autocommit=True)


class ServerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with connect() as connection:
            connection.execute("CREATE EXTENSION IF NOT EXISTS latchkey")

    def setUp(self):
        self.connection = self.enterContext(connect())

    def rows(self, query, *parameters):
        return self.connection.execute(query, parameters).fetchall()

    def value(self, query, *parameters):
        (row,) = self.rows(query, *parameters)
        (value,) = row
        return value

    def fails(self, sqlstate, query, *parameters):
        """The error that the query ends with; the connection works afterwards, on the same server process."""
        process = self.connection.info.backend_pid
        with self.assertRaises(psycopg.Error) as caught:
            self.rows(query, *parameters)
        self.assertEqual(caught.exception.sqlstate, sqlstate, caught.exception)
        self.assertEqual(self.value("SELECT pg_backend_pid()"), process)
        return caught.exception.diag
