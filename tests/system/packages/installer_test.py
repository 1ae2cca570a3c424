#!/usr/bin/env python3
"""Installs with the Windows setup under Wine, uses the installation, and removes it.

    installer_test.py BUILD_FOLDER ARCH [OPTION OF UNITTEST...]

The prefix is the project's own, so that nothing else may use it meanwhile. What is compared before and after is all of
it: every file, and every key and value of the machine's and the user's software.
"""
import os
import pathlib
import re
import shutil
import sys
import unittest

import installer_case
from installer_case import HIVES, INSTALLERS, PRODUCTS, arch, drive, registry, run, state

CLIENT = """
Set main = CreateObject("Latchkey.clsMain")
WScript.Echo CreateObject("Latchkey.clsCryptoAPI").CreateHash("abc", 1, True)
"""
LASTING_SERVER = r"""
#include <windows.h>
__declspec(dllexport) HRESULT __stdcall DllRegisterServer(void) { return S_OK; }
__declspec(dllexport) HRESULT __stdcall DllUnregisterServer(void) { return E_FAIL; }
__declspec(dllexport) HRESULT __stdcall DllInstall(BOOL install, const wchar_t* options) {
  return install ? S_OK : E_FAIL;
}
"""
WIPING_SERVER = rf"""
#include <windows.h>
__declspec(dllexport) HRESULT __stdcall DllRegisterServer(void) {{
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"Software\\Classes\\CLSID\\{installer_case.MAIN_CLASS}");
  return E_FAIL;
}}
"""
TYPE_LIBRARY = re.compile(r"\\(TypeLib|Interface)\\", re.I)  # Wine 8 has one for all users


class SetupFilesTest(unittest.TestCase):
    def test_they_name_windows_7_as_the_oldest(self):
        setups = list(INSTALLERS.glob("latchkey-*-setup*.exe"))
        self.assertEqual(len(setups), 2)
        for setup in setups:
            image = setup.read_bytes()
            optional_header = int.from_bytes(image[0x3C:0x40], "little") + 24  # after signature and file header
            self.assertEqual(image[optional_header + 48:optional_header + 52], bytes((6, 0, 1, 0)), setup)


