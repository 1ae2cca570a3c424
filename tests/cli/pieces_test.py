"""Files of several pieces, processed by several threads."""
from command import CIPHERS, IS_WINDOWS, CommandTest

PIECE = 1 << 20
LENGTHS = (PIECE - 1, PIECE, PIECE + 1, 3 * PIECE - 8, 3 * PIECE, 4 * PIECE + 5)
KEY = ["--hash", "sha1", "--no-password"]


class PiecesTest(CommandTest):
    def test_lengths_around_the_borders_of_pieces(self):
        for cipher in CIPHERS:
            for length in LENGTHS[:2 if IS_WINDOWS else None]:
                self.write("plain", self.random.randbytes(length))
                for command, source, target in (("encrypt", "plain", "cipher"), ("decrypt", "cipher", "back")):
                    result = self.run_well(command, *KEY, "--cipher", cipher, "--json", "--force", "-o", target, source)
                    self.assertEqual(result.json["bytes_in"], len(self.read(source)))
                    self.assertEqual(result.json["bytes_out"], len(self.read(target)))
                self.assertEqual(self.read("back"), self.read("plain"), (cipher, length))

    def test_bad_data_in_the_last_piece_leaves_no_file(self):
        self.write("plain", self.random.randbytes(4 * PIECE))
        self.run_well("encrypt", *KEY, "--cipher", "3des", "-o", "c", "plain")
        self.write("c", self.read("c")[:-1])
        result = self.run_command("decrypt", *KEY, "--cipher", "3des", "-o", "p", "c")
        self.assertEqual((result.status, result.lines[0]),
                         (1, "latchkey: Error decrypting data (location 717, number 120): c"))
        self.assertEqual(self.names(), ["c", "plain"])
