"""Under valgrind's memcheck, no branch and no address of the constant-time routines depends on a secret.

    side_channels_test.py PROGRAM
"""
import itertools
import os
import subprocess
import sys
import unittest

FOUND = 99


def memcheck(routine, level=""):
    return subprocess.run(
        ["valgrind", "--quiet", "--error-exitcode=%d" % FOUND, PROGRAM, routine], capture_output=True, text=True,
        env={**os.environ, "LATCHKEY_CPU": level})


class SideChannelTest(unittest.TestCase):
    def test_the_routines_depend_on_no_secret(self):
        # Valgrind runs no AVX-512; those kernels follow the same method without a branch or an address.
        both = itertools.product(("padding", "encode_hex", "decode_hex"), ("portable", "avx2"))
        # The portable check for ASCII compares a number in which memcheck cannot distinguish known bits from secret ones.
        for routine, level in [*both, ("encode_text", "avx2")]:
            with self.subTest(routine, level=level):
                result = memcheck(routine, level)
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertNotEqual(result.stdout, "")

    def test_a_branch_and_a_table_are_found(self):
        for routine in ("branch", "table"):
            with self.subTest(routine):
                result = memcheck(routine)
                self.assertEqual(result.returncode, FOUND, result.stderr)
                self.assertIn("ninitialised value", result.stderr)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop()
    unittest.main()
