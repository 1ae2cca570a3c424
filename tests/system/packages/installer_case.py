"""Common parts of the installer's tests: Windows programs under Wine, the contents of a prefix, installing and removing.

The program that imports this is given BUILD_FOLDER ARCH.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[3]
INSTALLERS = PROJECT / "build" / "installer"
UNINSTALL_LIST = r"Software\Microsoft\Windows\CurrentVersion\Uninstall"
UNINSTALL = UNINSTALL_LIST + r"\Latchkey"
HIVES = {"/AllUsers": "HKEY_LOCAL_MACHINE", "/CurrentUser": "HKEY_CURRENT_USER"}
PRODUCTS = {"latchkey.dll", "latchkey.exe", "Latchkey.Component.manifest"}
DOCUMENTS = {"index.html": b"changed", "examples/another/sample.txt": b"new"}  # of setups for the tests
SHORTCUTS = {"Latchkey documents": r"doc\index.html", "Latchkey samples": r"doc\examples",
             "Uninstall Latchkey": "uninstall.exe"}
ENVIRONMENT = (r"HKEY_CURRENT_USER\Environment",
               r"HKEY_LOCAL_MACHINE\System\CurrentControlSet\Control\Session Manager\Environment")
FOLDERS = ("Copy", "Documents", "First", "Our", "Our tools", "Second", "Shared", "Tools")  # that tests make on drive C
MAIN_CLASS = "{3D47BC99-A2AC-4DA2-B56E-B751FC9219E1}"

build, arch = pathlib.Path(sys.argv[1]), sys.argv[2]
drive = PROJECT / "build" / "wine" / arch / "drive_c"


def run(*command):
    """Exit status and standard output of a Windows program."""
    done = subprocess.run([PROJECT / "tools" / "wine", arch, *map(str, command)], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, cwd=build, timeout=300)
    return done.returncode, done.stdout.decode("cp1252").replace("\r\n", "\n")


def setup_of(folder):
    """The setup that this Wine can run: a 64-bit Wine runs no 32-bit programs."""
    return next(folder.glob("latchkey-*-setup-x64.exe" if arch == "x64" else "latchkey-*-setup.exe"))


def compile_dll(source):
    """The bytes of a DLL of the tested bitness."""
    file = build / "installer_test.dll"
    compiler = {"x86": "i686", "x64": "x86_64"}[arch] + "-w64-mingw32-gcc"
    subprocess.run([compiler, "-shared", "-s", "-Wl,--kill-at", "-o", file, "-x", "c", "-"], check=True,
                   input=source.encode())
    return file.read_bytes()


def make_setups(name, products):
    """Makes setups for these products of both bitnesses (file -> bytes) and returns their folder."""
    folder = build / "installers" / name
    shutil.rmtree(folder, ignore_errors=True)
    for part, files in (("x86", products), ("x64", products), ("doc", DOCUMENTS)):
        for file, data in files.items():
            (folder / part / file).parent.mkdir(parents=True, exist_ok=True)
            (folder / part / file).write_bytes(data)
    subprocess.run([PROJECT / "tools" / "make_installer", folder], check=True, stdout=subprocess.DEVNULL)
    return folder


def remake_list_of_programs(volatile):
    """Makes the user's list anew as a volatile key, in which no permanent key can be written."""
    script, program = build / "list_of_programs.nsi", build / "list_of_programs.exe"
    script.write_text(rf"""
Unicode true
Target {"amd64" if arch == "x64" else "x86"}-unicode
OutFile {program}
SilentInstall silent
Section
  DeleteRegKey HKCU {UNINSTALL_LIST}
  System::Call 'advapi32::RegCreateKeyExW(p 0x80000001, w "{UNINSTALL_LIST}", i 0, p 0, i {int(volatile)}, \
    i 0x2001F, p 0, *p .r0, p 0) i .r1'
  SetErrorLevel $1
SectionEnd
""")
    subprocess.run(["makensis", "-V2", script], check=True, stdout=subprocess.DEVNULL)
    if run(program)[0] != 0:
        raise OSError("cannot make the list of installed programs")


