"""tools/check_hardening reports every missing property of a file built without hardening."""
import pathlib
import subprocess
import tempfile
import unittest

CHECK = pathlib.Path(__file__).resolve().parents[2] / "tools" / "check_hardening"
SOURCE = """
namespace latchkey {
void SecureWipe(void*, unsigned long long) {}
}
const char* volatile named = "other.dll";
int main(int count, char**) {
  if (count > 9) throw count;  // takes the compiler's run-time along
  latchkey::SecureWipe(nullptr, 0);
}
"""


def missing_from(compiler, *flags):
    with tempfile.TemporaryDirectory() as folder:
        source, program = pathlib.Path(folder, "bare.cpp"), pathlib.Path(folder, "bare.exe")
        source.write_text(SOURCE)
        subprocess.run([compiler, "-O0", "-fno-stack-protector", *flags, "-o", program, source], check=True)
        result = subprocess.run([CHECK, program], capture_output=True, text=True)
        assert result.returncode == 1, result.stdout + result.stderr
        return set(result.stdout.strip().split("missing: ")[1].split(", "))


class CheckHardeningTest(unittest.TestCase):
    def test_an_elf_file(self):
        flags = ("-no-pie", "-U_FORTIFY_SOURCE", "-Wl,-z,norelro,-z,lazy,-z,execstack,-rpath,/tmp")
        self.assertEqual(missing_from("g++", *flags), {
            "position independent", "RELRO", "imports bound at the start", "no executable stack", "stack protector",
            "checked functions", "no run path", "wiping routine"})

    def test_writable_code_in_an_elf_file(self):
        self.assertIn("no writable and executable segment", missing_from("g++", "-shared", "-fPIC", "-nostdlib", "-Wl,--omagic"))

    def test_a_pe_file(self):
        flags = ("-Wl,--disable-dynamicbase,--disable-nxcompat,--disable-high-entropy-va,--disable-reloc-section",)
        self.assertEqual(missing_from("x86_64-w64-mingw32-g++-posix", *flags), {
            "address randomization", "high entropy", "data that cannot run", "relocations", "stack protector",
            "imports from Windows alone", "no other library by name", "wiping routine"})

    def test_writable_code_in_a_pe_file(self):
        self.assertIn("no writable and executable section",
                      missing_from("x86_64-w64-mingw32-g++-posix", "-Wl,--omagic"))


if __name__ == "__main__":
    unittest.main()
