"""Files larger than memory."""
import os
import shutil
import subprocess

from command import CommandTest

SIZE = 128 << 20
PART = 16 << 20
MOST_MEMORY = 64 << 20


class MemoryTest(CommandTest):
    def run_measured(self, *arguments):
        """Runs the command and returns its peak memory, in bytes."""
        process = self.start_command(*arguments, stdout=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(process.returncode, 0)
        return usage.ru_maxrss * 1024

    def decrypt_in_blocks(self):
        """Decrypts one message repeated, which ends with the padding of the last. Keeps this process small, since its
        peak memory counts for the processes that it starts."""
        des = ["--hash", "md5", "--cipher", "des", "--no-password"]
        with open(self.folder / "sparse part", "wb") as file:
            file.truncate(PART - 8)
        self.run_well("encrypt", *des, "-o", "part", "sparse part")
        with open(self.folder / "blocks", "wb") as file:
            for _ in range(SIZE // PART):
                with open(self.folder / "part", "rb") as part:
                    shutil.copyfileobj(part, file)
        return self.run_measured("decrypt", *des, "-o", "plain", "blocks")

    def encrypt_rows(self):
        row = b"1234567,some text,a note of a hundred bytes" + bytes(64) + b"\n"
        with open(self.folder / "rows", "wb") as file:
            for _ in range(SIZE >> 22):
                file.write(row * ((1 << 20) // len(row)))
        return self.run_measured("records", "encrypt", "--format", "csv", "--no-header", "--column", "2", "--hash", "md5",
                                 "--cipher", "des", "--no-password", "-o", "encrypted rows", "rows")

    def test_encrypting_decrypting_and_hashing_take_constant_memory(self):
        with open(self.folder / "sparse", "wb") as file:
            file.truncate(SIZE)
        rc4 = ["--hash", "md5", "--cipher", "rc4", "--no-password"]
        used = {
            "encrypt": self.run_measured("encrypt", *rc4, "-o", "cipher", "sparse"),
            "decrypt": self.run_measured("decrypt", *rc4, "-o", "back", "cipher"),
            "encrypt, to Base64": self.run_measured("encrypt", *rc4, "--to", "base64", "-o", "base64", "sparse"),
            "decrypt, from Base64": self.run_measured("decrypt", *rc4, "--from", "base64", "--to", "hex", "base64"),
            "hash": self.run_measured("hash", "cipher"),
            "identify": self.run_measured("identify", "--no-password", "cipher"),
            "records encrypt": self.encrypt_rows(),
            "decrypt, on all processors": self.decrypt_in_blocks(),
        }
        print(used, flush=True)
        self.assertEqual(subprocess.run(["cmp", self.folder / "sparse", self.folder / "back"], check=False).returncode,
                         0)
        for command, memory in used.items():
            self.assertLess(memory, MOST_MEMORY, command)
