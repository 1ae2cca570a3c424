"""latchkey records: a field of each line, CSV row or JSON object."""
import base64
import csv
import hashlib
import io
import json

from command import IS_WINDOWS, SETTINGS, CommandTest, setting_options

KEY = ["--hash", "sha1", "--cipher", "3des"]
PASSWORD = ["--password-file", "password"]
CSV = ["--format", "csv", "--column", "secret"]
JSONL = ["--format", "jsonl", "--field", "secret"]
LINES = ["--format", "lines"]


class RecordsTest(CommandTest):
    def setUp(self):
        super().setUp()
        self.write("password", b"secret")

    def records(self, command, *arguments, data=b"", **options):
        key = [*KEY, *PASSWORD] if command != "hash" else []
        return self.run_command("records", command, *key, *arguments, data=data, **options)

    def well(self, command, *arguments, data=b""):
        result = self.records(command, *arguments, data=data)
        self.assertEqual((result.status, result.err), (0, b""), f"{arguments}: {result}")
        return result.out

    def hex_of(self, text, options=KEY):
        return self.encrypt(text, options).hex().upper()


class ResultsTest(RecordsTest):
    def test_every_setting_gives_the_bytes_of_the_command_for_files(self):
        for settings in SETTINGS[::5] if IS_WINDOWS else SETTINGS:
            options = setting_options(*settings)
            line = self.encrypt(b"Some text", options).hex().upper().encode()
            for command, data, expected in (("encrypt", b"Some text\n", line + b"\n"), ("decrypt", line, b"Some text")):
                result = self.run_well("records", command, *LINES, *options, *PASSWORD, data=data)
                self.assertEqual(result.out, expected, settings)

    def test_bytes_of_all_three_forms(self):
        ciphertext = self.encrypt(b"Some text", KEY)
        base64_text = base64.b64encode(ciphertext).decode()
        for name, text in (("hex", ciphertext.hex()), ("hex", "\\x" + ciphertext.hex()), ("hex", "0x" + ciphertext.hex()),
                           ("hex", "\v0x" + ciphertext.hex(" ")), ("hex", " 0x".join(["", *ciphertext.hex(" ").split()])),
                           ("base64", base64_text), ("base64", "\f" + base64_text[:5] + "\t " + base64_text[5:])):
            self.assertEqual(self.well("decrypt", *LINES, "--from", name, "--to", "base64", data=text.encode() + b"\r\n"),
                             base64.b64encode(b"Some text") + b"\r\n")
        self.assertEqual(self.well("encrypt", *LINES, "--from", "hex", "--to", "base64", data=b"536F6D652074657874"),
                         base64.b64encode(ciphertext))

    def test_text_in_a_code_page(self):
        ciphertext = self.encrypt("Zoë €".encode("cp1252"), KEY).hex().upper().encode()
        for name in ("windows-1252", "1252", "CP1252"):
            page = ["--text-encoding", name]
            self.assertEqual(self.well("encrypt", *LINES, *page, data="Zoë €\n".encode()), ciphertext + b"\n")
            self.assertEqual(self.well("decrypt", *LINES, *page, data=ciphertext + b"\n"), "Zoë €\n".encode())
        wrong = self.records("decrypt", *LINES, data=ciphertext)
        self.assertEqual((wrong.status, wrong.out), (1, b""))
        self.assertIn("not UTF-8", wrong.lines[0])
        self.assertIn("--text-encoding", wrong.lines[1])
        self.assertEqual(self.well("decrypt", *LINES, "--text-encoding", "bytes", data=ciphertext), "Zoë €".encode("cp1252"))

    def test_digests(self):
        rows = b'id,secret\n1,abc\n2,\n3,""\n4,"a,b"\n'
        for hash_ in ("md5", "sha1"):
            digests = [hashlib.new(hash_, text).hexdigest().upper() for text in (b"abc", b"", b"a,b")]
            self.assertEqual(self.well("hash", *CSV, "-a", hash_, data=rows).decode(),
                             f'id,secret\n1,{digests[0]}\n2,\n3,"{digests[1]}"\n4,"{digests[2]}"\n')
            self.assertEqual(self.well("hash", *CSV, "-a", hash_, "--as", "digest", data=rows).decode(),
                             f'id,secret,digest\n1,abc,{digests[0]}\n2,,\n3,"",{digests[1]}\n4,"a,b",{digests[2]}\n')


