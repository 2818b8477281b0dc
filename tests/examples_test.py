"""Runs the sample programs as a user would: examples_test.py SOURCES PROGRAMS"""
import pathlib
import subprocess
import sys
import tempfile
import unittest

sources, programs = map(pathlib.Path, sys.argv[1:])
settings = sources / "examples/data/client.conf"
text = sources / "examples/data/languages.txt"


class Examples(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def expect(self, errors, *arguments):
        result = subprocess.run([programs / "client", *arguments], cwd=self.folder,
                                capture_output=True, text=True)
        self.assertEqual((result.returncode, result.stderr), (bool(errors), errors))

    def test_client_round_trips_the_shipped_text_and_reports_its_crash(self):
        self.expect("", settings, text)
        self.expect("", settings, text, "--media", sources / "examples/media.tsv",
                    "--plugin", programs / "plugin/text_statistics.so", "--crash")
        content = text.read_bytes()
        length = f"{len(content.decode())} characters"
        self.assertEqual((self.folder / "copy.txt").read_bytes(), content)
        self.assertEqual((self.folder / "copy.hex").read_text(), content.hex().upper())
        log = (self.folder / "client.log").read_text()
        lines = ("Client:  Greeting: Good morning, 世界\n",
                 "JIS B5 is 516 by 729 points\n", "text_statistics.so - Text Statistics 1.0\n",
                 f"{len(content)} bytes hold {length}",
                 f"The plug-in says: {length}, {len(content.split())} words\n",
                 "Signal Code:       Address not mapped to object\n")
        self.assertEqual([line for line in lines if line not in log], [])

    def test_client_refuses_bad_input_in_one_line(self):
        path = self.folder / "input"
        for content, complaint in (*((b, "the text ends inside a character")
                                     for b in (b"Gr\xc3", b"\xf0\x9f\x98", b"\xf8\x88\x80")),
                                   (b"Gr\xfc\xdfe", "not UTF-8 text"), (b"a\0b", "not UTF-8 text")):
            path.write_bytes(content)
            self.expect(f"client: {path}: {complaint}\n", settings, path)
            self.assertFalse((self.folder / "copy.txt").exists())
        path.write_bytes(b"a = 1\nno separator\n")
        self.expect(f"client: {path}:2: no '=' in this line\n", path, text)
        self.expect("client: absent: cannot be read\n", settings, "absent")


unittest.main(argv=sys.argv[:1])