def installed_files():
    """Every file and folder except an uninstaller's running copy of itself, which the next start removes."""
    # Unlike rglob, walk accepts that a folder is removed meanwhile.
    paths = (pathlib.Path(folder, name) for folder, folders, files in os.walk(drive) for name in (*folders, *files))
    return {path for path in paths if "~nsu" not in str(path)}


def plain(text):
    """A quoted text without its quotation marks and escapes; other values unchanged."""
    return re.sub(r"\\(.)", r"\1", text[1:-1]) if text.startswith('"') else text


def registry(key):
    """Every key from this one on -> name -> value, as text."""
    with tempfile.TemporaryDirectory(dir=build) as folder:
        file = pathlib.Path(folder) / "export.reg"
        status, output = run("regedit", "/E", file.relative_to(build), key)
        if not file.exists() and "Unable to open the registry key" not in output:  # the key may not exist
            raise OSError(f"cannot export {key}: status {status}, {output!r}")
        text = file.read_text("utf-16") if file.exists() else ""
    keys = {}
    for line in re.sub(r"\\\n\s*", "", text).splitlines()[1:]:
        if line.startswith("["):
            values = keys.setdefault(line[1:-1], {})
        elif line:
            name, value = re.fullmatch(r'("(?:[^"\\]|\\.)*"|@)=(.*)', line, re.S).groups()
            values[plain(name)] = plain(value)
    return keys


def state():
    return {"files": installed_files(), **{hive: registry(hive + r"\Software") for hive in HIVES.values()}}


def differences(before, after):
    texts = [f"{hive}: {key} {before[hive].get(key)} -> {after[hive].get(key)}" for hive in HIVES.values()
             for key in before[hive].keys() | after[hive].keys() if before[hive].get(key) != after[hive].get(key)]
    return texts + [f"file: {path}" for path in before["files"] ^ after["files"]]


def host_path(path):
    return drive / path.removeprefix("C:\\").replace("\\", "/")


def start_menu(scope):
    """The folder of the Start menu's programs."""
    base = drive / "ProgramData" if scope == "/AllUsers" else next(drive.glob("users/*/AppData/Roaming"))
    return base / "Microsoft/Windows/Start Menu/Programs"


def contents(folder):
    return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def environment():
    return [registry(key) for key in ENVIRONMENT]


def wait_until(condition):
    """Polls the result of the uninstaller's copy, which is not a child of ours; the limit is for one that hangs."""
    deadline = time.monotonic() + 300
    while not condition() and time.monotonic() < deadline:
        time.sleep(0.1)


class InstallerCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.use_wine_once()
        cls.remove_leftovers()
        for options in ((), ("/n", "/i:user")):
            run("regsvr32", "/s", "/u", *options, "latchkey.dll")
        cls.before = state()
        cls.environment_before = environment()

    @classmethod
    def use_wine_once(cls):
        """Makes keys and folders that do not belong to the setup, and those that the script host registers."""
        for key in (r"Classes\CLSID", r"Microsoft\Windows\CurrentVersion\Uninstall"):
            run("reg", "add", rf"HKCU\Software\{key}", "/f")
        for profile in drive.glob("users/*/AppData/Local"):
            (profile / "Programs").mkdir(exist_ok=True)
        for scope in HIVES:
            start_menu(scope).mkdir(parents=True, exist_ok=True)
        cls.run_script("WScript.Echo 1")

    @staticmethod
    def run_script(text):
        """The output of a script."""
        script = build / "installer_client.vbs"
        script.write_text(text)
        return run("cscript", "//nologo", script.name)[1].strip()

    def tearDown(self):
        self.remove_leftovers()

    @classmethod
    def remove_leftovers(cls):
        """Removes the installation of a failed or stopped test, and the folders and Start menu entries that tests make."""
        for scope in HIVES:
            if values := cls.listed(scope):
                run(values["UninstallString"].strip('"'), "/S")
                wait_until(lambda: not (host_path(values["InstallLocation"]) / "uninstall.exe").exists())
                run("reg", "delete", HIVES[scope] + "\\" + UNINSTALL, "/f")
            menu = start_menu(scope) / "Latchkey"
            if menu.is_file():
                menu.unlink()
            shutil.rmtree(menu, ignore_errors=True)
        installed = (drive / "Program Files/Latchkey", *drive.glob("users/*/AppData/Local/Programs/Latchkey"))
        for folder in (*installed, *(drive / name for name in FOLDERS)):
            shutil.rmtree(folder, ignore_errors=True)

    def install(self, *options, folder=INSTALLERS):
        status, _ = run(setup_of(folder), "/S", *options)
        return status

    def uninstall(self, scope):
        """Runs the uninstaller, which continues in a copy of itself after it has returned."""
        values = self.listed(scope)
        self.assertEqual(values["QuietUninstallString"], values["UninstallString"] + " /S")
        status, _ = run(values["UninstallString"].strip('"'), "/S")
        self.assertEqual(status, 0)

    @staticmethod
    def uninstall_in_place(folder):
        """The exit status of an uninstaller that makes no copy of itself, and so cannot remove itself."""
        return run(folder + r"\uninstall.exe", "/S", *("_?=" + folder).split(" "))[0]  # without quotation marks

    @staticmethod
    def listed(scope):
        key = HIVES[scope] + "\\" + UNINSTALL
        return registry(key).get(key, {})

    def expect_files(self, expected):
        """Waits for the uninstaller, which removes its own folder last."""
        wait_until(lambda: installed_files() == expected)
        self.assertEqual(installed_files() ^ expected, set())

    def expect_state(self, expected, ignoring=re.compile(r"(?!)")):
        self.expect_files(expected["files"])
        self.assertEqual([text for text in differences(expected, state()) if not ignoring.search(text)], [])

    def expect_nothing_left(self):
        self.expect_state(self.before)

    def expect_installed(self, scope):
        values = self.listed(scope)
        self.assertEqual(values["DisplayName"], "Latchkey")
        self.assertRegex(values["DisplayVersion"], r"^\d+\.\d+\.\d+$")
        folder = host_path(values["InstallLocation"])
        self.assertEqual({path.name for path in folder.iterdir()}, {arch, "doc", "uninstall.exe", "LICENSE.txt"})
        self.assertEqual((folder / "LICENSE.txt").read_text(), (PROJECT / "LICENSE").read_text())
        self.assertEqual({path.name for path in (folder / arch).iterdir()}, PRODUCTS)
        self.assertEqual(run(folder / arch / "latchkey.exe", "hash", "--help")[0], 0)
        self.assertEqual(contents(folder / "doc"), contents(INSTALLERS / "doc"))
        self.expect_menu(scope, values["InstallLocation"])
        self.assertEqual(environment(), self.environment_before)  # has PATH
        key = rf"{HIVES[scope]}\Software\Classes\CLSID\{MAIN_CLASS}\InprocServer32"
        self.assertEqual(registry(key)[key]["@"], values["InstallLocation"] + rf"\{arch}\latchkey.dll")
        return values["InstallLocation"]

    def expect_menu(self, scope, folder):
        """Each shortcut is in the scope's Start menu and names a file or folder that exists."""
        menu = start_menu(scope) / "Latchkey"
        self.assertEqual({path.name for path in menu.iterdir()}, {name + ".lnk" for name in SHORTCUTS})
        for name, target in SHORTCUTS.items():
            target = folder + "\\" + target
            self.assertIn(target.encode("cp1252") + b"\0", (menu / (name + ".lnk")).read_bytes())
            self.assertTrue(host_path(target).exists(), target)
