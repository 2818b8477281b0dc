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
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def expect(self, code, output, errors, name, *arguments):
        result = subprocess.run([programs / name, *arguments], cwd=self.folder,
                                capture_output=True, text=True)
        self.assertEqual((result.returncode, result.stderr), (code, errors))
        self.assertIn(output, result.stdout)

    def test_client_round_trips_the_shipped_text(self):
        self.expect(0, "", "", "client", settings, text, "--media", sources / "examples/media.tsv",
                    "--plugin", programs / "plugin/text_statistics.so")
        content = text.read_bytes()
        self.assertEqual((self.folder / "copy.txt").read_bytes(), content)
        self.assertEqual((self.folder / "copy.hex").read_text(), content.hex().upper())
        log = (self.folder / "client.log").read_text()
        length = f"{len(content.decode())} characters"
        for line in ("Client:  Greeting: Good morning, 世界\n", "JIS B5 is 516 by 729 points\n",
                     "text_statistics.so - Text Statistics 1.0\n",
                     f"The plug-in says: {length}, {len(content.split())} words\n",
                     f"{len(content)} bytes hold {length}"):
            self.assertIn(line, log)

    def test_client_reports_its_crash(self):
        self.expect(0, "", "", "client", settings, text, "--crash")
        self.assertIn("Signal Code:       Address not mapped to object\n",
                      (self.folder / "client.log").read_text())

    def test_client_refuses_bad_input_in_one_line(self):
        path = self.folder / "input"
        for content, complaint in (*((b, "the text ends inside a character")
                                     for b in (b"Gr\xc3", b"\xf0\x9f\x98", b"\xf8\x88\x80")),
                                   (b"Gr\xfc\xdfe", "not UTF-8 text"), (b"a\0b", "not UTF-8 text")):
            path.write_bytes(content)
            self.expect(1, "", f"client: {path}: {complaint}\n", "client", settings, path)
            self.assertFalse((self.folder / "copy.txt").exists())
        path.write_bytes(b"a = 1\nno separator\n")
        self.expect(1, "", f"client: {path}:2: no '=' in this line\n", "client", path, text)
        self.expect(1, "", "client: absent: cannot be read\n", "client", settings, "absent")

    def test_first_program_is_the_one_in_the_readme(self):
        code = (sources / "examples/first_program.cpp").read_text()
        self.assertIn(f"```cpp\n{code}```", (sources / "README.md").read_text())
        self.expect(0, "9 characters: Grüße, 世界\n", "", "first_program")
        self.assertIn("Greeter:  9 characters", (self.folder / "first_program.log").read_text())


unittest.main(argv=sys.argv[:1])
