"""Runs the sample programs as a user would: examples_test.py SOURCES PROGRAMS"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sources, programs = map(pathlib.Path, sys.argv[1:])
settings, text, media = (sources / "examples" / name
                         for name in ("data/client.conf", "data/languages.txt", "media.tsv"))


class Examples(unittest.TestCase):
    def setUp(self):
        os.chdir(self.enterContext(tempfile.TemporaryDirectory()))

    def expect(self, errors, *arguments):
        result = subprocess.run([programs / "client", *arguments], capture_output=True, text=True)
        self.assertEqual((result.returncode, result.stderr), (bool(errors), errors))

    def test_client_round_trips_the_shipped_text_and_reports_its_crash(self):
        self.expect("", settings, text)
        self.expect("", settings, text, "--media", media, "--plugin",
                    programs / "plugin/text_statistics.so", "--crash")
        content = text.read_bytes()
        length = f"{len(content.decode())} characters"
        self.assertEqual(pathlib.Path("copy.txt").read_bytes(), content)
        self.assertEqual(pathlib.Path("copy.hex").read_text(), content.hex().upper())
        log = pathlib.Path("client.log").read_text()
        lines = ("Client:  Greeting: Good morning, 世界\n", f"{len(content)} bytes hold {length}",
                 "JIS B5 is 516 by 729 points\n", "text_statistics.so - Text Statistics 1.0\n",
                 f"The plug-in says: {length}, {len(content.split())} words\n",
                 "Signal Code:       Address not mapped to object\n")
        self.assertEqual([line for line in lines if line not in log], [])

    def test_client_refuses_bad_input_in_one_line(self):
        for content, complaint in ((b"Gr\xc3", "the text ends inside a character"),
                                   (b"Gr\xfc\xdfe", "not UTF-8 text"), (b"a\0b", "not UTF-8 text")):
            pathlib.Path("input").write_bytes(content)
            self.expect(f"client: input: {complaint}\n", settings, "input")
            self.assertFalse(os.path.exists("copy.txt"))
        pathlib.Path("input").write_text("a = 1\nno separator\n")
        self.expect("client: input:2: no '=' in this line\n", "input", text)
        self.expect("client: absent: cannot be read\n", settings, "absent")


unittest.main(argv=sys.argv[:1])
