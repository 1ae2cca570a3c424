"""Prints the digests of a text by every hash algorithm, through the COM component.

    py -m pip install pywin32
    py hash_text.py TEXT

Needs the registered DLL of Python's bitness. Not run by this project's tests: they have no Python for Windows.
On Linux, encrypt_bytes.py uses the shared library.
"""
import sys

import win32com.client

ALGORITHMS = {"MD5": 1, "MD4": 2, "MD2": 3, "SHA-1": 4}


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: hash_text.py TEXT")
    record = win32com.client.Dispatch("Latchkey.clsMain")  # first: makes the error record of this thread
    api = win32com.client.Dispatch("Latchkey.clsCryptoAPI")
    for name, number in ALGORITHMS.items():
        digest = api.CreateHash(sys.argv[1], number, True)
        if not digest:  # no operation raises an error
            sys.exit(f"{name} failed at location {record.ErrorLocationID}: {record.AppErrorDescription}")
        print(f"{name:6} {digest}")


if __name__ == "__main__":
    main()