class CsvTest(RecordsTest):
    def text_of(self, rows, **form):
        stream = io.StringIO(newline="")
        csv.writer(stream, **form).writerows(rows)
        return stream.getvalue().encode()

    def random_text(self):
        alphabet = 'ab ,"\n\r;é' if self.random.random() < 0.5 else "abc"
        return "".join(self.random.choice(alphabet) for _ in range(self.random.randrange(12)))

    def test_random_files_as_another_reader_sees_them(self):
        for _ in range(3 if IS_WINDOWS else 30):
            rows = [["id", "secret", "a \"note\", quoted"]] + [
                [str(i), self.random_text(), self.random_text()] for i in range(self.random.randrange(20))]
            quoting, end = self.random.choice(((csv.QUOTE_MINIMAL, "\r\n"), (csv.QUOTE_ALL, "\r\n"), (csv.QUOTE_ALL, "\n")))
            form = {"quoting": quoting, "lineterminator": end}
            plain = self.text_of(rows, **form)
            encrypted = self.well("encrypt", *CSV, data=plain)
            read = list(csv.reader(io.StringIO(encrypted.decode(), newline="")))
            self.assertEqual([[row[0], row[2]] for row in read], [[row[0], row[2]] for row in rows])
            for row, before in zip(read[1:], rows[1:]):
                self.assertEqual(len(row[1]) % 16, 0)
                if before[1]:
                    self.assertGreater(len(row[1]), 2 * len(before[1].encode()))
            decrypted = self.well("decrypt", *CSV, data=encrypted)
            self.assertEqual(list(csv.reader(io.StringIO(decrypted.decode(), newline=""))), rows)
            if form["quoting"] == csv.QUOTE_ALL:
                self.assertEqual(decrypted, plain)

    def test_columns_by_number_and_without_header(self):
        secret = self.hex_of(b"text").encode()
        for arguments, data in ((["--column", "2"], b"a,b\n1," + secret), (["--column", "b"], b"a,b\r\n1," + secret),
                                (["--column", "2", "--no-header"], secret + b'x,"' + secret + b'"\n'),
                                (["--column", "b", "--delimiter", ";"], b"a;b\n1,2;" + secret),
                                (["--column", "b", "--delimiter", "tab"], b"a\tb\n1;2\t" + secret)):
            head, tail = data.rsplit(secret, 1)
            self.assertEqual(self.well("decrypt", "--format", "csv", *arguments, data=data), head + b"text" + tail)

    def test_a_missing_column_is_named(self):
        result = self.records("decrypt", *CSV, data=b"id,Secret\n1,00\n")
        self.assertEqual((result.status, result.out), (1, b""))
        self.assertEqual(result.lines, ["latchkey: the header has no column secret: standard input",
                                        "hint: --column also takes a number; --no-header is for files without a header"])

    def test_null_and_an_empty_text_are_different(self):
        rows = b'id,secret\n1,\n2,""\n\n3\n'
        encrypted = self.well("encrypt", *CSV, data=rows)
        self.assertEqual(encrypted, rows.replace(b'""', b'"' + self.hex_of(b"").encode() + b'"'))
        self.assertEqual(self.well("decrypt", *CSV, data=encrypted), rows)
        self.assertEqual(self.well("decrypt", *CSV, data=rows), rows)

    def test_a_record_without_end_is_refused(self):
        data = b'id,secret\n1,x\n2,"' + b"y\n" * (35 << 20)
        result = self.records("encrypt", *CSV, data=data)
        self.assertEqual(result.status, 1)
        self.assertIn("a record is longer than 64 MiB, from line 3: standard input", result.lines[0])


class JsonTest(RecordsTest):
    def test_everything_else_stays_as_it_was_written(self):
        line = '{ "n" : 1.2300E+05,"big":12345678901234567890123, "secret":"%s", "u":"\\u00e4\\/" , "x":{"secret":"s"}}\r\n'
        encrypted = self.well("encrypt", *JSONL, data=(line % "Zo\\u00eb \\\"x\\\"").encode())
        self.assertEqual(encrypted.decode(), line % self.hex_of('Zoë "x"'.encode()))
        self.assertEqual(self.well("decrypt", *JSONL, data=encrypted).decode(), line % 'Zoë \\"x\\"')

    def test_the_result_under_another_name(self):
        data = b'{"secret":"text", "id":7 }\n{"secret":null}\n{"id":8}\n\n'
        self.assertEqual(self.well("encrypt", *JSONL, "--as", "new", data=data),
                         data.replace(b"7 }", b'7,"new":"' + self.hex_of(b"text").encode() + b'" }'))
        again = data.replace(b"7", b'7,"new":{"a":[]}')
        self.assertEqual(self.well("encrypt", *JSONL, "--as", "new", data=again),
                         again.replace(b'{"a":[]}', b'"' + self.hex_of(b"text").encode() + b'"'))

    def test_what_it_writes_is_json(self):
        texts = ["".join(chr(self.random.choice((34, 92, 47, 10, 1, 127, 97, 228, 0x20AC, 0x1F600))) for _ in range(9))
                 for _ in range(200)]
        data = "".join(json.dumps({"i": i, "secret": text}, ensure_ascii=i % 2 == 0) + "\n"
                       for i, text in enumerate(texts)).encode()
        decrypted = self.well("decrypt", *JSONL, data=self.well("encrypt", *JSONL, data=data))
        self.assertEqual([json.loads(line) for line in decrypted.splitlines()],
                         [{"i": i, "secret": text} for i, text in enumerate(texts)])


