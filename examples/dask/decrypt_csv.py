#!/usr/bin/env python3
"""Decrypts a column of many CSV files on the workers of a Dask scheduler. README.md shows how to run it.

The columns plaintext and error replace the ciphertext; one of the two is empty in each row. A file that fails is
reported, and the others are processed. Files that the target folder already has are skipped, so a run that was stopped
can be repeated.
"""
import argparse
import contextlib
import csv
import itertools
import os
import pathlib
import sys
import tempfile

import latchkey

CHUNK_ROWS = 1000


def open_key(arguments):
    """Reads the password on the worker, because the scheduler stores and shows the arguments of tasks."""
    password = pathlib.Path(arguments.password_file).read_bytes().rstrip(b"\r\n")
    return latchkey.Key(password, hash=arguments.hash, cipher=arguments.cipher, provider=arguments.provider,
                        key_bits=arguments.key_bits)


def from_hex(text):
    """The bytes, or None if the text is not hexadecimal."""
    try:
        return bytes.fromhex(text)
    except (TypeError, ValueError):
        return None


def to_row(result, encoding):
    if result is None:
        return "", "not hexadecimal text"
    if isinstance(result, latchkey.LatchkeyError):
        return "", f"{result.text} (location {result.location}, number {result.number})"
    try:
        return result.decode(encoding), ""
    except UnicodeDecodeError:
        return "", f"the plaintext is not {encoding} text"


def decrypt_values(key, values, encoding):
    """The plaintext and the error of each hexadecimal text. Uses one thread: there is a worker for each processor."""
    results = key.decrypt_many([from_hex(value) for value in values], errors="return", threads=1)
    return [to_row(result, encoding) for result in results]


@contextlib.contextmanager
def whole_file(path):
    """A text file that is renamed to `path` when it is complete, replacing any other. Only its owner may read it."""
    with tempfile.NamedTemporaryFile("w", dir=path.parent, prefix=f".{path.name}.", suffix=".tmp", newline="",
                                     encoding="utf-8", delete=False) as file:
        try:
            yield file
            file.flush()
            os.fsync(file.fileno())
            os.replace(file.name, path)
        except BaseException:
            os.unlink(file.name)
            raise


def decrypt_file(source, target, arguments):
    """Runs on a worker, perhaps more than once. Returns the number of rows, and of rows that failed."""
    rows = failed = 0
    column = arguments.column
    with open_key(arguments) as key, whole_file(target) as output, open(source, newline="", encoding="utf-8") as file:
        reader = csv.DictReader(file)
        if column not in (reader.fieldnames or ()):
            raise ValueError(f"no column {column}")
        writer = csv.DictWriter(output, [name for name in reader.fieldnames if name != column] + ["plaintext", "error"])
        writer.writeheader()
        while chunk := list(itertools.islice(reader, CHUNK_ROWS)):
            results = decrypt_values(key, [row.pop(column) for row in chunk], arguments.encoding)
            for row, (plaintext, error) in zip(chunk, results):
                writer.writerow({**row, "plaintext": plaintext, "error": error})
            rows += len(chunk)
            failed += sum(bool(error) for _, error in results)
    return rows, failed


def parse_arguments():
    parser = argparse.ArgumentParser(description="Decrypt a column of CSV files on a Dask scheduler's workers")
    parser.add_argument("source", type=pathlib.Path, help="folder of *.csv files, at this path on every worker")
    parser.add_argument("target", type=pathlib.Path, help="folder for the results, at this path on every worker")
    parser.add_argument("--scheduler", required=True, help="address, such as tcp://10.0.0.1:8786")
    parser.add_argument("--password-file", required=True, help="at this path on every worker")
    parser.add_argument("--hash", required=True)
    parser.add_argument("--cipher", required=True)
    parser.add_argument("--provider")
    parser.add_argument("--key-bits", type=int)
    parser.add_argument("--column", default="ciphertext", help="name of the column of hexadecimal texts")
    parser.add_argument("--encoding", default="cp1252", help="of the plaintexts")
    return parser.parse_args()


def run(arguments, sources):
    """Returns the number of files that failed."""
    from distributed import Client, as_completed  # imported here: other engines use this file without Dask

    broken = 0
    with Client(arguments.scheduler) as client:
        targets = [arguments.target / path.name for path in sources]
        futures = client.map(decrypt_file, sources, targets, arguments=arguments, pure=False)
        names = {future: path.name for future, path in zip(futures, sources)}
        for future in as_completed(futures):
            try:
                rows, failed = future.result()
                print(f"{names[future]}: {rows} rows, {failed} failed", flush=True)
            except Exception as error:
                print(f"{names[future]}: {error}", file=sys.stderr)
                broken += 1
    return broken


def main():
    arguments = parse_arguments()
    arguments.target.mkdir(exist_ok=True)
    sources = [path for path in sorted(arguments.source.glob("*.csv")) if not (arguments.target / path.name).exists()]
    broken = run(arguments, sources)
    for leftover in arguments.target.glob(".*.tmp"):  # from workers that were lost
        leftover.unlink()
    sys.exit(1 if broken else 0)


if __name__ == "__main__":
    main()
