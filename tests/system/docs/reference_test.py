#!/usr/bin/env python3
"""docs/reference.md and docs/errors.md agree with the sources, and tools/make_reference reports differences."""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[3]
IDL = "com/windows/latchkey.idl"
SERVICE = "include/latchkey/cls_crypto_api.h"
TABLE = "diagnostics/failure_table.h"
MAIN = "include/latchkey/cls_main.h"
TIMER = "include/latchkey/cls_timer.h"
SOURCES = (IDL, SERVICE, TABLE, MAIN, TIMER, "include/latchkey/fault.h", "base/faults.cpp", "docs/reference.md",
           "docs/errors.md", "tools/make_reference")


def make_reference(project, *options):
    return subprocess.run([sys.executable, project / "tools/make_reference", *options], capture_output=True, text=True)


class CommittedDocuments(unittest.TestCase):
    def test_agree_with_the_sources(self):
        made = make_reference(PROJECT, "--check")
        self.assertEqual(made.returncode, 0, made.stderr)


class ChangedSources(unittest.TestCase):
    """Each test changes one thing in a copy of the sources."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.copy = pathlib.Path(folder.name)
        for path in SOURCES:
            (self.copy / path).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(PROJECT / path, self.copy / path)
        shutil.copytree(PROJECT / "tools/reference", self.copy / "tools/reference")

    def change(self, path, old, new):
        text = (self.copy / path).read_text(encoding="utf-8")
        self.assertEqual(text.count(old), 1, f"{path} does not hold this once: {old}")
        (self.copy / path).write_text(text.replace(old, new), encoding="utf-8")

    def assert_refused(self, reason, *options):
        made = make_reference(self.copy, *options)
        self.assertEqual(made.returncode, 1, made.stderr)
        self.assertIn(reason, made.stderr)

    def remove_comment_above(self, path, declaration):
        lines = (self.copy / path).read_text(encoding="utf-8").split("\n")
        end = next(number for number, line in enumerate(lines) if declaration in line)
        start = end
        while lines[start - 1].strip().startswith("//"):
            start -= 1
        self.assertLess(start, end)
        (self.copy / path).write_text("\n".join(lines[:start] + lines[end:]), encoding="utf-8")

    def test_an_edited_document_is_out_of_date(self):
        for path in ("docs/reference.md", "docs/errors.md"):
            with self.subTest(path):
                with open(self.copy / path, "a", encoding="utf-8") as document:
                    document.write("Another line.\n")
                self.assert_refused("-Another line.", "--check")
                self.assertEqual(make_reference(self.copy).returncode, 0)
                self.assertEqual(make_reference(self.copy, "--check").returncode, 0)

    def check_each(self, changes, *options):
        for name, (path, old, new, reason) in changes.items():
            with self.subTest(name):
                self.change(path, old, new)
                self.assert_refused(reason, *options)
            shutil.copy(PROJECT / path, self.copy / path)

    def test_a_changed_text_or_number_is_out_of_date(self):
        self.check_each({
            "help text": (IDL, "Measures from now.", "Starts to measure.", "+Help text: “Starts to measure.”"),
            "number": (IDL, "latchkeyHashMD4 = 2", "latchkeyHashMD4 = 7", "+| `latchkeyHashMD4` | 7 |"),
            "message": (TABLE, "Error deriving key\", u\"Encrypt", "No key\", u\"Encrypt", "No key"),
        }, "--check")

    def test_a_member_or_class_without_a_comment_is_refused(self):
        for path, declaration, reason in (
                (SERVICE, "Text CreateSaltValue(", "CreateSaltValue has no comment"),
                (TIMER, "std::int32_t GetElapsedTime()", "GetElapsedTime has no comment"),  # after a commented one
                (MAIN, "class LATCHKEY_API clsMain", "clsMain has no comment")):
            with self.subTest(declaration):
                self.remove_comment_above(path, declaration)
                self.assert_refused(reason)
            shutil.copy(PROJECT / path, self.copy / path)

    def test_a_header_that_disagrees_with_the_interface_is_refused(self):
        self.check_each({
            "an enum without a help text": (
                IDL, 'helpstring("Hashes:', 'hidden, version("Hashes:', "latchkey.idl: an enum cannot be read"),
            "a member of the header only": (
                TIMER, "  void Start() noexcept;", "  void Start() noexcept;\n  void Stop();",
                "not in the interface definition: ['Stop']"),
            "a member of the interface only": (IDL, "HRESULT Start();", "HRESULT Begin();", "Start"),
            "another argument name": (
                IDL, "blnLetttersOnly", "blnLettersOnly", "CreateSaltValue: the header has no such member"),
            "another argument type": (
                IDL, "long lngReturnLength", "short lngReturnLength",
                "CreateSaltValue: the types of lngReturnLength differ"),
            "an argument that is optional for some": (
                IDL, "[in] BSTR strHex", '[in, optional, defaultvalue("")] BSTR strHex',
                "ConvertStringFromHex: strHex is optional in one place only"),
        })

    def test_a_comment_that_disagrees_with_the_interface_is_refused(self):
        self.check_each({
            "an argument that is not described": (
                SERVICE, "blnUseUppercase changes nothing", "the last argument changes nothing",
                "CreateRandom: its comment does not describe blnUseUppercase"),
            "a location that does not exist": (
                SERVICE, "location 727", "location 737",
                "ConvertStringFromHex: its comment names locations that do not exist: [737]"),
            "a location that is not described": (
                SERVICE, "location 727 for an odd length, 440", "440",
                "ConvertStringFromHex: its comment does not name the locations [727]"),
            "a wrong fault number": (
                SERVICE, "InvalidUseOfNull (94)", "InvalidUseOfNull (95)", "InvalidUseOfNull is 94"),
        })


if __name__ == "__main__":
    unittest.main()