class ErrorsTest(RecordsTest):
    def setUp(self):
        super().setUp()
        self.rows = [b"id,secret"] + [f"{i},{self.hex_of(b'The text of row %d' % i)}".encode() for i in range(1, 7)]
        self.rows[2] = b'2,"4X"'           # line 3
        self.rows[3] = self.rows[3][:-16]  # padding is missing
        self.rows[5] = b"5,414"
        self.data = b"\n".join(self.rows) + b"\n"
        self.plain = [b"id,secret"] + [b"%d,The text of row %d" % (i, i) for i in range(1, 7)]
        self.lines = ["latchkey: not a hexadecimal digit in the field: standard input, line 3",
                      "latchkey: Error decrypting data (location 717, number 120): standard input, line 4",
                      "latchkey: Error converting data (location 727, number 123): standard input, line 6"]

    def test_the_first_bad_row_stops(self):
        result = self.records("decrypt", *CSV, data=self.data)
        self.assertEqual((result.status, result.out), (1, b"\n".join(self.plain[:2]) + b"\n"))
        self.assertEqual(result.lines[0], self.lines[0])
        self.write("in", self.data)
        result = self.records("decrypt", *CSV, "-o", "out", "in")
        self.assertEqual((result.status, self.names()), (1, ["in", "password"]))
        self.assertEqual(result.lines[0], self.lines[0].replace("standard input", "in"))

    def test_bad_rows_are_left_out_kept_or_emptied(self):
        bad = {2: b'2,', 3: b"3,", 5: b"5,"}
        for name, rows in (("skip", [row for i, row in enumerate(self.plain) if i not in bad]),
                           ("keep", [self.rows[i] if i in bad else row for i, row in enumerate(self.plain)]),
                           ("null", [bad.get(i, row) for i, row in enumerate(self.plain)])):
            result = self.records("decrypt", *CSV, "--on-error", name, data=self.data)
            self.assertEqual((result.status, result.out), (1, b"\n".join(rows) + b"\n"), name)
            self.assertEqual(result.lines[:4], [*self.lines, "latchkey: 3 of 6 records failed"])
            self.assertEqual([line[:5] for line in result.lines[4:]], ["hint:"])
            self.write("in", self.data)
            result = self.records("decrypt", *CSV, "--on-error", name, "-o", name, "in", "--quiet")
            self.assertEqual((result.status, self.read(name)), (1, b"\n".join(rows) + b"\n"))
            self.assertEqual(len(result.lines), 4)

    def test_a_report_as_json_lines(self):
        expected = [{"line": 3, "outcome": "failed", "text": "not a hexadecimal digit in the field"},
                    {"line": 4, "outcome": "failed", "text": "Error decrypting data", "type": 2, "location": 717,
                     "number": 120},
                    {"line": 6, "outcome": "failed", "text": "Error converting data", "type": 2, "location": 727,
                     "number": 123}]
        result = self.records("decrypt", *CSV, "--on-error", "skip", "--report", "report", "--quiet", data=self.data)
        self.assertEqual((result.status, result.lines), (1, ["latchkey: 3 of 6 records failed"]))
        self.assertEqual([json.loads(line) for line in self.read("report").splitlines()], expected)
        result = self.records("decrypt", *CSV, "--on-error", "skip", "--report", "report", data=self.data)
        self.assertEqual((result.status, result.out), (1, b""))
        self.assertEqual(result.lines[0], "latchkey: cannot write the report: report")
        result = self.records("decrypt", *CSV, "--report", "report", "--force", data=self.data)
        self.assertEqual(result.status, 1)
        self.assertEqual([json.loads(line) for line in self.read("report").splitlines()], expected[:1])
        result = self.records("decrypt", *CSV, "--on-error", "skip", "--json", "-o", "out", data=self.data)
        decoder, text, objects = json.JSONDecoder(), result.err.decode() + result.out.decode(), []
        while text.strip():
            value, end = decoder.raw_decode(text.lstrip())
            objects.append(value)
            text = text.lstrip()[end:]
        self.assertEqual(objects[:3], expected)
        self.assertEqual({key: objects[3][key] for key in ("records", "changed", "failed", "completed", "cipher")},
                         {"records": 6, "changed": 3, "failed": 3, "completed": 0, "cipher": "3des"})

    def test_a_cut_ciphertext_gets_its_spaces_back(self):
        texts = [b"Text %d" % number for number in range(3000)]  # one ciphertext in 256 ends in a space
        ciphertexts = [bytes.fromhex(line) for line in self.well("encrypt", *LINES, data=b"\n".join(texts)).decode().split()]
        number = next(i for i, each in enumerate(ciphertexts) if each.endswith(b" ") and not each.endswith(b"  "))
        cut = b"\n".join(each.rstrip(b" ").hex().encode() if i == number else each.hex().encode()
                         for i, each in enumerate(ciphertexts))
        result = self.records("decrypt", *LINES, "--report", "report", data=cut)
        self.assertEqual((result.status, result.out), (0, b"\n".join(texts)))
        self.assertEqual([json.loads(line) for line in self.read("report").splitlines()],
                         [{"line": number + 1, "outcome": "completed", "missing_bytes": 1}])
        result = self.records("decrypt", *LINES, data=cut)
        self.assertEqual((result.status, result.lines), (0, [
            f"latchkey: warning: 1 byte missing at the end, decrypted with spaces there: standard input, line {number + 1}",
            "latchkey: 1 of 3000 records were cut at the end and decrypted with spaces there"]))
        result = self.records("decrypt", *LINES, "--on-error", "keep", data=b"41424344454647")
        self.assertEqual((result.status, result.out), (1, b"41424344454647"))
        self.assertEqual(result.lines[0], "latchkey: Error decrypting data (location 717, number 120): standard input, "
                                          "line 1, 1 byte missing at the end")

    def test_results_that_the_format_cannot_hold(self):
        data = self.hex_of(b"two\nlines").encode()
        result = self.records("decrypt", *LINES, data=data)
        self.assertEqual((result.status, result.out), (1, b""))
        self.assertIn("the format cannot hold the result", result.lines[0])

    def test_wrong_usage(self):
        for arguments in (["--format", "csv"], ["--format", "jsonl"], [*LINES, "--column", "1"], [*LINES, "--as", "x"],
                          [*CSV, "--no-header"], [*CSV, "--field", "x"], [*CSV, "--delimiter", "ab"],
                          ["--format", "csv", "--column", "0"], [*LINES, "--from", "octal"], ["--format", "xml"],
                          [*JSONL, "--to", "text", "--text-encoding", "bytes"], [*LINES, "--text-encoding", "ebcdic"],
                          [*LINES, "--password-file", "-"], []):
            result = self.records("decrypt", *arguments)
            self.assertEqual((result.status, result.out), (2, b""), arguments)
        for arguments in ([], ["decode"]):
            self.assertEqual(self.run_command("records", *arguments).status, 2)


