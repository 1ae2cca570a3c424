"""Prints the digests of a text by every hash algorithm, through the COM component.

    py -m pip install pywin32
    py hash_text.py TEXT

Needs the registered DLL of Python's bitness. Not run by this project's tests: they have no Python for Windows.
On Linux, use the package latchkey (docs/python.md).
"""
import sys

import win32com.client

# The type library's numbers, whose names (latchkeyHashMD5 and so on) are not available to late binding.
ALGORITHMS = {"MD5": 1, "MD4": 2, "MD2": 3, "SHA-1": 4}
LATCHKEY_ERROR_RUN_TIME = 1


def failure(record):
    """The error record: no operation raises an error by itself."""
    run_time = record.ErrorType == LATCHKEY_ERROR_RUN_TIME
    description = record.RTErrorDescription if run_time else record.AppErrorDescription
    return f"failed at location {record.ErrorLocationID}: {description}"


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: hash_text.py TEXT")
    record = win32com.client.Dispatch("Latchkey.clsMain")  # first: makes the error record of this thread
    api = win32com.client.Dispatch("Latchkey.clsCryptoAPI")
    for name, number in ALGORITHMS.items():
        digest = api.CreateHash(sys.argv[1], number, True)
        if not digest:
            sys.exit(f"{name} {failure(record)}")
        print(f"{name:6} {digest}")


if __name__ == "__main__":
    main()