class InstallerTest(installer_case.InstallerCase):
    def test_for_all_users_scripts_can_use_it_until_it_is_removed(self):
        for options in (["/AllUsers"], []):  # the second time over the first; Wine's user is an administrator
            self.assertEqual(self.install(*options), 0)
        self.assertEqual(self.expect_installed("/AllUsers"), r"C:\Program Files\Latchkey")
        self.assertEqual(self.run_script(CLIENT), "900150983CD24FB0D6963F7D28E17F72")
        self.assertEqual(self.listed("/CurrentUser"), {})
        self.uninstall("/AllUsers")
        self.expect_nothing_left()

    def test_for_the_current_user_nothing_is_written_for_the_machine(self):
        self.assertEqual(self.install("/CurrentUser"), 0)
        self.assertRegex(self.expect_installed("/CurrentUser"), r"^C:\\users\\.*\\Programs\\Latchkey$")
        self.assertEqual(self.listed("/AllUsers"), {})
        for key in ("CLSID\\" + installer_case.MAIN_CLASS, "Latchkey.clsMain"):
            self.assertEqual(registry(r"HKEY_LOCAL_MACHINE\Software\Classes" + "\\" + key), {})
        self.uninstall("/CurrentUser")
        self.expect_nothing_left()

    def test_a_folder_of_the_users_choice_is_kept_with_what_others_have_put_there(self):
        self.assertEqual(self.install("/CurrentUser", r"/D=C:\Our", r"tools\Latchkey"), 0)  # without quotation marks
        self.assertEqual(self.install("/CurrentUser"), 0)
        self.assertEqual(self.expect_installed("/CurrentUser"), r"C:\Our tools\Latchkey")
        folder = drive / "Our tools" / "Latchkey"
        menu = installer_case.start_menu("/CurrentUser") / "Latchkey"
        notes = {folder / "notes.txt", folder / "doc" / "examples" / "c" / "notes.txt", menu / "notes.txt"}
        for file in notes:
            file.write_text("not the setup's")
        self.uninstall("/CurrentUser")
        folders = set().union(*(file.parents for file in notes)) - {drive, *drive.parents}
        self.expect_files(self.before["files"] | notes | folders)
        self.assertEqual(self.listed("/CurrentUser"), {})

    def test_documents_of_another_version_are_replaced(self):
        other = installer_case.make_setups("other", {name: (INSTALLERS / arch / name).read_bytes() for name in PRODUCTS})
        self.assertEqual(self.install("/CurrentUser", r"/D=C:\Documents", folder=other), 0)
        self.assertTrue((drive / "Documents" / "doc" / "examples" / "another" / "sample.txt").exists())
        self.assertEqual(self.install("/CurrentUser"), 0)
        self.expect_installed("/CurrentUser")
        self.uninstall("/CurrentUser")
        self.expect_nothing_left()

    def test_removing_the_users_installation_leaves_the_one_for_all_users(self):
        self.assertEqual(self.install("/AllUsers"), 0)
        for_all_users = state()
        self.assertEqual(self.install("/CurrentUser"), 0)
        self.uninstall("/CurrentUser")
        self.expect_state(for_all_users, ignoring=TYPE_LIBRARY)
        self.uninstall("/AllUsers")
        self.expect_nothing_left()

    def test_a_second_folder_is_refused_while_the_first_exists(self):
        self.assertEqual(self.install("/CurrentUser", r"/D=C:\First"), 0)
        first = state()
        self.assertEqual(self.install("/CurrentUser", r"/D=C:\Second"), 2)
        self.expect_state(first)
        self.assertEqual(self.install("/CurrentUser", r"/D=c:\first" + "\\"), 0)
        shutil.rmtree(drive / "First")
        self.assertEqual(self.install("/CurrentUser", r"/D=C:\Second"), 0)
        self.assertEqual(self.expect_installed("/CurrentUser"), r"C:\Second")
        self.uninstall("/CurrentUser")
        self.expect_nothing_left()

    def test_a_folder_is_refused_that_holds_the_installation_of_the_other_mode(self):
        modes = list(HIVES)
        for first, second in (modes, modes[::-1]):
            self.assertEqual(self.install(first, r"/D=C:\Shared"), 0)
            before = state()
            self.assertEqual(self.install(second, r"/D=C:\Shared"), 2)
            self.expect_state(before)
            self.uninstall(first)
            self.expect_nothing_left()

    def test_an_uninstaller_in_a_folder_that_is_not_listed_removes_nothing(self):
        self.assertEqual(self.install("/AllUsers"), 0)
        shutil.copytree(drive / "Program Files" / "Latchkey", drive / "Copy")
        before = state()
        self.assertEqual(self.uninstall_in_place(r"C:\Copy"), 2)
        self.expect_state(before)

    def test_an_installation_is_known_by_the_short_name_of_its_folder(self):
        self.assertEqual(self.install("/CurrentUser", r"/D=C:\Our", r"tools\Latchkey"), 0)
        _, name = run("winepath", "-s", r"C:\Our tools\Latchkey")
        self.assertNotIn("tools", name)
        self.assertEqual(self.uninstall_in_place(name.strip()), 0)
        self.assertEqual([path.name for path in (drive / "Our tools" / "Latchkey").iterdir()], ["uninstall.exe"])
        self.assertEqual(self.listed("/CurrentUser"), {})