class LargeTest(RecordsTest):
    ROWS = 20_000 if IS_WINDOWS else 300_000

    def test_many_rows_stay_in_order(self):
        rows = "".join(f"{i},text {i},row {i}\n" for i in range(self.ROWS)).encode()
        data = b"id,secret,note\n" + rows
        self.write("in", data)
        self.well("encrypt", *CSV, "-o", "encrypted", "in")
        self.assertEqual(self.read("encrypted").count(b"\n"), self.ROWS + 1)
        self.well("decrypt", *CSV, "-o", "out", "encrypted")
        self.assertEqual(self.read("out"), data)
        self.assertEqual(self.well("decrypt", *CSV, data=self.read("encrypted")), data)

    def test_a_bad_row_far_inside_is_found(self):
        lines = [b"%032X" % i for i in range(self.ROWS)]
        data = self.well("encrypt", *LINES, "--from", "hex", data=b"\n".join(lines)).split(b"\n")
        bad = sorted(self.random.sample(range(self.ROWS), 50))
        for i in bad:
            data[i] = b"no digits"
        result = self.records("decrypt", *LINES, "--to", "hex", "--on-error", "null", "--report", "report",
                              data=b"\n".join(data))
        self.assertEqual(result.status, 1)
        self.assertEqual([json.loads(line)["line"] for line in self.read("report").splitlines()], [i + 1 for i in bad])
        expected = [b"" if i in bad else line for i, line in enumerate(lines)]
        self.assertEqual(result.out, b"\n".join(expected))
        result = self.records("decrypt", *LINES, "--to", "hex", data=b"\n".join(data))
        self.assertEqual((result.status, result.out), (1, b"".join(line + b"\n" for line in lines[:bad[0]])))
