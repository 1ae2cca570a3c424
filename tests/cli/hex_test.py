"""latchkey hex: a filter of any length."""
from command import CommandTest


class HexTest(CommandTest):
    def test_every_byte_gives_two_upper_case_digits_on_one_line(self):
        data = bytes(range(256)) + b"A \n\0 "
        self.assertEqual(self.run_well("hex", data=data).out, data.hex().upper().encode() + b"\n")

    def test_empty_input_gives_empty_output(self):
        self.assertEqual(self.run_well("hex").out, b"")
        self.assertEqual(self.run_well("hex", "-d").out, b"")
        self.assertEqual(self.run_well("hex", "-d", data=b"\r\n\n").out, b"")

    def test_digits_of_either_case_are_decoded(self):
        data = self.random.randbytes(1000) + b"  "
        for text in (data.hex(), data.hex().upper()):
            self.assertEqual(self.run_well("hex", "-d", data=text.encode()).out, data)

    def test_line_ends_are_skipped_at_any_position(self):
        for text in (b"4a\n4B\n", b"4a4B", b"4\na\r\n4\r\nB\r\n", b"\n\n4a4B"):
            self.assertEqual(self.run_well("hex", "-d", data=text).out, b"JK")

    def test_white_space_and_prefixes_are_skipped(self):
        for text in (b"4a 4B", b"0x4a4B", b"0x4a 0x4b\n", rb"\x4A4B", rb"\x4a\x4b", b"\t4 a 4\x0bB\x0c"):
            self.assertEqual(self.run_well("hex", "-d", data=text).out, b"JK", text)

    def test_long_data_in_lines_of_odd_length(self):
        data = self.random.randbytes(300_000)
        digits = self.run_well("hex", data=data).out
        lines = b"\n".join(digits[i:i + 77] for i in range(0, len(digits) - 1, 77))
        self.assertEqual(self.run_well("hex", "-d", data=lines).out, data)

    def test_an_odd_number_of_digits_fails_as_in_the_component(self):
        self.write("odd", b"414")
        result = self.run_command("hex", "-d", "-o", "out", "odd")
        self.assertEqual(result.status, 1)
        self.assertEqual(result.lines[0], "latchkey: Error converting data (location 727, number 123): odd")
        self.assertEqual(result.lines[1], "hint: each byte needs two hexadecimal digits; one is missing")
        self.assertEqual(self.names(), ["odd"])

    def test_other_characters_are_reported_with_their_position(self):
        for text, place in ((b"41zz", "'z' at position 3"), (b"41,42", "',' at position 3"),
                           (b"4142\n\n4g", "'g' at position 8"),
                           (b"4x41", "'x' at position 2"),
                           (b"0x 0x41", "'x' at position 5"),
                           (b"41\xe4", "byte e4 at position 3"), (b"41\0", "byte 00 at position 3")):
            result = self.run_command("hex", "-d", "-o", "out", data=text)
            self.assertEqual((result.status, len(result.lines)), (1, 2), (text, result))
            self.assertEqual(result.lines[0], f"latchkey: not a hexadecimal digit: {place}: standard input")
            self.assertEqual(self.names(), [])

    def test_json(self):
        result = self.run_well("hex", "--json", "-o", "out", data=b"A")
        self.assertEqual(result.json, {"input": "-", "output": "out"})
        self.assertEqual(self.read("out"), b"41\n")