class UninstallationTest(installer_case.InstallerCase):
    """The uninstaller removes a damaged or missing DLL's registration too, or leaves everything."""

    def expect_removal_after(self, change):
        for scope in HIVES:
            self.assertEqual(self.install(scope), 0)
            change(installer_case.host_path(self.listed(scope)["InstallLocation"]) / arch / "latchkey.dll")
            self.uninstall(scope)
            self.expect_nothing_left()

    def test_a_damaged_dll(self):
        self.expect_removal_after(lambda dll: dll.write_text("no program"))

    def test_a_missing_dll(self):
        self.expect_removal_after(pathlib.Path.unlink)

    def test_a_registration_that_stays(self):
        lasting = installer_case.make_setups("lasting", {**dict.fromkeys(PRODUCTS, b""),
                                                         "latchkey.dll": installer_case.compile_dll(LASTING_SERVER)})
        for scope in HIVES:
            self.assertEqual(self.install(scope, folder=lasting), 0)
            before = state()
            self.assertEqual(self.uninstall_in_place(self.listed(scope)["InstallLocation"]), 2)
            self.expect_state(before)
            self.assertEqual(self.install(scope), 0)
            self.uninstall(scope)
            self.expect_nothing_left()


class FailedInstallationTest(installer_case.InstallerCase):
    """A failed installation reports the failure and changes nothing."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.broken = installer_case.make_setups("broken", {name: b"no program" for name in PRODUCTS})

    @staticmethod
    def make_folder(name):
        folder = drive / name
        folder.mkdir(parents=True)
        return folder

    def expect_failure(self, *options, **arguments):
        before = state()
        self.assertEqual(self.install(*options, **arguments), 2)
        self.expect_state(before)

    def test_a_registration_that_fails(self):
        for scope in HIVES:
            self.expect_failure(scope, folder=self.broken)
            self.expect_failure(scope, r"/D=C:\Our\own tools", folder=self.broken)

    def test_a_file_that_cannot_be_written(self):
        products = self.make_folder(rf"Tools/{arch}")
        (products / "latchkey.dll").write_text("not the setup's")
        (products / "Latchkey.Component.manifest").mkdir()
        self.expect_failure("/CurrentUser", r"/D=C:\Tools")
        self.assertEqual((products / "latchkey.dll").read_text(), "not the setup's")

    def test_an_uninstaller_that_cannot_be_written(self):
        self.make_folder("Tools/uninstall.exe")
        self.expect_failure("/CurrentUser", r"/D=C:\Tools")

    def test_a_start_menu_that_cannot_be_written(self):
        for scope in HIVES:
            menu = installer_case.start_menu(scope) / "Latchkey"
            menu.write_text("not the setup's")
            self.expect_failure(scope)

    def test_a_list_of_installed_programs_that_cannot_be_written(self):
        self.addCleanup(installer_case.remake_list_of_programs, volatile=False)
        installer_case.remake_list_of_programs(volatile=True)
        self.expect_failure("/CurrentUser")

    def test_an_installation_in_the_same_folder_stays_in_use(self):
        self.assertEqual(self.install("/AllUsers"), 0)
        folder = drive / "Program Files" / "Latchkey"
        with open(folder / arch / "latchkey.exe", "ab") as command:
            command.write(b"of another version")
        shortcut = installer_case.start_menu("/AllUsers") / "Latchkey" / "Latchkey samples.lnk"
        shortcut.write_text("the user's")
        files = installer_case.contents(folder)
        wiping = installer_case.make_setups("wiping", {**dict.fromkeys(PRODUCTS, b""),
                                                       "latchkey.dll": installer_case.compile_dll(WIPING_SERVER)})
        self.expect_failure("/AllUsers", folder=wiping)
        self.assertEqual(installer_case.contents(folder), files)
        self.assertEqual(shortcut.read_text(), "the user's")
        self.assertEqual(self.run_script(CLIENT), "900150983CD24FB0D6963F7D28E17F72")


def options():
    """The setups of both bitnesses are made from one script, so failures are tried with one of them, and with
    LATCHKEY_LONG with both."""
    if sys.argv[3:] or arch == "x86" or os.environ.get("LATCHKEY_LONG"):
        return sys.argv[3:]
    return ["SetupFilesTest", "InstallerTest"]


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *options()])
