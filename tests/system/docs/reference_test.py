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
SOURCES = (IDL, SERVICE, TABLE, "include/latchkey/cls_main.h", "include/latchkey/cls_timer.h", "include/latchkey/fault.h",
           "base/faults.cpp", "docs/reference.md", "docs/errors.md", "tools/make_reference")


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

    def test_a_changed_help_text_is_out_of_date(self):
        self.change(IDL, "Measures from now.", "Starts to measure.")
        self.assert_refused("+Help text: “Starts to measure.”", "--check")

    def test_a_changed_number_is_out_of_date(self):
        self.change(IDL, "latchkeyHashMD4 = 2", "latchkeyHashMD4 = 7")
        self.assert_refused("+| `latchkeyHashMD4` | 7 |", "--check")

    def test_an_enum_without_a_help_text_is_refused(self):
        self.change(IDL, 'helpstring("Hashes:', 'hidden, version("Hashes:')
        self.assert_refused("latchkey.idl: an enum cannot be read")

    def test_a_changed_message_is_out_of_date(self):
        self.change(TABLE, "Error deriving key\", u\"Encrypt", "No key\", u\"Encrypt")
        self.assert_refused("No key", "--check")

    def test_a_member_without_a_comment_is_refused(self):
        self.remove_comment_above(SERVICE, "Text CreateSaltValue(")
        self.assert_refused("CreateSaltValue has no comment")

    def test_a_member_after_a_commented_one_is_refused(self):
        self.remove_comment_above("include/latchkey/cls_timer.h", "std::int32_t GetElapsedTime()")
        self.assert_refused("GetElapsedTime has no comment")

    def test_a_class_without_a_comment_is_refused(self):
        self.remove_comment_above("include/latchkey/cls_main.h", "class LATCHKEY_API clsMain")
        self.assert_refused("clsMain has no comment")

    def test_a_member_of_the_header_only_is_refused(self):
        self.change("include/latchkey/cls_timer.h", "  void Start() noexcept;", "  void Start() noexcept;\n  void Stop();")
        self.assert_refused("not in the interface definition: ['Stop']")

    def test_a_member_of_the_interface_only_is_refused(self):
        self.change(IDL, "HRESULT Start();", "HRESULT Begin();")
        self.assert_refused("Start")

    def test_another_argument_name_is_refused(self):
        self.change(IDL, "blnLetttersOnly", "blnLettersOnly")
        self.assert_refused("CreateSaltValue: the header has no such member")

    def test_another_argument_type_is_refused(self):
        self.change(IDL, "long lngReturnLength", "short lngReturnLength")
        self.assert_refused("CreateSaltValue: the types of lngReturnLength differ")

    def test_an_argument_that_is_optional_for_some_is_refused(self):
        self.change(IDL, "[in] BSTR strHex", '[in, optional, defaultvalue("")] BSTR strHex')
        self.assert_refused("ConvertStringFromHex: strHex is optional in one place only")

    def test_an_argument_that_is_not_described_is_refused(self):
        self.change(SERVICE, "blnUseUppercase changes nothing", "the last argument changes nothing")
        self.assert_refused("CreateRandom: its comment does not describe blnUseUppercase")

    def test_a_location_that_does_not_exist_is_refused(self):
        self.change(SERVICE, "location 727", "location 737")
        self.assert_refused("ConvertStringFromHex: its comment names locations that do not exist: [737]")

    def test_a_location_that_is_not_described_is_refused(self):
        self.change(SERVICE, "location 727 for an odd length, 440", "440")
        self.assert_refused("ConvertStringFromHex: its comment does not name the locations [727]")

    def test_a_wrong_fault_number_is_refused(self):
        self.change(SERVICE, "InvalidUseOfNull (94)", "InvalidUseOfNull (95)")
        self.assert_refused("InvalidUseOfNull is 94")


if __name__ == "__main__":
    unittest.main()
